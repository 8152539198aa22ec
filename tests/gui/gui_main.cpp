// Runs the tests of a program under an X server of its own, which ends with the program.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

pid_t server;

[[noreturn]] void run_server(int display_fd) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const int quiet = ::open("/dev/null", O_WRONLY);
    dup2(quiet, STDOUT_FILENO);
    dup2(quiet, STDERR_FILENO);
    const std::string fd = std::to_string(display_fd);
    const char *small = getenv("GUI_SCREEN"); // of another size: "1024x768x24"
    const char *screen = small != nullptr ? small : "1280x1024x24";
    execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", screen, "-nolisten", "tcp",
           "-noreset", static_cast<char *>(nullptr));
    _exit(127);
}

/* The number of the display that the server chose, as it writes it when it is ready. */
std::string read_display(int fd) {
    constexpr int deadline = 20000; // milliseconds
    std::string number;
    pollfd ready = {fd, POLLIN, 0};
    char byte = '\0';
    while (poll(&ready, 1, deadline) > 0 && read(fd, &byte, 1) == 1 && byte != '\n') {
        number += byte;
    }
    return byte == '\n' ? number : "";
}

bool start_server() {
    int ends[2];
    if (pipe(ends) != 0 || (server = fork()) == -1) {
        return false;
    }
    if (server == 0) {
        close(ends[0]);
        run_server(ends[1]);
    }
    close(ends[1]);
    const std::string number = read_display(ends[0]);
    close(ends[0]);
    return !number.empty() && setenv("DISPLAY", (":" + number).c_str(), 1) == 0;
}

} // namespace

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) {
        return RUN_ALL_TESTS();
    }
    setenv("UIDPATH", GUI_UID_PATH, 0);
    setenv("LC_ALL", "C", 1); // fonts and texts as everywhere
    if (!start_server()) {
        fprintf(stderr, "no X server could be started (Xvfb)\n");
        return EXIT_FAILURE;
    }
    const int result = RUN_ALL_TESTS();
    kill(server, SIGTERM);
    waitpid(server, nullptr, 0);
    return result;
}
