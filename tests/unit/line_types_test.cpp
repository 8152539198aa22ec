// The lines of every type: what they show for given records, and that no record, whatever it holds,
// breaks the columns of its list.
#include <gtest/gtest.h> // before the X headers, whose macros it cannot bear

#include "scriptednof.h"
#include "vgadsadd.h"
#include "vgadsdel.h"
#include "vgagraph.h"
#include "vgalinrs.h"
#include "vgamsgs.h"
#include "vganodws.h"
#include "vgawtype.h"
#include <clocale>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <nl_types.h>
#include <string>
#include <vector>

SCRIPTED_NOF_ENTRY

namespace {

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

PARTS parts_of(NB_USHORT type, NB_VOID *record) {
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

template <size_t Width> void local(NB_UCHAR (&field)[Width], const char *text) {
    memset(field, ' ', Width);
    memcpy(field, text, strlen(text));
}
template <size_t Width> void ebcdic(NB_UCHAR (&field)[Width], const char *text) {
    local(field, text);
    nba_local_to_ebcdic(field, Width);
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

class LineTypes : public testing::Test {
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
        ebcdic(node->node_data.info.fq_cp_name, "NETA.BERLIN");
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

    VGA_NODE *node = nullptr;
    VGA_USER_STATUS status = {};
    std::vector<std::function<void()>> made;
    static inline std::string texts[VGA_MESSAGE_COUNT + 1];
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
        {VGA_VIEWER_RTP_CONN_TITLE,
         "Connection|Status|Remote node|Link station|COS|Sessions|Route"},
        {VGA_VIEWER_LS_R_TITLE, "Routing to partner LU|Link station|Description"},
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

// What the lines say.

TEST_F(LineTypes, DownstreamAndPrimary) {
    auto pu = blank_entry<NAP_DOWN_PU_DATA>();
    auto lu = blank_entry<NAP_DOWN_LU_DATA>();
    ebcdic(lu.dslu_name, "DSLU01");
    ebcdic(lu.def_data.host_lu_name, "HOSTPOOL");
    ebcdic(lu.det_data.plu_name, "");
    lu.def_data.nau_address = 255;
    text(lu.def_data.description, "Till 4");
    auto *owner = keep<VGA_DOWN_PU>(node, &pu);
    EXPECT_EQ(parts_of(VGA_VIEWER_DOWN_LU, keep<VGA_DOWN_LU>(owner, &lu)).joined(),
              "DSLU01|Inactive|HOSTPOOL|NAU 255|Till 4");
    lu.det_data.lu_sscp_sess_active = lu.det_data.plu_sess_active = 1;
    ebcdic(lu.det_data.plu_name, "CICS");
    ebcdic(lu.det_data.used_lu_name, "HLU07");
    EXPECT_EQ(parts_of(VGA_VIEWER_DOWN_LU, keep<VGA_DOWN_LU>(owner, &lu)).joined(),
              "DSLU01|In use|HLU07|NAU 255|CICS");

    auto line = blank_entry<NAP_PRIMARY_LINE_DATA>();
    local(line.line_name, "LINE0");
    line.line_state = NAP_PENDING_ACTIVE;
    line.def_data.line_type = NAP_PORT_SWITCHED;
    memset(line.def_data.device, 'd', sizeof(line.def_data.device));
    auto *primary = keep<VGA_PRIMARY_LINE>(node, &line);
    EXPECT_EQ(parts_of(VGA_VIEWER_PRIMARY_LINE, primary).joined(),
              "LINE0|Starting|Switched|ddddddddddddddddd|");
    auto lu0 = blank_entry<NAP_PRIMARY_LU0_DATA>();
    ebcdic(lu0.lu_name, "ATM001");
    ebcdic(lu0.def_data.plu_name, "");
    lu0.appl_conn_active = 1;
    lu0.def_data.station_address = 254;
    lu0.def_data.nau_address = 255;
    EXPECT_EQ(parts_of(VGA_VIEWER_PRIMARY_LU0, keep<VGA_PRIMARY_LU0>(primary, &lu0)).joined(),
              "ATM001|Open|Any program|Addr 254 NAU 255|");
}

TEST_F(LineTypes, RoutingsAndConnections) {
    auto local_lu = blank_entry<NAP_LOCAL_LU_DATA>();
    auto *lu = keep<VGA_LU62>(node, &local_lu);
    auto routing = blank_entry<NAP_LS_ROUTING_DATA>();
    local(routing.def_data.ls_name, "TOHOST");
    ebcdic(routing.fqplu_name, "NETWORK1.PARTNER8");
    const std::pair<NB_UCHAR, const char *> cases[] = {
        {NAP_DIR_WILDCARD_NONE, "NETWORK1.PARTNER8|TOHOST|"},
        {NAP_DIR_WILDCARD_PARTIAL, "NETWORK1.PARTNER8*|TOHOST|"},
        {NAP_DIR_WILDCARD_FULL, "Any partner|TOHOST|"},
    };
    for (const auto &[wildcard, expected] : cases) {
        routing.def_data.wildcard = wildcard;
        EXPECT_EQ(parts_of(VGA_VIEWER_LS_R, keep<VGA_LS_ROUTING>(lu, &routing)).joined(), expected);
    }

    auto conn = blank_entry<NAP_RTP_CONN_DATA>();
    ebcdic(conn.rtp_name, "@R000001");
    ebcdic(conn.dest_cp_name, "NETA.PARIS");
    ebcdic(conn.cos_name, "#INTER");
    local(conn.first_hop_ls_name, "TOPARIS");
    conn.connect_state = NAP_RTP_SWITCHING;
    conn.sessions = 4294967295U;
    text(conn.route, "NETA.BERLIN -21- NETA.PARIS");
    EXPECT_EQ(parts_of(VGA_VIEWER_RTP_CONN, keep<VGA_RTP_CONN>(node, &conn)).joined(),
              "@R000001|Path switch|NETA.PARIS|TOPARIS|#INTER|4294967295|"
              "NETA.BERLIN -21- NETA.PARIS");

    auto session = blank_entry<NAP_TAMRIX_SESSION_DATA>();
    session.session_number = 7;
    session.session_state = NAP_ACTIVE;
    ebcdic(session.lu_name, "ORDERS");
    ebcdic(session.fqplu_name, "NETA.STOCK");
    ebcdic(session.mode_name, "#BATCH");
    session.remote_ip_address = {NAP_IPV4_ADDRESS, {192, 168, 100, 255}, {}};
    session.remote_port = 65535;
    auto *appcip = keep<VGA_TAMRIX_APPCIP_SESS>(node, &session);
    EXPECT_EQ(parts_of(VGA_VIEWER_APPCIP_SESS, appcip).joined(),
              "7|Active|ORDERS|NETA.STOCK|#BATCH|192.168.100.255:65535|This node");
}

TEST_F(LineTypes, RangesOfATemplate) {
    auto entry = blank_entry<NAP_DSPU_TEMPLATE_DATA>();
    auto *owner = keep<VGA_DSPU_TEMPLATE>(node, &entry);
    auto range = blank_entry<NAP_DSLU_TEMPLATE>();
    range.min_nau = 1;
    range.max_nau = 255;
    ebcdic(range.host_lu_name, "HOSTPOOL");
    EXPECT_EQ(parts_of(VGA_VIEWER_DSLU_TEMPLATE, keep<VGA_DSLU_TEMPLATE>(owner, &range)).joined(),
              "NAU 1 to 255|HOSTPOOL|Held|");
    range.allow_timeout = range.delayed_logon = 1;
    EXPECT_EQ(parts_of(VGA_VIEWER_DSLU_TEMPLATE, keep<VGA_DSLU_TEMPLATE>(owner, &range)).joined(),
              "NAU 1 to 255|HOSTPOOL|Released if idle|Delayed logon");
}

TEST_F(LineTypes, ModesAndPrograms) {
    auto mode = blank_entry<NAP_MODE_DEF_DATA>();
    ebcdic(mode.mode_name, "");
    ebcdic(mode.mode_chars.cos_name, "#CONNECT");
    mode.mode_chars.plu_mode_session_limit = 8;
    mode.mode_chars.default_ru_size = 1;
    EXPECT_EQ(parts_of(VGA_VIEWER_MODE_DEF, keep<VGA_MODE_DEF>(node, &mode)).joined(),
              "(blank)|COS #CONNECT|8 sessions|RU default|");
    ebcdic(mode.mode_name, "#INTER");
    mode.mode_chars.default_ru_size = 0;
    mode.mode_chars.max_ru_size_low = 256;
    mode.mode_chars.max_ru_size_upp = 61440;
    EXPECT_EQ(parts_of(VGA_VIEWER_MODE_DEF, keep<VGA_MODE_DEF>(node, &mode)).texts[3],
              "RU 256 to 61440");

    auto tp = blank_entry<NAP_TP_DATA>();
    ebcdic(tp.tp_name, "ORDERS_RECEIVE");
    const std::tuple<NB_UCHAR, NB_UCHAR, const char *, const char *> securities[] = {
        {0, 0, "CLERKS", "No security"},
        {1, 0, "CLERKS", "Password"},
        {1, 1, "", "Password"},
        {1, 1, "FOURTEENLETTER", "List FOURTEENLETTER"},
    };
    for (const auto &[needed, looked_at, list, expected] : securities) {
        tp.def_data.conv_security = needed;
        tp.def_data.security_access = looked_at;
        local(tp.def_data.list_name, list);
        EXPECT_EQ(parts_of(VGA_VIEWER_TP_DEF, keep<VGA_TP_DEF>(node, &tp)).joined(),
                  std::string("ORDERS_RECEIVE|Disabled|") + expected + "|");
    }

    auto load = blank_entry<NAP_TP_LOAD_DATA>();
    memset(load.tp_name, 0x40, sizeof(load.tp_name));
    load.tp_name[0] = 0x21;
    load.tp_name[1] = 0xF0;
    local(load.lu_alias, "");
    load.def_data.tp_type = NAP_TP_QUEUED_BROADCAST;
    text(load.def_data.user_id, "payroll");
    text(load.def_data.path, "/opt/payroll/bin/receive");
    EXPECT_EQ(parts_of(VGA_VIEWER_TP_LOAD_INFO, keep<VGA_TP_LOAD_INFO>(node, &load)).joined(),
              "0x21F0|Any LU|Queued, broadcast|payroll|/opt/payroll/bin/receive");
}

TEST_F(LineTypes, Security) {
    auto user = blank_entry<NAP_USERID_PASSWORD_DATA>();
    ebcdic(user.user_id, "TENLETTERS");
    ebcdic(user.def_data.profile, "TENPROFILE");
    EXPECT_EQ(parts_of(VGA_VIEWER_CL_SECURITY, keep<VGA_CLSEC_DEF>(node, &user)).joined(),
              "TENLETTERS|Profile TENPROFILE|");
    ebcdic(user.def_data.profile, "");
    EXPECT_EQ(parts_of(VGA_VIEWER_CL_SECURITY, keep<VGA_CLSEC_DEF>(node, &user)).texts[1], "");

    auto password = blank_entry<NAP_LU_LU_PASSWORD_DATA>();
    local(password.lu_alias, "PAYROLL");
    ebcdic(password.fqplu_name, "NETWORK1.PARTNER8");
    password.def_data.verification = 1;
    EXPECT_EQ(parts_of(VGA_VIEWER_SL_SECURITY, keep<VGA_SLSEC_DEF>(node, &password)).joined(),
              "PAYROLL|NETWORK1.PARTNER8|Enhanced|");

    auto list = blank_entry<NAP_ACCESS_LIST_DATA>();
    local(list.list_name, "CLERKS");
    list.overlay_size = offsetof(NAP_ACCESS_LIST_DATA, def_data.users[2]);
    const std::pair<NB_USHORT, const char *> counts[] = {
        {0, "0 users"}, {2, "2 users"}, {65535, "2 users"}};
    for (const auto &[count, expected] : counts) {
        list.def_data.num_users = count;
        EXPECT_EQ(parts_of(VGA_VIEWER_ACCESS_LIST, keep<VGA_ACCESS_LIST>(node, &list)).texts[1],
                  expected);
    }
}

TEST_F(LineTypes, UsersAndTheirSessions) {
    auto user = blank_entry<NAP_USER_DATA>();
    user.overlay_size = offsetof(NAP_USER_DATA, def_data.sessions);
    memset(user.user_name, 'u', sizeof(user.user_name));
    user.def_data.num_sessions = 3; // but the entry has none
    user.def_data.is_group = 1;
    auto *owner = keep<VGA_USER>(gvga_system, &user);
    EXPECT_EQ(parts_of(VGA_VIEWER_USER, owner).joined(),
              "uuuuuuuuuuuuuuuuuuuuuuuuu|Group|0 sessions|No limit|");
    EXPECT_EQ(gvga_viewer_types[VGA_VIEWER_USER].choose_icon(owner), VGA_ICON_USERGROUP);

    auto session = blank_entry<NAP_USER_SESSION>();
    local(session.session_name, "SESS1");
    ebcdic(session.lu_name, "POOL1");
    ebcdic(session.fqplu_name, "NETA.AS400");
    const struct {
        NB_UCHAR session_class, type, model;
        NB_USHORT icon;
        const char *expected;
    } cases[] = {
        {NAP_USER_SESSION_3270, NAP_SESSION_DISPLAY, NAP_LU_3270_DISPLAY_MODEL_4, VGA_ICON_DISP3270,
         "SESS1|3270 model 4|POOL1|LU missing|"},
        {NAP_USER_SESSION_3270, NAP_SESSION_DISPLAY, 200, VGA_ICON_DISP3270,
         "SESS1|3270 model 2|POOL1|LU missing|"},
        {NAP_USER_SESSION_3270, NAP_SESSION_PRINTER, NAP_LU_3270_DISPLAY_MODEL_4,
         VGA_ICON_PRINT3270, "SESS1|3270 printer|POOL1|LU missing|"},
        {NAP_USER_SESSION_5250, NAP_SESSION_DISPLAY, NAP_LU_3270_DISPLAY_MODEL_4, VGA_ICON_DISP5250,
         "SESS1|5250 display|NETA.AS400|LU missing|"},
        {NAP_USER_SESSION_5250, 9, 0, VGA_ICON_LU5250, "SESS1|Unknown|NETA.AS400|LU missing|"},
    };
    for (const auto &row : cases) {
        session.session_class = row.session_class;
        session.session_type = row.type;
        session.model = row.model;
        auto *record = keep<VGA_USER_SESSION>(owner, &session);
        EXPECT_EQ(parts_of(VGA_VIEWER_USER_SESS, record).joined(), row.expected);
        EXPECT_EQ(gvga_viewer_types[VGA_VIEWER_USER_SESS].choose_icon(record), row.icon);
        record->mark = 1;
        EXPECT_EQ(parts_of(VGA_VIEWER_USER_SESS, record).texts[3], "Available");
    }

    status = {};
    text(status.key.user_name, "maria");
    local(status.key.session_name, "SESS1");
    strcpy(status.key.node_name, "berlin");
    status.status = NAP_IN_SESSION;
    ebcdic(status.lu_name, "LU0007");
    EXPECT_EQ(parts_of(VGA_VIEWER_USTAD, &status).joined(), "maria|SESS1|In use|LU0007|berlin");
}

TEST_F(LineTypes, PoolsCountWhatIsInThem) {
    auto entry = blank_entry<NAP_LU_POOL_DATA>();
    ebcdic(entry.pool_name, "PUBLIC");
    ebcdic(entry.lu_name, "");
    VGA_POOL *pool = vga_insert_vga_pool(vga_init_vga_pool(node, &entry));
    EXPECT_EQ(parts_of(VGA_VIEWER_POOL, pool->sys_pool).joined(), "PUBLIC|0 LUs|Nodes: 1|");
    ebcdic(entry.lu_name, "LU0001");
    ebcdic(entry.pu_name, "HOSTPU");
    entry.lu_active = 1;
    VGA_POOL_LU *lu = vga_insert_vga_pool_lu(vga_init_vga_pool_lu(pool, &entry));
    EXPECT_EQ(parts_of(VGA_VIEWER_POOL, pool->sys_pool).texts[1], "1 LUs");
    EXPECT_EQ(parts_of(VGA_VIEWER_POOL_LU, lu).joined(), "LU0001|SSCP|HOSTPU|berlin");
    pool->sys_pool->gui_data.viewer.laid_out = 1;
    vga_delete_vga_pool_lu(lu);
    EXPECT_EQ(pool->sys_pool->gui_data.viewer.laid_out, 0);
    EXPECT_EQ(parts_of(VGA_VIEWER_POOL, pool->sys_pool).texts[1], "0 LUs");
}

TEST_F(LineTypes, ProgramsAndWorkstationsOfTheDomain) {
    auto cpic = blank_entry<NAP_CPIC_DATA>();
    local(cpic.sym_dest_name, "ORDERS");
    ebcdic(cpic.def_data.partner_lu_name, "NETWORK1.PARTNER8");
    ebcdic(cpic.def_data.tp_name, "STOCKSERVER");
    ebcdic(cpic.def_data.mode_name, "#INTER");
    EXPECT_EQ(parts_of(VGA_VIEWER_CPIC, keep<VGA_CPIC>(gvga_system, &cpic)).joined(),
              "ORDERS|NETWORK1.PARTNER8|STOCKSERVER|#INTER|Any LU|");
    cpic.def_data.partner_is_alias = 1;
    local(cpic.def_data.partner_lu_name, "STOCK");
    EXPECT_EQ(parts_of(VGA_VIEWER_CPIC, keep<VGA_CPIC>(gvga_system, &cpic)).texts[1], "STOCK");

    auto rje = blank_entry<NAP_RJE_DATA>();
    local(rje.workstation_name, "WS01");
    text(rje.def_data.user_name, "print");
    ebcdic(rje.def_data.lu_names[0], "RJELU001");
    ebcdic(rje.def_data.lu_names[1], "RJELU002");
    const std::pair<NB_UCHAR, const char *> cases[] = {
        {0, "WS01|Any node|print||"},
        {2, "WS01|Any node|print|RJELU001 RJELU002|"},
        {255, "WS01|Any node|print|RJELU001 RJELU002   |"},
    };
    for (const auto &[count, expected] : cases) {
        rje.def_data.num_lus = count;
        EXPECT_EQ(parts_of(VGA_VIEWER_RJE, keep<VGA_RJE_WKSTN>(gvga_system, &rje)).joined(),
                  expected);
    }
}

TEST_F(LineTypes, TerminalClients) {
    auto client = blank_entry<NAP_TN_ACCESS_DATA>();
    client.address_type = NAP_TN_DEFAULT_RECORD;
    text(client.def_data.description, "Everybody");
    auto session = blank_entry<NAP_TN_SESSION>();
    ebcdic(session.display_lu_name, "PUBLIC");
    ebcdic(session.printer_lu_name, "");
    session.tn3270_support = 1;
    session.ssl_enabled = 2;
    auto *everybody = keep<VGA_TN_CLIENT>(node, &client);
    EXPECT_EQ(parts_of(VGA_VIEWER_TN_SESS, keep<VGA_TN_SESS>(everybody, &session)).joined(),
              "Default|Default|PUBLIC||TN3270E|Certificate|Everybody");
    client.address_type = NAP_TN_ADDRESS_IP;
    text(client.client_address, "10.0.0.7");
    session.port = 2323;
    text(session.description, "Till");
    auto *one = keep<VGA_TN_CLIENT>(node, &client);
    EXPECT_EQ(parts_of(VGA_VIEWER_TN_SESS, keep<VGA_TN_SESS>(one, &session)).joined(),
              "10.0.0.7|2323|PUBLIC||TN3270E|Certificate|Till");

    auto assoc = blank_entry<NAP_TN_ASSOC_DATA>();
    ebcdic(assoc.display_lu_name, "DISPLAY1");
    ebcdic(assoc.def_data.printer_lu_name, "PRINTER1");
    EXPECT_EQ(parts_of(VGA_VIEWER_TN_ASSOC, keep<VGA_TN_ASSOC>(node, &assoc)).joined(),
              "DISPLAY1|PRINTER1|");
}

// Events of the node window's lines.

TEST_F(LineTypes, LinesOfTheNodeWindowCanBeSelected) {
    auto data = blank_entry<NAP_LOCAL_LU_DATA>();
    ebcdic(data.lu_name, "ORDERS");
    VGA_LU62 *lu = vga_insert_vga_lu62(vga_init_vga_lu62(node, &data));
    std::vector<VGA_LS_ROUTING *> routings;
    for (const char *partner : {"NETA.A", "NETA.B"}) {
        auto entry = blank_entry<NAP_LS_ROUTING_DATA>();
        ebcdic(entry.lu_name, "ORDERS");
        ebcdic(entry.fqplu_name, partner);
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
