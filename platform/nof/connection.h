/* The socket to the node software.  Never waits: connecting, receiving and sending all stop at what
 * is possible now and go on when the base library's inputs say so.
 *
 * The connection calls nobody but the `ready` procedure, and that only through the inputs: its
 * owner asks for the next event.  So an owner may close it in the middle of anything.  OWNS:
 * descriptors, inputs and both buffers; the buffer for sending takes whole frames up to a fixed
 * size. */
#ifndef NOF_CONNECTION_H
#define NOF_CONNECTION_H

#include "framereader.h"
#include "input.h"
#include "nbbase.h"

#include <memory>

namespace nof {

enum class Event {
    nothing, /* until `ready` is called again */
    frame,
    ended /* close it; `reason` says why */
};

class Connection {
public:
    Connection(NB_READY_PROC ready, NB_VOID *data) : ready_(ready), data_(data) {}

    /* Begins to connect to the socket of this path.  Until the owner says `established`, the
     * connection ends when `wait_ms` milliseconds have passed.  Returns false, with a reason, when
     * there is nobody to connect to. */
    bool open(const char *path, NB_ULONG wait_ms);
    bool is_open() const { return socket_.fd() >= 0; }
    void close();

    /* The peer has said who it is: no more time limit. */
    void established();

    /* Takes the next event.  A frame's parts are valid until the next call. */
    Event next(Frame &frame);

    /* Whether a received frame waits in the buffer, of which no input would tell. */
    bool frame_waiting() const { return is_open() && reader_.waiting(); }

    /* Whether a frame with a block of this size can be taken now. */
    bool can_send(size_t vcb_length) const;

    /* REQUIRES: can_send.  Takes a frame; header.length is filled in here. */
    void send(NOF_FRAME header, const NB_UCHAR *vcb);

    /* Writes what can be written now.  Returns false when writing has failed: the reading side may
     * still hold answers, so the connection ends when `next` has found that empty. */
    bool flush();

    const char *reason() const { return reason_; }
    int system_error() const { return error_; } /* errno behind it; 0: none */

private:
    enum class State { connecting, connected };

    bool try_connect();
    bool set_timer(NB_ULONG first_ms, NB_ULONG every_ms);
    bool late();
    Event receive();
    Event end(const char *reason, int error = 0);
    bool fail(const char *reason, int error = 0);

    NB_READY_PROC ready_;
    NB_VOID *data_;
    State state_ = State::connecting;
    char path_[108];
    uint64_t deadline_ms_ = 0;
    bool write_failed_ = false;
    const char *reason_ = "";
    int error_ = 0;
    Descriptor socket_;
    Descriptor timer_;
    Input readable_;
    Input writable_;
    Input timed_;
    FrameReader reader_;
    std::unique_ptr<NB_UCHAR[]> out_;
    size_t out_begin_ = 0;
    size_t out_end_ = 0;
};

} // namespace nof

#endif
