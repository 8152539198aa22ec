/* Manual pages: what they are called, the process that formats one, and its output as a topic. */
#ifndef HELP_MANPAGE_H
#define HELP_MANPAGE_H

#include "volume.h"

#include <X11/Intrinsic.h>
#include <functional>

namespace help {

struct Man_Name {
    std::string page;
    std::string section; // may be empty
};

/* "name" or "name(section)"; an empty page for anything else, so that nothing but the name of a
 * page ever reaches the command. */
Man_Name parse_man_name(std::string_view text);

/* The formatter's output, in which bold and underlined characters are printed over each other, as a
 * topic of fixed lines.  Bad UTF-8 and control characters are left out, runs of empty lines become
 * one. */
Topic man_topic(const std::string &name, std::string_view output);

/* Reads one page.  The process is nobody's child, and its output comes through the toolkit's loop.
 * `done` gets the output, empty when there was none; it is not called when this goes before. */
class ManReader {
public:
    using DONE = std::function<void(const std::string &output)>;

    ManReader(XtAppContext context, const Man_Name &name, int columns, DONE when_done);
    ManReader(const ManReader &) = delete;
    ManReader &operator=(const ManReader &) = delete;
    ~ManReader();

private:
    static void on_input(XtPointer reader, int *fd, XtInputId *id);
    static void on_nothing(XtPointer reader, XtIntervalId *id);
    void finish();
    void close_input();

    DONE done;
    std::string output;
    int fd = -1;
    XtInputId input = 0;
    XtIntervalId timer = 0;
};

} // namespace help

#endif
