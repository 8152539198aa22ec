/* `snanode --copies` and `snanode --restore`: what is done with copies of stores while the node
 * software does not run. */
#ifndef RESTORE_H
#define RESTORE_H

#include <string>

namespace node {

/* Prints the copies of a domain, newest first.  Returns the exit status. */
int print_copies(const std::string &state_folder);

/* Puts the stores of that copy (the name of a folder, or "last": the newest of a day) in place of
 * those that are there, which are kept as a copy themselves.  A copy is checked before anything is
 * moved; a store that it does not have stays.  Refused while the node software runs.  Prints what
 * it did, or to standard error what is wrong.  Returns the exit status. */
int restore_copy(const std::string &state_folder, const std::string &name);

} // namespace node

#endif
