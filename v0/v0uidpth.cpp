#include "v0uidpth.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "nbbase.h"

static const NB_CHAR uidpath_name[] = "UIDPATH";

NB_VOID v0_set_uidpath(const NB_CHAR *directory, const NB_CHAR *uid_class,
                       const NB_CHAR *application_class, NB_VOID *display,
                       V0_GET_DEFAULT get_default) {
    if (std::getenv(uidpath_name) != nullptr) {
        return;
    }
    const NB_CHAR *language = std::getenv("LANG");
    if (language == nullptr && get_default != nullptr) {
        language = get_default(display, application_class, "xnlLang");
    }
    NB_CHAR v0_uidpath[V0_MAX_UIDPATH];
    int length =
        language != nullptr
            ? std::snprintf(v0_uidpath, sizeof v0_uidpath, "%s=%s/%s/uid/%s/%%U:%s/uid/%s/%%U",
                            uidpath_name, directory, language, uid_class, directory, uid_class)
            : std::snprintf(v0_uidpath, sizeof v0_uidpath, "%s=%s/uid/%s/%%U", uidpath_name,
                            directory, uid_class);
    if (length < 0 || length >= V0_MAX_UIDPATH) {
        v0_assert("v0uidpth", __LINE__, "NB_STRLEN(v0_uidpath) < V0_MAX_UIDPATH");
        return;
    }
    setenv(uidpath_name, v0_uidpath + sizeof uidpath_name, 1);
}
