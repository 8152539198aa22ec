#include "nbbase.h"

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

struct Prefix {
    char text[NB_MAX_PREFIX + 1];

    Prefix() {
        const char *wish = std::getenv("SNA_PREFIX");
        size_t length = wish ? std::strlen(wish) : 0;
        const bool absolute = length > 0 && wish[0] == '/';
        while (length > 0 && wish[length - 1] == '/') {
            length--;
        }
        if (!absolute || length > NB_MAX_PREFIX) {
            wish = NB_DEFAULT_PREFIX;
            length = std::strlen(wish);
        }
        std::memcpy(text, wish, length);
        text[length] = '\0';
    }
};

// A search path takes ':' as its separator and '%' as the start of a substitution.
std::string escaped(const char *folder) {
    std::string text;
    for (; *folder; folder++) {
        if (*folder == ':' || *folder == '%') {
            text += '%';
        }
        text += *folder;
    }
    return text;
}

std::string search_entries() {
    // From the most special to the most general, in the order of the toolkit's own default.
    static const char *const forms[] = {"/%L/%T/%N%C%S", "/%l/%T/%N%C%S", "/%T/%N%C%S",
                                        "/%L/%T/%N%S",   "/%l/%T/%N%S",   "/%T/%N%S"};
    const std::string folder = escaped(nba_prefix()) + "/lib/X11";
    std::string text;
    for (const char *form : forms) {
        text += (text.empty() ? "" : ":") + folder + form;
    }
    return text;
}

} // namespace

const NB_CHAR *nba_prefix(NB_VOID) {
    static const Prefix prefix;
    return prefix.text;
}

NB_VOID nba_set_app_defaults_path(NB_VOID) {
    try {
        const std::string entries = search_entries();
        const char *now = std::getenv("XFILESEARCHPATH");
        // The toolkit expands %D to its built-in path.
        std::string path = now && *now ? now : "%D";
        if (path.find(entries) != std::string::npos) {
            return;
        }
        path += ":" + entries;
        setenv("XFILESEARCHPATH", path.c_str(), 1);
    } catch (const std::bad_alloc &) {
        // Without the folder the program runs on its fallback resources.
    }
}
