#include "buildrun.h"

#include "globals.h"
#include "hooks.h"
#include "listqueries.h"
#include "nof.h"
#include "verbqueue.h"
#include "vgadsadd.h"
#include "vgadsbld.h"
#include "vgadsdel.h"
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <malloc.h>
#include <map>
#include <poll.h>

namespace {

using CLOCK = std::chrono::steady_clock;

/* A main loop without a toolkit. */
struct INPUT {
    int fd;
    short events;
    NB_INPUT_PROC proc;
    NB_VOID *data;
};
std::map<unsigned long, INPUT> inputs;
unsigned long last_input;
bool complete;
std::vector<RECORDED_VERB> *recording;
std::map<const NB_VOID *, size_t> issued; /* block to its place in the recording */
BUILD_RESULT result;

unsigned long add_input(NB_VOID *, NB_INT fd, NB_VOID *condition, NB_INPUT_PROC proc,
                        NB_VOID *data) {
    constexpr uintptr_t writable = 2; /* the toolkit's mask */
    bool for_writing = (reinterpret_cast<uintptr_t>(condition) & writable) != 0;
    inputs[++last_input] = {fd, static_cast<short>(for_writing ? POLLOUT : POLLIN), proc, data};
    return last_input;
}

void remove_input(unsigned long id) {
    inputs.erase(id);
}

double since(CLOCK::time_point start) {
    return std::chrono::duration<double>(CLOCK::now() - start).count();
}

double cpu_now() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

void note_hold(double seconds) {
    size_t bucket = 0;
    while (bucket + 1 < hold_buckets && seconds * 1000 >= std::exp2(bucket)) {
        bucket++;
    }
    result.holds[bucket]++;
    result.longest_hold = std::max(result.longest_hold, seconds);
}

/* One event of one input, as the toolkit dispatches them. */
void one_round() {
    vga_drain_immediate_queue();
    std::vector<pollfd> fds;
    std::vector<unsigned long> ids;
    for (const auto &[id, input] : inputs) {
        fds.push_back({input.fd, input.events, 0});
        ids.push_back(id);
    }
    poll(fds.data(), fds.size(), 1000);
    for (size_t at = 0; at < fds.size(); at++) {
        auto found = inputs.find(ids[at]);
        if (fds[at].revents != 0 && found != inputs.end()) {
            INPUT input = found->second;
            CLOCK::time_point start = CLOCK::now();
            unsigned long id = ids[at];
            input.proc(input.data, &input.fd, &id);
            note_hold(since(start));
        }
    }
}

void note_new_target(const NAP_VCB *vcb) {
    auto found = issued.find(vcb);
    if (recording == nullptr || found == issued.end()) {
        return;
    }
    RECORDED_VERB &verb = (*recording)[found->second];
    if (vcb->opcode == NAP_OPEN_FILE) {
        NAP_OPEN_FILE_VERB open;
        memcpy(&open, vcb, sizeof open);
        verb.new_target = open.target_handle;
    } else if (vcb->opcode == NAP_CONNECT_NODE) {
        NAP_CONNECT_NODE_VERB connect;
        memcpy(&connect, vcb, sizeof connect);
        verb.new_target = connect.target_handle;
    }
    issued.erase(found);
}

NOF_CALLBACK real_callback;

NB_VOID watch_answer(NB_ULONG target, NB_VOID *vcb, NB_ULONG user_data) {
    const auto *block = static_cast<const NAP_VCB *>(vcb);
    const NAP_VERB *row = nap_find_verb(block->opcode);
    if (row != nullptr && row->kind == NAP_KIND_LIST && block->primary_rc == NAP_OK) {
        NAP_QUERY_LIST query;
        memcpy(&query, vcb, sizeof query);
        result.entries += query.num_entries;
        result.bytes += query.total_buf_size;
    }
    note_new_target(block);
    real_callback(target, vcb, user_data);
}

} // namespace

/* Stands before the library's entry (the linker wraps it), to record and to count. */
extern "C" {
NB_USHORT __real_nof_async_version(NB_USHORT version, NB_ULONG target, NB_VOID *vcb,
                                   NOF_CALLBACK callback, NB_ULONG user_data);

NB_USHORT __wrap_nof_async_version(NB_USHORT version, NB_ULONG target, NB_VOID *vcb,
                                   NOF_CALLBACK callback, NB_ULONG user_data) {
    if (recording != nullptr) {
        const NAP_VERB *row = nap_find_verb(static_cast<const NAP_VCB *>(vcb)->opcode);
        const auto *bytes = static_cast<const unsigned char *>(vcb);
        issued[vcb] = recording->size();
        recording->push_back({target, {bytes, bytes + row->block_size}, 0});
    }
    real_callback = callback;
    return __real_nof_async_version(version, target, vcb, watch_answer, user_data);
}
}

uint64_t heap_in_use() {
    struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

/* The first node dies and is back at once. */
static double lose_and_read_again() {
    auto *node = static_cast<VGA_NODE *>(AVL_FIRST(gvga_system->nodes));
    const BUILD_RESULT first = result;
    const CLOCK::time_point start = CLOCK::now();
    recording = nullptr;
    vga_free_node_resources(node, 1, nullptr);
    complete = false;
    vga_start_build_node(node);
    while (!complete && gvga_exit_code == 0) {
        one_round();
    }
    const double seconds = since(start);
    if (result.entries - first.entries < first.entries / 2) {
        fprintf(stderr, "bench_build: the node that returned was not read again\n");
        exit(1);
    }
    result = first;
    return seconds;
}

BUILD_RESULT build_model(std::vector<RECORDED_VERB> *verbs) {
    result = {};
    recording = verbs;
    nba_hm_initialise();
    vpm_asm_use_xt_sched(nullptr, add_input, remove_input);
    vga_init_verb_queues();
    gvga_hooks.model_built = [] { complete = true; };
    gvga_system = vga_init_vga_system();
    uint64_t heap = heap_in_use();
    double cpu = cpu_now();
    CLOCK::time_point start = CLOCK::now();
    vga_start_build_system();
    while (!complete && gvga_exit_code == 0) {
        one_round();
    }
    result.seconds = since(start);
    result.cpu_seconds = cpu_now() - cpu;
    result.memory = heap_in_use() - heap;
    if (gvga_exit_code != 0) {
        fprintf(stderr, "bench_build: the build ended with exit code %d, %lx\n", gvga_exit_code,
                static_cast<unsigned long>(gvga_exit_subcode));
        exit(1);
    }
    result.return_seconds = lose_and_read_again();
    start = CLOCK::now();
    vga_destroy_data_structures();
    result.delete_seconds = since(start);
    return result;
}
