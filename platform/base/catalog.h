/* Where the message catalogue is looked for: shared by the code that opens it and by the log, which
 * names the file that was missing. */
#ifndef BASE_CATALOG_H
#define BASE_CATALOG_H

#include <cstddef>

namespace base {

/* Returns the locale that the environment's LANG names, "C" when it names none. */
const char *catalog_locale();

/* Writes the NUL-terminated path of a locale's catalogue.  Returns false when it does not fit. */
bool catalog_path(const char *locale, char *path, size_t size);

} // namespace base

#endif
