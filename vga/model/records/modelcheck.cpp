#include "modelcheck.h"
#include "modelwalk.h"
#include <map>
#include <set>

namespace {

/* What is said of a record that is not as it must be. */
class CHECKER {
public:
    VGA_MODEL_FINDINGS findings;

    template <class Record, class Owner>
    NB_VOID visit(Record &record, const NB_CHAR *type, const Owner *owner) {
        findings.records++;
        expect(nba_validate_handle(record.handle) == &record, type, "its handle is another's");
        expect(static_cast<const NB_VOID *>(record.parent) == owner, type,
               "its owner is not whose index it stands in");
        for (const VGA_INDEX_LINK &link : VGA_RECORD_TYPE<Record>::links(record)) {
            check_link(link, type, &record);
        }
        check_line(record, type);
        if (record.gui_data.dialog != nullptr && gvga_hooks.dialog_shows != nullptr) {
            expect(gvga_hooks.dialog_shows(record.gui_data.dialog, &record), type,
                   "its dialog shows another record");
        }
        references(record);
        const VGA_COUNTED counted = VGA_RECORD_TYPE<Record>::counted(record);
        if (counted.node != nullptr) {
            counts[counted.node].*counted.counter += 1;
        }
    }

    NB_VOID check_counts() {
        vga_for_each(gvga_system->nodes, &VGA_NODE::links, [this](VGA_NODE &node) {
            const VGA_NODE_COUNTS &own = counts[&node];
            expect(memcmp(&own, &node.counts, sizeof(own)) == 0, "NODE",
                   "it says another number of resources than it has");
        });
    }

    NB_VOID check_indexes() {
        count(gvga_system->dependent_lus);
        for (const auto &[tree, records] : indexed) {
            expect(ntl_avl_validate(tree) == records, "index",
                   "it has other entries than the records");
        }
    }

    NB_VOID check_lists() {
        vga_for_each_root([this](VGA_VIEWER_ROOT &root) { check_items(root.top_items); });
        expect(lines.empty(), "list", "a record's line is in none");
    }

private:
    std::map<const AVL_TREE *, NB_LONG> indexed; /* how many records must be in an index */
    std::map<const VGA_NODE *, VGA_NODE_COUNTS> counts;
    std::set<const VGA_VIEWER_ITEM *> lines; /* that must be in the lists, until met there */

    NB_VOID expect(bool holds, const NB_CHAR *type, const NB_CHAR *what) {
        if (!holds) {
            findings.wrong.push_back(std::string(type) + ": " + what);
        }
    }

    NB_VOID count(const AVL_TREE &tree) { indexed.try_emplace(&tree, 0); }

    NB_VOID check_link(const VGA_INDEX_LINK &link, const NB_CHAR *type, const NB_VOID *record) {
        NB_VOID *found = ntl_avl_find(link.tree, link.key);
        if (AVL_IN_TREE(*link.node)) {
            indexed[link.tree]++;
            expect(found == record, type, "an index has another record under its key");
        } else {
            expect(link.shared != nullptr && vga_is_linked(link) && found != nullptr, type,
                   "an index does not have it");
        }
    }

    /* In its list, under the right line, behind that of its predecessor. */
    template <class Record> NB_VOID check_line(Record &record, const NB_CHAR *type) {
        VGA_LINE_PLACE place = VGA_RECORD_TYPE<Record>::line(record);
        const VGA_VIEWER_ITEM &line = record.gui_data.viewer;
        expect(record.gui_data.list == place.root, type, "its line is in another list");
        if (record.gui_data.list != place.root || place.root == nullptr) {
            return;
        }
        lines.insert(&line);
        expect(line.data == &record, type, "its line is another's");
        expect(line.parent == place.parent, type, "its line stands under another");
        expect(line.type == place.type, type, "its line is of another kind");
        auto *previous = static_cast<Record *>(ntl_avl_prev(place.order));
        if (previous != nullptr && previous->gui_data.list == place.root &&
            previous->gui_data.viewer.parent == line.parent) {
            const VGA_VIEWER_ITEM &before = previous->gui_data.viewer; // hidden, it has no lines
            expect(vga_viewer_get_line_in_list(&before) + before.lines <=
                       vga_viewer_get_line_in_list(&line),
                   type, "its line is out of order");
        }
    }

    NB_VOID check_items(const VGA_VIEWER_LIST &list) {
        NB_ULONG count = 0;
        for (const VGA_VIEWER_ITEM *item = list.first; item != nullptr;
             item = vga_viewer_next_in_list(item)) {
            count++;
            if (lines.erase(item) == 0 && !item->fixed) {
                findings.wrong.push_back("list: a line of type " + std::to_string(item->type) +
                                         " stands for no record");
            }
            check_items(item->children);
        }
        expect(count == list.count, "list", "its count is wrong");
    }

    /* What a record refers to besides its owner. */
    template <class Record> NB_VOID references(Record &) {}

    NB_VOID references(VGA_NODE &node) {
        for (const AVL_TREE *tree :
             {&node.ports, &node.link_stations, &node.primary_lu0s, &node.lu_aliases,
              &node.remote_plus, &node.tn_sessions, &node.tamrix_sessions}) {
            count(*tree);
        }
        expect(node.cp_lu == nullptr || node.cp_lu->parent == &node, "NODE",
               "its control point's LU is another's");
    }

    NB_VOID references(VGA_LOCAL_PU &pu) {
        count(pu.extra_list);
        expect(pu.ls_entry == nullptr || pu.ls_entry->local_pu == &pu, "LOCAL_PU",
               "its link station has another PU");
    }

    NB_VOID references(VGA_DOWN_PU &pu) {
        expect(pu.ls_entry == nullptr || pu.ls_entry->down_pu == &pu, "DOWN_PU",
               "its link station has another PU");
    }

    NB_VOID references(VGA_LS &ls) {
        expect(ls.local_pu == nullptr || ls.local_pu->ls_entry == &ls, "LS",
               "its PU is on another link station");
        expect(ls.down_pu == nullptr || ls.down_pu->ls_entry == &ls, "LS",
               "its downstream PU is on another link station");
    }

    /* What names a partner is in the ring of that partner's record. */
    template <class Record> NB_VOID check_partner(const Record &record, const NB_CHAR *type) {
        const VGA_PARTNER_REF &ref = record.partner;
        if (ref.plu != nullptr) {
            const auto entry = *record.vcb;
            expect(vga_compare_ebc17(ref.plu->key.fqplu_name, entry.fqplu_name) == 0, type,
                   "its partner is another");
            expect(ref.next->previous == &ref && ref.previous->next == &ref, type,
                   "its partner does not know it");
        }
    }
    NB_VOID references(VGA_MODE &mode) { check_partner(mode, "MODE"); }
    NB_VOID references(VGA_PLU &plu) { check_partner(plu, "PLU"); }

    NB_VOID references(VGA_REM_PLU &plu) {
        NB_ULONG namers = 0;
        if (const VGA_PARTNER_REF *ref = plu.named_by) {
            do {
                expect(ref->plu == &plu, "REM_PLU", "one that names it names another");
                namers++;
            } while ((ref = ref->next) != plu.named_by);
        }
        expect(plu.in_directory <= namers, "REM_PLU", "more entries name it than there are");
        expect(namers != 0 || plu.defined != 0 || AVL_FIRST(plu.sess_tree) != nullptr, "REM_PLU",
               "nothing names it");
    }

    NB_VOID references(VGA_LU62 &lu) {
        if (AVL_FIRST(lu.routings) != nullptr) {
            lines.insert(&lu.routing_title);
        }
    }

    NB_VOID references(VGA_SYS_POOL &pool) {
        NB_ULONG nodes = 0;
        vga_for_each(gvga_system->nodes, &VGA_NODE::links, [&pool, &nodes](VGA_NODE &node) {
            VGA_POOL *part = vga_find_pool(&node, pool.name);
            nodes += part != nullptr && part->sys_pool == &pool ? 1 : 0;
        });
        expect(nodes == pool.node_pools && nodes != 0, "SYS_POOL",
               "it counts other nodes than have it");
        count(pool.lu_tree);
    }
};

} // namespace

VGA_MODEL_FINDINGS vga_check_model(NB_VOID) {
    CHECKER checker;
    vga_walk_model([&checker](auto &record, const NB_CHAR *type, auto *owner) {
        checker.visit(record, type, owner);
    });
    checker.check_counts();
    checker.check_indexes();
    checker.check_lists();
    return std::move(checker.findings);
}
