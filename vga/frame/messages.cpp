#include "messages.h"
#include "globals.h"
#include "message_help.h"
#include "nbproblem.h"
#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

NB_INT gvga_catalog = -1;
NB_INT gvga_setid = -1;
const NB_CHAR *gvga_messages[VGA_MESSAGE_COUNT + 1];
NB_CHAR *gvga_message_memory;

namespace {

constexpr NB_ULONG memory_step = 4096;

NB_USHORT catalogue_failed(nb_problem_detail detail) {
    nba_pd_print_problem(NB_PD_CATALOGUE, detail, nullptr);
    VGA_EXIT(VGA_EXIT_START_UP, 0);
    return 0;
}

/* Texts lie back to back in one growing block, so they are kept as offsets until all are there. */
class MESSAGE_BLOCK {
public:
    ~MESSAGE_BLOCK() { free(memory); }

    NB_USHORT add(NB_USHORT message, const NB_CHAR *text) {
        NB_ULONG length = static_cast<NB_ULONG>(strlen(text)) + 1;
        while (used + length > size) {
            auto *larger = static_cast<NB_CHAR *>(realloc(memory, size + memory_step));
            if (larger == nullptr) {
                return 0;
            }
            memory = larger;
            size += memory_step;
        }
        memcpy(memory + used, text, length);
        offsets[message] = used;
        used += length;
        return 1;
    }

    NB_VOID hand_over() {
        for (NB_USHORT message = 1; message <= VGA_MESSAGE_COUNT; message++) {
            gvga_messages[message] = memory + offsets[message];
        }
        gvga_message_memory = memory;
        memory = nullptr;
    }

private:
    NB_CHAR *memory = nullptr;
    NB_ULONG size = 0;
    NB_ULONG used = 0;
    std::array<NB_ULONG, VGA_MESSAGE_COUNT + 1> offsets{};
};

/* One argument, already as the text that stands for it. */
struct ARGUMENT {
    std::string_view text;
    NB_CHAR number[16];
};

std::string_view padded(const NB_CHAR *array, NB_INT width) {
    std::string_view text(array, strnlen(array, static_cast<size_t>(width)));
    size_t last = text.find_last_not_of(' ');
    return last == std::string_view::npos ? std::string_view() : text.substr(0, last + 1);
}

NB_VOID format_number(ARGUMENT &argument, const NB_CHAR *format, NB_ULONG value) {
    NB_INT length = snprintf(argument.number, sizeof(argument.number), format, value);
    argument.text = std::string_view(argument.number, static_cast<size_t>(length));
}

/* Takes one value of the type off the list.  Returns 0 for an unknown type: what follows it cannot
 * be read. */
NB_USHORT take_argument(ARGUMENT &argument, std::string_view type, va_list *arguments) {
    if (type == "s") {
        const NB_CHAR *text = va_arg(*arguments, const NB_CHAR *);
        argument.text = text != nullptr ? text : "";
    } else if (type == "i" || type == "l") {
        format_number(argument, "%d", va_arg(*arguments, NB_ULONG));
    } else if (type == "x") {
        format_number(argument, "%4.4X", va_arg(*arguments, NB_ULONG));
    } else if (type == "lx") {
        format_number(argument, "%8.8X", va_arg(*arguments, NB_ULONG));
    } else if (type == "ca" || type == "cs") {
        NB_INT width = va_arg(*arguments, NB_INT);
        const NB_CHAR *array = va_arg(*arguments, const NB_CHAR *);
        argument.text = type == "ca" ? padded(array, width)
                                     : std::string_view(array, strnlen(array, (size_t)width));
    } else {
        v0_assert(__FILE__, __LINE__, "known message argument type");
        return 0;
    }
    return 1;
}

class OUTPUT {
public:
    OUTPUT(NB_CHAR *buffer, NB_USHORT size) : out(buffer), room(size) {}

    NB_VOID put(std::string_view text) {
        size_t fits = room > used + 1U ? room - used - 1U : 0;
        if (text.size() > fits) {
            cut = 1;
            text = text.substr(0, fits);
        }
        if (!text.empty()) {
            memcpy(out + used, text.data(), text.size());
            used = static_cast<NB_USHORT>(used + text.size());
        }
    }

    NB_USHORT finish() {
        if (room == 0) {
            return 0;
        }
        out[used] = '\0';
        if (cut) {
            drop_partial_character();
        }
        return used;
    }

private:
    NB_VOID drop_partial_character() {
        mbstate_t state{};
        size_t good = 0;
        while (good < used) {
            size_t length = mbrlen(out + good, used - good, &state);
            if (length == static_cast<size_t>(-2)) {
                break;
            }
            good += length == static_cast<size_t>(-1) || length == 0 ? 1 : length;
        }
        used = static_cast<NB_USHORT>(good);
        out[used] = '\0';
    }

    NB_CHAR *out;
    NB_USHORT room;
    NB_USHORT used = 0;
    NB_USHORT cut = 0;
};

} // namespace

NB_USHORT vga_load_messages(NB_VOID) {
    memset(gvga_messages, 0, sizeof(gvga_messages));
    if (v0_initialise_message_catalog(&gvga_catalog) == 0) {
        return catalogue_failed(NB_PD_CATALOGUE_NOT_OPEN);
    }
    gvga_setid = VGA_MESSAGE_SET;
    MESSAGE_BLOCK block;
    for (NB_USHORT message = 1; message <= VGA_MESSAGE_COUNT; message++) {
        const NB_CHAR *text = v0_get_message(gvga_catalog, gvga_setid, message);
        if (text == nullptr || block.add(message, text) == 0) {
            v0_close_message_catalog(&gvga_catalog);
            return catalogue_failed(NB_PD_CATALOGUE_MESSAGE_MISSING);
        }
    }
    block.hand_over();
    return 1;
}

NB_VOID vga_unload_messages(NB_VOID) {
    v0_close_message_catalog(&gvga_catalog);
    memset(gvga_messages, 0, sizeof(gvga_messages));
    free(gvga_message_memory);
    gvga_message_memory = nullptr;
}

const NB_CHAR *vga_message(NB_USHORT message) {
    const NB_CHAR *text = message <= VGA_MESSAGE_COUNT ? gvga_messages[message] : nullptr;
    return text != nullptr ? text : "";
}

std::string vga_number(NB_ULONG number) {
    NB_CHAR text[32];
    snprintf(text, sizeof(text), "%'lu", static_cast<unsigned long>(number));
    return text;
}

std::string vga_counted(NB_USHORT message, NB_ULONG count) {
    const std::string both = vga_message(message);
    const size_t bar = std::min(both.find('|'), both.size());
    if (count == 1) {
        return both.substr(0, bar);
    }
    std::string many = both.substr(std::min(bar + 1, both.size()));
    const size_t place = many.find("%1");
    return place == std::string::npos ? many : many.replace(place, 2, vga_number(count));
}

const NB_CHAR *vga_message_help(NB_USHORT message) {
    for (const MESSAGE_HELP &row : message_help) {
        if (row.number == message) {
            return row.key;
        }
    }
    return nullptr;
}

NB_USHORT vga_print_msg(NB_CHAR *buffer, NB_USHORT size, NB_USHORT message, const NB_CHAR *types,
                        ...) {
    va_list arguments;
    va_start(arguments, types);
    NB_USHORT length = vga_format_text(buffer, size, vga_message(message), types, arguments);
    va_end(arguments);
    return length;
}

NB_USHORT vga_format_text(NB_CHAR *buffer, NB_USHORT size, const NB_CHAR *text,
                          const NB_CHAR *types, va_list arguments) {
    std::array<ARGUMENT, 9> values{};
    size_t count = 0;
    va_list copy;
    va_copy(copy, arguments);
    std::string_view rest(types != nullptr ? types : "");
    while (!rest.empty() && count < values.size()) {
        size_t end = rest.find(' ');
        std::string_view type = rest.substr(0, end);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        if (!type.empty() && take_argument(values[count++], type, &copy) == 0) {
            break;
        }
    }
    va_end(copy);

    OUTPUT output(buffer, size);
    for (const NB_CHAR *at = text; *at != '\0';) {
        const NB_CHAR *percent = strchrnul(at, '%');
        output.put(std::string_view(at, static_cast<size_t>(percent - at)));
        at = percent;
        if (*at == '\0') {
            break;
        }
        if (at[1] >= '1' && at[1] <= '9') {
            output.put(values[static_cast<size_t>(at[1] - '1')].text);
            at += 2;
        } else {
            /* "%t16%" passes as it stands: its closing sign must not pair with what follows. */
            size_t stop = at[1] == 't' ? 2 + strspn(at + 2, "0123456789") : 0;
            if (stop > 2 && at[stop] == '%') {
                stop++;
            }
            if (stop != 0) {
                output.put(std::string_view(at, stop));
                at += stop;
            } else {
                output.put("%");
                at += at[1] == '%' ? 2 : 1;
            }
        }
    }
    return output.finish();
}
