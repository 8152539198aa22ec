// The lines of every type: no record, whatever it holds, breaks the columns of its list.
#include "linesupport.h"
#include "scriptednof.h"
#include "vgagraph.h"
#include "vganodws.h"
#include <algorithm>
#include <clocale>
#include <map>

SCRIPTED_NOF_ENTRY

namespace {

class LineTypes : public LineTest {
protected:
    // A record whose entry has `byte` everywhere but in its length, which is that of the whole
    // structure or, `cut`, of the least that a list may hold.
    template <class Record, class Owner> Record *filled(Owner *owner, NB_UCHAR byte, bool cut) {
        using DATA = std::remove_pointer_t<decltype(Record::vcb)>;
        using TYPE = VGA_RECORD_TYPE<Record>;
        const NB_USHORT size = cut && !TYPE::nested ? TYPE::fixed_size : sizeof(DATA);
        std::vector<NB_UCHAR> entry(size, byte);
        if (!TYPE::nested) {
            memcpy(entry.data(), &size, sizeof(size));
        }
        return keep<Record>(owner, entry.data());
    }

    std::map<NB_USHORT, NB_VOID *> all_types(NB_UCHAR byte, bool cut);
};

// The record of a line of each of the 43 types.
std::map<NB_USHORT, NB_VOID *> LineTypes::all_types(NB_UCHAR byte, bool cut) {
    memset(static_cast<void *>(&status), byte, sizeof(status));
    node->node_state = byte % 6;
    auto *dlc = filled<VGA_DLC>(node, byte, cut);
    auto *port = filled<VGA_PORT>(dlc, byte, cut);
    auto *ls = filled<VGA_LS>(port, byte, cut);
    auto *pu = filled<VGA_LOCAL_PU>(node, byte, cut);
    auto *down_pu = filled<VGA_DOWN_PU>(node, byte, cut);
    auto *lu62 = filled<VGA_LU62>(node, byte, cut);
    auto *system = filled<VGA_REM_SYS>(node, byte, cut);
    auto *plu = filled<VGA_REM_PLU>(system, byte, cut);
    auto *user = filled<VGA_USER>(gvga_system, byte, cut);
    auto *sys_pool = filled<VGA_SYS_POOL>(gvga_system, byte, cut);
    auto *pool = filled<VGA_POOL>(node, byte, cut);
    pool->sys_pool = sys_pool;
    auto *client = filled<VGA_TN_CLIENT>(node, byte, cut);
    auto *down_template = filled<VGA_DSPU_TEMPLATE>(node, byte, cut);
    auto *line = filled<VGA_PRIMARY_LINE>(node, byte, cut);
    return {
        {VGA_VIEWER_LU62, lu62},
        {VGA_VIEWER_MODE, filled<VGA_MODE>(lu62, byte, cut)},
        {VGA_VIEWER_PORT, port},
        {VGA_VIEWER_LS, ls},
        {VGA_VIEWER_LOCAL_PU, pu},
        {VGA_VIEWER_DEPLU, filled<VGA_LU03>(pu, byte, cut)},
        {VGA_VIEWER_DOWN_LU, filled<VGA_DOWN_LU>(down_pu, byte, cut)},
        {VGA_VIEWER_USER, user},
        {VGA_VIEWER_POOL, sys_pool},
        {VGA_VIEWER_CPIC, filled<VGA_CPIC>(gvga_system, byte, cut)},
        {VGA_VIEWER_MODE_DEF, filled<VGA_MODE_DEF>(node, byte, cut)},
        {VGA_VIEWER_NODE, node},
        {VGA_VIEWER_RJE, filled<VGA_RJE_WKSTN>(gvga_system, byte, cut)},
        {VGA_VIEWER_LS_LEAF, ls},
        {VGA_VIEWER_REM_SYS, system},
        {VGA_VIEWER_REM_PLU, plu},
        {VGA_VIEWER_REM_SESS, filled<VGA_REM_SESS>(plu, byte, cut)},
        {VGA_VIEWER_REM_PLU_LEAF, plu},
        {VGA_VIEWER_USER_SESS, filled<VGA_USER_SESSION>(user, byte, cut)},
        {VGA_VIEWER_USTAD, &status},
        {VGA_VIEWER_USTAD_TITLE, nullptr},
        {VGA_VIEWER_TN_SESS, filled<VGA_TN_SESS>(client, byte, cut)},
        {VGA_VIEWER_TN_SESS_TITLE, node},
        {VGA_VIEWER_POOL_LU, filled<VGA_POOL_LU>(pool, byte, cut)},
        {VGA_VIEWER_CL_SECURITY, filled<VGA_CLSEC_DEF>(node, byte, cut)},
        {VGA_VIEWER_SL_SEC_TITLE, node},
        {VGA_VIEWER_SL_SECURITY, filled<VGA_SLSEC_DEF>(node, byte, cut)},
        {VGA_VIEWER_TN_ASSOC, filled<VGA_TN_ASSOC>(node, byte, cut)},
        {VGA_VIEWER_TN_ASSOC_TITLE, node},
        {VGA_VIEWER_RTP_CONN, filled<VGA_RTP_CONN>(node, byte, cut)},
        {VGA_VIEWER_RTP_CONN_TITLE, node},
        {VGA_VIEWER_LS_R_TITLE, lu62},
        {VGA_VIEWER_LS_R, filled<VGA_LS_ROUTING>(lu62, byte, cut)},
        {VGA_VIEWER_APPCIP_SESS_TITLE, node},
        {VGA_VIEWER_APPCIP_SESS, filled<VGA_TAMRIX_APPCIP_SESS>(node, byte, cut)},
        {VGA_VIEWER_DSLU_TEMPLATE, filled<VGA_DSLU_TEMPLATE>(down_template, byte, cut)},
        {VGA_VIEWER_PRIMARY_LINE, line},
        {VGA_VIEWER_PRIMARY_LU0, filled<VGA_PRIMARY_LU0>(line, byte, cut)},
        {VGA_VIEWER_ACCESS_LIST, filled<VGA_ACCESS_LIST>(node, byte, cut)},
        {VGA_VIEWER_TP_DEF, filled<VGA_TP_DEF>(node, byte, cut)},
        {VGA_VIEWER_TP_LOAD_INFO, filled<VGA_TP_LOAD_INFO>(node, byte, cut)},
        {VGA_VIEWER_TN_REDIRECT, filled<VGA_TN_REDIRECT>(node, byte, cut)},
        {VGA_VIEWER_TN_REDIRECT_TITLE, node},
    };
}

// Lists with their columns; each line has some of them, a title those of its lines.
struct LIST {
    std::vector<NB_USHORT> types;
    std::vector<unsigned long> columns;
};
const LIST lists[] = {
    {{VGA_VIEWER_PORT, VGA_VIEWER_LS, VGA_VIEWER_LS_LEAF, VGA_VIEWER_LOCAL_PU, VGA_VIEWER_DEPLU,
      VGA_VIEWER_DOWN_LU, VGA_VIEWER_PRIMARY_LINE, VGA_VIEWER_PRIMARY_LU0},
     {26, 39, 54, 72}},
    {{VGA_VIEWER_LU62, VGA_VIEWER_MODE, VGA_VIEWER_LS_R_TITLE, VGA_VIEWER_LS_R}, {26, 44, 57}},
    {{VGA_VIEWER_REM_SYS, VGA_VIEWER_REM_PLU, VGA_VIEWER_REM_PLU_LEAF, VGA_VIEWER_REM_SESS},
     {26, 44}},
    {{VGA_VIEWER_USER, VGA_VIEWER_USER_SESS}, {26, 41, 61, 75}},
    {{VGA_VIEWER_POOL, VGA_VIEWER_POOL_LU}, {26, 39, 53}},
};
const std::pair<NB_USHORT, NB_USHORT> titles[] = {
    {VGA_VIEWER_USTAD_TITLE, VGA_VIEWER_USTAD},
    {VGA_VIEWER_TN_SESS_TITLE, VGA_VIEWER_TN_SESS},
    {VGA_VIEWER_SL_SEC_TITLE, VGA_VIEWER_SL_SECURITY},
    {VGA_VIEWER_TN_ASSOC_TITLE, VGA_VIEWER_TN_ASSOC},
    {VGA_VIEWER_RTP_CONN_TITLE, VGA_VIEWER_RTP_CONN},
    {VGA_VIEWER_APPCIP_SESS_TITLE, VGA_VIEWER_APPCIP_SESS},
    {VGA_VIEWER_TN_REDIRECT_TITLE, VGA_VIEWER_TN_REDIRECT},
};

void expect_harmless(NB_USHORT type, const PARTS &parts) {
    for (size_t at = 0; at < parts.texts.size(); at++) {
        for (NB_CHAR character : parts.texts[at]) {
            EXPECT_FALSE(iscntrl(static_cast<NB_UCHAR>(character))) << type;
        }
        if (at + 1 < parts.columns.size()) {
            EXPECT_LT(parts.columns[at], parts.columns[at + 1]) << type;
        }
    }
}

TEST_F(LineTypes, AnyRecordKeepsTheColumnsOfItsList) {
    std::map<NB_USHORT, std::vector<unsigned long>> columns;
    for (const char *locale : {"C", "C.UTF-8"}) {
        ASSERT_NE(setlocale(LC_CTYPE, locale), nullptr);
        for (int byte = 0; byte < 256; byte++) {
            for (const auto &[type, record] :
                 all_types(static_cast<NB_UCHAR>(byte), byte % 2 != 0)) {
                const PARTS parts = parts_of(type, record);
                expect_harmless(type, parts);
                auto known = columns.emplace(type, parts.columns).first;
                EXPECT_EQ(known->second, parts.columns) << type << ", byte " << byte;
                auto *icon = gvga_viewer_types[type].choose_icon;
                EXPECT_TRUE(icon == nullptr || icon(record) < VGA_ICON_COUNT) << type;
            }
        }
    }
    setlocale(LC_CTYPE, "C");
    EXPECT_EQ(columns.size(), VGA_VIEWER_TYPE_COUNT);
    for (const LIST &list : lists) {
        for (NB_USHORT type : list.types) {
            for (size_t at = 1; at < columns[type].size(); at++) {
                EXPECT_NE(std::find(list.columns.begin(), list.columns.end(), columns[type][at]),
                          list.columns.end())
                    << type << ", column " << columns[type][at];
            }
        }
    }
    for (const auto &[title, line] : titles) {
        EXPECT_EQ(columns[title], columns[line]);
    }
}

TEST_F(LineTypes, TextsAreCutAtTheirColumnsAndMadeHarmless) {
    auto entry = blank_entry<NAP_TN_REDIRECT_DATA>();
    entry.address_type = NAP_TN_ADDRESS_NAME;
    entry.client_port = 65535;
    memset(entry.client_address, 'c', sizeof(entry.client_address));
    text(entry.def_data.host_address, "%t99a%t5%b%%\t\nc");
    text(entry.def_data.description, "%t7");
    EXPECT_EQ(parts_of(VGA_VIEWER_TN_REDIRECT, keep<VGA_TN_REDIRECT>(node, &entry)).joined(),
              "ccccccccccccccccccccccc|65535|% t99a% t5%b%%  c|0|No|No|% t7");

    ASSERT_NE(setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    text(entry.client_address, "\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4"
                               "\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4"
                               "\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4");
    text(entry.def_data.host_address, "a\xe4"
                                      "b");
    const PARTS parts = parts_of(VGA_VIEWER_TN_REDIRECT, keep<VGA_TN_REDIRECT>(node, &entry));
    setlocale(LC_CTYPE, "C");
    EXPECT_EQ(parts.texts[0].size(), 2U * 23U);
    EXPECT_EQ(parts.texts[2], "a?b");
}

TEST_F(LineTypes, TitlesShowWholeHeadings) {
    const std::pair<NB_USHORT, const char *> cases[] = {
        {VGA_VIEWER_USTAD_TITLE, "User|Session|Status|LU|Node"},
        {VGA_VIEWER_TN_SESS_TITLE, "Client|Port|Display LU|Printer LU|Protocol|SSL|Description"},
        {VGA_VIEWER_SL_SEC_TITLE, "Local LU|Partner LU|Verification|Description"},
        {VGA_VIEWER_TN_ASSOC_TITLE, "Display LU|Printer LU|Description"},
        {VGA_VIEWER_RTP_CONN_TITLE, "Connection|Status|Remote node|Over link|COS|Sessions|Route"},
        {VGA_VIEWER_LS_R_TITLE, "Routing to partner LU|Over link|Description"},
        {VGA_VIEWER_APPCIP_SESS_TITLE,
         "Number|Status|Local LU|Partner LU|Mode|Remote address|Set up by"},
        {VGA_VIEWER_TN_REDIRECT_TITLE,
         "Client|Port|Host|Host port|Client SSL|Host SSL|Description"},
    };
    for (const auto &[type, expected] : cases) {
        EXPECT_EQ(parts_of(type, nullptr).joined(), expected);
        EXPECT_NE(gvga_viewer_types[type].decor_cb, nullptr);
    }
}

TEST_F(LineTypes, IconsAreTheOnesOfTheirNames) {
    const std::pair<NB_USHORT, const char *> cases[] = {
        {VGA_ICON_PORTSDLC, "portsdlc"},
        {VGA_ICON_LU03, "lu03"},
        {VGA_ICON_USER, "user"},
        {VGA_ICON_POOL, "pool"},
        {VGA_ICON_CPIC, "cpic"},
        {VGA_ICON_MODE, "mode"},
        {VGA_ICON_RJEW, "rjew"},
        {VGA_ICON_DISP3270, "disp3270"},
        {VGA_ICON_PRINT3270, "print3270"},
        {VGA_ICON_DISP5250, "disp5250"},
        {VGA_ICON_PRINT5250, "print5250"},
        {VGA_ICON_USERGROUP, "usergroup"},
        {VGA_ICON_TNCLIENT, "tnclient"},
        {VGA_ICON_CONVSEC, "convsec"},
        {VGA_ICON_SESSSEC, "sesssec"},
        {VGA_ICON_POOLLU03, "poollu03"},
        {VGA_ICON_LU3270, "lu3270"},
        {VGA_ICON_LU5250, "lu5250"},
        {VGA_ICON_TNASSOC, "tnassoc"},
        {VGA_ICON_RTPCONN, "rtpconn"},
        {VGA_ICON_LSRT, "lsrt"},
        {VGA_ICON_LSR, "lsr"},
        {VGA_ICON_APPCIP, "appcip"},
        {VGA_ICON_ACCLIST, "acclist"},
        {VGA_ICON_TPDEF, "tpdef"},
        {VGA_ICON_TPLOAD, "tpload"},
        {VGA_ICON_TNREDIRECT, "tnredirect"},
    };
    for (const auto &[icon, name] : cases) {
        EXPECT_STREQ(gvga_pixmap_names[icon], name);
    }
}

// Events of the node window's lines.

TEST_F(LineTypes, LinesOfTheNodeWindowCanBeSelected) {
    auto data = blank_entry<NAP_LOCAL_LU_DATA>();
    set_ebcdic(data.lu_name, "ORDERS");
    VGA_LU62 *lu = vga_insert_vga_lu62(vga_init_vga_lu62(node, &data));
    std::vector<VGA_LS_ROUTING *> routings;
    for (const char *partner : {"NETA.A", "NETA.B"}) {
        auto entry = blank_entry<NAP_LS_ROUTING_DATA>();
        set_ebcdic(entry.lu_name, "ORDERS");
        set_ebcdic(entry.fqplu_name, partner);
        routings.push_back(vga_insert_vga_ls_routing(vga_init_vga_ls_routing(lu, &entry)));
    }
    const VGA_VIEWER_DESC &line = gvga_viewer_types[VGA_VIEWER_LS_R];
    const VGA_VIEWER_DESC &title = gvga_viewer_types[VGA_VIEWER_LS_R_TITLE];
    const VGA_VIEWER_ROOT &root = node->local_lu_root;

    title.arm_cb(lu, nullptr);
    EXPECT_EQ(root.select_type, VGA_VIEWER_LS_R_TITLE);
    EXPECT_TRUE(lu->routing_title.selected);
    line.arm_cb(routings[0], nullptr);
    EXPECT_EQ(root.select_type, VGA_VIEWER_LS_R);
    EXPECT_FALSE(lu->routing_title.selected);
    line.drag_cb(routings[1], 1, 0);
    EXPECT_EQ(root.select_count, 2);
    title.drag_cb(lu, 1, 0);
    EXPECT_EQ(root.select_count, 2);
    EXPECT_EQ(title.activate_cb, nullptr);

    VGA_NODEW_SITUATION situation{};
    situation.node = node;
    situation.type = root.select_type;
    situation.count = 1;
    situation.defined = 1;
    EXPECT_TRUE(vga_nodew_allows(situation, VGA_NODEW_ZOOM));
    EXPECT_FALSE(vga_nodew_allows(situation, VGA_NODEW_START));
    situation.type = VGA_VIEWER_LS_R_TITLE;
    EXPECT_FALSE(vga_nodew_allows(situation, VGA_NODEW_ZOOM));
    EXPECT_FALSE(vga_nodew_allows(situation, VGA_NODEW_DELETE));
}

} // namespace
