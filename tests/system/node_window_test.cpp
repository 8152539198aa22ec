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

} // namespace sys
