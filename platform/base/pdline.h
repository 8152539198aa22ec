/* One line of the log while it is put together.  Its length is bounded: what does not fit is cut
 * and marked, and the newline always fits.  What comes from outside is quoted, with everything that
 * is not printable escaped, so that one record is always one line. */
#ifndef PDLINE_H
#define PDLINE_H

#include "nbtypes.h"
#include "pdtable.h"

#include <cstdarg>
#include <cstddef>
#include <string_view>

namespace base {

class PdLine {
public:
    /* Adds text that is known to be printable. */
    void add(std::string_view text);
    void addf(const char *format, ...) __attribute__((format(printf, 2, 3)));

    /* Adds a quoted text in the local character set (control characters escaped). */
    void add_text(const char *text);

    /* Adds a quoted array of bytes: without its trailing blanks and NULs; as EBCDIC, and saying so,
     * when it reads as an EBCDIC name and does not read as local text. */
    void add_array(const NB_UCHAR *bytes, size_t width);

    /* Adds the values that the words of `format` stand for, named as the row says. */
    void add_values(const PdRow &row, const char *format, va_list values);

    /* Returns the whole line, the newline included. */
    std::string_view finish();

private:
    struct Source;

    bool add_value(std::string_view word, PdDecode decode, Source &source);
    void add_number(const char *format, NB_ULONG number, PdDecode decode);
    void add_sized(Source &source, bool cut_at_nul);
    void add_escaped(NB_UCHAR byte, bool beyond_ascii);

    char text_[2048];
    size_t length_ = 0;
    bool cut_ = false;
};

} // namespace base

#endif
