#include "childprocess.h"
#include "messages.h"
#include "nbproblem.h"
#include "v0toebcd.h"
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

volatile NB_LONG gvga_web_temp_pid;

namespace {

[[noreturn]] NB_VOID become(const NB_CHAR *command, const sigset_t &mask) {
    signal(SIGTERM, SIG_DFL);
    signal(SIGCHLD, SIG_DFL);
    signal(SIGPIPE, SIG_DFL);
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC); /* whoever opened them */
    execl("/bin/bash", "bash", "-c", command, static_cast<NB_CHAR *>(nullptr));
    _exit(127);
}

/* The short-lived child.  Its status is 0, or says why there is no process for the command. */
[[noreturn]] NB_VOID start_and_end(const NB_CHAR *command, const sigset_t &mask) {
    v0_close_message_catalog(&gvga_catalog);
    if (vsvig_signal_ignore(SIGHUP) != 0) {
        v0_assert(__FILE__, __LINE__, "FALSE");
    }
    const pid_t child = fork();
    if (child == 0) {
        become(command, mask);
    }
    _exit(child == -1 ? errno : EXIT_SUCCESS);
}

/* Once SIGTERM has come, SIGCHLD is ignored and the system itself takes leave of children: then
 * there is none left at the end of the wait, and no status.  Returns that status, else 0. */
NB_INT wait_for(pid_t child) {
    NB_INT status = 0;
    while (waitpid(child, &status, 0) == -1 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : ECANCELED;
}

} // namespace

NB_VOID vga_signal_catcher(NB_INT caught) {
    if (caught == SIGTERM) {
        signal(SIGTERM, SIG_IGN);
        signal(SIGCHLD, SIG_IGN);
        return;
    }
    const NB_INT saved_errno = errno;
    /* 0: it still runs.  Anything else: it has ended, or was nobody's any more. */
    if (gvga_web_temp_pid != 0 && waitpid(gvga_web_temp_pid, nullptr, WNOHANG) != 0) {
        gvga_web_temp_pid = 0;
    }
    errno = saved_errno;
}

NB_USHORT vga_can_run(const NB_CHAR *command) {
    const std::string_view text(command);
    const size_t from = std::min(text.find_first_not_of(" \t"), text.size());
    const std::string word(text.substr(from, text.find_first_of(" \t", from) - from));
    if (word.find_first_of("=$`'\"\\()&|;<>{}*?~[") != std::string::npos) {
        return 1;
    }
    if (word.find('/') != std::string::npos) {
        return access(word.c_str(), X_OK) == 0;
    }
    const NB_CHAR *path = getenv("PATH");
    std::string_view folders(path != nullptr ? path : "/usr/bin:/bin");
    while (!word.empty()) {
        const size_t end = folders.find(':');
        const std::string folder(folders.substr(0, end));
        if (access(((folder.empty() ? "." : folder) + "/" + word).c_str(), X_OK) == 0) {
            return 1;
        }
        if (end == std::string_view::npos) {
            return 0;
        }
        folders.remove_prefix(end + 1);
    }
    return 0;
}

NB_USHORT vga_run_detached(const NB_CHAR *command) {
    sigset_t child_signal, mask;
    sigemptyset(&child_signal);
    sigaddset(&child_signal, SIGCHLD);
    sigprocmask(SIG_BLOCK, &child_signal, &mask);
    const pid_t child = fork();
    if (child == 0) {
        start_and_end(command, mask);
    }
    NB_INT reason = errno;
    if (child != -1) {
        gvga_web_temp_pid = child;
        reason = wait_for(child);
        gvga_web_temp_pid = 0;
    }
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    if (reason != 0) {
        nba_pd_print_exception(NB_PD_COMMAND, 0, "s s", command, strerror(reason));
    }
    return reason == 0;
}
