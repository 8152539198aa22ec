// Help without a display: the volume's reader, the search, the lines of a page, manual pages.

#include <gtest/gtest.h> // before the X headers, whose macros it cannot bear

#include "../../platform/help/layout.h"
#include "../../platform/help/manpage.h"
#include "../../platform/help/search.h"
#include "../../platform/help/textmarks.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace help;

const char small_volume[] = "V\tTitle\n"
                            "C\t0\tHome\thome\n"
                            "C\t1\tModes\tmodes\n"
                            "X\t0\tpacing\tmodes\n"
                            "T\thome\tHome\n"
                            "P\t0\tpSee \tlmodes|the modes\tp, or \tb**\tp.\n"
                            "T\tmodes\tModes\n"
                            "H\t0\tpPacing\n"
                            "B\t1\tpA workspace is paced.\n";

TEST(HelpVolume, ReadsWhatWasWritten) {
    const Loaded loaded = parse_volume(small_volume);
    ASSERT_NE(loaded.volume, nullptr) << loaded.fault;
    const Volume &volume = *loaded.volume;
    ASSERT_EQ(volume.topics.size(), 2U);
    EXPECT_EQ(volume.contents[1].depth, 1);
    EXPECT_EQ(volume.index[0].topic, "modes");
    const Block &paragraph = volume.topics[0].blocks.at(0);
    EXPECT_EQ(plain_text(paragraph), "See the modes, or **.");
    EXPECT_EQ(paragraph.runs[1].style, Style::link);
    EXPECT_EQ(paragraph.runs[1].target, "modes");
    EXPECT_EQ(volume.find("modes")->blocks[1].level, 1);
    EXPECT_EQ(volume.find("mode"), nullptr);
}

TEST(HelpVolume, RefusesWhatIsNoVolume) {
    const std::string good = small_volume;
    const struct {
        std::string body, fault;
    } cases[] = {
        {"", "missing"},
        {"P\t0\tptext\n", "Line 2"},                  // a block without a topic
        {good.substr(0, good.size() - 1), "Line 10"}, // the end is cut off
        {good + "X\t0\tterm\tnowhere\n", "missing"},  // an entry that leads nowhere
        {good + "Z\t0\tptext\n", "Line 11"},          // no such record
        {good + "P\t-1\tptext\n", "Line 11"},         // no such level
        {good + "P\t0\tltext\n", "Line 11"},          // a link that leads nowhere
        {good + "B\t9\tptext\n", "Line 11"},          // too deep
        {good + "P\t0\tp\x01\n", "Line 11"},          // a control character
        {good + "\n", "Line 11"},
    };
    for (const auto &one : cases) {
        const Loaded loaded = parse_volume(one.body);
        EXPECT_EQ(loaded.volume, nullptr) << one.body;
        EXPECT_NE(loaded.fault.find(one.fault), std::string::npos) << loaded.fault;
    }
}

class HelpFile : public testing::Test {
protected:
    void SetUp() override {
        char name[] = "/tmp/helpXXXXXX";
        folder = mkdtemp(name);
        path = folder / "volume";
        std::ifstream file(HELP_VOLUME_FILE, std::ios::binary);
        whole.assign(std::istreambuf_iterator<char>(file), {});
        ASSERT_GT(whole.size(), 1000U);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    Loaded read(const std::string &text) {
        std::ofstream(path, std::ios::binary) << text;
        return read_volume(path);
    }

    std::filesystem::path folder, path;
    std::string whole;
};

TEST_F(HelpFile, TellsADamagedFileFromAMissingOne) {
    EXPECT_NE(read(whole).volume, nullptr);
    std::string flipped = whole;
    flipped[flipped.size() / 2] ^= 1;
    const struct {
        std::string text, fault;
    } cases[] = {
        {flipped, "damaged"},
        {whole.substr(0, whole.size() - 10), "damaged"},
        {"quiladmin-help 1 0 811c9dc5\n", "damaged"}, // nothing in it, and that is true
        {"quiladmin-help 2 0 811c9dc5\n", "not a help volume"},
        {"", "not a help volume"},
    };
    for (const auto &one : cases) {
        const Loaded loaded = read(one.text);
        EXPECT_EQ(loaded.volume, nullptr) << one.text.substr(0, 40);
        EXPECT_NE(loaded.fault.find(one.fault), std::string::npos) << loaded.fault;
    }
    EXPECT_NE(read_volume(folder).fault.find("not a help volume"), std::string::npos);
    EXPECT_NE(read_volume(folder / "none").fault.find("No such file"), std::string::npos);
}

TEST(HelpSearch, WordsMatchFromTheirBeginning) {
    const Loaded loaded = parse_volume(small_volume);
    EXPECT_EQ(search(*loaded.volume, "work").size(), 1U);
    EXPECT_TRUE(search(*loaded.volume, "space").empty());
    EXPECT_EQ(query_words("A.b  --c_d. e-"), (std::vector<std::string>{"a.b", "c_d", "e"}));
}

// Every character is 8 pixels wide, but those of titles 12; a line is 10 high.
class Made_Up : public Metrics {
public:
    int width(help::Font font, std::string_view text) const override {
        const auto characters = std::count_if(text.begin(), text.end(),
                                              [](char byte) { return (byte & 0xC0) != 0x80; });
        return static_cast<int>(characters) * (font == help::Font::title ? 12 : 8);
    }
    int ascent(help::Font) const override { return 8; }
    int descent(help::Font) const override { return 2; }
};

Topic topic_of(std::vector<Block> blocks) {
    return {"id", "Title", std::move(blocks)};
}

std::vector<std::string> lines_of(const Page &page) {
    std::vector<std::string> lines;
    int top = -1;
    for (const Piece &piece : page.pieces) {
        if (piece.top != top) {
            lines.emplace_back();
            top = piece.top;
        }
        lines.back() += piece.text;
    }
    return lines;
}

TEST(HelpLayout, BreaksLinesAtBlanksOnly) {
    // Margins of 10 leave 100 pixels: 12 characters.
    const std::vector<help::Run> runs = {
        {Style::plain, "", "one two "}, {Style::strong, "", "three"}, {Style::plain, "", ", four"}};
    const Page page = lay_out(topic_of({{Kind::paragraph, 0, runs}}), 120, Made_Up());
    EXPECT_EQ(lines_of(page), (std::vector<std::string>{"Title", "one two", "three, four"}));
    for (const Piece &piece : page.pieces) {
        EXPECT_GE(piece.x, 10);
        EXPECT_LE(piece.x + piece.width, 110);
    }
}

// What is marked reads as a paragraph does, however its lines were broken.
TEST(HelpLayout, TextIsTakenAwayAsItReads) {
    const Topic topic = topic_of({
        {Kind::paragraph,
         0,
         {{Style::plain, "", "one two "},
          {Style::strong, "", "three"},
          {Style::plain, "", ", f\xC3\xBCr"}}},
        {Kind::bullet, 0, {{Style::plain, "", "item"}}},
        {Kind::fixed, 0, {{Style::plain, "", "a  b"}}},
        {Kind::fixed, 0, {{Style::plain, "", "c"}}},
    });
    const Page page = lay_out(topic, 120, Made_Up());
    EXPECT_EQ(text_between(page, {}, end_of(page)),
              "Title\n\none two three, f\xC3\xBCr\n\nitem\n\na  b\nc");
    const auto piece = std::find_if(page.pieces.begin(), page.pieces.end(),
                                    [](const Piece &one) { return one.text.starts_with("one"); });
    const Spot from = place_at(page, Made_Up(), piece->x + 4 * 8 + 2, piece->top + 1);
    EXPECT_EQ(text_between(page, from, end_of(page)).substr(0, 9), "two three");
    const struct {
        int x, y;
        Spot place;
    } rows[] = {
        {0, 0, {}},
        {0, -50, {}},
        {5000, page.height + 50, end_of(page)},
        {5000, piece->top, {static_cast<size_t>(piece - page.pieces.begin()), piece->text.size()}}};
    for (const auto &row : rows) {
        EXPECT_EQ(place_at(page, Made_Up(), row.x, row.y), row.place) << row.x << ' ' << row.y;
    }
    EXPECT_EQ(text_between(Page{}, {}, end_of(Page{})), "");
}

TEST(HelpLayout, BreaksAWideWordBetweenCharacters) {
    const std::string word = "\xC3\xA4\xC3\xB6\xC3\xBC"
                             "456789abcdef";
    for (const Kind kind : {Kind::paragraph, Kind::fixed}) {
        const Block block = {kind, 0, {{Style::plain, "", word}}};
        const Page page = lay_out(topic_of({block}), 120, Made_Up());
        std::string joined;
        for (size_t ii = 1; ii < page.pieces.size(); ii++) {
            joined += page.pieces[ii].text;
            EXPECT_NE(page.pieces[ii].text[0] & 0xC0, 0x80);
        }
        EXPECT_EQ(joined, word);
        EXPECT_GT(page.pieces.size(), 2U);
    }
}

TEST(HelpLayout, FindsALinkOnEachOfItsLines) {
    const std::vector<help::Run> runs = {{Style::plain, "", "See "},
                                         {Style::link, "a", "one two three"},
                                         {Style::link, "b", "four"}};
    const Page page = lay_out(topic_of({{Kind::paragraph, 0, runs}}), 120, Made_Up());
    ASSERT_EQ(page.links.size(), 2U);
    EXPECT_GT(page.links[0].bottom - page.links[0].top, 10);
    int found[2] = {0, 0};
    for (const Piece &piece : page.pieces) {
        const int link = page.link_at(piece.x + 1, piece.top + 1);
        EXPECT_EQ(link, piece.link);
        if (link != no_link) {
            found[link]++;
        }
        EXPECT_EQ(page.link_at(piece.x - 1000, piece.top + 1), no_link);
    }
    EXPECT_EQ(found[0], 2);
    EXPECT_EQ(found[1], 1);
}

TEST(HelpLayout, GrowsDownwardsWhateverTheWidth) {
    const Loaded loaded = read_volume(HELP_VOLUME_FILE);
    ASSERT_NE(loaded.volume, nullptr) << loaded.fault;
    for (const Topic &topic : loaded.volume->topics) {
        for (const int width : {1, 90, 400, 5000}) {
            const Page page = lay_out(topic, width, Made_Up());
            int top = 0;
            for (const Piece &piece : page.pieces) {
                ASSERT_GE(piece.top, top) << topic.id;
                top = piece.top;
                ASSERT_GE(piece.baseline, piece.top);
            }
            ASSERT_GT(page.height, top);
        }
    }
}

TEST(HelpManPage, OnlyNamesOfPagesPass) {
    const struct {
        const char *text, *page, *section;
    } cases[] = {
        {"quiladmin", "quiladmin", ""},
        {"snanode(8)", "snanode", "8"},
        {"g++(1)", "g++", "1"},
        {"-Kx", "", ""},
        {"a b", "", ""},
        {"a;b", "", ""},
        {"", "", ""},
        {"a()", "", ""},
        {"a(1", "", ""},
        {"(1)", "", ""},
        {"../etc", "", ""},
        {"a(-l)", "", ""},
    };
    for (const auto &one : cases) {
        const Man_Name name = parse_man_name(one.text);
        EXPECT_EQ(name.page, one.page) << one.text;
        EXPECT_EQ(name.section, one.section) << one.text;
    }
}

TEST(HelpManPage, OverprintingBecomesStyles) {
    const Topic topic =
        man_topic("x(1)", "\n\nN\bNA\bA _\bf_\bi x\n\n\n\xC3\xA4\b\xC3\xA4\x1b\xFF_\n\b\n");
    ASSERT_EQ(topic.blocks.size(), 3U);
    const std::vector<help::Run> &runs = topic.blocks[0].runs;
    ASSERT_EQ(runs.size(), 4U);
    EXPECT_EQ(runs[0].style, Style::strong);
    EXPECT_EQ(runs[0].text, "NA");
    EXPECT_EQ(runs[2].style, Style::emphasis);
    EXPECT_EQ(runs[2].text, "fi");
    EXPECT_EQ(plain_text(topic.blocks[0]), "NA fi x");
    EXPECT_EQ(plain_text(topic.blocks[2]), "\xC3\xA4_");
}

} // namespace
