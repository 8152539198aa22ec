/* What the node software costs as a whole, processes and socket included: bench_nodeload SNANODE
 * LUS...  For each number of LUs of a generated node: the start, the memory of both processes, a
 * list of all LUs, defines one by one and 32 at a time, a stop of the node behind the start of all
 * LUs, while one client listens to them and another one asks every 5 ms, and the start from what
 * was kept.  Takes any snanode, so that two can be compared. */
#include "frames.h"
#include "nofverbs.h"
#include "schemas.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using Time = std::chrono::steady_clock;

double since(Time::time_point start) {
    return std::chrono::duration<double>(Time::now() - start).count();
}

[[noreturn]] void give_up(const char *what) {
    perror(what);
    exit(1);
}

class Software {
public:
    Software(const std::string &program, const std::string &folder, unsigned lus)
        : folder_(folder) {
        const auto begun = Time::now();
        int out[2];
        if (pipe(out) != 0 || (pid_ = fork()) < 0) {
            give_up("start");
        }
        if (pid_ == 0) {
            const std::string numbers = "nodes=1,lus=" + std::to_string(lus);
            setenv("SNA_PREFIX", folder.c_str(), 1);
            dup2(out[1], 1);
            execl(program.c_str(), "snanode", "--generate", numbers.c_str(), nullptr);
            give_up(program.c_str());
        }
        close(out[1]);
        std::string said;
        char byte = 0;
        while (said.find(" ready\n") == std::string::npos && read(out[0], &byte, 1) == 1) {
            said += byte;
        }
        close(out[0]);
        took = since(begun);
    }
    ~Software() {
        kill(pid_, SIGTERM);
        waitpid(pid_, nullptr, 0);
    }

    /* Of the front process and the node's: megabytes at the highest. */
    std::string memory() const {
        const std::string task = "/proc/" + std::to_string(pid_) + "/task/" + std::to_string(pid_);
        std::ifstream children(task + "/children");
        pid_t node = 0;
        children >> node;
        return std::to_string(peak(pid_)) + " + " + std::to_string(peak(node)) + " MB";
    }
    std::string socket() const { return folder_ + "/var/sna.sock"; }

    double took = 0;

private:
    static unsigned peak(pid_t process) {
        std::ifstream status("/proc/" + std::to_string(process) + "/status");
        std::string word;
        unsigned value = 0;
        while (status >> word && word != "VmHWM:") {
        }
        status >> value;
        return value / 1024;
    }

    std::string folder_;
    pid_t pid_ = 0;
};

class Client {
public:
    explicit Client(const std::string &path) : fd_(socket(AF_UNIX, SOCK_STREAM, 0)) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        memcpy(address.sun_path, path.data(), path.size());
        if (connect(fd_, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
            give_up(path.c_str());
        }
        receive(); /* the hello */
        NAP_CONNECT_NODE_VERB join = {};
        join.opcode = NAP_CONNECT_NODE;
        strcpy(reinterpret_cast<char *>(join.node_name), "node0001");
        send_block(join);
        receive();
        memcpy(&join, frame.block.data(), sizeof join);
        if (join.primary_rc != NAP_OK) {
            fprintf(stderr, "connecting: %04X %08X\n", join.primary_rc, join.secondary_rc);
            exit(1);
        }
        target_ = join.target_handle;
    }
    ~Client() { close(fd_); }
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    template <class Block> void send_block(const Block &block) {
        const auto bytes =
            node::make_frame(NOF_FRAME_VERB, ++correlator_, target_, &block, sizeof block);
        if (send(fd_, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
            give_up("send");
        }
    }
    void receive() {
        NB_UCHAR bytes[65536];
        while (reader_.next(frame) != node::FrameState::Ready) {
            const ssize_t count = recv(fd_, bytes, sizeof bytes, 0);
            if (count <= 0) {
                give_up("receive");
            }
            reader_.add(bytes, static_cast<size_t>(count));
        }
    }
    void read_to_the_end() const {
        NB_UCHAR bytes[65536];
        while (recv(fd_, bytes, sizeof bytes, 0) > 0) {
        }
    }
    void hang_up() const { shutdown(fd_, SHUT_RDWR); }

    /* The answer to a verb, whatever indications come before it. */
    template <class Block> Block issue(Block block) {
        send_block(block);
        do {
            receive();
        } while (frame.header.kind != NOF_FRAME_ANSWER || frame.header.correlator != correlator_);
        memcpy(&block, frame.block.data(), sizeof block);
        return block;
    }

    node::Frame frame;

private:
    int fd_;
    NB_ULONG target_ = 0;
    NB_ULONG correlator_ = 0;
    node::FrameReader reader_;
};

struct Lus {
    unsigned all = 0;
    unsigned active = 0;
};

Lus list_lus(Client &client) {
    NAP_QUERY_LIST query = {};
    query.list_options = NAP_FIRST_IN_LIST | NAP_DETAIL;
    Lus found;
    for (;;) {
        query.opcode = records::lu03.lists[0].list;
        query.buf_size = NOF_MAX_DATA;
        client.send_block(query);
        client.receive();
        size_t last = 0;
        for (size_t at = 0; at < client.frame.data.size();) {
            NAP_LU03_DATA lu;
            memcpy(&lu, client.frame.data.data() + at, sizeof lu);
            last = at;
            at += lu.overlay_size;
            found.all++;
            found.active += lu.det_data.lu_sscp_sess_active != 0;
        }
        NAP_QUERY_LIST answer;
        memcpy(&answer, client.frame.block.data(), sizeof answer);
        if (answer.num_entries == answer.total_num_entries || client.frame.data.empty()) {
            return found;
        }
        query = {};
        query.list_options = NAP_LIST_FROM_NEXT | NAP_DETAIL;
        memcpy(query.key, client.frame.data.data() + last + records::KEY_OFFSET,
               records::lu03.key_size());
    }
}

/* Returns defines a second. */
double define(Client &client, char letter, unsigned count, unsigned at_a_time) {
    const auto begun = Time::now();
    for (unsigned at = 0, answered = 0; answered < count;) {
        for (; at < count && at < answered + at_a_time; at++) {
            char name[16];
            NAP_DEFINE_DLC_VERB verb = {};
            snprintf(name, sizeof name, "%c%07u", letter, at);
            verb.opcode = NAP_DEFINE_DLC;
            memcpy(verb.dlc_name, name, sizeof verb.dlc_name);
            client.send_block(verb);
        }
        client.receive();
        answered++;
    }
    return count / since(begun);
}

/* Until no more LUs come up. */
void wait_until_up(Client &client) {
    unsigned before = 0;
    for (unsigned now = list_lus(client).active; now == 0 || now != before;) {
        sleep(2);
        before = now;
        now = list_lus(client).active;
    }
    printf(", %u active", before);
}

NB_ULONG state_of_node(Client &client) {
    NAP_QUERY_NODE_VERB query = {};
    query.opcode = NAP_QUERY_NODE;
    return client.issue(query).info.node_state;
}

/* Seconds, and the longest that somebody else waited for an answer meanwhile. */
std::pair<double, double> stop(const std::string &socket) {
    Client listener(socket);
    NAP_REGISTER_SINK_VERB listen = {};
    listen.opcode = NAP_REGISTER_INDICATION_SINK;
    listen.indication = NAP_LU_0_TO_3_INDICATION;
    listener.issue(listen);
    std::thread reader([&listener] { listener.read_to_the_end(); });
    Client client(socket);
    Client other(socket);
    const auto begun = Time::now();
    NAP_NAME_VERB verb = {};
    verb.opcode = NAP_STOP_NODE;
    verb.stop_type = NAP_IMMEDIATE_STOP;
    client.send_block(verb);
    double longest = 0;
    for (NB_ULONG state = NAP_NODE_STOPPING; state != NAP_NODE_STOPPED;) {
        const auto asked = Time::now();
        state = state_of_node(other);
        longest = std::max(longest, since(asked));
        usleep(5000);
    }
    const double took = since(begun);
    listener.hang_up();
    reader.join();
    return {took, longest};
}

} // namespace

int main(int argc, char **argv) {
    if (argc < 3) {
        fprintf(stderr, "usage: %s SNANODE LUS...\n", argv[0]);
        return 2;
    }
    for (int at = 2; at < argc; at++) {
        char folder[] = "/tmp/bench-nodeload-XXXXXX";
        const auto lus = static_cast<unsigned>(strtoul(argv[at], nullptr, 10));
        if (mkdtemp(folder) == nullptr) {
            give_up(folder);
        }
        {
            const Software software(argv[1], folder, lus);
            printf("%8u LUs: start %.2f s, %s", lus, software.took, software.memory().c_str());
            Client client(software.socket());
            const auto begun = Time::now();
            const unsigned found = list_lus(client).all;
            printf(", list %.2f million LUs/s", found / since(begun) / 1e6);
            printf(", defines %.0f/s", define(client, 'A', 500, 1));
            printf(", %.0f/s by 32", define(client, 'B', 2000, 32));
            printf(", then %s", software.memory().c_str());
            wait_until_up(client);
            const auto [took, longest] = stop(software.socket());
            printf(", stop %.2f s, another client waits at most %.1f ms, then %s", took,
                   longest * 1e3, software.memory().c_str());
        }
        const Software software(argv[1], folder, lus);
        printf(", again %.2f s\n", software.took);
        std::filesystem::remove_all(folder);
    }
    return 0;
}
