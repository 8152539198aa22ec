/* Deleting what is selected: what a plan says goes with it, and what a run makes of the plan with
 * the node software itself. */
#include "livesupport.h"

#include "completions.h"
#include "deletion.h"
#include "linetypes.h"
#include "messages.h"
#include "modelwalk.h"
#include "vgadsutl.h"

SCRIPTED_NOF_ENTRY

namespace {

struct RESULT {
    NB_USHORT over;
    size_t done, refused;
    std::string progress, outcome, account;
} result;

NB_VOID told(NB_ULONG, const VGA_DELETION &deletion, NB_USHORT over) {
    EXPECT_EQ(result.over, 0);
    EXPECT_LE(result.done, deletion.done);
    result = {over,
              deletion.done,
              vga_count_refused(deletion),
              vga_deletion_progress(deletion),
              vga_deletion_outcome(deletion),
              vga_deletion_account(deletion)};
}

class Deletion : public LIVE_MODEL, public testing::Test {
protected:
    static void SetUpTestSuite() {
        setenv("SNA_PREFIX", BUILD_TREE, 1);
        ASSERT_EQ(vga_load_messages(), 1);
    }
    void SetUp() override { begin_with("single"); }
    void TearDown() override { close(); }

    NB_VOID begin_with(const std::string &sample) {
        open(sample);
        gvga_hooks.verb_purged = vga_deletion_verb_purged;
        build();
        node = static_cast<VGA_NODE *>(AVL_FIRST(gvga_system->nodes));
        result = {};
    }

    /* Every record that can be deleted now, by the first kind of its type. */
    static std::vector<VGA_TO_DELETE> all_records() {
        std::vector<VGA_TO_DELETE> all;
        vga_walk_model([&all](auto &record, const NB_CHAR *, const NB_VOID *) {
            using RECORD = std::remove_reference_t<decltype(record)>;
            VGA_TO_DELETE one = {VGA_DELETE_NOTHING, &record};
#define OF_TYPE(name, type)                                                                        \
    one.kind = one.kind == VGA_DELETE_NOTHING && std::is_same_v<RECORD, type> ? VGA_DELETE_##name  \
                                                                              : one.kind;
            VGA_DELETABLES(OF_TYPE)
#undef OF_TYPE
            if (vga_refuses_deletion(one) == 0) {
                all.push_back(one);
            }
        });
        return all;
    }

    static std::unique_ptr<VGA_DELETION> plan(const std::vector<VGA_TO_DELETE> &what) {
        auto made = std::make_unique<VGA_DELETION>();
        EXPECT_EQ(vga_plan_deletion(what, made.get()), 0);
        return made;
    }

    NB_VOID delete_all(std::unique_ptr<VGA_DELETION> of) {
        result = {};
        vga_run_deletion(std::move(of), 0, told);
        while (!scripted_nof.in_flight.empty()) {
            EXPECT_LE(scripted_nof.in_flight.size(), 32u);
            answer(asked.size() % scripted_nof.in_flight.size());
        }
        EXPECT_EQ(result.over, 1);
        check_model();
    }

    VGA_LS *link_named(const NB_CHAR *name) const {
        NB_UCHAR key[8];
        records::put_local(key, sizeof(key), name);
        return vga_find_ls(node, key);
    }

    VGA_NODE *node;
};

/* One of each kind after the other, with all that goes with it, until nothing is left of it. */
TEST_F(Deletion, WhatHasAVerbGoesAndSoDoesWhatBelongsToIt) {
    for (const NB_CHAR *sample : {"single", "branch"}) {
        std::vector<VGA_DELETABLE> tried;
        for (bool more = true; more;) {
            more = false;
            for (const VGA_TO_DELETE &one : all_records()) {
                if (std::find(tried.begin(), tried.end(), one.kind) != tried.end()) {
                    continue;
                }
                auto made = plan({one});
                SCOPED_TRACE(vga_deletion_question(*made, {0}));
                const size_t before = all_records().size();
                const size_t items = made->items.size();
                delete_all(std::move(made));
                EXPECT_EQ(
                    result.done == 0 ? 0 : before - all_records().size() >= 1 || result.refused, 1)
                    << result.account << items;
                tried.push_back(one.kind);
                more = true;
                break;
            }
        }
        printf("%s %zu\n", sample, tried.size());
        close();
        begin_with("branch");
    }
}

TEST_F(Deletion, ALinkGoesBehindWhatIsOnIt) {
    auto made = plan({{VGA_DELETE_LS, link_named("HOSTLINE")}});
    printf("%s\n", vga_deletion_question(*made, {0}).c_str());
    asked.clear();
    delete_all(std::move(made));
    printf("%s\n", result.account.c_str());
    for (auto opcode : asked)
        printf("%s ", nap_find_verb(opcode)->name);
}

} // namespace
