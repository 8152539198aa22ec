/* The manual page of quilctl. */
#ifndef CLI_MANUAL_H
#define CLI_MANUAL_H

#include <CLI/CLI.hpp>

namespace cli {

/* Prints the page for the formatter, from the commands of the program and the schemas.  Returns the
 * exit status. */
int print_manual(const CLI::App &app);

} // namespace cli

#endif
