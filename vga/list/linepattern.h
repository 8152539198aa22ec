/* What lines are searched for and filtered by: patterns, tried on the folded text of a line.
 *
 * A pattern is a piece of text, which may stand anywhere in a line.  With a wildcard in it, it is
 * the whole name of a line, its first column: * stands for any characters, ? for one, [a-f7] for
 * one of these, [!a-f] for one of the others.  Capitals and small letters are the same everywhere.
 *
 * A folded text has small letters only, and a tab where a column begins, so that nothing that is
 * typed matches across columns. */
#ifndef LINEPATTERN_H
#define LINEPATTERN_H

#include "nbtypes.h"
#include <string>
#include <string_view>
#include <vector>

enum VGA_PATTERN_KIND : NB_UCHAR {
    VGA_PATTERN_ALL,      /* nothing was typed: every line */
    VGA_PATTERN_CONTAINS, /* lines with `text` in them */
    VGA_PATTERN_BEGINS,   /* names that begin with `text` */
    VGA_PATTERN_ENDS,
    VGA_PATTERN_LIKE,      /* names of the form that was typed */
    VGA_PATTERN_OPEN_SET,  /* faults: a [ without its ] */
    VGA_PATTERN_EMPTY_SET, /* nothing between the two */
    VGA_PATTERN_BAD_RANGE, /* a range that ends before it begins, as [9-0] */
    VGA_PATTERN_KINDS
};

/* One place of a name, or a run of them. */
struct VGA_PATTERN_PLACE {
    bool any_run = false; /* * */
    bool others = false;  /* none of the ranges; without ranges: any one */
    std::vector<std::pair<wchar_t, wchar_t>> ranges = {}; /* first and last */
};

struct VGA_PATTERN {
    VGA_PATTERN_KIND kind = VGA_PATTERN_ALL;
    std::string typed = {};                     /* as it was */
    std::string text = {};                      /* folded */
    std::vector<VGA_PATTERN_PLACE> places = {}; /* of VGA_PATTERN_LIKE */
};

/* What `typed`, in the locale's characters, means.  One with a fault matches nothing. */
VGA_PATTERN vga_parse_pattern(std::string_view typed);

/* The same without wildcards: lines that contain it. */
VGA_PATTERN vga_plain_pattern(std::string_view typed);

NB_USHORT vga_pattern_is_valid(const VGA_PATTERN &pattern);

/* 1 when every line that `pattern` matches is one that `before` matches: what did not match before
 * needs no second look. */
NB_USHORT vga_pattern_narrows(const VGA_PATTERN &pattern, const VGA_PATTERN &before);

NB_USHORT vga_pattern_matches(const VGA_PATTERN &pattern, std::string_view folded);

/* The folded text of a line with its column stops (create_text of viewer types). */
std::string vga_fold_line(const NB_CHAR *line);

#endif
