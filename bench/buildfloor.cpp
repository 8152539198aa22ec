#include "buildrun.h"

#include "model.h"
#include "nofverbs.h"
#include "nofwire.h"
#include "vgadsutl.h"
#include <array>
#include <boost/intrusive/avl_set.hpp>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <deque>
#include <map>
#include <memory>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

namespace intrusive = boost::intrusive;

struct KEY {
    const NB_VOID *bytes;
    NB_INT (*compare)(const NB_VOID *, const NB_VOID *);
};

/* One place in an index. */
struct PLACE : intrusive::avl_set_base_hook<intrusive::link_mode<intrusive::normal_link>> {
    KEY key;
    friend bool operator<(const PLACE &left, const PLACE &right) {
        return left.key.compare(left.key.bytes, right.key.bytes) < 0;
    }
};
using INDEX = intrusive::avl_multiset<PLACE>;

/* What the model makes of an entry of a list: the size of its record and its index entries, those
 * of its line among them. */
struct SHAPE {
    NB_USHORT opcode;
    size_t record_size;
    size_t indexes;
    NB_INT (*compare)(const NB_VOID *, const NB_VOID *);
    size_t key_offset; /* in the entry */
};

constexpr SHAPE shapes[] = {
    {NAP_QUERY_LU_0_TO_3, sizeof(VGA_LU03), 3, vga_compare_ebc8, 10},
    {NAP_QUERY_LS, sizeof(VGA_LS), 3, vga_compare_asc8, 2},
    {NAP_QUERY_PORT, sizeof(VGA_PORT), 3, vga_compare_asc8, 2},
    {NAP_QUERY_LOCAL_LU, sizeof(VGA_LU62), 3, vga_compare_ebc8, 2},
    {NAP_QUERY_PU, sizeof(VGA_LOCAL_PU), 1, vga_compare_ebc8, 2},
    {NAP_QUERY_MODE_DEFINITION, sizeof(VGA_MODE_DEF), 2, vga_compare_ebc8, 2},
};

constexpr SHAPE other = {0, sizeof(VGA_MODE), 2, vga_compare_ebc8, 2};

const SHAPE &shape_of(NB_USHORT opcode) {
    for (const SHAPE &shape : shapes) {
        if (shape.opcode == opcode) {
            return shape;
        }
    }
    return other;
}

struct FLOOR {
    int fd = -1;
    std::map<uint32_t, uint32_t> targets{{0, 0}};
    std::map<NB_USHORT, std::array<INDEX, 3>> indexes;
    std::unique_ptr<unsigned char[]> buffer{new unsigned char[NOF_MAX_FRAME]};
    BUILD_RESULT result = {};
};

void read_whole(int fd, void *to, size_t length) {
    for (auto *at = static_cast<unsigned char *>(to); length > 0;) {
        const ssize_t got = read(fd, at, length);
        if (got <= 0) {
            fprintf(stderr, "bench_build: the node software closed the connection\n");
            exit(1);
        }
        at += got;
        length -= static_cast<size_t>(got);
    }
}

NOF_FRAME read_frame(FLOOR &floor) {
    NOF_FRAME frame;
    read_whole(floor.fd, &frame, sizeof frame);
    read_whole(floor.fd, floor.buffer.get(), frame.length - sizeof frame);
    return frame;
}

void send_verb(const FLOOR &floor, const RECORDED_VERB &verb, uint32_t correlator) {
    NOF_FRAME frame = {};
    frame.length = static_cast<NB_ULONG>(sizeof frame + verb.block.size());
    frame.kind = NOF_FRAME_VERB;
    frame.correlator = correlator;
    frame.target = floor.targets.at(verb.target);
    frame.vcb_length = static_cast<NB_ULONG>(verb.block.size());
    std::string bytes(reinterpret_cast<const char *>(&frame), sizeof frame);
    bytes.append(reinterpret_cast<const char *>(verb.block.data()), verb.block.size());
    if (send(floor.fd, bytes.data(), bytes.size(), MSG_NOSIGNAL) !=
        static_cast<ssize_t>(bytes.size())) {
        exit(1);
    }
}

void keep_entry(std::array<INDEX, 3> &indexes, const SHAPE &shape, const unsigned char *entry,
                NB_USHORT size) {
    auto *record = static_cast<unsigned char *>(calloc(1, shape.record_size));
    auto *data = static_cast<unsigned char *>(malloc(size));
    memcpy(data, entry, size);
    auto *place = reinterpret_cast<PLACE *>(record);
    for (size_t at = 0; at < shape.indexes; at++, place++) {
        new (place) PLACE;
        place->key = {data + shape.key_offset, shape.compare};
        indexes[at].insert(indexes[at].end(), *place);
    }
}

void keep_list(FLOOR &floor, const NOF_FRAME &frame) {
    NAP_QUERY_LIST query;
    memcpy(&query, floor.buffer.get(), sizeof query);
    const unsigned char *entry = floor.buffer.get() + frame.vcb_length;
    const SHAPE &shape = shape_of(query.opcode);
    auto &indexes = floor.indexes[query.opcode];
    for (NB_USHORT at = 0; at < query.num_entries; at++) {
        NB_USHORT size;
        memcpy(&size, entry, sizeof size);
        keep_entry(indexes, shape, entry, size);
        entry += size;
    }
    floor.result.entries += query.num_entries;
    floor.result.bytes += query.total_buf_size;
}

void keep_answer(FLOOR &floor, const NOF_FRAME &frame, const std::vector<RECORDED_VERB> &verbs) {
    NAP_VCB vcb;
    memcpy(&vcb, floor.buffer.get(), sizeof vcb);
    const RECORDED_VERB &verb = verbs[frame.correlator - 1];
    if (vcb.opcode == NAP_OPEN_FILE) {
        NAP_OPEN_FILE_VERB open;
        memcpy(&open, floor.buffer.get(), sizeof open);
        floor.targets[verb.new_target] = open.target_handle;
    } else if (vcb.opcode == NAP_CONNECT_NODE) {
        NAP_CONNECT_NODE_VERB connect;
        memcpy(&connect, floor.buffer.get(), sizeof connect);
        floor.targets[verb.new_target] = connect.target_handle;
    } else if (nap_find_verb(vcb.opcode)->kind == NAP_KIND_LIST && vcb.primary_rc == NAP_OK) {
        keep_list(floor, frame);
    }
}

int connect_to(const std::string &path) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0) {
        perror("bench_build: connect");
        exit(1);
    }
    return fd;
}

double cpu_now() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

} // namespace

/* The pointers of a record as it was sent say nothing to anybody, so a block goes out as it is. */
BUILD_RESULT build_floor(const std::string &socket, const std::vector<RECORDED_VERB> &verbs,
                         size_t ahead) {
    using CLOCK = std::chrono::steady_clock;
    FLOOR floor;
    uint64_t heap = heap_in_use();
    double cpu = cpu_now();
    CLOCK::time_point start = CLOCK::now();
    floor.fd = connect_to(socket);
    read_frame(floor);
    size_t sent = 0;
    for (size_t answered = 0; answered < verbs.size();) {
        while (sent < verbs.size() && sent - answered < ahead &&
               floor.targets.contains(verbs[sent].target)) {
            send_verb(floor, verbs[sent], static_cast<uint32_t>(sent + 1));
            sent++;
        }
        NOF_FRAME frame = read_frame(floor);
        if (frame.kind == NOF_FRAME_ANSWER) {
            keep_answer(floor, frame, verbs);
            answered++;
        }
    }
    floor.result.seconds = std::chrono::duration<double>(CLOCK::now() - start).count();
    floor.result.cpu_seconds = cpu_now() - cpu;
    floor.result.memory = heap_in_use() - heap;
    BUILD_RESULT result = floor.result;
    close(floor.fd);
    for (auto &[opcode, indexes] : floor.indexes) {
        for (INDEX &index : indexes) {
            index.clear();
        }
    }
    return result;
}
