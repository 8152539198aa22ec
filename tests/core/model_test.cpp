/* The build when the node's answers are not what they should be, and how it ends. */
#include "livesupport.h"
#include "nofverbs.h"
#include "verblog.h"
#include "vgadsutl.h"
#include <cstdio>
#include <cstring>

SCRIPTED_NOF_ENTRY

namespace {

int built;

class Model : public LIVE_MODEL, public testing::Test {
protected:
    void SetUp() override {
        open("single");
        built = 0;
        gvga_hooks.model_built = [] { built++; };
    }
    void TearDown() override { close(); }

    /* The build, whatever comes of it. */
    void run_build() {
        vga_start_build_system();
        answer_all(1);
    }
    /* From now on verbs with this opcode fail. */
    void fail(NB_USHORT opcode, NB_USHORT primary, NB_ULONG secondary) {
        const auto before = spoil;
        spoil = [=](const ISSUED_VERB &verb) {
            if (before) {
                before(verb);
            }
            if (verb.vcb->opcode == opcode) {
                verb.vcb->primary_rc = primary;
                verb.vcb->secondary_rc = secondary;
            }
        };
    }
    long times(NB_USHORT opcode) const { return std::count(asked.begin(), asked.end(), opcode); }

    static VGA_NODE *only_node() { return static_cast<VGA_NODE *>(AVL_FIRST(gvga_system->nodes)); }
    /* The entry of an answered list, counted from 0. */
    static NB_UCHAR *entry(const ISSUED_VERB &verb, NB_USHORT number) {
        auto *at = static_cast<NB_UCHAR *>(vga_buf_ptr(verb.vcb));
        for (NB_USHORT length = 0; number > 0; number--, at += length) {
            memcpy(&length, at, sizeof(length));
        }
        return at;
    }
};

TEST_F(Model, EntriesThatCannotBeRightDoNotStopTheBuild) {
    spoil = [](const ISSUED_VERB &verb) {
        auto *query = reinterpret_cast<NAP_QUERY_LIST *>(verb.vcb);
        const NB_USHORT shorter = 12, longer = 65532;
        if (query->opcode == NAP_QUERY_PORT) { /* the first is on no DLC */
            memcpy(entry(verb, 0) + offsetof(NAP_PORT_DATA, def_data.dlc_name), "NOWHERE ", 8);
        } else if (query->opcode == NAP_QUERY_LOCAL_LU) {
            query->num_entries = query->total_num_entries = 1;
            memcpy(entry(verb, 0), &shorter, sizeof(shorter));
        } else if (query->opcode == NAP_QUERY_DLC) {
            memcpy(entry(verb, query->num_entries - 1), &longer, sizeof(longer));
        }
    };
    run_build();
    EXPECT_EQ(gvga_exit_code, 0);
    EXPECT_EQ(built, 1);
    EXPECT_EQ(ntl_avl_validate(&only_node()->dlcs), 4) << "one less";
    EXPECT_EQ(ntl_avl_validate(&only_node()->ports), 4) << "and its port, too";
}

TEST_F(Model, AListThatNeverEndsIsLeftBehind) {
    std::string first;
    spoil = [&first](const ISSUED_VERB &verb) {
        auto *query = reinterpret_cast<NAP_QUERY_LIST *>(verb.vcb);
        if (query->opcode == NAP_QUERY_LOCAL_LU) {
            auto *bytes = reinterpret_cast<char *>(entry(verb, 0));
            if (query->num_entries == 0) {
                query->num_entries = 1;
                memcpy(bytes, first.data(), first.size());
            } else {
                first.assign(bytes, bytes + sizeof(NAP_LOCAL_LU_DATA));
            }
            query->total_num_entries = 60000;
        }
    };
    run_build();
    EXPECT_EQ(built, 1);
    EXPECT_EQ(gvga_exit_code, 0);
    EXPECT_LT(times(NAP_QUERY_LOCAL_LU), 10);
}

TEST_F(Model, ANodeWithoutDependentLuSupportIsNotAskedForIt) {
    spoil = [](const ISSUED_VERB &verb) {
        if (verb.vcb->opcode == NAP_QUERY_NODE) {
            reinterpret_cast<NAP_QUERY_NODE_VERB *>(verb.vcb)->dlur_support = 0;
        }
    };
    run_build();
    EXPECT_EQ(built, 1);
    EXPECT_EQ(times(NAP_QUERY_DLUR_PU), 0);
    ASSERT_NE(only_node()->cp_lu, nullptr);
    EXPECT_EQ(vga_find_lu62_by_alias(only_node(), reinterpret_cast<const NB_UCHAR *>("CORVID1 ")),
              only_node()->cp_lu);
}

TEST_F(Model, WhatCannotBeOpenedIsDoneWithout) {
    fail(NAP_OPEN_FILE, NAP_STATE_CHECK, NAP_NO_DOMAIN_CONFIG);
    fail(NAP_SET_PROCESSING_MODE, NAP_PARAMETER_CHECK, NAP_NO_PERMISSION);
    run_build();
    EXPECT_EQ(built, 1);
    EXPECT_EQ(gvga_system->domain_target, 0u);
    EXPECT_TRUE(gvga_read_only);
    EXPECT_EQ(times(NAP_QUERY_EMULATOR_USER_DEF), 0);
    EXPECT_EQ(times(NAP_QUERY_TP_LOAD_INFO), 0);

    vga_rebuild_system();
    fail(NAP_OPEN_FILE, NAP_PARAMETER_CHECK, NAP_INVALID_VALUE);
    answer(0);
    EXPECT_EQ(gvga_exit_code, VGA_EXIT_VERB_FAILED);
    EXPECT_EQ(gvga_exit_subcode, NB_ULONG{NAP_OPEN_FILE});
}

/* What is opened again is closed first. */
TEST_F(Model, ARebuildLeavesNothingOpen) {
    run_build();
    asked.clear();
    vga_rebuild_system();
    vga_rebuild_sna_net();
    vga_start_build_node(only_node());
    run(5);
    EXPECT_TRUE(vga_check_system_startup(nullptr));
    EXPECT_EQ(times(NAP_CLOSE_FILE), times(NAP_OPEN_FILE));
    EXPECT_EQ(times(NAP_OPEN_FILE), 4) << "the network file by both";
    EXPECT_EQ(times(NAP_DISCONNECT_NODE), 1);
}

TEST_F(Model, TheVerbLogTellsHowFarItIs) {
    FILE *file = tmpfile();
    ASSERT_NE(file, nullptr);
    gvga_verb_log = file;
    run_build();
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
    close();
    open("branch");
    gvga_hooks.model_built = [] { built++; };
    spoil = [](const ISSUED_VERB &verb) {
        if (verb.target % next_targets == node_targets + 1 && verb.vcb->opcode == NAP_QUERY_DLC) {
            verb.vcb->primary_rc = NAP_COMM_FAILURE;
            verb.vcb->secondary_rc = NAP_NODE_GONE;
        }
    };
    run_build();
    EXPECT_EQ(gvga_exit_code, 0);
    EXPECT_GE(built, 1);
    EXPECT_EQ(ntl_avl_validate(&gvga_system->nodes), 3);
}

} // namespace
