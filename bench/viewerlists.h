/* The lists that bench_viewer compares: the viewer, a list that is nothing but drawing, and the
 * toolkit's own list, each in a window of its own
 * (`place` counts them from the left), all of the same lines in the same font.
 *
 * A line has a text of 100 characters in five columns and an icon; one in ten is a group, which
 * has an expand icon, too, and the nine others below it.  A step of a list shows another page and
 * returns when the server has drawn it; the list's scroll bar follows. */
#ifndef VIEWERLISTS_H
#define VIEWERLISTS_H

#include "listfont.h"
#include "vgaviewr.h"
#include <Xm/Xm.h>
#include <string>
#include <vector>

namespace bench {

constexpr size_t group_lines = 10;
constexpr unsigned page_lines = 50;

/* A record that a line belongs to. */
struct LINE {
    VGA_VIEWER_ITEM item;
    NB_CHAR text[192]; /* with column stops */
};
using LINES = std::vector<LINE>;

/* The same `count` lines at every call. */
LINES make_lines(size_t count);

/* Connects the toolkit and makes icons, contexts and font, on DISPLAY or on a server of its own.
 * The font of all lists is the scalable one that is shipped, or one of the server. */
void open_display(bool server_font);

/* Processor time of our own server; 0 on DISPLAY. */
double server_seconds();
void catch_up();
bool begins_group(size_t line);

/* The viewer. */
class OURS {
public:
    explicit OURS(int place);
    /* Puts all lines in, the groups open, and draws. */
    void fill(LINES *lines);
    void clear(LINES *lines);
    void step(size_t first);
    /* Draws what is noted. */
    void draw();
    VGA_VIEWER_ROOT root;
};

/* Draws its lines with the calls that the viewer uses, straight into the window.  All that can be
 * known beforehand (where a run begins and ends, which icon it is) is. */
class BARE {
public:
    explicit BARE(int place);
    void fill(const LINES &lines);
    void step(size_t first);

private:
    struct RUN {
        const NB_CHAR *text;
        unsigned char length, column;
    };
    struct ROW {
        RUN runs[5];
        bool group;
    };
    void draw_row(const ROW &row, int y, VGA_LIST_PEN *pen) const;

    Widget area_, bar_;
    GC gc_, erase_;
    XftDraw *canvas_;
    std::vector<ROW> rows_;
};

/* The toolkit's. */
class TOOLKIT {
public:
    explicit TOOLKIT(int place);
    void fill(const LINES &lines);
    void clear();
    void step(size_t first);
    void insert(size_t place, const LINE &line);
    void replace(size_t place, const LINE &line);
    void draw();

private:
    Widget list_;
};

} // namespace bench

#endif
