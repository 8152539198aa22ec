/* The node software as processes, run by a test, and administrators' connections to it.
 *
 * A test program that includes this is the processes, too: its main function is
 * `run_tests_or_node`. */
#ifndef RUNNINGNODE_H
#define RUNNINGNODE_H

#include "node_support.h"

#include "command.h"
#include "frames.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>

namespace node_test {

using node::Frame;
using node::FrameState;

inline constexpr int WAIT_MS = 20000;

/* A number that whoever runs the test may give. */
inline int from_environment(const char *name, int otherwise) {
    const char *value = getenv(name);
    return value != nullptr ? atoi(value) : otherwise;
}

inline constexpr const char *TWO_NODES = R"(
[domain]
name = pair
client_server = yes
[node one]
server = master
fq_cp_name = NETA.ONE
cp_alias = ONE
[dlc LAN0]
[port ETH0]
dlc_name = LAN0
[node two]
fq_cp_name = NETA.TWO
cp_alias = TWO
[dlc LAN0]
)";

/* An administrator's connection. */
class Client {
public:
    explicit Client(const std::string &path) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        memcpy(address.sun_path, path.data(), path.size());
        fd_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        connected_ =
            connect(fd_, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
        Frame frame;
        if (connected_ && receive(frame)) {
            EXPECT_EQ(frame.header.kind, NOF_FRAME_HELLO);
            memcpy(&hello, frame.block.data(), sizeof hello);
        }
    }
    ~Client() { close(fd_); }

    /* The next frame; false at the end of the stream, at garbage, and when none comes. */
    bool receive(Frame &frame, int wait_ms = WAIT_MS) {
        NB_UCHAR bytes[65536];
        FrameState state = FrameState::None;
        while ((state = reader_.next(frame)) == FrameState::None) {
            pollfd ready = {fd_, POLLIN, 0};
            if (poll(&ready, 1, wait_ms) != 1) {
                return false;
            }
            const ssize_t count = recv(fd_, bytes, sizeof bytes, 0);
            if (count <= 0) {
                return false;
            }
            reader_.add(bytes, static_cast<size_t>(count));
        }
        return state == FrameState::Ready;
    }

    template <class Block> NB_ULONG send_verb(NB_ULONG target, const Block &block) {
        const auto frame =
            node::make_frame(NOF_FRAME_VERB, ++correlator_, target, &block, sizeof block);
        raw(frame);
        return correlator_;
    }
    void raw(const std::vector<NB_UCHAR> &bytes) { EXPECT_TRUE(try_raw(bytes)); }
    /* Something can be sent without waiting. */
    bool is_writable() const {
        pollfd ready = {fd_, POLLOUT, 0};
        return poll(&ready, 1, 0) == 1;
    }
    bool try_raw(const std::vector<NB_UCHAR> &bytes) {
        return send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL) == ssize_t(bytes.size());
    }

    /* Waits for the answer; what comes before it is kept in `heard`.  {0, 0xDEAD} for none. */
    template <class Block> Codes answer(NB_ULONG correlator, Block &block) {
        Frame frame;
        while (receive(frame)) {
            if (frame.header.kind == NOF_FRAME_ANSWER && frame.header.correlator == correlator) {
                EXPECT_EQ(frame.block.size(), sizeof block);
                memcpy(&block, frame.block.data(), sizeof block);
                return {block.primary_rc, block.secondary_rc};
            }
            heard.push_back(frame);
        }
        return {0, 0xDEAD};
    }
    template <class Block> Codes issue(NB_ULONG target, Block &block) {
        return answer(send_verb(target, block), block);
    }

    /* The next block with this opcode, from `heard` or to come. */
    template <class Block> bool hear(NB_USHORT opcode, Block &block) {
        Frame frame;
        for (;;) {
            if (!heard.empty()) {
                frame = heard.front();
                heard.erase(heard.begin());
            } else if (!receive(frame)) {
                return false;
            }
            if (frame.header.kind == NOF_FRAME_INDICATION &&
                node::block_opcode(frame.block) == opcode) {
                EXPECT_EQ(frame.block.size(), sizeof block);
                memcpy(&block, frame.block.data(), sizeof block);
                last_correlator = frame.header.correlator;
                return true;
            }
        }
    }

    /* News about other nodes, and of states on the way, are passed over. */
    void wait_for_server(const char *name, NB_ULONG state) {
        NAP_SERVER_INDICATION_VERB news = {};
        bool found = false;
        while (!found) {
            ASSERT_TRUE(hear(NAP_SERVER_INDICATION, news)) << name << " " << state;
            found = news.state == state &&
                    strcmp(reinterpret_cast<const char *>(news.node_name), name) == 0;
        }
    }

    NB_ULONG open(NB_USHORT file, Codes expected = OK_CODES) {
        NAP_OPEN_FILE_VERB verb = {};
        verb.opcode = NAP_OPEN_FILE;
        verb.file = file;
        EXPECT_EQ(issue(0, verb), expected);
        return verb.target_handle;
    }
    NB_ULONG join(const char *name, Codes expected = OK_CODES) {
        NAP_CONNECT_NODE_VERB verb = {};
        verb.opcode = NAP_CONNECT_NODE;
        strcpy(reinterpret_cast<char *>(verb.node_name), name);
        EXPECT_EQ(issue(0, verb), expected) << name;
        return verb.target_handle;
    }
    Codes listen_to(NB_ULONG target, NB_USHORT indication) {
        NAP_REGISTER_SINK_VERB verb = {};
        verb.opcode = NAP_REGISTER_INDICATION_SINK;
        verb.indication = indication;
        return issue(target, verb);
    }
    Codes query(NB_ULONG target, NB_USHORT opcode) {
        NAP_QUERY_LIST verb = {};
        verb.opcode = opcode;
        verb.buf_size = 65535;
        verb.list_options = NAP_FIRST_IN_LIST | NAP_DETAIL;
        const Codes codes = issue(target, verb);
        total = verb.total_num_entries;
        return codes;
    }
    Codes define_dlc(NB_ULONG target, const char *name) {
        NAP_DEFINE_DLC_VERB verb = {};
        verb.opcode = NAP_DEFINE_DLC;
        put(verb.dlc_name, local8(name));
        return issue(target, verb);
    }

    NOF_HELLO hello = {};
    std::vector<Frame> heard;
    NB_ULONG last_correlator = 0;
    unsigned total = 0;

private:
    int fd_;
    bool connected_;
    NB_ULONG correlator_ = 100;
    node::FrameReader reader_;
};

/* The node software, running in a folder of its own. */
class Running {
public:
    explicit Running(const std::string &text = TWO_NODES) {
        chmod(folder.path().c_str(), 0755);
        write("pair.domain", text);
        write("faults", "");
        start();
    }
    ~Running() { stop(); }

    void write(const std::string &name, const std::string &text) {
        std::ofstream(folder.file(name)) << text;
    }

    /* Returns what it printed before it was ready, or ended. */
    void start(std::vector<std::string> more = {}) {
        int out[2];
        ASSERT_EQ(pipe(out), 0);
        pid = fork();
        if (pid == 0) {
            setenv("SNA_PREFIX", folder.path().c_str(), 1);
            setenv("SNA_LOG", folder.file("log").c_str(), 1);
            dup2(out[1], 1);
            dup2(out[1], 2);
            close(out[0]);
            close(out[1]);
            std::vector<std::string> words = {"snanode", "--domain", folder.file("pair.domain"),
                                              "--fault", folder.file("faults")};
            words.insert(words.end(), more.begin(), more.end());
            std::vector<char *> arguments;
            for (std::string &word : words) {
                arguments.push_back(word.data());
            }
            arguments.push_back(nullptr);
            execv("/proc/self/exe", arguments.data());
            _exit(127);
        }
        close(out[1]);
        printed.clear();
        char byte = 0;
        while (printed.find(" ready\n") == std::string::npos && read(out[0], &byte, 1) == 1) {
            printed += byte;
        }
        close(out[0]);
    }
    int stop(int signal = SIGTERM) {
        int status = -1;
        if (pid > 0) {
            kill(pid, signal);
            waitpid(pid, &status, 0);
            pid = 0;
        }
        return status;
    }
    std::string socket() const { return folder.file("var/sna.sock"); }

    /* The processes of the nodes; at first in the order of the text. */
    std::vector<pid_t> nodes() const {
        const std::string task = "/proc/" + std::to_string(pid) + "/task/" + std::to_string(pid);
        std::ifstream file(task + "/children");
        std::vector<pid_t> found;
        for (pid_t one = 0; file >> one;) {
            found.push_back(one);
        }
        return found;
    }

    /* The process of a node, whatever was started again meanwhile; 0: there is none. */
    pid_t process_of(const std::string &name) const {
        for (const pid_t one : nodes()) {
            std::ifstream words("/proc/" + std::to_string(one) + "/cmdline");
            const std::string text{std::istreambuf_iterator<char>(words), {}};
            if (text.find(std::string("--serve") + '\0' + name + '\0') != std::string::npos) {
                return one;
            }
        }
        return 0;
    }

    Folder folder;
    pid_t pid = 0;
    std::string printed;
};

/* The main function of such a program. */
inline int run_tests_or_node(int argc, char **argv) {
    if (argc > 1 && strcmp(argv[0], "snanode") == 0) {
        return node::run_snanode(argc, argv);
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

} // namespace node_test

#endif
