// The lines of every type: no record, whatever it holds, breaks the columns of its list.
#include <gtest/gtest.h> // before the X headers, whose macros it cannot bear

#include "checkedmodel.h"
#include "graphics.h"
#include "linetable.h"
#include "messages.h"
#include "nodewindowlines.h"
#include "recordtypes.h"
#include "scriptednof.h"
#include "testrecords.h"
#include "vgadsadd.h"
#include "vgadsdel.h"
#include <clocale>
#include <filesystem>
#include <map>
#include <nl_types.h>
#include <tuple>

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

PARTS parts_of(NB_USHORT type, NB_VOID *record,
               decltype(VGA_VIEWER_DESC::create_text) create = nullptr) {
    NB_CHAR buffer[VGA_VIEWER_TEXT_BUFFER + 1];
    const VGA_VIEWER_DESC &desc = gvga_viewer_types[type];
    const NB_USHORT length = (create != nullptr ? create : desc.create_text)(record, buffer);
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
        auto entry = new_entry<NAP_NODE_ALL_DATA>();
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
        check_model();
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
     {26, 42, 57, 75}},
    {{VGA_VIEWER_LU62, VGA_VIEWER_MODE, VGA_VIEWER_LS_R_TITLE, VGA_VIEWER_LS_R}, {26, 44, 57}},
    {{VGA_VIEWER_REM_SYS, VGA_VIEWER_REM_PLU, VGA_VIEWER_REM_PLU_LEAF, VGA_VIEWER_REM_SESS},
     {26, 44}},
    {{VGA_VIEWER_USER, VGA_VIEWER_USER_SESS}, {26, 41, 61, 75}},
    {{VGA_VIEWER_POOL, VGA_VIEWER_POOL_LU}, {26, 42, 56}},
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
                auto *state = gvga_viewer_types[type].choose_state;
                EXPECT_TRUE(state == nullptr || state(record) < VGA_LINE_STATES) << type;
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
    for (NB_USHORT type = 0; type < VGA_VIEWER_TYPE_COUNT; type++) {
        auto *headings = gvga_viewer_types[type].create_headings;
        ASSERT_NE(headings, nullptr) << type;
        const PARTS parts = parts_of(type, nullptr, headings);
        EXPECT_EQ(parts.columns, columns[type]) << type;
        EXPECT_EQ(std::count(parts.texts.begin(), parts.texts.end(), ""), 0) << type;
    }
}

TEST_F(LineTypes, TextsAreWholeAndMadeHarmless) {
    auto entry = new_entry<NAP_TN_REDIRECT_DATA>();
    entry.address_type = NAP_TN_ADDRESS_NAME;
    entry.client_port = 65535;
    memset(entry.client_address, 'c', sizeof(entry.client_address));
    text(entry.def_data.host_address, "%t99a%t5%b%%\t\nc");
    text(entry.def_data.description, "%t7");
    EXPECT_EQ(parts_of(VGA_VIEWER_TN_REDIRECT, keep<VGA_TN_REDIRECT>(node, &entry)).joined(),
              std::string(sizeof(entry.client_address), 'c') +
                  "|65535|% t99a% t5%b%%  c|0|No|No|% t7");

    ASSERT_NE(setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    text(entry.def_data.host_address, "a\xe4"
                                      "b");
    const PARTS parts = parts_of(VGA_VIEWER_TN_REDIRECT, keep<VGA_TN_REDIRECT>(node, &entry));
    setlocale(LC_CTYPE, "C");
    EXPECT_EQ(parts.texts[2], "a?b");
}

// What a line says depends on several fields, on what an entry has of what it counts, or on
// nothing.
TEST_F(LineTypes, WordsFollowTheFieldsThatTheyDependOn) {
    auto tp = new_entry<NAP_TP_DATA>();
    set_ebcdic(tp.tp_name, "ORDERS_RECEIVE");
    const std::tuple<NB_UCHAR, NB_UCHAR, const char *, const char *> securities[] = {
        {0, 0, "CLERKS", "No security"},
        {1, 0, "CLERKS", "Password"},
        {1, 1, "", "Password"},
        {1, 1, "FOURTEENLETTER", "List FOURTEENLETTER"},
    };
    for (const auto &[needed, looked_at, list, expected] : securities) {
        tp.def_data.conv_security = needed;
        tp.def_data.security_access = looked_at;
        set_local(tp.def_data.list_name, list);
        EXPECT_EQ(parts_of(VGA_VIEWER_TP_DEF, keep<VGA_TP_DEF>(node, &tp)).joined(),
                  std::string("ORDERS_RECEIVE|Disabled|") + expected + "|");
    }

    auto list = new_entry<NAP_ACCESS_LIST_DATA>();
    list.overlay_size = offsetof(NAP_ACCESS_LIST_DATA, def_data.users[2]);
    for (const NB_USHORT count : {0, 2, 65535}) {
        list.def_data.num_users = count;
        EXPECT_EQ(parts_of(VGA_VIEWER_ACCESS_LIST, keep<VGA_ACCESS_LIST>(node, &list)).texts[1],
                  count == 0 ? "0 users" : "2 users");
    }

    auto rje = new_entry<NAP_RJE_DATA>();
    set_local(rje.workstation_name, "WS01");
    set_ebcdic(rje.def_data.lu_names[0], "RJELU001");
    rje.def_data.num_lus = 255;
    EXPECT_EQ(parts_of(VGA_VIEWER_RJE, keep<VGA_RJE_WKSTN>(gvga_system, &rje)).joined(),
              "WS01|Any node||RJELU001    |");

    auto client = new_entry<NAP_TN_ACCESS_DATA>();
    client.address_type = NAP_TN_DEFAULT_RECORD;
    text(client.def_data.description, "Everybody");
    NAP_TN_SESSION session = {};
    set_ebcdic(session.display_lu_name, "PUBLIC");
    set_ebcdic(session.printer_lu_name, "");
    session.tn3270_support = 1;
    session.ssl_enabled = 2;
    auto *everybody = keep<VGA_TN_CLIENT>(node, &client);
    EXPECT_EQ(parts_of(VGA_VIEWER_TN_SESS, keep<VGA_TN_SESS>(everybody, &session)).joined(),
              "Default|Default|PUBLIC||TN3270E|Certificate|Everybody");
}

TEST_F(LineTypes, UsersAndTheirSessions) {
    auto user = new_entry<NAP_USER_DATA>();
    user.overlay_size = offsetof(NAP_USER_DATA, def_data.sessions);
    memset(user.user_name, 'u', sizeof(user.user_name));
    user.def_data.num_sessions = 3; // but the entry has none
    user.def_data.is_group = 1;
    auto *owner = keep<VGA_USER>(gvga_system, &user);
    EXPECT_EQ(parts_of(VGA_VIEWER_USER, owner).joined(),
              std::string(sizeof(user.user_name), 'u') + "|Group|0 sessions|No limit|");
    EXPECT_EQ(gvga_viewer_types[VGA_VIEWER_USER].choose_icon(owner), VGA_ICON_USERGROUP);

    NAP_USER_SESSION session = {};
    set_local(session.session_name, "SESS1");
    set_ebcdic(session.lu_name, "POOL1");
    set_ebcdic(session.fqplu_name, "NETA.AS400");
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
}

TEST_F(LineTypes, WhatWentDownByItselfHasFailed) {
    const auto state_of = [](VGA_VIEWER_TYPE type, const NB_VOID *record) {
        return gvga_viewer_types[type].choose_state(record);
    };
    auto *port = filled<VGA_PORT>(filled<VGA_DLC>(node, 0, false), 0, false);
    auto *ls = filled<VGA_LS>(port, 0, false);
    EXPECT_EQ(state_of(VGA_VIEWER_PORT, port), VGA_LINE_INACTIVE);
    EXPECT_EQ(state_of(VGA_VIEWER_LS, ls), VGA_LINE_INACTIVE);
    port->vcb->det_data.failed_at = ls->vcb->det_data.failed_at = 1;
    EXPECT_EQ(state_of(VGA_VIEWER_PORT, port), VGA_LINE_FAILED);
    EXPECT_EQ(state_of(VGA_VIEWER_LS_LEAF, ls), VGA_LINE_FAILED);
    port->vcb->det_data.port_state = NAP_ACTIVE;
    ls->state = NAP_PENDING_ACTIVE;
    EXPECT_EQ(state_of(VGA_VIEWER_PORT, port), VGA_LINE_ACTIVE);
    EXPECT_EQ(state_of(VGA_VIEWER_LS, ls), VGA_LINE_CHANGING) << "it is being tried again";
    node->node_state = NAP_NODE_ACTIVE;
    node->connection = VGA_CONNECTED;
    EXPECT_EQ(state_of(VGA_VIEWER_NODE, node), VGA_LINE_ACTIVE);
    node->connection = VGA_NOT_CONNECTED;
    EXPECT_EQ(state_of(VGA_VIEWER_NODE, node), VGA_LINE_FAILED);
}

TEST_F(LineTypes, PoolsCountWhatIsInThem) {
    auto entry = new_entry<NAP_LU_POOL_DATA>();
    set_ebcdic(entry.pool_name, "PUBLIC");
    set_ebcdic(entry.lu_name, "");
    VGA_POOL *pool = vga_insert_vga_pool(vga_init_vga_pool(node, &entry));
    EXPECT_EQ(parts_of(VGA_VIEWER_POOL, pool->sys_pool).joined(), "PUBLIC|0 LUs|Nodes: 1|");
    set_ebcdic(entry.lu_name, "LU0001");
    set_ebcdic(entry.pu_name, "HOSTPU");
    entry.lu_active = 1;
    VGA_POOL_LU *lu = vga_insert_vga_pool_lu(vga_init_vga_pool_lu(pool, &entry));
    EXPECT_EQ(parts_of(VGA_VIEWER_POOL, pool->sys_pool).texts[1], "1 LUs");
    EXPECT_EQ(parts_of(VGA_VIEWER_POOL_LU, lu).joined(), "LU0001|Ready for logon|HOSTPU|berlin");
    pool->sys_pool->gui_data.viewer.laid_out = 1;
    vga_delete_vga_pool_lu(lu);
    EXPECT_EQ(pool->sys_pool->gui_data.viewer.laid_out, 0);
    EXPECT_EQ(parts_of(VGA_VIEWER_POOL, pool->sys_pool).texts[1], "0 LUs");
}

} // namespace
