#include "framereader.h"

#include <cstring>
#include <new>

namespace nof {

namespace {

bool sound(const NOF_FRAME &header) {
    // Each part is bounded before they are added, so the sum cannot wrap.
    return header.vcb_length >= sizeof(NAP_VCB) && header.vcb_length <= NOF_MAX_VCB &&
           header.data_length <= NOF_MAX_DATA && header.vcb_length % 4 == 0 &&
           header.data_length % 4 == 0 &&
           header.length == sizeof(NOF_FRAME) + header.vcb_length + header.data_length;
}

} // namespace

bool FrameReader::start() {
    begin_ = end_ = 0;
    if (!buffer_) {
        buffer_.reset(new (std::nothrow) NB_UCHAR[NOF_MAX_FRAME]);
    }
    return buffer_ != nullptr;
}

NB_UCHAR *FrameReader::space(size_t &size) {
    if (begin_ > 0) {
        std::memmove(buffer_.get(), buffer_.get() + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
    }
    size = NOF_MAX_FRAME - end_;
    return buffer_.get() + end_;
}

Read FrameReader::look(NOF_FRAME &header) const {
    if (end_ - begin_ < sizeof(header)) {
        return Read::incomplete;
    }
    std::memcpy(&header, buffer_.get() + begin_, sizeof(header));
    if (!sound(header)) {
        return Read::garbage;
    }
    return end_ - begin_ < header.length ? Read::incomplete : Read::frame;
}

bool FrameReader::waiting() const {
    NOF_FRAME header;
    return look(header) != Read::incomplete;
}

Read FrameReader::next(Frame &frame) {
    const Read result = look(frame.header);
    if (result == Read::frame) {
        frame.vcb = buffer_.get() + begin_ + sizeof(frame.header);
        frame.data = frame.vcb + frame.header.vcb_length;
        begin_ += frame.header.length;
    }
    return result;
}

} // namespace nof
