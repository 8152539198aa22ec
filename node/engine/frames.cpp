#include "frames.h"

#include "nofcopy.h"
#include "nofverbs.h"
#include "resourcetable.h"

#include <cstring>

namespace node {

namespace {

/* Bytes that were handed out are dropped when they outweigh what is left. */
constexpr size_t COMPACT_FROM = 65536;

} // namespace

void FrameReader::add(const NB_UCHAR *bytes, size_t length) {
    if (used_ == bytes_.size()) {
        bytes_.clear();
        used_ = 0;
    } else if (used_ >= COMPACT_FROM) {
        bytes_.erase(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(used_));
        used_ = 0;
    }
    bytes_.insert(bytes_.end(), bytes, bytes + length);
}

bool good_header(const NOF_FRAME &header) {
    return header.vcb_length <= NOF_MAX_VCB && header.data_length <= NOF_MAX_DATA &&
           header.vcb_length >= sizeof(NAP_VCB) && header.vcb_length % 4 == 0 &&
           header.data_length % 4 == 0 &&
           header.length == sizeof header + header.vcb_length + header.data_length;
}

FrameState FrameReader::next(Frame &frame) {
    const size_t left = bytes_.size() - used_;
    if (garbage_) {
        return FrameState::Garbage;
    }
    if (left < sizeof frame.header) {
        return FrameState::None;
    }
    memcpy(&frame.header, bytes_.data() + used_, sizeof frame.header);
    if (!good_header(frame.header)) {
        garbage_ = true;
        return FrameState::Garbage;
    }
    if (left < frame.header.length) {
        return FrameState::None;
    }
    const NB_UCHAR *block = bytes_.data() + used_ + sizeof frame.header;
    const NB_UCHAR *data = block + frame.header.vcb_length;
    frame.block.assign(block, data);
    frame.data.assign(data, data + frame.header.data_length);
    used_ += frame.header.length;
    return FrameState::Ready;
}

std::vector<NB_UCHAR> make_frame(NB_USHORT kind, NB_ULONG correlator, NB_ULONG target,
                                 const NB_VOID *block, size_t block_length, const NB_VOID *data,
                                 size_t data_length) {
    NOF_FRAME header = {};
    header.length = static_cast<NB_ULONG>(sizeof header + block_length + data_length);
    header.kind = kind;
    header.correlator = correlator;
    header.target = target;
    header.vcb_length = static_cast<NB_ULONG>(block_length);
    header.data_length = static_cast<NB_ULONG>(data_length);
    std::vector<NB_UCHAR> bytes(header.length);
    memcpy(bytes.data(), &header, sizeof header);
    memcpy(bytes.data() + sizeof header, block, block_length);
    if (data_length > 0) {
        memcpy(bytes.data() + sizeof header + block_length, data, data_length);
    }
    return bytes;
}

Result check_block(const NB_UCHAR *block, size_t length) {
    auto header = nap_copy<NAP_VCB>(block);
    const NAP_VERB *verb = nap_find_verb(header.opcode);
    if (verb == nullptr || verb->kind == NAP_KIND_INDICATION || header.format != 0 ||
        length > verb->block_size) {
        return {NAP_NOT_SUPPORTED, 0};
    }
    return length < verb->block_size ? bad_parameter(NAP_BAD_LENGTH) : GOOD;
}

void set_result(std::vector<NB_UCHAR> &block, Result result) {
    auto header = nap_copy<NAP_VCB>(block.data());
    header.primary_rc = result.primary;
    header.reserved_rc = 0;
    header.secondary_rc = result.secondary;
    memcpy(block.data(), &header, sizeof header);
}

NB_USHORT block_opcode(const std::vector<NB_UCHAR> &block) {
    auto header = nap_copy<NAP_VCB>(block.data());
    return header.opcode;
}

Result list_nothing(NAP_QUERY_LIST &query) {
    const Result checked = check_list_query(query, NAP_MAX_KEY);
    if (!checked.ok()) {
        return checked;
    }
    if (query.num_entries == 1 && (query.list_options & NAP_LIST_INCLUSIVE) != 0) {
        return bad_parameter(NAP_UNKNOWN_RESOURCE);
    }
    query.num_entries = 0;
    query.total_num_entries = 0;
    query.total_buf_size = 0;
    return GOOD;
}

} // namespace node
