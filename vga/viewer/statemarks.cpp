#include "statemarks.h"
#include "graphics.h"

const VGA_STATE_MARK_NAMES gvga_state_marks[VGA_LINE_STATES] = {
    {nullptr, nullptr},
    {"stateactive", "*stateActiveColor"},
    {"statechanging", "*stateChangingColor"},
    {"stateinactive", "*stateInactiveColor"},
    {"statefailed", "*stateFailedColor"},
};

namespace {

struct MARK {
    Pixmap picture, mask;
    Pixmap sign;
    Pixmap marked[2][VGA_ICON_COUNT]; // plain and selected, as they are needed
};
MARK marks[VGA_LINE_STATES];
Display *marks_display;

/* The square at the lower left that holds a mark, of the drawings' 20 units. */
constexpr NB_ULONG drawing_units = 20, sign_units = 9;

Pixmap make_pixmap(NB_ULONG width, NB_ULONG height) {
    Screen *const screen = DefaultScreenOfDisplay(marks_display);
    return XCreatePixmap(marks_display, RootWindowOfScreen(screen), static_cast<unsigned>(width),
                         static_cast<unsigned>(height),
                         static_cast<unsigned>(DefaultDepthOfScreen(screen)));
}

NB_VOID copy(Pixmap from, Pixmap to, GC gc, NB_ULONG y, NB_ULONG width, NB_ULONG height) {
    XCopyArea(marks_display, from, to, gc, 0, static_cast<NB_INT>(y), static_cast<unsigned>(width),
              static_cast<unsigned>(height), 0, 0);
}

Pixmap make_marked(Pixmap icon, const MARK &mark) {
    const NB_ULONG width = gvga_viewer_icon_width, height = gvga_viewer_icon_height;
    const Pixmap made = make_pixmap(width, height);
    XGCValues values = {};
    values.graphics_exposures = False;
    const GC gc = XCreateGC(marks_display, made, GCGraphicsExposures, &values);
    copy(icon, made, gc, 0, width, height);
    XSetClipMask(marks_display, gc, mark.mask);
    copy(mark.picture, made, gc, 0, width, height);
    XFreeGC(marks_display, gc);
    return made;
}

NB_VOID free_pixmap(Pixmap *pixmap) {
    if (*pixmap != None) {
        XFreePixmap(marks_display, *pixmap);
        *pixmap = None;
    }
}

} // namespace

NB_VOID vga_set_state_mark(Display *display, VGA_LINE_STATE state, Pixmap picture, Pixmap mask) {
    marks_display = display;
    marks[state].picture = picture;
    marks[state].mask = mask;
}

NB_VOID vga_free_state_marks(NB_VOID) {
    for (MARK &mark : marks) {
        free_pixmap(&mark.picture);
        free_pixmap(&mark.mask);
        free_pixmap(&mark.sign);
        for (auto &icons : mark.marked) {
            for (Pixmap &icon : icons) {
                free_pixmap(&icon);
            }
        }
    }
}

Pixmap vga_icon_in_state(NB_USHORT icon, VGA_LINE_STATE state, NB_USHORT selected) {
    const Pixmap plain = selected != 0 ? gvga_inverted_pixmaps[icon] : gvga_pixmaps[icon];
    if (state >= VGA_LINE_STATES || marks[state].picture == None) {
        return plain;
    }
    Pixmap &made = marks[state].marked[selected != 0][icon];
    if (made == None) {
        made = make_marked(plain, marks[state]);
    }
    return made;
}

Pixmap vga_state_sign(VGA_LINE_STATE state) {
    MARK &mark = marks[state];
    if (mark.sign == None && mark.picture != None) {
        const NB_ULONG size = gvga_viewer_icon_width * sign_units / drawing_units;
        mark.sign = make_pixmap(size, size);
        copy(mark.picture, mark.sign, gvga_normal_gc, gvga_viewer_icon_height - size, size, size);
    }
    return mark.sign;
}
