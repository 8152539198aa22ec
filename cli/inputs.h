/* A main loop of poll() for the inputs of the base library: `add` and `remove` are for
 * vpm_asm_use_xt_sched. */
#ifndef CLI_INPUTS_H
#define CLI_INPUTS_H

#include "nbbase.h"

namespace cli::inputs {

unsigned long add(NB_VOID *context, NB_INT fd, NB_VOID *condition, NB_INPUT_PROC proc,
                  NB_VOID *data);
NB_VOID remove(unsigned long id);

/* Waits for at most `ms` (-1: for ever) and calls those that are ready.  False when there is no
 * input to wait for: nothing will come any more. */
bool take(int ms);

} // namespace cli::inputs

#endif
