/* The X library's own function of a name that the program has replaced.  Null where there is none,
 * as in a program that has the library linked into itself. */
#ifndef LIBRARYFUNCTION_H
#define LIBRARYFUNCTION_H

#include "nbbase.h"
#include <dlfcn.h>

template <class Function> Function *vga_library_function(const NB_CHAR *name) {
    auto *const function = reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
    NB_ASSERT(function != nullptr);
    return function;
}

/* Calls it; 0, "failed", where there is none. */
template <class... Arguments> int vga_ask_library(const NB_CHAR *name, Arguments... arguments) {
    auto *const function = vga_library_function<int(Arguments...)>(name);
    return function != nullptr ? function(arguments...) : 0;
}

#endif
