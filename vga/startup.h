/* Front end and back end: what must be there before the first window, and its end. */
#ifndef STARTUP_H
#define STARTUP_H

#include "nbtypes.h"

/* Messages, toolkit, resources, options, window descriptions.  `argc` and `argv` lose what the
 * toolkit and the program's own option take.  Returns 1, or 0 with the exit request made. */
NB_USHORT vga_initialise_frontend(NB_INT *argc, NB_CHAR **argv);
NB_VOID vga_terminate_frontend(NB_VOID);

/* The first complete model exists: the first window gets its contents, and comes to the front
 * before any message does.  Without a node a client/server domain requests its exit. */
NB_VOID vga_system_built(NB_VOID);

/* Scheduler hook, handles, verb queues, the empty model.  Returns as above. */
NB_USHORT vga_initialise_backend(NB_VOID);
NB_VOID vga_terminate_backend(NB_VOID);

/* Prints the usage text on standard output.  With `bad_argument_present` and a first argument left
 * that does not ask for help, a line that names it stands before.  Opens and closes the catalogue
 * itself; when that fails the exit request is made and the reason printed on standard error. */
NB_VOID vga_print_usage(NB_USHORT bad_argument_present, NB_CHAR **argv);

/* Prints the usage and returns 1 when an argument is exactly "-h". */
NB_USHORT vga_check_print_usage(const NB_INT *argc, NB_CHAR **argv);

/* Puts the program's own toolkit arguments behind argv[0].  The new vector is from malloc; without
 * memory it is the old one. */
NB_VOID vga_add_params_to_command_line(NB_INT argc, NB_CHAR **argv, NB_INT *new_argc,
                                       NB_CHAR ***new_argv);

/* LANG and LC_CTYPE as the message catalogue and the window descriptions need them: the first five
 * characters. */
NB_VOID vga_set_locale_environment(NB_VOID);

#endif
