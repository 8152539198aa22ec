/* What may be typed: the rules of the fields' filters, without a widget or a display.
 *
 * A filter is asked before a field changes, by typing, pasting, cutting or dragging.  It lets the
 * whole change happen, with the new text in upper case where its rule says so, or refuses all of
 * it; nothing is trimmed.  The callbacks that attach filters to fields are in filtercallbacks.h.
 *
 * Texts are in the locale's character set.  Classes and upper case are those of the locale, for
 * characters of one byte; a character of several bytes is no letter, no digit and has no case, so
 * only fields for free text take it. */
#ifndef FILTERRULES_H
#define FILTERRULES_H

#include "nbtypes.h"

enum VGA_FILTER : NB_USHORT {
    /* What each character may be. */
    VGA_FILTER_TP_NAME,       /* all but white space */
    VGA_FILTER_IP_NAME,       /* letters, digits, - _ . : */
    VGA_FILTER_IP_ADDR,       /* digits and periods */
    VGA_FILTER_ALPHANUM,      /* letters and digits */
    VGA_FILTER_NUM,           /* digits */
    VGA_FILTER_SIGNED_NUM,    /* digits, and a minus sign in front of them */
    VGA_FILTER_CAPS_ALPHANUM, /* letters, turned to upper case, and digits */
    VGA_FILTER_HEX,           /* hexadecimal digits, turned to upper case */
    VGA_FILTER_ALL_CAPS,      /* everything, turned to upper case: never refuses */
    VGA_FILTER_HEX_PWD,       /* as VGA_FILTER_HEX, for passwords */
    VGA_FILTER_FILENAME,      /* from code 32 up, no quote, backslash or slash */
    VGA_FILTER_PATHNAME,      /* the same, and slashes */

    /* Names of the node's character set.  What is inserted has at most 8 characters; the first
     * character of the field must be one that a name can begin with, also after a deletion. */
    VGA_FILTER_EBCDIC,           /* type A, turned to upper case */
    VGA_FILTER_EBCDIC_LOWER,     /* type A in either case, which stays */
    VGA_FILTER_EBCDIC_AE,        /* type AE, as typed */
    VGA_FILTER_EBCDIC_AE_PWD,    /* the same with up to 10 characters */
    VGA_FILTER_MODE_NAME,        /* type A in upper case, blanks at the end */
    VGA_FILTER_LU_NAME_TEMPLATE, /* type A in upper case, periods behind the first character */
    VGA_FILTER_COUNT
};

/* A change that is about to happen: characters `start` up to `end` of the field give way to `text`.
 * A deletion has no text. */
struct VGA_CHANGE {
    const NB_CHAR *field; /* the text before the change, terminated */
    NB_ULONG start;       /* in characters of the field; beyond its end means its end */
    NB_ULONG end;
    NB_CHAR *text;   /* `length` bytes, not terminated; may be null when that is 0 */
    NB_ULONG length; /* in bytes */
};

/* Returns 1 when the filter lets the change happen; `text` is then in upper case where the filter
 * says so.  Returns 0, with nothing changed, when it refuses it.
 * REQUIRES: a filter of the list (an assertion; the answer is then 1). */
NB_USHORT vga_check_change(VGA_FILTER filter, const VGA_CHANGE *change);

/* The test of file names, for names that come from elsewhere: 1 when each of the `length` bytes
 * belongs to a character that a file name, or with `slashes` a path name, may have. */
NB_USHORT vga_check_filename_chars(const NB_CHAR *text, NB_ULONG length, NB_USHORT slashes);

/* Numbers. */

#define VGA_NUMBER_SIZE 51 /* a number field's text that is looked at, with its terminator */

enum VGA_NUMBER_STATE : NB_USHORT {
    VGA_NUMBER_EMPTY,        /* no text, or blanks only */
    VGA_NUMBER_OUT_OF_RANGE, /* below, above, or no decimal number */
    VGA_NUMBER_GOOD,
};

/* Reads a decimal number with blanks around it at most, and compares it with [min, max].  Sets
 * *value for a good one only. */
VGA_NUMBER_STATE vga_read_number(const NB_CHAR *text, int64_t min, int64_t max, int64_t *value);

#define VGA_NODE_ID_WIDTH     4 /* bytes */
#define VGA_BLOCK_NUMBER_SIZE 4 /* texts, with their terminators */
#define VGA_PU_ID_SIZE        6

/* Reads a node identifier: exactly 3 hexadecimal digits of block number and 5 of PU identifier.
 * The 4 bytes of `node_id` are most significant first; they are set for a good one only.  Both
 * texts empty are no identifier. */
enum VGA_NODE_ID_STATE : NB_USHORT {
    VGA_NODE_ID_EMPTY,
    VGA_NODE_ID_BAD_BLOCK,
    VGA_NODE_ID_BAD_PUID,
    VGA_NODE_ID_GOOD,
};
VGA_NODE_ID_STATE vga_read_node_id(const NB_CHAR *block, const NB_CHAR *puid, NB_UCHAR *node_id);

/* Writes the 17 bytes of a fully qualified name in EBCDIC, blank-padded, from two texts of which at
 * most 8 bytes each are read.  Returns 1.  Returns 0, with 17 blanks, when one of them is empty;
 * with `lenient`, only when there is a name without a network identifier: that alone stands as it
 * is, and two empty texts are a good name of blanks. */
NB_USHORT vga_make_fq_name(const NB_CHAR *network_id, const NB_CHAR *name, NB_USHORT lenient,
                           NB_UCHAR *fq_name);

#endif
