/* Starting and stopping: which verb goes out, which does not, what the node makes of it, and the
 * account of several. */
#include "livesupport.h"

#include "completions.h"
#include "messages.h"
#include "outcomes.h"
#include "startstopbatch.h"
#include "startstopeffects.h"
#include "vgadsutl.h"
#include "vgaindct.h"

SCRIPTED_NOF_ENTRY

namespace {

std::vector<NB_USHORT> completed; /* primary codes */
std::vector<VGA_OPERATION_ACCOUNT> news;
std::ptrdiff_t most; /* starts of links under way at a time */

NB_VOID note(NB_ULONG, const VGA_OPERATION_ACCOUNT &account) {
    news.push_back(account);
    const auto is_start = [](const ISSUED_VERB &one) { return one.vcb->opcode == NAP_START_LS; };
    const auto &verbs = scripted_nof.in_flight;
    most = std::max(most, std::count_if(verbs.begin(), verbs.end(), is_start));
}

NB_VOID done(const VGA_PROCESS_STATE *work) {
    completed.push_back(work->vcb->primary_rc);
    vga_verb_completed(work);
}

class StartStop : public LIVE_MODEL, public testing::Test {
protected:
    void SetUp() override {
        open("single");
        build();
        domain->take_indications([](const std::string &, const NAP_RESOURCE_INDICATION &) {});
        node = static_cast<VGA_NODE *>(AVL_FIRST(gvga_system->nodes));
        gvga_hooks.record_awaited = vga_operations_follow;
        gvga_hooks.verb_purged = vga_operation_purged;
        gvga_messages[VGA_MSG_KIND_PORTS] = "port|%1 ports";
        gvga_messages[VGA_MSG_OPER_NEEDED] = "It needs%1.";
        completed.clear();
        news.clear();
        most = 0;
    }
    void TearDown() override { close(); }

    /* Issues the operation and lets all follow that follows, or what does at once. */
    NB_USHORT operate(const VGA_RESOURCE &resource, VGA_OPERATION operation, NB_ULONG ms = 1000) {
        const NB_USHORT reason = vga_operate(resource, operation, 0, done);
        follow(ms);
        return reason;
    }

    NB_VOID follow(NB_ULONG ms = 1000) {
        run(1);
        for (int round = 0; round < 20; round++) {
            domain->pass(ms);
            domain->take_indications([this](const std::string &, NAP_RESOURCE_INDICATION one) {
                VGA_PROCESS_STATE work = {node->target, reinterpret_cast<NAP_VCB *>(&one),
                                          node->handle};
                vga_dispatch_indication(&work);
            });
            run(1);
        }
    }

    template <class Record>
    static Record *first_active(AVL_TREE &tree, bool (*active)(Record &), AVL_NODE Record::*links) {
        Record *found = nullptr;
        vga_for_each(tree, links, [&found, active](Record &record) {
            found = found == nullptr && active(record) ? &record : found;
        });
        return found;
    }
    /* An active link station with a PU of the host. */
    VGA_LS *host_link() {
        return first_active<VGA_LS>(
            node->link_stations,
            [](VGA_LS &one) { return one.state == NAP_ACTIVE && one.local_pu != nullptr; },
            &VGA_LS::node_links);
    }

    VGA_NODE *node;
};

TEST_F(StartStop, WhatStandsOnALineGoesDownAndUp) {
    VGA_LS *ls = host_link();
    auto *dlur = first_active<VGA_LOCAL_PU>(
        node->local_pus,
        [](VGA_LOCAL_PU &one) {
            return one.vcb->host_attachment == NAP_DLUR_ATTACHED &&
                   one.vcb->pu_sscp_sess_active == NAP_ACTIVE;
        },
        &VGA_LOCAL_PU::links);
    ASSERT_NE(ls, nullptr);
    ASSERT_NE(dlur, nullptr);
    VGA_PORT *port = ls->parent;
    VGA_DLC *dlc = port->parent;
    const struct {
        VGA_RESOURCE resource;
        std::function<NB_ULONG()> state;
    } rows[] = {
        {{VGA_OPERABLE_LOCAL_PU, dlur}, [&] { return dlur->vcb->pu_sscp_sess_active; }},
        {{VGA_OPERABLE_LOCAL_PU, ls->local_pu},
         [&] { return ls->local_pu->vcb->pu_sscp_sess_active; }},
        {{VGA_OPERABLE_LS, ls}, [&] { return ls->state; }},
        {{VGA_OPERABLE_PORT, port}, [&] { return port->vcb->det_data.port_state; }},
        {{VGA_OPERABLE_DLC, dlc}, [&] { return dlc->vcb->dlc_sts; }},
    };
    for (const auto &row : rows) {
        for (const VGA_OPERATION stop : {VGA_STOP_ORDERLY, VGA_STOP_IMMEDIATE}) {
            SCOPED_TRACE(row.resource.kind);
            EXPECT_EQ(operate(row.resource, VGA_START), VGA_MSG_NODEW_ACTIVE_ALREADY);
            EXPECT_EQ(operate(row.resource, stop), 0);
            EXPECT_EQ(row.state(), NB_ULONG{NAP_NOT_ACTIVE});
            EXPECT_EQ(operate(row.resource, stop), VGA_MSG_NODEW_NOT_ACTIVE);
            EXPECT_EQ(operate(row.resource, VGA_START), 0);
            EXPECT_EQ(row.state(), NB_ULONG{NAP_ACTIVE});
        }
        EXPECT_EQ(operate(row.resource, VGA_STOP_ORDERLY, 0), 0);
        EXPECT_EQ(row.state(), NB_ULONG{NAP_PENDING_INACTIVE});
        EXPECT_EQ(vga_refuses_operation(row.resource, VGA_STOP_ORDERLY), VGA_MSG_NODEW_WRONG_STATE);
        EXPECT_EQ(vga_refuses_operation(row.resource, VGA_STOP_IMMEDIATE), 0);
        EXPECT_EQ(operate(row.resource, VGA_START), 0) << "takes it back";
        EXPECT_EQ(row.state(), NB_ULONG{NAP_ACTIVE});
    }
    EXPECT_EQ(completed, std::vector<NB_USHORT>(30, NAP_OK));
}

TEST_F(StartStop, AnActiveLinkStandsForItsPu) {
    VGA_LS *ls = host_link();
    ASSERT_NE(ls, nullptr);
    EXPECT_EQ(operate({VGA_OPERABLE_LOCAL_PU, ls->local_pu}, VGA_STOP_IMMEDIATE), 0);
    EXPECT_EQ(ls->state, NAP_ACTIVE);
    EXPECT_EQ(operate({VGA_OPERABLE_LS, ls}, VGA_START), 0);
    EXPECT_EQ(ls->local_pu->vcb->pu_sscp_sess_active, NAP_ACTIVE);
}

TEST_F(StartStop, OfTheNode) {
    const VGA_RESOURCE itself = {VGA_OPERABLE_NODE, node};
    const VGA_RESOURCE port = {VGA_OPERABLE_PORT, AVL_FIRST(node->ports)};
    EXPECT_EQ(vga_refuses_operation(itself, VGA_START), VGA_MSG_NODEW_ACTIVE_ALREADY);
    EXPECT_EQ(operate(itself, VGA_STOP_ORDERLY), 0);
    EXPECT_EQ(node->node_state, NB_ULONG{NAP_NODE_STOPPING}) << "the answer stands for it";
    EXPECT_EQ(vga_refuses_operation(itself, VGA_STOP_ORDERLY), VGA_MSG_NODEW_WRONG_STATE);
    EXPECT_EQ(vga_refuses_operation(port, VGA_START), VGA_MSG_NODEW_NODE_NOT_ACTIVE);
    node->node_state = NAP_NODE_STOPPED;
    EXPECT_EQ(operate(itself, VGA_START), 0);
    EXPECT_EQ(node->node_state, NB_ULONG{NAP_NODE_STARTING});
}

TEST_F(StartStop, WhatIsRefusedIsNotIssued) {
    const VGA_RESOURCE port = {VGA_OPERABLE_PORT, AVL_FIRST(node->ports)};
    const NB_ULONG before = scripted_nof.issued;
    gvga_read_only = 1;
    EXPECT_EQ(vga_operate(port, VGA_STOP_ORDERLY, 0, done), VGA_MSG_NODEW_LOOK_ONLY);
    gvga_read_only = 0;
    const NB_ULONG target = std::exchange(node->target, 0);
    EXPECT_EQ(vga_operate(port, VGA_STOP_ORDERLY, 0, done), VGA_MSG_NODEW_NODE_NOT_CONNECTED);
    node->target = target;
    EXPECT_EQ(vga_operate({VGA_OPERABLE_NONE, nullptr}, VGA_START, 0, done),
              VGA_MSG_NODEW_NOT_STARTABLE);
    EXPECT_EQ(vga_operate({VGA_OPERABLE_LU62, AVL_FIRST(node->lus)}, VGA_START, 0, done),
              VGA_MSG_NODEW_NOT_STARTABLE);
    if (node->dlur_fake_port != nullptr) {
        EXPECT_EQ(vga_operate({VGA_OPERABLE_PORT, node->dlur_fake_port}, VGA_START, 0, done),
                  VGA_MSG_NODEW_NOT_STARTABLE);
    }
    EXPECT_EQ(vga_operate_all({}, VGA_START, 0, note), VGA_MSG_NODEW_SELECT_FIRST);
    EXPECT_TRUE(news.empty());
    EXPECT_EQ(scripted_nof.issued, before);
}

TEST_F(StartStop, OfASelectionWhatCanBe) {
    VGA_VIEWER_ROOT &list = node->connectivity_root;
    NB_ULONG active = 0;
    vga_for_each(node->ports, &VGA_PORT::node_links, [&](VGA_PORT &port) {
        vga_viewer_set_select(&list, &port.gui_data.viewer, 1);
        active += port.vcb->det_data.port_state == NAP_ACTIVE;
    });
    ASSERT_GT(active, 1U);
    EXPECT_EQ(vga_selected_resources(&list).size(), static_cast<size_t>(list.select_count));
    EXPECT_EQ(vga_operate_all(vga_selected_resources(&list), VGA_STOP_IMMEDIATE, 0, note), 0);
    EXPECT_EQ(scripted_nof.in_flight.size(), active);
    for (const ISSUED_VERB &verb : scripted_nof.in_flight) {
        NAP_NAME_VERB stop;
        memcpy(&stop, verb.vcb, sizeof(stop));
        EXPECT_EQ(stop.opcode, NAP_STOP_PORT);
        EXPECT_EQ(stop.stop_type, NAP_IMMEDIATE_STOP);
        EXPECT_EQ(verb.target, node->target);
        EXPECT_NE(vga_find_port(node, stop.key), nullptr);
    }
    run(1);
    EXPECT_EQ(news.back().done, active);
    EXPECT_EQ(news.back().passed, static_cast<NB_ULONG>(list.select_count) - active);
    EXPECT_TRUE(news.back().over());
}

/* The kinds of lines, and of reasons the one that comes first. */
TEST_F(StartStop, WhyNot) {
    VGA_VIEWER_ITEM line = {};
    const NB_UCHAR never[] = {VGA_VIEWER_REM_SYS,      VGA_VIEWER_REM_PLU,     VGA_VIEWER_REM_SESS,
                              VGA_VIEWER_REM_PLU_LEAF, VGA_VIEWER_LS_R_TITLE,  VGA_VIEWER_LS_R,
                              VGA_VIEWER_PRIMARY_LINE, VGA_VIEWER_PRIMARY_LU0, VGA_VIEWER_DOWN_LU};
    VGA_LS *ls = host_link();
    ASSERT_NE(ls, nullptr);
    const VGA_RESOURCE link = {VGA_OPERABLE_LS, ls};
    const std::pair<std::function<NB_VOID()>, NB_USHORT> worse[] = {
        {[] {}, VGA_MSG_NODEW_ACTIVE_ALREADY},
        {[&] { node->node_state = NAP_NODE_STOPPED; }, VGA_MSG_NODEW_NODE_NOT_ACTIVE},
        {[] { gvga_read_only = 1; }, VGA_MSG_NODEW_LOOK_ONLY},
        {[&] { node->connection = VGA_NOT_CONNECTED; }, VGA_MSG_NODEW_NODE_NOT_CONNECTED},
        {[&] { node->lost_at = 1; }, VGA_MSG_NODEW_NODE_LOST},
    };
    for (const auto &[make_worse, reason] : worse) {
        make_worse();
        EXPECT_EQ(vga_refuses_operation(link, VGA_START), reason);
        for (const NB_UCHAR type : never) {
            line.type = type;
            line.data = ls;
            for (const VGA_OPERATION operation : {VGA_START, VGA_STOP_IMMEDIATE}) {
                EXPECT_EQ(vga_refuses_operation(vga_resource_of_line(&line), operation),
                          VGA_MSG_NODEW_NOT_STARTABLE);
            }
        }
    }
    gvga_read_only = 0;
    node->connection = VGA_CONNECTED;
}

TEST_F(StartStop, WhatAStartNeedsComesFirst) {
    VGA_LS *ls = host_link();
    ASSERT_NE(ls, nullptr);
    VGA_PORT *port = ls->parent;
    VGA_DLC *dlc = port->parent;
    const VGA_EFFECTS ends = vga_effects_of_stop({{VGA_OPERABLE_DLC, dlc}});
    EXPECT_TRUE(ends.ports > 0 && ends.links > 0 && ends.pus > 0 && ends.lus > 0);
    EXPECT_EQ(vga_count_in_words(VGA_OPERABLE_PORT, 1), "1 port");

    EXPECT_EQ(operate({VGA_OPERABLE_DLC, dlc}, VGA_STOP_IMMEDIATE), 0);
    EXPECT_TRUE(vga_effects_in_words(vga_effects_of_stop({{VGA_OPERABLE_DLC, dlc}})).empty());
    asked.clear();
    const VGA_RESOURCE pu = {VGA_OPERABLE_LOCAL_PU, ls->local_pu};
    EXPECT_EQ(vga_operate_all({pu, {VGA_OPERABLE_LS, ls}}, VGA_START, 0, note), 0);
    EXPECT_EQ(scripted_nof.in_flight.size(), 1u) << "once for both";
    follow();
    EXPECT_EQ(asked.front(), NAP_START_DLC);
    EXPECT_EQ(news.back().done, 2u);
    EXPECT_EQ(ls->local_pu->vcb->pu_sscp_sess_active, NAP_ACTIVE);

    /* What does not come up, is taken away, or is refused ends the wait. */
    const auto fail_again = [&](const std::function<NB_VOID()> &happens) {
        operate({VGA_OPERABLE_DLC, dlc}, VGA_STOP_IMMEDIATE);
        EXPECT_EQ(
            vga_operate_all({{VGA_OPERABLE_PORT, port}, {VGA_OPERABLE_LS, ls}}, VGA_START, 0, note),
            0);
        happens();
        EXPECT_TRUE(news.back().over());
        EXPECT_EQ(news.back().failures.size() + news.back().gone, 2u);
        follow();
    };
    fail_again([&] {
        run(1);
        vga_record_changed(dlc, VGA_RECORD_CHANGED);
    });
    EXPECT_EQ(news.back().failures[1].reason, "It needs LAN0.");
    fail_again([&] { scripted_nof.complete(0, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE); });
    EXPECT_EQ(news.back().failures[0].resource, "port ETH0");
    fail_again([&] {
        run(1);
        node->connection = VGA_NOT_CONNECTED;
        vga_node_list_changed(node, VGA_NODE_CHANGED);
        node->connection = VGA_CONNECTED;
    });
    fail_again([&] {
        run(1);
        vga_record_changed(port, VGA_RECORD_GONE);
        vga_record_changed(dlc, VGA_RECORD_GONE);
    });

    operate({VGA_OPERABLE_DLC, dlc}, VGA_STOP_IMMEDIATE);
    const std::vector<VGA_RESOURCE> many(2 * VGA_OPERATIONS_IN_FLIGHT, {VGA_OPERABLE_LS, ls});
    EXPECT_EQ(vga_operate_all(many, VGA_START, 0, note), 0);
    follow();
    EXPECT_GT(most, 1);
    EXPECT_LE(most, VGA_OPERATIONS_IN_FLIGHT) << "also of those that have waited";
    EXPECT_TRUE(news.back().over());
}

/* A node that is stopping is started when it has stopped. */
TEST_F(StartStop, StopsBeforeItStarts) {
    const VGA_RESOURCE itself = {VGA_OPERABLE_NODE, node};
    EXPECT_EQ(vga_operate_all({itself}, VGA_STOP_IMMEDIATE, 0, note), 0);
    run(1);
    EXPECT_EQ(vga_operate_all({itself}, VGA_START, 0, note), 0);
    EXPECT_TRUE(scripted_nof.in_flight.empty());
    vga_node_list_changed(node, VGA_NODE_CHANGED);
    EXPECT_FALSE(news.back().over());
    domain->pass(1000);
    node->node_state = NAP_NODE_STOPPED;
    vga_node_list_changed(node, VGA_NODE_CHANGED);
    run(1);
    EXPECT_EQ(news.back().done, 1u);
    EXPECT_EQ(node->node_state, NB_ULONG{NAP_NODE_STARTING});
}

/* What is under way completes, the rest is not sent; and what was stopped is told of when it is. */
TEST_F(StartStop, ABatchIsCancelledBetweenItsItems) {
    vga_forget_outcomes();
    gvga_messages[VGA_MSG_OPER_NOW_STOPPED] = "Stopped.";
    VGA_LS *link = nullptr;
    vga_for_each(node->link_stations, &VGA_LS::node_links,
                 [&link](VGA_LS &ls) { link = ls.state == NAP_ACTIVE ? &ls : link; });
    ASSERT_NE(link, nullptr);
    const std::vector<VGA_RESOURCE> many(3 * VGA_OPERATIONS_IN_FLIGHT, {VGA_OPERABLE_LS, link});
    EXPECT_EQ(vga_operate_all(many, VGA_STOP_IMMEDIATE, 0, note), 0);
    vga_cancel_operations(news.back().number + 1);
    EXPECT_EQ(news.back().cancelled, 0U) << "another one";
    vga_cancel_operations(news.back().number);
    EXPECT_EQ(news.back().cancelled, 2U * VGA_OPERATIONS_IN_FLIGHT);
    EXPECT_FALSE(news.back().over());
    EXPECT_EQ(scripted_nof.in_flight.size(), VGA_OPERATIONS_IN_FLIGHT);
    follow();
    EXPECT_TRUE(news.back().over());
    EXPECT_EQ(news.back().settled(), many.size());
    vga_cancel_operations(news.back().number); /* it is over */
    const auto &all = vga_outcomes();
    EXPECT_EQ(std::count_if(all.begin(), all.end(),
                            [](const VGA_OUTCOME &one) { return one.text == "Stopped."; }),
              1);
}

/* Refused, gone, and purged with the node: each is counted, and all come to an end. */
TEST_F(StartStop, TheAccountOfMany) {
    std::vector<VGA_RESOURCE> many;
    VGA_LS *gone = nullptr;
    vga_for_each(node->link_stations, &VGA_LS::node_links, [&](VGA_LS &ls) {
        ls.state = NAP_ACTIVE;
        gone = &ls;
        many.push_back({VGA_OPERABLE_LS, &ls});
    });
    while (many.size() < 3 * VGA_OPERATIONS_IN_FLIGHT) {
        many.insert(many.end() - 1, many.front());
    }
    EXPECT_EQ(vga_operate_all(many, VGA_STOP_ORDERLY, 7, note), 0);
    EXPECT_EQ(scripted_nof.in_flight.size(), VGA_OPERATIONS_IN_FLIGHT);
    scripted_nof.complete(3, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
    EXPECT_EQ(scripted_nof.in_flight.size(), VGA_OPERATIONS_IN_FLIGHT);
    scripted_nof.complete(0);
    EXPECT_EQ(news.back().done, 1u);
    ASSERT_EQ(news.back().failures.size(), 1u);
    EXPECT_EQ(news.back().failures[0].resource, vga_resource_in_words(many[3]));

    const NB_ULONG handle = std::exchange(gone->handle, 0); /* the last one's */
    nba_destroy_handle(handle);
    node->connection = VGA_NOT_CONNECTED;
    vga_purge_verb_queue(node->target, 0, nullptr, 0, nullptr);
    EXPECT_TRUE(news.back().over());
    EXPECT_EQ(news.back().gone, 1u);
    EXPECT_EQ(news.back().failures.size(), many.size() - 2);
    node->connection = VGA_CONNECTED;
    gone->handle = nba_create_handle(gone);
    run(1);
    EXPECT_EQ(news.back().settled(), many.size()) << "an answer that comes too late";
}

TEST_F(StartStop, SessionsHaveVerbsOfTheirOwn) {
    auto *lu = first_active<VGA_LU62>(
        node->lus, [](VGA_LU62 &one) { return AVL_FIRST(one.modes) != nullptr; },
        &VGA_LU62::name_links);
    ASSERT_NE(lu, nullptr);
    auto *mode = static_cast<VGA_MODE *>(AVL_FIRST(lu->modes));
    mode->vcb->act_sess_count = 2;
    lu->vcb->active_sessions = 2;
    EXPECT_EQ(vga_operate({VGA_OPERABLE_MODE, mode}, VGA_START, 0, done), 0);
    EXPECT_EQ(vga_operate({VGA_OPERABLE_MODE, mode}, VGA_STOP_IMMEDIATE, 0, done), 0);
    EXPECT_EQ(vga_operate({VGA_OPERABLE_LU62, lu}, VGA_STOP_IMMEDIATE, 0, done), 0);
    mode->vcb->draining = 1;
    EXPECT_EQ(vga_refuses_operation({VGA_OPERABLE_MODE, mode}, VGA_START),
              VGA_MSG_NODEW_WRONG_STATE);
    EXPECT_EQ(vga_refuses_operation({VGA_OPERABLE_MODE, mode}, VGA_STOP_IMMEDIATE), 0);
    ASSERT_EQ(scripted_nof.in_flight.size(), 3u);
    const auto *start = reinterpret_cast<NAP_LU62_SESSION_VERB *>(scripted_nof.in_flight[0].vcb);
    const auto *stop = reinterpret_cast<NAP_LU62_SESSION_VERB *>(scripted_nof.in_flight[1].vcb);
    const auto *end = reinterpret_cast<NAP_END_LU_SESSION_VERB *>(scripted_nof.in_flight[2].vcb);
    EXPECT_EQ(NB_USHORT{start->opcode}, NAP_ACTIVATE_SESSION);
    EXPECT_EQ(start->sessions, 1);
    EXPECT_EQ(start->stop_type, 0);
    EXPECT_EQ(memcmp(start->lu_alias, lu->alias, sizeof(start->lu_alias)), 0);
    EXPECT_EQ(memcmp(start->fqplu_name, mode->key.fqplu_name, sizeof(start->fqplu_name)), 0);
    EXPECT_EQ(NB_USHORT{stop->opcode}, NAP_DEACTIVATE_SESSION);
    EXPECT_EQ(stop->sessions, 0);
    EXPECT_EQ(NB_USHORT{end->opcode}, NAP_END_LU_SESSION);
    EXPECT_EQ(end->session_number, 0);
    EXPECT_EQ(stop->stop_type + end->stop_type, 2 * NAP_IMMEDIATE_STOP);
}

} // namespace
