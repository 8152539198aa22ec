// The half of the interface that handles what comes from the node software.

#include "answer.h"
#include "interface.h"
#include "nofcopy.h"

#include <cstring>
#include <new>

namespace nof {

namespace {

constexpr NB_ULONG short_answer = 4096;

// The verbs whose answer brings a target, and where in the block it stands.
struct Opener {
    NB_USHORT opcode;
    size_t handle_offset;
};

constexpr Opener openers[] = {
    {NAP_OPEN_FILE, offsetof(NAP_OPEN_FILE_VERB, target_handle)},
    {NAP_CONNECT_NODE, offsetof(NAP_CONNECT_NODE_VERB, target_handle)},
};

// Returns the target that a successful verb has opened, or 0.
NB_ULONG opened_target(const Verb &verb) {
    NB_ULONG handle = 0;
    for (const Opener &opener : openers) {
        if (opener.opcode == verb.row->opcode) {
            std::memcpy(&handle, verb.vcb + opener.handle_offset, sizeof(handle));
        }
    }
    return handle;
}

NB_USHORT primary_rc_of(const NB_UCHAR *vcb) {
    auto header = nap_copy<NAP_VCB>(vcb);
    return header.primary_rc;
}

const char *refusal_words(NB_ULONG secondary_rc) {
    return secondary_rc == NAP_LIMIT_REACHED ? "this user has all the connections that he may have"
           : secondary_rc == NAP_NODE_BUSY   ? "all its connections are taken"
                                             : "it refused the connection";
}

} // namespace

// Returns false for garbage, and when there is no memory to go on with.
bool Interface::handle(const Frame &frame) {
    if (state_ == State::greeting) {
        return handle_hello(frame);
    }
    switch (frame.header.kind) {
    case NOF_FRAME_ANSWER:
        return handle_answer(frame);
    case NOF_FRAME_INDICATION:
        return handle_indication(frame);
    case NOF_FRAME_FAULT:
        return handle_fault(frame);
    default:
        return false;
    }
}

bool Interface::handle_hello(const Frame &frame) {
    NOF_HELLO hello;
    if (frame.header.kind != NOF_FRAME_HELLO || frame.header.vcb_length != sizeof(hello) ||
        frame.header.data_length > 0) {
        return false;
    }
    std::memcpy(&hello, frame.vcb, sizeof(hello));
    if (hello.version != NOF_WIRE_VERSION) {
        return false;
    }
    if (hello.primary_rc != NAP_OK) {
        give_up(refusal_words(hello.secondary_rc), 0, hello.secondary_rc);
        return true;
    }
    link_.established();
    may_change_ = (hello.rights & NOF_RIGHT_CHANGE) != 0;
    state_ = State::ready;
    if (!may_change_) {
        flights_.finish_waiting_changes(deferred_, NAP_PARAMETER_CHECK, NAP_NO_PERMISSION);
    }
    pump();
    return true;
}

bool Interface::handle_answer(const Frame &frame) {
    const Verb *const found = flights_.find(frame.header.correlator, Place::sent);
    if (!found || !fill_answer(*found, frame)) {
        return false;
    }
    const Verb verb = *found;
    const bool kept = keep_account(verb);
    // Behind a long answer the program is busy for a while: the node gets its next verb before.
    collecting_ = frame.header.length <= short_answer;
    verb.callback(verb.target, verb.vcb, verb.user_data);
    collecting_ = false;
    return kept;
}

// Moves the record of an answered verb on, and notes the targets that come and go.  Returns false
// when there is no memory for a target.
bool Interface::keep_account(const Verb &verb) {
    const NB_USHORT primary_rc = primary_rc_of(verb.vcb);
    const bool target_lives = verb.target == 0 || targets_.count(verb.target) > 0;
    if (verb.row->opcode == NAP_REGISTER_INDICATION_SINK && primary_rc == NAP_OK && target_lives) {
        flights_.now_sink(verb);
        return true;
    }
    flights_.drop(verb);
    const bool closes =
        verb.row->opcode == NAP_CLOSE_FILE || verb.row->opcode == NAP_DISCONNECT_NODE;
    // A node that is busy keeps the target; every other failure means that it has none.
    if (closes && primary_rc != NAP_STATE_CHECK) {
        targets_.erase(verb.target);
        flights_.end_sinks(verb.target);
    }
    const NB_ULONG opened = primary_rc == NAP_OK ? opened_target(verb) : 0;
    try {
        if (opened != 0) {
            targets_.insert(opened);
        }
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

// One without an opcode takes back those before it.
bool Interface::handle_fault(const Frame &frame) {
    NOF_FAULT fault;
    if (frame.header.vcb_length != sizeof(fault) || frame.header.data_length > 0) {
        return false;
    }
    std::memcpy(&fault, frame.vcb, sizeof(fault));
    if (fault.opcode == 0) {
        faults_.clear();
        return true;
    }
    try {
        faults_.push_back(fault);
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

bool Interface::handle_indication(const Frame &frame) {
    alignas(8) NB_UCHAR block[NOF_MAX_VCB];
    if (!copy_indication(frame, block)) {
        return false;
    }
    // One whose registration has ended was on its way when it did.
    if (const Verb *sink = flights_.find(frame.header.correlator, Place::sink)) {
        const Verb verb = *sink;
        verb.callback(verb.target, block, verb.user_data);
    }
    return true;
}

} // namespace nof
