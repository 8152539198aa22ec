#include "faults.h"

#include "nofverbs.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

namespace node {

namespace {

bool parse_number(const std::string &word, uint32_t &value) {
    const bool hex = word.compare(0, 2, "0x") == 0;
    const char *begin = word.data() + (hex ? 2 : 0);
    const char *end = word.data() + word.size();
    const auto parsed = std::from_chars(begin, end, value, hex ? 16 : 10);
    return parsed.ec == std::errc() && parsed.ptr == end;
}

bool parse_verb(const std::string &word, NB_USHORT &opcode) {
    for (const NAP_VERB &verb : gnap_verbs) {
        if (word == verb.name) {
            opcode = verb.opcode;
            return true;
        }
    }
    return false;
}

using Words = std::vector<std::string>;

/* [N] at the end of a line. */
bool parse_times(const Words &words, size_t at, FaultRule &rule) {
    uint32_t times = 0;
    if (words.size() == at) {
        return true;
    }
    if (words.size() != at + 1 || !parse_number(words[at], times)) {
        return false;
    }
    rule.times = times;
    return true;
}

/* `after N verbs` at the end of a line. */
bool parse_after(const Words &words, size_t at, FaultRule &rule) {
    rule.times = 1;
    return words.size() == at + 3 && words[at] == "after" &&
           parse_number(words[at + 1], rule.number) && words[at + 2] == "verbs";
}

bool parse_delay(const Words &words, FaultRule &rule) {
    const size_t count = words.size();
    return (count == 2 || (count == 3 && parse_verb(words[2], rule.opcode))) &&
           parse_number(words[1], rule.number);
}

bool parse_fail(const Words &words, FaultRule &rule) {
    uint32_t primary = 0;
    const bool good = words.size() >= 4 && parse_verb(words[1], rule.opcode) &&
                      parse_number(words[2], primary) && primary <= 0xFFFF &&
                      parse_number(words[3], rule.result.secondary);
    rule.result.primary = static_cast<NB_USHORT>(primary);
    return good && parse_times(words, 4, rule);
}

/* A list that succeeds has entries, which nobody would send. */
bool parse_at_once(const Words &words, FaultRule &rule) {
    return parse_fail(words, rule) &&
           (rule.result.primary != NAP_OK || nap_find_verb(rule.opcode)->kind != NAP_KIND_LIST);
}

/* A verb, or else a node. */
bool parse_hang(const Words &words, FaultRule &rule) {
    if (words.size() < 2) {
        return false;
    }
    if (parse_verb(words[1], rule.opcode)) {
        return parse_times(words, 2, rule);
    }
    rule.kind = FaultKind::HangNode;
    rule.node = words[1];
    rule.times = 1;
    return words[1].compare(0, 4, "NAP_") != 0 &&
           (words.size() == 2 || (words.size() == 3 && parse_number(words[2], rule.number)));
}

bool parse_whole_after(const Words &words, FaultRule &rule) {
    return parse_after(words, 1, rule);
}

bool parse_die(const Words &words, FaultRule &rule) {
    rule.node = words.size() > 1 ? words[1] : "";
    rule.times = 1;
    return words.size() == 2 || (parse_after(words, 2, rule) && rule.number > 0);
}

bool parse_indications(const Words &words, FaultRule &rule) {
    return words.size() >= 2 && words[1] == "indications" && parse_times(words, 2, rule);
}

bool parse_bare(const Words &words, FaultRule &) {
    return words.size() == 1;
}

bool parse_ask(const Words &words, FaultRule &rule) {
    return words.size() == 2 && parse_number(words[1], rule.number) && rule.number > 0;
}

struct LineRow {
    const char *word;
    FaultKind kind;
    bool (*parse)(const Words &words, FaultRule &rule);
};

constexpr LineRow line_rows[] = {
    {"delay", FaultKind::Delay, parse_delay},
    {"fail", FaultKind::Fail, parse_fail},
    {"hang", FaultKind::Hang, parse_hang},
    {"at-once", FaultKind::AtOnce, parse_at_once},
    {"drop", FaultKind::Drop, parse_whole_after},
    {"garbage", FaultKind::Garbage, parse_whole_after},
    {"stop", FaultKind::Stop, parse_whole_after},
    {"die", FaultKind::Die, parse_die},
    {"lose", FaultKind::Lose, parse_indications},
    {"repeat", FaultKind::Repeat, parse_indications},
    {"no-restart", FaultKind::NoRestart, parse_bare},
    {"ask", FaultKind::Ask, parse_ask},
    {"die-writing", FaultKind::DieWriting, parse_bare},
    {"die-written", FaultKind::DieWritten, parse_bare},
};

bool parse_line(const Words &words, FaultRule &rule) {
    for (const LineRow &row : line_rows) {
        if (words[0] == row.word) {
            rule.kind = row.kind;
            return row.parse(words, rule);
        }
    }
    return false;
}

} // namespace

bool Faults::parse(const std::string &file_name, std::string_view text, std::string &why) {
    std::istringstream lines{std::string(text)};
    std::vector<FaultRule> rules;
    std::string line;
    for (int number = 1; std::getline(lines, line); number++) {
        std::istringstream stream(line.substr(0, line.find('#')));
        const std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
        FaultRule rule;
        if (words.empty()) {
            continue;
        }
        if (!parse_line(words, rule)) {
            why = file_name + ":" + std::to_string(number) + ": '" + line +
                  "' is no fault; see docs/protocol.md";
            return false;
        }
        rules.push_back(rule);
    }
    rules_ = std::move(rules);
    lost_ = false;
    return true;
}

bool Faults::read(const std::string &file_name, std::string &why) {
    std::ifstream file(file_name, std::ios::binary);
    if (!file) {
        why = file_name + ": cannot be read: " + strerror(errno);
        return false;
    }
    const std::string text((std::istreambuf_iterator<char>(file)),
                           std::istreambuf_iterator<char>());
    return parse(file_name, text, why);
}

bool Faults::use(FaultRule &rule) {
    if (rule.times == 0) {
        return false;
    }
    rule.times -= rule.times > 0 ? 1 : 0;
    return true;
}

Faults::Verdict Faults::judge(NB_USHORT opcode, const std::string &node) {
    Verdict verdict;
    for (FaultRule &rule : rules_) {
        const bool meant = rule.opcode == 0 || rule.opcode == opcode;
        const bool counts =
            rule.kind != FaultKind::Die || strcasecmp(rule.node.c_str(), node.c_str()) == 0;
        const bool due = counts && ++rule.seen == rule.number;
        switch (rule.kind) {
        case FaultKind::Delay:
            verdict.delay_ms = meant ? std::max(verdict.delay_ms, rule.number) : verdict.delay_ms;
            break;
        case FaultKind::Fail:
            if (meant && !verdict.failure && use(rule)) {
                verdict.failure = rule.result;
            }
            break;
        case FaultKind::Hang:
            verdict.hang = verdict.hang || (meant && use(rule));
            break;
        case FaultKind::Drop:
            verdict.drop = verdict.drop || due;
            break;
        case FaultKind::Garbage:
            verdict.garbage = verdict.garbage || due;
            break;
        case FaultKind::Stop:
            verdict.stop = verdict.stop || due;
            break;
        case FaultKind::Die:
            verdict.die = verdict.die || due;
            break;
        default:
            break;
        }
    }
    return verdict;
}

Faults::Fate Faults::judge_indication() {
    for (FaultRule &rule : rules_) {
        if (rule.kind == FaultKind::Lose && use(rule)) {
            lost_ = true;
            return Fate::Lose;
        }
        if (rule.kind == FaultKind::Repeat && !lost_ && use(rule)) {
            return Fate::Repeat;
        }
    }
    const bool lost = lost_;
    lost_ = false;
    return lost ? Fate::DeliverWithLoss : Fate::Deliver;
}

std::optional<uint32_t> Faults::ask_ms() const {
    const auto found = std::find_if(rules_.begin(), rules_.end(), [](const FaultRule &rule) {
        return rule.kind == FaultKind::Ask;
    });
    return found != rules_.end() ? std::optional(found->number) : std::nullopt;
}

bool Faults::dies_writing(bool written) const {
    const FaultKind kind = written ? FaultKind::DieWritten : FaultKind::DieWriting;
    return std::any_of(rules_.begin(), rules_.end(),
                       [kind](const FaultRule &rule) { return rule.kind == kind; });
}

bool Faults::may_restart() const {
    return std::none_of(rules_.begin(), rules_.end(),
                        [](const FaultRule &rule) { return rule.kind == FaultKind::NoRestart; });
}

} // namespace node
