/* Memory that the toolkit itself loses, a few bytes at a place where nothing else does what is
 * wanted. While an object of this class lives, a build that looks for leaks does not count them. */
#ifndef LIBRARYLEAKS_H
#define LIBRARYLEAKS_H

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
using VGA_LIBRARY_LEAKS = __lsan::ScopedDisabler;
#else
struct VGA_LIBRARY_LEAKS {
    VGA_LIBRARY_LEAKS() {} /* or it would be an unused variable */
};
#endif

#endif
