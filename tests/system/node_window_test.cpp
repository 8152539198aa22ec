// An operator's session with a node that lives.
#include "system_test.h"

#include <algorithm>
#include <csignal>

namespace sys {

class NodeWindow : public SystemTest {
protected:
    /* Loads the sample domain, with lines small enough and a window tall enough to see them all. */
    void load() {
        start_node();
        program = &start_program({"-size", "small", "-geometry", "1100x1700"});
        window = loaded_window();
        ASSERT_NE(window, 0u);
    }

    /* The list that has the line, as long as it takes to be drawn. */
    WindowId list_with(const std::string &line) {
        WindowId list = 0;
        wait_for([&] { return (list = screen().window_with(window, line)) != 0; });
        return list;
    }

    /* Waits until those of the names that the list shows are all of them, in this order. */
    bool shows(WindowId list, const std::vector<std::string> &names) {
        return wait_for(
            [&] { return first_words(screen().canvas().lines(list), &names) == names; });
    }

    /* Waits until these lines, or none of them, stand below the line of that name. */
    bool below(WindowId list, const std::string &name, const std::vector<std::string> &names,
               bool shown) {
        std::vector<std::string> together = {name};
        if (shown) {
            together.insert(together.end(), names.begin(), names.end());
        }
        return wait_for([&] {
            const std::vector<std::string> all = first_words(screen().canvas().lines(list));
            const auto at = std::search(all.begin(), all.end(), together.begin(), together.end());
            const bool others =
                std::find_first_of(all.begin(), all.end(), names.begin(), names.end()) != all.end();
            return at != all.end() && (shown || !others);
        });
    }

    Process *program = nullptr;
    WindowId window = 0;
};

TEST_F(NodeWindow, ShowsEveryPaneOfTheDomainInOrder) {
    ASSERT_NO_FATAL_FAILURE(load());
    // Of the sample domain.
    const std::vector<std::string> names[] = {{"ETH0", "ETH1", "IPPORT", "LINE0", "LINE1", "XPORT"},
                                              {"CLAIMS", "CORVID1", "FILES", "PAYROLL", "TELLER"},
                                              {"NETA.NORTH", "NETA.TELLER1", "NETB.FALCON"}};
    int last = 0;
    for (const std::vector<std::string> &wanted : names) {
        const WindowId list = list_with(wanted.front());
        ASSERT_NE(list, 0u) << wanted.front();
        EXPECT_TRUE(shows(list, wanted)) << "the list with " << wanted.front();
        const int top = screen().top(list);
        EXPECT_GT(top, last) << "panes stand in another order";
        last = top;
    }
}

// The node is still starting when a program comes that is started as soon as it is ready.
TEST_F(NodeWindow, HeadLineFollowsTheNode) {
    ASSERT_NO_FATAL_FAILURE(load());
    const std::string active = "corvid1 (NETA.CORVID1): active";
    EXPECT_TRUE(wait_for([&] { return screen().text(window).find(active) != std::string::npos; }))
        << screen().text(window);
}

TEST_F(NodeWindow, ShowsWhatTheNodeSaysOfALine) {
    ASSERT_NO_FATAL_FAILURE(load());
    const WindowId list = list_with("LINE0");
    ASSERT_NE(list, 0u);
    const std::vector<std::string> lines = screen().canvas().lines(list);
    // States change while the node starts; they are the second word.
    for (const char *ending :
         {" SDLC Leased line, head office", " QLLC (X.25) 23110040 Packet network",
          " Host HOSTPU Head office host over the LAN",
          " Peer (NN) NETA.NORTH Northern network node"}) {
        const std::string wanted = ending;
        EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [&wanted](const std::string &line) {
            return line.size() > wanted.size() &&
                   line.compare(line.size() - wanted.size(), wanted.size(), wanted) == 0;
        })) << ending;
    }
}

TEST_F(NodeWindow, KeysOpenAndCloseAPort) {
    ASSERT_NO_FATAL_FAILURE(load());
    const WindowId list = list_with("ETH0");
    const std::vector<std::string> stations = {"HOSTLAN", "TELLER1", "TELLER2"};
    ASSERT_NE(list, 0u);
    screen().focus(window);
    ASSERT_TRUE(screen().click(list, "ETH0"));
    screen().key("minus");
    EXPECT_TRUE(below(list, "ETH0", stations, false)) << "it does not close";
    screen().key("plus");
    EXPECT_TRUE(below(list, "ETH0", stations, true)) << "it does not open";

    // The port below is chosen with the keyboard alone: over the three lines and ETH1.
    const std::vector<std::string> others = {"NORTH", "SOUTH"};
    for (size_t line = 0; line < stations.size() + 2; line++) {
        screen().key("Down");
    }
    screen().key("minus");
    EXPECT_TRUE(below(list, "IPPORT", others, false)) << "it does not close";
    EXPECT_TRUE(below(list, "ETH0", stations, true)) << "another one has closed";
    screen().key("KP_Add");
    EXPECT_TRUE(below(list, "IPPORT", others, true)) << "it does not open";
}

TEST_F(NodeWindow, AsksBeforeItClosesAndLeavesTheNodeAlone) {
    ASSERT_NO_FATAL_FAILURE(load());
    screen().ask_to_close(window);
    ASSERT_NE(box(message(185), message(205)), 0u);
    press(message(185), "Cancel");
    EXPECT_TRUE(wait_for([this] { return screen().find(message(185)) == 0; }));
    EXPECT_TRUE(program->running());

    close_window(window);
    expect_end(*program, 0);
    EXPECT_EQ(program->err(), "");
    EXPECT_TRUE(place.log("quiladmin").empty());

    start_program();
    EXPECT_NE(loaded_window(), 0u) << "the node software does not serve the next one";
    EXPECT_TRUE(place.log("snanode").empty());
}

} // namespace sys
