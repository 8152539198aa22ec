/* Name clashes, partner look-up and session marks. */
#include <gtest/gtest.h>

#include "modelrecords.h"
#include "partners.h"

SCRIPTED_NOF_ENTRY

namespace {

class Clash : public MODEL_RECORDS {
protected:
    void SetUp() override {
        MODEL_RECORDS::SetUp();
        VGA_PORT *port = add_port(add_dlc(node, "LAN0"), "ETH0");
        host = add_ls(port, "HOST", NAP_ADJ_HOST, "HOSTPU")->local_pu;
        branch = add_ls(port, "BRANCH", NAP_ADJ_DOWNSTREAM, "BRANCHPU")->down_pu;
    }

    static VGA_POOL *add_pool(VGA_NODE *of, const std::string &name) {
        auto data = new_entry<NAP_LU_POOL_DATA>();
        set_ebcdic(data.pool_name, name);
        set_ebcdic(data.lu_name, "");
        return vga_insert_vga_pool(vga_init_vga_pool(of, &data));
    }

    static void add_display_name(VGA_LU03 *lu, const char *name) {
        auto data = new_entry<NAP_EXTRA_DATA_DATA>();
        memcpy(data.lu_name, lu->name, sizeof(data.lu_name));
        strcpy(reinterpret_cast<char *>(data.def_data.display_name), name);
        vga_insert_vga_extra_data(vga_init_vga_extra_data(lu, &data));
    }

    VGA_LOCAL_PU *host;
    VGA_DOWN_PU *branch;
};

NB_USHORT clash(const std::string &name, const VGA_NODE *node, NB_VOID **record = nullptr) {
    return vga_check_lu_name_clash(EBCDIC<8>(name).bytes, node, record);
}

/* Every user of the name is added in the opposite order of the tests; the code moves on with each.
 */
TEST_F(Clash, TheFirstInOrderGivesTheCode) {
    VGA_NODE *other = add_node("CORVID2", 8);
    VGA_PORT *port = add_port(add_dlc(other, "LAN0"), "ETH0");
    VGA_LOCAL_PU *far_pu = add_ls(port, "HOST", NAP_ADJ_HOST, "FARPU")->local_pu;
    NB_VOID *found = this;
    EXPECT_EQ(clash("NAME", node, &found), VGA_CLASH_NONE);
    EXPECT_EQ(found, nullptr);

    NB_VOID *expected = add_lu03(far_pu, "NAME");
    EXPECT_EQ(clash("NAME", node, &found), 5) << "an LU of another node";
    EXPECT_EQ(found, expected);
    EXPECT_EQ(clash("NAME", nullptr), 1) << "the same, when all nodes are asked";

    expected = add_pool(other, "NAME")->sys_pool;
    EXPECT_EQ(clash("NAME", node, &found), 2);
    EXPECT_EQ(found, expected);

    expected = add_lu62(node, "NAME", "ALIAS");
    EXPECT_EQ(clash("NAME", node, &found), 4) << "before a pool of the domain";
    EXPECT_EQ(found, expected);
    EXPECT_EQ(clash("NAME", nullptr), 4) << "the first node in order comes first";

    expected = add_down_lu(branch, "NAME");
    EXPECT_EQ(clash("NAME", node, &found), 3);
    EXPECT_EQ(found, expected);

    VGA_LU03 *named = add_lu03(host, "LU1");
    add_display_name(named, "NAME");
    EXPECT_EQ(clash("NAME", node), 3) << "display names count in one variant only";
    gvga_variant_x = 1;
    EXPECT_EQ(clash("NAME", node, &found), 6);
    EXPECT_EQ(found, named->extra_data);

    expected = add_lu03(host, "NAME");
    EXPECT_EQ(clash("NAME", node, &found), 1);
    EXPECT_EQ(found, expected);
}

TEST_F(Clash, AQualifiedNameIsLocalInTheNodesNetworkOnly) {
    VGA_LU62 *lu = add_lu62(node, "PAYLU", "PAYROLL");
    VGA_LU62 *longest = add_lu62(node, "LU345678", "LONGEST");
    const struct {
        const char *name;
        VGA_LU62 *expected;
    } cases[] = {
        {"NETA.PAYLU", lu},     {"NETA.LU345678", longest}, {"NETB.PAYLU", nullptr},
        {"NET.PAYLU", nullptr}, {"NETA.PAYL", nullptr},     {"PAYLU", nullptr},
        {"", nullptr},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(vga_check_fq_name_local_clash(EBCDIC<17>(row.name).bytes, node), row.expected)
            << row.name;
    }
}

/* Partners. */

class Partner : public MODEL_RECORDS {
protected:
    VGA_REM_PLU *add(const std::string &system, const std::string &name, NB_USHORT type,
                     NB_USHORT defined) {
        VGA_REM_SYS *owner = vga_need_rem_sys(node, EBCDIC<17>(system).bytes);
        auto data = new_entry<NAP_PLU_DEF_DATA>();
        set_ebcdic(data.fqplu_name, name);
        VGA_REM_PLU *plu = vga_init_vga_rem_plu(owner, &data, type);
        plu->defined = defined;
        return vga_insert_vga_rem_plu(plu);
    }

    VGA_REM_PLU *look_up(const std::string &name, NB_USHORT type_given = 0, NB_USHORT type = 0) {
        return vga_check_fq_name_plu_clash(EBCDIC<17>(name).bytes, node, type_given, type);
    }
};

TEST_F(Partner, AWildcardCountsWhereThereIsNoLu) {
    VGA_REM_PLU *wildcard = add("NETA.EAST", "NETA", NAP_DIR_WILDCARD_LU, 1);
    VGA_REM_PLU *lu = add("NETA.WEST", "NETA", NAP_DIR_LU, 1);
    EXPECT_EQ(look_up("NETA"), wildcard);
    EXPECT_EQ(look_up("NETA", 1, NAP_DIR_LU), lu);
    EXPECT_EQ(look_up("NETA", 1, NAP_DIR_WILDCARD_LU), wildcard);
    EXPECT_EQ(look_up("NETA", 1, NAP_DIR_END_NODE), nullptr);
    VGA_REM_PLU *unplaced = add("", "NETA", NAP_DIR_LU, 1);
    EXPECT_EQ(look_up("NETA"), unplaced) << "the placeholder comes first";
}

/* Session marks. */

class Marks : public Clash {
protected:
    static NAP_USER_SESSION session(const std::string &name, NB_UCHAR kind, const std::string &lu,
                                    const std::string &alias) {
        NAP_USER_SESSION data = {};
        set_local(data.session_name, name);
        data.session_class = kind;
        set_ebcdic(data.lu_name, lu);
        set_local(data.lu_alias, alias);
        return data;
    }

    static VGA_USER *add_user(const char *name, const std::vector<NAP_USER_SESSION> &sessions) {
        auto data = new_entry<NAP_USER_DATA>();
        memcpy(data.user_name, name, strlen(name));
        data.def_data.num_sessions = static_cast<NB_USHORT>(sessions.size());
        for (size_t at = 0; at < sessions.size(); at++) {
            data.def_data.sessions[at] = sessions[at];
        }
        return vga_insert_vga_user(vga_init_vga_user(gvga_system, &data));
    }

    /* The names of the marked sessions, and the counters. */
    static std::string marks(const VGA_USER *user) {
        std::string text;
        for (auto *at = static_cast<VGA_USER_SESSION *>(AVL_FIRST(user->session_tree));
             at != nullptr; at = static_cast<VGA_USER_SESSION *>(ntl_avl_next(&at->links))) {
            if (at->mark) {
                text += static_cast<char>(at->name[0]);
            }
        }
        return text + " " + std::to_string(user->marked[0]) + std::to_string(user->marked[1]);
    }

    void SetUp() override {
        Clash::SetUp();
        add_lu03(host, "UP")->vcb->det_data.lu_sscp_sess_active = 1;
        add_lu03(host, "DOWN");
        add_lu62(node, "GOODLU", "GOOD");
        add_lu62(node, "OFFLU", "OFF")->vcb->def_data.disable = 1;
        add_lu62(node, "DEPLU", "DEP")->vcb->def_data.nau_address = 3;
        user = add_user("anna", {session("A", 1, "UP", ""), session("B", 1, "DOWN", ""),
                                 session("C", 1, "NOWHERE", ""), session("D", 2, "", "good"),
                                 session("E", 2, "", "OFF"), session("F", 2, "", "DEP"),
                                 session("G", 2, "", "NOBODY")});
        other = add_user("ben", {});
    }

    VGA_USER *user;
    VGA_USER *other;
};

TEST_F(Marks, AreSetAndCountedByKind) {
    vga_mark_sessions(1, nullptr, nullptr);
    EXPECT_EQ(marks(user), "A 10");
    vga_unmark_sessions(2);
    EXPECT_EQ(marks(user), "A 10") << "there was none of that kind";
    vga_unmark_sessions(3);
    vga_unmark_sessions(0);
    EXPECT_EQ(marks(user), "A 10");
    vga_unmark_sessions(1);
    EXPECT_EQ(marks(user), " 00");

    vga_mark_sessions(2, node, nullptr);
    EXPECT_EQ(marks(user), "D 01") << "neither disabled nor without its host session";
    vga_mark_sessions(2, node, LOCAL<8>("OFF").bytes);
    EXPECT_EQ(marks(user), "E 01") << "by name, whatever state the LU is in";
    vga_mark_sessions(2, nullptr, nullptr);
    EXPECT_EQ(marks(user), " 00") << "without a node there is nobody to ask";
    EXPECT_EQ(marks(other), " 00");
}

} // namespace
