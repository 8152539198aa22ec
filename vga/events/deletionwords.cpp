#include "deletion.h"
#include "messages.h"
#include <algorithm>
#include <map>

namespace {

constexpr size_t most_names = 5; /* in a question */

NB_VOID add_part(std::string &list, const std::string &part) {
    list += (list.empty() ? "" : ", ") + part;
}

/* Kinds that are called the same are counted together. */
std::string list_of(const VGA_KIND_COUNTS &counts) {
    std::string list;
    for (size_t kind = 0; kind < counts.size(); kind++) {
        const NB_USHORT message = vga_deletable_row(static_cast<VGA_DELETABLE>(kind)).message;
        NB_ULONG count = 0;
        NB_USHORT first = 1;
        for (size_t other = 0; other < counts.size(); other++) {
            const bool same =
                vga_deletable_row(static_cast<VGA_DELETABLE>(other)).message == message;
            count += same ? counts[other] : 0;
            first &= !same || other >= kind;
        }
        if (message != 0 && first != 0 && count != 0) {
            add_part(list, vga_count_words(static_cast<VGA_DELETABLE>(kind), count));
        }
    }
    return list;
}

std::string names_of(const VGA_DELETION &plan, const std::vector<size_t> &lines) {
    std::string names;
    for (const size_t at : lines) {
        add_part(names, plan.lines[at].name);
    }
    return names;
}

std::string what_goes(const VGA_DELETION &plan, const std::vector<size_t> &lines) {
    const VGA_DELETION_LINE &first = plan.lines[lines.front()];
    const std::string count = vga_count_words(first.kind, static_cast<NB_ULONG>(lines.size()));
    if (lines.size() == 1) {
        return vga_deletion_words(VGA_MSG_DELETE_ONE, vga_kind_word(first.kind), first.name);
    }
    return lines.size() <= most_names
               ? vga_deletion_words(VGA_MSG_DELETE_NAMED, count, names_of(plan, lines))
               : vga_deletion_words(VGA_MSG_DELETE_MANY, count, first.name,
                                    plan.lines[lines.back()].name);
}

/* What a run made of its items: by kind, those that are gone, those that stay, and of these last
 * those that were to stay when the run was cancelled. */
struct SUMS {
    VGA_KIND_COUNTS gone, stay, cancelled;
};
SUMS sum_up(const VGA_DELETION &deletion) {
    SUMS sums = {};
    for (const VGA_DELETION_ITEM &item : deletion.items) {
        if (item.phase == VGA_DELETION_ITEM::GONE) {
            sums.gone[item.kind]++;
        } else if (deletion.lines[item.line].wanted != 0 && item.by_itself == 0) {
            const bool refused =
                deletion.cancelled == 0 || item.phase == VGA_DELETION_ITEM::REFUSED;
            (refused ? sums.stay : sums.cancelled)[item.kind]++;
        }
    }
    for (const VGA_DELETION_LINE &line : deletion.lines) {
        sums.stay[line.kind] += line.reason.empty() ? 0 : 1;
    }
    return sums;
}

} // namespace

std::string vga_deletion_words(NB_USHORT message, const std::string &first,
                               const std::string &second, const std::string &third) {
    NB_CHAR text[4000];
    vga_print_msg(text, sizeof(text), message, "s s s", first.c_str(), second.c_str(),
                  third.c_str());
    return text;
}

std::string vga_kind_word(VGA_DELETABLE kind) {
    return vga_counted(vga_deletable_row(kind).message, 1);
}

std::string vga_count_words(VGA_DELETABLE kind, NB_ULONG count) {
    const std::string text = vga_counted(vga_deletable_row(kind).message, count);
    return count == 1 ? "1 " + text : text;
}

std::string vga_deletion_question(const VGA_DELETION &plan, const std::vector<size_t> &lines) {
    VGA_KIND_COUNTS with = {};
    VGA_KIND_COUNTS stops = {};
    NB_ULONG sessions = 0;
    for (const size_t at : lines) {
        const VGA_DELETION_LINE &line = plan.lines[at];
        for (size_t kind = 0; kind < with.size(); kind++) {
            with[kind] += line.with[kind];
            stops[kind] += line.stops[kind];
        }
        sessions += line.sessions;
    }
    VGA_KIND_COUNTS stay = {};
    std::string why;
    for (const VGA_DELETION_LINE &line : plan.lines) {
        stay[line.kind] += line.reason.empty() ? 0 : 1;
        why = why.empty() ? line.reason : why;
    }
    std::string text = what_goes(plan, lines);
    const auto add = [&text](const std::string &sentence) { text += "\n\n" + sentence; };
    if (const std::string list = list_of(with); !list.empty()) {
        add(vga_deletion_words(VGA_MSG_DELETE_WITH, list));
    }
    std::string stopped = list_of(stops);
    stopped = stopped.empty() ? stopped : vga_deletion_words(VGA_MSG_DELETE_STOPS, stopped);
    if (sessions != 0) {
        stopped += (stopped.empty() ? "" : " ") + vga_counted(VGA_MSG_DELETE_SESSIONS, sessions);
    }
    if (!stopped.empty()) {
        add(stopped);
    }
    if (!why.empty()) {
        add(vga_deletion_words(VGA_MSG_DELETE_STAY, list_of(stay), why));
    }
    return text;
}

std::string vga_deletion_progress(const VGA_DELETION &deletion) {
    return vga_deletion_words(VGA_MSG_DELETE_PROGRESS,
                              vga_number(static_cast<NB_ULONG>(deletion.done)),
                              vga_number(static_cast<NB_ULONG>(deletion.to_do)));
}

std::string vga_deletion_outcome(const VGA_DELETION &deletion) {
    const SUMS sums = sum_up(deletion);
    const std::string gone = list_of(sums.gone);
    const std::string stay = list_of(sums.stay);
    const std::string cancelled = list_of(sums.cancelled);
    std::string text;
    const auto add = [&text](NB_USHORT message, const std::string &list) {
        if (!list.empty()) {
            text += (text.empty() ? "" : " ") + vga_deletion_words(message, list);
        }
    };
    add(VGA_MSG_DELETE_DONE, gone);
    add(VGA_MSG_DELETE_NOT_DONE, stay);
    add(VGA_MSG_CANCELLED, cancelled);
    return text;
}

/* What stays stands by its reason, each reason once. */
std::string vga_deletion_account(const VGA_DELETION &deletion) {
    std::vector<std::pair<std::string, std::string>> stays; /* reason, names */
    std::map<std::string, size_t> known;
    const auto add = [&](VGA_DELETABLE kind, const std::string &name, const std::string &reason) {
        const auto found = known.emplace(reason, stays.size());
        if (found.second) {
            stays.emplace_back(reason, "");
        }
        stays[found.first->second].second += "    " + vga_kind_word(kind) + " " + name + "\n";
    };
    for (const VGA_DELETION_LINE &line : deletion.lines) {
        if (!line.reason.empty()) {
            add(line.kind, line.name, line.reason);
        }
    }
    for (const VGA_DELETION_ITEM &item : deletion.items) {
        if (item.phase == VGA_DELETION_ITEM::REFUSED && vga_deletable_row(item.kind).message != 0) {
            add(item.kind, item.name, item.reason);
        }
    }
    std::string text = vga_deletion_outcome(deletion) + "\n";
    for (const auto &[reason, names] : stays) {
        text += "\n" + reason + "\n" + names;
    }
    return text;
}

size_t vga_count_refused(const VGA_DELETION &deletion) {
    size_t count = 0;
    for (const VGA_DELETION_LINE &line : deletion.lines) {
        count +=
            !line.reason.empty() || (line.wanted != 0 && line.item < line.end &&
                                     deletion.items[line.item].phase == VGA_DELETION_ITEM::REFUSED);
    }
    return count;
}
