/* Child processes and the signals that the program catches.
 *
 * The program has a child only for a moment: what it starts (a web browser) is the child of a child
 * that has ended, so that nothing is left to wait for.  Signals change no more than what stands
 * here. */
#ifndef CHILDPROCESS_H
#define CHILDPROCESS_H

#include "nbtypes.h"

/* The short-lived child, while there is one; 0: none. */
extern volatile NB_LONG gvga_web_temp_pid;

/* For SIGTERM: ignores SIGTERM and SIGCHLD from then on; the program goes on.
 * For SIGCHLD: takes leave of the short-lived child if it has ended, and only of that. */
NB_VOID vga_signal_catcher(NB_INT signal);

/* 0 when the command begins with the name of a program that is not there: no such file, or none in
 * PATH.  1 for one that is, and for whatever only the shell can tell. */
NB_USHORT vga_can_run(const NB_CHAR *command);

/* Runs a command with "/bin/bash -c" as nobody's child, deaf to the hang-up of the terminal, and
 * returns when it has been started: what becomes of it, even that there is no such command, is not
 * known here.  Of the signals that the program catches or blocks it inherits nothing.
 * Returns 1, or 0 with an exception record when there can be no more processes. */
NB_USHORT vga_run_detached(const NB_CHAR *command);

#endif
