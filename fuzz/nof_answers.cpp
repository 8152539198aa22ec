/* What a node sends, against the verb interface library with verbs in flight.  The run plays a node
 * on a real socket: bytes as they are, or frames whose lengths add up, with any contents.
 *
 * Every block and buffer is a heap block of the exact size that is freed as soon as its verb is
 * complete, so the sanitizer sees a write past an end, and one that comes late. */
#include "fuzzinput.h"

#include "interface.h"
#include "nofverbs.h"
#include "nofwire.h"
#include "pollloop.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <vector>

namespace {

constexpr NB_ULONG hello_wait_ms = 600000; /* longer than any run: nothing depends on the clock */
constexpr size_t max_verbs = 48;

using pollloop::inputs;

/* Calls what is ready until nothing is.  An input that stays ready for ever is a finding. */
NB_VOID settle() {
    for (size_t round = 0; !inputs.empty() && pollloop::round_of_loop(0, inputs.size()) != 0;
         round++) {
        MUST(round < 100000);
    }
}

/* The node's end. */

/* Listens at a path that only this process can name, and that is gone with it. */
NB_INT start_listening() {
    NB_CHAR folder[] = "/tmp/nof_answers.XXXXXX";
    MUST(mkdtemp(folder) != nullptr);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "%s/s", folder);
    const NB_INT listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    MUST(bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0);
    MUST(listen(listener, 4) == 0);
    const NB_INT place = open(address.sun_path, O_PATH | O_CLOEXEC);
    MUST(place >= 0);
    unlink(address.sun_path);
    rmdir(folder);
    setenv("SNA_SOCKET", ("/proc/self/fd/" + std::to_string(place)).c_str(), 1);
    nba_pd_set_log(nullptr, NB_PD_NONE);
    vpm_asm_use_xt_sched(nullptr, pollloop::add_input, pollloop::remove_input);
    return listener;
}

class NODE {
public:
    explicit NODE(NB_INT listener) : fd_(accept4(listener, nullptr, nullptr, SOCK_CLOEXEC)) {
        MUST(fd_ >= 0);
    }
    NODE(const NODE &) = delete;
    NODE &operator=(const NODE &) = delete;
    ~NODE() { hang_up(); }

    NB_VOID hang_up() {
        if (fd_ >= 0) {
            close(fd_);
        }
        fd_ = -1;
    }

    /* The library is let in whenever the socket is full, and behind every `piece` bytes. */
    NB_VOID send_bytes(const std::string &bytes, size_t piece) {
        for (size_t at = 0; at < bytes.size() && fd_ >= 0;) {
            const size_t size = std::min(piece, bytes.size() - at);
            const ssize_t sent = send(fd_, bytes.data() + at, size, MSG_NOSIGNAL | MSG_DONTWAIT);
            if (sent < 0 && errno != EAGAIN) {
                hang_up();
            }
            at += sent > 0 ? static_cast<size_t>(sent) : 0;
            settle();
        }
    }

private:
    NB_INT fd_;
};

/* The program's end. */

struct ISSUED {
    const NAP_VERB *row;
    std::unique_ptr<FUZZ_BLOCK> block; /* null: complete or forgotten */
    std::unique_ptr<NB_UCHAR[]> buffer;
    NB_ULONG buffer_size = 0;
};

class PROGRAM {
public:
    explicit PROGRAM(uint8_t reactions) : reactions_(reactions), library_(hello_wait_ms) {}

    NB_VOID issue(uint8_t choice, uint8_t size);
    NB_VOID called(NB_UCHAR *vcb, NB_ULONG user_data);
    NB_VOID terminate() {
        library_.terminate();
        verbs_.clear();
        verbs_.reserve(max_verbs);
        MUST(inputs.empty());
    }
    NB_VOID only_listen() { reactions_ = 0; }
    bool all_complete() const {
        return std::none_of(verbs_.begin(), verbs_.end(),
                            [](const ISSUED &verb) { return verb.block != nullptr; });
    }
    const NAP_VERB *row(size_t verb) const {
        return verbs_.empty() ? &gnap_verbs[verb % NAP_VERB_COUNT]
                              : verbs_[verb % verbs_.size()].row;
    }

private:
    NB_VOID react(const NAP_VERB *row);
    NB_VOID check_list(const ISSUED &verb) const;

    uint8_t reactions_; /* bits: what callbacks do */
    std::vector<ISSUED> verbs_;
    NB_ULONG opened_ = 0;
    nof::Interface library_;
};

PROGRAM *program;

NB_VOID callback(NB_ULONG, NB_VOID *vcb, NB_ULONG user_data) {
    program->called(static_cast<NB_UCHAR *>(vcb), user_data);
}

template <typename RECORD> RECORD record_at(const NB_UCHAR *bytes) {
    RECORD record;
    std::memcpy(&record, bytes, sizeof record);
    return record;
}

/* The first choices are what a program has in flight at start, the others any row of the table. */
NB_VOID PROGRAM::issue(uint8_t choice, uint8_t size) {
    static constexpr NB_USHORT usual[] = {
        NAP_QUERY_LS,     NAP_QUERY_NODE, NAP_OPEN_FILE,      NAP_REGISTER_INDICATION_SINK,
        NAP_CONNECT_NODE, NAP_DEFINE_LS,  NAP_DISCONNECT_NODE};
    if (verbs_.size() == max_verbs) {
        return;
    }
    ISSUED verb;
    verb.row = choice < std::size(usual) ? nap_find_verb(usual[choice])
                                         : &gnap_verbs[choice % NAP_VERB_COUNT];
    verb.block = std::make_unique<FUZZ_BLOCK>(verb.row->block_size);
    NB_UCHAR *const vcb = verb.block->get();
    std::memcpy(vcb, &verb.row->opcode, sizeof verb.row->opcode);
    if (verb.row->kind == NAP_KIND_LIST) {
        verb.buffer_size = size == 255 ? NOF_MAX_DATA : size * 4u;
        verb.buffer.reset(new NB_UCHAR[verb.buffer_size]);
        const NB_UCHAR *const address = verb.buffer.get();
        std::memcpy(vcb + offsetof(NAP_QUERY_LIST, buf_ptr), &address, sizeof address);
        std::memcpy(vcb + offsetof(NAP_QUERY_LIST, buf_size), &verb.buffer_size,
                    sizeof verb.buffer_size);
    }
    const NB_ULONG target = size % 2 != 0 ? opened_ : 0;
    verbs_.push_back(std::move(verb));
    const size_t place = verbs_.size() - 1;
    if (library_.issue(target, vcb, callback, static_cast<NB_ULONG>(place)) == NOF_COMPLETED_SYNC) {
        MUST(record_at<NAP_VCB>(vcb).primary_rc != NAP_OK);
        verbs_[place].block.reset();
        verbs_[place].buffer.reset();
    }
}

/* What an issuer walks through without looking at lengths again. */
NB_VOID PROGRAM::check_list(const ISSUED &verb) const {
    const auto block = record_at<NAP_QUERY_LIST>(verb.block->get());
    MUST(record_at<NB_UCHAR *>(block.buf_ptr) == verb.buffer.get());
    MUST(block.buf_size == verb.buffer_size && block.total_buf_size <= verb.buffer_size);
    NB_ULONG at = 0;
    for (NB_USHORT entry = 0; entry < block.num_entries; entry++) {
        MUST(at + 4 <= block.total_buf_size);
        const auto length = record_at<NB_USHORT>(verb.buffer.get() + at);
        MUST(length >= 4 && length % 4 == 0 && at + length <= block.total_buf_size);
        at += length;
    }
    MUST(block.primary_rc != NAP_OK || at == block.total_buf_size);
}

NB_VOID PROGRAM::called(NB_UCHAR *vcb, NB_ULONG user_data) {
    const auto header = record_at<NAP_VCB>(vcb);
    const NAP_VERB *const row = nap_find_verb(header.opcode);
    MUST(row != nullptr);
    if (header.primary_rc == NAP_INDICATION) {
        /* All of the copy is there, and it is nobody's own block. */
        const FUZZ_BLOCK copy(vcb, row->block_size);
        MUST(std::none_of(verbs_.begin(), verbs_.end(), [vcb](const ISSUED &verb) {
            return verb.block && verb.block->get() == vcb;
        }));
        react(row);
        return;
    }
    MUST(user_data < verbs_.size());
    ISSUED &verb = verbs_[user_data];
    MUST(verb.block && verb.block->get() == vcb && verb.row == row && header.format == 0);
    /* Without a connection nothing was asked, and the block is as it was issued. */
    if (row->kind == NAP_KIND_LIST && header.primary_rc == NAP_OK) {
        check_list(verb);
    }
    if (header.opcode == NAP_OPEN_FILE && header.primary_rc == NAP_OK) {
        opened_ = record_at<NAP_OPEN_FILE_VERB>(vcb).target_handle;
    }
    verb.block.reset();
    verb.buffer.reset();
    react(row);
}

/* Callbacks may issue verbs and may terminate the interface. */
NB_VOID PROGRAM::react(const NAP_VERB *row) {
    if ((reactions_ & 7) == 7 && row->kind == NAP_KIND_RECORD) {
        reactions_ = 0;
        terminate();
    } else if ((reactions_ & 1) != 0) {
        issue(reactions_ >> 4, reactions_);
    }
}

/* Frames. */

std::string make_frame(NB_USHORT kind, NB_ULONG correlator, const std::string &vcb,
                       const std::string &data) {
    NOF_FRAME header{};
    header.kind = kind;
    header.correlator = correlator;
    header.vcb_length = static_cast<NB_ULONG>(vcb.size());
    header.data_length = static_cast<NB_ULONG>(data.size());
    header.length = static_cast<NB_ULONG>(sizeof header + vcb.size() + data.size());
    return std::string(reinterpret_cast<const NB_CHAR *>(&header), sizeof header) + vcb + data;
}

std::string hello(NB_ULONG rights) {
    NOF_HELLO block{};
    block.version = NOF_WIRE_VERSION;
    block.rights = rights;
    return make_frame(NOF_FRAME_HELLO, 0,
                      std::string(reinterpret_cast<NB_CHAR *>(&block), sizeof block), "");
}

/* An answer that gets as far as its contents let it; `size` is the number of words of data. `wrong`
 * says which of its parts the input spoils. */
std::string answer(FUZZ_INPUT &input, const NAP_VERB *row, NB_ULONG correlator, uint8_t wrong) {
    const auto length = static_cast<NB_USHORT>(input.take<uint8_t>() * 4u);
    std::string vcb(row->block_size, '\0');
    const auto put = [&vcb](size_t at, auto value) { std::memcpy(&vcb[at], &value, sizeof value); };
    for (size_t words = input.take<uint8_t>() % 8, at = 12; words > 0 && at + 4 <= vcb.size();
         words--, at += 4) {
        put(at, input.take<NB_ULONG>());
    }
    put(offsetof(NAP_VCB, opcode), row->opcode);
    const bool indication = row->kind == NAP_KIND_INDICATION || (wrong & 1) != 0;
    put(offsetof(NAP_VCB, primary_rc), static_cast<NB_USHORT>(indication ? NAP_INDICATION : 0));
    std::string data;
    if (row->kind == NAP_KIND_LIST) {
        for (NB_USHORT count = 0; data.size() < length; count++) {
            auto size = static_cast<NB_USHORT>((wrong & 2) != 0 ? input.take<NB_USHORT>() : 8);
            data.append(reinterpret_cast<NB_CHAR *>(&size), sizeof size);
            data.resize(std::min<size_t>(length, data.size() + 6));
            put(offsetof(NAP_QUERY_LIST, num_entries), static_cast<NB_USHORT>(count + 1));
        }
        put(offsetof(NAP_QUERY_LIST, total_buf_size), static_cast<NB_ULONG>(data.size()));
    }
    if ((wrong & 4) != 0) {
        put(input.take<uint8_t>() % (vcb.size() - 3), input.take<NB_ULONG>());
    }
    if ((wrong & 8) != 0) {
        vcb.resize(std::max<size_t>(12, input.take<uint8_t>() * 4u));
    }
    return make_frame(indication ? NOF_FRAME_INDICATION : NOF_FRAME_ANSWER, correlator, vcb, data);
}

/* A run. */

NB_VOID play(FUZZ_INPUT &input, NODE &node, size_t piece) {
    for (int step = 0; step < 64; step++) {
        const auto what = input.take<uint8_t>();
        const auto which = input.take<uint8_t>();
        switch (what & 7) {
        case 0:
            node.send_bytes(input.rest(), piece);
            return;
        case 1:
            program->issue(which, input.take<uint8_t>());
            settle();
            break;
        case 2: {
            /* Under its row, to whichever correlator. */
            const NAP_VERB *row = &gnap_verbs[which % NAP_VERB_COUNT];
            node.send_bytes(answer(input, row, input.take<uint8_t>(), what >> 4), piece);
            break;
        }
        case 3:
            program->terminate();
            return;
        default:
            /* Correlators begin with 1 and are given out in order. */
            node.send_bytes(answer(input, program->row(which), which + 1u, what >> 4), piece);
            break;
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const NB_INT listener = start_listening();
    FUZZ_INPUT input(data, size);
    const auto choice = input.take<uint8_t>();
    PROGRAM running(input.take<uint8_t>());
    program = &running;
    for (uint8_t verb = 0; verb < 5; verb++) {
        running.issue(verb, choice);
    }
    {
        NODE node(listener);
        if ((choice & 1) != 0) {
            node.send_bytes(hello((choice & 2) != 0 ? NOF_RIGHT_CHANGE : 0), NOF_MAX_FRAME);
        }
        play(input, node, (choice & 4) != 0 ? 1 + choice / 8 : NOF_MAX_FRAME);
    }
    /* What a callback issued behind the end of the connection made another, which nobody hears. */
    running.only_listen();
    settle();
    for (pollfd waiting{listener, POLLIN, 0}; poll(&waiting, 1, 0) > 0; settle()) {
        NODE unheard(listener);
    }
    MUST(running.all_complete());
    running.terminate();
    return 0;
}
