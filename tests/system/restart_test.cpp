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

} // namespace sys
