/* One stream socket with frames on it: reads without waiting, keeps what cannot be written yet, and
 * tells the loop what to wait for.  OWNS: the descriptor. */
#ifndef PEER_H
#define PEER_H

#include "eventloop.h"
#include "frames.h"
#include "sendqueue.h"

namespace node {

class Peer {
public:
    /* `ready` is called when something came, when the peer is gone, and when it took what waited.
     */
    Peer(Loop &loop, int fd, std::function<void()> ready);
    ~Peer();
    Peer(const Peer &) = delete;
    Peer &operator=(const Peer &) = delete;

    int fd() const { return fd_; }
    OutQueue &out() { return out_; }

    /* The next frame that came.  Garbage and the end of the stream are for the caller to act on. */
    FrameState next(Frame &frame) { return reader_.next(frame); }

    /* True when no more will come and nothing can be sent. */
    bool gone() const { return gone_; }

    /* While held, nothing more is read: the peer waits until its answers are taken. */
    void hold(bool held);

    /* Sends what waits now, as far as it goes; the loop does the rest. */
    void flush();

private:
    void readable();
    void set_interest();

    Loop &loop_;
    int fd_;
    std::function<void()> ready_;
    FrameReader reader_;
    OutQueue out_;
    bool gone_ = false;
    bool held_ = false;
    bool writing_ = false;
};

} // namespace node

#endif
