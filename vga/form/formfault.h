/* What is wrong with what an operator entered, or what is to be asked of one: the one type for
 * checks of a field, checks of a whole form, and questions. */
#ifndef FORMFAULT_H
#define FORMFAULT_H

#include "nbtypes.h"
#include <string>
#include <vector>

struct VGA_FAULT {
    NB_USHORT message = 0; /* of the catalogue; 0: all is well, there is nothing to ask */
    NB_SHORT field = -1;   /* its place in the form's table, where the keyboard goes; -1: stays */
    const NB_CHAR *help_key = nullptr; /* a literal; null: the message's own, or the dialog's */
    NB_USHORT loses = 0; /* flag, of a question: something is lost, so Return says Cancel */
    std::vector<std::string> arguments = {}; /* %1 and so on, four at most */

    explicit operator bool() const { return message != 0; }
};

#endif
