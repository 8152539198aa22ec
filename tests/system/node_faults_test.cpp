// The program while the node software fails it: what it says, and that it ends in order.
#include "administrator.h"
#include "system_test.h"

#include "connectivity.h"
#include "defineblock.h"
#include "fieldtext.h"
#include "nofwire.h"

#include <algorithm>
#include <csignal>
#include <pwd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace sys {

namespace {

const std::string error_title = message(210);
const std::string information_title = message(213);

} // namespace

class NodeFaults : public SystemTest {
protected:
    /* The program shows the text over its window, and ends with status 0 when it was read. */
    void expect_report(Process &program, const std::string &title, const std::string &text) {
        ASSERT_NO_FATAL_FAILURE(read_box(title, text));
        expect_end(program, 0);
    }

    /* The same of node software that cannot be reached; standard error says why. */
    void expect_unreachable(Process &program, const std::string &why) {
        ASSERT_NO_FATAL_FAILURE(expect_report(program, error_title, message(605, {"sna"})));
        EXPECT_EQ(flat(program.err()),
                  message(1124, {place.path("var/sna.sock"), why,
                                 place.path("bin/snanode") + " --domain NAME"}));
    }

    /* The window without a node, as it stands while nothing is known yet. */
    WindowId empty_window() {
        WindowId found = 0;
        wait_for([&] { return (found = screen().find(message(1301))) != 0; });
        return found;
    }
};

TEST_F(NodeFaults, NoNodeSoftware) {
    expect_unreachable(start_program(), message(1125));
    EXPECT_EQ(place.log("quiladmin").size(), 1u);
    start_node().kill_all(); // its socket stays, but nobody serves it
    expect_unreachable(start_program(), message(1126));
}

TEST_F(NodeFaults, ConnectionLostWhileTheWindowIsOpen) {
    for (const int signal : {SIGKILL, SIGTERM}) {
        Process &node = start_node();
        Process &program = start_program();
        ASSERT_NE(loaded_window(), 0u);
        node.send(signal);
        expect_report(program, information_title, message(301));
        expect_end(node, signal == SIGKILL ? -SIGKILL : 0);
        EXPECT_TRUE(wait_for([&] { return !node.group_lives(); })) << "a node is left over";
    }
}

// Until the box is read, nothing behind it looks alive.
TEST_F(NodeFaults, ProcessOfTheNodeKilled) {
    Process &front = start_node();
    Process &program = start_program();
    const WindowId window = loaded_window();
    ASSERT_NE(window, 0u);
    ASSERT_TRUE(shows(window, "ETH0"));
    kill_node(front, "corvid1");
    ASSERT_NE(box(information_title, message(300, {"corvid1"})), 0u);
    EXPECT_TRUE(shows(window, "corvid1 (NETA.CORVID1): not connected since "));
    EXPECT_TRUE(shows(window, message(1323)));
    EXPECT_EQ(screen().text(window).find("ETH0"), std::string::npos);
    expect_report(program, information_title, message(300, {"corvid1"}));
}

// In a domain of three nodes.
TEST_F(NodeFaults, ANodeThatReturnsFindsItsWindowAsItWas) {
    Process &front = start_node("branch");
    Process &program = start_program({"-size", "small", "-geometry", "1100x1700"});
    const WindowId window = open_node("harbour");
    ASSERT_NE(window, 0u);
    const std::string mode = "LEDGMODE NETA.SHOPLU ";
    const auto dialog_shown = [&] {
        const std::vector<WindowId> all = screen().windows();
        return std::any_of(all.begin(), all.end(), [&](WindowId each) {
            return screen().text(each).find("Minimum contention winners:") != std::string::npos;
        });
    };
    ASSERT_TRUE(shows(window, mode + "12 of 32 sessions"));
    const WindowId links = screen().window_with(window, "CHPORT");
    const WindowId lus = screen().window_with(window, "LEDGER");
    screen().focus(window);
    ASSERT_TRUE(screen().click(links, "KIOSK1"));
    screen().key("plus"); // its LUs
    ASSERT_TRUE(screen().click(links, "CHPORT"));
    screen().key("minus");
    ASSERT_TRUE(screen().click(lus, "LEDGMODE"));
    const std::vector<std::string> names = {"CHPORT", "ETH0", "HOSTETH", "KIOSK1", "KSK001"};
    const auto is_as_left = [&] {
        const std::vector<std::string> all = first_words(screen().canvas().lines(links));
        return std::search(all.begin(), all.end(), names.begin(), names.end()) != all.end();
    };
    EXPECT_TRUE(wait_for(is_as_left)) << screen().text(links);
    screen().key("Return"); // the dialog of the selected mode
    ASSERT_TRUE(wait_for(dialog_shown));

    kill_node(front, "market");
    ASSERT_NO_FATAL_FAILURE(read_box(information_title, message(300, {"market"})));
    EXPECT_TRUE(shows(window, mode + "0 of 32 sessions")) << "what depends on the other node";
    EXPECT_TRUE(is_as_left());
    EXPECT_TRUE(dialog_shown());

    kill_node(front, "harbour");
    EXPECT_TRUE(shows(window, "harbour (NETA.HARBOUR): not connected since "));
    ASSERT_NO_FATAL_FAILURE(read_box(information_title, message(770)));
    ASSERT_NO_FATAL_FAILURE(read_box(information_title, message(300, {"harbour"})));
    screen().ask_to_close(
        screen().find(message(752, {message(800, {"Session limits", "LEDGMODE", "harbour"})})));
    EXPECT_TRUE(wait_for([&] { return !dialog_shown(); }));
    EXPECT_TRUE(shows(window, "harbour (NETA.HARBOUR): active"));
    EXPECT_TRUE(wait_for(is_as_left)) << screen().text(links);
    EXPECT_TRUE(shows(window, message(1244))) << "the pane is current again when all is read";
    screen().focus(window);
    screen().key("Return");
    EXPECT_TRUE(wait_for(dialog_shown)) << "it is selected again";
    close_window(domain_window());
    expect_end(program, 0);
}

TEST_F(NodeFaults, EachFaultOfABuildHasItsReport) {
    const std::string failed = message(226).substr(0, message(226).find("Request:"));
    const struct {
        std::string fault, title, text;
        std::string log = {}; /* in its last line */
    } rows[] = {
        {"drop after 1 verbs", information_title, message(301)},
        {"drop after 20 verbs", information_title, message(301)},
        {"drop after 60 verbs", information_title, message(301)},
        {"garbage after 1 verbs", information_title, message(301)},
        {"garbage after 40 verbs", information_title, message(301)},
        {"stop after 30 verbs", information_title, message(301)},
        {"die corvid1 after 40 verbs", information_title, message(300, {"corvid1"})},
        {"fail NAP_OPEN_FILE 0x0100 0x5518", error_title, message(608)},
        {"fail NAP_QUERY_NODE_ALL 0x0100 0x5518", error_title, failed + "Request: 0xF009",
         "0x40020002"},
        {"fail NAP_QUERY_PORT 0x0100 0x5518", error_title, failed + "Request: 0x2113",
         "0x40020002"},
        {"fail NAP_QUERY_NODE_LIMITS 0x0100 0x5518", error_title, failed + "Request: 0x",
         "0x40020002"},
        {"fail NAP_REGISTER_INDICATION_SINK 0x0100 0x5518", error_title, failed + "Request: 0x4000",
         "0x40020002 detail 2"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.fault);
        start_node("single", row.fault);
        expect_report(start_program(), row.title, row.text);
        const std::vector<std::string> log = place.log("quiladmin");
        const std::string last = log.empty() ? "" : log.back();
        EXPECT_NE(last.find(row.log), std::string::npos) << last;
        place.write("var/log/sna.err", "");
        stop_node();
    }
}

TEST_F(NodeFaults, LostIndicationsAreMadeUpFor) {
    Process &node = start_node("single", "# none yet\n");
    start_program({"-size", "small", "-geometry", "1100x1700"});
    const WindowId window = loaded_window();
    const std::vector<std::string> stations = {"TELLER1", "TELLER2", "NORTH"};
    for (const std::string &name : stations) {
        ASSERT_TRUE(shows(window, name + " Active")) << screen().text(window);
    }
    place.write("faults", "lose indications 2");
    node.send(SIGHUP);
    Administrator admin(place.path("var/sna.sock"));
    const NB_ULONG target = admin.connect("corvid1");
    for (const Bytes &entry : admin.list(target, records::ls)) {
        const std::string name = records::local_text(&entry[records::KEY_OFFSET], 8);
        if (std::count(stations.begin(), stations.end(), name) != 0) {
            auto stop = records::make_name_block(records::ls, records::ls.stop, entry.data());
            stop.stop_type = NAP_IMMEDIATE_STOP;
            EXPECT_TRUE(admin.issue(target, stop)) << name;
        }
    }
    for (const std::string &name : stations) {
        EXPECT_TRUE(shows(window, name + " Inactive")) << screen().text(window);
    }
}

TEST_F(NodeFaults, ADomainWithoutConfigurationIsToBeLookedAt) {
    start_node(place.write("bare.domain", "[domain]\nname = bare\ndomain_config = no\n"
                                          "[node lonely]\nfq_cp_name = NETA.LONELY\n"
                                          "[dlc LAN0]\ndlc_type = ethernet\n"
                                          "[port ETH0]\ndlc_name = LAN0\n"));
    Process &program = start_program();
    ASSERT_NO_FATAL_FAILURE(read_box(information_title, message(217)));
    ASSERT_NO_FATAL_FAILURE(read_box(information_title, message(606)));
    const WindowId window = loaded_window("lonely");
    ASSERT_NE(window, 0u);
    EXPECT_TRUE(shows(window, "ETH0"));
    close_window(window);
    expect_end(program, 0);
}

TEST_F(NodeFaults, WhoMayOnlyLookIsTold) {
    const passwd *nobody = getpwnam("nobody");
    if (geteuid() != 0 || nobody == nullptr) {
        GTEST_SKIP() << "only root can run the program as another user";
    }
    Process probe(
        {{"test", "-x", place.path("bin/quiladmin")}, place.environment(), nobody->pw_uid});
    if (!probe.wait_end() || probe.status() != 0) {
        GTEST_SKIP() << "another user cannot reach the build tree";
    }
    start_node();
    Process &program = start_program({}, {}, nobody->pw_uid);
    ASSERT_NO_FATAL_FAILURE(read_box(information_title, message(606)));
    const WindowId window = loaded_window();
    ASSERT_NE(window, 0u);
    EXPECT_TRUE(shows(window, "ETH0"));
    close_window(window);
    expect_end(program, 0);
}

TEST_F(NodeFaults, ASlowNodeDoesNotHoldTheOperator) {
    start_node("single", "delay 300");
    Process &program = start_program();
    const WindowId window = empty_window();
    ASSERT_NE(window, 0u);
    const std::string reading = message(1240, {message(1243, {"corvid1"}), "1"});
    EXPECT_TRUE(shows(window, reading.substr(0, reading.size() - 1)));
    EXPECT_GT(screen().width(screen().window_with(window, message(1315))), 100) << "not in full";
    screen().canvas().forget();
    screen().expose(window);
    EXPECT_TRUE(shows(window, "Selection")) << "it is not drawn again";
    const auto start = Clock::now();
    close_window(window);
    expect_end(program, 0);
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(10));
    EXPECT_EQ(program.err(), "");
}

TEST_F(NodeFaults, ASecondCloseEndsAProgramThatANodeHolds) {
    for (const auto &[faults, held_by] :
         {std::pair{"hang NAP_CLOSE_FILE", message(1242)},
          std::pair{"fail NAP_DISCONNECT_NODE 0x200 0x5544", message(1243, {"corvid1"})}}) {
        SCOPED_TRACE(faults);
        start_node("single", faults);
        Process &program = start_program();
        const WindowId window = loaded_window();
        ASSERT_NE(window, 0u);
        const auto start = Clock::now();
        close_window(window);
        EXPECT_TRUE(shows(window, message(1424, {held_by})));
        screen().canvas().forget();
        screen().expose(window);
        for (const std::string &text : {std::string("Local LUs"), message(1425)}) {
            EXPECT_TRUE(shows(window, text)) << "it is not drawn again";
        }
        EXPECT_EQ(screen().text(window).find("ETH0"), std::string::npos);
        while (program.running() && Clock::now() - start < std::chrono::seconds(20)) {
            if (program.wait_end(500)) {
                break;
            }
            screen().ask_to_close(window);
            if (box(message(185), message(205)) != 0) {
                press(message(185), "OK");
            }
        }
        expect_end(program, 0);
        EXPECT_GE(Clock::now() - start, std::chrono::seconds(5))
            << "it has not waited for the node";
    }
}

TEST_F(NodeFaults, ConnectionLostUnderAQuestion) {
    for (const std::string button : {"OK", "Cancel"}) {
        SCOPED_TRACE(button);
        Process &node = start_node();
        Process &program = start_program();
        const WindowId window = loaded_window();
        ASSERT_NE(window, 0u);
        screen().ask_to_close(window);
        screen().ask_to_close(window); // an impatient operator is asked once
        ASSERT_NE(box(message(185), message(205)), 0u);
        place.write("var/log/sna.err", "");
        node.send(SIGKILL);
        EXPECT_TRUE(wait_for([&] { return !place.log("quiladmin").empty(); }));
        press(message(185), button);
        if (button == "Cancel") {
            read_box(information_title, message(301));
        }
        expect_end(program, 0);
    }
}

TEST_F(NodeFaults, AReportIsReadWhenItsBoxIsClosed) {
    Process &program = start_program();
    const WindowId report = box(error_title, message(605, {"sna"}));
    ASSERT_NE(report, 0u);
    screen().ask_to_close(report);
    expect_end(program, 0);
    EXPECT_NE(program.err(), "");
}

/* Something else than the node software has its socket. */
class WrongSocket : public NodeFaults {
protected:
    void SetUp() override {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        place.path("var/sna.sock").copy(address.sun_path, sizeof address.sun_path - 1);
        socket_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        ASSERT_EQ(bind(socket_, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        ASSERT_EQ(listen(socket_, 1), 0);
    }
    void TearDown() override {
        close(connection_);
        close(socket_);
        NodeFaults::TearDown();
    }

    void say(const std::string &words) {
        connection_ = accept(socket_, nullptr, nullptr);
        ASSERT_GE(connection_, 0);
        ASSERT_EQ(write(connection_, words.data(), words.size()),
                  static_cast<ssize_t>(words.size()));
    }

    int socket_ = -1;
    int connection_ = -1;
};

TEST_F(WrongSocket, OneThatIsSilentDoesNotHoldTheOperator) {
    Process &program = start_program();
    const WindowId window = empty_window();
    ASSERT_NE(window, 0u);
    EXPECT_TRUE(shows(window, "Selection"));
    close_window(window);
    expect_end(program, 0);
}

TEST_F(WrongSocket, NodeSoftwareThatIsFullSaysWhy) {
    for (const auto &[code, reason] : {std::pair{NAP_NODE_BUSY, 1162}, {NAP_LIMIT_REACHED, 1163}}) {
        NOF_FRAME frame = {};
        NOF_HELLO hello = {};
        frame.kind = NOF_FRAME_HELLO;
        frame.vcb_length = sizeof(hello);
        frame.length = sizeof(frame) + sizeof(hello);
        hello.version = NOF_WIRE_VERSION;
        hello.primary_rc = NAP_UNAVAILABLE;
        hello.secondary_rc = code;
        Process &program = start_program();
        ASSERT_NE(empty_window(), 0u);
        say(std::string(reinterpret_cast<char *>(&frame), sizeof(frame)) +
            std::string(reinterpret_cast<char *>(&hello), sizeof(hello)));
        ASSERT_NO_FATAL_FAILURE(expect_report(program, error_title, message(605, {"sna"})));
        EXPECT_EQ(flat(program.err()),
                  message(1161, {place.path("var/sna.sock"), message(reason)}));
        close(connection_);
    }
}

TEST_F(WrongSocket, OneThatTalksOtherwiseIsNoNodeSoftware) {
    Process &program = start_program();
    ASSERT_NE(empty_window(), 0u);
    say("220 ready when you are\r\n" + std::string(64, '\xFF'));
    expect_unreachable(program, "a frame with impossible lengths");
}

} // namespace sys
