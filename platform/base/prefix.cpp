#include "nbbase.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// What SNA_PREFIX says, without slashes at its end.
std::string_view wished() {
    const char *const value = std::getenv("SNA_PREFIX");
    std::string_view wish = value ? value : "";
    while (wish.size() > 1 && wish.back() == '/') {
        wish.remove_suffix(1);
    }
    return wish;
}

// Null, or why it cannot be used.
const char *fault_of(std::string_view wish) {
    struct stat facts;
    if (wish.empty()) {
        return nullptr;
    }
    if (wish[0] != '/') {
        return "it does not begin with a slash";
    }
    if (wish.size() > NB_MAX_PREFIX) {
        return "it has more than 60 characters";
    }
    const std::string path(wish);
    if (stat(path.c_str(), &facts) != 0) {
        return std::strerror(errno);
    }
    if (!S_ISDIR(facts.st_mode)) {
        return "it is not a folder";
    }
    return access(path.c_str(), R_OK | X_OK) == 0 ? nullptr : std::strerror(errno);
}

static_assert(NB_MAX_PREFIX == 60);

struct Prefix {
    char text[NB_MAX_PREFIX + 1];

    Prefix() {
        const std::string_view wanted = wished();
        const char *wish = wanted.data();
        size_t length = wanted == "/" ? 0 : wanted.size();
        if (wanted.empty() || wanted[0] != '/' || length > NB_MAX_PREFIX) {
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

NB_USHORT nba_check_prefix(const NB_CHAR *program) {
    try {
        const std::string_view wish = wished();
        const char *const fault = fault_of(wish);
        if (fault) {
            std::fprintf(
                stderr,
                "%s: SNA_PREFIX names the installation \"%.*s\", which cannot be used: %s. "
                "Correct it, or take it out of the environment to use %s.\n",
                program, static_cast<int>(wish.size()), wish.data(), fault, NB_DEFAULT_PREFIX);
        }
        return fault == nullptr;
    } catch (const std::bad_alloc &) {
        return 0;
    }
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
