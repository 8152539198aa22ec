/* Stands between a program and its X server, as near or as far away as is wished, and counts what
 * the program asks the server for and has to be told before it can go on.  One connection at a
 * time, on a display number of its own that only the abstract name space knows.  OWNS: its sockets.
 */
#ifndef XCOUNT_H
#define XCOUNT_H

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

/* What a program asked for. */
struct X_TALLY {
    unsigned connections = 0;
    unsigned requests = 0;
    unsigned copies = 0; /* of areas to windows: one for each line that a list draws */
    unsigned replies = 0;
    /* Times that the program had to wait: replies to requests that came in one piece are one. */
    unsigned round_trips = 0;
    unsigned errors = 0;
    std::map<std::string, unsigned> replies_by_name, waits_by_name;
    std::vector<std::string> trace; /* each request with a reply, in order, with its subject */
};

class X_COUNTER {
public:
    /* `display`: the real one, as ":7".  `away`: what a question and its answer take on the way, in
     * milliseconds; half of it each. */
    explicit X_COUNTER(const std::string &display, int away = 0);
    ~X_COUNTER();
    X_COUNTER(const X_COUNTER &) = delete;
    X_COUNTER &operator=(const X_COUNTER &) = delete;

    const std::string &display() const { return display_; } /* for the program; "" is failure */
    const X_TALLY &tally() const { return tally_; }

    /* Passes on what there is, waiting at most `milliseconds` for it. */
    void pump(int milliseconds);

    /* What there is to wait for, for who waits for other things as well; with a display that is
     * far away something may be due without. */
    std::vector<int> descriptors() const;

private:
    struct REQUEST {
        uint16_t sequence;
        unsigned batch;
        std::string name, subject;
    };

    using CLOCK = std::chrono::steady_clock;

    /* What is on its way. */
    struct PIECE {
        CLOCK::time_point due;
        bool from_program;
        std::string bytes;
    };

    /* A connection: the toolkit makes a second one for its drag and drop tables. */
    struct LINK {
        int program, server;
        std::string from_program, from_server; /* what is not a whole message yet */
        bool program_greeted = false, server_greeted = false, ended = false;
        uint16_t sequence = 0;
        unsigned batch = 0, last_waited = 0;
        std::deque<REQUEST> asked;
        std::deque<PIECE> under_way;
    };

    void accept_program();
    bool pass(LINK &link, bool from_program);
    static bool deliver(LINK &link);
    size_t take_request(LINK &link, const std::string &bytes, size_t available);
    size_t take_message(LINK &link, const std::string &bytes, size_t available);
    void take_reply(LINK &link, const std::string &message);
    REQUEST describe(const std::string &request) const;

    int real_number_;
    std::chrono::microseconds one_way_;
    int listener_ = -1;
    std::string display_, path_;
    std::deque<LINK> links_;
    std::map<uint8_t, std::string> extensions_;
    std::set<uint32_t> windows_;
    X_TALLY tally_;
};

#endif
