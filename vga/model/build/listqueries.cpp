#include "listqueries.h"
#include "buildsteps.h"
#include "globals.h"
#include "hooks.h"
#include "nbproblem.h"
#include "nofcopy.h"
#include <cstdio>
#include <cstring>

namespace {

/* Walks the entries of an answer; an entry that cannot be right ends the walk. */
class ENTRY_WALK {
public:
    ENTRY_WALK(const VGA_LIST &of, const NAP_VCB *block, NB_USHORT reports)
        : list(of), reporting(reports && !nba_is_silenced(NB_TRACE_RESOURCES)) {
        memcpy(&query, block, sizeof(query));
        at = static_cast<const NB_UCHAR *>(vga_buf_ptr(block));
        end = at == nullptr ? at : at + query.buf_size;
    }

    /* The next entry, or null behind the last. */
    const NB_UCHAR *next() {
        constexpr NB_USHORT length_bytes = 2;
        if (at == nullptr || count == query.num_entries) {
            return nullptr;
        }
        NB_USHORT size = 0;
        if (end - at >= length_bytes) {
            memcpy(&size, at, sizeof(size));
        }
        if (size < std::max(list.schema->least_size(), length_bytes + list.key_length())) {
            return report(NB_PD_BAD_LIST_SHORT, size);
        }
        if (size > end - at) {
            return report(NB_PD_BAD_LIST_LONG, size);
        }
        const NB_UCHAR *entry = at;
        at += size;
        count++;
        return entry;
    }

    NB_USHORT walked() const { return count; }

private:
    const NB_UCHAR *report(NB_USHORT detail, NB_USHORT size) {
        if (reporting) {
            nba_pd_print_exception(NB_PD_BAD_LIST, detail, "x i i i", list.opcode, size, count,
                                   query.num_entries);
        }
        at = nullptr;
        return nullptr;
    }

    const VGA_LIST &list;
    NB_USHORT reporting;
    NAP_QUERY_LIST query;
    const NB_UCHAR *at;
    const NB_UCHAR *end;
    NB_USHORT count = 0;
};

/* An answer that is not one to the list's query, or not with the details that records are made of,
 * is an error of the caller. */
NB_VOID check_answer(const VGA_LIST &list, const NAP_VCB *vcb) {
    if (vcb->opcode != list.opcode) {
        NB_CHAR text[64];
        snprintf(text, sizeof(text), "vcb->opcode == %s", nap_find_verb(list.opcode)->name);
        v0_assert(__FILE__, __LINE__, text);
    }
    auto query = nap_copy<NAP_QUERY_LIST>(vcb);
    if ((query.list_options & NAP_DETAIL) == 0) {
        v0_assert(__FILE__, __LINE__, "vcb->list_options & NAP_DETAIL");
    }
}

} // namespace

NB_USHORT vga_issue_list(const VGA_LIST &list, NB_ULONG target, const VGA_LIST_START &start,
                         NB_ULONG user_data, VGA_COMPLETION completion) {
    VGA_OWNED<NAP_QUERY_LIST> query = vga_new_verb<NAP_QUERY_LIST>(list.opcode);
    VGA_OWNED<NB_VOID> buffer(vga_get_querybuf(0));
    if (!query || !buffer) {
        return 0;
    }
    query->buf_size = gvga_querybuf_size & ~3U;
    query->owner_length =
        start.owner != nullptr ? static_cast<NB_USHORT>(list.owner_length()) : NB_USHORT{0};
    NB_UCHAR position = NAP_FIRST_IN_LIST;
    if (start.key != nullptr) {
        query->num_entries = 1;
        position = NAP_LIST_INCLUSIVE;
        memcpy(query->key, start.key, list.key_length());
    } else if (start.last != nullptr && start.last->received) {
        position = NAP_LIST_FROM_NEXT;
        memcpy(query->key, start.last->key, list.key_length());
    }
    if (start.owner != nullptr) {
        memcpy(query->key, start.owner, list.owner_length());
    }
    query->list_options = static_cast<NB_UCHAR>(start.detail | position);
    vga_set_buf_ptr(reinterpret_cast<NAP_VCB *>(query.get()), buffer.release());
    return vga_issue_verb(target, std::move(query), user_data, completion);
}

NB_VOID vga_report_owner_missing(const VGA_LIST &list, const NB_UCHAR *entry) {
    if (!nba_is_silenced(NB_TRACE_RESOURCES)) {
        nba_pd_print_exception(NB_PD_UNKNOWN_NAME, 0, "x ca", list.opcode,
                               static_cast<NB_INT>(list.owner.width), entry + list.owner.offset);
    }
}

NB_VOID vga_report_unknown(NB_USHORT opcode, const VGA_LIST &list, const NB_UCHAR *key) {
    if (!nba_is_silenced(NB_TRACE_RESOURCES)) {
        nba_pd_print_exception(NB_PD_UNKNOWN_NAME, 0, "x ca", opcode,
                               static_cast<NB_INT>(list.key_length()), key);
    }
}

NB_VOID vga_report_failed_verb(const NAP_VCB *vcb) {
    if (!nba_is_silenced(NB_TRACE_RESOURCES)) {
        nba_pd_print_exception(NB_PD_VERB_FAILED, 0, "x x lx", vcb->opcode, vcb->primary_rc,
                               vcb->secondary_rc);
    }
}

NB_VOID vga_query_failed(const NAP_VCB *vcb, const NB_CHAR *file, NB_INT line) {
    vga_report_failed_verb(vcb);
    vga_request_exit(VGA_EXIT_VERB_FAILED, vcb->opcode, file, line);
}

NB_VOID vga_visit_entries(const VGA_LIST &list, const NAP_VCB *vcb,
                          const std::function<NB_VOID(const NB_UCHAR *entry)> &visit) {
    ENTRY_WALK walk(list, vcb, 1);
    while (const NB_UCHAR *entry = walk.next()) {
        visit(entry);
    }
}

NB_USHORT vga_process_list(const VGA_LIST &list, VGA_NODE *node, const NAP_VCB *vcb, NB_INT line,
                           VGA_LIST_POSITION *last) {
    last->received = 0;
    check_answer(list, vcb);
    if (vcb->primary_rc != NAP_OK) {
        vga_query_failed(vcb, gvga_build_module, line);
        return 0;
    }
    ENTRY_WALK walk(list, vcb, 1);
    while (const NB_UCHAR *entry = walk.next()) {
        last->received = 1;
        memcpy(last->key, entry + 2, list.key_length());
        VGA_ENTRY_RESULT result = list.add(node, entry);
        if (result == VGA_ENTRY_NO_MEMORY) {
            VGA_BUILD_EXIT_AT(line);
            return 0;
        }
        if (result == VGA_ENTRY_SKIPPED) {
            vga_report_owner_missing(list, entry);
        }
    }
    gvga_system->resources += walk.walked();
    if (gvga_hooks.build_progress != nullptr) {
        gvga_hooks.build_progress(node, gvga_system->resources);
    }
    return 1;
}

NB_VOID vga_find_list_end(const VGA_LIST &list, const NAP_VCB *vcb, VGA_LIST_POSITION *last) {
    const NB_UCHAR *end = nullptr;
    if (vcb->primary_rc == NAP_OK) {
        ENTRY_WALK walk(list, vcb, 0);
        while (const NB_UCHAR *entry = walk.next()) {
            end = entry;
        }
    }
    last->received = end != nullptr;
    if (end != nullptr) {
        memcpy(last->key, end + 2, list.key_length());
    }
}

NB_USHORT vga_list_goes_on(const VGA_LIST &list, const NAP_VCB *vcb,
                           const VGA_LIST_POSITION &last) {
    auto query = nap_copy<NAP_QUERY_LIST>(vcb);
    if (query.num_entries >= query.total_num_entries) {
        return 0;
    }
    NB_USHORT from_next = (query.list_options & NAP_LIST_FROM_NEXT) != 0;
    NB_USHORT stands_still = from_next && memcmp(query.key, last.key, list.key_length()) == 0;
    if (last.received && !stands_still) {
        return 1;
    }
    if (!nba_is_silenced(NB_TRACE_RESOURCES)) {
        nba_pd_print_exception(
            NB_PD_BAD_LIST, last.received ? NB_PD_BAD_LIST_STANDS_STILL : NB_PD_BAD_LIST_EMPTY,
            "x i i i", query.opcode, 0, query.num_entries, query.total_num_entries);
    }
    return 0;
}

NB_USHORT vga_node_is_gone(const NAP_VCB *vcb) {
    return vcb->primary_rc == NAP_COMM_FAILURE && vcb->secondary_rc == NAP_NODE_GONE;
}
