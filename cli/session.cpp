#include "session.h"

#include "globals.h"
#include "hooks.h"
#include "inputs.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "verbqueue.h"

#include <algorithm>
#include <cstring>

namespace cli {

namespace {

/* What waits for an answer; its handle is the verb's user data. */
struct Waiting {
    std::function<void(const NAP_VCB *)> take;
    bool done = false;
};

Session::Hear hears;
std::vector<Home> homes;
bool lost; /* the connection */

NB_VOID answered(const VGA_PROCESS_STATE *work) {
    auto *waiting = static_cast<Waiting *>(nba_validate_handle(work->user_data));
    if (waiting != nullptr) {
        waiting->done = true;
        waiting->take(work->vcb);
    }
}

NB_VOID heard(const VGA_PROCESS_STATE *work) {
    if (work->vcb->opcode == NAP_NOF_STATUS_INDICATION) {
        const auto news = nap_copy<NAP_NOF_STATUS_INDICATION_VERB>(work->vcb);
        lost = lost || news.status == NAP_CONNECTION_GONE;
    }
    const auto home = std::find_if(homes.begin(), homes.end(),
                                   [work](const Home &one) { return one.target == work->target; });
    if (hears) {
        hears(home != homes.end() ? *home : Home{work->target, ""}, *work->vcb);
    }
}

/* Queues a verb whose answer `waiting` takes; false without memory. */
bool queue(NB_ULONG target, const Bytes &block, NB_ULONG handle, NB_VOID *buffer) {
    auto *vcb = static_cast<NAP_VCB *>(malloc(block.size()));
    if (vcb == nullptr) {
        free(buffer);
        return false;
    }
    memcpy(vcb, block.data(), block.size());
    if (buffer != nullptr) {
        vga_set_buf_ptr(vcb, buffer);
    }
    if (vga_queue_verb(target, vcb, handle, answered) == 0) {
        free(buffer);
        free(vcb);
        return false;
    }
    return true;
}

Codes codes_of(const Bytes &block) {
    const auto header = nap_copy<NAP_VCB>(block.data());
    return {header.primary_rc, header.secondary_rc};
}

/* False: nothing will come any more.  Of a verb that finds nobody, or whose connection ends, the
 * pipeline tells no issuer: it asks for the end of the program, or drops it. */
bool wait_for(const Waiting &waiting) {
    while (!waiting.done && gvga_exit_code == 0) {
        vga_drain_immediate_queue();
        if (!waiting.done && (NB_EMPTY_LIST(gvga_nof_queue) || !inputs::take(-1))) {
            break;
        }
    }
    return waiting.done;
}

constexpr Codes NOBODY_THERE = {NAP_UNAVAILABLE, 0};

/* One part of a list. */
struct Part {
    NAP_QUERY_LIST query = {};
    Bytes data;
};

} // namespace

Session::Session() {
    vpm_asm_use_xt_sched(nullptr, inputs::add, inputs::remove);
    nba_hm_initialise();
    vga_init_verb_queues();
    gvga_hooks.indication = heard;
}

Session::~Session() {
    hears = nullptr;
    homes.clear();
    nof_terminate();
    vga_empty_verb_queues();
}

Codes Session::issue(NB_ULONG target, Bytes &block) {
    Waiting waiting;
    waiting.take = [&block](const NAP_VCB *vcb) { memcpy(block.data(), vcb, block.size()); };
    const NB_ULONG handle = nba_create_handle(&waiting);
    if (!queue(target, block, handle, nullptr)) {
        nba_destroy_handle(handle);
        return NOBODY_THERE;
    }
    const bool done = wait_for(waiting);
    nba_destroy_handle(handle);
    return done ? codes_of(block) : NOBODY_THERE;
}

Codes Session::list(NB_ULONG target, NB_USHORT opcode, const Bytes &owner, const Take &take,
                    size_t key_size) {
    Part part;
    Waiting waiting;
    waiting.take = [&part](const NAP_VCB *vcb) {
        part.query = nap_copy<NAP_QUERY_LIST>(vcb);
        const auto *data = static_cast<const NB_UCHAR *>(vga_buf_ptr(vcb));
        const size_t length = vcb->primary_rc == NAP_OK ? part.query.total_buf_size : 0;
        part.data.assign(data, data + length);
    };
    const NB_ULONG handle = nba_create_handle(&waiting);
    NAP_QUERY_LIST next = {};
    next.opcode = opcode;
    next.list_options = NAP_FIRST_IN_LIST | NAP_DETAIL;
    next.owner_length = static_cast<NB_USHORT>(owner.size());
    std::copy(owner.begin(), owner.end(), next.key);
    const auto ask = [&] {
        NB_VOID *buffer = vga_get_querybuf(0);
        next.buf_size = gvga_querybuf_size;
        Bytes block(sizeof next);
        memcpy(block.data(), &next, sizeof next);
        waiting.done = false;
        return buffer != nullptr && queue(target, block, handle, buffer);
    };
    bool goes_on = ask();
    Codes codes = goes_on ? Codes{} : NOBODY_THERE;
    while (goes_on) {
        if (!wait_for(waiting)) {
            codes = NOBODY_THERE;
            break;
        }
        codes = {part.query.primary_rc, part.query.secondary_rc};
        const Part taken = std::move(part);
        std::vector<std::pair<size_t, NB_USHORT>> entries; /* where, and how long */
        for (size_t at = 0; at + 4 <= taken.data.size();) {
            NB_USHORT length = 0;
            memcpy(&length, &taken.data[at], sizeof length);
            if (length < 4 || at + length > taken.data.size()) {
                break;
            }
            entries.emplace_back(at, length);
            at += length;
        }
        goes_on = codes.ok() && !entries.empty() && entries.size() < taken.query.total_num_entries;
        if (goes_on) {
            memcpy(next.key, &taken.data[entries.back().first + records::KEY_OFFSET], key_size);
            next.list_options = NAP_LIST_FROM_NEXT | NAP_DETAIL;
            goes_on = ask();
        }
        for (const auto &[at, length] : entries) {
            if (!take(&taken.data[at], length)) {
                if (goes_on) {
                    wait_for(waiting);
                }
                goes_on = false;
                break;
            }
        }
    }
    nba_destroy_handle(handle);
    return codes;
}

Codes Session::nodes(std::vector<NAP_NODE_ALL_DATA> &nodes) {
    return list(
        0, NAP_QUERY_NODE_ALL, {},
        [&nodes](const NB_UCHAR *entry, size_t length) {
            NAP_NODE_ALL_DATA node = {};
            memcpy(&node, entry, std::min(length, sizeof node));
            nodes.push_back(node);
            return true;
        },
        sizeof(NAP_NODE_ALL_DATA::node_name));
}

Codes Session::reach(const std::string &node, bool tp_load, Home &home) {
    const auto known = std::find_if(reached_.begin(), reached_.end(), [&](const Reached &reached) {
        return reached.home.node == node && reached.tp_load == tp_load;
    });
    if (known != reached_.end()) {
        home = known->home;
        return {};
    }
    Codes codes;
    home = {0, node};
    if (node.empty() || tp_load) {
        NAP_OPEN_FILE_VERB verb = {};
        verb.opcode = NAP_OPEN_FILE;
        verb.file = tp_load ? NAP_TP_LOAD_FILE : NAP_SYSTEM_FILE;
        node.copy(reinterpret_cast<char *>(verb.node_name), sizeof verb.node_name - 1);
        codes = issue(0, verb);
        home.target = verb.target_handle;
    } else {
        NAP_CONNECT_NODE_VERB verb = {};
        verb.opcode = NAP_CONNECT_NODE;
        node.copy(reinterpret_cast<char *>(verb.node_name), sizeof verb.node_name - 1);
        codes = issue(0, verb);
        home.target = verb.target_handle;
    }
    if (codes.ok()) {
        reached_.push_back({home, tp_load});
        homes.push_back(home);
    }
    return codes;
}

Codes Session::listen(const Home &home, NB_USHORT indication) {
    NAP_REGISTER_SINK_VERB verb = {};
    verb.opcode = NAP_REGISTER_INDICATION_SINK;
    verb.indication = indication;
    return issue(home.target, verb);
}

void Session::when_heard(Hear hear) {
    hears = std::move(hear);
}

bool Session::wait(int ms) {
    vga_drain_immediate_queue();
    return !lost && gvga_exit_code == 0 && inputs::take(ms) && !lost;
}

} // namespace cli
