/* The verb pipeline against a scripted verb interface. */
#include <gtest/gtest.h>

#include "globals.h"
#include "hooks.h"
#include "nofverbs.h"
#include "scriptednof.h"
#include "verbqueue.h"
#include <vector>

SCRIPTED_NOF_ENTRY

namespace {

std::vector<NB_ULONG> completed; /* user data, in order */
std::vector<NB_USHORT> indications;

NB_VOID note_completion(const VGA_PROCESS_STATE *work) {
    completed.push_back(work->user_data);
}
NB_VOID note_other(const VGA_PROCESS_STATE *work) {
    completed.push_back(work->user_data + 1000);
}
NB_VOID note_indication(const VGA_PROCESS_STATE *work) {
    indications.push_back(work->vcb->opcode);
}

NB_USHORT queue(NB_ULONG target, NB_USHORT opcode, NB_ULONG user_data,
                VGA_COMPLETION completion = note_completion) {
    return vga_issue_verb(target, vga_new_verb<NAP_NAME_VERB>(opcode), user_data, completion);
}

NB_USHORT queue_list(NB_ULONG target, NB_ULONG user_data) {
    auto query = vga_new_verb<NAP_QUERY_LIST>(NAP_QUERY_PORT);
    vga_set_buf_ptr(reinterpret_cast<NAP_VCB *>(query.get()), vga_get_querybuf(4096));
    return vga_issue_verb(target, std::move(query), user_data, note_completion);
}

class Pipeline : public testing::Test {
protected:
    void SetUp() override {
        scripted_nof.reset();
        completed.clear();
        indications.clear();
        gvga_exit_code = 0;
        gvga_hooks.indication = note_indication;
        vga_init_verb_queues();
        nba_pd_set_log(nullptr, NB_PD_NONE);
    }
    void TearDown() override {
        vga_empty_verb_queues();
        gvga_exit_code = 0;
    }
};

using LIST = std::vector<NB_ULONG>;

TEST_F(Pipeline, ASynchronousCompletionWaitsForTheMainLoop) {
    scripted_nof.completes_at_once = [](const ISSUED_VERB &) { return NB_USHORT{1}; };
    queue(1, NAP_DELETE_PORT, 10);
    queue_list(1, 11);
    EXPECT_TRUE(completed.empty());
    EXPECT_TRUE(NB_EMPTY_LIST(gvga_nof_queue));
    vga_drain_immediate_queue();
    EXPECT_EQ(completed, (LIST{10, 11}));
    EXPECT_TRUE(NB_EMPTY_LIST(gvga_immediate_nof_queue));
}

TEST_F(Pipeline, AnExitRequestLeavesTheImmediateQueueForTheCleanUp) {
    scripted_nof.completes_at_once = [](const ISSUED_VERB &) { return NB_USHORT{1}; };
    queue_list(1, 10);
    VGA_EXIT(VGA_EXIT_NORMAL, 0);
    vga_drain_immediate_queue();
    EXPECT_TRUE(completed.empty());
    EXPECT_FALSE(NB_EMPTY_LIST(gvga_immediate_nof_queue));
}

TEST_F(Pipeline, APurgedVerbInFlightHoldsLaterVerbsOfItsTargetBack) {
    static LIST purged;
    purged.clear();
    gvga_hooks.verb_purged = [](NB_USHORT, NB_ULONG data) { purged.push_back(data); };
    queue(1, NAP_DELETE_PORT, 10);
    queue(1, NAP_DELETE_LS, 11);
    vga_purge_verb_queue(1, 0, nullptr, 0, nullptr);
    vga_purge_verb_queue(1, 0, nullptr, 0, nullptr);
    EXPECT_EQ(purged, (LIST{10, 11})) << "each is told of once";
    queue(1, NAP_DELETE_MODE, 12);
    queue(1, NAP_DISCONNECT_NODE, 13);
    queue(2, NAP_DELETE_MODE, 14);
    EXPECT_EQ(scripted_nof.issued, 4u) << "the disconnect and the other target are not held";
    scripted_nof.complete(0);
    EXPECT_EQ(scripted_nof.issued, 4u) << "the second purged verb still holds";
    scripted_nof.complete(0);
    EXPECT_EQ(scripted_nof.issued, 5u);
    while (!scripted_nof.in_flight.empty()) {
        scripted_nof.complete(0);
    }
    EXPECT_EQ(completed, (LIST{13, 14, 12}));
}

TEST_F(Pipeline, KnowsWhatIsOutstandingAtWhom) {
    for (const NB_ULONG target : {5, 6, 6}) {
        queue(target, NAP_START_PORT, target);
    }
    const auto verbs = [](NB_ULONG target) { return vga_outstanding(target).verbs; };
    EXPECT_EQ((LIST{verbs(0), verbs(5), verbs(6), verbs(7)}), (LIST{3, 1, 2, 0}));
    EXPECT_EQ(vga_outstanding(0).target, 5U);
    vga_purge_verb_queue(0, 0, nullptr, 5, nullptr); /* nobody waits any more */
    EXPECT_EQ((LIST{verbs(0), vga_outstanding(0).target}), (LIST{2, 6}));
    scripted_nof.in_flight.clear();
}

TEST_F(Pipeline, WhoOnlyLooksChangesNothing) {
    for (const NAP_VERB &verb : gnap_verbs) {
        SCOPED_TRACE(verb.name);
        const NB_USHORT refused = verb.changes != 0 || verb.opcode == NAP_SET_PROCESSING_MODE;
        VGA_OWNED<NAP_VCB> block(static_cast<NAP_VCB *>(calloc(1, verb.block_size)));
        static NB_ULONG secondary;
        block->opcode = verb.opcode;
        scripted_nof.issued = secondary = 0;
        gvga_look_only = 1;
        vga_issue_verb(1, std::move(block), 0, [](const VGA_PROCESS_STATE *work) {
            EXPECT_EQ(work->vcb->primary_rc, NAP_PARAMETER_CHECK);
            secondary = work->vcb->secondary_rc;
        });
        gvga_look_only = 0;
        vga_drain_immediate_queue();
        EXPECT_EQ(secondary, refused != 0 ? NB_ULONG{NAP_NO_PERMISSION} : 0);
        EXPECT_EQ(scripted_nof.issued, refused != 0 ? 0u : 1u);
    }
}

TEST_F(Pipeline, PurgeFiltersByEachArgument) {
    queue(1, NAP_DELETE_PORT, 10);
    vga_purge_verb_queue(1, 0, nullptr, 0, nullptr); /* holds what follows */
    queue(1, NAP_DELETE_LS, 11);
    queue(1, NAP_DELETE_MODE, 12);
    queue(1, NAP_DELETE_LS, 13, note_other);
    queue_list(1, 14);
    vga_purge_verb_queue(2, 0, nullptr, 0, nullptr);
    vga_purge_verb_queue(1, NAP_DELETE_MODE, nullptr, 0, nullptr);
    vga_purge_verb_queue(0, 0, nullptr, 0, note_other);
    vga_purge_verb_queue(0, 0, nullptr, 99, nullptr);
    while (!scripted_nof.in_flight.empty()) {
        scripted_nof.complete(0);
    }
    EXPECT_EQ(completed, (LIST{11, 14}));
}

TEST_F(Pipeline, AGoneConnectionSkipsTheCompletion) {
    queue_list(1, 10);
    queue(1, NAP_DELETE_PORT, 11);
    scripted_nof.complete(0, NAP_COMM_FAILURE, NAP_CONNECTION_GONE);
    scripted_nof.complete(0, NAP_COMM_FAILURE, NAP_NODE_GONE);
    EXPECT_EQ(completed, (LIST{11}));
}

TEST_F(Pipeline, UnsolicitedBlocksGoToTheDispatchAndStayTheInterfaces) {
    queue(1, NAP_DELETE_PORT, 10);
    NAP_RESOURCE_INDICATION indication = {};
    NAP_DEFINE_PORT_VERB copy = {};
    indication.opcode = NAP_PORT_INDICATION;
    copy.opcode = NAP_DEFINE_PORT;
    copy.primary_rc = NAP_INDICATION;
    vga_nof_verb_callback(1, &indication, 5);
    vga_nof_verb_callback(1, &copy, 5);
    EXPECT_EQ(indications, (std::vector<NB_USHORT>{NAP_PORT_INDICATION, NAP_DEFINE_PORT}));
    EXPECT_FALSE(NB_EMPTY_LIST(gvga_nof_queue));

    indication.secondary_rc = NAP_SINK_OVERFLOW;
    vga_nof_verb_callback(1, &indication, 5);
    EXPECT_EQ(gvga_exit_code, VGA_EXIT_INTERNAL);
    EXPECT_STREQ(gvga_exit_file, "../../p/vga/vgautil");
    EXPECT_EQ(gvga_exit_line, 385);
}

} // namespace
