/* Deleting what is selected: what a plan says goes with it, and what a run makes of the plan with
 * the node software itself. */
#include "livesupport.h"

#include "completions.h"
#include "deletion.h"
#include "linetypes.h"
#include "messages.h"
#include "modelwalk.h"
#include "vgadsutl.h"
#include "vgaindct.h"
#include <map>

SCRIPTED_NOF_ENTRY

namespace {

struct RESULT {
    NB_USHORT over;
    size_t done, refused;
    std::string progress, outcome, account;
    NB_ULONG number;
} result;

NB_VOID told(NB_ULONG, const VGA_DELETION &deletion, NB_USHORT over) {
    EXPECT_EQ(result.over, 0);
    EXPECT_LE(result.done, deletion.done);
    result = {over,
              deletion.done,
              vga_count_refused(deletion),
              vga_deletion_progress(deletion),
              vga_deletion_outcome(deletion),
              vga_deletion_account(deletion),
              deletion.number};
}

class Deletion : public LIVE_MODEL, public testing::Test {
protected:
    static void SetUpTestSuite() {
        static node_test::Folder folder; /* the tree's own path may be too long for a prefix */
        std::filesystem::create_directory_symlink(BUILD_TREE, folder.file("sna"));
        setenv("SNA_PREFIX", folder.file("sna").c_str(), 1);
        ASSERT_EQ(vga_load_messages(), 1);
    }
    void TearDown() override { close(); }
    void SetUp() override { begin_with("single"); }
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

    static auto count_of(VGA_DELETABLE kind) {
        const auto all = all_records();
        return static_cast<size_t>(std::count_if(
            all.begin(), all.end(), [kind](const auto &one) { return one.kind == kind; }));
    }

    /* How many records there are of each type. */
    static std::map<std::string, size_t> counts() {
        std::map<std::string, size_t> all;
        vga_walk_model([&all](const auto &, const NB_CHAR *type, const NB_VOID *) { all[type]++; });
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
            const auto changes = [](NB_USHORT opcode) {
                return nap_find_verb(opcode)->changes != 0;
            };
            EXPECT_LE(std::count_if(scripted_nof.in_flight.begin(), scripted_nof.in_flight.end(),
                                    [&](const auto &verb) { return changes(verb.vcb->opcode); }),
                      32);
            answer(asked.size() % scripted_nof.in_flight.size());
            if (!changes(asked.back())) {
                asked.pop_back(); /* what the model asks by itself */
            }
            domain->take_indications([this](const std::string &, NAP_RESOURCE_INDICATION one) {
                VGA_PROCESS_STATE work = {node->target, reinterpret_cast<NAP_VCB *>(&one),
                                          node->handle};
                vga_dispatch_indication(&work);
            });
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

/* One of each kind after the other, and what is read again then is what the model has. */
TEST_F(Deletion, WhatHasAVerbGoesAndSoDoesWhatBelongsToIt) {
    std::vector<VGA_DELETABLE> tried;
    for (bool more = true; more;) {
        more = false;
        for (const VGA_TO_DELETE &one : all_records()) {
            auto made = std::make_unique<VGA_DELETION>();
            more = std::find(tried.begin(), tried.end(), one.kind) == tried.end() &&
                   vga_plan_deletion({one}, made.get()) == 0;
            if (more) {
                SCOPED_TRACE(vga_deletion_question(*made, {0}));
                const size_t before = count_of(one.kind);
                delete_all(std::move(made));
                EXPECT_EQ(result.refused, 0u) << result.account;
                EXPECT_LT(count_of(one.kind), before);
                tried.push_back(one.kind);
                break;
            }
        }
    }
    /* Not those that are active, in use or named, or that this node has none of. */
    EXPECT_EQ(tried.size(), size_t{VGA_DELETE_NOTHING} - 9);
    const auto followed = counts();
    end();
    begin();
    build();
    EXPECT_EQ(counts(), followed);
}

TEST_F(Deletion, ALinkIsStoppedFirstAndGoesBehindWhatIsOnIt) {
    auto made = plan({{VGA_DELETE_LS, link_named("HOSTLINE")}});
    EXPECT_EQ(vga_deletion_question(*made, {0}),
              "Do you want to delete the link station HOSTLINE?\n\n"
              "What belongs to it goes, too: 1 PU, 9 LUs, 1 local LU.\n\n"
              "What is active is stopped first: 1 link station, 1 PU. One session ends.");
    asked.clear();
    delete_all(std::move(made));
    EXPECT_EQ(asked.front(), NAP_STOP_LS);
    EXPECT_EQ(asked.at(11), NAP_DELETE_LS);
    EXPECT_EQ(result.account, "Deleted: 1 link station, 1 PU, 9 LUs, 1 local LU.\n");
    EXPECT_EQ(link_named("HOSTLINE"), nullptr);
}

/* TN3270 clients name LUs of the host, which the model has just lost. */
TEST_F(Deletion, WhatIsRefusedKeepsWhatItBelongsTo) {
    const VGA_TO_DELETE port = {VGA_DELETE_PORT, link_named("HOSTLAN")->parent};
    VGA_DELETION known;
    EXPECT_EQ(vga_plan_deletion({port}, &known), VGA_MSG_DELETE_IN_USE);
    EXPECT_EQ(known.lines[0].reason, "Another resource refers to the LU LUP002, which belongs to "
                                     "it. Delete or change that first.");
    vga_delete_all<VGA_TN_CLIENT>(node->tn_clients);
    auto made = plan({port});
    delete_all(std::move(made));
    EXPECT_EQ(result.refused, 1u);
    EXPECT_EQ(result.outcome, "Deleted: 2 link stations, 1 port in a connection network, 35 LUs. "
                              "Not deleted: 1 port, 1 link station, 2 LUs.");
    EXPECT_NE(result.account.find("\nAnother resource refers to it. Delete or change that first.\n"
                                  "    LU LUP002\n    LU LUS001\n"),
              std::string::npos)
        << result.account;
    EXPECT_NE(result.account.find("The LU LUP002, which belongs to it, was not deleted.\n"
                                  "    link station HOSTLAN\n"),
              std::string::npos);
    EXPECT_NE(link_named("HOSTLAN"), nullptr);
}

/* An LU of the host that kiosks on another link are served by. */
TEST_F(Deletion, WhatNamesAnLuGoesBeforeItOrKeepsIt) {
    close();
    begin_with("branch");
    const VGA_TO_DELETE host = {VGA_DELETE_LS, link_named("HOSTCH")};
    const VGA_TO_DELETE kiosks = {VGA_DELETE_LS, link_named("KIOSK2")};
    VGA_DELETION alone;
    EXPECT_EQ(vga_plan_deletion({host}, &alone), VGA_MSG_DELETE_IN_USE);
    EXPECT_NE(alone.lines[0].reason.find("CHK006"), std::string::npos) << alone.lines[0].reason;
    delete_all(plan({host, kiosks}));
    EXPECT_EQ(result.refused, 0u) << result.account;
}

/* A client without sessions is none, a user without them is one. */
TEST_F(Deletion, PartsOfOneEntryGoOneBehindTheOther) {
    for (const VGA_DELETABLE kind : {VGA_DELETE_TN_SESSION, VGA_DELETE_USER_SESSION}) {
        std::vector<VGA_TO_DELETE> what = all_records();
        what.erase(std::remove_if(what.begin(), what.end(),
                                  [kind](const auto &one) { return one.kind != kind; }),
                   what.end());
        ASSERT_GT(what.size(), 4u);
        auto made = plan(what);
        made->lines[1].wanted = 0;
        delete_all(std::move(made));
        EXPECT_EQ(count_of(kind), 1u) << result.account;
    }
    EXPECT_EQ(count_of(VGA_DELETE_TN_CLIENT), 1u);
    EXPECT_EQ(count_of(VGA_DELETE_USER), 5u);
}

TEST_F(Deletion, WhatCannotBeStoppedStaysWithAllThatBelongsToIt) {
    spoil = [](const ISSUED_VERB &verb) {
        if (verb.vcb->opcode == NAP_STOP_LS) {
            verb.vcb->primary_rc = NAP_STATE_CHECK;
            verb.vcb->secondary_rc = NAP_STORE_FAILED;
        }
    };
    asked.clear();
    delete_all(plan({{VGA_DELETE_LS, link_named("HOSTLINE")}}));
    spoil = nullptr;
    EXPECT_EQ(asked, (std::vector<NB_USHORT>{NAP_STOP_LS}));
    EXPECT_EQ(result.outcome, "Not deleted: 1 link station, 9 LUs, 1 local LU.");
}

TEST_F(Deletion, OfASelectionEachGroupHasItsQuestion) {
    std::vector<VGA_TO_DELETE> what;
    vga_for_each(node->link_stations, &VGA_LS::node_links, [&what](VGA_LS &ls) {
        what.push_back({VGA_DELETE_LS, &ls});
    });
    link_named("NORTH")->vcb->det_data.dynamic = 1;
    auto made = plan(what);
    const auto groups = vga_group_deletion(*made);
    size_t lines = 2; /* HOSTLAN, whose LUs are named, and the one that the system made */
    for (const auto &group : groups) {
        lines += group.size();
        for (const size_t at : group) {
            EXPECT_EQ(made->lines[at].with, made->lines[group[0]].with);
            made->lines[at].wanted = group.size() > 1;
        }
    }
    EXPECT_EQ(lines, what.size());
    EXPECT_GT(groups.size(), 2u);
    EXPECT_NE(vga_deletion_question(*made, groups[0])
                  .find("\n\n2 link stations cannot be deleted: Another resource refers to "),
              std::string::npos);
    delete_all(std::move(made));
    EXPECT_NE(link_named("NORTH"), nullptr);
    EXPECT_NE(link_named("HOSTLINE"), nullptr) << "not wanted";
    link_named("NORTH")->vcb->det_data.dynamic = 0;
}

/* Somebody else deletes some while the verbs are under way, and then the node dies. */
TEST_F(Deletion, WhatWentMeanwhileIsGoneAndADeadNodeEndsTheRun) {
    std::vector<VGA_TO_DELETE> what;
    vga_delete_all<VGA_TN_CLIENT>(node->tn_clients);
    vga_for_each(vga_find_local_pu(node, link_named("HOSTLAN")->local_pu->name)->lus,
                 &VGA_LU03::links, [&what](VGA_LU03 &lu) {
                     what.push_back({VGA_DELETE_LU03, &lu});
                 });
    ASSERT_GT(what.size(), 35u);
    vga_run_deletion(plan(what), 0, told);
    EXPECT_EQ(scripted_nof.in_flight.size(), 32u);
    scripted_nof.complete(0, NAP_PARAMETER_CHECK, NAP_UNKNOWN_RESOURCE);
    vga_delete_vga_lu03(static_cast<VGA_LU03 *>(what[34].record));
    answer(0);
    EXPECT_EQ(result.progress, "Deleting 2 of 37.");
    EXPECT_EQ(result.over, 0);
    vga_free_node_resources(node, 1, nullptr);
    EXPECT_EQ(result.over, 1);
    EXPECT_EQ(result.done, what.size());
    EXPECT_EQ(result.outcome.find("Deleted: 2 LUs. Not deleted: 35 LUs."), 0u) << result.outcome;
    EXPECT_NE(result.account.find(vga_message(VGA_MSG_CONNECTION_LOST)), std::string::npos);
    scripted_nof.in_flight.clear();
}

TEST_F(Deletion, ARunIsCancelledBetweenItsItems) {
    std::vector<VGA_TO_DELETE> what;
    vga_delete_all<VGA_TN_CLIENT>(node->tn_clients);
    vga_for_each(vga_find_local_pu(node, link_named("HOSTLAN")->local_pu->name)->lus,
                 &VGA_LU03::links, [&what](VGA_LU03 &lu) {
                     what.push_back({VGA_DELETE_LU03, &lu});
                 });
    vga_run_deletion(plan(what), 0, told);
    vga_cancel_deletion(result.number);
    EXPECT_EQ(scripted_nof.in_flight.size(), 32u) << "what is under way completes";
    while (!scripted_nof.in_flight.empty()) {
        answer(0);
    }
    EXPECT_EQ(result.over, 1);
    EXPECT_EQ(result.refused, 0u);
    EXPECT_EQ(result.outcome, "Deleted: 30 LUs. Cancelled: 7 LUs.") << "two were only stopped";
}

TEST_F(Deletion, WhatCannotBeIsRefusedBeforeAnythingIsAsked) {
    VGA_DELETION none;
    EXPECT_EQ(vga_plan_deletion({}, &none), VGA_MSG_NODEW_SELECT_FIRST);
    const VGA_TO_DELETE link = {VGA_DELETE_LS, link_named("NORTH")};
    const struct {
        VGA_TO_DELETE what;
        NB_USHORT reason;
    } rows[] = {
        {{VGA_DELETE_NOTHING, nullptr}, VGA_MSG_NODEW_NOT_FOR_THIS},
        {{VGA_DELETE_LU62, node->cp_lu}, VGA_MSG_NODEW_NOT_DEFINED},
        {{VGA_DELETE_PORT, node->dlur_fake_port}, VGA_MSG_NODEW_NOT_DEFINED},
        {{VGA_DELETE_PU, link_named("HOSTLINE")->local_pu}, VGA_MSG_NODEW_NOT_DEFINED},
        {{VGA_DELETE_PRIMARY_LINE, AVL_FIRST(node->primary_lines)}, VGA_MSG_DELETE_ACTIVE},
        {link, 0},
    };
    for (const auto &row : rows) {
        VGA_DELETION made;
        EXPECT_EQ(vga_plan_deletion({row.what}, &made), row.reason) << row.what.kind;
    }
    gvga_read_only = 1;
    EXPECT_EQ(vga_refuses_deletion(link), VGA_MSG_NODEW_LOOK_ONLY);
    gvga_read_only = 0;
    const NB_ULONG target = std::exchange(node->target, 0);
    EXPECT_EQ(vga_refuses_deletion(link), VGA_MSG_NODEW_NODE_NOT_CONNECTED);
    node->target = target;
    EXPECT_EQ(vga_to_delete(VGA_VIEWER_LS_LEAF, link.record).kind, VGA_DELETE_LS);
    EXPECT_EQ(vga_to_delete(VGA_VIEWER_RTP_CONN, link.record).kind, VGA_DELETE_NOTHING);
}

} // namespace
