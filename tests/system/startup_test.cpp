// Start-up from what users, sites and machines get wrong: resources, locale, home folder, screen.
#include "system_test.h"

#include <X11/Xlib.h>
#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace sys {

namespace fs = std::filesystem;

namespace {

constexpr char user_file[] = "home/.quilrc";
constexpr char application_defaults[] = "lib/X11/app-defaults/Quiladmin";

bool warns(const std::string &err, int number) {
    return flat(err).find(message(number)) != std::string::npos;
}

} // namespace

class StartUp : public SystemTest {
protected:
    /* Starts the program, sees the whole domain, and ends it in order.  Returns what it wrote on
     * standard error. */
    std::string run(const std::vector<std::string> &arguments = {}, const Environment &with = {}) {
        return run(start_program(arguments, with));
    }

    std::string run(Process &program) {
        const WindowId window = loaded_window();
        EXPECT_NE(window, 0u);
        if (window == 0) {
            return program.err();
        }
        return run_to_end(program, window);
    }

    std::string run_to_end(Process &program, WindowId window) {
        EXPECT_TRUE(wait_for([&] { return screen().window_with(window, "DLUR") != 0; }));
        close_window(window);
        expect_end(program, 0);
        return program.err();
    }

    /* The user's resources, with these lines before the test's own. */
    void resources(const std::string &lines) { place.write(user_file, lines + "\n" + own_); }

    /* A file of the installation in place of the link to the built one. */
    void replace(const std::string &name, const std::string &text) {
        place.remove(name);
        place.write(name, text);
    }

    std::string own_ = place.read(user_file);
};

TEST_F(StartUp, AMalformedUserFileIsReadAsFarAsItGoes) {
    start_node();
    std::string noise;
    for (int byte = 255; byte > 0; byte--) {
        noise += static_cast<char>(byte);
    }
    for (const std::string &lines :
         {noise, std::string("no colon\n::::\nQuiladmin*\n*: \n?.?: x\n#include \"nowhere\""),
          "Quiladmin*size" + std::string(100000, 'x') + ": small",
          std::string("#include \"") + place.path(user_file) + "\""}) {
        resources(lines);
        EXPECT_EQ(run(), "") << lines.substr(0, 60);
    }
}

TEST_F(StartUp, WithoutAUserFileThatCanBeReadTheDefaultsHold) {
    start_node();
    place.remove(user_file);
    EXPECT_EQ(run(), "");
    fs::create_directory(place.path(user_file));
    EXPECT_EQ(run(), "");
    fs::remove(place.path(user_file));
    const std::string far(400, 'h');
    EXPECT_EQ(run({}, {{"HOME", "/" + far}}), "");
    EXPECT_EQ(run({}, {{"HOME", ""}}), "");

    Command homeless = {{place.path("bin/quiladmin")}, place.environment()};
    homeless.environment.erase("HOME");
    homeless.environment["DISPLAY"] = screen().name();
    Process program(homeless);
    EXPECT_EQ(run(program), "");
}

/* 300 bytes hold the path of the user's file whole; one more, and it is not looked for. */
TEST_F(StartUp, AHomeFolderIsUsedUpToItsLimit) {
    start_node();
    constexpr size_t longest = 300 - (sizeof "/.quilrc" - 1);
    for (const size_t length : {longest - 1, longest, longest + 1}) {
        std::string home = place.path("home/");
        while (home.size() < length) {
            home += home.size() % 100 == 0 && home.size() + 1 < length ? '/' : 'h';
        }
        fs::create_directories(home);
        fs::copy_file(place.write("home/medium", "Quiladmin*size: medium\n" + own_),
                      home + "/.quilrc");
        const std::string err = run({}, {{"HOME", home}});
        EXPECT_EQ(warns(err, 611), length <= longest) << length << ": " << err;
    }
}

/* The user's file counts before the application defaults, whose size does not exist. */
TEST_F(StartUp, WhatIsWrongIsToldOfTheSourceThatCounts) {
    start_node();
    replace(application_defaults, "Quiladmin*size: medium\n" + place.read(application_defaults));
    const std::string small = "Quiladmin*size: small\n";
    const struct {
        std::string lines;
        int warning; // 0: none
    } rows[] = {
        {"", 611},
        {small, 0},
        {"Quiladmin*size: Small", 611},
        {small + "Quiladmin.iconSize: huge", 610},
        {small + "Quiladmin.iconSize: ../../../..", 610},
        {small + "Quiladmin*fontName: -nobody-nothing-*", 1439},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.lines);
        resources(row.lines);
        const std::string err = run();
        EXPECT_TRUE(row.warning == 0 ? err.empty() : warns(err, row.warning)) << err;
    }
    replace(application_defaults, "");
    resources("");
    EXPECT_EQ(run(), "") << "it needs the application defaults";
}

/* Neither another installation is used nor a folder made. */
TEST_F(StartUp, APrefixThatCannotBeUsedIsRefused) {
    for (const std::string &prefix :
         {std::string("relative"), place.path("missing"), place.path(user_file)}) {
        for (const bool node : {false, true}) {
            Command command = {
                {place.path(node ? "bin/snanode" : "bin/quiladmin"), node ? "--help" : "-h"},
                place.environment()};
            command.environment["SNA_PREFIX"] = prefix;
            Process program(command);
            expect_end(program, node ? 1 : 165);
            EXPECT_NE(program.err().find('"' + prefix + '"'), std::string::npos) << program.err();
            EXPECT_EQ(program.out(), "");
        }
    }
    EXPECT_FALSE(fs::exists(place.path("missing")));
}

TEST_F(StartUp, ColoursThatDoNotExistAreTold) {
    start_node();
    resources("Quiladmin*background: no such colour\nQuiladmin*foreground: #12345\n"
              "*XmText.background: #GGGGGG\nQuiladmin.dialogBackground: mauvish\n"
              "Quiladmin*highlightColor: red\nOther*background: not our own");
    const std::string err = run();
    for (const std::string colour : {"no such colour", "#12345", "#GGGGGG", "mauvish"}) {
        EXPECT_NE(err.find('"' + colour + '"'), std::string::npos) << colour << ": " << err;
    }
    EXPECT_EQ(err.find("red"), std::string::npos) << err;
    EXPECT_EQ(err.find("our own"), std::string::npos) << err;
    resources("");
    EXPECT_NE(run({"-xrm", "*background: no such colour"}).find("\"no such colour\""),
              std::string::npos);
}

/* A look is a file of application defaults: this one asks for a size that does not exist. */
TEST_F(StartUp, ALookIsChosenByTheUserFileAndForOneRun) {
    start_node();
    place.write("lib/X11/app-defaults/Quiladmin-odd",
                "#include \"Quiladmin\"\nQuiladmin*size: medium\n");
    resources("Quiladmin*customization: -odd");
    EXPECT_TRUE(warns(run(), 611));
    EXPECT_EQ(run({"-xrm", "*customization: -dark"}), "");
    resources("");
    EXPECT_TRUE(warns(run({"-xrm", "*customization: -odd"}), 611));
}

TEST_F(StartUp, LocalesThatDoNotExistLeaveEnglishTexts) {
    start_node();
    for (const Environment &with :
         {Environment{{"LANG", "xx_YY.UTF-8"}}, Environment{{"LANG", "C.UTF-8"}},
          Environment{{"LANG", ""}}, Environment{{"LC_ALL", "xx_YY.ISO8859-1"}},
          Environment{{"LC_CTYPE", "xx_YY"}}, Environment{{"LANG", std::string(1000, 'x')}},
          Environment{{"LANG", "../.."}}}) {
        SCOPED_TRACE(with.begin()->first + "=" + with.begin()->second);
        const std::string err = run({}, with);
        EXPECT_EQ(err.find("AddressSanitizer"), std::string::npos) << err;
        const std::string lang = with.contains("LANG") ? with.at("LANG") : "";
        if (lang.size() > 5) {
            EXPECT_EQ(err, "") << "the operator has not cut it";
        }
    }
}

/* The page that the menu entry names is one of the installation that runs. */
TEST_F(StartUp, TheBrowserIsGivenAPageThatIsThere) {
    start_node();
    const std::string mark = place.path("home/mark");
    resources("Quiladmin*webBrowser: echo >" + mark);
    Process &program = start_program({}, {{"PATH", "/usr/bin:/bin"}});
    const WindowId window = loaded_window();
    ASSERT_TRUE(window != 0 && wait_for([&] { return screen().click(window, "Help"); }));
    ASSERT_TRUE(wait_for([&] {
        const std::vector<WindowId> all = screen().windows();
        return std::any_of(all.begin(), all.end(), [&](WindowId menu) {
            return menu != window && screen().click(menu, "On the web");
        });
    }));
    EXPECT_TRUE(wait_for([&] { return place.read("home/mark").ends_with("\n"); }));
    const std::string page = "share/doc/quiladmin/index.html";
    EXPECT_EQ(flat(place.read("home/mark")), "file://" + place.path(page));
    EXPECT_NE(place.read(page).find("</html>"), std::string::npos);
    EXPECT_NE(place.read("share/doc/quiladmin/support.html").find("</html>"), std::string::npos);
    close_window(window);
    expect_end(program, 0);
}

/* On servers of other sizes than usual: a server program before the usual one in PATH gives the
 * size the last word. */
class SmallScreen : public StartUp {
protected:
    void use_screen_of(const std::string &geometry) {
        const std::string server =
            place.write("tools/Xvfb", "#!/bin/sh\nPATH=" + path_ + "\nexec Xvfb \"$@\" -screen 0 " +
                                          geometry + "\n");
        fs::permissions(server, fs::perms(0755));
        setenv("PATH", (place.path("tools") + ":" + path_).c_str(), 1);
        EXPECT_FALSE(screen().name().empty());
        setenv("PATH", path_.c_str(), 1);
    }

private:
    const std::string path_ = getenv("PATH") != nullptr ? getenv("PATH") : "/usr/bin:/bin";
};

/* The panes' lists show two lines each, on which the operator can click, on screens of all sizes
 * and dots an inch. */
class AnyScreen : public SmallScreen, public testing::WithParamInterface<const char *> {};
INSTANTIATE_TEST_SUITE_P(Sizes, AnyScreen,
                         testing::Values("640x400x24", "800x600x24 -dpi 144",
                                         "1024x768x24 -dpi 192", "3840x2160x24 -dpi 192"));

TEST_P(AnyScreen, EveryListHasTwoLines) {
    use_screen_of(GetParam());
    start_node();
    start_program();
    const WindowId window = loaded_window();
    ASSERT_NE(window, 0u);
    for (const char *line : {"DLUR", "DLURPU1", "CLAIMS", "CORVID1", "NETA.NORTH"}) {
        EXPECT_TRUE(wait_for([&] { return screen().window_with(window, line) != 0; })) << line;
        EXPECT_TRUE(screen().click(window, line)) << line;
    }
}

/* It comes up on the screen and not beyond.  Letters with sharp edges are drawn dot by dot, which
 * the canvas does not read. */
TEST_F(SmallScreen, LowAndWithFewColours) {
    use_screen_of("800x480x8");
    start_node();
    Process &program = start_program();
    const WindowId window = loaded_window();
    ASSERT_NE(window, 0u);
    Display *display = XOpenDisplay(screen().name().c_str());
    ASSERT_NE(display, nullptr);
    XWindowAttributes place_of = {};
    XGetWindowAttributes(display, window, &place_of);
    EXPECT_LE(place_of.width, DisplayWidth(display, 0));
    EXPECT_LE(place_of.height, DisplayHeight(display, 0));
    XCloseDisplay(display);
    screen().ask_to_close(window);
    WindowId question = 0;
    ASSERT_TRUE(wait_for([&] { return (question = screen().find(message(185))) != 0; }));
    screen().focus(question);
    screen().key("Return");
    expect_end(program, 0);
}

} // namespace sys
