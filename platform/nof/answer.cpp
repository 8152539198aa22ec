#include "answer.h"

#include "nofcopy.h"

#include <cstring>

namespace nof {

namespace {

#define NAP_ROW(name, opcode, block, kind)                                                         \
    static_assert(sizeof(block) <= NOF_MAX_VCB && sizeof(block) % 4 == 0, #name);                  \
    static_assert(NAP_KIND_##kind != NAP_KIND_LIST || sizeof(block) == sizeof(NAP_QUERY_LIST));
NAP_VERBS(NAP_ROW)
#undef NAP_ROW

// Walks the entries by their own lengths.  Returns their number, or -1 when the lengths do not add
// up to the data.
long count_entries(const NB_UCHAR *data, NB_ULONG length) {
    long count = 0;
    for (NB_ULONG at = 0; at < length; count++) {
        const NB_USHORT size = nap_copy<NB_USHORT>(data + at);
        if (size < 4 || size % 4 != 0 || size > length - at) {
            return -1;
        }
        at += size;
    }
    return count;
}

bool fill_list(const Verb &verb, const Frame &frame) {
    const NAP_QUERY_LIST answer = nap_copy<NAP_QUERY_LIST>(frame.vcb);
    NAP_QUERY_LIST block = nap_copy<NAP_QUERY_LIST>(verb.vcb);
    const NB_ULONG length = frame.header.data_length;
    const bool ok = answer.primary_rc == NAP_OK;
    if (!ok && length > 0) {
        return false;
    }
    if (ok && (length > verb.buffer_size || answer.total_buf_size != length ||
               count_entries(frame.data, length) != answer.num_entries)) {
        return false;
    }
    block.primary_rc = answer.primary_rc;
    block.secondary_rc = answer.secondary_rc;
    block.total_buf_size = length;
    block.num_entries = ok ? answer.num_entries : 0;
    block.total_num_entries = ok ? answer.total_num_entries : 0;
    block.buf_size = verb.buffer_size;
    std::memcpy(block.buf_ptr, &verb.buffer, sizeof(verb.buffer));
    std::memcpy(verb.vcb, &block, sizeof(block));
    if (length > 0) {
        std::memcpy(verb.buffer, frame.data, length);
    }
    return true;
}

bool may_be_indicated(NB_UCHAR kind) {
    return NAP_KIND_COPIED(kind) || kind == NAP_KIND_INDICATION;
}

} // namespace

void set_return_codes(NB_UCHAR *vcb, NB_USHORT primary_rc, NB_ULONG secondary_rc) {
    std::memcpy(vcb + offsetof(NAP_VCB, primary_rc), &primary_rc, sizeof(primary_rc));
    std::memcpy(vcb + offsetof(NAP_VCB, secondary_rc), &secondary_rc, sizeof(secondary_rc));
}

bool fill_answer(const Verb &verb, const Frame &frame) {
    const NAP_VCB header = nap_copy<NAP_VCB>(frame.vcb);
    // The code of indications would keep the program from seeing its own verb complete.
    if (frame.header.vcb_length != verb.row->block_size || header.opcode != verb.row->opcode ||
        header.primary_rc == NAP_INDICATION) {
        return false;
    }
    if (verb.row->kind == NAP_KIND_LIST) {
        return fill_list(verb, frame);
    }
    if (frame.header.data_length > 0) {
        return false;
    }
    set_return_codes(verb.vcb, header.primary_rc, header.secondary_rc);
    std::memcpy(verb.vcb + sizeof(header), frame.vcb + sizeof(header),
                verb.row->block_size - sizeof(header));
    return true;
}

bool copy_indication(const Frame &frame, NB_UCHAR *vcb) {
    const NAP_VCB header = nap_copy<NAP_VCB>(frame.vcb);
    const NAP_VERB *row = nap_find_verb(header.opcode);
    if (!row || !may_be_indicated(row->kind) || frame.header.vcb_length != row->block_size ||
        frame.header.data_length > 0 || header.primary_rc != NAP_INDICATION) {
        return false;
    }
    std::memcpy(vcb, frame.vcb, row->block_size);
    return true;
}

} // namespace nof
