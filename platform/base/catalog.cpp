#include "catalog.h"
#include "nbbase.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <nl_types.h>

namespace {

const nl_catd closed = reinterpret_cast<nl_catd>(-1);

// The number of a catalogue is its place here; the program opens one, sometimes two.
constexpr NB_INT most_open = 8;
nl_catd open_catalogs[most_open];
bool in_use[most_open];

NB_INT free_place() {
    for (NB_INT place = 0; place < most_open; place++) {
        if (!in_use[place]) {
            return place;
        }
    }
    return -1;
}

bool is_open(NB_INT catalog) {
    return catalog >= 0 && catalog < most_open && in_use[catalog];
}

nl_catd open_for(const char *locale) {
    char path[PATH_MAX];
    return base::catalog_path(locale, path, sizeof(path)) ? catopen(path, 0) : closed;
}

} // namespace

namespace base {

const char *catalog_locale() {
    const char *lang = std::getenv("LANG");
    // The value is one folder of the path; it must not lead out of it.
    return lang && *lang && !std::strchr(lang, '/') && lang[0] != '.' ? lang : "C";
}

bool catalog_path(const char *locale, char *path, size_t size) {
    const char *const rest = std::strstr(V0_CATALOG_TEMPLATE, "%L");
    const int folder = static_cast<int>(rest - V0_CATALOG_TEMPLATE);
    const int length = std::snprintf(path, size, "%s%.*s%s%s", nba_prefix(), folder,
                                     V0_CATALOG_TEMPLATE, locale, rest + 2);
    return length > 0 && static_cast<size_t>(length) < size;
}

} // namespace base

NB_USHORT v0_initialise_message_catalog(NB_INT *catalog) {
    *catalog = -1;
    const NB_INT place = free_place();
    if (place < 0) {
        return 0;
    }
    nl_catd opened = open_for(base::catalog_locale());
    if (opened == closed) {
        opened = open_for("C");
    }
    if (opened == closed) {
        return 0;
    }
    open_catalogs[place] = opened;
    in_use[place] = true;
    *catalog = place;
    return 1;
}

const NB_CHAR *v0_get_message(NB_INT catalog, NB_INT set, NB_INT message) {
    static const char missing[] = "";
    if (!is_open(catalog)) {
        return nullptr;
    }
    const char *text = catgets(open_catalogs[catalog], set, message, missing);
    return text == missing ? nullptr : text;
}

NB_VOID v0_close_message_catalog(NB_INT *catalog) {
    if (is_open(*catalog)) {
        catclose(open_catalogs[*catalog]);
        in_use[*catalog] = false;
    }
    *catalog = -1;
}

NB_USHORT v0_mb_strncpy(NB_CHAR *out, const NB_CHAR *text, NB_USHORT size) {
    if (size == 0) {
        return 0;
    }
    const size_t room = size - 1U;
    const size_t length = text ? strnlen(text, room + MB_LEN_MAX) : 0;
    std::mbstate_t state{};
    size_t end = 0;
    while (end < length) {
        size_t step = std::mbrlen(text + end, length - end, &state);
        if (step == static_cast<size_t>(-2)) {
            break; // the text itself ends within a character
        }
        if (step == static_cast<size_t>(-1) || step == 0) {
            step = 1; // no character of this locale: taken as it stands
            state = std::mbstate_t{};
        }
        if (end + step > room) {
            break;
        }
        end += step;
    }
    if (end > 0) {
        std::memcpy(out, text, end);
    }
    out[end] = '\0';
    return static_cast<NB_USHORT>(end);
}
