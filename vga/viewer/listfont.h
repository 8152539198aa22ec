/* The font that lists are drawn in: a scalable one of fixed pitch, or, while none is open, the font
 * set of graphics.h or the font of the drawing context.
 *
 * With a scalable font every character stands in a cell as wide as "W", a wide one in two.  What
 * the font has not comes from others of the system, made small enough for its cells.
 *
 * OWNS: the fonts, from vga_open_list_font to vga_close_list_font. */
#ifndef LISTFONT_H
#define LISTFONT_H

#include "graphics.h"
#include <X11/Xft/Xft.h>
#include <vector>

/* Opens the font of a Fontconfig pattern ("DejaVu Sans Mono:size=10"), on the widget's screen; a
 * pattern without a size gets that one, in points.
 * Returns 1; 0, and nothing is open, where the display cannot draw it well (no Render extension,
 * fewer colours than letters have shades) or the pattern leads to no font of fixed pitch. */
NB_USHORT vga_open_list_font(Widget widget, const NB_CHAR *pattern, double points);
NB_VOID vga_close_list_font(NB_VOID);

/* 1, and its size, while a scalable font is open. */
NB_USHORT vga_list_font_size(VGA_VIEWER_FONT_SIZE *size);

/* Pixels of `length` bytes of text in it.  REQUIRES: it is open. */
NB_ULONG vga_list_font_measure(const NB_CHAR *text, NB_INT length);

/* What a scalable font draws into a pixmap with; null while none is open.  The caller destroys it
 * before the pixmap. */
XftDraw *vga_list_canvas(Display *display, Pixmap pixmap);

/* Puts texts into a drawable, in the foreground of `gc`.  Those in a scalable font are kept until
 * draw(), so that a page of them is one request. */
class VGA_LIST_PEN {
public:
    VGA_LIST_PEN(Display *display, Drawable drawable, XftDraw *canvas, GC gc)
        : display_(display), drawable_(drawable), canvas_(canvas), gc_(gc) {}

    NB_VOID put(NB_INT x, NB_INT baseline, const NB_CHAR *text, NB_INT length);
    NB_VOID draw();

private:
    Display *display_;
    Drawable drawable_;
    XftDraw *canvas_;
    GC gc_;
    std::vector<XftGlyphFontSpec> glyphs_;
};

#endif
