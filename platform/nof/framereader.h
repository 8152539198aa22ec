/* The receiving side of the wire: bytes in, checked frames out.  No lengths are believed before
 * they are checked, and they are checked as soon as a header is there.  One buffer of the longest
 * frame's size, made once.  OWNS: the buffer; a frame's parts point into it. */
#ifndef NOF_FRAMEREADER_H
#define NOF_FRAMEREADER_H

#include "nofwire.h"

#include <memory>

namespace nof {

/* A whole frame.  The parts are gone at the reader's next `space`. */
struct Frame {
    NOF_FRAME header;
    const NB_UCHAR *vcb;
    const NB_UCHAR *data;
};

enum class Read { frame, incomplete, garbage };

class FrameReader {
public:
    /* Forgets what was received.  Returns false when there is no memory. */
    bool start();

    /* Where to put received bytes, and how many fit: never 0 while no whole frame is waiting. */
    NB_UCHAR *space(size_t &size);
    void received(size_t count) { end_ += count; }

    /* Looks at the next frame and takes it out of the buffer when it is whole.  Garbage stays
     * garbage. */
    Read next(Frame &frame);

    /* Whether `next` would return anything but incomplete. */
    bool waiting() const;

private:
    Read look(NOF_FRAME &header) const;

    std::unique_ptr<NB_UCHAR[]> buffer_;
    size_t begin_ = 0;
    size_t end_ = 0;
};

} // namespace nof

#endif
