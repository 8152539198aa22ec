#include "verblog.h"
#include "globals.h"
#include "nbproblem.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <unordered_map>

FILE *gvga_verb_log;

namespace {

enum LOG_PROBLEM : NB_USHORT { NOT_OPENED, NOT_WRITTEN };

using CLOCK = std::chrono::steady_clock;

/* What the log must remember of a verb until its answer. */
struct JOURNEY {
    CLOCK::time_point since; /* when it was issued, or began to wait */
    NB_USHORT waiting;
    NB_USHORT purged;
};
std::unordered_map<const NAP_VCB *, JOURNEY> journeys;

/* Names. */

constexpr size_t prefix_length = sizeof("NAP_") - 1;

const NB_CHAR *const file_names[] = {"no file", "system file", "network file", "TP load file"};

/* A name of the verb interface without its prefix. */
const NB_CHAR *short_name(const NB_CHAR *name) {
    return name != nullptr ? name + prefix_length : "?";
}

const NB_CHAR *secondary_name(NB_ULONG code) {
    return code == 0 ? "-" : short_name(nap_secondary_name(code));
}

const NB_CHAR *verb_name(NB_USHORT opcode) {
    const NAP_VERB *verb = nap_find_verb(opcode);
    return short_name(verb != nullptr ? verb->name : nullptr);
}

/* The line. */

[[gnu::format(printf, 2, 3)]] NB_VOID add(std::string &line, const NB_CHAR *format, ...) {
    NB_CHAR piece[256];
    va_list values;
    va_start(values, format);
    vsnprintf(piece, sizeof(piece), format, values);
    va_end(values);
    line += piece;
}

NB_USHORT printable(NB_UCHAR byte) {
    return byte >= ' ' && byte < 0x7F;
}

/* A text that ends at its first NUL or after `size` bytes. */
NB_VOID add_text(std::string &line, const NB_UCHAR *text, size_t size) {
    line += '"';
    for (const NB_UCHAR *at = text; at != text + size && *at != 0; at++) {
        line += printable(*at) ? static_cast<NB_CHAR>(*at) : '?';
    }
    line += '"';
}

/* A key in either character set: no EBCDIC letter or digit is a printable character of the local
 * one.  What is neither is shown in hexadecimal. */
NB_VOID add_key(std::string &line, const NB_UCHAR (&area)[NAP_MAX_KEY]) {
    constexpr NB_UCHAR ebcdic_blank = 0x40;
    NB_UCHAR key[NAP_MAX_KEY];
    memcpy(key, area, sizeof(key));
    NB_USHORT length = sizeof(key);
    while (length > 0 &&
           (key[length - 1] == 0 || key[length - 1] == ' ' || key[length - 1] == ebcdic_blank)) {
        length--;
    }
    if (length == 0) {
        return;
    }
    if (!std::all_of(key, key + length, printable)) {
        nba_ebcdic_to_local(key, length);
    }
    line += "  ";
    if (std::all_of(key, key + length, printable)) {
        add_text(line, key, length);
        return;
    }
    line += "0x";
    std::for_each(area, area + length, [&line](NB_UCHAR byte) { add(line, "%02X", byte); });
}

/* What a block is about. */

NB_VOID add_list(std::string &line, const NAP_VCB *vcb, NB_USHORT answered) {
    constexpr NB_UCHAR position = NAP_LIST_INCLUSIVE | NAP_LIST_FROM_NEXT | NAP_FIRST_IN_LIST;
    const auto list = nap_copy<NAP_QUERY_LIST>(vcb);
    if (answered) {
        add(line, "  %u of %u entries, %u bytes", list.num_entries, list.total_num_entries,
            list.total_buf_size);
        return;
    }
    const NB_UCHAR from = list.list_options & position;
    line += from == NAP_FIRST_IN_LIST ? "  from the first" : "  from";
    if (from != NAP_FIRST_IN_LIST) {
        line += from == NAP_LIST_FROM_NEXT ? " behind" : "";
        add_key(line, list.key);
    }
    if (list.num_entries != 0) {
        add(line, ", at most %u entries", list.num_entries);
    }
}

NB_VOID add_open_file(std::string &line, const NAP_VCB *vcb, NB_USHORT answered) {
    const auto open = nap_copy<NAP_OPEN_FILE_VERB>(vcb);
    const NB_USHORT file = open.file;
    add(line, "  %s ", file < std::size(file_names) ? file_names[file] : "?");
    add_text(line, open.node_name, sizeof(open.node_name));
    if (answered) {
        add(line, " is target %u", open.target_handle);
    }
}

NB_VOID add_connect_node(std::string &line, const NAP_VCB *vcb, NB_USHORT answered) {
    const auto connect = nap_copy<NAP_CONNECT_NODE_VERB>(vcb);
    line += "  node ";
    add_text(line, connect.node_name, sizeof(connect.node_name));
    if (answered) {
        add(line, " is target %u", connect.target_handle);
    }
}

NB_VOID add_register(std::string &line, const NAP_VCB *vcb, NB_USHORT) {
    const NB_USHORT indication = nap_copy<NAP_REGISTER_SINK_VERB>(vcb).indication;
    add(line, "  for %s 0x%04X",
        indication == NAP_CONFIG_COPIES ? "CONFIG_COPIES" : verb_name(indication), indication);
}

NB_VOID add_name_verb(std::string &line, const NAP_VCB *vcb, NB_USHORT) {
    const auto verb = nap_copy<NAP_NAME_VERB>(vcb);
    add_key(line, verb.key);
    line += verb.stop_type == NAP_IMMEDIATE_STOP ? " at once" : "";
}

NB_VOID add_resource_indication(std::string &line, const NAP_VCB *vcb, NB_USHORT) {
    const auto indication = nap_copy<NAP_RESOURCE_INDICATION>(vcb);
    add_key(line, indication.key);
    add(line, "  state %u%s%s", indication.state, indication.deactivated ? ", gone" : "",
        indication.data_lost ? ", others were lost" : "");
}

NB_VOID add_status(std::string &line, const NAP_VCB *vcb, NB_USHORT) {
    const auto indication = nap_copy<NAP_NOF_STATUS_INDICATION_VERB>(vcb);
    add(line, "  %s 0x%04X, target %u", secondary_name(indication.status), indication.status,
        indication.target_handle);
}

NB_VOID add_node_status(std::string &line, const NAP_VCB *vcb) {
    const auto status = nap_copy<NAP_NODE_STATUS_INDICATION_VERB>(vcb);
    line += "  node ";
    add_text(line, status.node_name, sizeof(status.node_name));
    add(line, " state %u", status.node_state);
}

NB_VOID add_server(std::string &line, const NAP_VCB *vcb, NB_USHORT) {
    const auto indication = nap_copy<NAP_SERVER_INDICATION_VERB>(vcb);
    line += "  node ";
    add_text(line, indication.node_name, sizeof(indication.node_name));
    add(line, " state %u, flags 0x%04X", indication.state, indication.server_flags);
}

using DETAILS = NB_VOID (*)(std::string &line, const NAP_VCB *vcb, NB_USHORT answered);

constexpr NB_VOID no_details(std::string &, const NAP_VCB *, NB_USHORT) {}

/* The control block's type says what can be shown of a verb. */
template <class Block> constexpr DETAILS details_of = no_details;
template <> constexpr DETAILS details_of<NAP_QUERY_LIST> = add_list;
template <> constexpr DETAILS details_of<NAP_OPEN_FILE_VERB> = add_open_file;
template <> constexpr DETAILS details_of<NAP_CONNECT_NODE_VERB> = add_connect_node;
template <> constexpr DETAILS details_of<NAP_REGISTER_SINK_VERB> = add_register;
template <> constexpr DETAILS details_of<NAP_NAME_VERB> = add_name_verb;
template <> constexpr DETAILS details_of<NAP_RESOURCE_INDICATION> = add_resource_indication;
template <> constexpr DETAILS details_of<NAP_NOF_STATUS_INDICATION_VERB> = add_status;
template <> constexpr DETAILS details_of<NAP_SERVER_INDICATION_VERB> = add_server;

/* In the order of gnap_verbs. */
const DETAILS verb_details[] = {
#define DETAILS_ROW(name, opcode, block, kind) details_of<block>,
    NAP_VERBS(DETAILS_ROW)
#undef DETAILS_ROW
};

NB_VOID add_details(std::string &line, const NAP_VCB *vcb, NB_USHORT answered) {
    if (const NAP_VERB *verb = nap_find_verb(vcb->opcode)) {
        verb_details[verb - gnap_verbs](line, vcb, answered);
    }
}

/* Events. */

NB_VOID add_time_of_day(std::string &line) {
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    tm fields;
    NB_CHAR when[32] = "";
    if (localtime_r(&now.tv_sec, &fields) != nullptr) {
        strftime(when, sizeof(when), "%Y-%m-%d %H:%M:%S", &fields);
    }
    add(line, "%s.%03ld", when, now.tv_nsec / 1000000);
}

NB_VOID add_elapsed(std::string &line, const JOURNEY &journey) {
    const std::chrono::duration<double, std::milli> elapsed = CLOCK::now() - journey.since;
    add(line, "  %s%.3f ms", journey.waiting ? "waited " : "", elapsed.count());
}

NB_VOID add_codes(std::string &line, const NAP_VCB &vcb) {
    const NB_ULONG secondary = vcb.secondary_rc;
    add(line, "  %s 0x%04X %s 0x%08X", short_name(nap_primary_name(vcb.primary_rc)), vcb.primary_rc,
        secondary_name(secondary), secondary);
}

/* Copies carry a verb that somebody issued; an indication is never issued. */
NB_USHORT is_copy(const NAP_VCB &vcb) {
    const NAP_VERB *verb = nap_find_verb(vcb.opcode);
    return verb != nullptr && verb->kind != NAP_KIND_INDICATION;
}

const NB_CHAR *word_of(VGA_VERB_EVENT event, const NAP_VCB &vcb) {
    static const NB_CHAR *const words[] = {"waiting",           "issued", "completed",
                                           "completed at once", "purged", "indication"};
    static_assert(std::size(words) == VGA_VERB_UNSOLICITED + 1);
    return event == VGA_VERB_UNSOLICITED && is_copy(vcb) ? "copy" : words[event];
}

NB_VOID begin_line(std::string &line, VGA_VERB_EVENT event, NB_ULONG target, const NAP_VCB &vcb) {
    add_time_of_day(line);
    add(line, " %-17s  target %u  %s 0x%04X", word_of(event, vcb), target, verb_name(vcb.opcode),
        vcb.opcode);
}

/* On its way: what is asked for, and how long it had to wait for that. */
NB_VOID log_departure(std::string &line, VGA_VERB_EVENT event, const NAP_VCB *vcb) {
    auto journey = journeys.find(vcb);
    if (journey != journeys.end()) {
        add_elapsed(line, journey->second);
    }
    journeys[vcb] = {CLOCK::now(), event == VGA_VERB_WAITING, 0};
    add_details(line, vcb, 0);
}

/* Returns 0 for a verb that was purged before. */
NB_USHORT log_purge(std::string &line, const NAP_VCB *vcb) {
    auto journey = journeys.find(vcb);
    if (journey == journeys.end()) {
        return 1;
    }
    if (journey->second.purged) {
        return 0;
    }
    add_elapsed(line, journey->second);
    if (journey->second.waiting) {
        journeys.erase(journey);
    } else {
        journey->second.purged = 1;
    }
    return 1;
}

/* Returns 0 when the answer has its line already: it was known at once. */
NB_USHORT log_answer(std::string &line, const NAP_VCB *vcb) {
    auto journey = journeys.find(vcb);
    if (journey == journeys.end()) {
        return 0;
    }
    add_codes(line, *vcb);
    add_elapsed(line, journey->second);
    if (vcb->primary_rc == NAP_OK) {
        add_details(line, vcb, 1);
    }
    line += journey->second.purged ? "  (purged)" : "";
    journeys.erase(journey);
    return 1;
}

/* The start and stop of a node itself come under the verbs' opcodes with a block of their own. */
NB_VOID log_unsolicited(std::string &line, const NAP_VCB *vcb) {
    add_codes(line, *vcb);
    if (vcb->opcode == NAP_INIT_NODE || vcb->opcode == NAP_STOP_NODE) {
        add_node_status(line, vcb);
    } else {
        add_details(line, vcb, 0);
    }
}

/* Returns 0 when the event makes no line. */
NB_USHORT add_rest(std::string &line, VGA_VERB_EVENT event, const NAP_VCB *vcb) {
    switch (event) {
    case VGA_VERB_COMPLETED:
    case VGA_VERB_COMPLETED_AT_ONCE:
        return log_answer(line, vcb);
    case VGA_VERB_PURGED:
        return log_purge(line, vcb);
    case VGA_VERB_UNSOLICITED:
        log_unsolicited(line, vcb);
        return 1;
    default:
        log_departure(line, event, vcb);
        return 1;
    }
}

NB_VOID report(NB_USHORT detail) {
    nba_pd_print_exception(NB_PD_VERB_LOG, detail, "s s", gvga_verb_log_file, strerror(errno));
}

NB_VOID write_line(std::string &line) {
    line += '\n';
    if (fputs(line.c_str(), gvga_verb_log) == EOF || fflush(gvga_verb_log) != 0) {
        report(NOT_WRITTEN);
        vga_close_verb_log();
    }
}

} // namespace

NB_VOID vga_open_verb_log(NB_VOID) {
    vga_close_verb_log();
    if (gvga_verb_log_file[0] == '\0') {
        return;
    }
    /* A pipe without a reader must not hold the program. */
    const NB_INT flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    const NB_INT file = open(gvga_verb_log_file, flags, 0644);
    if (file >= 0) {
        gvga_verb_log = fdopen(file, "a");
    }
    if (gvga_verb_log == nullptr) {
        report(NOT_OPENED);
        if (file >= 0) {
            close(file);
        }
    }
}

NB_VOID vga_close_verb_log(NB_VOID) {
    if (gvga_verb_log != nullptr) {
        fclose(gvga_verb_log);
        gvga_verb_log = nullptr;
    }
    journeys.clear();
}

NB_VOID vga_write_verb_log(VGA_VERB_EVENT event, NB_ULONG target, const NAP_VCB *vcb) {
    std::string line;
    begin_line(line, event, target, *vcb);
    if (add_rest(line, event, vcb) == 0) {
        return;
    }
    write_line(line);
}

NB_VOID vga_log_startup(const NB_CHAR *name, const NB_CHAR *flags) {
    constexpr size_t longest_name = 128;
    if (gvga_verb_log == nullptr) {
        return;
    }
    std::string line;
    add_time_of_day(line);
    line += " start-up           ";
    if (name == nullptr) {
        line += "domain";
    } else {
        add_text(line, reinterpret_cast<const NB_UCHAR *>(name), longest_name);
    }
    line += "  ";
    line += flags;
    write_line(line);
}
