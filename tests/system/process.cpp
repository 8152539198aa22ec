#include "process.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace sys {

namespace {

constexpr int could_not_run = 127;

std::vector<char *> pointers(std::vector<std::string> &words) {
    std::vector<char *> list;
    for (std::string &word : words) {
        list.push_back(word.data());
    }
    list.push_back(nullptr);
    return list;
}

bool become(uid_t user) {
    return user == 0 || (setgroups(0, nullptr) == 0 && setgid(user) == 0 && setuid(user) == 0);
}

/* In the child.  Only what may be called between fork and exec. */
[[noreturn]] void run(const int (&ends)[2], char **words, char **environment, uid_t user) {
    setpgid(0, 0);
    signal(SIGPIPE, SIG_DFL);
    const int nothing = open("/dev/null", O_RDONLY);
    if (dup2(nothing, STDIN_FILENO) < 0 || dup2(ends[0], STDOUT_FILENO) < 0 ||
        dup2(ends[1], STDERR_FILENO) < 0 || !become(user)) {
        _exit(could_not_run);
    }
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    execvpe(words[0], words, environment);
    _exit(could_not_run);
}

} // namespace

Process::Process(const Command &command) {
    // Grandchildren that outlive their parent come to us, to be reaped.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    std::vector<std::string> words = command.words;
    std::vector<std::string> settings;
    for (const auto &[name, value] : command.environment) {
        settings.push_back(name + "=" + value);
    }
    const std::vector<char *> argument_list = pointers(words);
    const std::vector<char *> environment_list = pointers(settings);
    int reading[2], writing[2];
    for (int which : {0, 1}) {
        int ends[2] = {-1, -1};
        if (pipe2(ends, O_CLOEXEC) != 0) {
            return;
        }
        reading[which] = ends[0];
        writing[which] = ends[1];
        fcntl(ends[0], F_SETFL, O_NONBLOCK);
        output_[which].descriptor = reading[which];
    }
    pid_ = fork();
    if (pid_ == 0) {
        run(writing, const_cast<char **>(argument_list.data()),
            const_cast<char **>(environment_list.data()), command.user);
    }
    close(writing[0]);
    close(writing[1]);
    if (pid_ > 0) {
        setpgid(pid_, pid_); // whoever is first, it is done before anybody kills the group
        running_ = true;
    }
}

Process::~Process() {
    if (pid_ > 0) {
        kill_all();
        while (waitpid(-pid_, nullptr, 0) > 0 || errno == EINTR) {
        }
    }
    for (const Output &output : output_) {
        if (output.descriptor >= 0) {
            close(output.descriptor);
        }
    }
}

std::vector<int> Process::descriptors() const {
    std::vector<int> open;
    for (const Output &output : output_) {
        if (output.descriptor >= 0) {
            open.push_back(output.descriptor);
        }
    }
    return open;
}

void Process::read(Output &output) {
    char bytes[4096];
    while (output.descriptor >= 0) {
        const ssize_t count = ::read(output.descriptor, bytes, sizeof bytes);
        if (count > 0) {
            output.text.append(bytes, static_cast<size_t>(count));
            continue;
        }
        if (count == 0) {
            close(output.descriptor);
            output.descriptor = -1;
        }
        return;
    }
}

void Process::look_for_end() {
    int how = 0;
    if (running_ && waitpid(pid_, &how, WNOHANG) == pid_) {
        running_ = false;
        status_ = WIFEXITED(how) ? WEXITSTATUS(how) : -WTERMSIG(how);
    }
}

void Process::take() {
    look_for_end(); // first, so that what a process wrote before its end is read after it
    for (Output &output : output_) {
        read(output);
    }
}

bool Process::wait_end(int milliseconds) {
    return wait_for([this] { return !running_; }, milliseconds);
}

void Process::send(int signal) const {
    if (running_) {
        kill(pid_, signal);
    }
}

void Process::kill_all() const {
    kill(-pid_, SIGKILL);
}

bool Process::group_lives() const {
    while (waitpid(-pid_, nullptr, WNOHANG) > 0) {
        // Its own end is looked for first, by take; this reaps those it has left to us.
    }
    return kill(-pid_, 0) == 0;
}

} // namespace sys
