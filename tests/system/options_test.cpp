// The command line: what is printed, the exit status, what an option changes.
#include "system_test.h"

namespace sys {

class Options : public SystemTest {
protected:
    /* What it printed, and that it ended with the status and no other words. */
    std::string run(const std::vector<std::string> &arguments, int status) {
        Process &program = start_program(arguments);
        expect_end(program, status);
        EXPECT_EQ(program.err(), "");
        return program.out();
    }

    std::string usage_text() const {
        return message(609, {SYSTEM_VERSION, place.path("var/log/sna.err")});
    }

    /* Pixels from line to line in the lists of a program with these arguments. */
    int distance_of_lines(const std::vector<std::string> &arguments, std::string &err) {
        Process &program = start_program(arguments);
        const WindowId window = loaded_window();
        int distance = 0;
        EXPECT_TRUE(wait_for([&] {
            const auto texts = screen().canvas().texts(screen().window_with(window, "ETH0"));
            for (size_t at = 1; at < texts.size() && distance == 0; at++) {
                distance = texts[at].y - texts[at - 1].y;
            }
            return distance != 0;
        }));
        close_window(window);
        expect_end(program, 0);
        err = program.err();
        return distance;
    }
};

TEST_F(Options, HelpIsTheUsageTextWithVersionAndLog) {
    const std::string usage = run({"-h"}, 0);
    EXPECT_EQ(flat(usage), usage_text());
    EXPECT_EQ(usage.rfind("quiladmin ", 0), 0u) << usage;
    EXPECT_NE(usage.find(place.path("var/log/sna.err")), std::string::npos) << usage;
    EXPECT_EQ(run({"-size", "small", "-x", "-h"}, 0), usage);
    EXPECT_EQ(run({"-help"}, 33), usage);
    EXPECT_EQ(run({"-?"}, 33), usage);
}

TEST_F(Options, AnUnknownArgumentIsNamed) {
    for (const std::string argument : {"-x", "100%d", "-H", "--help", "--version"}) {
        const std::string out = run({argument}, 33);
        EXPECT_EQ(flat(out), message(599, {argument}) + " " + usage_text());
    }
    EXPECT_EQ(flat(run({"-size"}, 33)), message(1120, {"-size"}) + " " + usage_text());
    const std::string out = run({"-xrm", "*a: b", "first", "second"}, 33);
    EXPECT_EQ(split_lines(out).front(), message(599, {"first"}));
}

TEST_F(Options, SizeChoosesIconsAndFont) {
    start_node();
    std::string err;
    const int usual = distance_of_lines({}, err);
    EXPECT_EQ(err, "");
    const int small = distance_of_lines({"-size", "small"}, err);
    EXPECT_EQ(err, "");
    EXPECT_LT(small, usual);
    EXPECT_EQ(distance_of_lines({"-size", "big"}, err), usual);
    EXPECT_EQ(err, "");
    EXPECT_EQ(distance_of_lines({"-size", "medium"}, err), usual);
    EXPECT_NE(flat(err).find(message(611)), std::string::npos) << err;
    place.write("home/.quilrc", "Quiladmin*size: small\n" + place.read("home/.quilrc"));
    EXPECT_EQ(distance_of_lines({}, err), small);
}

/* The first window is as large and where it was asked for, by argument and by the user's file. */
TEST_F(Options, TheGeometryIsThatOfTheFirstWindow) {
    start_node("branch");
    for (const bool by_file : {false, true}) {
        if (by_file) {
            place.write("home/.quilrc", "quiladmin.geometry: 711x503+17+23\n");
        }
        using Words = std::vector<std::string>;
        Process &program = start_program(by_file ? Words{} : Words{"-geometry", "711x503+17+23"});
        const WindowId window = domain_window();
        ASSERT_NE(window, 0U);
        EXPECT_EQ(screen().width(window), 711);
        EXPECT_EQ(screen().top(window), 23);
        EXPECT_NE(screen().width(open_node("harbour")), 711) << "others have their own";
        close_window(window);
        expect_end(program, 0);
    }
}

} // namespace sys
