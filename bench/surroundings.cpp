#include "surroundings.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr double still_ms = 250; /* a window that looks the same for so long is painted */
constexpr double patience_ms = 120000;

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

} // namespace

double ms_since(CLOCK::time_point start) {
    return std::chrono::duration<double, std::milli>(CLOCK::now() - start).count();
}

void die(const char *what) {
    std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, what);
    std::exit(2);
}

CHILD::CHILD(const VARIABLES &command, const VARIABLES &variables, int *output) {
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

CHILD::~CHILD() {
    end(SIGKILL);
}

void CHILD::end(int signal) {
    if (pid_ > 0) {
        kill(pid_, signal);
        waitpid(pid_, nullptr, 0);
    }
    pid_ = -1;
}

bool CHILD::ended() {
    if (pid_ > 0 && waitpid(pid_, nullptr, WNOHANG) == pid_) {
        pid_ = -1;
    }
    return pid_ < 0;
}

SURROUNDINGS::SURROUNDINGS(const VARIABLES &domain) {
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
        std::make_unique<CHILD>(VARIABLES{"Xvfb", "-displayfd", "1", "-screen", "0", "1280x1024x24",
                                          "-nolisten", "tcp", "-noreset"},
                                variables(), &output);
    const std::string number = read_until(output, "");
    if (number.empty()) {
        die("Xvfb does not start");
    }
    display_ = ":" + number;
    VARIABLES node = {program("snanode")};
    node.insert(node.end(), domain.begin(), domain.end());
    node_process_ = std::make_unique<CHILD>(node, variables(), &output);
    if (read_until(output, " ready").empty()) {
        die("the node software does not start");
    }
}

SURROUNDINGS::~SURROUNDINGS() {
    node_process_->end(SIGTERM);
    display_process_->end(SIGTERM);
    std::error_code ignored;
    fs::remove_all(prefix_, ignored);
}

VARIABLES SURROUNDINGS::variables(const VARIABLES &more) const {
    VARIABLES all = {"LANG=C", "SNA_PREFIX=" + prefix_.string(),
                     "HOME=" + (prefix_ / "home").string(), std::string("PATH=") + getenv("PATH")};
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

WATCHER::WATCHER(const std::string &display) : display_(XOpenDisplay(display.c_str())) {
    if (display_ == nullptr) {
        die("no display");
    }
    XSetErrorHandler([](Display *, XErrorEvent *) { return 0; });
    XSelectInput(display_, DefaultRootWindow(display_), SubstructureNotifyMask);
    XSync(display_, False);
}

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
