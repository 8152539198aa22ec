// The drawing set-up: which icons and fonts are chosen, what is said when they are missing, and the
// sizes that lists are drawn with.
#include "gui_support.h"

#include "vgadgutl.h"
#include "vgagraph.h"
#include "vgamsgs.h"
#include <Xm/Label.h>
#include <cstdlib>

VGA_UID_TABLE gvga_uid_desc; // no windows here

namespace {

int real_depth; /* while the screen pretends to have one plane */

} // namespace

extern "C" {
Cardinal __real_MrmFetchIconLiteral(MrmHierarchy, String, Screen *, Display *, Pixel, Pixel,
                                    Pixmap *);
Cardinal __wrap_MrmFetchIconLiteral(MrmHierarchy, String, Screen *, Display *, Pixel, Pixel,
                                    Pixmap *);
}

/* Pixmaps have the depth that the server knows. */
Cardinal __wrap_MrmFetchIconLiteral(MrmHierarchy file, String name, Screen *screen,
                                    Display *display, Pixel foreground, Pixel background,
                                    Pixmap *pixmap) {
    const int depth = screen->root_depth;
    screen->root_depth = real_depth != 0 ? real_depth : depth;
    const Cardinal status =
        __real_MrmFetchIconLiteral(file, name, screen, display, foreground, background, pixmap);
    screen->root_depth = depth;
    return status;
}

namespace {

const VGA_MESSAGE warnings[] = {
    VGA_MSG_NO_BIG_ICONS, VGA_MSG_BAD_SIZE,  VGA_MSG_FONT_NOT_FOUND,
    VGA_MSG_FONT_PARTIAL, VGA_MSG_FONT_NONE, VGA_MSG_FONT_DEFAULT_PARTIAL,
};
const std::string warning_texts[] = {"610", "611", "1439", "1442", "1444", "1443"};

constexpr char small_font[] = "-misc-fixed-medium-r-semicondensed--13-*-*-*-*-*-*-*";
constexpr char big_font[] = "-misc-fixed-medium-r-normal--18-*-*-*-*-*-*-*";

class Graphics : public testing::Test {
protected:
    void SetUp() override {
        gui::open();
        for (size_t i = 0; i < std::size(warnings); ++i) {
            gvga_messages[warnings[i]] = warning_texts[i].c_str();
        }
        gvga_messages[VGA_MSG_SMALL_FONT] = small_font;
        gvga_messages[VGA_MSG_BIG_FONT] = big_font;
        gvga_messages[VGA_MSG_BIG_SUFFIX] = "big";
        shared = gvga_resource_database;
        gvga_resource_database = nullptr; // the resources of one test
        shell = gui::make_shell("graphics", 0, 0, 100, 100);
        label = XtVaCreateManagedWidget("label", xmLabelWidgetClass, shell, nullptr);
        gui::show(shell);
    }
    void TearDown() override {
        vga_free_graphics();
        XtDestroyWidget(shell);
        XrmDestroyDatabase(gvga_resource_database);
        gvga_resource_database = shared;
        gvga_exit_code = 0;
    }

    static void resource(const char *name, const char *value) {
        XrmPutStringResource(&gvga_resource_database, name, value);
    }

    static unsigned long corner(Pixmap pixmap, bool far) {
        const int x = far ? static_cast<int>(gvga_viewer_expand_icon_width) - 1 : 0;
        const int y = far ? static_cast<int>(gvga_viewer_expand_icon_height) - 1 : 0;
        XImage *image = XGetImage(gvga_display, pixmap, x, y, 1, 1, AllPlanes, ZPixmap);
        const unsigned long pixel = XGetPixel(image, 0, 0);
        XDestroyImage(image);
        return pixel;
    }

    static std::string picture_of(Pixmap pixmap) {
        Window root;
        int x, y;
        unsigned width, height, border, depth;
        XGetGeometry(gvga_display, pixmap, &root, &x, &y, &width, &height, &border, &depth);
        XImage *image = XGetImage(gvga_display, pixmap, 0, 0, width, height, AllPlanes, ZPixmap);
        const std::string picture(image->data, static_cast<size_t>(image->bytes_per_line) * height);
        XDestroyImage(image);
        return picture;
    }

    Widget shell = nullptr, label = nullptr;
    XrmDatabase shared = nullptr;
};

TEST_F(Graphics, SizeComesFromTheScreenUnlessTheUserChoseOne) {
    struct CASE {
        const char *size, *icon_size;
        NB_ULONG icon, character;
        std::vector<std::string> said;
    } const cases[] = {
        {nullptr, nullptr, 28, 9, {}}, // the screen is wider than 1024
        {"small", nullptr, 20, 6, {}},       {"big", nullptr, 28, 9, {}},
        {"medium", nullptr, 28, 9, {"611"}}, {"small", "big", 28, 6, {}},
        {nullptr, "huge", 20, 9, {"610"}},
    };
    for (const CASE &example : cases) {
        SCOPED_TRACE(&example - cases);
        XrmDestroyDatabase(gvga_resource_database);
        gvga_resource_database = nullptr;
        if (example.size != nullptr) {
            resource("Quiladmin*size", example.size);
        }
        if (example.icon_size != nullptr) {
            resource("Quiladmin.iconSize", example.icon_size);
        }
        const gui::WARNINGS said;
        ASSERT_EQ(vga_init_graphics(label, label), 1);
        EXPECT_EQ(gvga_viewer_icon_width, example.icon);
        EXPECT_EQ(gvga_viewer_char_width, example.character);
        EXPECT_EQ(gui::WARNINGS::texts, example.said);
        EXPECT_GE(gvga_viewer_item_height, gvga_viewer_icon_height);
        for (int icon = 0; icon < VGA_ICON_COUNT; ++icon) {
            EXPECT_NE(gvga_pixmaps[icon], 0U) << gvga_pixmap_names[icon];
            EXPECT_NE(gvga_inverted_pixmaps[icon], 0U) << gvga_pixmap_names[icon];
        }
        vga_free_graphics();
        EXPECT_EQ(gvga_pixmaps[84], 0U);
    }
}

TEST_F(Graphics, ExpandIconsAreBevelledInTheColoursOfTheWindow) {
    ASSERT_EQ(vga_init_graphics(label, label), 1);
    Pixel background, foreground, top, bottom, select;
    Colormap colours;
    XtVaGetValues(label, XmNbackground, &background, XmNcolormap, &colours, nullptr);
    XmGetColors(gvga_screen, colours, background, &foreground, &top, &bottom, &select);
    for (const Pixmap *pixmaps : {gvga_pixmaps, gvga_inverted_pixmaps}) {
        for (const int icon : {VGA_ICON_PLUS, VGA_ICON_MINUS}) {
            EXPECT_EQ(corner(pixmaps[icon], false), top);
            EXPECT_EQ(corner(pixmaps[icon], true), bottom);
        }
    }
}

/* On a display of one plane whose black is the foreground, the two forms of each icon change
 * places.  The server has more planes, which only the toolkit is told (see the wrapper above). */
TEST_F(Graphics, OnOnePlaneTheFormsOfIconsMayChangePlaces) {
    struct PLANES {
        ~PLANES() {
            gvga_screen->root_depth = depth;
            gvga_screen->black_pixel = black;
        }
        const int depth = gvga_screen->root_depth;
        const unsigned long black = gvga_screen->black_pixel;
    } const saved;
    real_depth = saved.depth;
    Pixel foreground = 0;
    XtVaGetValues(label, XmNforeground, &foreground, nullptr);
    std::vector<std::string> forms[2][2]; // black is the foreground or not; normal and selected
    for (const bool exchanged : {false, true}) {
        gvga_screen->root_depth = 1;
        gvga_screen->black_pixel = exchanged ? foreground : foreground + 1;
        ASSERT_EQ(vga_init_graphics(label, label), 1);
        for (const bool inverted : {false, true}) {
            for (const Pixmap pixmap : inverted ? gvga_inverted_pixmaps : gvga_pixmaps) {
                forms[exchanged][inverted].push_back(picture_of(pixmap));
            }
        }
        vga_free_graphics();
    }
    EXPECT_NE(forms[0][0], forms[0][1]);
    EXPECT_EQ(forms[1][0], forms[0][1]);
    EXPECT_EQ(forms[1][1], forms[0][0]);
}

TEST_F(Graphics, WithoutIconsTheStartFails) {
    const std::string path = getenv("UIDPATH");
    setenv("UIDPATH", "/nonexistent/%U", 1);
    nba_pd_set_log("/dev/null", NB_PD_ALL);
    const gui::WARNINGS said;
    EXPECT_EQ(vga_init_graphics(label, label), 0);
    EXPECT_EQ(gvga_exit_code, VGA_EXIT_START_UP);
    EXPECT_TRUE(gui::WARNINGS::texts.empty());
    setenv("UIDPATH", path.c_str(), 1);
    nba_pd_set_log(nullptr, NB_PD_EXCEPTION);
}

TEST_F(Graphics, FontsAreTriedInTheirOrder) {
    struct CASE {
        const char *own, *named, *message;
        NB_ULONG width; // of "W"; 0: no set
        std::vector<std::string> said;
    } const cases[] = {
        {nullptr, nullptr, small_font, 6, {}},
        {"10x20", nullptr, small_font, 10, {}}, // the widget's own
        {nullptr, "9x15", small_font, 9, {}},
        {nullptr, "-no-such-font-*", small_font, 6, {"1439"}},
        {nullptr, nullptr, "-no-such-font-*", 8, {}}, // the default pattern
    };
    for (const CASE &example : cases) {
        SCOPED_TRACE(&example - cases);
        XrmDestroyDatabase(gvga_resource_database);
        gvga_resource_database = nullptr;
        if (example.named != nullptr) {
            resource("Quiladmin*fontName", example.named);
        }
        Widget widget = label;
        if (example.own != nullptr) {
            XmFontListEntry entry =
                XmFontListEntryLoad(gvga_display, const_cast<char *>(example.own),
                                    XmFONT_IS_FONTSET, const_cast<char *>("own"));
            XmFontList list = XmFontListAppendEntry(nullptr, entry);
            XmFontListEntryFree(&entry);
            widget = XtVaCreateWidget("own", xmLabelWidgetClass, shell, XmNfontList, list, nullptr);
            XmFontListFree(list);
        }
        gvga_messages[VGA_MSG_SMALL_FONT] = example.message;
        const gui::WARNINGS said;
        XFontSet set = vga_load_fixed_fontset("*fontName", "8x13", VGA_MSG_SMALL_FONT, widget);
        EXPECT_EQ(gui::WARNINGS::texts, example.said);
        ASSERT_NE(set, nullptr);
        EXPECT_EQ(XmbTextEscapement(set, "W", 1), static_cast<int>(example.width));
        XFreeFontSet(gvga_display, set);
    }
    const gui::WARNINGS said;
    EXPECT_EQ(vga_load_fixed_fontset("*fontName", "-none-*", VGA_MSG_SMALL_FONT, label), nullptr);
    EXPECT_EQ(gui::WARNINGS::texts, std::vector<std::string>{"1444"});
}

} // namespace
