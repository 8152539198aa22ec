/* Names and list entries for tests, as the node software writes them. */
#ifndef TESTRECORDS_H
#define TESTRECORDS_H

#include "nbbase.h"
#include <cstring>
#include <string>

/* A name in the local code page, and one in EBCDIC, padded with blanks to their fields. */
template <size_t Width> void set_local(NB_UCHAR (&field)[Width], const std::string &text) {
    std::string padded = text;
    padded.resize(Width, ' ');
    memcpy(field, padded.data(), Width);
}

template <size_t Width> void set_ebcdic(NB_UCHAR (&field)[Width], const std::string &text) {
    set_local(field, text);
    nba_local_to_ebcdic(field, Width);
}

/* An entry without contents, as long as a list would have it. */
template <class Data> Data new_entry() {
    Data data = {};
    data.overlay_size = static_cast<NB_USHORT>((sizeof(data) + 3) & ~3U);
    return data;
}

#endif
