// What the lines of given records say.
#include "linesupport.h"
#include "scriptednof.h"
#include "vgagraph.h"
#include <tuple>

SCRIPTED_NOF_ENTRY

namespace {

using LineTexts = LineTest;

TEST_F(LineTexts, DownstreamAndPrimary) {
    auto pu = blank_entry<NAP_DOWN_PU_DATA>();
    auto lu = blank_entry<NAP_DOWN_LU_DATA>();
    set_ebcdic(lu.dslu_name, "DSLU01");
    set_ebcdic(lu.def_data.host_lu_name, "HOSTPOOL");
    set_ebcdic(lu.det_data.plu_name, "");
    lu.def_data.nau_address = 255;
    text(lu.def_data.description, "Till 4");
    auto *owner = keep<VGA_DOWN_PU>(node, &pu);
    EXPECT_EQ(parts_of(VGA_VIEWER_DOWN_LU, keep<VGA_DOWN_LU>(owner, &lu)).joined(),
              "DSLU01|Inactive|HOSTPOOL|NAU 255|Till 4");
    lu.det_data.lu_sscp_sess_active = lu.det_data.plu_sess_active = 1;
    set_ebcdic(lu.det_data.plu_name, "CICS");
    set_ebcdic(lu.det_data.used_lu_name, "HLU07");
    EXPECT_EQ(parts_of(VGA_VIEWER_DOWN_LU, keep<VGA_DOWN_LU>(owner, &lu)).joined(),
              "DSLU01|In use|HLU07|NAU 255|CICS");

    auto line = blank_entry<NAP_PRIMARY_LINE_DATA>();
    set_local(line.line_name, "LINE0");
    line.line_state = NAP_PENDING_ACTIVE;
    line.def_data.line_type = NAP_PORT_SWITCHED;
    memset(line.def_data.device, 'd', sizeof(line.def_data.device));
    auto *primary = keep<VGA_PRIMARY_LINE>(node, &line);
    EXPECT_EQ(parts_of(VGA_VIEWER_PRIMARY_LINE, primary).joined(),
              "LINE0|Starting|Switched|ddddddddddddddddd|");
    auto lu0 = blank_entry<NAP_PRIMARY_LU0_DATA>();
    set_ebcdic(lu0.lu_name, "ATM001");
    set_ebcdic(lu0.def_data.plu_name, "");
    lu0.appl_conn_active = 1;
    lu0.def_data.station_address = 254;
    lu0.def_data.nau_address = 255;
    EXPECT_EQ(parts_of(VGA_VIEWER_PRIMARY_LU0, keep<VGA_PRIMARY_LU0>(primary, &lu0)).joined(),
              "ATM001|Open|Any program|Addr 254 NAU 255|");
}

TEST_F(LineTexts, RoutingsAndConnections) {
    auto local_lu = blank_entry<NAP_LOCAL_LU_DATA>();
    auto *lu = keep<VGA_LU62>(node, &local_lu);
    auto routing = blank_entry<NAP_LS_ROUTING_DATA>();
    set_local(routing.def_data.ls_name, "TOHOST");
    set_ebcdic(routing.fqplu_name, "NETWORK1.PARTNER8");
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
    set_ebcdic(conn.rtp_name, "@R000001");
    set_ebcdic(conn.dest_cp_name, "NETA.PARIS");
    set_ebcdic(conn.cos_name, "#INTER");
    set_local(conn.first_hop_ls_name, "TOPARIS");
    conn.connect_state = NAP_RTP_SWITCHING;
    conn.sessions = 4294967295U;
    text(conn.route, "NETA.BERLIN -21- NETA.PARIS");
    EXPECT_EQ(parts_of(VGA_VIEWER_RTP_CONN, keep<VGA_RTP_CONN>(node, &conn)).joined(),
              "@R000001|Path switch|NETA.PARIS|TOPARIS|#INTER|4294967295|"
              "NETA.BERLIN -21- NETA.PARIS");

    auto session = blank_entry<NAP_TAMRIX_SESSION_DATA>();
    session.session_number = 7;
    session.session_state = NAP_ACTIVE;
    set_ebcdic(session.lu_name, "ORDERS");
    set_ebcdic(session.fqplu_name, "NETA.STOCK");
    set_ebcdic(session.mode_name, "#BATCH");
    session.remote_ip_address = {NAP_IPV4_ADDRESS, {192, 168, 100, 255}, {}};
    session.remote_port = 65535;
    auto *appcip = keep<VGA_TAMRIX_APPCIP_SESS>(node, &session);
    EXPECT_EQ(parts_of(VGA_VIEWER_APPCIP_SESS, appcip).joined(),
              "7|Active|ORDERS|NETA.STOCK|#BATCH|192.168.100.255:65535|This node");
}

TEST_F(LineTexts, RangesOfATemplate) {
    auto entry = blank_entry<NAP_DSPU_TEMPLATE_DATA>();
    auto *owner = keep<VGA_DSPU_TEMPLATE>(node, &entry);
    auto range = blank_entry<NAP_DSLU_TEMPLATE>();
    range.min_nau = 1;
    range.max_nau = 255;
    set_ebcdic(range.host_lu_name, "HOSTPOOL");
    EXPECT_EQ(parts_of(VGA_VIEWER_DSLU_TEMPLATE, keep<VGA_DSLU_TEMPLATE>(owner, &range)).joined(),
              "NAU 1 to 255|HOSTPOOL|Held|");
    range.allow_timeout = range.delayed_logon = 1;
    EXPECT_EQ(parts_of(VGA_VIEWER_DSLU_TEMPLATE, keep<VGA_DSLU_TEMPLATE>(owner, &range)).joined(),
              "NAU 1 to 255|HOSTPOOL|Released if idle|Delayed logon");
}

TEST_F(LineTexts, ModesAndPrograms) {
    auto mode = blank_entry<NAP_MODE_DEF_DATA>();
    set_ebcdic(mode.mode_name, "");
    set_ebcdic(mode.mode_chars.cos_name, "#CONNECT");
    mode.mode_chars.plu_mode_session_limit = 8;
    mode.mode_chars.default_ru_size = 1;
    EXPECT_EQ(parts_of(VGA_VIEWER_MODE_DEF, keep<VGA_MODE_DEF>(node, &mode)).joined(),
              "(blank)|COS #CONNECT|8 sessions|RU default|");
    set_ebcdic(mode.mode_name, "#INTER");
    mode.mode_chars.default_ru_size = 0;
    mode.mode_chars.max_ru_size_low = 256;
    mode.mode_chars.max_ru_size_upp = 61440;
    EXPECT_EQ(parts_of(VGA_VIEWER_MODE_DEF, keep<VGA_MODE_DEF>(node, &mode)).texts[3],
              "RU 256 to 61440");

    auto tp = blank_entry<NAP_TP_DATA>();
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

    auto load = blank_entry<NAP_TP_LOAD_DATA>();
    memset(load.tp_name, 0x40, sizeof(load.tp_name));
    load.tp_name[0] = 0x21;
    load.tp_name[1] = 0xF0;
    set_local(load.lu_alias, "");
    load.def_data.tp_type = NAP_TP_QUEUED_BROADCAST;
    text(load.def_data.user_id, "payroll");
    text(load.def_data.path, "/opt/payroll/bin/receive");
    EXPECT_EQ(parts_of(VGA_VIEWER_TP_LOAD_INFO, keep<VGA_TP_LOAD_INFO>(node, &load)).joined(),
              "0x21F0|Any LU|Queued, broadcast|payroll|/opt/payroll/bin/receive");
}

TEST_F(LineTexts, Security) {
    auto user = blank_entry<NAP_USERID_PASSWORD_DATA>();
    set_ebcdic(user.user_id, "TENLETTERS");
    set_ebcdic(user.def_data.profile, "TENPROFILE");
    EXPECT_EQ(parts_of(VGA_VIEWER_CL_SECURITY, keep<VGA_CLSEC_DEF>(node, &user)).joined(),
              "TENLETTERS|Profile TENPROFILE|");
    set_ebcdic(user.def_data.profile, "");
    EXPECT_EQ(parts_of(VGA_VIEWER_CL_SECURITY, keep<VGA_CLSEC_DEF>(node, &user)).texts[1], "");

    auto password = blank_entry<NAP_LU_LU_PASSWORD_DATA>();
    set_local(password.lu_alias, "PAYROLL");
    set_ebcdic(password.fqplu_name, "NETWORK1.PARTNER8");
    password.def_data.verification = 1;
    EXPECT_EQ(parts_of(VGA_VIEWER_SL_SECURITY, keep<VGA_SLSEC_DEF>(node, &password)).joined(),
              "PAYROLL|NETWORK1.PARTNER8|Enhanced|");

    auto list = blank_entry<NAP_ACCESS_LIST_DATA>();
    set_local(list.list_name, "CLERKS");
    list.overlay_size = offsetof(NAP_ACCESS_LIST_DATA, def_data.users[2]);
    const std::pair<NB_USHORT, const char *> counts[] = {
        {0, "0 users"}, {2, "2 users"}, {65535, "2 users"}};
    for (const auto &[count, expected] : counts) {
        list.def_data.num_users = count;
        EXPECT_EQ(parts_of(VGA_VIEWER_ACCESS_LIST, keep<VGA_ACCESS_LIST>(node, &list)).texts[1],
                  expected);
    }
}

TEST_F(LineTexts, UsersAndTheirSessions) {
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
    set_local(status.key.session_name, "SESS1");
    strcpy(status.key.node_name, "berlin");
    status.status = NAP_IN_SESSION;
    set_ebcdic(status.lu_name, "LU0007");
    EXPECT_EQ(parts_of(VGA_VIEWER_USTAD, &status).joined(), "maria|SESS1|In use|LU0007|berlin");
}

TEST_F(LineTexts, PoolsCountWhatIsInThem) {
    auto entry = blank_entry<NAP_LU_POOL_DATA>();
    set_ebcdic(entry.pool_name, "PUBLIC");
    set_ebcdic(entry.lu_name, "");
    VGA_POOL *pool = vga_insert_vga_pool(vga_init_vga_pool(node, &entry));
    EXPECT_EQ(parts_of(VGA_VIEWER_POOL, pool->sys_pool).joined(), "PUBLIC|0 LUs|Nodes: 1|");
    set_ebcdic(entry.lu_name, "LU0001");
    set_ebcdic(entry.pu_name, "HOSTPU");
    entry.lu_active = 1;
    VGA_POOL_LU *lu = vga_insert_vga_pool_lu(vga_init_vga_pool_lu(pool, &entry));
    EXPECT_EQ(parts_of(VGA_VIEWER_POOL, pool->sys_pool).texts[1], "1 LUs");
    EXPECT_EQ(parts_of(VGA_VIEWER_POOL_LU, lu).joined(), "LU0001|SSCP|HOSTPU|berlin");
    pool->sys_pool->gui_data.viewer.laid_out = 1;
    vga_delete_vga_pool_lu(lu);
    EXPECT_EQ(pool->sys_pool->gui_data.viewer.laid_out, 0);
    EXPECT_EQ(parts_of(VGA_VIEWER_POOL, pool->sys_pool).texts[1], "0 LUs");
}

TEST_F(LineTexts, ProgramsAndWorkstationsOfTheDomain) {
    auto cpic = blank_entry<NAP_CPIC_DATA>();
    set_local(cpic.sym_dest_name, "ORDERS");
    set_ebcdic(cpic.def_data.partner_lu_name, "NETWORK1.PARTNER8");
    set_ebcdic(cpic.def_data.tp_name, "STOCKSERVER");
    set_ebcdic(cpic.def_data.mode_name, "#INTER");
    EXPECT_EQ(parts_of(VGA_VIEWER_CPIC, keep<VGA_CPIC>(gvga_system, &cpic)).joined(),
              "ORDERS|NETWORK1.PARTNER8|STOCKSERVER|#INTER|Any LU|");
    cpic.def_data.partner_is_alias = 1;
    set_local(cpic.def_data.partner_lu_name, "STOCK");
    EXPECT_EQ(parts_of(VGA_VIEWER_CPIC, keep<VGA_CPIC>(gvga_system, &cpic)).texts[1], "STOCK");

    auto rje = blank_entry<NAP_RJE_DATA>();
    set_local(rje.workstation_name, "WS01");
    text(rje.def_data.user_name, "print");
    set_ebcdic(rje.def_data.lu_names[0], "RJELU001");
    set_ebcdic(rje.def_data.lu_names[1], "RJELU002");
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

TEST_F(LineTexts, TerminalClients) {
    auto client = blank_entry<NAP_TN_ACCESS_DATA>();
    client.address_type = NAP_TN_DEFAULT_RECORD;
    text(client.def_data.description, "Everybody");
    auto session = blank_entry<NAP_TN_SESSION>();
    set_ebcdic(session.display_lu_name, "PUBLIC");
    set_ebcdic(session.printer_lu_name, "");
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
    set_ebcdic(assoc.display_lu_name, "DISPLAY1");
    set_ebcdic(assoc.def_data.printer_lu_name, "PRINTER1");
    EXPECT_EQ(parts_of(VGA_VIEWER_TN_ASSOC, keep<VGA_TN_ASSOC>(node, &assoc)).joined(),
              "DISPLAY1|PRINTER1|");
}

} // namespace
