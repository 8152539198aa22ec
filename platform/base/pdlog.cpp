#include "nbbase.h"
#include "pdline.h"
#include "pdtable.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace base {

namespace {

struct Destination {
    char file[PATH_MAX]; // empty: none
    char own[PATH_MAX];  // the user's, for what cannot be written there; empty: none
    NB_USHORT level;
    off_t size; // of the file, before it is put aside
};

constexpr long default_kilobytes = 16 * 1024;
constexpr time_t repeats_kept = 60; // seconds

// Empty where it does not fit.
void put_path(char (&path)[PATH_MAX], const char *folder, const char *rest) {
    const int length = std::snprintf(path, sizeof(path), "%s%s", folder, rest);
    if (length < 0 || static_cast<size_t>(length) >= sizeof(path)) {
        path[0] = '\0';
    }
}

NB_USHORT level_named(const char *name) {
    static const char *const names[] = {"none", "problem", "exception", "all"};
    for (NB_USHORT level = NB_PD_NONE; name && level <= NB_PD_ALL; level++) {
        if (std::strcmp(name, names[level]) == 0) {
            return level;
        }
    }
    return NB_PD_EXCEPTION;
}

Destination from_environment() {
    Destination where{};
    const char *const file = std::getenv("SNA_LOG");
    const bool named = file && *file;
    put_path(where.file, named ? file : nba_prefix(), named ? "" : "/var/log/sna.err");
    const char *const state = std::getenv("XDG_STATE_HOME");
    const char *const home = std::getenv("HOME");
    if (state && *state == '/') {
        put_path(where.own, state, "/quiladmin/sna.err");
    } else if (home && *home == '/') {
        put_path(where.own, home, "/.local/state/quiladmin/sna.err");
    }
    where.level = level_named(std::getenv("SNA_LOG_LEVEL"));
    const char *const size = std::getenv("SNA_LOG_SIZE");
    const long kilobytes = size ? std::strtol(size, nullptr, 10) : 0;
    where.size = (kilobytes > 0 ? kilobytes : default_kilobytes) * 1024;
    return where;
}

Destination &destination() {
    static Destination where = from_environment();
    return where;
}

void make_folders(const char *file) {
    char folder[PATH_MAX];
    std::snprintf(folder, sizeof(folder), "%s", file);
    for (char *slash = std::strchr(folder + 1, '/'); slash; slash = std::strchr(slash + 1, '/')) {
        *slash = '\0';
        mkdir(folder, 0755);
        *slash = '/';
    }
}

// Made by root, it belongs to whom the folder belongs to, who shall go on writing it.
int make_log(const char *file, int flags) {
    const int fd = open(file, flags | O_CREAT, 0644);
    char folder[PATH_MAX];
    std::snprintf(folder, sizeof(folder), "%s", file);
    char *const slash = std::strrchr(folder, '/');
    struct stat facts;
    if (slash) {
        *slash = '\0';
    }
    if (fd >= 0 && slash && geteuid() == 0 && stat(folder, &facts) == 0 && facts.st_uid != 0 &&
        fchown(fd, facts.st_uid, facts.st_gid) != 0) {
        // It can be written today all the same.
    }
    return fd;
}

int open_log(const char *file) {
    // Opened for each line, so that the file may be moved away; and never waiting for a reader.
    const int flags = O_WRONLY | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    int fd = open(file, flags);
    if (fd < 0 && errno == ENOENT) {
        fd = make_log(file, flags);
    }
    if (fd < 0 && errno == ENOENT) {
        make_folders(file);
        fd = make_log(file, flags);
    }
    return fd;
}

// Of several processes that find it full at once, the first one does it.
bool put_aside(const char *file, const struct stat &full) {
    char aside[PATH_MAX];
    struct stat now;
    put_path(aside, file, ".old");
    return aside[0] && stat(file, &now) == 0 && now.st_dev == full.st_dev &&
           now.st_ino == full.st_ino && rename(file, aside) == 0;
}

int open_with_room(const char *file, size_t length) {
    const int fd = open_log(file);
    struct stat facts;
    const bool full = fd >= 0 && fstat(fd, &facts) == 0 && S_ISREG(facts.st_mode) &&
                      facts.st_size + static_cast<off_t>(length) > destination().size;
    if (!full) {
        return fd;
    }
    put_aside(file, facts); // who may not goes on in the full one
    close(fd);
    return open_log(file);
}

bool write_to_file(const char *file, std::string_view line) {
    const int fd = file[0] ? open_with_room(file, line.size()) : -1;
    if (fd < 0) {
        return false;
    }
    const ssize_t written = write(fd, line.data(), line.size());
    close(fd);
    return written == static_cast<ssize_t>(line.size());
}

void write_line(std::string_view line) {
    if (!write_to_file(destination().file, line) && !write_to_file(destination().own, line) &&
        write(STDERR_FILENO, line.data(), line.size()) < 0) {
        // There is no other place to say it.
    }
}

// Whether the file can be written, or made in the nearest folder above it that is there.
bool can_write(const char *file) {
    char path[PATH_MAX];
    struct stat facts;
    std::snprintf(path, sizeof(path), "%s", file);
    bool folder = false;
    while (path[0] && stat(path, &facts) != 0) {
        char *const slash = std::strrchr(path, '/');
        if (errno != ENOENT || !slash) {
            return errno == ENOENT && !slash && access(".", W_OK | X_OK) == 0;
        }
        path[slash == path && path[1] ? 1 : slash - path] = '\0';
        folder = true;
    }
    return path[0] && S_ISDIR(facts.st_mode) == folder &&
           access(path, folder ? W_OK | X_OK : W_OK) == 0;
}

// A reader that has gone away must not end the process that logs.
class PipeSignalHeld {
public:
    PipeSignalHeld() {
        sigset_t pending;
        sigemptyset(&pipe_);
        sigaddset(&pipe_, SIGPIPE);
        sigpending(&pending);
        was_pending_ = sigismember(&pending, SIGPIPE) == 1;
        sigprocmask(SIG_BLOCK, &pipe_, &before_);
    }
    ~PipeSignalHeld() {
        const timespec at_once{};
        if (!was_pending_) {
            sigtimedwait(&pipe_, nullptr, &at_once);
        }
        sigprocmask(SIG_SETMASK, &before_, nullptr);
    }
    PipeSignalHeld(const PipeSignalHeld &) = delete;
    PipeSignalHeld &operator=(const PipeSignalHeld &) = delete;

private:
    sigset_t pipe_;
    sigset_t before_;
    bool was_pending_;
};

void add_head(PdLine &line, const char *kind, NB_ULONG identifier, NB_USHORT detail) {
    char when[32] = "";
    const time_t now = time(nullptr);
    tm fields;
    if (localtime_r(&now, &fields)) {
        std::strftime(when, sizeof(when), "%Y-%m-%d %H:%M:%S", &fields);
    }
    line.addf("%s %s[%d] %s 0x%08X detail %u: ", when, program_invocation_short_name,
              static_cast<int>(getpid()), kind, identifier, detail);
}

const char *meaning_of(NB_ULONG identifier, NB_USHORT detail) {
    const char *meaning = pd_detail(identifier, detail);
    return meaning ? meaning : pd_find(identifier).meaning;
}

void write_held(std::string_view line) {
    const PipeSignalHeld held;
    write_line(line);
}

/* The record that was written last, and how often it has come again since. */
struct Repeats {
    const char *kind;
    NB_ULONG identifier;
    NB_USHORT detail;
    time_t since;
    unsigned long count;
    char text[2048]; // what follows the time
    size_t length;
} last;

void write_repeats() {
    if (last.count != 0) {
        PdLine line;
        add_head(line, last.kind, last.identifier, last.detail);
        line.add(meaning_of(last.identifier, last.detail));
        line.addf(", %lu more times as before", last.count);
        last.count = 0;
        write_held(line.finish());
    }
}

// Counts one that is as the one before; it is written again when a minute is over.
bool is_repeated(std::string_view line, const char *kind, NB_ULONG identifier, NB_USHORT detail) {
    constexpr size_t after_time = sizeof("2026-01-01 00:00:00");
    static const bool at_end = std::atexit(write_repeats) == 0;
    const std::string_view text = line.substr(std::min(after_time, line.size()));
    const time_t now = time(nullptr);
    if (at_end && text == std::string_view(last.text, last.length) &&
        now - last.since < repeats_kept) {
        last.count++;
        return true;
    }
    write_repeats();
    last = {kind, identifier, detail, now, 0, "", std::min(text.size(), sizeof(last.text))};
    std::memcpy(last.text, text.data(), last.length);
    return false;
}

void print(const char *kind, NB_ULONG identifier, NB_USHORT detail, const char *format,
           va_list values) {
    const int saved_errno = errno;
    const PdRow &row = pd_find(identifier);
    PdLine line;
    add_head(line, kind, identifier, detail);
    line.add(meaning_of(identifier, detail));
    line.add_values(row, format, values);
    if (row.facts) {
        char facts[1024];
        row.facts(facts, sizeof(facts));
        line.add(": ");
        line.add_text(facts);
    }
    const std::string_view whole = line.finish();
    if (!is_repeated(whole, kind, identifier, detail)) {
        write_held(whole);
    }
    errno = saved_errno;
}

} // namespace

} // namespace base

NB_VOID nba_pd_print_problem(NB_ULONG identifier, NB_USHORT detail, const NB_CHAR *format, ...) {
    if (base::destination().level < NB_PD_PROBLEM) {
        return;
    }
    va_list values;
    va_start(values, format);
    base::print("problem", identifier, detail, format, values);
    va_end(values);
}

NB_VOID nba_pd_print_exception(NB_ULONG identifier, NB_USHORT detail, const NB_CHAR *format, ...) {
    if (base::destination().level < NB_PD_EXCEPTION) {
        return;
    }
    va_list values;
    va_start(values, format);
    base::print("exception", identifier, detail, format, values);
    va_end(values);
}

NB_VOID nba_pd_set_log(const NB_CHAR *file, NB_USHORT level) {
    base::write_repeats();
    base::last.length = 0;
    base::Destination &where = base::destination();
    base::put_path(where.file, file ? file : "", "");
    where.own[0] = '\0';
    where.level = level;
}

const NB_CHAR *nba_pd_log_file(NB_VOID) {
    const base::Destination &where = base::destination();
    for (const char *file : {where.file, where.own}) {
        if (base::can_write(file)) {
            return file;
        }
    }
    return nullptr;
}
