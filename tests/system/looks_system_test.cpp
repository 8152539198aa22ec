// The looks that an operator can choose, seen on the screen of the whole program.
#include "system_test.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <cstdlib>
#include <filesystem>
#include <memory>

namespace sys {

namespace fs = std::filesystem;

class ChosenLooks : public SystemTest {
protected:
    using Connection = std::unique_ptr<Display, int (*)(Display *)>;
    Connection connect() { return {XOpenDisplay(screen().name().c_str()), XCloseDisplay}; }

    /* The value of a pixel of the message line's edge, which has no text. */
    unsigned long bar_pixel(WindowId window) {
        const Connection display = connect();
        XWindowAttributes place = {};
        XGetWindowAttributes(display.get(), window, &place);
        XImage *image = XGetImage(display.get(), window, place.width / 2, place.height - 2, 1, 1,
                                  AllPlanes, ZPixmap);
        const unsigned long pixel = image != nullptr ? XGetPixel(image, 0, 0) : ~0UL;
        if (image != nullptr) {
            XDestroyImage(image);
        }
        return pixel;
    }

    /* What a file of application defaults says that it should be. */
    unsigned long bar_colour(const std::string &look) {
        const std::string text = place.read("lib/X11/app-defaults/Quiladmin" + look);
        const std::string name = "*nodewMessageBar.background: #";
        const size_t at = text.find(name);
        EXPECT_NE(at, std::string::npos) << look;
        return std::stoul(text.substr(at + name.size(), 6), nullptr, 16);
    }

    std::string utf8_title(WindowId window) {
        const Connection display = connect();
        Atom type;
        int format;
        unsigned long count = 0, left;
        unsigned char *text = nullptr;
        XGetWindowProperty(display.get(), window, XInternAtom(display.get(), "_NET_WM_NAME", False),
                           0, 100, False, XInternAtom(display.get(), "UTF8_STRING", False), &type,
                           &format, &count, &left, &text);
        const std::string title(reinterpret_cast<char *>(text), text != nullptr ? count : 0);
        XFree(text);
        return title;
    }
};

/* The user's own file chooses; one run can choose otherwise; a look that does not exist is the
 * ordinary one. */
TEST_F(ChosenLooks, ByTheUsersFileAndForOneRun) {
    start_node();
    const std::string fonts = place.read("home/.quilrc");
    const struct {
        std::string file, run, look;
    } rows[] = {
        {"", "", ""},
        {"Quiladmin*customization: -dark\n", "", "-dark"},
        {"Quiladmin.customization: -contrast\n", "", "-contrast"},
        {"", "*customization: -dark", "-dark"},
        {"Quiladmin*customization: -dark\n", "*customization: -contrast", "-contrast"},
        {"Quiladmin*customization: -nobody\n", "", ""},
        {"Quiladmin*customization: " + std::string(5000, '-') + "\n", "", ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.file.substr(0, 60) + row.run);
        place.write("home/.quilrc", row.file + fonts);
        std::vector<std::string> arguments;
        if (!row.run.empty()) {
            arguments = {"-xrm", row.run};
        }
        Process &program = start_program(arguments);
        const WindowId window = loaded_window();
        ASSERT_NE(window, 0U);
        const unsigned long wanted = bar_colour(row.look);
        EXPECT_TRUE(wait_for([&] { return bar_pixel(window) == wanted; }, 5000));
        close_window(window);
        expect_end(program, 0);
        EXPECT_EQ(program.err(), "");
    }
}

/* LANG is cut to five characters; where that names a locale of characters of several bytes, texts
 * are in those.  The locale is one that Xlib knows by such a name; its translation is the one that
 * the build makes. */
TEST_F(ChosenLooks, ALocaleOfFiveCharactersCanBeMultiByte) {
    const std::string locales = place.path("locales");
    fs::create_directories(locales);
    const std::string make = "localedef -i en_US -f UTF-8 " + locales +
                             "/bn_IN >/dev/null 2>&1; test -d " + locales + "/bn_IN";
    ASSERT_EQ(std::system(make.c_str()), 0) << "localedef (packages libc-bin and locales)";
    fs::create_symlink(place.path("lib/nls/msg/xx_XX"), place.path("lib/nls/msg/bn_IN"));
    fs::create_symlink(place.path("lib/X11/xx_XX"), place.path("lib/X11/bn_IN"));
    start_node();
    place.remove("home/.quilrc"); // its fonts have no accents
    Process &program = start_program({}, {{"LANG", "bn_IN.UTF-8"}, {"LOCPATH", locales}});
    const std::string title = "[corvid1 - SÑÁ ñödé ádmíñístrátíöñ";
    EXPECT_TRUE(wait_for([&] {
        for (const WindowId window : screen().windows()) {
            if (utf8_title(window).rfind(title, 0) == 0) {
                return true;
            }
        }
        return false;
    }));
    program.kill_all();
    program.wait_end();
    EXPECT_EQ(program.err(), "");
}

} // namespace sys
