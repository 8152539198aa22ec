/* What the titles of lists say beside their words: how many lines of each kind, how many of them
 * are active and have failed, and what a filter shows.
 *
 * The numbers are kept by the finder of each list; the titles follow a moment later, so that a
 * burst of changes costs nothing. */
#ifndef FINDTITLES_H
#define FINDTITLES_H

#include "finder.h"
#include "listwindow.h"

/* Shows the counts of all lists now, or a moment later. */
NB_VOID vga_listw_show_counts(VGA_LIST_WINDOW *window);
NB_VOID vga_listw_counts_due(VGA_LIST_WINDOW *window);

/* The parts of a list's counts, the most important first: kinds of lines, how many of the first
 * kind are active, of the first two, and so on, then failed lines of any kind, and what is shown.
 * Without a display. */
struct VGA_LISTW_COUNTS {
    std::vector<std::string> kinds = {}, active = {};
    std::string failed = {}, shown = {};
};
VGA_LISTW_COUNTS vga_listw_counts_of(const VGA_VIEWER_ROOT *root);

/* The counts in words, the less the higher `step` is; "" at last. */
std::string vga_listw_count_text(const VGA_LISTW_COUNTS &counts, NB_USHORT step);

/* A filter in a few words: its pattern as it was typed, and its states. */
std::string vga_listw_filter_words(const VGA_FINDER_FILTER &filter);

#endif
