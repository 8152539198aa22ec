// An operator deletes, with mouse and keyboard, what a real node has.
#include "administrator.h"
#include "system_test.h"

#include "lus.h"

#include <algorithm>
#include <csignal>

namespace sys {

class Deleting : public SystemTest {
protected:
    void load(const std::string &domain, const std::string &node_name,
              const std::string &resource = "*readOnly: no") {
        node = &start_node(domain, "# none yet\n");
        start_program({"-size", "small", "-geometry", "1100x1700", "-xrm", resource});
        window = loaded_window(node_name);
        ASSERT_NE(window, 0u);
        screen().focus(window);
    }

    /* Selects the line, as soon as it is drawn. */
    WindowId select(const std::string &line) {
        WindowId list = 0;
        EXPECT_TRUE(wait_for([&] { return (list = screen().window_with(window, line)) != 0; }));
        EXPECT_TRUE(screen().click(list, line));
        return list;
    }

    bool shows(WindowId shown, const std::string &text) {
        return wait_for([&] { return screen().text(shown).find(text) != std::string::npos; });
    }

    Process *node = nullptr;
    WindowId window = 0;
    const std::string question = message(185);
};

TEST_F(Deleting, ALinkStationGoesWithAllThatIsOnIt) {
    ASSERT_NO_FATAL_FAILURE(load("single", "corvid1"));
    const WindowId list = select("HOSTLINE");
    screen().key("plus");
    ASSERT_TRUE(wait_for([&] {
        const std::vector<std::string> lines = screen().lines(list);
        return std::any_of(lines.begin(), lines.end(), [](const std::string &line) {
            return line.starts_with("CLM009") && line.find(message(1257)) != std::string::npos;
        });
    })) << "all of it is up";
    screen().key("Delete");
    const std::string text = message(950, {"link station", "HOSTLINE"}) + " " +
                             message(953, {"1 PU, 9 LUs, 1 local LU"}) + " " +
                             message(954, {"1 link station, 1 PU"}) + " One session ends.";
    const WindowId asked = box(question, text);
    ASSERT_NE(asked, 0u);
    screen().focus(asked);
    screen().key("Return");
    EXPECT_TRUE(wait_for([&] { return screen().find(question) == 0; })) << "Return says Cancel";
    screen().focus(window);
    screen().key("Delete");
    press(box(question, text), "OK");
    EXPECT_TRUE(shows(window, message(958, {"1 link station, 1 PU, 9 LUs, 1 local LU"})));
    EXPECT_TRUE(wait_for([&] { return screen().window_with(list, "HOSTLINE") == 0; }));
    EXPECT_EQ(screen().find(message(960)), 0u) << "one line is told of in the message line";
    EXPECT_TRUE(shows(window, "PAYROLL")) << "local LUs are still there";
    Administrator admin(place.path("var/sna.sock"));
    EXPECT_EQ(admin.list(admin.connect("corvid1"), records::local_lu).size(), 3u);
}

// The node is told to refuse three while the others go.
TEST_F(Deleting, OfFourThousandThreeStay) {
    constexpr int count = 4000;
    const auto numbered = [](const char *letter, int number) {
        return letter + std::to_string(count + number);
    };
    std::string text = "[domain]\nname = big\nclient_server = no\n"
                       "[node big]\nfq_cp_name = NETA.A0\ncp_alias = A0\n";
    for (int lu = 0; lu < count; lu++) {
        text += "[local_lu " + numbered("L", lu) + "]\nlu_alias = " + numbered("A", lu) + "\n";
    }
    ASSERT_NO_FATAL_FAILURE(load(place.write("big.domain", text), "big"));
    const WindowId list = select(numbered("A", 0));
    screen().key("End", {"Shift_L"});
    screen().key("Delete");
    const WindowId asked =
        box(question, message(952, {"4000 local LUs", numbered("L", 0), numbered("L", count - 1)}));
    ASSERT_NE(asked, 0u);
    press(asked, "OK");
    ASSERT_TRUE(shows(window, "Deleting "));
    place.write("faults", "fail NAP_DELETE_LOCAL_LU 0x0200 0x5547 3");
    node->send(SIGHUP);
    wait_for([&] { return screen().find(message(960)) != 0; }, 60000);
    const WindowId receipt = box(message(960), message(963));
    ASSERT_NE(receipt, 0u);
    EXPECT_TRUE(
        shows(receipt, message(958, {"3997 local LUs"}) + " " + message(959, {"3 local LUs"})));
    EXPECT_EQ(screen().find(message(210)), 0u) << "no box a refusal";
    EXPECT_TRUE(wait_for([&] { return screen().lines(list).size() == 4; })) << screen().text(list);
    Administrator admin(place.path("var/sna.sock"));
    EXPECT_EQ(admin.list(admin.connect("big"), records::local_lu).size(), 3u);
}

// Two have two partner LUs each, one has one: each group is asked about, and nothing goes before.
TEST_F(Deleting, WhatIsNotAlikeIsAskedAboutSeparately) {
    ASSERT_NO_FATAL_FAILURE(load("single", "corvid1"));
    select("NETA.NORTH");
    screen().key("End", {"Shift_L"});
    const std::string first = message(951, {"2 remote systems", "NETA.NORTH, NETB.FALCON"}) + " " +
                              message(953, {"4 partner LUs"});
    const std::string second = message(950, {"remote system", "NETA.TELLER1"});
    const struct {
        const char *to_first, *to_second;
        std::string end; // empty: nothing happens
    } rows[] = {{"OK", "Cancel", ""},
                {"No", "OK", message(958, {"1 remote system, 1 partner LU"})}};
    for (const auto &row : rows) {
        screen().focus(window);
        screen().key("Delete");
        press(box(question, first), row.to_first);
        press(box(question, second), row.to_second);
        EXPECT_TRUE(shows(window, row.end));
        EXPECT_NE(screen().window_with(window, "NETA.NORTH"), 0u);
        EXPECT_TRUE(wait_for([&] {
            return (screen().window_with(window, "NETA.TELLER1 End node") == 0) == !row.end.empty();
        })) << "but for what its mode in use says";
    }
}

TEST_F(Deleting, WhoOnlyLooksIsNotEvenAsked) {
    ASSERT_NO_FATAL_FAILURE(load("single", "corvid1", "*readOnly: yes"));
    ASSERT_NO_FATAL_FAILURE(read_box(message(213), message(606)));
    screen().focus(window);
    select("HOSTLINE");
    screen().key("Delete");
    EXPECT_TRUE(shows(window, message(1314)));
    EXPECT_EQ(screen().find(question), 0u);
}

} // namespace sys
