// The list control without a screen: single cases, and the layout arithmetic.
#include <gtest/gtest.h> // before the X headers, whose macros it cannot bear

#include "graphics.h"
#include "nbbase.h"
#include "viewerparts.h"
#include <clocale>
#include <cstring>
#include <string>
#include <vector>

namespace {

/* Single cases. */

class VIEWER : public testing::Test {
protected:
    void SetUp() override {
        gvga_viewer_item_height = 10;
        ASSERT_EQ(vga_viewer_init_root(&root), 1);
        previous = v0_set_fatal_handler(
            [](const NB_CHAR *, NB_INT, const NB_CHAR *text) { broken = text; });
        broken.clear();
    }
    void TearDown() override {
        v0_set_fatal_handler(previous);
        vga_viewer_set_types(nullptr, 0);
        vga_viewer_destroy_root(&root);
        gvga_viewer_item_height = 0;
    }
    void fill(size_t count) {
        items.resize(count);
        for (VGA_VIEWER_ITEM &item : items) {
            vga_create_viewer(&root, &item, 0, &item, nullptr, VGA_VIEWER_LAST);
        }
    }

    static std::string broken;
    NB_FATAL_HANDLER previous = nullptr;
    VGA_VIEWER_ROOT root;
    std::vector<VGA_VIEWER_ITEM> items;
};
std::string VIEWER::broken;

TEST_F(VIEWER, AForeignPredecessorIsFatalAndLeavesTheListAlone) {
    fill(2);
    VGA_VIEWER_ITEM child, stray;
    vga_create_viewer(&root, &child, 0, nullptr, &items[0], &items[1]);
    EXPECT_EQ(broken, "FALSE");
    EXPECT_EQ(vga_viewer_get_content_height(&root), 20U);
    vga_create_viewer(&root, &child, 0, nullptr, &items[0], VGA_VIEWER_LAST);
    vga_create_viewer(&root, &stray, 0, nullptr, nullptr, &child);
    EXPECT_EQ(root.top_items.count, 2U);
}

/* Layout. */

TEST(VIEWER_LAYOUT, RunsAreCutAtTheNextColumn) {
    struct CASE {
        const NB_CHAR *text, *runs; // column:text, separated by |
    } const cases[] = {
        {"", "0:"},
        {"plain 100% text", "0:plain 100% text"},
        {"ab%t4%cd%t8ef", "0:ab|4:cd|8:ef"},
        {"abcdef%t4%ghijkl%t8%and the rest", "0:abcd|4:ghij|8:and the rest"},
        {"a%t3%%t6%total", "0:a|3:|6:total"},
        {"a%t3%t5", "0:a|3:t5"}, // the sign closes the stop
        {"a%tb%t", "0:a%tb%t"},  // no column, no stop
        {"abc%t2%d%t1%e", "0:ab|2:|1:e"},
        {"a%t99999999999%b", "0:a|4000:b"},
    };
    for (const CASE &example : cases) {
        std::string runs;
        const NB_CHAR *text = example.text;
        NB_ULONG column = 0;
        VGA_VIEWER_RUN run;
        while (vga_viewer_next_run(&text, &column, &run) != 0) {
            runs += (runs.empty() ? "" : "|") + std::to_string(run.column) + ":" +
                    std::string(run.text, static_cast<size_t>(run.length));
        }
        EXPECT_EQ(runs, example.runs) << example.text;
    }
}

TEST(VIEWER_LAYOUT, ACutColumnLeavesABlankAndShowsIt) {
    struct CASE {
        const NB_CHAR *text, *plain, *utf8; // drawn in the two locales; null: as it is
    } const cases[] = {
        {"abc%t4%def%t8%and the rest is never cut", nullptr, nullptr},
        {"abcd%t4%efghij%t8%x", "ab>%t4%ef>%t8%x", "ab\u2026%t4%ef\u2026%t8%x"},
        {"a%t1%bc%t2%d%t1%e", nullptr, nullptr}, // no room for a mark
        {"\u00E4\u00F6\u00FC%t4x", "\u00E4>%t4x", nullptr},
        {"\u6F22\u5B57\u6F22%t6x", nullptr, "\u6F22\u5B57\u2026%t6x"},
        {"\u6F22\u5B57\u6F22%t5x", nullptr, "\u6F22\u2026%t5x"}, // three columns, two wide
    };
    for (const char *locale : {"C", "C.UTF-8"}) {
        ASSERT_NE(setlocale(LC_CTYPE, locale), nullptr);
        const bool utf8 = strcmp(locale, "C") != 0;
        for (const CASE &example : cases) {
            if (!utf8 && example.plain == nullptr && example.utf8 != nullptr) {
                continue; // bytes of half a character are no case
            }
            NB_CHAR text[VGA_VIEWER_TEXT_BUFFER + 1];
            strcpy(text, example.text);
            const NB_CHAR *drawn = utf8 ? example.utf8 : example.plain;
            EXPECT_EQ(vga_viewer_mark_cuts(text), drawn != nullptr) << example.text;
            EXPECT_STREQ(text, drawn != nullptr ? drawn : example.text) << locale;
        }
    }
    setlocale(LC_CTYPE, "C");
}

TEST(VIEWER_LAYOUT, CutsKeepCharactersWhole) {
    ASSERT_NE(setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    EXPECT_EQ(vga_viewer_cut("\xC3\xA4\xC3\xB6x", 5, 1), 2);
    EXPECT_EQ(vga_viewer_cut("\xC3\xA4\xC3\xB6x", 5, 3), 5);
    EXPECT_EQ(vga_viewer_cut("\xE6\xBC\xA2x", 4, 1), 0); // two columns wide
    EXPECT_EQ(vga_viewer_cut("\xE6\xBC\xA2x", 4, 2), 3);
    EXPECT_EQ(vga_viewer_cut("\xFF\xFEx", 3, 2), 2); // no characters at all
    setlocale(LC_CTYPE, "C");
    EXPECT_EQ(vga_viewer_cut("\xC3\xA4x", 3, 2), 2);
}

TEST(VIEWER_LAYOUT, TheLastLineCanBeScrolledToWhereItIsWhole) {
    for (NB_ULONG window = 21; window < 60; ++window) {
        const NB_ULONG lines = 200, height = 20;
        const NB_ULONG content = vga_viewer_content_height(lines, window, height);
        const NB_ULONG offset = vga_viewer_clamp(1000000, content, window, height);
        EXPECT_EQ(offset % height, 0U);
        EXPECT_GE(offset + window, lines) << window;
        EXPECT_LT(offset, lines) << window;
    }
    EXPECT_EQ(vga_viewer_clamp(-5, 100, 50, 0), 0U);
    EXPECT_EQ(vga_viewer_clamp(70, 40, 50, 0), 0U);
}

} // namespace
