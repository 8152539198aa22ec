/* What came of the operator's changes, and what failed by itself: told by whoever knows it, kept
 * for the program's life in a bounded history, and shown by all windows that it concerns (the hook
 * `outcome`).  Texts are in the locale's characters; times are those at which something was told.
 */
#ifndef OUTCOMES_H
#define OUTCOMES_H

#include "nbtypes.h"
#include <ctime>
#include <deque>
#include <string>

#define VGA_OUTCOMES_KEPT 500

struct VGA_OUTCOME {
    NB_ULONG number; /* from 1; no other has it, also when this one is forgotten */
    time_t time;
    std::string node; /* its name; empty: it is the domain's */
    std::string text; /* in its first line what happened, in further ones why */
    NB_ULONG failed;  /* so many things failed; 0: it is good news */
};

/* Adds one to the history, in place of the oldest when that is full, and tells the windows. Nothing
 * once the program closes: what is cut off then is no failure. */
NB_VOID vga_tell_outcome(const std::string &node, const std::string &text, NB_ULONG failed = 0);

/* The history, oldest first; and an end to it. */
const std::deque<VGA_OUTCOME> &vga_outcomes(NB_VOID);
NB_VOID vga_forget_outcomes(NB_VOID);

/* "12:04:31 Link station ETH1 defined." */
std::string vga_outcome_line(const VGA_OUTCOME &outcome);

#endif
