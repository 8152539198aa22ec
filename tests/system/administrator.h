/* Another administrator: issues verbs over the verb interface and waits for their answers. */
#ifndef SYSTEM_ADMINISTRATOR_H
#define SYSTEM_ADMINISTRATOR_H

#include "poll.h"

#include "nof.h"
#include "schema.h"

#include <string>
#include <vector>

namespace sys {

using Bytes = std::vector<NB_UCHAR>;

class Administrator : public Source {
public:
    /* One at a time: the interface is the process's. */
    explicit Administrator(const std::string &socket);
    ~Administrator() override;

    std::vector<int> descriptors() const override;
    void take() override;

    /* Issues the block and puts the answer in its place.  False unless it is NAP_OK. */
    bool issue(NB_ULONG target, Bytes &block);

    /* The same, for any block. */
    template <class Block> bool issue(NB_ULONG target, Block &block) {
        const auto *bytes = reinterpret_cast<const NB_UCHAR *>(&block);
        Bytes copy(bytes, bytes + sizeof(block));
        const bool ok = issue(target, copy);
        std::copy(copy.begin(), copy.end(), reinterpret_cast<NB_UCHAR *>(&block));
        return ok;
    }

    /* Targets; 0 when there is none. */
    NB_ULONG open_file(NB_USHORT file, const std::string &node = "");
    NB_ULONG connect(const std::string &node);

    /* The entries of a list as they fit one answer, each of overlay_size(). */
    std::vector<Bytes> list(NB_ULONG target, const records::Schema &schema);
};

} // namespace sys

#endif
