/* Columns in a list or label of a proportional font: the texts of a row with column stops between
 * them, and the stops as pixels.  Lengths are pixels of the font that the widget is drawn with;
 * texts are in the locale's character set. */
#ifndef COLUMNTEXT_H
#define COLUMNTEXT_H

#include "holders.h"

#include <span>
#include <string>
#include <vector>

/* Where the columns behind the first begin in the texts that the widget, a list or label, shows
 * from now on: in ascending order. */
NB_VOID vga_set_column_stops(Widget widget, const std::vector<NB_USHORT> &stops);

/* The row with a column stop between each two texts.  What would be a line end in it is a blank. */
VGA_STRING vga_column_text(std::span<const std::string> cells);

NB_USHORT vga_text_width(Widget widget, const std::string &text);

/* The text itself, or its beginning and "..." when it is wider than `width`. */
std::string vga_cut_text(Widget widget, const std::string &text, NB_USHORT width);

#endif
