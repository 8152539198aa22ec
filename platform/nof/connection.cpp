#include "connection.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <new>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <sys/un.h>

namespace nof {

namespace {

constexpr size_t out_size = 65536;
constexpr NB_ULONG retry_ms = 50;

static_assert(out_size >= sizeof(NOF_FRAME) + NOF_MAX_VCB);

uint64_t now_ms() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000 + static_cast<uint64_t>(now.tv_nsec) / 1000000;
}

timespec from_ms(NB_ULONG ms) {
    return {static_cast<time_t>(ms / 1000), static_cast<long>(ms % 1000) * 1000000};
}

bool would_block() {
    return errno == EAGAIN || errno == EWOULDBLOCK;
}

} // namespace

bool Connection::fail(const char *reason, int error) {
    close();
    reason_ = reason;
    error_ = error;
    return false;
}

Event Connection::end(const char *reason, int error) {
    reason_ = reason;
    error_ = error;
    return Event::ended;
}

bool Connection::open(const char *path, NB_ULONG wait_ms) {
    close();
    if (std::strlen(path) >= sizeof(path_)) {
        return fail("the path of the socket is too long");
    }
    std::strcpy(path_, path);
    if (!out_) {
        out_.reset(new (std::nothrow) NB_UCHAR[out_size]);
    }
    if (!out_ || !reader_.start()) {
        return fail("no memory");
    }
    deadline_ms_ = now_ms() + wait_ms;
    socket_.reset(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    timer_.reset(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC));
    if (!is_open() || timer_.fd() < 0 || !timed_.add(timer_.fd(), false, ready_, data_)) {
        return fail("no resources for a connection");
    }
    // A full backlog is tried again until the deadline.
    if (!try_connect() && !would_block()) {
        return fail(std::strerror(errno), errno);
    }
    const bool connected = state_ == State::connected;
    if (!set_timer(connected ? wait_ms : retry_ms, connected ? 0 : retry_ms) ||
        (connected && !readable_.is_set())) {
        return fail("no resources for a connection");
    }
    return true;
}

bool Connection::try_connect() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, path_);
    if (connect(socket_.fd(), reinterpret_cast<const sockaddr *>(&address), sizeof(address)) != 0) {
        return false;
    }
    state_ = State::connected;
    readable_.add(socket_.fd(), false, ready_, data_);
    return true;
}

bool Connection::set_timer(NB_ULONG first_ms, NB_ULONG every_ms) {
    itimerspec times{};
    times.it_value = from_ms(first_ms > 0 ? first_ms : 1);
    times.it_interval = from_ms(every_ms);
    return timerfd_settime(timer_.fd(), 0, &times, nullptr) == 0;
}

void Connection::close() {
    readable_.remove();
    writable_.remove();
    timed_.remove();
    socket_.reset(-1);
    timer_.reset(-1);
    state_ = State::connecting;
    write_failed_ = false;
    out_begin_ = out_end_ = 0;
}

void Connection::established() {
    timed_.remove();
    timer_.reset(-1);
}

bool Connection::late() {
    if (timer_.fd() < 0) {
        return false;
    }
    uint64_t times;
    if (read(timer_.fd(), &times, sizeof(times)) < 0) {
        return false; // it has not fired
    }
    return now_ms() >= deadline_ms_;
}

Event Connection::next(Frame &frame) {
    for (;;) {
        switch (state_ == State::connected ? reader_.next(frame) : Read::incomplete) {
        case Read::frame:
            return Event::frame;
        case Read::garbage:
            return end("a frame with impossible lengths");
        case Read::incomplete:
            break;
        }
        const Event event = receive();
        if (event != Event::frame) {
            return event;
        }
    }
}

// Returns Event::frame when bytes came in.
Event Connection::receive() {
    if (late()) {
        return end("no answer to the connection in time");
    }
    if (state_ == State::connecting && !try_connect()) {
        return would_block() ? Event::nothing : end(std::strerror(errno), errno);
    }
    if (!readable_.is_set()) {
        return end("no resources for a connection");
    }
    size_t size;
    NB_UCHAR *space = reader_.space(size);
    const ssize_t count = recv(socket_.fd(), space, size, 0);
    if (count > 0) {
        reader_.received(static_cast<size_t>(count));
        return Event::frame;
    }
    if (count == 0) {
        return end("closed by the node software");
    }
    if (errno == EINTR) {
        return Event::frame;
    }
    if (!would_block()) {
        return end(std::strerror(errno), errno);
    }
    return write_failed_ ? end("writing failed") : Event::nothing;
}

bool Connection::can_send(size_t vcb_length) const {
    return is_open() && !write_failed_ && out_end_ + sizeof(NOF_FRAME) + vcb_length <= out_size;
}

void Connection::send(NOF_FRAME header, const NB_UCHAR *vcb) {
    header.length = static_cast<NB_ULONG>(sizeof(header) + header.vcb_length);
    header.data_length = 0;
    std::memcpy(out_.get() + out_end_, &header, sizeof(header));
    std::memcpy(out_.get() + out_end_ + sizeof(header), vcb, header.vcb_length);
    out_end_ += header.length;
}

bool Connection::flush() {
    while (is_open() && !write_failed_ && out_begin_ < out_end_) {
        const ssize_t count =
            ::send(socket_.fd(), out_.get() + out_begin_, out_end_ - out_begin_, MSG_NOSIGNAL);
        if (count >= 0) {
            out_begin_ += static_cast<size_t>(count);
        } else if (would_block()) {
            break;
        } else if (errno != EINTR) {
            write_failed_ = true;
        }
    }
    if (out_begin_ == out_end_ || write_failed_) {
        out_begin_ = out_end_ = 0;
        writable_.remove();
    } else if (!writable_.add(socket_.fd(), true, ready_, data_)) {
        write_failed_ = true;
    }
    return !write_failed_;
}

} // namespace nof
