// The domain's window: an operator and the three nodes of a domain, with mouse and keys.
#include "administrator.h"
#include "system_test.h"

#include "nofverbs.h"

#include <algorithm>
#include <cstring>
#include <pwd.h>
#include <unistd.h>

namespace sys {

class SystemWindow : public SystemTest {
protected:
    void load(const std::string &text = "branch", uid_t user = 0) {
        front = &start_node(text);
        program = &start_program({"-size", "small", "-geometry", "1200x500", "-xrm",
                                  "Quiladmin.verbLog: " + place.path("var/verbs")},
                                 {}, user);
        domain = domain_window();
        ASSERT_NE(domain, 0u);
    }

    void select(const std::string &node) {
        EXPECT_TRUE(wait_for([&] { return screen().click(domain, node); })) << node;
    }

    /* A line of the menu bar. */
    void choose(const std::string &menu, const std::string &item) {
        EXPECT_TRUE(wait_for([&] { return screen().click(domain, menu); })) << menu;
        EXPECT_TRUE(wait_for([&] {
            const std::vector<WindowId> all = screen().windows();
            return std::any_of(all.begin(), all.end(), [&](WindowId window) {
                return window != domain && screen().click(window, item);
            });
        })) << item;
    }

    bool was_issued(const std::string &verb) const {
        const std::vector<std::string> all = split_lines(place.read("var/verbs"));
        return std::any_of(all.begin(), all.end(), [&](const std::string &line) {
            return line.find(" issued ") != std::string::npos &&
                   line.find(verb) != std::string::npos;
        });
    }

    Process *front = nullptr, *program = nullptr;
    WindowId domain = 0;
};

TEST_F(SystemWindow, ThreeWindowsWhileANodeDiesAndComesBack) {
    ASSERT_NO_FATAL_FAILURE(load());
    EXPECT_TRUE(shows(domain, "harbour Active Master server Ports 4, links 8, LUs "));
    const WindowId harbour = open_node("harbour");
    const WindowId market = open_node("market");
    const WindowId station = open_node("station");
    ASSERT_TRUE(harbour != 0 && market != 0 && station != 0);
    ASSERT_TRUE(shows(market, "FRPORT"));

    kill_node(*front, "market");
    EXPECT_TRUE(shows(domain, "not connected since "));
    EXPECT_TRUE(shows(market, message(1323)));
    EXPECT_TRUE(shows(harbour, "CHPORT"));
    EXPECT_TRUE(shows(station, "IPPORT"));
    ASSERT_NO_FATAL_FAILURE(read_box(message(213), message(300, {"market"})));
    EXPECT_TRUE(shows(market, "FRPORT"));
    EXPECT_TRUE(shows(domain, "market Active Backup server Ports 3, links 4, LUs "));

    screen().ask_to_close(market);
    EXPECT_TRUE(wait_for([&] { return screen().find(message(1300, {"market"})) == 0; }));
    EXPECT_EQ(screen().find(message(185)), 0u) << "only the domain's window asks";
    screen().raise(domain);
    choose("Windows", "1  harbour");
    EXPECT_TRUE(wait_for([&] { return screen().windows().back() == harbour; }));
    close_window(domain);
    expect_end(*program, 0);
}

TEST_F(SystemWindow, MakesBackupServersAndKeepsTheLastOne) {
    ASSERT_NO_FATAL_FAILURE(load());
    select("station");
    choose("Node", "Make a backup server");
    EXPECT_TRUE(shows(domain, "station Active Backup server"));
    for (const std::string answer : {"Cancel", "OK"}) {
        choose("Node", "End its server role");
        ASSERT_NE(box(message(185), message(1222, {"station"})), 0u);
        press(message(185), answer);
        EXPECT_EQ(shows(domain, "station Active No server role", 2000), answer == "OK");
        EXPECT_EQ(was_issued("DELETE_BACKUP"), answer == "OK");
    }
    place.write("var/verbs", "");

    // Another administrator is faster than the answer.
    select("market");
    choose("Node", "End its server role");
    ASSERT_NE(box(message(185), message(1222, {"market"})), 0u);
    Administrator admin(place.path("var/sna.sock"));
    NAP_NAME_VERB block = {};
    block.opcode = NAP_DELETE_BACKUP;
    strcpy(reinterpret_cast<char *>(block.key), "market");
    EXPECT_TRUE(admin.issue(admin.open_file(NAP_SYSTEM_FILE), block));
    EXPECT_TRUE(shows(domain, "market Active No server role"));
    press(message(185), "OK");

    select("harbour");
    choose("Node", "End its server role");
    ASSERT_NO_FATAL_FAILURE(read_box(message(210), message(1221, {"harbour"})));
    EXPECT_TRUE(shows(domain, "harbour Active Master server"));
    EXPECT_FALSE(was_issued("DELETE_BACKUP"));
    close_window(domain);
    expect_end(*program, 0);
}

// The server that takes the domain's configuration over has it open again at once.
TEST_F(SystemWindow, FollowsTheDomainToAnotherServer) {
    ASSERT_NO_FATAL_FAILURE(load());
    kill_node(*front, "harbour");
    ASSERT_NO_FATAL_FAILURE(read_box(message(213), message(300, {"harbour"})));
    EXPECT_TRUE(shows(domain, "market Active Master server"));
    EXPECT_TRUE(shows(domain, "harbour Active Backup server"));
    select("station");
    choose("Node", "Make a backup server");
    EXPECT_TRUE(shows(domain, "station Active Backup server"));
    front->send(SIGKILL);
    ASSERT_NE(box(message(213), message(301)), 0u);
    EXPECT_TRUE(shows(domain, message(993)));
    press(message(213), "OK");
    expect_end(*program, 0);
}

TEST_F(SystemWindow, WhoMayOnlyLookNeitherStartsNorStops) {
    const passwd *nobody = getpwnam("nobody");
    if (geteuid() != 0 || nobody == nullptr) {
        GTEST_SKIP() << "only root can run the program as another user";
    }
    Process probe(
        {{"test", "-x", place.path("bin/quiladmin")}, place.environment(), nobody->pw_uid});
    if (!probe.wait_end() || probe.status() != 0) {
        GTEST_SKIP() << "another user cannot reach the build tree";
    }
    ASSERT_NO_FATAL_FAILURE(load("branch", nobody->pw_uid));
    ASSERT_NO_FATAL_FAILURE(read_box(message(213), message(606)));
    select("station");
    choose("Node", "Stop");
    ASSERT_NO_FATAL_FAILURE(read_box(message(210), message(605, {"sna"})));
    EXPECT_TRUE(shows(domain, "station Active"));
    EXPECT_NE(open_node("station"), 0u);
    close_window(domain);
    expect_end(*program, 0);
}

// Whoever may change is led to the definition of a node that has none.
TEST_F(SystemWindow, ANodeWithoutConfigurationIsToBeDefined) {
    ASSERT_NO_FATAL_FAILURE(
        load(place.write("new.domain", "[domain]\nname = new\nclient_server = yes\n"
                                       "[node first]\nserver = master\nfq_cp_name = NETA.FIRST\n"
                                       "[node second]\nconfigured = no\n")));
    EXPECT_TRUE(shows(domain, "second Not configured No server role " + message(885)));
    EXPECT_TRUE(shows(domain, "first Active Master server")) << screen().text(domain);
}

} // namespace sys
