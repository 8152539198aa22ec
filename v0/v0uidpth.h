/* Tells the UID file loader where the program's UID files are, through UIDPATH in the environment.
 * A path that the user has set stays as it is.
 *
 * This library knows no X: the caller passes the function that reads a display's defaults (a wrap
 * of XGetDefault) together with the display that it is given. */
#ifndef V0UIDPTH_H
#define V0UIDPTH_H

#include "nbtypes.h"

NB_EXTERN_C_BEGIN

#define V0_MAX_UIDPATH 200 /* "UIDPATH=<value>" with its terminator */

/* Returns the display's default for an option of a program, or null; the text stays its own. */
typedef const NB_CHAR *(*V0_GET_DEFAULT)(NB_VOID *display, const NB_CHAR *program,
                                         const NB_CHAR *option);

/* Does nothing when UIDPATH is set, even to nothing.  Else sets it to
 *   <directory>/<language>/uid/<uid_class>/%U:<directory>/uid/<uid_class>/%U
 * where the language is LANG, or without one the default "xnlLang" of `application_class`; with
 * neither, the value is the second half only.  `display` is only handed to `get_default`, which can
 * be null and is asked only without LANG.
 * REQUIRES: "UIDPATH=<value>" is shorter than V0_MAX_UIDPATH; a longer one is reported and not
 * set. */
NB_VOID v0_set_uidpath(const NB_CHAR *directory, const NB_CHAR *uid_class,
                       const NB_CHAR *application_class, NB_VOID *display,
                       V0_GET_DEFAULT get_default);

NB_EXTERN_C_END

#endif
