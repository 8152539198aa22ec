/* What the resource of a line is in, as far as it is told at a glance, counted and searched for. */
#ifndef LINESTATE_H
#define LINESTATE_H

#include "nbtypes.h"

enum VGA_LINE_STATE : NB_UCHAR {
    VGA_LINE_NO_STATE, /* a definition, a title */
    VGA_LINE_ACTIVE,   /* up, or ready to be used */
    VGA_LINE_CHANGING, /* on the way up or down */
    VGA_LINE_INACTIVE, /* down because nobody started it, or somebody stopped it */
    VGA_LINE_FAILED,   /* down or out of reach although it should not be */
    VGA_LINE_STATES
};

#endif
