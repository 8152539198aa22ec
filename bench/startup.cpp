/* Start to painted window: the administration program with the sample node, beside the least that a
 * toolkit program does to show the same window (minimal.cpp), and the node's own answer time;
 * interleaved rounds on a private display, medians.  Then one start through a counter of what is
 * asked of the X server.
 *
 *   bench_startup [--rounds N] [--domain NAME] [--trace]
 *
 * Status 1 when (program - answers) / minimal is above the goal. */
#include "nodereplay.h"
#include "xcount.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <algorithm>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using CLOCK = std::chrono::steady_clock;
using VARIABLES = std::vector<std::string>;

constexpr double goal = 1.5;
constexpr double still_ms = 250; /* a window that looks the same for so long is painted */
constexpr double patience_ms = 30000;
constexpr char loaded_title[] = " - SNA node administration"; /* behind the node's name */

double ms_since(CLOCK::time_point start) {
    return std::chrono::duration<double, std::milli>(CLOCK::now() - start).count();
}

[[noreturn]] void die(const char *what) {
    std::fprintf(stderr, "bench_startup: %s\n", what);
    std::exit(2);
}

/* ------------------------------------------------------------------ processes */

/* A program with nothing but these variables; gone at the latest with the object. */
class CHILD {
public:
    /* What it prints can be read from `output` unless that is null. */
    CHILD(const VARIABLES &command, const VARIABLES &variables, int *output = nullptr) {
        int ends[2] = {-1, -1};
        if (output != nullptr && pipe2(ends, O_CLOEXEC) != 0) {
            die("no pipe");
        }
        const auto pointers = [](const VARIABLES &texts) {
            std::vector<char *> all;
            for (const std::string &text : texts) {
                all.push_back(const_cast<char *>(text.c_str()));
            }
            all.push_back(nullptr);
            return all;
        };
        const auto arguments = pointers(command), environment = pointers(variables);
        pid_ = fork();
        if (pid_ == 0) {
            const int nowhere = open("/dev/null", O_RDWR);
            dup2(nowhere, 0);
            dup2(output != nullptr ? ends[1] : nowhere, 1);
            dup2(nowhere, 2);
            execvpe(arguments[0], arguments.data(), environment.data());
            _exit(127);
        }
        if (output != nullptr) {
            close(ends[1]);
            *output = ends[0];
        }
    }
    CHILD(const CHILD &) = delete;
    CHILD &operator=(const CHILD &) = delete;
    ~CHILD() { end(SIGKILL); }

    void end(int signal) {
        if (pid_ > 0) {
            kill(pid_, signal);
            waitpid(pid_, nullptr, 0);
        }
        pid_ = -1;
    }
    bool ended() {
        if (pid_ > 0 && waitpid(pid_, nullptr, WNOHANG) == pid_) {
            pid_ = -1;
        }
        return pid_ < 0;
    }

private:
    pid_t pid_;
};

/* Reads until the text ends a line of what a program prints. */
std::string read_until(int output, const std::string &text) {
    std::string all;
    for (char byte; read(output, &byte, 1) == 1; all += byte) {
        if (byte == '\n' && all.size() >= text.size() &&
            all.compare(all.size() - text.size(), text.size(), text) == 0) {
            return all;
        }
    }
    return "";
}

/* ------------------------------------------------------------------ the surroundings */

/* A prefix below /tmp with the programs and files of the build tree and a state of its own, the
 * node software with a sample domain, and a display without a window manager. */
class SURROUNDINGS {
public:
    explicit SURROUNDINGS(const std::string &domain) {
        char folder[] = "/tmp/sna.XXXXXX";
        prefix_ = mkdtemp(folder) != nullptr ? folder : "/tmp/none";
        const fs::path built = fs::read_symlink("/proc/self/exe").parent_path().parent_path();
        for (const char *part : {"bin", "lib", "share"}) {
            fs::create_directory_symlink(built / part, prefix_ / part);
        }
        for (const char *part : {"etc", "var", "home"}) {
            fs::create_directory(prefix_ / part);
        }
        int output;
        display_process_ =
            std::make_unique<CHILD>(VARIABLES{"Xvfb", "-displayfd", "1", "-screen", "0",
                                              "1280x1024x24", "-nolisten", "tcp", "-noreset"},
                                    variables(), &output);
        const std::string number = read_until(output, "");
        if (number.empty()) {
            die("Xvfb does not start");
        }
        display_ = ":" + number;
        node_process_ = std::make_unique<CHILD>(VARIABLES{program("snanode"), "--domain", domain},
                                                variables(), &output);
        if (read_until(output, " ready").empty()) {
            die("the node software does not start");
        }
    }
    SURROUNDINGS(const SURROUNDINGS &) = delete;
    SURROUNDINGS &operator=(const SURROUNDINGS &) = delete;
    ~SURROUNDINGS() {
        node_process_->end(SIGTERM);
        display_process_->end(SIGTERM);
        std::error_code ignored;
        fs::remove_all(prefix_, ignored);
    }

    std::string program(const char *name) const { return prefix_ / "bin" / name; }
    std::string socket(const char *name) const { return prefix_ / "var" / name; }
    const std::string &display() const { return display_; }

    VARIABLES variables(const VARIABLES &more = {}) const {
        VARIABLES all = {"LANG=C", "SNA_PREFIX=" + prefix_.string(),
                         "HOME=" + (prefix_ / "home").string(),
                         std::string("PATH=") + getenv("PATH")};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }

private:
    fs::path prefix_;
    std::string display_;
    std::unique_ptr<CHILD> display_process_, node_process_;
};

/* ------------------------------------------------------------------ watching a window */

/* Looks at a display from outside, as a user would: at titles and at pixels. */
class WATCHER {
public:
    explicit WATCHER(const std::string &display) : display_(XOpenDisplay(display.c_str())) {
        if (display_ == nullptr) {
            die("no display");
        }
        XSetErrorHandler([](Display *, XErrorEvent *) { return 0; });
        XSelectInput(display_, DefaultRootWindow(display_), SubstructureNotifyMask);
        XSync(display_, False);
    }
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

/* The top-level window, once it is on the screen. */
bool WATCHER::find_window() {
    for (XEvent event; XPending(display_) > 0;) {
        XNextEvent(display_, &event);
        XWindowAttributes attributes;
        if (event.type == MapNotify && !event.xmap.override_redirect &&
            XGetWindowAttributes(display_, event.xmap.window, &attributes) != 0 &&
            attributes.width > 100 && attributes.height > 100) {
            window_ = event.xmap.window;
        }
    }
    return window_ != None;
}

bool WATCHER::has_title(const std::string &ending) {
    XTextProperty property{};
    if (ending.empty() || XGetWMName(display_, window_, &property) == 0) {
        return ending.empty();
    }
    const std::string title(reinterpret_cast<char *>(property.value), property.nitems);
    XFree(property.value);
    return title.size() > ending.size() &&
           title.compare(title.size() - ending.size(), ending.size(), ending) == 0;
}

/* A number that stands for the picture; 0: none can be had, or it is all of one colour. */
uint64_t WATCHER::look() {
    XWindowAttributes attributes;
    if (XGetWindowAttributes(display_, window_, &attributes) == 0) {
        return 0;
    }
    XImage *const image =
        XGetImage(display_, window_, 0, 0, static_cast<unsigned>(attributes.width),
                  static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap);
    if (image == nullptr) {
        return 0;
    }
    uint64_t sum = 14695981039346656037u;
    bool plain = true;
    const size_t size = static_cast<size_t>(image->bytes_per_line) * image->height;
    for (size_t at = 0; at + 4 <= size; at += 4) {
        plain = plain && std::memcmp(image->data + at, image->data, 4) == 0;
        uint32_t pixel;
        std::memcpy(&pixel, image->data + at, sizeof pixel);
        sum = (sum ^ pixel) * 1099511628211u;
    }
    XDestroyImage(image);
    return plain ? 0 : sum;
}

double WATCHER::until_painted(CLOCK::time_point start, CHILD &child, const std::string &title,
                              const std::function<void()> &meanwhile) {
    uint64_t seen = 0;
    double changed = 0, looked = 0;
    window_ = None;
    for (double now = 0; now < patience_ms; now = ms_since(start)) {
        meanwhile();
        if (child.ended()) {
            die("a program ended before its window was painted");
        }
        if (!find_window()) {
            usleep(500);
            continue;
        }
        if (now - looked < 4) {
            usleep(500);
            continue;
        }
        const uint64_t picture = look();
        looked = ms_since(start);
        if (picture != seen) {
            seen = picture;
            changed = looked;
        } else if (seen != 0 && looked - changed > still_ms && has_title(title)) {
            return changed;
        }
    }
    std::fprintf(stderr, "window 0x%lx, last picture after %.0f ms, title %d\n", window_, changed,
                 window_ != None && has_title(title));
    die("no painted window in time");
}

void WATCHER::until_gone(const std::function<void()> &meanwhile) {
    XWindowAttributes attributes;
    while (XGetWindowAttributes(display_, window_, &attributes) != 0) {
        meanwhile();
        usleep(2000);
    }
    XSync(display_, True);
}

/* ------------------------------------------------------------------ the measurements */

struct START {
    const char *program;
    const char *title;
};

constexpr START administration = {"quiladmin", loaded_title};
constexpr START minimal = {"bench_startup_minimal", ""};

/* One start; the variables say where display and node software are. */
double measure(const SURROUNDINGS &around, WATCHER &watcher, const START &what,
               const VARIABLES &variables, const std::function<void()> &meanwhile) {
    const auto start = CLOCK::now();
    double painted;
    {
        CHILD child({around.program(what.program)}, around.variables(variables));
        painted = watcher.until_painted(start, child, what.title, meanwhile);
    }
    watcher.until_gone(meanwhile);
    return painted;
}

X_TALLY count_requests(const SURROUNDINGS &around, WATCHER &watcher, const START &what,
                       const VARIABLES &variables, const std::function<void()> &meanwhile) {
    X_COUNTER counter(around.display());
    VARIABLES all = variables;
    all.push_back("DISPLAY=" + counter.display());
    measure(around, watcher, what, all, [&] {
        counter.pump(1);
        meanwhile();
    });
    return counter.tally();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void print_row(const char *name, const std::vector<double> &values) {
    std::printf("%-34s %8.1f %8.1f %8.1f\n", name, median(values),
                *std::min_element(values.begin(), values.end()),
                *std::max_element(values.begin(), values.end()));
}

void print_counts(const X_TALLY &ours, const X_TALLY &least) {
    std::printf("\n%-34s %10s %10s\n", "asked of the X server", "program", "minimal");
    const struct {
        const char *name;
        unsigned X_TALLY::*count;
    } rows[] = {{"connections", &X_TALLY::connections},
                {"requests", &X_TALLY::requests},
                {"replies", &X_TALLY::replies},
                {"round trips", &X_TALLY::round_trips},
                {"errors", &X_TALLY::errors}};
    for (const auto &row : rows) {
        std::printf("%-34s %10u %10u\n", row.name, ours.*row.count, least.*row.count);
    }
    std::printf("\n%-34s %10s %10s\n", "round trips for (replies)", "program", "minimal");
    const auto count_of = [](const std::map<std::string, unsigned> &counts,
                             const std::string &name) {
        const auto found = counts.find(name);
        return found == counts.end() ? 0 : found->second;
    };
    std::map<std::string, unsigned> names = ours.replies_by_name;
    names.insert(least.replies_by_name.begin(), least.replies_by_name.end());
    for (const auto &[name, ignored] : names) {
        std::printf("%-34s %4u (%3u) %4u (%3u)\n", name.c_str(), count_of(ours.waits_by_name, name),
                    count_of(ours.replies_by_name, name), count_of(least.waits_by_name, name),
                    count_of(least.replies_by_name, name));
    }
}

struct OPTIONS {
    int rounds = 9;
    std::string domain = "single";
    bool trace = false;
};

OPTIONS read_options(int argc, char **argv) {
    OPTIONS options;
    for (int at = 1; at < argc; at++) {
        const std::string option = argv[at];
        if (option == "--trace") {
            options.trace = true;
        } else if (option == "--rounds" && at + 1 < argc) {
            options.rounds = std::clamp(std::atoi(argv[++at]), 1, 1000);
        } else if (option == "--domain" && at + 1 < argc) {
            options.domain = argv[++at];
        } else {
            die("usage: bench_startup [--rounds N] [--domain NAME] [--trace]");
        }
    }
    return options;
}

} // namespace

int main(int argc, char **argv) {
    const OPTIONS options = read_options(argc, argv);
    signal(SIGPIPE, SIG_IGN);
    const SURROUNDINGS around(options.domain);
    WATCHER watcher(around.display());
    const std::string node = around.socket("sna.sock");
    const VARIABLES direct = {"DISPLAY=" + around.display()};
    const auto nothing = [] {};

    NODE_RECORDER recorder(around.socket("recorder.sock"), node);
    const X_TALLY ours = count_requests(around, watcher, administration,
                                        {"SNA_SOCKET=" + around.socket("recorder.sock")},
                                        [&recorder] { recorder.pump(); });
    const X_TALLY least = count_requests(around, watcher, minimal, {}, nothing);
    if (options.trace) {
        for (const std::string &line : ours.trace) {
            std::puts(line.c_str());
        }
    }

    std::vector<double> program_ms, minimal_ms, answers_ms;
    for (int round = 0; round < options.rounds; round++) {
        program_ms.push_back(measure(around, watcher, administration, direct, nothing));
        minimal_ms.push_back(measure(around, watcher, minimal, direct, nothing));
        answers_ms.push_back(replay(node, recorder.steps()));
        if (answers_ms.back() < 0) {
            die("the node software ended the plain client's connection");
        }
    }
    std::printf("%-34s %8s %8s %8s\n", "milliseconds", "median", "least", "most");
    print_row("program, start to painted window", program_ms);
    print_row("minimal program, the same", minimal_ms);
    print_row(
        ("node's answers to " + std::to_string(verbs_of(recorder.steps())) + " verbs").c_str(),
        answers_ms);
    const double ratio = (median(program_ms) - median(answers_ms)) / median(minimal_ms);
    std::printf("(program - answers) / minimal      %8.2f          goal: at most %.1f\n", ratio,
                goal);
    print_counts(ours, least);
    return ratio <= goal ? 0 : 1;
}
