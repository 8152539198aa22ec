/* The fault script: failures on demand, for tests.  A line is a comment (#...) or one of
 *
 *   delay MS [VERB]                    answer (that verb) MS milliseconds late
 *   fail VERB PRIMARY SECONDARY [N]    answer with these codes (N times), without doing anything
 *   hang VERB [N]                      never answer (N times)
 *   at-once VERB PRIMARY SECONDARY [N] the administrator's own library completes (the next N of)
 *                                      its verbs with these codes while they are issued
 *   drop after N verbs                 end the connection that issues the Nth verb from now
 *   garbage after N verbs              answer the Nth verb from now with a malformed frame
 *   stop after N verbs                 end the node software orderly at the Nth verb from now
 *   die NODE [after N verbs]           kill the process of NODE, now or at its Nth verb from now
 *   hang NODE [MS]                     stop the process of NODE, for MS milliseconds or for ever
 *   lose indications [N]               drop (the next N) status indications; the next one that gets
 *                                      through says that data was lost
 *   repeat indications [N]             send (the next N) status indications twice
 *   no-restart                         a node process that died stays dead
 *
 * VERB is a name as in NAP_QUERY_PORT; numbers are decimal, or hexadecimal behind 0x.  "From now"
 * counts from the reading of the script, over all connections. */
#ifndef FAULTS_H
#define FAULTS_H

#include "resourceclass.h"

#include <optional>
#include <string>
#include <vector>

namespace node {

enum class FaultKind {
    Delay,
    Fail,
    Hang,
    AtOnce,
    Drop,
    Garbage,
    Stop,
    Die,
    HangNode,
    Lose,
    Repeat,
    NoRestart,
    Ask,
    DieWriting,
    DieWritten
};

/* One line of the script. */
struct FaultRule {
    FaultKind kind = FaultKind::NoRestart;
    NB_USHORT opcode = 0; /* 0: every verb */
    std::string node;
    uint32_t number = 0; /* milliseconds, or the verb that is meant */
    Result result;
    int64_t times = -1; /* left; -1: for ever */
    uint32_t seen = 0;
};

class Faults {
public:
    /* What is to happen to one verb. */
    struct Verdict {
        uint32_t delay_ms = 0;
        std::optional<Result> failure;
        bool hang = false;
        bool drop = false;
        bool garbage = false;
        bool stop = false;
        bool die = false; /* the node that the verb goes to */
    };

    /* Replaces the script.  On a bad line keeps the old one and says which in `why`. */
    bool parse(const std::string &file_name, std::string_view text, std::string &why);
    bool read(const std::string &file_name, std::string &why);

    /* Counts a verb that arrived.  `node` is where it goes, "" for the domain. */
    Verdict judge(NB_USHORT opcode, const std::string &node);

    /* What becomes of one status indication to one registration. */
    enum class Fate { Deliver, Lose, DeliverWithLoss, Repeat };
    Fate judge_indication();

    bool may_restart() const;

    /* This process is to die while it writes the domain's store: just before what is written
     * counts, or just behind. */
    bool dies_writing(bool written) const;

    /* How often nodes are asked whether they are there, in milliseconds; empty: as usual. */
    std::optional<uint32_t> ask_ms() const;

    /* Calls action(rule) for what is to happen to nodes now, once: Die and HangNode. */
    template <class Action> void for_now(Action action) {
        for (FaultRule &rule : rules_) {
            const bool to_node = (rule.kind == FaultKind::Die && rule.number == 0) ||
                                 rule.kind == FaultKind::HangNode;
            if (to_node && use(rule)) {
                action(rule);
            }
        }
    }
    /* Calls action(rule) for what the administrators' libraries are told: AtOnce. */
    template <class Action> void for_libraries(Action action) const {
        for (const FaultRule &rule : rules_) {
            if (rule.kind == FaultKind::AtOnce) {
                action(rule);
            }
        }
    }

private:
    static bool use(FaultRule &rule);

    std::vector<FaultRule> rules_;
    bool lost_ = false;
};

} // namespace node

#endif
