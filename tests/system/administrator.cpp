#include "administrator.h"

#include "nofverbs.h"
#include "pollloop.h"

#include <cstdlib>
#include <cstring>

namespace sys {

namespace {

bool answered;

NB_VOID note_answer(NB_ULONG, NB_VOID *, NB_ULONG) {
    answered = true;
}

template <class Block> Block verb(NB_USHORT opcode) {
    Block block = {};
    block.opcode = opcode;
    return block;
}

template <class Block>
NB_ULONG target_of(Administrator &admin, Block &block, const std::string &node) {
    node.copy(reinterpret_cast<char *>(block.node_name), sizeof(block.node_name) - 1);
    return admin.issue(0, block) ? block.target_handle : 0;
}

} // namespace

Administrator::Administrator(const std::string &socket) {
    setenv("SNA_SOCKET", socket.c_str(), 1);
    vpm_asm_use_xt_sched(nullptr, pollloop::add_input, pollloop::remove_input);
}

Administrator::~Administrator() {
    nof_terminate();
}

std::vector<int> Administrator::descriptors() const {
    std::vector<int> all;
    for (const auto &[id, input] : pollloop::inputs) {
        all.push_back(input.fd);
    }
    return all;
}

void Administrator::take() {
    while (pollloop::round_of_loop(0) != 0) {
    }
}

bool Administrator::issue(NB_ULONG target, Bytes &block) {
    NAP_VCB header;
    answered =
        nof_async_version(NOF_VERSION, target, block.data(), note_answer, 0) == NOF_COMPLETED_SYNC;
    if (!wait_for([] { return answered; })) {
        nof_terminate(); // it must not write into the block later
        return false;
    }
    memcpy(&header, block.data(), sizeof(header));
    return header.primary_rc == NAP_OK;
}

NB_ULONG Administrator::open_file(NB_USHORT file, const std::string &node) {
    auto block = verb<NAP_OPEN_FILE_VERB>(NAP_OPEN_FILE);
    block.file = file;
    return target_of(*this, block, node);
}

NB_ULONG Administrator::connect(const std::string &node) {
    auto block = verb<NAP_CONNECT_NODE_VERB>(NAP_CONNECT_NODE);
    return target_of(*this, block, node);
}

std::vector<Bytes> Administrator::list(NB_ULONG target, const records::Schema &schema) {
    Bytes buffer(65536);
    auto block = verb<NAP_QUERY_LIST>(schema.lists[0].list);
    const NB_UCHAR *address = buffer.data();
    memcpy(block.buf_ptr, &address, sizeof(address));
    block.buf_size = static_cast<NB_ULONG>(buffer.size());
    block.list_options = NAP_FIRST_IN_LIST | NAP_DETAIL;
    std::vector<Bytes> entries;
    if (!issue(target, block)) {
        return entries;
    }
    for (size_t at = 0; at < block.total_buf_size;) {
        NB_USHORT length;
        memcpy(&length, &buffer[at], sizeof(length));
        entries.emplace_back(buffer.begin() + static_cast<long>(at),
                             buffer.begin() + static_cast<long>(at + length));
        entries.back().resize(schema.overlay_size());
        at += length;
    }
    return entries;
}

} // namespace sys
