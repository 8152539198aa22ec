/* What redefinitions and deletions leave of a model that was made record by record. */
#include <gtest/gtest.h>

#include "checkedmodel.h"
#include "modelrecords.h"
#include "reports.h"
#include <algorithm>
#include <random>

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

TEST_F(ModelChange, ADlcWithoutPortsGoesAlone) {
    const size_t records = check_model();
    vga_delete_vga_dlc(add_dlc(node, "EMPTY"));
    EXPECT_EQ(check_model(), records);
    EXPECT_EQ(vga_find_port(node, port->name), port);
}

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

/* One that turns out to be attached in another way keeps its line. */
TEST_F(ModelChange, APuServedByADependentLuServerMayChange) {
    vga_insert_vga_dlur_fake_port(vga_init_vga_dlur_fake_port(node));
    VGA_LOCAL_PU *pu = put_pu("SERVED", NAP_DLUR_ATTACHED);
    EXPECT_NE(pu->gui_data.list, nullptr);
    EXPECT_EQ(put_pu("SERVED"), pu);
    check_model();
    vga_delete_vga_local_pu(pu);
    check_model();
}

TEST_F(ModelChange, AnotherLuOfTheNameStandsInTheDomain) {
    constexpr int holders = 6;
    for (unsigned seed = 1; seed <= 8; seed++) {
        std::vector<VGA_LU03 *> lus;
        for (int number = 0; number < holders; number++) {
            VGA_LOCAL_PU *pu = put_pu("PU" + std::to_string(number));
            lus.push_back(add_lu03(pu, "SAME"));
            lus.push_back(add_lu03(pu, "ALSO"));
        }
        std::shuffle(lus.begin(), lus.end(), std::mt19937(seed));
        while (!lus.empty()) {
            vga_delete_vga_lu03(lus.back());
            lus.pop_back();
            for (const VGA_LU03 *lu : lus) {
                auto *found = static_cast<VGA_LU03 *>(
                    ntl_avl_find(&gvga_system->dependent_lus, &lu->domain_key));
                ASSERT_NE(found, nullptr) << lus.size();
                EXPECT_NE(std::find(lus.begin(), lus.end(), found), lus.end());
            }
            check_model();
        }
        EXPECT_EQ(ntl_avl_validate(&gvga_system->dependent_lus), 0);
    }
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
        vga_insert_vga_pool_lu(vga_init_vga_pool_lu(pools.back(), &entry));
        NAP_LU03_DATA redefined = *lu->vcb;
        set_ebcdic(redefined.def_data.pool_name, name);
        EXPECT_EQ(vga_insert_vga_lu03(vga_init_vga_lu03(pu, &redefined)), lu);
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

TEST_F(ModelChange, AKnownPortKeepsItsIdentityAndStatus) {
    port->vcb->det_data.port_state = NAP_ACTIVE;
    const NB_ULONG handle = port->handle;
    auto entry = port_entry("eth0");
    entry.def_data.port_number = 9;
    EXPECT_EQ(vga_insert_vga_port(vga_init_vga_port(dlc, &entry)), port);
    const NAP_PORT_DATA merged = *port->vcb;
    EXPECT_EQ(merged.det_data.port_state, NB_ULONG{NAP_ACTIVE});
    EXPECT_EQ(merged.def_data.port_number, 9);
    EXPECT_EQ(nba_validate_handle(handle), port);
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
