// The texts of the lines: columns that stand under each other, words and names that fit them.
#include <gtest/gtest.h> // before the X headers, whose macros it cannot bear

#include "vgalines.h"
#include "vgamodel.h"
#include "vgamsgs.h"
#include "vgawtype.h"
#include <cstring>
#include <filesystem>
#include <nl_types.h>
#include <regex>
#include <set>

namespace {

using COLUMNS = std::vector<unsigned long>;

/* The columns of a line as its list has them, and the texts in them before they are cut. */
struct PARTS {
    COLUMNS columns;
    std::vector<std::string> texts;
};

PARTS split(NB_USHORT type, NB_VOID *record) {
    NB_CHAR buffer[VGA_VIEWER_TEXT_BUFFER + 1];
    const VGA_VIEWER_DESC &desc = gvga_viewer_types[type];
    std::string text(buffer, desc.create_text(record, buffer));
    PARTS parts;
    unsigned long column = desc.level * 8UL;
    parts.columns.push_back(column);
    const std::regex stop("%t([0-9]+)%?");
    for (std::smatch found; std::regex_search(text, found, stop); text = found.suffix()) {
        parts.texts.push_back(found.prefix());
        parts.columns.push_back(desc.level * 8UL + std::stoul(found[1]));
    }
    parts.texts.push_back(text);
    return parts;
}

template <size_t Width> void fill(NB_UCHAR (&field)[Width], int byte = 'W') {
    memset(field, byte, Width);
}
template <size_t Width> void fill_name(NB_UCHAR (&field)[Width]) {
    fill(field, 0xE6); // W
}
template <size_t Width> void fill_text(NB_UCHAR (&field)[Width]) {
    fill(field);
    field[Width - 1] = '\0';
}

class Lines : public testing::Test {
protected:
    static void SetUpTestSuite() {
        const auto build = std::filesystem::read_symlink("/proc/self/exe").parent_path();
        const nl_catd catalogue = catopen((build / "../lib/nls/msg/C/sna.cat").c_str(), 0);
        ASSERT_NE(catalogue, reinterpret_cast<nl_catd>(-1));
        for (int number = 1200; number < 1330; ++number) {
            texts[number] = catgets(catalogue, VGA_MESSAGE_SET, number, "");
            gvga_messages[number] = texts[number].c_str();
        }
        catclose(catalogue);
    }
    static void TearDownTestSuite() {
        for (int number = 1200; number < 1330; ++number) {
            gvga_messages[number] = nullptr;
        }
    }

    // Every text but the last is shorter than its column is wide.
    static void expect_fit(NB_USHORT type, NB_VOID *record, const COLUMNS &list) {
        const PARTS parts = split(type, record);
        const std::set<unsigned long> columns(list.begin(), list.end());
        for (size_t i = 0; i < parts.texts.size(); ++i) {
            if (i > 0) {
                EXPECT_TRUE(columns.count(parts.columns[i])) << type << ": " << parts.columns[i];
            }
            if (i + 1 < parts.texts.size()) {
                EXPECT_LT(parts.columns[i] + parts.texts[i].size(), parts.columns[i + 1])
                    << type << ": " << parts.texts[i];
            }
            EXPECT_EQ(parts.texts[i].find('%'), std::string::npos) << parts.texts[i];
        }
        EXPECT_FALSE(parts.texts[0].empty());
    }

    static inline std::string texts[VGA_MESSAGE_COUNT + 1];
};

TEST_F(Lines, OfTheConnectionsStandUnderEachOther) {
    const COLUMNS list = {26, 39, 54, 72};
    VGA_NODE node = {};
    NAP_PORT_DATA port_data = {};
    VGA_PORT port = {};
    port.node = &node;
    port.vcb = &port_data;
    fill(port_data.port_name);
    fill_text(port_data.def_data.description);
    memcpy(port_data.def_data.local_address, "08005A123456.04", 15);
    for (NB_USHORT number = 0; number < 256; ++number) {
        port_data.def_data.dlc_type = static_cast<NB_UCHAR>(number);
        port_data.det_data.port_state = number;
        if (number != NAP_DLC_CHANNEL) { // whose icon asks its DLC
            EXPECT_LT(vga_choose_port_viewer_icon(&port), 85);
        }
        expect_fit(VGA_VIEWER_PORT, &port, list);
    }
    NAP_LS_DATA ls_data = {};
    VGA_LS ls = {};
    ls.vcb = &ls_data;
    fill(ls_data.ls_name);
    fill_name(ls_data.det_data.adj_cp_name);
    fill_name(ls_data.def_data.pu_name);
    fill_text(ls_data.def_data.description);
    for (NB_UCHAR number = 0; number < 8; ++number) {
        ls.state = ls_data.def_data.adj_cp_type = number;
        expect_fit(VGA_VIEWER_LS, &ls, list);
        expect_fit(VGA_VIEWER_LS_LEAF, &ls, list);
    }
    NAP_PU_DATA pu_data = {};
    VGA_LOCAL_PU pu = {};
    pu.vcb = &pu_data;
    fill_name(pu_data.pu_name);
    fill_name(pu_data.def_data.dlus_name);
    fill_text(pu_data.def_data.description);
    expect_fit(VGA_VIEWER_LOCAL_PU, &pu, list);
    NAP_LU03_DATA lu_data = {};
    VGA_LU03 lu = {};
    lu.vcb = &lu_data;
    fill_name(lu_data.lu_name);
    fill_name(lu_data.def_data.pool_name);
    lu_data.def_data.nau_address = 255;
    for (NB_USHORT number = 0; number < 256; ++number) {
        lu_data.def_data.lu_model = static_cast<NB_UCHAR>(number);
        lu_data.det_data.lu_sscp_sess_active = number % 2;
        lu_data.det_data.appl_conn_active = number % 3 == 0;
        expect_fit(VGA_VIEWER_DEPLU, &lu, list);
    }
}

TEST_F(Lines, OfLusAndPartnersStandUnderEachOther) {
    VGA_NODE node = {};
    fill_name(node.node_data.info.fq_cp_name);
    node.node_data.info.fq_cp_name[8] = 0x4B; // the period
    NAP_LOCAL_LU_DATA lu_data = {};
    VGA_LU62 lu = {};
    lu.parent = &node;
    lu.vcb = &lu_data;
    fill_name(lu_data.lu_name);
    fill(lu_data.def_data.lu_alias);
    fill_text(lu_data.def_data.description);
    expect_fit(VGA_VIEWER_LU62, &lu, {26, 44, 57});
    lu_data.active_sessions = 1;
    expect_fit(VGA_VIEWER_LU62, &lu, {26, 44, 57});
    NAP_MODE_DATA mode_data = {};
    VGA_MODE mode = {};
    mode.vcb = &mode_data;
    fill_name(mode_data.mode_name);
    fill_name(mode_data.fqplu_name);
    fill(mode_data.lu_alias);
    mode_data.act_sess_count = mode_data.sess_limit = 65535;
    expect_fit(VGA_VIEWER_MODE, &mode, {26, 44, 57});

    const COLUMNS remote = {26, 44};
    NAP_DIR_DATA system_data = {};
    VGA_REM_SYS system = {};
    system.parent = &node;
    system.vcb = &system_data;
    fill_name(system_data.fqcp_name);
    fill_text(system_data.def_data.description);
    for (const NB_USHORT type : {NAP_DIR_END_NODE, NAP_DIR_NETWORK_NODE, 0}) {
        system_data.resource_type = type;
        expect_fit(VGA_VIEWER_REM_SYS, &system, remote);
    }
    NAP_PLU_DEF_DATA plu_data = {};
    VGA_REM_PLU plu = {};
    plu.vcb = &plu_data;
    fill(plu_data.def_data.plu_alias);
    fill_text(plu_data.def_data.description);
    plu.key.type = NAP_DIR_WILDCARD_LU;
    for (int named = 0; named < 2; ++named) {
        expect_fit(VGA_VIEWER_REM_PLU, &plu, remote);
        expect_fit(VGA_VIEWER_REM_PLU_LEAF, &plu, remote);
        fill_name(plu.key.fqplu_name);
    }
    VGA_REM_SESS session = {};
    session.vcb = &mode_data;
    expect_fit(VGA_VIEWER_REM_SESS, &session, remote);
}

// A description is the operator's: nothing in it moves a column.
TEST_F(Lines, DescriptionsAreNoColumnStops) {
    const struct {
        const char *field, *shown;
    } cases[] = {
        {"100% of it", "100% of it"},
        {"50%t2 and %t30%more", "50% t2 and % t30%more"},
        {"a\tb\nc\x7F", "a b c "},
        {"%t0%t1%t2%t3%t4%t5%t6%t7%t8%t9%", "% t0% t1% t2% t3% t4% t5% t6% t7% t8% t9%"},
    };
    NAP_PORT_DATA data = {};
    VGA_PORT port = {};
    port.vcb = &data;
    fill(data.port_name);
    for (const auto &example : cases) {
        fill(data.def_data.description, 0);
        memcpy(data.def_data.description, example.field, strlen(example.field));
        NB_CHAR buffer[VGA_VIEWER_TEXT_BUFFER];
        const std::string text(buffer, vga_create_port_viewer_text(&port, buffer));
        EXPECT_EQ(text.substr(text.rfind("%t72%") + 5), example.shown);
    }
}

} // namespace
