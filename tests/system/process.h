/* A program that a test starts: its own process group, an environment that holds only what is
 * given, what it writes, how it ends.
 *
 * The destructor kills whatever is left of the group and reaps it; so does the end of the test
 * program, however it ends. */
#ifndef SYSTEM_PROCESS_H
#define SYSTEM_PROCESS_H

#include "poll.h"

#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

namespace sys {

using Environment = std::map<std::string, std::string>;

struct Command {
    std::vector<std::string> words; /* the program, looked up in PATH, and its arguments */
    Environment environment;
    uid_t user = 0; /* 0: the test's own */
};

class Process : public Source {
public:
    explicit Process(const Command &command);
    ~Process() override;

    std::vector<int> descriptors() const override;
    void take() override;

    const std::string &out() const { return output_[0].text; }
    const std::string &err() const {
        err_read_ = true;
        return output_[1].text;
    }

    /* Whether it wrote on standard error what nobody has looked at. */
    bool complains() const { return !err_read_ && !output_[1].text.empty(); }

    bool running() const { return running_; }

    /* REQUIRES: it has ended.  The exit status, or the negative number of the signal. */
    int status() const { return status_; }

    /* Whether it ends in time; all that it wrote has been read then. */
    bool wait_end(int milliseconds = 20000);

    /* To the process alone; to the whole group with kill_all. */
    void send(int signal) const;
    void kill_all() const;

    /* Whether any process of the group is left. */
    bool group_lives() const;

    pid_t pid() const { return pid_; }

private:
    struct Output {
        int descriptor = -1;
        std::string text;
    };

    static void read(Output &output);
    void look_for_end();

    pid_t pid_ = -1;
    Output output_[2];
    bool running_ = false;
    int status_ = -1;
    mutable bool err_read_ = false;
};

} // namespace sys

#endif
