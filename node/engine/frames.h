/* Frames and blocks as they travel: cutting a stream into frames, writing frames, and the checks
 * that every block gets before anybody looks into it.
 *
 * A stream is believed one checked length at a time; the first frame that is not right ends it,
 * since nothing behind it can be found again. */
#ifndef FRAMES_H
#define FRAMES_H

#include "nofwire.h"
#include "resourceclass.h"

#include <vector>

namespace node {

struct Frame {
    NOF_FRAME header;
    std::vector<NB_UCHAR> block;
    std::vector<NB_UCHAR> data;
};

enum class FrameState { None, Ready, Garbage };

/* Cuts frames out of a stream. */
class FrameReader {
public:
    /* Adds bytes as they came. */
    void add(const NB_UCHAR *bytes, size_t length);

    /* Takes the next whole frame out.  After Garbage every call returns Garbage. */
    FrameState next(Frame &frame);

private:
    std::vector<NB_UCHAR> bytes_;
    size_t used_ = 0;
    bool garbage_ = false;
};

/* True when the parts of a header are possible and add up. */
bool good_header(const NOF_FRAME &header);

/* Makes the bytes of a frame. */
std::vector<NB_UCHAR> make_frame(NB_USHORT kind, NB_ULONG correlator, NB_ULONG target,
                                 const NB_VOID *block, size_t block_length,
                                 const NB_VOID *data = nullptr, size_t data_length = 0);

/* Checks opcode, format and length of a block against the verb table.  REQUIRES: at least the 12
 * bytes of a header.  Indications are not verbs: nobody may issue them. */
Result check_block(const NB_UCHAR *block, size_t length);

/* Writes the return codes into a block of at least 12 bytes. */
void set_result(std::vector<NB_UCHAR> &block, Result result);

/* The opcode of a block of at least 12 bytes. */
NB_USHORT block_opcode(const std::vector<NB_UCHAR> &block);

/* Answers a list query of a class that has no resources here. */
Result list_nothing(NAP_QUERY_LIST &query);

} // namespace node

#endif
