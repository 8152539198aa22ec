/* Why a verb failed, in words. */
#ifndef VERBERROR_H
#define VERBERROR_H

#include "nof.h"
#include "nofrec.h"

#define VGA_VERB_ERROR_SIZE 1024

/* The reason why a verb failed, for message 167 and its like, and the key of its help (a literal).
 * The codes are as the control block holds them.  Returns VGA_VERB_ERROR_SIZE bytes from malloc,
 * the caller's; null, with exit code 1 requested, without memory. */
NB_CHAR *vga_get_verb_error_message(NB_USHORT opcode, NB_USHORT primary_rc, NB_ULONG secondary_rc,
                                    const NB_CHAR **help_key);

/* The answer to a verb that was purged because its node went: no more than the header. */
NAP_VCB vga_purged_answer(NB_USHORT opcode);

#endif
