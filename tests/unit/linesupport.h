/* What tests of lines share: the messages, a domain with one node, records with any entries, and
 * the text of a line taken apart. */
#ifndef LINESUPPORT_H
#define LINESUPPORT_H

#include <gtest/gtest.h> // before the X headers, whose macros it cannot bear

#include "testrecords.h"
#include "vgadsadd.h"
#include "vgadsdel.h"
#include "vgalines.h"
#include "vgamsgs.h"
#include "vgatypes.h"
#include "vgawtype.h"
#include <cstring>
#include <filesystem>
#include <functional>
#include <nl_types.h>
#include <string>
#include <vector>

// A line as its list has it: where its texts begin, and the texts.
struct PARTS {
    std::vector<unsigned long> columns;
    std::vector<std::string> texts;

    std::string joined() const {
        std::string all;
        for (const std::string &text : texts) {
            all += (&text == &texts.front() ? "" : "|") + text;
        }
        return all;
    }
};

inline PARTS parts_of(NB_USHORT type, NB_VOID *record) {
    NB_CHAR buffer[VGA_VIEWER_TEXT_BUFFER + 1];
    const VGA_VIEWER_DESC &desc = gvga_viewer_types[type];
    const NB_USHORT length = desc.create_text(record, buffer);
    EXPECT_LT(length, VGA_VIEWER_MAX_TEXT_LENGTH) << type;
    std::string text(buffer, length);
    PARTS parts;
    parts.columns.push_back(desc.level * 8UL);
    for (size_t from = 0; (from = text.find("%t", from)) != std::string::npos;) {
        size_t digits = text.find_first_not_of("0123456789", from + 2);
        if (digits == from + 2) {
            from = digits;
            continue;
        }
        parts.texts.push_back(text.substr(0, from));
        parts.columns.push_back(desc.level * 8UL + std::stoul(text.substr(from + 2)));
        text.erase(0, digits + (text[digits] == '%' ? 1 : 0));
        from = 0;
    }
    parts.texts.push_back(text);
    return parts;
}

template <size_t Width> void text(NB_UCHAR (&field)[Width], const char *value) {
    memset(field, 0, Width);
    memcpy(field, value, strlen(value));
}

template <class Entry> Entry blank_entry() {
    Entry entry;
    memset(static_cast<void *>(&entry), 0, sizeof(entry));
    if constexpr (requires { entry.overlay_size; }) {
        entry.overlay_size = sizeof(entry);
    }
    return entry;
}

class LineTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        nba_pd_set_log("/dev/null", NB_PD_ALL);
        const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
        const nl_catd catalogue = catopen((folder / "../lib/nls/msg/C/sna.cat").c_str(), 0);
        ASSERT_NE(catalogue, reinterpret_cast<nl_catd>(-1));
        for (int number = 1; number <= VGA_MESSAGE_COUNT; ++number) {
            texts[number] = catgets(catalogue, VGA_MESSAGE_SET, number, "");
            gvga_messages[number] = texts[number].c_str();
        }
        catclose(catalogue);
    }
    static void TearDownTestSuite() { memset(gvga_messages, 0, sizeof(gvga_messages)); }

    void SetUp() override {
        gvga_system = vga_init_vga_system();
        auto entry = blank_entry<NAP_NODE_ALL_DATA>();
        text(entry.node_name, "berlin");
        entry.info.node_state = NAP_NODE_ACTIVE;
        node = vga_insert_vga_node(vga_init_vga_node(&entry));
        set_ebcdic(node->node_data.info.fq_cp_name, "NETA.BERLIN");
    }
    void TearDown() override {
        for (auto free_one = made.rbegin(); free_one != made.rend(); ++free_one) {
            (*free_one)();
        }
        made.clear();
        vga_destroy_data_structures();
    }

    // A record outside the indexes, freed with the test.
    template <class Record, class Owner> Record *keep(Owner *owner, const NB_VOID *entry) {
        Record *record = vga_init_record<Record>(owner, entry);
        made.push_back([record] {
            if constexpr (requires { record->viewer_root; }) {
                vga_viewer_destroy_root(&record->viewer_root);
            }
            vga_free_record(record);
        });
        return record;
    }

    VGA_NODE *node = nullptr;
    VGA_USER_STATUS status = {};
    std::vector<std::function<void()>> made;
    static inline std::string texts[VGA_MESSAGE_COUNT + 1];
};

#endif
