/* Session limits: the model half of the verb that sets them. */
#ifndef SESSIONLIMITS_H
#define SESSIONLIMITS_H

#include "verbqueue.h"

/* A session limit verb succeeded, the program's own or the copy of another administrator's: the
 * record of the mode in use takes the limits over, its line is redrawn, and every open dialog is
 * told.  Nothing for a verb that failed, and for a mode that the model does not have. */
NB_VOID vga_process_session_limit(const VGA_PROCESS_STATE *work);

#endif
