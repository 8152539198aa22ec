// Start-up without one of the files that it needs, or with them in a language's folder.
#include "system_test.h"

#include <algorithm>

namespace sys {

namespace {

constexpr char catalogue[] = "lib/nls/msg/C/sna.cat";
constexpr char dialogs[] = "lib/X11/uid/Quiladmin/quildlg.uid";
constexpr char icons[] = "lib/X11/uid/Quiladmin/icons.uid";
constexpr char big_icons[] = "lib/X11/uid/Quiladmin/iconsbig.uid";
constexpr char without_catalogue[] = "Unable to start the SNA admin tool - please check error log";

} // namespace

class MissingFiles : public SystemTest {
protected:
    /* It cannot start, says so in these words, and the log has one problem: this. */
    void expect_no_start(const std::vector<std::string> &arguments, const std::string &words,
                         const std::string &problem) {
        place.write("var/log/sna.err", "");
        Process &program = start_program(arguments);
        expect_end(program, 165);
        EXPECT_EQ(program.out(), "");
        // The toolkit may have its own say before.
        const std::string err = program.err();
        const std::string where = message(1121, {place.prefix(), place.path("var/log/sna.err")});
        EXPECT_TRUE(err.ends_with(words + "\n" + where + "\n")) << err;
        EXPECT_EQ(flat(err).find(message(208)), std::string::npos) << "a second reason";
        const std::vector<std::string> log = place.log("quiladmin");
        EXPECT_EQ(std::count_if(log.begin(), log.end(),
                                [&problem](const std::string &line) {
                                    return line.find(" problem " + problem + ":") !=
                                           std::string::npos;
                                }),
                  1)
            << problem;
        EXPECT_EQ(log.size(), 1u) << "one reason only";
    }

    void move(const std::string &from, const std::string &to) {
        place.write(to, place.read(from));
        place.remove(from);
    }
};

TEST_F(MissingFiles, ItSaysWhichAndDoesNotStart) {
    const struct {
        std::vector<std::string> files, arguments;
        std::string words, problem;
    } rows[] = {
        {{catalogue}, {}, without_catalogue, "0x40020005 detail 3"},
        {{catalogue}, {"-h"}, without_catalogue, "0x40020005 detail 0"},
        {{dialogs}, {}, message(603), "0x40020006 detail 0"},
        {{icons, big_icons}, {}, message(603), "0x40020006 detail 1"},
        {{icons, big_icons}, {"-size", "small"}, message(603), "0x40020006 detail 1"},
    };
    for (const auto &row : rows) {
        std::vector<std::string> kept;
        for (const std::string &file : row.files) {
            kept.push_back(place.read(file));
            place.remove(file);
        }
        expect_no_start(row.arguments, row.words, row.problem);
        for (const std::string &file : row.files) {
            place.write(file, "this is no such file\n");
        }
        if (row.arguments.empty()) {
            expect_no_start({}, row.words, row.problem);
        }
        for (size_t at = 0; at < kept.size(); at++) {
            place.remove(row.files[at]);
            place.write(row.files[at], kept[at]);
        }
    }
}

TEST_F(MissingFiles, WithoutBigIconsTheSmallOnesServe) {
    start_node();
    place.remove(big_icons);
    for (const bool asked_for : {false, true}) {
        Process &program = start_program(asked_for ? std::vector<std::string>{"-size", "big"}
                                                   : std::vector<std::string>{});
        const WindowId window = loaded_window();
        ASSERT_NE(window, 0u);
        close_window(window);
        expect_end(program, 0);
        EXPECT_EQ(flat(program.err()).find(message(610)) != std::string::npos, asked_for);
    }
}

TEST_F(MissingFiles, TheLanguageIsTheFirstFiveCharacters) {
    start_node();
    move(catalogue, "lib/nls/msg/en_US/sna.cat");
    for (const std::string name : {"quildlg.uid", "icons.uid", "iconsbig.uid", "cursor.uid"}) {
        move("lib/X11/uid/Quiladmin/" + name, "lib/X11/en_US/uid/Quiladmin/" + name);
    }
    Process &program = start_program({}, {{"LANG", "en_US.UTF-8"}});
    const WindowId window = loaded_window();
    ASSERT_NE(window, 0u);
    close_window(window);
    expect_end(program, 0);

    move("lib/nls/msg/en_US/sna.cat", "lib/nls/msg/ja_JP/sna.cat");
    expect_end(start_program({"-h"}, {{"LANG", "Ja_JP.SJIS"}, {"LC_CTYPE", "C"}}), 0);
    Process &without = start_program({"-h"}, {{"LANG", "en_US.UTF-8"}});
    expect_end(without, 165);
    EXPECT_EQ(without.err().rfind(without_catalogue, 0), 0u) << without.err();
}

} // namespace sys
