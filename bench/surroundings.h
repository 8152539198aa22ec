/* What a benchmark of the whole program starts from, and how it watches a window from outside: a
 * prefix, a display and a node software of its own, and programs as processes. */
#ifndef SURROUNDINGS_H
#define SURROUNDINGS_H

#include <X11/Xlib.h>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

using CLOCK = std::chrono::steady_clock;
using VARIABLES = std::vector<std::string>;

constexpr char loaded_title[] = " - SNA node administration"; /* behind the node's name */

double ms_since(CLOCK::time_point start);

/* Says what is wrong, and ends the benchmark with status 2. */
[[noreturn]] void die(const char *what);

/* A program with nothing but these variables; gone at the latest with the object. */
class CHILD {
public:
    /* What it prints can be read from `output` unless that is null. */
    CHILD(const VARIABLES &command, const VARIABLES &variables, int *output = nullptr);
    CHILD(const CHILD &) = delete;
    CHILD &operator=(const CHILD &) = delete;
    ~CHILD();

    void end(int signal);
    bool ended();
    pid_t pid() const { return pid_; }

private:
    pid_t pid_;
};

/* A prefix below /tmp with the programs and files of the build tree and a state of its own, the
 * node software with a domain, and a display without a window manager. */
class SURROUNDINGS {
public:
    /* `domain`: arguments of the node software, as {"--domain", "single"}. */
    explicit SURROUNDINGS(const VARIABLES &domain);
    SURROUNDINGS(const SURROUNDINGS &) = delete;
    SURROUNDINGS &operator=(const SURROUNDINGS &) = delete;
    ~SURROUNDINGS();

    std::string program(const char *name) const { return prefix_ / "bin" / name; }
    std::string socket(const char *name) const { return prefix_ / "var" / name; }
    const std::string &display() const { return display_; }

    /* Of a program in these surroundings, and more of them. */
    VARIABLES variables(const VARIABLES &more = {}) const;

private:
    std::filesystem::path prefix_;
    std::string display_;
    std::unique_ptr<CHILD> display_process_, node_process_;
};

/* Looks at a display from outside, as a user would: at titles and at pixels. */
class WATCHER {
public:
    explicit WATCHER(const std::string &display);
    WATCHER(const WATCHER &) = delete;
    WATCHER &operator=(const WATCHER &) = delete;
    ~WATCHER() { XCloseDisplay(display_); }

    /* Returns the milliseconds from `start` until the child's window looked as it then stayed, its
     * title ending in `title`.  `meanwhile` is called over and over. */
    double until_painted(CLOCK::time_point start, CHILD &child, const std::string &title,
                         const std::function<void()> &meanwhile);

    /* Waits until that window is no more, after the end of its program. */
    void until_gone(const std::function<void()> &meanwhile);

private:
    bool find_window();
    bool has_title(const std::string &ending);
    uint64_t look();

    Display *display_;
    Window window_ = None;
};

#endif
