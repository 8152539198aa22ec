#include "interface.h"

#include "answer.h"
#include "nbproblem.h"
#include "nofcopy.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace nof {

namespace {

void socket_path(char *path, size_t size) {
    const char *named = std::getenv("SNA_SOCKET");
    if (named && *named) {
        std::snprintf(path, size, "%s", named);
    } else {
        std::snprintf(path, size, "%s/var/sna.sock", nba_prefix());
    }
}

} // namespace

Interface::Interface(NB_ULONG hello_wait_ms)
    : hello_wait_ms_(hello_wait_ms), link_(on_ready, this) {}

void Interface::terminate() {
    terminations_++;
    link_.close();
    wakeup_.stop();
    flights_.clear();
    deferred_.clear();
    targets_.clear();
    faults_.clear();
    last_callback_ = nullptr;
    state_ = State::idle;
}

// Fills what the record of a verb needs from its block.  Returns false, with return codes, for a
// verb that is complete without having gone anywhere.
bool Interface::accept(Verb &verb, NB_USHORT &primary_rc, NB_ULONG &secondary_rc) {
    auto header = nap_copy<NAP_VCB>(verb.vcb);
    verb.row = header.format == 0 ? nap_find_verb(header.opcode) : nullptr;
    if (!verb.row || verb.row->kind == NAP_KIND_INDICATION) {
        primary_rc = NAP_NOT_SUPPORTED;
        return false;
    }
    if (state_ == State::lost) {
        return true;
    }
    primary_rc = NAP_PARAMETER_CHECK;
    if (verb.row->kind == NAP_KIND_LIST) {
        auto block = nap_copy<NAP_QUERY_LIST>(verb.vcb);
        std::memcpy(&verb.buffer, block.buf_ptr, sizeof(verb.buffer));
        verb.buffer_size = block.buf_size;
        secondary_rc = NAP_BAD_LENGTH;
        if (!verb.buffer || verb.buffer_size < 4) {
            return false;
        }
    }
    if (verb.target != 0 && targets_.count(verb.target) == 0) {
        secondary_rc = NAP_BAD_TARGET;
        return false;
    }
    if (fails_at_once(verb, primary_rc, secondary_rc)) {
        return false;
    }
    secondary_rc = NAP_NO_PERMISSION;
    return !verb.row->changes || may_change_ || state_ != State::ready;
}

// What a test has asked the node software for.
bool Interface::fails_at_once(const Verb &verb, NB_USHORT &primary_rc, NB_ULONG &secondary_rc) {
    for (NOF_FAULT &fault : faults_) {
        if (fault.opcode == verb.row->opcode && fault.times > 0) {
            fault.times -= fault.times == 0xFFFFFFFF ? 0 : 1;
            primary_rc = fault.primary_rc;
            secondary_rc = fault.secondary_rc;
            return true;
        }
    }
    return false;
}

NB_USHORT Interface::issue(NB_ULONG target, NB_UCHAR *vcb, NOF_CALLBACK callback,
                           NB_ULONG user_data) {
    Verb verb{target, vcb, callback, user_data, nullptr, nullptr, 0};
    NB_USHORT primary_rc = NAP_OK;
    NB_ULONG secondary_rc = 0;
    if (!accept(verb, primary_rc, secondary_rc)) {
        set_return_codes(vcb, primary_rc, secondary_rc);
        return NOF_COMPLETED_SYNC;
    }
    Verb *const added = wakeup_.start(on_ready, this) ? flights_.add(verb) : nullptr;
    if (!added) {
        set_return_codes(vcb, NAP_UNAVAILABLE, 0);
        return NOF_COMPLETED_SYNC;
    }
    last_callback_ = callback;
    if (state_ == State::lost) {
        flights_.finish(*added, deferred_, NAP_COMM_FAILURE, NAP_CONNECTION_GONE);
        wakeup_.arm();
    } else if (state_ == State::idle) {
        connect();
    } else if (!collecting_) {
        pump();
    }
    return NOF_IN_PROGRESS;
}

void Interface::connect() {
    char path[PATH_MAX];
    socket_path(path, sizeof(path));
    state_ = State::greeting;
    try {
        if (status_.empty()) {
            status_.emplace_back();
        }
        if (!link_.open(path, hello_wait_ms_)) {
            give_up(link_.reason(), link_.system_error());
        }
    } catch (const std::bad_alloc &) {
        give_up("no memory");
    }
}

// Sends what waits, as far as there is room.
void Interface::pump() {
    if (state_ != State::ready) {
        return;
    }
    Verb *verb = flights_.first_waiting();
    do {
        for (; verb && link_.can_send(verb->row->block_size); verb = flights_.first_waiting()) {
            NB_UCHAR block[NOF_MAX_VCB];
            std::memcpy(block, verb->vcb, verb->row->block_size);
            if (verb->buffer) {
                std::memset(block + NAP_BUF_PTR_OFFSET, 0, sizeof(NAP_QUERY_LIST::buf_ptr));
            }
            NOF_FRAME header{};
            header.kind = NOF_FRAME_VERB;
            header.correlator = verb->correlator;
            header.target = verb->target;
            header.vcb_length = verb->row->block_size;
            link_.send(header, block);
            flights_.now_sent(*verb);
        }
        if (!link_.flush()) {
            wakeup_.arm();
            return;
        }
    } while (verb && link_.can_send(verb->row->block_size));
}

NB_VOID Interface::on_ready(NB_VOID *data) {
    static_cast<Interface *>(data)->work();
}

void Interface::work() {
    const unsigned terminations = terminations_;
    wakeup_.clear();
    pump();
    for (NB_USHORT left = vpm_get_io_limit(); left > 0; left--) {
        const bool more = step();
        if (terminations != terminations_) {
            return;
        }
        if (!more) {
            break;
        }
    }
    pump();
    // What lies in the library's own memory makes no descriptor ready.
    if (!deferred_.empty() || link_.frame_waiting()) {
        wakeup_.arm();
    }
}

// Handles one event; returns false when there is none.
bool Interface::step() {
    if (!deferred_.empty()) {
        complete_deferred();
        return true;
    }
    if (!link_.is_open()) {
        return false;
    }
    Frame frame;
    switch (link_.next(frame)) {
    case Event::nothing:
        return false;
    case Event::ended:
        fail(link_.reason());
        return true;
    case Event::frame:
        break;
    }
    const unsigned terminations = terminations_;
    if (!handle(frame) && terminations == terminations_) {
        fail("a frame with impossible contents");
    }
    return true;
}

void Interface::complete_deferred() {
    const Verb verb = deferred_.front();
    deferred_.pop_front();
    if (!verb.vcb) {
        tell_lost(verb);
        return;
    }
    set_return_codes(verb.vcb, verb.primary_rc, verb.secondary_rc);
    verb.callback(verb.target, verb.vcb, verb.user_data);
}

void Interface::tell_lost(const Verb &status) {
    NAP_NOF_STATUS_INDICATION_VERB block{};
    block.opcode = NAP_NOF_STATUS_INDICATION;
    block.primary_rc = NAP_INDICATION;
    block.status = NAP_CONNECTION_GONE;
    status.callback(0, &block, status.user_data);
}

void Interface::fail(const char *reason) {
    if (!link_.is_open()) {
        return; // it ended while a callback ran
    }
    if (state_ == State::greeting) {
        give_up(reason, link_.system_error());
    } else {
        lose(reason);
    }
}

// The node software was never reached.
void Interface::give_up(const char *reason, int system_error, NB_ULONG refusal) {
    socket_path(unreachable_at_, sizeof(unreachable_at_));
    std::snprintf(unreachable_why_, sizeof(unreachable_why_), "%s", reason);
    unreachable_error_ = system_error;
    refusal_ = refusal;
    nba_pd_print_problem(NB_PD_UNREACHABLE, 0, "s s", unreachable_at_, reason);
    link_.close();
    state_ = State::idle;
    flights_.finish_all(deferred_, NAP_UNAVAILABLE, 0);
    wakeup_.arm();
}

void Interface::lose(const char *reason) {
    nba_pd_print_problem(NB_PD_LOST, 0, "s i i", reason, static_cast<NB_INT>(flights_.in_flight()),
                         static_cast<NB_INT>(flights_.sinks()));
    link_.close();
    state_ = State::lost;
    flights_.finish_all(deferred_, NAP_COMM_FAILURE, NAP_CONNECTION_GONE);
    const Verb *sink = flights_.first_sink();
    status_.front() = Verb{0,
                           nullptr,
                           sink ? sink->callback : last_callback_,
                           sink ? sink->user_data : 0,
                           nullptr,
                           nullptr,
                           0};
    deferred_.splice(deferred_.end(), status_);
    flights_.clear();
    targets_.clear();
    wakeup_.arm();
}

} // namespace nof
