/* The verb interface: what a verb meets between its issue and its callback.
 *
 * Everything that calls the program happens in `work`, which only the main loop calls, and which
 * handles a bounded number of events a call.  A callback may issue verbs or terminate the
 * interface; nothing of the interface is held across a callback but the count of terminations.
 * What callbacks of short answers issue is sent in one piece behind the last of them.
 *
 * A connection that was lost stays lost until `terminate`; one that never came about is tried again
 * by the next verb. */
#ifndef NOF_INTERFACE_H
#define NOF_INTERFACE_H

#include "connection.h"
#include "flights.h"
#include "nof.h"
#include "wakeup.h"

#include <climits>
#include <unordered_set>

namespace nof {

class Interface {
public:
    /* `hello_wait_ms`: how long the node software may take to say hello. */
    explicit Interface(NB_ULONG hello_wait_ms);
    ~Interface() { terminate(); }

    /* See nof_async_version and nof_terminate. */
    NB_USHORT issue(NB_ULONG target, NB_UCHAR *vcb, NOF_CALLBACK callback, NB_ULONG user_data);
    void terminate();
    NOF_FAILURE failure() const {
        return {unreachable_at_, unreachable_why_, unreachable_error_, refusal_};
    }

private:
    enum class State { idle, greeting, ready, lost };

    static NB_VOID on_ready(NB_VOID *data);
    void work();
    bool step();
    void pump();
    bool accept(Verb &verb, NB_USHORT &primary_rc, NB_ULONG &secondary_rc);
    bool fails_at_once(const Verb &verb, NB_USHORT &primary_rc, NB_ULONG &secondary_rc);
    void connect();
    void fail(const char *reason);
    void give_up(const char *reason, int system_error = 0, NB_ULONG refusal = 0);
    void lose(const char *reason);
    void complete_deferred();
    void tell_lost(const Verb &status);
    bool handle(const Frame &frame);
    bool handle_hello(const Frame &frame);
    bool handle_answer(const Frame &frame);
    bool handle_indication(const Frame &frame);
    bool handle_fault(const Frame &frame);
    bool keep_account(const Verb &verb);

    const NB_ULONG hello_wait_ms_;
    State state_ = State::idle;
    bool may_change_ = false;
    bool collecting_ = false; /* `work` will send what is issued now */
    unsigned terminations_ = 0;
    NOF_CALLBACK last_callback_ = nullptr;
    char unreachable_at_[PATH_MAX] = ""; /* empty: it never was */
    char unreachable_why_[128] = "";
    int unreachable_error_ = 0;
    NB_ULONG refusal_ = 0;
    Wakeup wakeup_;
    Connection link_;
    Flights flights_;
    VerbList deferred_; /* completed by the library; a record without a block is the status */
    VerbList status_;   /* the record of the loss, made beforehand: telling it needs no memory */
    std::unordered_set<NB_ULONG> targets_;
    std::list<NOF_FAULT> faults_; /* what tests want to fail at once */
};

} // namespace nof

#endif
