// An operator's session with a node that lives.
#include "system_test.h"

namespace sys {

class NodeWindow : public SystemTest {
protected:
    /* Loads the sample domain, with lines small enough and a window tall enough to see them all. */
    void load() {
        start_node();
        start_program({"-size", "small", "-geometry", "1100x1700"});
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

    /* Waits until the line of that name says so, and until the dialog with that text is there. */
    bool says(WindowId list, const std::string &name, const std::string &state) {
        return wait_for([&] {
            screen().top(
                list); // the server reports what was drawn last when it has an answer to send
            const std::vector<std::string> all = screen().canvas().lines(list);
            return std::any_of(all.begin(), all.end(), [&](const std::string &line) {
                return line.compare(0, name.size() + 1, name + " ") == 0 &&
                       line.find(state) != line.npos;
            });
        });
    }
    WindowId dialog_with(const std::string &text) {
        WindowId found = 0;
        wait_for([&] {
            for (const WindowId each : screen().windows()) {
                const bool has = screen().text(each).find(text) != std::string::npos;
                found = each != window && has ? each : found;
            }
            return found != 0;
        });
        return found;
    }

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

/* What nobody defined comes and goes while the window is open. */
TEST_F(NodeWindow, ShowsWhatTheNodeMakesAndThatItGoes) {
    start_node(place.write("living.domain", R"(
[domain]
name = living
[node lonely]
fq_cp_name = NETA.LONELY
[dlc LAN0]
[port ETH0]
dlc_name = LAN0
implicit_links = yes
[lu_pool HALL -]
[dspu_template GUESTS]
+ range HALL
max_nau = 2
[local_lu PAYLU]
lu_alias = PAY
[visitor TICKETS1]
kind = pu
pu_name = KIOSK
comes = 1
stays = 3
away = 3
[visitor NOTEBOOK]
kind = node
fq_cp_name = NETA.NB1
lu_name = CLAIMS
comes = 1
stays = 3
away = 3
)"));
    start_program({"-size", "small", "-geometry", "1100x1000"});
    window = loaded_window("lonely");
    ASSERT_NE(window, 0u);
    const WindowId links = list_with("ETH0");
    const WindowId systems = list_with("Network");
    ASSERT_TRUE(links != 0 && systems != 0);
    const auto has = [this](WindowId list, const std::string &what) {
        screen().top(list);
        const std::vector<std::string> all = screen().canvas().lines(list);
        return std::any_of(all.begin(), all.end(), [&what](const std::string &line) {
            return line.find(what) != std::string::npos;
        });
    };
    for (const bool there : {true, false, true, false}) { /* the second time is live in any case */
        EXPECT_TRUE(wait_for([&] {
            return has(links, "@L0") == there && has(links, "TICKETS1") == there &&
                   has(systems, "NETA.NB1") == there;
        })) << (there ? "it came" : "it went");
    }
}

TEST_F(NodeWindow, StartsAndStopsWhatIsSelected) {
    ASSERT_NO_FATAL_FAILURE(load());
    screen().focus(window);
    const WindowId list = list_with("LINE0");
    ASSERT_TRUE(says(list, "HOSTLINE", "Active"));
    ASSERT_TRUE(screen().click(list, "HOSTLINE"));
    screen().key("plus"); // its LUs
    ASSERT_TRUE(says(list, "CLM001", "Ready for logon"));
    ASSERT_TRUE(screen().click(window, "Stop"));
    WindowId dialog = dialog_with("Sessions that end:");
    press(dialog, "Stop");
    EXPECT_TRUE(says(list, "HOSTLINE", "Inactive"));
    EXPECT_TRUE(says(list, "CLM001", "Inactive"));

    ASSERT_TRUE(screen().click(window, "Start"));
    ASSERT_NE(dialog = dialog_with("Start the PU as well"), 0u);
    screen().focus(dialog);
    screen().key("Return");
    EXPECT_TRUE(says(list, "HOSTLINE", "Active"));
    EXPECT_TRUE(says(list, "CLM001", "Ready for logon"));

    screen().focus(window);
    ASSERT_TRUE(screen().click(list, "LINE0")); // the port under it
    ASSERT_TRUE(screen().click(window, "Stop"));
    press(dialog_with("port LINE0"), "Stop");
    EXPECT_TRUE(says(list, "LINE0", "Inactive"));
    EXPECT_TRUE(says(list, "HOSTLINE", "Inactive"));

    ASSERT_TRUE(screen().click(list, "ETH1")); // its DLC is not active either
    ASSERT_TRUE(screen().click(window, "Start"));
    EXPECT_TRUE(says(list, "ETH1", "Active"));
}

} // namespace sys
