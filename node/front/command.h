/* snanode's command line.  The process of a node is this program again, with --serve and its socket
 * as descriptor 3; so whatever program calls this for a domain must call it for --serve, too. */
#ifndef COMMAND_H
#define COMMAND_H

namespace node {

/* Does what the arguments say; returns the exit status: 0, 1 when it could not be done (the reason
 * is on standard error), 2 for a usage error. */
int run_snanode(int argc, char **argv);

} // namespace node

#endif
