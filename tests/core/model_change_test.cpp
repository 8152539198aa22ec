/* What redefinitions and deletions leave of a model that was made record by record. */
#include <gtest/gtest.h>

#include "modelrecords.h"
#include "partners.h"
#include "reports.h"
#include "vgadsbld.h"
#include <map>
#include <random>
#include <set>

SCRIPTED_NOF_ENTRY

namespace {

class ModelChange : public MODEL_RECORDS {
protected:
    void SetUp() override {
        MODEL_RECORDS::SetUp();
        dlc = add_dlc(node, "LAN0");
        port = add_port(dlc, "ETH0");
    }

    VGA_LOCAL_PU *put_pu(const std::string &name, NB_UCHAR attachment = NAP_DIRECT_ATTACHED,
                         const std::string &ls = "") const {
        auto entry = new_entry<NAP_PU_DATA>();
        set_ebcdic(entry.pu_name, name);
        set_local(entry.def_data.ls_name, ls);
        entry.host_attachment = attachment;
        return vga_insert_vga_local_pu(vga_init_vga_local_pu(node, &entry));
    }

    VGA_DLC *dlc;
    VGA_PORT *port;
};

/* The dialog hears of it first, and must have shown that record. */
TEST_F(ModelChange, ADeletedPortLetsGoOfItsDialog) {
    static const NB_VOID *shown, *told;
    gvga_hooks.record_changed = [](NB_VOID *item, VGA_RECORD_CHANGE) { told = item; };
    gvga_hooks.record_leaves_dialog = [](VGA_DIALOG *, const NB_VOID *record) {
        return NB_USHORT{told == record && shown == record};
    };
    REPORTS reports;
    for (const bool refers_to_it : {true, false}) {
        VGA_PORT *gone = add_port(dlc, "ETH1");
        shown = refers_to_it ? static_cast<NB_VOID *>(gone) : node;
        gone->gui_data.dialog = reinterpret_cast<VGA_DIALOG *>(&shown);
        vga_delete_vga_port(gone);
        const bool silent =
            reports.take().find("port->gui_data.dialog->parent_item == (NB_VOID *)port") ==
            std::string::npos;
        EXPECT_EQ(silent, refers_to_it);
    }
}

/* Whatever the order in which link stations and PUs are redefined and go, neither refers to one
 * that is not there, and the LUs' lines stand below the link station that their PU is on. */
TEST_F(ModelChange, APuAndItsLinkStationChangePartners) {
    for (const bool host_goes_first : {true, false}) {
        VGA_LS *host = add_ls(port, "HOST", NAP_ADJ_HOST, "HOSTPU");
        VGA_LS *other = add_ls(port, "OTHER", NAP_ADJ_HOST, "");
        VGA_LOCAL_PU *pu = host->local_pu;
        VGA_LU03 *lu = add_lu03(pu, "LU1");
        EXPECT_EQ(lu->gui_data.viewer.parent, &host->gui_data.viewer);

        EXPECT_EQ(add_ls(port, "HOST", NAP_ADJ_HOST, "NEWPU"), host);
        EXPECT_NE(host->local_pu, pu);
        EXPECT_EQ(pu->ls_entry, nullptr);
        EXPECT_EQ(lu->gui_data.list, nullptr);
        check_model();

        put_pu("HOSTPU", NAP_DIRECT_ATTACHED, "HOST");
        EXPECT_EQ(host->local_pu, pu);
        EXPECT_EQ(put_pu("HOSTPU", NAP_DIRECT_ATTACHED, "OTHER"), pu);
        EXPECT_EQ(host->local_pu, nullptr);
        EXPECT_EQ(other->local_pu, pu);
        EXPECT_EQ(lu->gui_data.viewer.parent, &other->gui_data.viewer);
        check_model();

        add_ls(port, "HOST", NAP_ADJ_HOST, "NEWPU");
        EXPECT_NE(host->local_pu, nullptr);
        EXPECT_EQ(add_ls(port, "HOST", NAP_ADJ_DOWNSTREAM, "BELOW"), host);
        VGA_DOWN_PU *below = host->down_pu;
        ASSERT_NE(below, nullptr);
        vga_delete_vga_ls(host_goes_first ? host : other);
        check_model();
        EXPECT_EQ(below->ls_entry, host_goes_first ? nullptr : host)
            << "the PU of the host goes with the link station, this one stays";
        EXPECT_EQ(ntl_avl_validate(&gvga_system->dependent_lus), host_goes_first ? 1 : 0);
        vga_delete_vga_down_pu(below);
        vga_delete_vga_ls(host_goes_first ? other : host);
        check_model();
        EXPECT_EQ(ntl_avl_validate(&node->local_pus), 0);
    }
}

/* Whoever was heard of last has the alias, and at the end everybody has the one of the list. */
TEST_F(ModelChange, AliasesAreSwappedAndPassedOn) {
    constexpr size_t count = 7;
    REPORTS reports;
    std::vector<std::string> aliases;
    for (size_t at = 0; at < count; at++) {
        aliases.push_back("ALIAS" + std::to_string(at));
    }
    for (unsigned seed = 1; seed <= 20; seed++) {
        std::mt19937 random(seed);
        std::shuffle(aliases.begin(), aliases.end(), random);
        for (size_t at = 0; at < count; at++) {
            VGA_LU62 *lu = add_lu62(node, "LU" + std::to_string(at), aliases[at]);
            EXPECT_EQ(vga_find_lu62_by_alias(node, LOCAL<8>(aliases[at]).bytes), lu);
            check_model();
        }
        EXPECT_EQ(ntl_avl_validate(&node->lu_aliases), NB_LONG{count});
    }
    EXPECT_EQ(reports.take(), "");
}

/* A PU has a line of its own while it is served over the network. */
TEST_F(ModelChange, APuServedByADependentLuServerMayChange) {
    vga_insert_vga_dlur_fake_port(vga_init_vga_dlur_fake_port(node));
    VGA_LS *host = add_ls(port, "HOST", NAP_ADJ_HOST, "SERVED");
    VGA_LOCAL_PU *pu = host->local_pu;
    VGA_LU03 *lu = add_lu03(pu, "LU1");
    for (int round = 0; round < 2; round++) {
        EXPECT_EQ(put_pu("SERVED", NAP_DLUR_ATTACHED), pu);
        EXPECT_EQ(lu->gui_data.viewer.parent, &pu->gui_data.viewer);
        check_model();
        EXPECT_EQ(put_pu("SERVED", NAP_DIRECT_ATTACHED, "HOST"), pu);
        EXPECT_EQ(pu->gui_data.list, nullptr);
        EXPECT_EQ(lu->gui_data.viewer.parent, &host->gui_data.viewer);
        check_model();
    }
}

/* Behind any number of PUs that have no line, a new line's place costs the logarithm. */
TEST_F(ModelChange, ALinesPlaceIsNotWalkedTo) {
    static size_t comparisons;
    constexpr int direct = 5000;
    vga_insert_vga_dlur_fake_port(vga_init_vga_dlur_fake_port(node));
    put_pu("A", NAP_DLUR_ATTACHED);
    for (int number = 0; number < direct; number++) {
        put_pu("M" + std::to_string(number));
    }
    node->local_pus.compare = [](const NB_VOID *one, const NB_VOID *other) {
        comparisons++;
        return vga_compare_ebc8(one, other);
    };
    for (int number = 0; number < 20; number++) {
        put_pu("Z" + std::to_string(number), NAP_DLUR_ATTACHED);
        put_pu("N" + std::to_string(number), NAP_DLUR_ATTACHED);
    }
    EXPECT_LT(comparisons, 40U * 60);
    check_model();
}

/* A partner stands where it was last heard to be, and as long as anything names it. */
TEST_F(ModelChange, PartnersFollowWhatNamesThem) {
    VGA_LU62 *lu = add_lu62(node, "LU", "LU");
    const EBCDIC<17> partner("NETA.PARTNER");
    const auto where = [&] {
        const VGA_REM_PLU *plu = vga_find_rem_plu(node, partner.bytes, NAP_DIR_LU);
        if (plu == nullptr) {
            return std::string("gone");
        }
        NB_CHAR text[18] = {};
        memcpy(text, plu->parent->name, sizeof(plu->parent->name));
        nba_ebcdic_to_local(reinterpret_cast<NB_UCHAR *>(text), sizeof(plu->parent->name));
        return std::string(text, strcspn(text, " "));
    };
    const auto put_dir = [&](const std::string &cp) {
        auto entry = new_entry<NAP_DIR_DATA>();
        set_ebcdic(entry.fqcp_name, cp);
        memcpy(entry.resource_name, partner.bytes, sizeof(entry.resource_name));
        entry.resource_type = NAP_DIR_LU;
        return vga_insert_vga_dir(vga_init_vga_dir(node, &entry));
    };
    const auto put_mode = [&](const std::string &cp, NB_USHORT sessions) {
        auto entry = new_entry<NAP_MODE_DATA>();
        set_local(entry.lu_alias, "LU");
        set_ebcdic(entry.mode_name, "#INTER");
        memcpy(entry.fqplu_name, partner.bytes, sizeof(entry.fqplu_name));
        set_ebcdic(entry.fq_cp_name, cp);
        entry.act_sess_count = sessions;
        return vga_insert_vga_mode(vga_init_vga_mode(lu, &entry));
    };
    VGA_MODE *mode = put_mode("", 0);
    EXPECT_EQ(where(), "");
    VGA_DIR *first = put_dir("NETA.CP1");
    EXPECT_EQ(where(), "NETA.CP1");
    VGA_DIR *second = put_dir("NETA.CP2");
    EXPECT_EQ(where(), "NETA.CP2");
    EXPECT_EQ(put_mode("NETA.CP3", 2), mode);
    EXPECT_EQ(where(), "NETA.CP3");
    EXPECT_EQ(AVL_IN_TREE(mode->partner.plu->links), true);
    check_model();
    vga_delete_vga_mode(mode);
    EXPECT_EQ(where(), "NETA.CP2");
    vga_delete_vga_dir(second);
    EXPECT_EQ(where(), "NETA.CP1");
    check_model();
    mode = put_mode("", 1);
    vga_delete_vga_dir(first);
    EXPECT_EQ(where(), "") << "a session still names it, and nobody says where it is";
    EXPECT_EQ(AVL_FIRST(node->remote_systems), nullptr);
    check_model();
    mode->partner.plu->defined = 1;
    vga_delete_vga_lu62(lu);
    EXPECT_EQ(where(), "");
    vga_undefine_rem_plu(vga_find_rem_plu(node, partner.bytes, NAP_DIR_LU));
    EXPECT_EQ(where(), "gone");
    check_model();
}

/* Owners that come and go while their lists are read: one cursor goes by their names, and nobody
 * behind it is left out or asked twice. */
TEST_F(ModelChange, OwnersAreEachAskedForOnceWhateverMoves) {
    for (int number = 10; number < 60; number++) {
        add_lu62(node, "LU" + std::to_string(number), "A" + std::to_string(99 - number));
    }
    vga_build_next_action(VGA_PHASE_LOCAL_LUS, node);
    std::map<NB_USHORT, std::multiset<std::string>> asked;
    std::mt19937 random(11);
    for (int round = 0; !scripted_nof.in_flight.empty(); round++) {
        const auto query = issued_block();
        asked[query.opcode].insert(std::string(reinterpret_cast<const char *>(query.key), 3));
        answer_list({});
        if (round == 4) {
            vga_delete_vga_lu62(vga_find_lu62(node, EBCDIC<8>("LU11").bytes)); // behind the cursor
            vga_delete_vga_lu62(vga_find_lu62(node, EBCDIC<8>("LU40").bytes)); // before it
            add_lu62(node, "LU12X", "B00");
            add_lu62(node, "LU50X", "B01");
            add_lu62(node, "LU45", "A46"); // which was that of LU53
            add_lu62(node, "LU53", "A54");
        }
    }
    for (const NB_USHORT opcode :
         {NAP_QUERY_PARTNER_LU, NAP_QUERY_MODE, NAP_QUERY_LU_LU_PASSWORD}) {
        for (int number = 30; number < 60; number++) {
            const std::string alias = "A" + std::to_string(99 - number);
            EXPECT_EQ(asked[opcode].count(alias), number == 40 ? 0U : 1U) << alias;
        }
        EXPECT_EQ(asked[opcode].count("B01"), 1U);
        EXPECT_EQ(asked[opcode].count("B00"), 0U) << "read by its own build";
    }
}

/* What a build that was started again had under way clears none of the new one's flags, and what
 * its late answers bring is closed. */
TEST_F(ModelChange, AnOldBuildsAnswersClearNothing) {
    vga_start_build_node(node);
    EXPECT_EQ(node->connection, VGA_CONNECTING);
    vga_start_build_node(node);
    ASSERT_EQ(scripted_nof.in_flight.size(), 2U);
    const auto connect = [](NB_ULONG target) {
        reinterpret_cast<NAP_CONNECT_NODE_VERB *>(scripted_nof.in_flight[0].vcb)->target_handle =
            target;
        scripted_nof.complete(0);
    };
    connect(8);
    EXPECT_EQ(node->connection, VGA_CONNECTING);
    EXPECT_EQ(issued_block<NAP_VCB>(1).opcode, NAP_DISCONNECT_NODE);
    EXPECT_EQ(scripted_nof.in_flight[1].target, 8U);
    connect(9);
    EXPECT_EQ(node->connection, VGA_CONNECTED);
    EXPECT_EQ(node->target, 9U);
    NB_CHAR before[VGA_NODE_CHAINS + 1];
    vga_check_node_startup(node, &before);
    const auto old = *std::find_if(scripted_nof.in_flight.begin(), scripted_nof.in_flight.end(),
                                   [](const ISSUED_VERB &verb) { return verb.target == 9; });
    vga_start_build_node(node);
    while (scripted_nof.in_flight[0].vcb != old.vcb) {
        scripted_nof.in_flight.erase(scripted_nof.in_flight.begin());
    }
    scripted_nof.complete(0, NAP_COMM_FAILURE, NAP_NODE_GONE);
    NB_CHAR flags[VGA_NODE_CHAINS + 1];
    vga_check_node_startup(node, &flags);
    EXPECT_EQ(std::string(flags), std::string(VGA_NODE_CHAINS, '1'));
    EXPECT_EQ(node->connection, VGA_CONNECTING);
}

TEST_F(ModelChange, ALinkStationProposesThePuName) {
    const auto proposed = [this](const std::string &ls) {
        NB_UCHAR name[8];
        vga_ls_to_pu_name(node, LOCAL<8>(ls).bytes, name);
        nba_ebcdic_to_local(name, sizeof(name));
        const std::string text(reinterpret_cast<const char *>(name), sizeof(name));
        put_pu(text);
        return text;
    };
    EXPECT_EQ(proposed("ls-01"), "LS01    ");
    EXPECT_EQ(proposed("LS01"), "LS011   ");
    EXPECT_EQ(proposed("abcdefgh"), "ABCDEFGH");
    EXPECT_EQ(proposed("abcdefgh"), "ABCDEFG1");
    EXPECT_EQ(proposed(""), "PU      ");
}

/* No indication tells of them: those that a list does not have any more are gone. */
TEST_F(ModelChange, RtpConnectionsAreReadAnew) {
    const auto entry = [](const std::string &name) {
        auto data = new_entry<NAP_RTP_CONN_DATA>();
        set_ebcdic(data.rtp_name, name);
        const auto *bytes = reinterpret_cast<const NB_UCHAR *>(&data);
        return BYTES(bytes, bytes + sizeof(data));
    };
    vga_start_build_rtp_conns(node);
    answer_list({entry("@R1"), entry("@R2")});
    const NB_VOID *kept = ntl_avl_find(&node->rtp_conns, EBCDIC<8>("@R2").bytes);
    vga_start_build_rtp_conns(node);
    answer_list({entry("@R2"), entry("@R3")});
    EXPECT_EQ(AVL_FIRST(node->rtp_conns), kept);
    EXPECT_EQ(ntl_avl_validate(&node->rtp_conns), 2);
    check_model();
}

TEST_F(ModelChange, ARedefinedLuLeavesItsOldPool) {
    VGA_LOCAL_PU *pu = put_pu("HOSTPU");
    VGA_LU03 *lu = add_lu03(pu, "LU1");
    std::vector<VGA_POOL *> pools;
    for (const char *name : {"POOLA", "POOLB"}) {
        auto entry = new_entry<NAP_LU_POOL_DATA>();
        set_ebcdic(entry.pool_name, name);
        pools.push_back(vga_insert_vga_pool(vga_init_vga_pool(node, &entry)));
        set_ebcdic(entry.lu_name, "LU1");
        VGA_POOL_LU *member = vga_insert_vga_pool_lu(vga_init_vga_pool_lu(pools.back(), &entry));
        NAP_LU03_DATA redefined = *lu->vcb;
        redefined.det_data.lu_sscp_sess_active = 1; // came up since the pool was read
        set_ebcdic(redefined.def_data.pool_name, name);
        EXPECT_EQ(vga_insert_vga_lu03(vga_init_vga_lu03(pu, &redefined)), lu);
        EXPECT_EQ(member->vcb->lu_active, 1);
    }
    EXPECT_EQ(ntl_avl_validate(&pools[0]->lu_tree), 0);
    EXPECT_EQ(ntl_avl_validate(&pools[1]->lu_tree), 1);
    check_model();
}

/* A user with two sessions, of which the count says ten; read again with one of them, the other
 * goes and the first stays what it was. */
TEST_F(ModelChange, ItemsThatAnEntryDoesNotHaveAreNotMade) {
    auto entry = new_entry<NAP_USER_DATA>();
    set_local(entry.user_name, "teller");
    entry.def_data.num_sessions = NAP_MAX_USER_SESSIONS;
    set_local(entry.def_data.sessions[0].session_name, "SESS1");
    set_local(entry.def_data.sessions[1].session_name, "SESS2");
    entry.overlay_size = offsetof(NAP_USER_DATA, def_data.sessions) + 2 * sizeof(NAP_USER_SESSION);
    entry.overlay_size = static_cast<NB_USHORT>((entry.overlay_size + 3) & ~3);
    VGA_USER *user = vga_insert_vga_user(vga_init_vga_user(gvga_system, &entry));
    EXPECT_EQ(ntl_avl_validate(&user->session_tree), 2);
    auto *kept = static_cast<VGA_USER_SESSION *>(AVL_FIRST(user->session_tree));
    const NB_ULONG handle = kept->handle;
    entry.def_data.num_sessions = 1;
    EXPECT_EQ(vga_insert_vga_user(vga_init_vga_user(gvga_system, &entry)), user);
    EXPECT_EQ(ntl_avl_validate(&user->session_tree), 1);
    EXPECT_EQ(nba_validate_handle(handle), kept);
}

TEST_F(ModelChange, UserModesStayAndClassesOfServiceAreReset) {
    EXPECT_TRUE(vga_init_sna_modes(node));
    EXPECT_TRUE(vga_init_sna_cos(node));
    auto entry = new_entry<NAP_MODE_DEF_DATA>();
    entry.overlay_size = sizeof(entry);
    set_ebcdic(entry.mode_name, "#INTER");
    entry.mode_chars.max_neg_sess_lim = 99;
    VGA_MODE_DEF *mode = vga_insert_vga_mode_def(vga_init_vga_mode_def(node, &entry));
    auto cos = new_entry<NAP_COS_DATA>();
    set_ebcdic(cos.cos_name, "#BATCH");
    cos.def_data.transmission_priority = 3;
    VGA_COS *record = vga_insert_vga_cos(vga_init_vga_cos(node, &cos));
    EXPECT_TRUE(vga_init_sna_modes(node));
    EXPECT_TRUE(vga_init_sna_cos(node));
    NAP_MODE_CHARS chars = mode->vcb->mode_chars;
    NAP_COS_DATA reset = *record->vcb;
    EXPECT_EQ(chars.max_neg_sess_lim, 99);
    EXPECT_EQ(reset.def_data.transmission_priority, 0);
    EXPECT_EQ(reset.record_type, NAP_COS_SNA_DEFINED);
}

} // namespace
