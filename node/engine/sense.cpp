#include "sense.h"

namespace node {

namespace {

struct Words {
    NB_ULONG sense;
    const char *text;
};

constexpr Words words[] = {
    {SENSE_NOT_AVAILABLE, "the partner's port is not active"},
    {SENSE_LIMIT, "a port has all the links that it may have"},
    {SENSE_NOT_STARTED, "it cannot be started"},
    {SENSE_MISMATCH, "the partner has no link station that fits, and its port takes no others"},
    {SENSE_LINK_FAILED, "nobody answers"},
    {SENSE_PARTNER_LOST, "the node at the other end has gone"},
    {SENSE_NO_WAY, "no link leads to the server"},
};

} // namespace

const char *sense_words(NB_ULONG sense) {
    for (const Words &one : words) {
        if (one.sense == sense) {
            return one.text;
        }
    }
    return "";
}

} // namespace node
