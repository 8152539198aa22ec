#include "nbbase.h"

#include <climits>
#include <cstdio>
#include <cstring>
#include <memory>
#include <strings.h>

namespace {

struct Closer {
    void operator()(FILE *file) const { std::fclose(file); }
};

// Splits "key = value" in place; returns the value, or null for any other line.
char *value_of(char *line, const char *key) {
    static const char blanks[] = " \t\r\n";
    char *const equals = std::strchr(line, '=');
    if (!equals) {
        return nullptr;
    }
    *equals = '\0';
    char *const name = line + std::strspn(line, blanks);
    name[std::strcspn(name, blanks)] = '\0';
    char *const value = equals + 1 + std::strspn(equals + 1, blanks);
    value[std::strcspn(value, blanks)] = '\0';
    return std::strcmp(name, key) == 0 ? value : nullptr;
}

} // namespace

NB_USHORT vsm_is_client_server(NB_VOID) {
    char path[PATH_MAX];
    std::snprintf(path, sizeof(path), "%s/etc/domain", nba_prefix());
    std::unique_ptr<FILE, Closer> file(std::fopen(path, "re"));
    char line[256];
    while (file && std::fgets(line, sizeof(line), file.get())) {
        if (const char *value = value_of(line, "client_server")) {
            return strcasecmp(value, "yes") == 0 ? 1 : 0;
        }
    }
    return 0;
}
