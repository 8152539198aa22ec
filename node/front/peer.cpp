#include "peer.h"

#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>

namespace node {

namespace {

constexpr size_t READ_SIZE = 65536;

} // namespace

Peer::Peer(Loop &loop, int fd, std::function<void()> ready)
    : loop_(loop), fd_(fd), ready_(std::move(ready)) {
    gone_ = !loop_.watch(fd_, [this](bool can_read, bool can_write) {
        if (can_write) {
            flush();
        }
        if (can_read) {
            readable();
        }
        const auto ready = ready_; /* may destroy this peer */
        ready();
    });
}

Peer::~Peer() {
    loop_.unwatch(fd_);
    close(fd_);
}

void Peer::readable() {
    NB_UCHAR bytes[READ_SIZE];
    const ssize_t count = recv(fd_, bytes, sizeof bytes, MSG_DONTWAIT);
    if (count > 0) {
        reader_.add(bytes, static_cast<size_t>(count));
    } else if (count == 0 || (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR)) {
        gone_ = true;
    }
}

void Peer::hold(bool held) {
    if (held_ != held) {
        held_ = held;
        set_interest();
    }
}

void Peer::flush() {
    if (!out_.write_to(fd_)) {
        gone_ = true;
        return;
    }
    if (writing_ == out_.empty()) {
        writing_ = !out_.empty();
        set_interest();
    }
}

void Peer::set_interest() {
    loop_.interest(fd_, !held_, writing_);
}

} // namespace node
