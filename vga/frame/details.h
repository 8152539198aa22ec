/* What a box says behind "Details": the facts for whoever looks into it, a line each, in words and
 * in the numbers that the problem log has, too.  No line feed at the end. */
#ifndef DETAILS_H
#define DETAILS_H

#include "nof.h"
#include "nofrec.h"
#include <string>

/* Of a verb that failed: its name and its return codes; a code without words is shown in
 * hexadecimal only.  `resource` and `node`: what it was about and where it went; empty: nothing is
 * said. */
std::string vga_verb_details(const NAP_VCB &header, const std::string &resource,
                             const std::string &node);

/* The name of the resource that a define, delete, start or stop verb is about, its parts with
 * commas between; empty for another verb. REQUIRES: the block has the length that the verb table
 * states. */
std::string vga_verb_resource(const NAP_VCB *vcb);

/* Of an answer NAP_UNAVAILABLE: the socket, why, and how the node software is started.  The line is
 * the same for a terminal, with a line feed. */
std::string vga_unreachable_details(const NOF_FAILURE &failure);
std::string vga_unreachable_line(const NOF_FAILURE &failure);

/* Of a request to exit: the place in the sources that made it, and the problem log. */
std::string vga_place_details(const NB_CHAR *file, NB_INT line);

/* The file that the problem log goes to, or words for standard error. */
std::string vga_log_name(NB_VOID);

#endif
