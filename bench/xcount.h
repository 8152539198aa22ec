/* Stands between a program and its X server and counts what the program asks the server for and has
 * to be told before it can go on.  One connection at a time, on a display number of its own that
 * only the abstract name space knows.  OWNS: its sockets. */
#ifndef XCOUNT_H
#define XCOUNT_H

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
    /* `display`: the real one, as ":7". */
    explicit X_COUNTER(const std::string &display);
    ~X_COUNTER();
    X_COUNTER(const X_COUNTER &) = delete;
    X_COUNTER &operator=(const X_COUNTER &) = delete;

    const std::string &display() const { return display_; } /* for the program; "" is failure */
    const X_TALLY &tally() const { return tally_; }

    /* Passes on what there is, waiting at most `milliseconds` for it. */
    void pump(int milliseconds);

private:
    struct REQUEST {
        uint16_t sequence;
        unsigned batch;
        std::string name, subject;
    };

    /* A connection: the toolkit makes a second one for its drag and drop tables. */
    struct LINK {
        int program, server;
        std::string from_program, from_server; /* what is not a whole message yet */
        bool program_greeted = false, server_greeted = false, ended = false;
        uint16_t sequence = 0;
        unsigned batch = 0, last_waited = 0;
        std::deque<REQUEST> asked;
    };

    void accept_program();
    bool pass(LINK &link, bool from_program);
    size_t take_request(LINK &link, const std::string &bytes, size_t available);
    size_t take_message(LINK &link, const std::string &bytes, size_t available);
    void take_reply(LINK &link, const std::string &message);
    REQUEST describe(const std::string &request) const;

    int real_number_;
    int listener_ = -1;
    std::string display_, path_;
    std::deque<LINK> links_;
    std::map<uint8_t, std::string> extensions_;
    std::set<uint32_t> windows_;
    X_TALLY tally_;
};

#endif
