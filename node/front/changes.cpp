/* Writing down who changed what, and telling those who may know. */
#include "front.h"

#include "changewords.h"
#include "nbproblem.h"
#include "nofcopy.h"
#include "nofverbs.h"

#include <algorithm>
#include <chrono>
#include <cstring>

namespace node {

namespace {

constexpr NB_ULONG MAX_TOTAL = 65535;
constexpr size_t KEY_SIZE = 4;

uint64_t now_ms() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

template <size_t WIDTH> void put_text(NB_UCHAR (&field)[WIDTH], const std::string &text) {
    memcpy(field, text.data(), std::min(text.size(), WIDTH - 1));
}

/* The entry of a list, which ends behind its text. */
std::vector<NB_UCHAR> entry_of(const ChangeRecord &record) {
    NAP_CHANGE_DATA entry = {};
    const NB_ULONG position = 0xFFFFFFFF - record.number;
    entry.position_high = static_cast<NB_USHORT>(position >> 16);
    entry.position_low = static_cast<NB_USHORT>(position);
    entry.opcode = record.opcode;
    entry.number = record.number;
    entry.time = static_cast<NB_ULONG>(record.time_ms / 1000);
    entry.milliseconds = static_cast<NB_USHORT>(record.time_ms % 1000);
    entry.primary_rc = record.result.primary;
    entry.secondary_rc = record.result.secondary;
    entry.user_id = record.user;
    entry.process_id = static_cast<NB_ULONG>(record.process);
    put_text(entry.program, record.program);
    put_text(entry.node_name, record.node);
    put_text(entry.subject, record.subject);
    put_text(entry.values, record.words);
    const size_t text = std::min(record.words.size(), sizeof entry.values - 1) + 1;
    const size_t length = (offsetof(NAP_CHANGE_DATA, values) + text + 3) / 4 * 4;
    entry.overlay_size = static_cast<NB_USHORT>(length);
    const auto *bytes = reinterpret_cast<const NB_UCHAR *>(&entry);
    return {bytes, bytes + length};
}

/* The number that a list begins with, or the highest below it that there is. */
NB_ULONG first_number(const NAP_QUERY_LIST &query, NB_ULONG newest) {
    NAP_CHANGE_DATA key = {};
    memcpy(reinterpret_cast<NB_UCHAR *>(&key) + KEY_OFFSET, query.key, KEY_SIZE);
    const NB_ULONG named =
        0xFFFFFFFF - (NB_ULONG{key.position_high} << 16 | NB_ULONG{key.position_low});
    const bool behind = (query.list_options & NAP_LIST_FROM_NEXT) != 0;
    return (query.list_options & NAP_FIRST_IN_LIST) != 0
               ? newest
               : std::min(newest, behind && named > 0 ? named - 1 : named);
}

} // namespace

/* Of who may only look nothing is written down but that he tried: he could push out all else. */
void Front::note_change(const PeerUser &user, const NodeProcess *node,
                        const std::vector<NB_UCHAR> &block, const std::string &words) {
    const auto header = nap_copy<NAP_VCB>(block.data());
    const NAP_VERB *verb = nap_find_verb(header.opcode);
    if (verb == nullptr || verb->changes == 0) {
        return;
    }
    if (!user.may_change) {
        nba_pd_print_problem(NB_PD_MAY_NOT, 1, "l", static_cast<NB_ULONG>(user.user));
        return;
    }
    ChangeRecord record;
    record.time_ms = now_ms();
    record.user = user.user;
    record.process = user.process;
    record.program = user.program;
    record.node = node != nullptr ? node->name : "";
    record.opcode = header.opcode;
    record.result = {header.primary_rc, header.secondary_rc};
    record.subject = block.size() == verb->block_size ? subject_words(block) : "";
    record.words = words;
    changes_.write(record);
}

/* Newest first.  A record that is damaged is left out. */
Result Front::list_changes(Answer &answer) const {
    auto query = nap_copy<NAP_QUERY_LIST>(answer.block.data());
    const Result checked = check_list_query(query, KEY_SIZE);
    if (!checked.ok()) {
        return checked;
    }
    const NB_ULONG first = first_number(query, changes_.newest());
    const NB_ULONG oldest = changes_.oldest();
    const NB_ULONG total = first >= oldest ? first - oldest + 1 : 0;
    const NB_ULONG wanted = query.num_entries == 0 ? MAX_TOTAL : query.num_entries;
    const size_t room = std::min<size_t>(query.buf_size, NOF_MAX_DATA);
    NB_USHORT count = 0;
    bool full = false;
    for (NB_ULONG at = 0; at < total && count < wanted && !full; at++) {
        ChangeRecord record;
        const bool there = changes_.read(first - at, record);
        const std::vector<NB_UCHAR> entry = there ? entry_of(record) : std::vector<NB_UCHAR>();
        full = answer.data.size() + entry.size() > room;
        if (there && !full) {
            answer.data.insert(answer.data.end(), entry.begin(), entry.end());
            count++;
        }
    }
    if (full && count == 0) {
        return bad_parameter(NAP_BAD_LENGTH);
    }
    query.num_entries = count;
    query.total_num_entries = static_cast<NB_USHORT>(std::min(count == 0 ? 0 : total, MAX_TOTAL));
    query.total_buf_size = static_cast<NB_ULONG>(answer.data.size());
    memcpy(answer.block.data(), &query, sizeof query);
    return GOOD;
}

} // namespace node
