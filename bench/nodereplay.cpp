#include "nodereplay.h"

#include "nofverbs.h"
#include "nofwire.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <linux/sockios.h>
#include <map>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

template <typename RECORD> RECORD record_at(const std::string &bytes, size_t at) {
    RECORD record{};
    std::memcpy(&record, bytes.data() + at, std::min(sizeof record, bytes.size() - at));
    return record;
}

int local_socket(const std::string &path, sockaddr_un &address) {
    address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

int connect_to(const std::string &path) {
    sockaddr_un address;
    const int fd = local_socket(path, address);
    if (connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0) {
        close(fd);
        return -1;
    }
    return fd;
}

bool send_all(int to, const std::string &bytes) {
    for (size_t at = 0; at < bytes.size();) {
        const ssize_t sent = send(to, bytes.data() + at, bytes.size() - at, MSG_NOSIGNAL);
        if (sent <= 0) {
            return false;
        }
        at += static_cast<size_t>(sent);
    }
    return true;
}

/* Cuts the first frame off what was received; "" while it is not whole. */
std::string cut_frame(std::string &bytes) {
    const auto length =
        bytes.size() < sizeof(NOF_FRAME) ? NB_ULONG{0} : record_at<NOF_FRAME>(bytes, 0).length;
    if (length < sizeof(NOF_FRAME) || bytes.size() < length) {
        return "";
    }
    std::string frame = bytes.substr(0, length);
    bytes.erase(0, length);
    return frame;
}

/* The target that an answer brings, or 0. */
NB_ULONG opened_target(const std::string &frame) {
    constexpr size_t block = sizeof(NOF_FRAME);
    const auto header = record_at<NAP_VCB>(frame, block);
    if (header.primary_rc != NAP_OK) {
        return 0;
    }
    switch (header.opcode) {
    case NAP_OPEN_FILE:
        return record_at<NAP_OPEN_FILE_VERB>(frame, block).target_handle;
    case NAP_CONNECT_NODE:
        return record_at<NAP_CONNECT_NODE_VERB>(frame, block).target_handle;
    default:
        return 0;
    }
}

/* The plain client.  Targets are numbers of a connection: it maps those of the recording. */
class CLIENT {
public:
    explicit CLIENT(const std::string &node) : fd_(connect_to(node)) {}
    CLIENT(const CLIENT &) = delete;
    CLIENT &operator=(const CLIENT &) = delete;
    ~CLIENT() {
        if (fd_ >= 0) {
            close(fd_);
        }
    }

    bool hear_hello() { return receive(0, ""); }
    bool send_verb(std::string frame) {
        const auto header = record_at<NOF_FRAME>(frame, 0);
        const auto target = targets_.find(header.target);
        if (target != targets_.end()) {
            std::memcpy(frame.data() + offsetof(NOF_FRAME, target), &target->second,
                        sizeof target->second);
        }
        return send_all(fd_, frame);
    }
    bool hear_answer(const std::string &recorded) {
        return receive(record_at<NOF_FRAME>(recorded, 0).correlator, recorded);
    }

private:
    /* Until the answer with this correlator is there; others may come first. */
    bool receive(NB_ULONG correlator, const std::string &recorded) {
        while (answers_.count(correlator) == 0) {
            char piece[65536];
            const ssize_t count = recv(fd_, piece, sizeof piece, 0);
            if (count <= 0) {
                return false;
            }
            left_.append(piece, static_cast<size_t>(count));
            for (std::string frame = cut_frame(left_); !frame.empty(); frame = cut_frame(left_)) {
                const auto header = record_at<NOF_FRAME>(frame, 0);
                if (header.kind != NOF_FRAME_INDICATION) {
                    answers_[header.correlator] = frame;
                }
            }
        }
        if (const NB_ULONG target = recorded.empty() ? 0 : opened_target(recorded)) {
            targets_[target] = opened_target(answers_[correlator]);
        }
        answers_.erase(correlator);
        return true;
    }

    int fd_;
    std::string left_;
    std::map<NB_ULONG, std::string> answers_;
    std::map<NB_ULONG, NB_ULONG> targets_;
};

} // namespace

NODE_RECORDER::NODE_RECORDER(const std::string &path, const std::string &node) : node_(node) {
    sockaddr_un address;
    unlink(path.c_str());
    listener_ = local_socket(path, address);
    if (bind(listener_, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0 ||
        listen(listener_, 1) != 0) {
        std::perror(path.c_str());
    }
}

NODE_RECORDER::~NODE_RECORDER() {
    for (int fd : {listener_, program_, server_}) {
        if (fd >= 0) {
            close(fd);
        }
    }
}

void NODE_RECORDER::pump() {
    pollfd waiting{listener_, POLLIN, 0};
    if (program_ < 0 && poll(&waiting, 1, 0) > 0) {
        program_ = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        server_ = connect_to(node_);
    }
    pollfd both[] = {{program_, POLLIN, 0}, {server_, POLLIN, 0}};
    while (poll(both, 2, 0) > 0) {
        if ((both[0].revents != 0 && !pass(program_, server_, from_program_, true)) ||
            (both[1].revents != 0 && !pass(server_, program_, from_node_, false))) {
            return;
        }
    }
}

void NODE_RECORDER::send_program(const std::string &frames) {
    send_all(program_, frames);
}

bool NODE_RECORDER::program_reads() const {
    int unread = 0;
    return ioctl(program_, SIOCOUTQ, &unread) == 0 && unread > 0;
}

bool NODE_RECORDER::pass(int from, int to, std::string &left, bool verbs) {
    char piece[65536];
    const ssize_t count = recv(from, piece, sizeof piece, 0);
    if (count <= 0 || !send_all(to, std::string(piece, static_cast<size_t>(count)))) {
        return false;
    }
    left.append(piece, static_cast<size_t>(count));
    for (std::string frame = cut_frame(left); !frame.empty(); frame = cut_frame(left)) {
        const auto kind = record_at<NOF_FRAME>(frame, 0).kind;
        if (kind == NOF_FRAME_VERB || kind == NOF_FRAME_ANSWER) {
            steps_.push_back({verbs, frame, std::chrono::steady_clock::now()});
        }
    }
    return true;
}

double replay(const std::string &node, const std::vector<WIRE_STEP> &steps) {
    const auto start = std::chrono::steady_clock::now();
    CLIENT client(node);
    bool well = client.hear_hello();
    for (const WIRE_STEP &step : steps) {
        well = well && (step.verb ? client.send_verb(step.frame) : client.hear_answer(step.frame));
    }
    const std::chrono::duration<double, std::milli> passed =
        std::chrono::steady_clock::now() - start;
    return well ? passed.count() : -1;
}

size_t verbs_of(const std::vector<WIRE_STEP> &steps) {
    return static_cast<size_t>(
        std::count_if(steps.begin(), steps.end(), [](const auto &step) { return step.verb; }));
}
