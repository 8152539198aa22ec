#include "linelayout.h"
#include <algorithm>
#include <climits>
#include <cstring>

namespace {

/* A text is at most VGA_VIEWER_MAX_TEXT_LENGTH long, so no column further out means anything. */
constexpr NB_ULONG max_column = 4 * VGA_VIEWER_MAX_TEXT_LENGTH;

bool is_digit(NB_CHAR character) {
    return character >= '0' && character <= '9';
}

/* One byte and one column in every locale, where a character begins. */
bool is_plain(NB_CHAR character) {
    return character >= ' ' && character <= '~';
}

/* The first column stop of the text, null without one. */
const NB_CHAR *find_stop(const NB_CHAR *text) {
    while ((text = strstr(text, "%t")) != nullptr && !is_digit(text[2])) {
        ++text;
    }
    return text;
}

/* Reads a stop; returns what stands behind it. */
const NB_CHAR *read_stop(const NB_CHAR *stop, NB_ULONG *column) {
    *column = 0;
    for (stop += 2; is_digit(*stop); ++stop) {
        *column = std::min(max_column, *column * 10 + static_cast<NB_ULONG>(*stop - '0'));
    }
    return *stop == '%' ? stop + 1 : stop;
}

/* Puts the mark of a cut, one column wide, in the place of a text's bytes from `at` to `end`.
 * Returns where the line goes on behind it. */
NB_CHAR *put_mark(NB_CHAR *at, const NB_CHAR *end) {
    NB_CHAR mark[MB_LEN_MAX];
    mbstate_t state = {};
    size_t bytes = wcrtomb(mark, L'\u2026', &state);
    if (bytes == static_cast<size_t>(-1) || wcwidth(L'\u2026') != 1) {
        mark[0] = '>';
        bytes = 1;
    }
    memmove(at + bytes, end, strlen(end) + 1);
    memcpy(at, mark, bytes);
    return at + bytes;
}

} // namespace

NB_USHORT vga_viewer_mark_cuts(NB_CHAR *text) {
    constexpr NB_ULONG blank = 1, mark = 1;
    NB_USHORT any = 0;
    NB_ULONG column = 0;
    for (NB_CHAR *stop = nullptr; (stop = const_cast<NB_CHAR *>(find_stop(text))) != nullptr;) {
        NB_ULONG next = 0;
        NB_CHAR *behind = const_cast<NB_CHAR *>(read_stop(stop, &next));
        const NB_ULONG room = next > column + blank ? next - column - blank : 0;
        const NB_INT length = static_cast<NB_INT>(stop - text);
        // A column with no room for a mark is left to vga_viewer_next_run.
        if (room > mark && vga_viewer_cut(text, length, room) < length) {
            const NB_CHAR *const moved =
                put_mark(text + vga_viewer_cut(text, length, room - mark), stop);
            behind += moved - stop;
            any = 1;
        }
        text = behind;
        column = next;
    }
    return any;
}

NB_USHORT vga_viewer_next_run(const NB_CHAR **text, NB_ULONG *column, VGA_VIEWER_RUN *run) {
    if (*text == nullptr) {
        return 0;
    }
    const NB_CHAR *const stop = find_stop(*text);
    run->text = *text;
    run->column = *column;
    run->last = stop == nullptr;
    if (stop == nullptr) {
        run->length = run->whole = static_cast<NB_INT>(strlen(*text));
        *text = nullptr;
        return 1;
    }
    run->length = run->whole = static_cast<NB_INT>(stop - *text);
    *text = read_stop(stop, column);
    const NB_ULONG room = *column > run->column ? *column - run->column : 0;
    run->length = vga_viewer_cut(run->text, run->length, room);
    return 1;
}

NB_USHORT VGA_VIEWER_CHARACTERS::next(VGA_VIEWER_CHARACTER *character) {
    if (left_ <= 0) {
        return 0;
    }
    if (is_plain(*text_)) {
        *character = {static_cast<wchar_t>(*text_), 1, 1};
    } else {
        wchar_t code = L'\0';
        const size_t bytes = mbrtowc(&code, text_, static_cast<size_t>(left_), &state_);
        if (bytes == 0 || bytes > static_cast<size_t>(left_)) {
            state_ = mbstate_t(); // no character of the locale: a byte is shown as one
            *character = {static_cast<unsigned char>(*text_), 1, 1};
        } else {
            *character = {code, static_cast<NB_INT>(bytes),
                          static_cast<NB_USHORT>(std::max(wcwidth(code), 0))};
        }
    }
    text_ += character->length;
    left_ -= character->length;
    return 1;
}

NB_ULONG vga_viewer_columns(const NB_CHAR *text, NB_INT length) {
    VGA_VIEWER_CHARACTERS characters(text, length);
    VGA_VIEWER_CHARACTER character;
    NB_ULONG columns = 0;
    while (characters.next(&character) != 0) {
        columns += character.columns;
    }
    return columns;
}

NB_INT vga_viewer_cut(const NB_CHAR *text, NB_INT length, NB_ULONG columns) {
    // No character takes more columns than it has bytes.
    if (static_cast<NB_ULONG>(length) <= columns) {
        return length;
    }
    VGA_VIEWER_CHARACTERS characters(text, length);
    VGA_VIEWER_CHARACTER character;
    NB_INT cut = 0;
    while (characters.next(&character) != 0 && character.columns <= columns) {
        columns -= character.columns;
        cut += character.length;
    }
    return cut;
}

NB_VOID vga_viewer_fit(VGA_VIEWER_FIT *fit) {
    // Each bar takes room from the other direction.
    fit->hbar = fit->content_width > fit->full_width;
    fit->vbar = fit->lines_height + (fit->hbar != 0 ? fit->hbar_height : 0) > fit->full_height;
    if (fit->vbar != 0) {
        fit->hbar = fit->content_width + fit->vbar_width > fit->full_width;
    }
}

NB_ULONG vga_viewer_content_height(NB_ULONG lines_height, NB_ULONG window_height,
                                   NB_ULONG item_height) {
    return lines_height > window_height ? lines_height + item_height : lines_height;
}

NB_ULONG vga_viewer_clamp(int64_t offset, NB_ULONG content, NB_ULONG window, NB_ULONG step) {
    const int64_t limit = content > window ? content - window : 0;
    const int64_t inside = std::clamp<int64_t>(offset, 0, limit);
    return static_cast<NB_ULONG>(step != 0 ? inside - inside % step : inside);
}
