/* How long the node software takes to answer what a program asks at its start.  A recorder stands
 * between the two and notes the frames in their order; later a plain client sends the same verbs
 * again, each one behind the answers that the program had when it sent it, and does nothing else.
 */
#ifndef NODEREPLAY_H
#define NODEREPLAY_H

#include <chrono>
#include <string>
#include <vector>

struct WIRE_STEP {
    bool verb;         /* else an answer */
    std::string frame; /* whole */
    std::chrono::steady_clock::time_point when;
};

/* Stands between a program and the node software.  OWNS: its sockets. */
class NODE_RECORDER {
public:
    /* `path` is where the program will look, `node` where the node software listens. */
    NODE_RECORDER(const std::string &path, const std::string &node);
    ~NODE_RECORDER();
    NODE_RECORDER(const NODE_RECORDER &) = delete;
    NODE_RECORDER &operator=(const NODE_RECORDER &) = delete;

    /* Passes on what there is without waiting. */
    void pump();

    /* Whole frames to the program, as if the node software had sent them; waits while the program
     * has as much to read as its socket holds. */
    void send_program(const std::string &frames);

    /* Whether the program has not read everything yet. */
    bool program_reads() const;

    const std::vector<WIRE_STEP> &steps() const { return steps_; }

private:
    bool pass(int from, int to, std::string &left, bool verbs);

    std::string node_;
    int listener_, program_ = -1, server_ = -1;
    std::string from_program_, from_node_;
    std::vector<WIRE_STEP> steps_;
};

/* Returns the milliseconds from the connection to the last answer, or a negative number when the
 * node software ended the connection. */
double replay(const std::string &node, const std::vector<WIRE_STEP> &steps);

/* The number of verbs among the steps. */
size_t verbs_of(const std::vector<WIRE_STEP> &steps);

#endif
