// The list control in each of its states, with small and with big icons: no two states look the
// same.  PICTURES names a folder that the pictures are written to (scripts/viewer-pictures).
#include "viewer_fixture.h"
#include <cstdlib>
#include <map>

namespace {

struct LOOKS {
    const char *size, *font;
    int width, height;
};

void PrintTo(const LOOKS &looks, std::ostream *stream) {
    *stream << looks.size;
}

class ViewerPictures : public Viewer, public testing::WithParamInterface<LOOKS> {
protected:
    void SetUp() override {
        XrmPutStringResource(&gvga_resource_database, "Quiladmin*size", GetParam().size);
        gvga_messages[VGA_MSG_BIG_SUFFIX] = "big";
        gvga_messages[VGA_MSG_SMALL_FONT] = gvga_messages[VGA_MSG_BIG_FONT] = GetParam().font;
        XColor exact, nearest;
        XAllocNamedColor(gvga_display, DefaultColormapOfScreen(gvga_screen), "#17365D", &nearest,
                         &exact);
        foreground = nearest.pixel;
        Viewer::SetUp();
        XtVaSetValues(shell, XmNwidth, GetParam().width, XmNheight, GetParam().height, nullptr);
        make_list();
        display();
    }
    void TearDown() override {
        Viewer::TearDown();
        XrmPutStringResource(&gvga_resource_database, "Quiladmin*size", "small");
        gvga_messages[VGA_MSG_BIG_FONT] = gvga_messages[VGA_MSG_BIG_SUFFIX] = nullptr;
    }

    void make_list() {
        const struct {
            const char *text;
            int parent; // -1: none
        } lines[] = {
            {"Resource%t24%Status%t36%Description", -1},
            {"ETH0%t24%Active%t36%Computer room LAN", -1},
            {"HOSTETH%t16%Active%t28%Mainframe", 1},
            {"BACKUP%t16%Inactive%t28%Mainframe, reserve", 1},
            {"A.NAME.THAT.IS.TOO.LONG.FOR.IT%t16%Starting%t28%Its column cuts it", 1},
            {"SDLC0%t24%Inactive%t36%Leased line to the depot", -1},
            {"IP0%t24%Active%t36%IP network", -1},
            {"MARKET%t16%Active%t28%Market Square branch", 6},
            {"STATION%t16%Active%t28%Railway station counter, opened in the spring", 6},
            {"TR0%t24%Inactive%t36%Token ring", -1},
        };
        for (const auto &line : lines) {
            const bool group = line.parent < 0;
            add(records.empty() ? TITLE
                : group         ? GROUP
                                : MEMBER,
                line.text, group ? nullptr : records[static_cast<size_t>(line.parent)].get());
        }
        vga_viewer_set_fixed(&root, &records[0]->item, 1);
    }

    void take(const char *state) {
        drawn();
        pictures.emplace(state, gui::IMAGE(shell));
        if (const char *folder = getenv("PICTURES")) {
            const std::string command = "import -silent -window " +
                                        std::to_string(XtWindow(shell)) + " '" + folder + "/" +
                                        GetParam().size + "-" + state + ".png'";
            EXPECT_EQ(system(command.c_str()), 0) << command;
        }
    }

    std::map<std::string, gui::IMAGE> pictures;
};

TEST_P(ViewerPictures, EveryStateHasItsOwnLook) {
    take("plain");
    click(2);
    take("selected");
    key("space", {"Control_L"});
    take("outlined");
    click(1, {}, 5);
    take("expanded");
    click(2);
    click(4, {"Shift_L"});
    key("space", {"Control_L"});
    take("several");
    click(6, {}, 5);
    gui::move_to(draw_widget, 100, middle_of(1));
    gui::press();
    gui::move_to(draw_widget, 100, middle_of(6));
    take("dragging");
    gui::release();
    click(5);
    XtVaSetValues(shell, XmNwidth, GetParam().width * 3 / 4, XmNheight, GetParam().height * 3 / 4,
                  nullptr);
    drawn();
    vga_viewer_scroll_view_horizontal(&root, 5 * static_cast<int>(gvga_viewer_char_width));
    take("scrolled");
    for (const auto &[state, picture] : pictures) {
        for (const auto &[other_state, other] : pictures) {
            EXPECT_TRUE(state == other_state || !(picture == other)) << state << other_state;
        }
    }
    EXPECT_EQ(pictures.size(), 7U);
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, ViewerPictures,
    testing::Values(LOOKS{"small", "-misc-fixed-medium-r-normal--14-*-*-*-c-70-*-*", 560, 215},
                    LOOKS{"big", "-misc-fixed-medium-r-normal--18-*-*-*-*-*-*-*", 740, 300}),
    testing::PrintToStringParamName());

} // namespace
