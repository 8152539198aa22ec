/* What stops with something: everything active that depends on it, as the model knows it now. */
#ifndef STARTSTOPEFFECTS_H
#define STARTSTOPEFFECTS_H

#include "startstop.h"

/* Active ones, those that are to be stopped not among them.  Sessions are those of LU 6.2 and those
 * of dependent LUs with their applications. */
struct VGA_EFFECTS {
    NB_ULONG ports, links, pus, lus, sessions;
};

/* What stops with all of them.  REQUIRES: none of them depends on another. */
VGA_EFFECTS vga_effects_of_stop(const std::vector<VGA_RESOURCE> &resources);

/* "3 link stations, 2 PUs, 60 LUs", in the locale's characters; without the sessions, and empty
 * when there is nothing. */
std::string vga_effects_in_words(const VGA_EFFECTS &effects);

#endif
