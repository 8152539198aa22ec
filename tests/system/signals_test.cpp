// What comes from outside while the program runs: signals, errors of the display, its end, the loss
// of the node software under a box, and an installation that finds nothing in its environment.
#include "sessionmanager.h"
#include "system_test.h"

#include <X11/Xlib.h>
#include <csignal>
#include <cstdlib>
#include <filesystem>

namespace sys {

namespace fs = std::filesystem;

class Signals : public SystemTest {
protected:
    void load() {
        node = &start_node();
        program = &start_program({"-size", "small"});
        window = loaded_window();
        ASSERT_NE(window, 0u);
        EXPECT_TRUE(wait_for([&] { return (list = screen().window_with(window, "ETH0")) != 0; }));
    }

    /* It draws what it must draw again, and ends in order. */
    void expect_alive() {
        screen().canvas().forget();
        screen().expose(window);
        EXPECT_TRUE(wait_for([&] { return screen().window_with(window, "ETH0") != 0; }));
        close_window(window);
        expect_end(*program, 0);
        EXPECT_EQ(program->err(), "");
    }

    Process *node = nullptr;
    Process *program = nullptr;
    WindowId window = 0;
    WindowId list = 0;
};

TEST_F(Signals, TerminationAndEndsOfChildrenAreOutlived) {
    ASSERT_NO_FATAL_FAILURE(load());
    for (const int signal : {SIGCHLD, SIGTERM, SIGTERM, SIGCHLD}) {
        program->send(signal);
    }
    expect_alive();
}

/* All others do what they always do, and the node software serves the next one. */
TEST_F(Signals, OthersEndItAtOnce) {
    start_node();
    for (const int signal : {SIGHUP, SIGINT, SIGKILL}) {
        program = &start_program();
        window = loaded_window();
        ASSERT_NE(window, 0u);
        program->send(signal);
        expect_end(*program, -signal);
        EXPECT_TRUE(wait_for([&] { return screen().find(message(1300, {"corvid1"})) == 0; }));
    }
}

/* A logout asks as closing does; it is refused, called off under the question, and carried out. */
TEST_F(Signals, ALogoutAsksAndEndsInOrder) {
    SessionManager session;
    ASSERT_NE(session.address(), "");
    node = &start_node();
    program = &start_program({"-size", "small"}, {{"SESSION_MANAGER", session.address()}});
    window = loaded_window();
    ASSERT_NE(window, 0u);
    ASSERT_TRUE(session.joined);
    session.save(false);
    EXPECT_TRUE(wait_for([&] { return session.saved; }));
    EXPECT_FALSE(session.asks) << "nobody is asked while the session goes on";
    ASSERT_GE(session.restart_command.size(), 3U);
    EXPECT_EQ(session.restart_command[session.restart_command.size() - 2], "-size");

    const std::string title = message(185), question = message(205);
    session.save(true);
    press(box(title, question), "Cancel");
    EXPECT_TRUE(wait_for([&] { return session.saved; }));
    EXPECT_TRUE(session.answered && session.refused);
    session.call_off();

    session.save(true);
    ASSERT_NE(box(title, question), 0U);
    session.call_off();
    EXPECT_TRUE(wait_for([&] { return session.saved && screen().find(title) == 0; }));
    EXPECT_FALSE(session.refused);

    session.save(true);
    EXPECT_TRUE(wait_for([&] { /* the box before may still be going */
                               const WindowId asking = box(title, question);
                               return asking != 0 && screen().click(asking, "OK");
    }));
    EXPECT_TRUE(wait_for([&] { return session.saved; }));
    EXPECT_TRUE(session.answered && !session.refused);
    session.die();
    expect_end(*program, 0);
    EXPECT_TRUE(wait_for([&] { return session.left; }));
}

class DisplayFaults : public Signals {};

TEST_F(DisplayFaults, AProtocolErrorIsLoggedAndOutlived) {
    ASSERT_NO_FATAL_FAILURE(load());
    screen().focus(window);
    ASSERT_TRUE(screen().click(list, "ETH0"));
    Display *display = XOpenDisplay(screen().name().c_str());
    ASSERT_NE(display, nullptr);
    XDestroyWindow(display, list);
    XSync(display, False);
    screen().key("minus");
    screen().key("plus");
    EXPECT_TRUE(wait_for([&] { return !place.log("quiladmin").empty(); }));
    XCloseDisplay(display);
    for (const std::string &line : place.log("quiladmin")) {
        EXPECT_NE(line.find(" exception 0x4002000B detail 0: X protocol error"), std::string::npos)
            << line;
    }
    close_window(window);
    expect_end(*program, 0);
    EXPECT_EQ(program->err(), "");
}

TEST_F(DisplayFaults, WithoutADisplayItSaysSoAndFails) {
    Process &without = start_program({}, {{"DISPLAY", ":none"}});
    expect_end(without, 1);
    EXPECT_NE(without.err().find(":none"), std::string::npos) << without.err();
}

TEST_F(DisplayFaults, TheEndOfTheDisplayIsItsEnd) {
    start_node();
    Process server(
        {{"Xvfb", "-displayfd", "1", "-nolisten", "tcp", "-noreset", "-ac"}, place.environment()});
    ASSERT_TRUE(wait_for([&] { return server.out().find('\n') != std::string::npos; }));
    const std::string name = ":" + server.out().substr(0, server.out().find('\n'));
    program = &start_program({}, {{"DISPLAY", name}});
    Display *display = XOpenDisplay(name.c_str());
    ASSERT_NE(display, nullptr);
    ASSERT_TRUE(wait_for([&] {
        Window root, parent, *all = nullptr;
        unsigned count = 0;
        bool found = false;
        XQueryTree(display, DefaultRootWindow(display), &root, &parent, &all, &count);
        for (unsigned at = 0; at < count; at++) {
            char *title = nullptr;
            found = found || (XFetchName(display, all[at], &title) != 0 &&
                              title == message(1300, {"corvid1"}));
            XFree(title);
        }
        XFree(all);
        return found;
    }));
    XCloseDisplay(display);
    server.kill_all();
    expect_end(*program, 1);
    EXPECT_NE(program->err().find(name), std::string::npos) << program->err();
}

class Reports : public Signals {};

/* Boxes wait for each other, so the report comes when the ones before it were read. */
TEST_F(Reports, TheLossIsReportedBehindWhatWasNotRead) {
    start_node(place.write("bare.domain", "[domain]\nname = bare\ndomain_config = no\n"
                                          "[node lonely]\nfq_cp_name = NETA.LONELY\n"));
    program = &start_program();
    ASSERT_NE(box(message(213), message(217)), 0u);
    stop_node();
    for (const int number : {217, 606, 301}) {
        ASSERT_NO_FATAL_FAILURE(read_box(message(213), message(number)));
    }
    expect_end(*program, 0);
}

TEST_F(Reports, TheLossWhileItClosesIsNoNews) {
    start_node("single", "hang NAP_CLOSE_FILE\nhang NAP_DISCONNECT_NODE");
    program = &start_program();
    window = loaded_window();
    ASSERT_NE(window, 0u);
    close_window(window);
    ASSERT_TRUE(wait_for([&] { return screen().find(message(185)) == 0; }));
    stop_node();
    expect_end(*program, 0);
    EXPECT_EQ(program->err(), "");
}

TEST_F(Reports, ANodeThatRefusesToBeConnectedIsStillShown) {
    start_node(place.write("one.domain", "[domain]\nname = one\nclient_server = yes\n"
                                         "[node lonely]\nserver = master\n"
                                         "fq_cp_name = NETA.LONELY\n"),
               "fail NAP_CONNECT_NODE 0x0100 0x5518");
    program = &start_program();
    read_box(message(210), "0x0100");
    window = open_node("lonely");
    ASSERT_NE(window, 0u);
    EXPECT_TRUE(shows(window, message(1247, {"lonely"})));
    close_window(domain_window());
    expect_end(*program, 0);
    EXPECT_EQ(program->err(), "");
}

/* The software as it is installed, each program in a file system of its own where it lies under its
 * usual prefix, with no environment but the display. */
class Installed : public Signals {
protected:
    void SetUp() override {
        Process probe(
            {{"unshare", "-m", "mount", "-t", "tmpfs", "none", "/opt"}, place.environment()});
        if (geteuid() != 0 || !probe.wait_end() || probe.status() != 0) {
            GTEST_SKIP() << "no file systems of one's own here";
        }
        Command install = {{"cmake", "--install", SYSTEM_BUILD_TREE}, place.environment()};
        install.environment["DESTDIR"] = place.path("dest");
        Process installing(install);
        ASSERT_TRUE(installing.wait_end(60000));
        ASSERT_EQ(installing.status(), 0) << installing.err();
    }

    Command installed(const std::vector<std::string> &words,
                      const std::vector<std::string> &settings = {}) {
        Command command = {{"unshare", "-m", "sh", "-c",
                            "mount -t tmpfs none /opt && mkdir -p " + prefix_ +
                                " && mount --bind \"$0\" " + prefix_ + " && exec env -i \"$@\"",
                            place.path("dest" + prefix_)},
                           place.environment()};
        // How the sanitizers report is the test's own affair.
        for (const char *name : {"ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"}) {
            if (const char *value = getenv(name)) {
                command.words.push_back(std::string(name) + "=" + value);
            }
        }
        command.words.insert(command.words.end(), settings.begin(), settings.end());
        command.words.push_back(prefix_ + "/bin/" + words[0]);
        command.words.insert(command.words.end(), words.begin() + 1, words.end());
        return command;
    }

    const std::string prefix_ = "/opt/corvid/sna";
};

TEST_F(Installed, ShowsTheDomainWithoutAnyEnvironment) {
    Process front(installed({"snanode", "--domain", "single"}));
    ASSERT_TRUE(wait_for([&] { return front.out().find(" ready\n") != std::string::npos; }))
        << front.err();
    Process shown(installed({"quiladmin"}, {"DISPLAY=" + screen().name()}));
    window = loaded_window();
    EXPECT_NE(window, 0u) << shown.err();
    EXPECT_TRUE(wait_for([&] { return screen().window_with(window, "ETH0") != 0; }));
    shown.send(SIGTERM);
    close_window(window);
    expect_end(shown, 0);
    EXPECT_EQ(shown.err(), "");
    front.send(SIGTERM);
    expect_end(front, 0);
}

} // namespace sys
