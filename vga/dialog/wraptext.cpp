#include "wraptext.h"
#include <climits>
#include <cstring>
#include <cwchar>

/* The bytes and columns of the character at `text`; a byte that is none counts as a column. */
static size_t character_at(const NB_CHAR *text, mbstate_t *state, NB_USHORT *columns) {
    wchar_t character;
    size_t bytes = mbrtowc(&character, text, strlen(text), state);
    if (bytes == 0 || bytes > MB_LEN_MAX) {
        *state = mbstate_t();
        *columns = 1;
        return 1;
    }
    int width = wcwidth(character);
    *columns = width > 0 ? static_cast<NB_USHORT>(width) : 0;
    return bytes;
}

NB_CHAR *vga_wrap_text(const NB_CHAR *text, NB_USHORT width) {
    NB_CHAR *out = strdup(text);
    if (out == nullptr) {
        return nullptr;
    }
    mbstate_t state{};
    NB_CHAR *blank = nullptr; /* the last one in the line, where it can be broken */
    NB_ULONG column = 0;      /* behind the character that is looked at */
    NB_ULONG after_blank = 0; /* columns since that blank */
    NB_USHORT columns;
    for (NB_CHAR *at = out; *at != '\0';) {
        size_t bytes = character_at(at, &state, &columns);
        column += columns;
        after_blank += columns;
        if (*at == '\n') {
            blank = nullptr;
            column = 0;
        } else if (*at == ' ') {
            /* A blank at the edge itself needs no room. */
            if (column > width + 1U && blank != nullptr) {
                *blank = '\n';
                column = after_blank;
            }
            blank = at;
            after_blank = 0;
        } else if (column > width && blank != nullptr) {
            *blank = '\n';
            blank = nullptr;
            column = after_blank;
        }
        at += bytes;
    }
    return out;
}
