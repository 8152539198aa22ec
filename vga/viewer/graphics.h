/* What lists are drawn with: icons, drawing contexts, the fixed-pitch font set and the sizes that
 * follow from them.  Made once by the first window (vga_init_graphics) and only read afterwards.
 *
 * OWNS: pixmaps, contexts and the font set, until vga_free_graphics. */
#ifndef GRAPHICS_H
#define GRAPHICS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>
#include <X11/Xlib.h>

#define VGA_ICON_COUNT    85
#define VGA_MAX_ICON_NAME 30

/* The icons that code names; the others are known by their place in gvga_pixmap_names. */
enum VGA_ICON : NB_USHORT {
    VGA_ICON_PLUS = 0,  /* a closed line */
    VGA_ICON_MINUS = 1, /* an open line */
    VGA_ICON_PORT = 2,
    VGA_ICON_PORTSDLC = 3,
    VGA_ICON_PORTTR = 4,
    VGA_ICON_PORTX25 = 5,
    VGA_ICON_LS = 6,
    VGA_ICON_LSHOST = 7,
    VGA_ICON_LSDOWN = 8,
    VGA_ICON_LSPEER = 9,
    VGA_ICON_PU = 10,
    VGA_ICON_LU03 = 11,
    VGA_ICON_DLU = 12,
    VGA_ICON_LU62 = 13,
    VGA_ICON_BLANK = 14,
    VGA_ICON_USER = 15,
    VGA_ICON_POOL = 16,
    VGA_ICON_CPIC = 17,
    VGA_ICON_MODE = 18,
    VGA_ICON_NODE = 19,
    VGA_ICON_PORTETHER = 20,
    VGA_ICON_PORTFDDI = 21,
    VGA_ICON_RJEW = 22,
    VGA_ICON_LUDISP = 23,
    VGA_ICON_LURJE = 24,
    VGA_ICON_LUPRINT = 25,
    VGA_ICON_LSIMPL = 26,
    VGA_ICON_REMSYSD = 27,
    VGA_ICON_REMSYS = 28,
    VGA_ICON_REMPLUD = 29,
    VGA_ICON_REMPLU = 30,
    VGA_ICON_REMSYSF = 31,
    VGA_ICON_DISP3270 = 32,
    VGA_ICON_PRINT3270 = 33,
    VGA_ICON_DISP5250 = 34,
    VGA_ICON_PRINT5250 = 35,
    VGA_ICON_USERGROUP = 36,
    VGA_ICON_TNCLIENT = 37,
    VGA_ICON_CONVSEC = 38, /* gives the size of the icons of lines */
    VGA_ICON_SESSSEC = 39,
    VGA_ICON_DLURPORT = 40,
    VGA_ICON_REMPLUA = 41,
    VGA_ICON_POOLLU03 = 58,
    VGA_ICON_LU3270 = 59,
    VGA_ICON_LU5250 = 60,
    VGA_ICON_BACKNODE = 62,
    VGA_ICON_PORTFR = 63,
    VGA_ICON_PORTESCON = 64,
    VGA_ICON_PORTBLKMUX = 65,
    VGA_ICON_TNASSOC = 66,
    VGA_ICON_RTPCONN = 67,
    VGA_ICON_LSRT = 68,
    VGA_ICON_LSR = 69,
    VGA_ICON_APPCIP = 76,
    VGA_ICON_ACCLIST = 77,
    VGA_ICON_TPDEF = 78,
    VGA_ICON_TPLOAD = 79,
    VGA_ICON_PORTMPC = 80,
    VGA_ICON_TNREDIRECT = 81,
    VGA_ICON_PORTIP = 82,
    VGA_ICON_PORTMPCPLUS = 83,
};

extern const NB_CHAR *const gvga_pixmap_names[VGA_ICON_COUNT];
extern Pixmap gvga_pixmaps[VGA_ICON_COUNT];
extern Pixmap gvga_inverted_pixmaps[VGA_ICON_COUNT]; /* for selected lines */

extern GC gvga_normal_gc;   /* foreground on background */
extern GC gvga_inverted_gc; /* the two exchanged */
extern GC gvga_outline_gc;  /* dashes that exchange the two */

extern XFontSet gvga_viewer_fontset; /* null: the font of gvga_normal_gc is used */

/* Pixels.  All 0 until the graphics were made. */
extern NB_ULONG gvga_viewer_char_width, gvga_viewer_char_ascent, gvga_viewer_char_descent,
    gvga_viewer_item_height, gvga_viewer_indent_width, gvga_viewer_icon_width,
    gvga_viewer_icon_height, gvga_viewer_expand_icon_width, gvga_viewer_expand_icon_height,
    gvga_viewer_icon_y, gvga_viewer_expand_icon_y, gvga_viewer_text_y;

/* Makes all of the above in the colours of `widget` (realized, or at least with its colours set);
 * `font_widget` is the one whose font list is looked at first.
 * Returns 1, or 0 with the reason in the problem log and, where no icon file opens, the exit
 * request made.  What was made until then is kept for vga_free_graphics. */
NB_USHORT vga_init_graphics(Widget widget, Widget font_widget);

/* Frees the icons, or all of it; harmless when nothing was made.  Needs the display. */
NB_VOID vga_free_pixmaps(NB_VOID);
NB_VOID vga_free_graphics(NB_VOID);

/* A set of the widget's own fonts if its font list has one of fixed pitch, else the one that the
 * resource names, else the pattern of the message, else the default pattern.  Warns through the
 * toolkit of what is missing.  The caller frees the set; null without any. */
XFontSet vga_load_fixed_fontset(const NB_CHAR *resource_name, const NB_CHAR *default_pattern,
                                NB_USHORT message_number, Widget widget);

/* Where drawings take more pixels the lists take the font of big icons as many times as high,
 * unless the user has named one or the server cannot make it. */
NB_VOID vga_enlarge_default_font(Display *display, NB_INT scale);

/* Pixels of `length` bytes of text in the font of lists: the scalable one (listfont.h), the font
 * set or that of gvga_normal_gc.  0 before the graphics were made. */
NB_ULONG vga_viewer_measure(const NB_CHAR *text, NB_INT length);

/* Draws the bevel of an expand icon anew: one pixel wide, light at the top and left, around a box
 * as wide as it is high; what is right of that stays blank. */
NB_VOID vga_swap_shadows(Pixmap pixmap, Pixel top_shadow, Pixel bottom_shadow);

/* Sizes, without a display. */

struct VGA_VIEWER_FONT_SIZE {
    NB_ULONG width, ascent, descent;
};
struct VGA_VIEWER_ICON_SIZE {
    NB_ULONG width, height;
};

/* Sets every size above from those of the font and of the two kinds of icon. */
NB_VOID vga_set_viewer_metrics(const VGA_VIEWER_FONT_SIZE *font, const VGA_VIEWER_ICON_SIZE *icon,
                               const VGA_VIEWER_ICON_SIZE *expand_icon);

#endif
