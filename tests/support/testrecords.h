/* Names and list entries for tests, as the node software writes them. */
#ifndef TESTRECORDS_H
#define TESTRECORDS_H

#include "nbbase.h"
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

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

/* An entry without contents, and one as a list has it: its length is a multiple of 4. */
template <class Data> Data new_entry() {
    Data data = {};
    data.overlay_size = sizeof(data);
    return data;
}

template <class Data> std::vector<NB_UCHAR> entry_bytes(Data data) {
    const NB_USHORT length = data.overlay_size;
    data.overlay_size = static_cast<NB_USHORT>((length + 3) & ~3U);
    std::vector<NB_UCHAR> bytes(data.overlay_size, 0);
    memcpy(bytes.data(), &data, std::min<size_t>(length, sizeof(data)));
    return bytes;
}

#endif
