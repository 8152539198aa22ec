/* What changes the model without the program having asked: every kind of definition, by copies and
 * by completions of its own, against the node software itself. */
#include "livesupport.h"

#include "completions.h"
#include "defineblock.h"
#include "reports.h"
#include "vgadschk.h"
#include "vgaindct.h"
#include <set>
#include <sstream>

SCRIPTED_NOF_ENTRY

namespace {

using records::FieldRow;
using records::Schema;

using BLOCK = std::vector<NB_UCHAR>;

template <class Block> BLOCK bytes_of(const Block &block) {
    const auto *bytes = reinterpret_cast<const NB_UCHAR *>(&block);
    return BLOCK(bytes, bytes + sizeof(block));
}

NAP_VCB *vcb_of(BLOCK &block) {
    return reinterpret_cast<NAP_VCB *>(block.data());
}

/* The first line in which two texts differ, of each. */
std::string difference(const std::string &one, const std::string &other) {
    std::istringstream left(one);
    std::istringstream right(other);
    std::multiset<std::string> lines;
    std::string line;
    while (std::getline(left, line)) {
        lines.insert(line);
    }
    std::string more;
    while (std::getline(right, line)) {
        const auto found = lines.find(line);
        if (found != lines.end()) {
            lines.erase(found);
        } else {
            more += "\n  fresh " + line;
        }
    }
    for (const std::string &left_over : lines) {
        more += "\n  model " + left_over;
    }
    return more;
}

struct SAMPLE {
    const NB_CHAR *name;
    bool own; /* the program's own completions, in place of copies */
    const NB_CHAR *untouched;
};

class Completions : public LIVE_MODEL, public testing::TestWithParam<SAMPLE> {
protected:
    void SetUp() override {
        open(GetParam().name);
        gvga_hooks.indication = vga_dispatch_indication;
        build();
        domain->take_indications([](const std::string &, const NAP_RESOURCE_INDICATION &) {});
    }
    void TearDown() override { close(); }

    static VGA_NODE *node_named(const std::string &name) {
        NB_CHAR key[128] = {};
        memcpy(key, name.data(), name.size());
        return static_cast<VGA_NODE *>(ntl_avl_find(&gvga_system->nodes, key));
    }
    VGA_NODE *node_at(size_t at) const { return node_named(domain->name_of(at)); }

    static NB_VOID dispatch(BLOCK block, NB_ULONG target, NB_ULONG handle) {
        VGA_PROCESS_STATE work = {target, vcb_of(block), handle};
        vga_dispatch_indication(&work);
    }

    /* Hands on what the nodes have indicated. */
    NB_VOID hand_on() {
        domain->take_indications([](const std::string &name, const NAP_RESOURCE_INDICATION &one) {
            VGA_NODE *node = node_named(name);
            dispatch(bytes_of(one), node->target, node->handle);
        });
    }
    NB_VOID heard() {
        hand_on();
        run(1);
    }

    /* Another administrator's verb, or the program's own, and what it changed.  Returns whether it
     * succeeded. */
    bool change_within(BLOCK block, size_t at) {
        const NB_USHORT opcode = vcb_of(block)->opcode;
        VGA_NODE *node = vga_is_verb_of_domain(opcode) ? nullptr : node_at(at);
        const NB_ULONG target = node != nullptr ? node_targets + at : file_targets;
        domain->execute(target, block);
        if (vcb_of(block)->primary_rc != NAP_OK) {
            return false;
        }
        const NB_ULONG open = node != nullptr ? node->target : gvga_system->domain_target;
        const NB_ULONG handle = node != nullptr ? node->handle : gvga_system->handle;
        if (GetParam().own) {
            VGA_PROCESS_STATE work = {open, vcb_of(block), 12345};
            vga_verb_completed(&work);
        } else {
            vcb_of(block)->primary_rc = NAP_INDICATION;
            dispatch(block, open, handle);
        }
        hand_on();
        return true;
    }

    /* The same, and all that follows. */
    bool change(const BLOCK &block, size_t at) {
        const bool done = change_within(block, at);
        run(1);
        return done;
    }

    /* The model, and what it keeps of settings. */
    static std::string text() {
        /* Nodes say how long they have been up. */
        std::istringstream dump(vga_dump_model());
        std::string all;
        for (std::string line; std::getline(dump, line);) {
            all += line.rfind("NODE", 0) == 0 ? "" : line + '\n';
        }
        const auto add = [&all](const auto &record) {
            const auto *bytes = reinterpret_cast<const NB_UCHAR *>(&record);
            for (size_t at = 0; at < sizeof(record); at++) {
                NB_CHAR digits[3];
                snprintf(digits, sizeof(digits), "%02x", bytes[at]);
                all += digits;
            }
            all += '\n';
        };
        vga_for_each(gvga_system->nodes, &VGA_NODE::links, [&add](VGA_NODE &node) {
            add(node.defaults);
            add(node.tamrix);
            add(node.tracing.dlc);
            add(node.tracing.slp);
            add(node.tn.defaults);
            add(node.tn.ssl);
        });
        add(gvga_system->logging);
        return all;
    }

    /* The same of a model that is built now. */
    std::string fresh_text() {
        VGA_SYSTEM *const kept = gvga_system;
        gvga_system = vga_init_vga_system();
        build();
        std::string fresh = text();
        vga_destroy_data_structures();
        gvga_system = kept;
        return fresh;
    }

    /* Counts of what is active below are of the moment: the node tells of none, a check reads them.
     */
    NB_VOID read_counts() {
        vga_for_each(gvga_system->nodes, &VGA_NODE::links, [](VGA_NODE &node) {
            for (VGA_STATUS_ID id : {VGA_STATUS_PORT, VGA_STATUS_LS, VGA_STATUS_PU,
                                     VGA_STATUS_DLUR_PU, VGA_STATUS_DOWN_PU}) {
                vga_start_check(&node, id);
            }
        });
        run(1);
    }

    NB_VOID compare(const std::string &what) {
        read_counts();
        check_model();
        const std::string held = text();
        const std::string fresh = fresh_text();
        ASSERT_TRUE(held == fresh) << what << difference(held, fresh);
    }

    /* The entries of a list, from the node software. */
    std::vector<std::string> entries(const Schema &schema, size_t list, size_t at, bool of_domain) {
        ISSUED_VERB verb = {};
        NAP_QUERY_LIST query = {};
        std::vector<NB_UCHAR> buffer(65532);
        query.opcode = schema.lists[list].list;
        query.buf_size = static_cast<NB_ULONG>(buffer.size());
        query.list_options = NAP_FIRST_IN_LIST | NAP_DETAIL;
        verb.vcb = reinterpret_cast<NAP_VCB *>(&query);
        verb.target = of_domain ? file_targets : node_targets + at;
        vga_set_buf_ptr(verb.vcb, buffer.data());
        domain->answer(verb);
        std::vector<std::string> all;
        size_t end = 0;
        for (NB_USHORT count = 0; query.primary_rc == NAP_OK && count < query.num_entries;) {
            NB_USHORT length;
            memcpy(&length, buffer.data() + end, sizeof(length));
            all.emplace_back(reinterpret_cast<NB_CHAR *>(buffer.data()) + end, length);
            all.back().resize(schema.overlay_size());
            end += length;
            count++;
        }
        return all;
    }

    static const NB_UCHAR *raw(const std::string &entry) {
        return reinterpret_cast<const NB_UCHAR *>(entry.data());
    }
    /* Lists bring no passwords. */
    static BLOCK define_block(const Schema &schema, std::string entry) {
        BLOCK block(schema.define_size);
        std::string why;
        for (const FieldRow &row : schema.fields) {
            auto *bytes = reinterpret_cast<NB_UCHAR *>(entry.data());
            if (row.has(records::FIELD_SECRET) && is_empty_field(row, bytes)) {
                set_field(row, "0102030405060708", bytes, why) ||
                    set_field(row, "SECRET", bytes, why);
            }
        }
        records::make_define_block(schema, raw(entry), block.data());
        return block;
    }
    static BLOCK delete_block(const Schema &schema, const std::string &entry) {
        return bytes_of(records::make_name_block(schema, schema.remove, raw(entry)));
    }

    bool step(const NB_CHAR *what, const Schema &schema, const BLOCK &block, size_t at) {
        const bool done = change(block, at);
        if (done) {
            compare(std::string(what) + " " + schema.name);
        }
        return done;
    }

    /* Changes one resource, deletes it and defines it again, as far as the node lets.  Returns
     * whether it was deleted. */
    bool walk(const Schema &schema, const std::string &original, size_t at) {
        std::string entry = original;
        if (const FieldRow *text = find_field(schema.fields, "description")) {
            memcpy(entry.data() + text->offset, "changed", sizeof("changed"));
        }
        step("redefined", schema, define_block(schema, entry), at);
        const bool deleted = step("deleted", schema, delete_block(schema, original), at);
        if (deleted) {
            step("defined again", schema, define_block(schema, original), at);
        }
        return deleted;
    }

    /* Makes another one like it, changes that and deletes it. */
    bool walk_new(const Schema &schema, std::string entry, size_t at) {
        std::string why;
        auto *bytes = reinterpret_cast<NB_UCHAR *>(entry.data());
        for (const FieldRow &row : schema.fields) {
            const std::string name = row.name;
            const bool names_it =
                name == "name" || name == "plu_alias" ||
                (name == "lu_alias" && schema.lists[0].list == NAP_QUERY_LOCAL_LU);
            if (names_it) {
                for (const NB_CHAR *text : {"NETA.ZZNEW", "ZZNEW", "zznw", "7"}) {
                    if (set_field(row, text, bytes, why)) {
                        break;
                    }
                }
            } else if (row.has(records::FIELD_COUNTS)) {
                records::put_number(bytes + row.offset, row.width, 201);
            }
        }
        return step("defined", schema, define_block(schema, entry), at) && walk(schema, entry, at);
    }

    /* Has it belong to another owner, where there is one. */
    NB_VOID walk_moved(const Schema &schema, const std::vector<std::string> &all, size_t at) {
        const records::Place owner = vga_find_list(schema.lists[0].list)->owner;
        if (owner.width == 0 || owner.offset < schema.def.offset) {
            return;
        }
        for (std::string entry : all) {
            const std::string other = entry.substr(owner.offset, owner.width) !=
                                              all.back().substr(owner.offset, owner.width)
                                          ? all.back()
                                          : all.front();
            entry.replace(owner.offset, owner.width, other, owner.offset, owner.width);
            moved += step("moved", schema, define_block(schema, entry), at);
        }
    }

    /* Of each kind one that is there, and one that is new. */
    NB_VOID walk_all(size_t at, std::set<std::string> &changed) {
        for (const Schema *schema : records::all_schemas) {
            const bool of_domain = vga_is_verb_of_domain(schema->define);
            if (schema->define == 0) {
                continue;
            }
            const size_t list = schema->lists[1].list != 0 ? 1 : 0; // of PUs those that are defined
            const auto all = entries(*schema, list, at, of_domain);
            if (all.empty()) {
                continue;
            }
            const auto free = std::find_if(all.begin(), all.end(), [&](const std::string &entry) {
                return change(delete_block(*schema, entry), at) &&
                       change(define_block(*schema, entry), at);
            });
            const std::string &entry = free != all.end() ? *free : all.front();
            bool done = walk(*schema, entry, at);
            walk_moved(*schema, all, at);
            done = walk_new(*schema, entry, at) || done;
            if (done) {
                changed.insert(schema->name);
            }
        }
    }

    int moved = 0;

    NB_VOID stop_nodes() {
        for (size_t at = 0; at < domain->count_nodes(); at++) {
            NAP_NAME_VERB stop = {};
            stop.opcode = NAP_STOP_NODE;
            BLOCK block = bytes_of(stop);
            domain->execute(node_targets + at, block);
        }
        domain->pass(15000);
        for (size_t at = 0; at < domain->count_nodes(); at++) {
            NAP_NODE_STATUS_INDICATION_VERB stopped = {};
            stopped.opcode = NAP_STOP_NODE;
            stopped.primary_rc = NAP_INDICATION;
            dispatch(bytes_of(stopped), node_at(at)->target, node_at(at)->handle);
        }
        heard();
        compare("stopped");
    }
};

TEST_P(Completions, LeaveTheModelAsAFreshBuildFindsIt) {
    std::set<std::string> changed;
    if (!GetParam().own) {
        walk_all(0, changed);
    }
    stop_nodes();
    walk_all(domain->count_nodes() - 1, changed);
    EXPECT_GT(moved, 2);
    std::string untouched;
    for (const Schema *schema : records::all_schemas) {
        if (schema->define != 0 && !changed.contains(schema->name)) {
            untouched += std::string(" ") + schema->name;
        }
    }
    EXPECT_EQ(untouched, GetParam().untouched) << "what nothing is done to proves nothing";
}

/* Whoever defines and deletes while the lists are read. */
TEST_P(Completions, InsideABuildAreNeitherLostNorUndone) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    int done = 0;
    stop_nodes();
    for (int round = 0; round < 12 && !HasFailure(); round++) {
        if (round % 2 == 0) {
            vga_free_node_resources(node_at(0), 1, nullptr);
        }
        vga_start_build_node(node_at(0));
        while (!scripted_nof.in_flight.empty()) {
            answer(random() % scripted_nof.in_flight.size());
            /* What is registered for copies hears of them. */
            const bool listens = node_at(0)->connection == VGA_CONNECTED;
            const Schema &schema =
                *records::all_schemas[random() % std::size(records::all_schemas)];
            if (!listens || schema.define == 0 || vga_is_verb_of_domain(schema.define)) {
                continue;
            }
            const auto all = entries(schema, schema.lists[1].list != 0 ? 1 : 0, 0, false);
            if (!all.empty()) {
                const std::string &entry = all[random() % all.size()];
                done += change_within(random() % 2 != 0 ? delete_block(schema, entry)
                                                        : define_block(schema, entry),
                                      0);
            }
        }
        compare("round " + std::to_string(round));
    }
    EXPECT_GT(done, 100);
}

/* The verb interface lets no block of a wrong length through; of what is in it nothing is promised.
 */
TEST_P(Completions, OfAnyContentLeaveTheModelInOrder) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int count = 0; count < 4000 && !HasFailure(); count++) {
        const NAP_VERB &verb = gnap_verbs[random() % NAP_VERB_COUNT];
        const bool of_servers = verb.opcode == NAP_SERVER_INDICATION ||
                                verb.opcode == NAP_NOF_STATUS_INDICATION ||
                                verb.opcode == NAP_DEFINE_NODE;
        if (of_servers) {
            continue; // would end the domain
        }
        BLOCK block(verb.block_size);
        for (NB_UCHAR &byte : block) {
            byte = static_cast<NB_UCHAR>(random() % 4 != 0 ? 0x40 : random());
        }
        vcb_of(block)->opcode = verb.opcode;
        vcb_of(block)->primary_rc = NAP_INDICATION;
        const Schema *schema = records::schema_by_verb(verb.opcode);
        if (schema != nullptr && random() % 4 != 0 && !vga_is_verb_of_domain(verb.opcode)) {
            const auto all = entries(*schema, 0, 0, false);
            if (!all.empty()) {
                const bool indication = verb.kind == NAP_KIND_INDICATION;
                memcpy(block.data() + (indication ? 13 : records::KEY_IN_BLOCK),
                       all[random() % all.size()].data() + records::KEY_OFFSET, schema->key_size());
            }
        }
        VGA_NODE *node = node_at(0);
        const bool domain_s = vga_is_verb_of_domain(verb.opcode);
        dispatch(block, domain_s ? gvga_system->domain_target : node->target,
                 domain_s ? gvga_system->handle : node->handle);
        while (!scripted_nof.in_flight.empty()) {
            answer(random() % scripted_nof.in_flight.size());
        }
        if (count % 200 == 0) {
            check_model();
        }
    }
    check_model();
}

/* Every setting, and back to what it was before anybody set it. */
TEST_P(Completions, SettingsAreThoseOfTheNode) {
    for (const records::Settings &row : records::settings) {
        for (NB_USHORT opcode : {row.set, row.reset}) {
            if (opcode == 0) {
                continue;
            }
            BLOCK block(row.block_size);
            vcb_of(block)->opcode = row.query;
            domain->execute(row.of_domain ? file_targets : node_targets, block);
            vcb_of(block)->opcode = opcode;
            for (const FieldRow &field : row.fields) {
                NB_UCHAR *at = block.data() + field.offset;
                if (field.kind == records::FieldKind::Flag ||
                    field.kind == records::FieldKind::Hex) {
                    records::put_number(at, field.width, !records::get_number(at, field.width));
                }
            }
            EXPECT_TRUE(change(block, 0)) << row.name;
            compare(row.name);
        }
    }
}

/* What shows a mode shows its time-out, too, which is another record. */
TEST_P(Completions, OfATimeOutAreToldWithItsMode) {
    static const VGA_MODE_DEF *mode;
    static std::vector<int> told; // what the mode had then
    NAP_LU62_TIMEOUT_DATA data = {};
    data.resource_type = NAP_TIMEOUT_MODE;
    node::put_ebcdic(data.resource_name, sizeof data.resource_name, "#INTER");
    mode = vga_find_mode_def(node_at(0), data.resource_name);
    ASSERT_NE(mode, nullptr);
    EXPECT_EQ(vga_count_mode_uses(mode), GetParam().name == std::string("single") ? 2U : 0U);
    gvga_hooks.record_changed = [](NB_VOID *item, VGA_RECORD_CHANGE) {
        if (item == mode) {
            const VGA_LU62_TIMEOUT *found = vga_find_mode_timeout(mode->parent, mode->name);
            told.push_back(found != nullptr ? found->vcb->def_data.timeout : -1);
        }
    };
    told.clear();
    for (const NB_USHORT seconds : {5, 65535, 0}) {
        data.def_data.timeout = seconds;
        const std::string entry(reinterpret_cast<const NB_CHAR *>(&data), sizeof data);
        const Schema &schema = records::lu62_timeout;
        EXPECT_TRUE(
            change(seconds != 0 ? define_block(schema, entry) : delete_block(schema, entry), 0));
    }
    EXPECT_EQ(told, (std::vector<int>{5, 65535, -1}));
    gvga_hooks.record_changed = nullptr;
}

INSTANTIATE_TEST_SUITE_P(
    Samples, Completions,
    testing::Values(SAMPLE{"single", false, " dspu_template downstream_lu"},
                    SAMPLE{"branch", false, " cn_port cos_node_row cos_tg_row tn_redirect"},
                    SAMPLE{"single", true, " cn_port dspu_template downstream_lu"}),
    [](const auto &sample) {
        return std::string(sample.param.name) + (sample.param.own ? "Own" : "Copied");
    });

} // namespace
