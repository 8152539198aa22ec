// What is defined outlives the node software.
#include "system_test.h"

namespace sys {

class Restart : public SystemTest {
protected:
    static std::string domain(const std::string &more) {
        return "[domain]\nname = kept\n[node lonely]\nfq_cp_name = NETA.LONELY\ncp_alias = LONELY\n"
               "dlur_support = no\n"
               "[dlc LAN0]\ndlc_type = ethernet\n"
               "[port ETH0]\ndlc_name = LAN0\ndescription = Office LAN\n" +
               more;
    }

    /* The ports and local LUs that a program shows from its start to its end. */
    std::vector<std::string> shown() {
        Process &program = start_program({"-size", "small"});
        const WindowId window = loaded_window("lonely");
        EXPECT_NE(window, 0u);
        std::vector<std::string> names;
        for (const std::string first : {"ETH", "LONELY"}) {
            WindowId list = 0;
            EXPECT_TRUE(
                wait_for([&] { return (list = screen().window_with(window, first)) != 0; }));
            const std::vector<std::string> some = first_words(screen().canvas().lines(list));
            names.insert(names.end(), some.begin(), some.end());
        }
        close_window(window);
        expect_end(program, 0);
        return names;
    }
};

TEST_F(Restart, WhatIsStoredOutlivesAKill) {
    const std::string text =
        place.write("kept.domain",
                    domain("[port ETH9]\ndlc_name = LAN0\n[local_lu PAYLU]\nlu_alias = PAYROLL\n"));
    Process &node = start_node(text);
    const std::vector<std::string> before = shown();
    EXPECT_EQ(before, (std::vector<std::string>{"ETH0", "ETH9", "LONELY", "PAYROLL"}));
    node.kill_all();
    ASSERT_TRUE(node.wait_end());

    // The text is read at the first start only.
    place.write("kept.domain", domain("[port ETH5]\ndlc_name = LAN0\n"));
    start_node(text);
    EXPECT_EQ(shown(), before);
    stop_node();
    start_node(text, "", {"--fresh"});
    EXPECT_EQ(shown(), (std::vector<std::string>{"ETH0", "ETH5", "LONELY"}));
}

TEST_F(Restart, TheModeOfADialogIsKnownToAllAndOutlivesTheNode) {
    const std::string text = place.write("kept.domain", domain(""));
    Process &node = start_node(text);
    Process &other = start_program();
    const WindowId others_window = loaded_window("lonely");
    ASSERT_NE(others_window, 0u);
    Process &author = start_program();
    const auto knows_it = [this](WindowId window, Process &program) {
        close_window(window);
        expect_end(program, 0);
        const std::vector<std::string> lines = known();
        return std::any_of(lines.begin(), lines.end(), [](const std::string &line) {
            return line.find("NEWMODE") != std::string::npos;
        });
    };

    WindowId window = 0;
    ASSERT_TRUE(wait_for([&] {
        for (const WindowId one : screen().windows()) {
            window = one != others_window && screen().window_with(one, "ETH0") != 0 ? one : window;
        }
        return window != 0;
    }));
    WindowId dialog = 0;
    const auto find_dialog = [&] {
        return (dialog = screen().find(message(801, {"Mode", "lonely"}))) != 0;
    };
    ASSERT_TRUE(wait_for([&] { // the menu is off until all is read
        screen().raise(window);
        screen().focus(window);
        for (const std::string key : {"Escape", "F10", "a", "o"}) {
            screen().key(key);
        }
        return wait_for(find_dialog, 500);
    }));
    screen().raise(dialog);
    ASSERT_TRUE(wait_for([&] { // the menu that goes gives the keyboard back, too
        screen().focus(dialog);
        screen().key("n");
        return screen().window_with(dialog, "N") != 0;
    }));
    for (int count = 0; count < 8; count++) {
        screen().key("BackSpace");
    }
    for (const std::string key : {"n", "e", "w", "m", "o", "d", "e", "Tab", "Tab", "numbersign",
                                  "i", "n", "t", "e", "r", "Return"}) {
        screen().key(key);
    }
    EXPECT_TRUE(wait_for([&] {
        return screen().text(dialog).find(message(804, {"NEWMODE"})) != std::string::npos;
    })) << screen().text(dialog);
    screen().ask_to_close(dialog);
    EXPECT_TRUE(knows_it(window, author));
    screen().raise(others_window);
    EXPECT_TRUE(knows_it(others_window, other)) << "it was told";

    node.kill_all();
    ASSERT_TRUE(node.wait_end());
    start_node(text);
    Process &later = start_program();
    EXPECT_TRUE(knows_it(loaded_window("lonely"), later));
}

} // namespace sys
