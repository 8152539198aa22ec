/* The model: records, merges, deletion, and the build against a scripted node. */
#include <gtest/gtest.h>

#include "modelwalk.h"
#include "nofverbs.h"
#include "scriptednof.h"
#include "testrecords.h"
#include "vgadsadd.h"
#include "vgadsbld.h"
#include "vgadsdel.h"
#include "vgadsutl.h"
#include "vgaglob.h"
#include "vgahooks.h"
#include "vgarec.h"
#include "vgavlog.h"
#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

SCRIPTED_NOF_ENTRY

namespace {

/* Names and entries. */

NAP_NODE_ALL_DATA node_entry(const std::string &name, NB_ULONG state = NAP_NODE_ACTIVE) {
    auto data = new_entry<NAP_NODE_ALL_DATA>();
    memcpy(data.node_name, name.data(), name.size());
    data.info.node_state = state;
    return data;
}

NAP_DLC_DATA dlc_entry(const std::string &name) {
    auto data = new_entry<NAP_DLC_DATA>();
    set_local(data.dlc_name, name);
    return data;
}

NAP_PORT_DATA port_entry(const std::string &name, const std::string &dlc) {
    auto data = new_entry<NAP_PORT_DATA>();
    set_local(data.port_name, name);
    set_local(data.def_data.dlc_name, dlc);
    return data;
}

NAP_LS_DATA ls_entry(const std::string &name, const std::string &port, const std::string &pu = "") {
    auto data = new_entry<NAP_LS_DATA>();
    set_local(data.ls_name, name);
    set_local(data.def_data.port_name, port);
    set_ebcdic(data.def_data.pu_name, pu);
    data.def_data.adj_cp_type = pu.empty() ? NAP_ADJ_END_NODE : NAP_ADJ_HOST;
    return data;
}

NAP_LU03_DATA lu03_entry(const std::string &name, const std::string &pu) {
    auto data = new_entry<NAP_LU03_DATA>();
    set_ebcdic(data.lu_name, name);
    set_ebcdic(data.pu_name, pu);
    return data;
}

NAP_LOCAL_LU_DATA lu62_entry(const std::string &name, const std::string &alias) {
    auto data = new_entry<NAP_LOCAL_LU_DATA>();
    set_ebcdic(data.lu_name, name);
    set_local(data.def_data.lu_alias, alias);
    return data;
}

NAP_MODE_DATA mode_entry(const std::string &alias, const std::string &mode, const std::string &plu,
                         NB_USHORT sessions) {
    auto data = new_entry<NAP_MODE_DATA>();
    set_local(data.lu_alias, alias);
    set_ebcdic(data.mode_name, mode);
    set_ebcdic(data.fqplu_name, plu);
    set_ebcdic(data.fq_cp_name, "");
    set_local(data.plu_alias, "");
    data.act_sess_count = sessions;
    return data;
}

NAP_DIR_DATA dir_entry(const std::string &cp, const std::string &resource, NB_USHORT type) {
    auto data = new_entry<NAP_DIR_DATA>();
    set_ebcdic(data.fqcp_name, cp);
    set_ebcdic(data.resource_name, resource);
    data.resource_type = type;
    return data;
}

NAP_PLU_DEF_DATA plu_def_entry(const std::string &plu, const std::string &alias) {
    auto data = new_entry<NAP_PLU_DEF_DATA>();
    set_ebcdic(data.fqplu_name, plu);
    set_local(data.def_data.plu_alias, alias);
    return data;
}

/* A node that answers. */

using BYTES = std::vector<NB_UCHAR>;

struct FAKE_NODE {
    std::map<NB_USHORT, std::vector<BYTES>> lists; /* by opcode, in order */
    std::map<NB_USHORT, std::pair<NB_USHORT, NB_ULONG>> failures;
    NB_USHORT endless = 0; /* opcode of a list that says it goes on, and brings the same */
    std::vector<NB_USHORT> asked;
    size_t entries_an_answer = 1000;
    NB_USHORT dlur = 1;

    template <class Data> void add(NB_USHORT opcode, const Data &data) {
        lists[opcode].push_back(entry_bytes(data));
    }

    void answer_list(NAP_QUERY_LIST &query) {
        const std::vector<BYTES> &list = lists[query.opcode];
        NB_VOID *buffer = vga_buf_ptr(reinterpret_cast<NAP_VCB *>(&query));
        std::vector<BYTES> wanted;
        bool behind = (query.list_options & NAP_LIST_FROM_NEXT) == 0;
        for (const BYTES &entry : list) {
            bool owned = memcmp(entry.data() + 2, query.key, query.owner_length) == 0;
            if (behind && owned) {
                wanted.push_back(entry);
            }
            /* Keys are short of 40 bytes, or a name padded with NULs. */
            size_t width = std::min<size_t>(entry.size() - 2, key_width(query.opcode));
            behind = behind || memcmp(entry.data() + 2, query.key, width) == 0;
        }
        query.total_num_entries = static_cast<NB_USHORT>(wanted.size());
        query.num_entries = 0;
        auto *out = static_cast<NB_UCHAR *>(buffer);
        for (const BYTES &entry : wanted) {
            if (query.num_entries == entries_an_answer) {
                break;
            }
            memcpy(out, entry.data(), entry.size());
            out += entry.size();
            query.num_entries++;
        }
        if (query.opcode == endless && query.num_entries == 0) {
            memcpy(out, list.back().data(), list.back().size());
            query.num_entries = 1;
        }
        query.total_num_entries = query.opcode == endless ? 60000 : query.total_num_entries;
    }

    static size_t key_width(NB_USHORT opcode) {
        switch (opcode) {
        case NAP_QUERY_NODE_ALL:
            return 128;
        case NAP_QUERY_EMULATOR_USER_DEF:
            return 32;
        case NAP_QUERY_LU_0_TO_3:
            return 16;
        case NAP_QUERY_MODE:
            return 33;
        case NAP_QUERY_DIRECTORY_ENTRY:
            return 36;
        case NAP_QUERY_PARTNER_LU_DEFINITION:
            return 17;
        default:
            return 8;
        }
    }

    void answer(const ISSUED_VERB &verb) {
        NAP_VCB &vcb = *verb.vcb;
        asked.push_back(vcb.opcode);
        auto failure = failures.find(vcb.opcode);
        if (failure != failures.end()) {
            vcb.primary_rc = failure->second.first;
            vcb.secondary_rc = failure->second.second;
            return;
        }
        const NAP_VERB *row = nap_find_verb(vcb.opcode);
        if (row->kind == NAP_KIND_LIST) {
            answer_list(reinterpret_cast<NAP_QUERY_LIST &>(vcb));
        } else if (vcb.opcode == NAP_OPEN_FILE) {
            auto &open = reinterpret_cast<NAP_OPEN_FILE_VERB &>(vcb);
            open.target_handle = 100U + 10U * opens++ + open.file;
        } else if (vcb.opcode == NAP_CONNECT_NODE) {
            reinterpret_cast<NAP_CONNECT_NODE_VERB &>(vcb).target_handle = 200U + connects++;
        } else if (vcb.opcode == NAP_QUERY_NODE) {
            auto &query = reinterpret_cast<NAP_QUERY_NODE_VERB &>(vcb);
            query.dlur_support = dlur;
            query.info.node_state = NAP_NODE_ACTIVE;
            set_ebcdic(query.info.fq_cp_name, "NETA.CORVID1");
            set_local(query.info.cp_alias, "CORVID1");
        }
    }

    NB_ULONG connects = 0;
    NB_ULONG opens = 0;
};

int built;

class Model : public testing::Test {
protected:
    void SetUp() override {
        scripted_nof.reset();
        built = 0;
        gvga_exit_code = 0;
        gvga_read_only = 0;
        gvga_hooks = {};
        gvga_hooks.model_built = [] { built++; };
        nba_pd_set_log(nullptr, NB_PD_NONE);
        vga_init_verb_queues();
        gvga_system = vga_init_vga_system();
        node.add(NAP_QUERY_NODE_ALL, node_entry("corvid1"));
    }
    void TearDown() override {
        check_model();
        vga_empty_verb_queues();
        vga_destroy_data_structures();
        gvga_exit_code = 0;
    }

    /* Answers everything that comes, in an order that the seed decides. */
    void run(unsigned seed = 1) {
        SCOPED_TRACE(seed);
        vga_start_build_system();
        answer_all(seed);
    }
    void answer_all(unsigned seed) {
        std::mt19937 random(seed);
        while (!scripted_nof.in_flight.empty() && gvga_exit_code == 0) {
            size_t index = random() % scripted_nof.in_flight.size();
            ISSUED_VERB verb = scripted_nof.in_flight[index];
            node.answer(verb);
            scripted_nof.complete(index, verb.vcb->primary_rc, verb.vcb->secondary_rc);
        }
    }

    VGA_NODE *only_node() { return static_cast<VGA_NODE *>(AVL_FIRST(gvga_system->nodes)); }

    void add_branch() {
        node.add(NAP_QUERY_DLC, dlc_entry("LAN0"));
        node.add(NAP_QUERY_DLC, dlc_entry("LINES"));
        for (const char *name : {"ETH0", "ETH1"}) {
            node.add(NAP_QUERY_PORT, port_entry(name, "LAN0"));
        }
        node.add(NAP_QUERY_PORT, port_entry("LINE0", "LINES"));
        node.add(NAP_QUERY_LS, ls_entry("HOST", "LINE0", "HOSTPU"));
        node.add(NAP_QUERY_LS, ls_entry("TELLER1", "ETH0"));
        node.add(NAP_QUERY_LS, ls_entry("TELLER2", "ETH0"));
        for (const char *name : {"DISP1", "DISP2", "DISP3"}) {
            node.add(NAP_QUERY_LU_0_TO_3, lu03_entry(name, "HOSTPU"));
        }
        node.add(NAP_QUERY_LOCAL_LU, lu62_entry("PAYLU", "PAYROLL"));
        node.add(NAP_QUERY_MODE, mode_entry("PAYROLL", "#INTER", "NETA.LEDGER", 2));
        node.add(NAP_QUERY_MODE, mode_entry("PAYROLL", "#BATCH", "NETA.STRAY", 0));
        node.add(NAP_QUERY_DIRECTORY_ENTRY, dir_entry("NETA.NORTH", "NETA.NORTH", 246));
        node.add(NAP_QUERY_DIRECTORY_ENTRY, dir_entry("NETA.NORTH", "NETA.LEDGER", 243));
        node.add(NAP_QUERY_PARTNER_LU_DEFINITION, plu_def_entry("NETA.LEDGER", "LEDGER"));
        node.add(NAP_QUERY_PARTNER_LU_DEFINITION, plu_def_entry("NETB.LONER", "LONER"));
    }

    FAKE_NODE node;
};

/* The names of the lines below `first`, in screen order, as many dots before them as levels. */
template <class Item> std::string line_names(const VGA_VIEWER_ROOT &root, Item name_of) {
    std::string text;
    for (VGA_VIEWER_ITEM *item = root.top_items.first; item != nullptr;
         item = vga_viewer_get_next_item(&root, item)) {
        std::string indent;
        for (VGA_VIEWER_ITEM *parent = item->parent; parent != nullptr; parent = parent->parent) {
            indent += '.';
        }
        text += indent + name_of(item) + " ";
    }
    return text;
}

std::string connectivity_name(VGA_VIEWER_ITEM *item) {
    const NB_UCHAR *name = nullptr;
    bool ebcdic = true;
    switch (item->type) {
    case VGA_VIEWER_PORT:
        name = static_cast<VGA_PORT *>(item->data)->name;
        if (static_cast<VGA_PORT *>(item->data)->vcb == nullptr) {
            return "(placeholder)";
        }
        ebcdic = false;
        break;
    case VGA_VIEWER_LS:
    case VGA_VIEWER_LS_LEAF:
        name = static_cast<VGA_LS *>(item->data)->name;
        ebcdic = false;
        break;
    default:
        name = static_cast<VGA_LU03 *>(item->data)->name;
    }
    NB_UCHAR text[8];
    memcpy(text, name, sizeof(text));
    if (ebcdic) {
        nba_ebcdic_to_local(text, sizeof(text));
    }
    std::string word(reinterpret_cast<char *>(text), sizeof(text));
    return word.substr(0, word.find(' '));
}

/* The build. */

TEST_F(Model, IsCompleteWhateverTheOrderOfAnswers) {
    for (unsigned seed = 1; seed <= 20; seed++) {
        if (seed > 1) {
            TearDown();
            SetUp();
            node = FAKE_NODE();
            node.add(NAP_QUERY_NODE_ALL, node_entry("corvid1"));
        }
        add_branch();
        run(seed);
        ASSERT_EQ(gvga_exit_code, 0) << "seed " << seed << " line " << gvga_exit_line;
        ASSERT_EQ(built, 1) << "seed " << seed;
        NB_CHAR flags[VGA_NODE_CHAINS + 1];
        ASSERT_TRUE(vga_check_node_startup(only_node(), &flags)) << flags;
        EXPECT_EQ(line_names(only_node()->connectivity_root, connectivity_name),
                  "(placeholder) ETH0 .TELLER1 .TELLER2 ETH1 LINE0 .HOST ")
            << "seed " << seed;
        EXPECT_EQ(ntl_avl_validate(&only_node()->network_fake_rem_sys->remote_plu_tree), 2)
            << "the partner without a system and the one that only a mode names";
    }
}

TEST_F(Model, AnEmptyNodeCompletes) {
    node.dlur = 0;
    run();
    EXPECT_EQ(built, 1);
    EXPECT_EQ(std::count(node.asked.begin(), node.asked.end(), NAP_QUERY_DLUR_PU), 0);
    EXPECT_EQ(std::count(node.asked.begin(), node.asked.end(), NAP_QUERY_LOCAL_LU), 1);
    EXPECT_EQ(ntl_avl_validate(&only_node()->mode_defs), 13);
    EXPECT_EQ(ntl_avl_validate(&only_node()->classes_of_service), 7);
    ASSERT_NE(only_node()->cp_lu, nullptr);
    EXPECT_EQ(vga_find_lu62_by_alias(only_node(), reinterpret_cast<const NB_UCHAR *>("CORVID1 ")),
              only_node()->cp_lu);
}

TEST_F(Model, ALongListIsReadInSeveralAnswers) {
    node.add(NAP_QUERY_DLC, dlc_entry("LAN0"));
    for (int port = 100; port < 200; port++) {
        node.add(NAP_QUERY_PORT, port_entry("P" + std::to_string(port), "LAN0"));
    }
    node.entries_an_answer = 7;
    run();
    EXPECT_EQ(built, 1);
    EXPECT_EQ(ntl_avl_validate(&only_node()->ports), 100);
    EXPECT_EQ(std::count(node.asked.begin(), node.asked.end(), NAP_QUERY_PORT), 15);
}

TEST_F(Model, EntriesThatCannotBeRightDoNotStopTheBuild) {
    node.add(NAP_QUERY_DLC, dlc_entry("LAN0"));
    node.add(NAP_QUERY_PORT, port_entry("LOST", "NOWHERE"));
    node.add(NAP_QUERY_PORT, port_entry("PORT1", "LAN0"));
    auto shorter = lu62_entry("SHORT", "SHORT");
    shorter.overlay_size = 12;
    node.lists[NAP_QUERY_LOCAL_LU].push_back(BYTES(12, 0));
    memcpy(node.lists[NAP_QUERY_LOCAL_LU].back().data(), &shorter, 12);
    auto longer = dlc_entry("LAN1");
    BYTES bytes(sizeof(longer));
    longer.overlay_size = 65532;
    memcpy(bytes.data(), &longer, sizeof(longer));
    node.lists[NAP_QUERY_DLC].push_back(bytes);
    run();
    EXPECT_EQ(gvga_exit_code, 0);
    EXPECT_EQ(built, 1);
    EXPECT_EQ(ntl_avl_validate(&only_node()->ports), 1);
    EXPECT_EQ(ntl_avl_validate(&only_node()->dlcs), 1);
}

TEST_F(Model, AListThatNeverEndsIsLeftBehind) {
    add_branch();
    node.endless = NAP_QUERY_LOCAL_LU;
    run();
    EXPECT_EQ(built, 1);
    EXPECT_EQ(gvga_exit_code, 0);
    EXPECT_LT(std::count(node.asked.begin(), node.asked.end(), NAP_QUERY_LOCAL_LU), 10);
}

/* A user with two sessions, of which the count says ten. */
TEST_F(Model, ItemsThatAnEntryDoesNotHaveAreNotMade) {
    auto user = new_entry<NAP_USER_DATA>();
    set_local(user.user_name, "teller");
    user.def_data.num_sessions = NAP_MAX_USER_SESSIONS;
    for (const char *name : {"SESS1", "SESS2"}) {
        set_local(user.def_data.sessions[name[4] - '1'].session_name, name);
    }
    user.overlay_size = offsetof(NAP_USER_DATA, def_data.sessions) + 2 * sizeof(NAP_USER_SESSION);
    user.overlay_size = static_cast<NB_USHORT>((user.overlay_size + 3) & ~3);
    node.lists[NAP_QUERY_EMULATOR_USER_DEF].emplace_back(reinterpret_cast<NB_UCHAR *>(&user),
                                                         reinterpret_cast<NB_UCHAR *>(&user) +
                                                             user.overlay_size);
    run();
    EXPECT_EQ(built, 1);
    auto *record = static_cast<VGA_USER *>(AVL_FIRST(gvga_system->users));
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(ntl_avl_validate(&record->session_tree), 2);

    /* Read again with one of them: the other goes, the first stays what it was. */
    auto *kept = static_cast<VGA_USER_SESSION *>(AVL_FIRST(record->session_tree));
    NB_ULONG handle = kept->handle;
    user.def_data.num_sessions = 1;
    vga_insert_vga_user(vga_init_vga_user(gvga_system, &user));
    EXPECT_EQ(ntl_avl_validate(&record->session_tree), 1);
    EXPECT_EQ(nba_validate_handle(handle), kept);
}

TEST_F(Model, AQueryThatFailsEndsTheBuildWithItsOpcode) {
    node.failures[NAP_QUERY_COS] = {NAP_STATE_CHECK, NAP_NODE_BUSY};
    run();
    EXPECT_EQ(gvga_exit_code, VGA_EXIT_VERB_FAILED);
    EXPECT_EQ(gvga_exit_subcode, NB_ULONG{NAP_QUERY_COS});
    EXPECT_EQ(built, 0);
}

TEST_F(Model, WhatCannotBeOpenedIsDoneWithout) {
    node.failures[NAP_OPEN_FILE] = {NAP_STATE_CHECK, NAP_NO_DOMAIN_CONFIG};
    node.failures[NAP_SET_PROCESSING_MODE] = {NAP_PARAMETER_CHECK, NAP_NO_PERMISSION};
    run();
    EXPECT_EQ(built, 1);
    EXPECT_EQ(gvga_system->domain_target, 0u);
    EXPECT_TRUE(gvga_read_only);
    EXPECT_EQ(std::count(node.asked.begin(), node.asked.end(), NAP_QUERY_EMULATOR_USER_DEF), 0);
    EXPECT_EQ(std::count(node.asked.begin(), node.asked.end(), NAP_QUERY_TP_LOAD_INFO), 0);

    vga_rebuild_system();
    node.failures[NAP_OPEN_FILE] = {NAP_PARAMETER_CHECK, NAP_INVALID_VALUE};
    node.answer(scripted_nof.in_flight[0]);
    scripted_nof.complete(0, NAP_PARAMETER_CHECK, NAP_INVALID_VALUE);
    EXPECT_EQ(gvga_exit_code, VGA_EXIT_VERB_FAILED);
    EXPECT_EQ(gvga_exit_subcode, NB_ULONG{NAP_OPEN_FILE});
}

/* What is opened again is closed first. */
TEST_F(Model, ARebuildLeavesNothingOpen) {
    run();
    node.asked.clear();
    vga_rebuild_system();
    vga_rebuild_sna_net();
    vga_start_build_node(only_node());
    answer_all(5);
    EXPECT_EQ(gvga_exit_code, 0);
    EXPECT_TRUE(vga_check_system_startup(nullptr));
    const auto times = [this](NB_USHORT opcode) {
        return std::count(node.asked.begin(), node.asked.end(), opcode);
    };
    EXPECT_EQ(times(NAP_CLOSE_FILE), times(NAP_OPEN_FILE));
    EXPECT_EQ(times(NAP_OPEN_FILE), 4) << "the network file by both";
    EXPECT_EQ(times(NAP_DISCONNECT_NODE), 1);
}

TEST_F(Model, TheVerbLogTellsHowFarItIs) {
    FILE *file = tmpfile();
    ASSERT_NE(file, nullptr);
    gvga_verb_log = file;
    run();
    rewind(file);
    std::vector<std::string> texts;
    for (char line[400]; fgets(line, sizeof(line), file) != nullptr;) {
        const char *at = strstr(line, " start-up ");
        const char *name = at != nullptr ? strstr(at, "\"corvid1\"  ") : nullptr;
        if (name != nullptr) {
            texts.emplace_back(name + strlen("\"corvid1\"  "), VGA_NODE_CHAINS + 1);
        }
    }
    vga_close_verb_log();
    ASSERT_GT(texts.size(), 20U);
    EXPECT_EQ(texts.front(), "0" + std::string(VGA_NODE_CHAINS - 1, '1') + "\n")
        << "the connection is the first chain";
    EXPECT_EQ(texts.back(), std::string(VGA_NODE_CHAINS, '0') + "\n");
}

TEST_F(Model, ANodeThatDiesDropsOutAndTheOthersFinish) {
    node.add(NAP_QUERY_NODE_ALL, node_entry("corvid2"));
    vga_start_build_system();
    while (!scripted_nof.in_flight.empty()) {
        ISSUED_VERB verb = scripted_nof.in_flight[0];
        node.answer(verb);
        bool dead = verb.target == 201 && verb.vcb->opcode == NAP_QUERY_DLC;
        scripted_nof.complete(0, dead ? NAP_COMM_FAILURE : verb.vcb->primary_rc,
                              dead ? NAP_NODE_GONE : 0);
    }
    EXPECT_EQ(gvga_exit_code, 0);
    EXPECT_GE(built, 1);
    EXPECT_EQ(ntl_avl_validate(&gvga_system->nodes), 2);
}

/* Records. */

TEST_F(Model, AKnownPortKeepsItsIdentityAndStatus) {
    add_branch();
    run();
    VGA_PORT *port = vga_find_port(only_node(), reinterpret_cast<const NB_UCHAR *>("ETH0    "));
    ASSERT_NE(port, nullptr);
    port->vcb->det_data.port_state = NAP_ACTIVE;
    NB_ULONG handle = port->handle;
    auto entry = port_entry("eth0", "LAN0");
    entry.def_data.port_number = 9;
    EXPECT_EQ(vga_insert_vga_port(vga_init_vga_port(port->parent, &entry)), port);
    NAP_PORT_DATA merged = *port->vcb;
    EXPECT_EQ(merged.det_data.port_state, NB_ULONG{NAP_ACTIVE});
    EXPECT_EQ(merged.def_data.port_number, 9);
    EXPECT_EQ(port->handle, handle);
    EXPECT_EQ(nba_validate_handle(handle), port);
    EXPECT_EQ(ntl_avl_validate(&port->link_stations), 2);
    EXPECT_EQ(ntl_avl_validate(&only_node()->ports), 3);
}

TEST_F(Model, DeletingALinkStationTakesItsPuAndLusWithIt) {
    add_branch();
    run();
    VGA_LS *ls = vga_find_ls(only_node(), reinterpret_cast<const NB_UCHAR *>("HOST    "));
    ASSERT_NE(ls, nullptr);
    ASSERT_NE(ls->local_pu, nullptr);
    EXPECT_EQ(ntl_avl_validate(&ls->local_pu->lus), 3);
    EXPECT_EQ(ntl_avl_validate(&gvga_system->dependent_lus), 3);
    vga_delete_vga_ls(ls);
    EXPECT_EQ(ntl_avl_validate(&gvga_system->dependent_lus), 0);
    EXPECT_EQ(ntl_avl_validate(&only_node()->local_pus), 0);

    VGA_DLC *dlc = vga_find_dlc(only_node(), reinterpret_cast<const NB_UCHAR *>("LAN0    "));
    vga_delete_vga_dlc(dlc);
    EXPECT_EQ(ntl_avl_validate(&only_node()->link_stations), 0);
    EXPECT_EQ(line_names(only_node()->connectivity_root, connectivity_name),
              "(placeholder) LINE0 ");
}

TEST_F(Model, PartnersMoveToTheSystemThatTheDirectoryNames) {
    add_branch();
    run(7);
    NB_UCHAR north[17], ledger[17], stray[17];
    set_ebcdic(north, "NETA.NORTH");
    set_ebcdic(ledger, "NETA.LEDGER");
    set_ebcdic(stray, "NETA.STRAY");
    VGA_REM_PLU *plu = vga_find_rem_plu(only_node(), ledger, NAP_DIR_LU);
    ASSERT_NE(plu, nullptr);
    EXPECT_EQ(plu->parent, vga_find_rem_sys(only_node(), north));
    EXPECT_TRUE(plu->defined);
    EXPECT_TRUE(plu->in_directory);
    EXPECT_EQ(ntl_avl_validate(&plu->sess_tree), 1);
    VGA_REM_PLU *unplaced = vga_find_rem_plu(only_node(), stray, NAP_DIR_LU);
    ASSERT_NE(unplaced, nullptr);
    EXPECT_EQ(unplaced->parent, only_node()->network_fake_rem_sys);
    EXPECT_EQ(ntl_avl_validate(&unplaced->sess_tree), 0);
}

TEST_F(Model, UserModesStayAndClassesOfServiceAreReset) {
    run();
    auto entry = new_entry<NAP_MODE_DEF_DATA>();
    entry.overlay_size = sizeof(entry);
    set_ebcdic(entry.mode_name, "#INTER");
    entry.mode_chars.max_neg_sess_lim = 99;
    VGA_MODE_DEF *mode = vga_insert_vga_mode_def(vga_init_vga_mode_def(only_node(), &entry));
    auto cos = new_entry<NAP_COS_DATA>();
    set_ebcdic(cos.cos_name, "#BATCH");
    cos.def_data.transmission_priority = 3;
    VGA_COS *record = vga_insert_vga_cos(vga_init_vga_cos(only_node(), &cos));
    EXPECT_TRUE(vga_init_sna_modes(only_node()));
    EXPECT_TRUE(vga_init_sna_cos(only_node()));
    NAP_MODE_CHARS chars = mode->vcb->mode_chars;
    NAP_COS_DATA reset = *record->vcb;
    EXPECT_EQ(chars.max_neg_sess_lim, 99);
    EXPECT_EQ(reset.def_data.transmission_priority, 0);
    EXPECT_EQ(reset.record_type, NAP_COS_SNA_DEFINED);
}

TEST_F(Model, CloseFreesEachPieceThroughTheNodeSoftware) {
    run();
    NB_ULONG target = only_node()->target;
    EXPECT_TRUE(vga_free_system_resources(0, vga_no_completion));
    EXPECT_FALSE(vga_free_system_resources(0, vga_no_completion)) << "only once";
    EXPECT_TRUE(vga_do_free_node_res(only_node(), 0, vga_no_completion));
    ASSERT_EQ(scripted_nof.in_flight.size(), 3u) << "system file, TP load file, node";
    EXPECT_EQ(scripted_nof.in_flight.back().vcb->opcode, NAP_DISCONNECT_NODE);
    EXPECT_EQ(scripted_nof.in_flight.back().target, target);
    EXPECT_TRUE(vga_free_sna_net_resources(vga_no_completion));
    while (!scripted_nof.in_flight.empty()) {
        scripted_nof.complete();
    }
    EXPECT_FALSE(vga_do_free_node_res(only_node(), 0, vga_no_completion));
}

/* Comparators. */

TEST(Comparators, OrderNamesAsTheListsShowThem) {
    auto name = [](const char *text) {
        BYTES bytes(8, 0);
        std::string padded(text);
        padded.resize(8, ' ');
        memcpy(bytes.data(), padded.data(), 8);
        return bytes;
    };
    auto ebcdic = [&name](const char *text) {
        BYTES bytes = name(text);
        nba_local_to_ebcdic(bytes.data(), 8);
        return bytes;
    };
    EXPECT_EQ(vga_compare_asc8(name("eth0").data(), name("ETH0").data()), 0);
    EXPECT_LT(vga_compare_asc8(name("eth0").data(), name("ETH1").data()), 0);
    EXPECT_LT(vga_compare_ebc8(ebcdic("A1").data(), ebcdic("AA").data()), 0)
        << "digits before letters, as in the local code page";
    EXPECT_LT(vga_compare_ebc8(ebcdic("LU").data(), ebcdic("LU1").data()), 0);
    NB_USHORT small = 2, large = 300;
    EXPECT_LT(vga_compare_ushort(&small, &large), 0);
}

} // namespace
