/* The model against the node software itself, run inside the test: what a build makes of the sample
 * domains, and what is left after any sequence of changes. */
#include <gtest/gtest.h>

/* Before the toolkit's headers, whose macros spoil names of the node software. */
#include "node_support.h"
#include "nodedomain.h"

#include "modelwalk.h"
#include "scriptednof.h"
#include "vgadsadd.h"
#include "vgadsbld.h"
#include "vgadsdel.h"
#include "vgaglob.h"
#include "vgahooks.h"
#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <regex>
#include <set>

SCRIPTED_NOF_ENTRY

/* Records, blocks and buffers of the program come from calloc, which the linker sends here. */
constexpr long never = -1;
long allocations_left = never; /* until one fails, and all behind it */

extern "C" {
void *__real_calloc(size_t count, size_t size);
void *__wrap_calloc(size_t count, size_t size) {
    if (allocations_left == 0) {
        return nullptr;
    }
    allocations_left -= allocations_left > 0 ? 1 : 0;
    return __real_calloc(count, size);
}
}

namespace {

constexpr NB_ULONG file_targets = 100; /* and the file's number */
constexpr NB_ULONG node_targets = 200; /* and the node's place in the domain's text */
constexpr NB_ULONG load_targets = 300;

/* A domain of the node software without its processes: time stands still. */
class LIVE_DOMAIN {
public:
    explicit LIVE_DOMAIN(const std::string &text_file)
        : text_(node::read_domain_file(text_file)), timers_(clock_) {
        EXPECT_TRUE(text_.errors.empty());
        std::string why;
        EXPECT_TRUE(store_.open(folder_.file("domain.db"), true, why)) << why;
        domain_ = std::make_unique<node::Domain>(text_, store_, timers_, clock_);
        EXPECT_TRUE(domain_->load(why)) << why;
        for (const node::TextNode &node : text_.nodes) {
            nodes_.push_back(std::make_unique<NODE>(*this, node));
        }
        for (int step = 0; step < 5000; step++) {
            clock_.advance(1);
            timers_.run_due();
        }
        for (const auto &node : nodes_) {
            domain_->update(node->name, node->engine.node_record().info);
        }
    }

    /* Completes a verb's block as its target would. */
    NB_VOID answer(const ISSUED_VERB &verb) {
        NAP_VCB &vcb = *verb.vcb;
        switch (vcb.opcode) {
        case NAP_OPEN_FILE: {
            auto &open = reinterpret_cast<NAP_OPEN_FILE_VERB &>(vcb);
            open.target_handle = open.file == NAP_TP_LOAD_FILE ? load_targets + find(open.node_name)
                                                               : file_targets + open.file;
            break;
        }
        case NAP_CONNECT_NODE: {
            auto &connect = reinterpret_cast<NAP_CONNECT_NODE_VERB &>(vcb);
            connect.target_handle = node_targets + find(connect.node_name);
            break;
        }
        case NAP_REGISTER_INDICATION_SINK:
        case NAP_SET_PROCESSING_MODE:
        case NAP_DISCONNECT_NODE:
        case NAP_CLOSE_FILE:
            break;
        default:
            execute(verb);
        }
    }

    /* Calls `visit` for every row that the stores of domain and nodes hold of a class. */
    template <class Visit> NB_VOID for_each_stored(Visit visit) {
        const auto take = [&visit](const node::StoreRow &stored) {
            const node::ClassRow *row = node::class_by_name(stored.section);
            if (row != nullptr) {
                visit(*row, stored.record);
            }
            return true;
        };
        EXPECT_TRUE(store_.read(take));
        for (const auto &node : nodes_) {
            EXPECT_TRUE(node->store.read(take));
        }
    }

private:
    struct NODE {
        NODE(LIVE_DOMAIN &domain, const node::TextNode &text)
            : name(text.name), engine(&store, domain.timers_, domain.clock_, heard) {
            std::string why;
            EXPECT_TRUE(store.open(domain.folder_.file(name + ".db"), true, why)) << why;
            EXPECT_TRUE(engine.load_text(text, domain.text_));
            engine.begin();
        }
        std::string name;
        node::Store store;
        node_test::Recorder heard;
        node::Engine engine;
    };

    NB_ULONG find(const NB_UCHAR *name) const {
        const std::string text(reinterpret_cast<const NB_CHAR *>(name));
        const auto found = std::find_if(nodes_.begin(), nodes_.end(),
                                        [&text](const auto &node) { return node->name == text; });
        EXPECT_NE(found, nodes_.end()) << text;
        return static_cast<NB_ULONG>(found - nodes_.begin());
    }

    NB_VOID execute(const ISSUED_VERB &verb) {
        const NAP_VERB &row = *nap_find_verb(verb.vcb->opcode);
        node::Answer answer;
        std::string changed;
        if (verb.target < node_targets) {
            domain_->execute(verb.vcb, row.block_size, answer, changed);
        } else {
            nodes_.at(verb.target % 100)->engine.execute(verb.vcb, row.block_size, answer);
        }
        NB_VOID *buffer = row.kind == NAP_KIND_LIST ? vga_buf_ptr(verb.vcb) : nullptr;
        memcpy(verb.vcb, answer.block.data(), answer.block.size());
        if (buffer != nullptr) {
            vga_set_buf_ptr(verb.vcb, buffer);
            std::copy(answer.data.begin(), answer.data.end(), static_cast<NB_UCHAR *>(buffer));
        }
    }

    node::DomainText text_;
    node_test::Folder folder_;
    node::ManualClock clock_;
    node::TimerQueue timers_;
    node::Store store_;
    std::unique_ptr<node::Domain> domain_;
    std::vector<std::unique_ptr<NODE>> nodes_;
};

std::string sample(const std::string &name) {
    return SAMPLE_DOMAINS "/" + name + ".domain";
}

class LiveModel : public testing::TestWithParam<const NB_CHAR *> {
protected:
    void SetUp() override {
        scripted_nof.reset();
        gvga_exit_code = 0;
        gvga_read_only = 0;
        gvga_hooks = {};
        gvga_querybuf_size = 32768;
        nba_pd_set_log(nullptr, NB_PD_NONE);
        domain = std::make_unique<LIVE_DOMAIN>(sample(GetParam()));
        begin();
    }
    void TearDown() override {
        end();
        gvga_querybuf_size = 32768;
        gvga_exit_code = 0;
    }

    static NB_VOID begin() {
        vga_init_verb_queues();
        gvga_system = vga_init_vga_system();
    }
    static NB_VOID end() {
        vga_empty_verb_queues();
        vga_destroy_data_structures();
    }

    /* Completes what is in flight, and what follows from it, in an order that the seed decides. */
    NB_VOID run(unsigned seed) {
        std::mt19937 random(seed);
        while (!scripted_nof.in_flight.empty() && gvga_exit_code == 0) {
            const size_t index = random() % scripted_nof.in_flight.size();
            const ISSUED_VERB verb = scripted_nof.in_flight[index];
            domain->answer(verb);
            scripted_nof.complete(index, verb.vcb->primary_rc, verb.vcb->secondary_rc);
        }
        EXPECT_EQ(gvga_exit_code, 0);
    }

    NB_VOID build(unsigned seed = 1) {
        vga_start_build_system();
        run(seed);
        EXPECT_TRUE(vga_check_system_startup(nullptr));
        check_model();
    }

    std::unique_ptr<LIVE_DOMAIN> domain;
};

/* The class of the node software that a record comes from; "" for one that no list holds. */
std::string class_of(const std::string &type) {
    static const std::map<std::string, std::string> classes = {
        {"DLC", "dlc"},
        {"PORT", "port"},
        {"LS", "ls"},
        {"CN", "connection_network"},
        {"CN_PORT", "cn_port"},
        {"LOCAL_PU", "pu"},
        {"LU03", "lu03"},
        {"EXTRA_DATA", "extra_data"},
        {"DOWN_PU", "downstream_pu"},
        {"DOWN_LU", "downstream_lu"},
        {"DSPU_TEMPLATE", "dspu_template"},
        {"PRIMARY_LINE", "primary_line"},
        {"PRIMARY_LU0", "primary_lu0"},
        {"LU62", "local_lu"},
        {"MODE", "mode_in_use"},
        {"PLU", "partner_in_use"},
        {"MODE_DEF", "mode"},
        {"LU62_TIMEOUT", "lu62_timeout"},
        {"COS", "cos"},
        {"COS_NODE_ROW", "cos_node_row"},
        {"COS_TG_ROW", "cos_tg_row"},
        {"DIR", "directory"},
        {"REM_PLU", "partner_lu"},
        {"LS_ROUTING", "ls_routing"},
        {"TP_DEF", "tp"},
        {"TP_LOAD_INFO", "tp_load"},
        {"SLSEC_DEF", "lu_lu_password"},
        {"CLSEC_DEF", "userid_password"},
        {"ACCESS_LIST", "access_list"},
        {"POOL", "lu_pool"},
        {"POOL_LU", "lu_pool"},
        {"TN_CLIENT", "tn3270_access"},
        {"TN_ASSOC", "tn3270_association"},
        {"TN_REDIRECT", "tn_redirect"},
        {"USER", "user"},
        {"CPIC", "cpic"},
        {"RJE_WKSTN", "rje"},
    };
    const auto found = classes.find(type);
    return found != classes.end() ? found->second : "";
}

using BLOCKS = std::map<std::string, std::vector<std::string>>;

/* The model's data blocks, by class. */
BLOCKS blocks_by_class() {
    BLOCKS blocks;
    walk_model([&blocks](auto &record, const char *type) {
        using RECORD = std::remove_reference_t<decltype(record)>;
        NB_USHORT size = sizeof(*record.vcb);
        if (!VGA_RECORD_TYPE<RECORD>::nested) {
            memcpy(&size, record.vcb, sizeof(size));
        }
        blocks[class_of(type)].emplace_back(reinterpret_cast<const char *>(record.vcb), size);
    });
    return blocks;
}

/* What the block and the stored record both say: the key, and the definition as far as the list
 * brings it.  Passwords stay in the store, so only the description of what has one is looked at. */
bool says_the_same(const node::Schema &schema, const std::string &block, const NB_UCHAR *stored) {
    const std::set<std::string> with_password = {"lu_lu_password", "userid_password", "cpic"};
    constexpr size_t description = 32;
    const size_t length = with_password.contains(schema.name) ? description : schema.def.width;
    const size_t end = std::min(schema.def.offset + length, block.size());
    return memcmp(block.data() + node::KEY_OFFSET, stored + node::KEY_OFFSET, schema.key_size()) ==
               0 &&
           (end <= schema.def.offset ||
            memcmp(block.data() + schema.def.offset, stored + schema.def.offset,
                   end - schema.def.offset) == 0);
}

TEST_P(LiveModel, HoldsWhatTheStoresHoldRecordByRecord) {
    build();
    BLOCKS blocks = blocks_by_class();
    std::map<std::string, int> found;
    domain->for_each_stored([&blocks, &found](const node::ClassRow &row, const NB_UCHAR *stored) {
        const node::Schema &schema = *row.schema;
        const std::vector<std::string> &of_class = blocks[schema.name];
        EXPECT_TRUE(std::any_of(of_class.begin(), of_class.end(),
                                [&schema, stored](const std::string &block) {
                                    return says_the_same(schema, block, stored);
                                }))
            << schema.name << " " << node::local_text(stored + node::KEY_OFFSET, schema.key_size());
        found[schema.name]++;
    });
    /* A sample that defines little would prove little. */
    EXPECT_GE(found.size(), 20U);
}

TEST_P(LiveModel, IsTheSameWhateverTheBufferHolds) {
    build(1);
    const std::string whole = dump_model();
    for (const NB_ULONG size : {2048, 3000, 65535}) {
        end();
        gvga_querybuf_size = size;
        begin();
        build(size);
        EXPECT_EQ(dump_model(), whole) << "with buffers of " << size << " bytes";
    }
}

/* One change of the model, of the kinds that completions, indications and rebuilds make.  Returns
 * what was done. */
class CHANGES {
public:
    explicit CHANGES(unsigned seed) : random_(seed) {}

    /* Deletes any record that may be deleted by itself. */
    std::string delete_any() {
        size_t records = 0;
        walk_model([&records](auto &, const char *) { records++; });
        size_t chosen = random_() % records;
        NB_ULONG handle = 0;
        std::string done;
        walk_model([&](auto &record, const char *type) {
            if (chosen-- == 0 &&
                AVL_IN_TREE(
                    *VGA_RECORD_TYPE<std::remove_reference_t<decltype(record)>>::links(record)[0]
                         .node)) {
                handle = record.handle;
                done = type;
                destroy_ = [this](NB_VOID *victim) {
                    delete_one(static_cast<std::remove_reference_t<decltype(record)> *>(victim));
                };
            }
        });
        if (handle == 0 || done == "NODE") {
            return "";
        }
        destroy_(nba_validate_handle(handle));
        return "delete " + done;
    }

private:
    template <class Record> NB_VOID delete_one(Record *record) { vga_delete_record(record); }
    NB_VOID delete_one(VGA_REM_SYS *record) {
        if (AVL_FIRST(record->remote_plu_tree) == nullptr) {
            vga_delete_vga_rem_sys(record);
        }
    }
    NB_VOID delete_one(VGA_REM_PLU *record) {
        vga_delete_all<VGA_REM_SESS>(record->sess_tree);
        vga_delete_vga_rem_plu(record);
    }
    NB_VOID delete_one(VGA_POOL *record) {
        vga_delete_all<VGA_POOL_LU>(record->lu_tree);
        vga_delete_vga_pool(record);
    }
    NB_VOID delete_one(VGA_SYS_POOL *) {}
    NB_VOID delete_one(VGA_USER *record) {
        vga_delete_all<VGA_USER_SESSION>(record->session_tree);
        vga_delete_vga_user(record);
    }
    NB_VOID delete_one(VGA_ACCESS_LIST *record) {
        vga_delete_all<VGA_SECURITY_USER>(record->user_tree);
        vga_delete_vga_access_list(record);
    }
    NB_VOID delete_one(VGA_EXTRA_DATA *record) { vga_delete_lu03_extra_data(record->parent); }

    std::mt19937 random_;
    std::function<NB_VOID(NB_VOID *)> destroy_;
};

TEST_P(LiveModel, StaysConsistentThroughDeletionsAndRebuilds) {
    build();
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    CHANGES changes(seed);
    std::mt19937 random(seed);
    std::string history;
    for (int step = 0; step < 120 && !HasFailure(); step++) {
        if (random() % 12 == 0) {
            vga_for_each(gvga_system->nodes, &VGA_NODE::links,
                         [](VGA_NODE &node) { vga_start_build_node(&node); });
            run(random());
            history += "rebuild nodes; ";
        } else if (random() % 30 == 0) {
            vga_rebuild_system();
            run(random());
            history += "rebuild domain; ";
        } else {
            history += changes.delete_any() + "; ";
        }
        check_model();
    }
    EXPECT_FALSE(HasFailure()) << history;
}

/* Every record with its handle, and with a dialog when it has a line. */
std::map<NB_VOID *, NB_ULONG> open_dialogs(VGA_DIALOG *dialog) {
    std::map<NB_VOID *, NB_ULONG> handles;
    walk_model([&handles, dialog](auto &record, const char *) {
        handles[&record] = record.handle;
        record.gui_data.dialog = record.gui_data.listed ? dialog : nullptr;
    });
    return handles;
}

TEST_P(LiveModel, ARebuildKeepsHandlesAndDialogs) {
    build();
    const std::string whole = dump_model();
    auto *const dialog = reinterpret_cast<VGA_DIALOG *>(this); // some address
    const auto before = open_dialogs(dialog);
    vga_for_each(gvga_system->nodes, &VGA_NODE::links,
                 [](VGA_NODE &node) { vga_start_build_node(&node); });
    vga_rebuild_system();
    run(3);
    EXPECT_EQ(dump_model(), whole);
    walk_model([dialog](auto &record, const char *type) {
        EXPECT_EQ(record.gui_data.dialog, record.gui_data.listed ? dialog : nullptr) << type;
    });
    const auto after = open_dialogs(nullptr);
    for (const auto &[record, handle] : before) {
        const auto found = after.find(record);
        ASSERT_TRUE(found != after.end());
        EXPECT_EQ(found->second, handle);
    }
}

/* The model without what deleting LUs takes out of the pools. */
std::string dump_without_pool_lus() {
    static const std::regex pool_lu("POOL_LU[0-9a-f]*\n");
    return std::regex_replace(dump_model(), pool_lu, "");
}

NB_VOID empty_owners(VGA_NODE &node) {
    vga_for_each(node.lus, &VGA_LU62::name_links, [](VGA_LU62 &lu) {
        vga_delete_all<VGA_MODE>(lu.modes);
        vga_delete_all<VGA_PLU>(lu.partners);
    });
    vga_delete_all<VGA_SLSEC_DEF>(node.sl_security);
    vga_for_each(node.local_pus, &VGA_LOCAL_PU::links,
                 [](VGA_LOCAL_PU &pu) { vga_delete_all<VGA_LU03>(pu.lus); });
    vga_for_each(node.down_pus, &VGA_DOWN_PU::links,
                 [](VGA_DOWN_PU &pu) { vga_delete_all<VGA_DOWN_LU>(pu.lus); });
    vga_for_each(node.connection_networks, &VGA_CN::links,
                 [](VGA_CN &cn) { vga_delete_all<VGA_CN_PORT>(cn.ports); });
    vga_delete_all<VGA_TP_LOAD_INFO>(node.tp_load_infos);
}

/* Record by record, as for a record that joins later. */
NB_VOID read_owners(VGA_NODE &node) {
    vga_for_each(node.lus, &VGA_LU62::name_links, [](VGA_LU62 &lu) { vga_start_build_lu62(&lu); });
    vga_for_each(node.local_pus, &VGA_LOCAL_PU::links,
                 [](VGA_LOCAL_PU &pu) { vga_start_build_local_pu(&pu); });
    vga_for_each(node.down_pus, &VGA_DOWN_PU::links,
                 [](VGA_DOWN_PU &pu) { vga_start_build_down_pu(&pu); });
    vga_for_each(node.connection_networks, &VGA_CN::links,
                 [](VGA_CN &cn) { vga_start_build_cn(&cn); });
    vga_start_build_tp_load_info(&node);
}

NB_VOID read_phases(VGA_NODE &node) {
    for (NB_USHORT phase : {VGA_PHASE_LOCAL_PUS, VGA_PHASE_DOWN_PUS, VGA_PHASE_CONNECTION_NETWORKS,
                            VGA_PHASE_LOCAL_LUS}) {
        vga_build_next_action(phase, &node);
    }
    vga_start_build_tp_load_info(&node);
}

/* What hangs under records comes back alone, in either way. */
TEST_P(LiveModel, WhatHangsUnderRecordsIsReadAlone) {
    build();
    const std::string whole = dump_without_pool_lus();
    for (const auto read : {read_owners, read_phases}) {
        vga_for_each(gvga_system->nodes, &VGA_NODE::links, empty_owners);
        EXPECT_NE(dump_without_pool_lus(), whole);
        vga_for_each(gvga_system->nodes, &VGA_NODE::links, read);
        run(2);
        vga_for_each(gvga_system->nodes, &VGA_NODE::links,
                     [](VGA_NODE &node) { vga_start_build_extra_data(&node); });
        run(3);
        EXPECT_EQ(dump_without_pool_lus(), whole);
        check_model();
    }
}

/* Wherever the build is when a node is taken out: its answers come for nobody. */
TEST_P(LiveModel, ANodeGoesWhileItsVerbsAreInFlight) {
    for (unsigned answered = 5; answered < 120 && !HasFailure(); answered += 9) {
        SCOPED_TRACE(answered);
        vga_start_build_system();
        std::mt19937 random(answered);
        for (unsigned at = 0; at < answered && !scripted_nof.in_flight.empty(); at++) {
            const size_t index = random() % scripted_nof.in_flight.size();
            const ISSUED_VERB verb = scripted_nof.in_flight[index];
            domain->answer(verb);
            scripted_nof.complete(index, verb.vcb->primary_rc, verb.vcb->secondary_rc);
        }
        if (auto *node = static_cast<VGA_NODE *>(AVL_FIRST(gvga_system->nodes))) {
            vga_do_free_node_res(node, 0, nullptr);
            vga_delete_vga_node(node);
        }
        check_model();
        run(answered);
        check_model();
        end();
        scripted_nof.reset();
        begin();
    }
}

TEST_P(LiveModel, IsWholeAgainAfterItsNodesWereFreed) {
    build();
    const std::string whole = dump_model();
    vga_for_each(gvga_system->nodes, &VGA_NODE::links, [](VGA_NODE &node) {
        vga_free_node_resources(&node, 0, nullptr);
        check_model();
    });
    run(1);
    vga_for_each(gvga_system->nodes, &VGA_NODE::links,
                 [](VGA_NODE &node) { vga_start_build_node(&node); });
    run(2);
    EXPECT_EQ(dump_model(), whole);
}

/* Wherever memory ends: the exit is requested, and what was made can be walked and freed. */
TEST_P(LiveModel, EndsInOrderWhereverMemoryEnds) {
    long wanted = 0;
    for (long allocations = 1;; allocations += 1 + allocations / 8) {
        SCOPED_TRACE("after " + std::to_string(allocations) + " allocations");
        allocations_left = allocations;
        vga_start_build_system();
        while (!scripted_nof.in_flight.empty() && gvga_exit_code == 0) {
            const ISSUED_VERB verb = scripted_nof.in_flight[0];
            domain->answer(verb);
            scripted_nof.complete(0, verb.vcb->primary_rc, verb.vcb->secondary_rc);
        }
        const bool all_had = allocations_left > 0;
        allocations_left = never;
        check_model();
        EXPECT_EQ(gvga_exit_code, all_had ? 0 : VGA_EXIT_INTERNAL);
        EXPECT_EQ(gvga_exit_subcode, 0U);
        if (all_had || HasFailure()) {
            break;
        }
        wanted++;
        end();
        scripted_nof.reset();
        gvga_exit_code = 0;
        begin();
    }
    EXPECT_GT(wanted, 20);
}

INSTANTIATE_TEST_SUITE_P(Samples, LiveModel, testing::Values("single", "branch"),
                         [](const auto &sample) { return std::string(sample.param); });

} // namespace
