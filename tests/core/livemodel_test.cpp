/* The model against the node software itself: what a build makes of the sample domains, and what is
 * left after any sequence of changes. */
#include "livesupport.h"
#include <map>
#include <regex>
#include <set>

SCRIPTED_NOF_ENTRY

/* Records, blocks and buffers of the program come from calloc, which the linker sends here. */
constexpr long never = -1;
long allocations_left = never; /* until one fails, and all behind it */
bool has_failed = false;

extern "C" {
void *__real_calloc(size_t count, size_t size);
void *__wrap_calloc(size_t count, size_t size) {
    if (allocations_left == 0) {
        has_failed = true;
        return nullptr;
    }
    allocations_left -= allocations_left > 0 ? 1 : 0;
    return __real_calloc(count, size);
}
}

namespace {

class LiveModel : public LIVE_MODEL, public testing::TestWithParam<const NB_CHAR *> {
protected:
    void SetUp() override { open(GetParam()); }
    void TearDown() override { close(); }
};

/* The model's data blocks. */
std::vector<std::string> blocks_of_model() {
    std::vector<std::string> blocks;
    vga_walk_model([&blocks](auto &record, const char *, auto *) {
        using RECORD = std::remove_reference_t<decltype(record)>;
        NB_USHORT size = sizeof(*record.vcb);
        if (!VGA_RECORD_TYPE<RECORD>::nested) {
            memcpy(&size, record.vcb, sizeof(size));
        }
        blocks.emplace_back(reinterpret_cast<const char *>(record.vcb), size);
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
    return block.size() >= node::KEY_OFFSET + schema.key_size() &&
           memcmp(block.data() + node::KEY_OFFSET, stored + node::KEY_OFFSET, schema.key_size()) ==
               0 &&
           (end <= schema.def.offset ||
            memcmp(block.data() + schema.def.offset, stored + schema.def.offset,
                   end - schema.def.offset) == 0);
}

TEST_P(LiveModel, HoldsWhatTheStoresHoldRecordByRecord) {
    build();
    const std::vector<std::string> blocks = blocks_of_model();
    std::map<std::string, int> found;
    domain->for_each_stored([&blocks, &found](const node::ClassRow &row, const NB_UCHAR *stored) {
        const node::Schema &schema = *row.schema;
        EXPECT_TRUE(std::any_of(blocks.begin(), blocks.end(),
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
    const std::string whole = vga_dump_model();
    for (const NB_ULONG size : {2048, 3000, 65535}) {
        end();
        gvga_querybuf_size = size;
        begin();
        build(size);
        EXPECT_EQ(vga_dump_model(), whole) << "with buffers of " << size << " bytes";
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
        vga_walk_model([&records](auto &, const char *, auto *) { records++; });
        size_t chosen = random_() % records;
        NB_ULONG handle = 0;
        std::string done;
        vga_walk_model([&](auto &record, const char *type, auto *) {
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
    vga_walk_model([&handles, dialog](auto &record, const char *, auto *) {
        handles[&record] = record.handle;
        record.gui_data.dialog = record.gui_data.list != nullptr ? dialog : nullptr;
    });
    return handles;
}

TEST_P(LiveModel, ARebuildKeepsHandlesAndDialogs) {
    build();
    const std::string whole = vga_dump_model();
    auto *const dialog = reinterpret_cast<VGA_DIALOG *>(this); // some address
    const auto before = open_dialogs(dialog);
    vga_walk_model([](auto &record, const char *, auto *) {
        if constexpr (std::is_same_v<decltype(record), VGA_PORT &>) {
            record.vcb->det_data.port_state =
                NAP_PENDING_INACTIVE; // a merge keeps it; a check follows
        }
    });
    vga_for_each(gvga_system->nodes, &VGA_NODE::links,
                 [](VGA_NODE &node) { vga_start_build_node(&node); });
    vga_rebuild_system();
    run(3);
    EXPECT_EQ(vga_dump_model(), whole);
    vga_walk_model([dialog](auto &record, const char *type, auto *) {
        EXPECT_EQ(record.gui_data.dialog, record.gui_data.list != nullptr ? dialog : nullptr)
            << type;
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
    static const std::regex pool_lu(" *POOL_LU.*\n");
    return std::regex_replace(vga_dump_model(), pool_lu, "");
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

/* What hangs under records comes back alone. */
TEST_P(LiveModel, WhatHangsUnderRecordsIsReadAlone) {
    build();
    const std::string whole = dump_without_pool_lus();
    vga_for_each(gvga_system->nodes, &VGA_NODE::links, empty_owners);
    EXPECT_NE(dump_without_pool_lus(), whole);
    vga_for_each(gvga_system->nodes, &VGA_NODE::links, read_owners);
    run(2);
    vga_for_each(gvga_system->nodes, &VGA_NODE::links,
                 [](VGA_NODE &node) { vga_start_build_extra_data(&node); });
    run(3);
    EXPECT_EQ(dump_without_pool_lus(), whole);
    check_model();
}

/* Wherever the build is when a node is taken out: its answers come for nobody. */
TEST_P(LiveModel, ANodeGoesWhileItsVerbsAreInFlight) {
    for (unsigned answered = 5; answered < 120 && !HasFailure(); answered += 9) {
        SCOPED_TRACE(answered);
        vga_start_build_system();
        std::mt19937 random(answered);
        for (unsigned at = 0; at < answered && !scripted_nof.in_flight.empty(); at++) {
            answer(random() % scripted_nof.in_flight.size());
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

/* Wherever memory ends: the exit is requested, and what was made can be walked and freed. */
TEST_P(LiveModel, EndsInOrderWhereverMemoryEnds) {
    long wanted = 0;
    for (long allocations = 1;; allocations += 1 + allocations / 8) {
        SCOPED_TRACE("after " + std::to_string(allocations) + " allocations");
        allocations_left = allocations;
        has_failed = false;
        vga_start_build_system();
        while (!scripted_nof.in_flight.empty() && gvga_exit_code == 0) {
            answer(0);
        }
        const bool all_had = !has_failed; /* the last one may have been just enough */
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
