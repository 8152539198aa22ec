// Colours that are worked out against those that the server gives: a colormap of the test's own is
// not the one that the program knows, so what concerns it is asked.
#include "gui_support.h"

#include "colours.h"
#include <random>

namespace {

TEST(Colours, AreThoseOfTheServer) {
    gui::open();
    Visual *const visual = DefaultVisualOfScreen(gvga_screen);
    ASSERT_EQ(visual->c_class, TrueColor);
    const Colormap own = XCreateColormap(gvga_display, gvga_root_window, visual, AllocNone);
    const Colormap shared = DefaultColormapOfScreen(gvga_screen);
    vga_work_out_colours(gvga_display, gvga_screen);
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto intensity = [&random]() -> unsigned short {
        const unsigned short ends[] = {0, 65535, 127, 128, 65407, 65408};
        return random() % 4 == 0 ? ends[random() % 6] : static_cast<unsigned short>(random());
    };
    const unsigned long before = NextRequest(gvga_display);
    for (int round = 0; round < 2000; round++) {
        XColor given = {};
        given.red = intensity();
        given.green = intensity();
        given.blue = intensity();
        XColor asked = given;
        ASSERT_NE(XAllocColor(gvga_display, shared, &given), 0);
        ASSERT_NE(XAllocColor(gvga_display, own, &asked), 0);
        ASSERT_EQ(given.pixel, asked.pixel);
        for (XColor *colour : {&given, &asked}) {
            colour->red = colour->green = colour->blue = 1;
        }
        XQueryColor(gvga_display, shared, &given);
        XQueryColors(gvga_display, own, &asked, 1);
        ASSERT_EQ(given.red, asked.red);
        ASSERT_EQ(given.green, asked.green);
        ASSERT_EQ(given.blue, asked.blue);
    }
    EXPECT_EQ(NextRequest(gvga_display) - before, 4000U) << "the shared colormap was asked";
    XFreeColormap(gvga_display, own);
}

} // namespace
