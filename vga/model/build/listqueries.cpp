#include "listqueries.h"
#include "buildsteps.h"
#include "globals.h"
#include "hooks.h"
#include "nbproblem.h"
#include "nofcopy.h"
#include "opcodeindex.h"
#include "partners.h"
#include "schemas.h"
#include "vgadsadd.h"
#include "vgadsutl.h"
#include <cstdio>
#include <cstring>

namespace {

VGA_ENTRY_RESULT owner_missing(NB_USHORT opcode, const NB_UCHAR *name, NB_USHORT width) {
    if (!nba_is_silenced(NB_TRACE_RESOURCES)) {
        nba_pd_print_exception(NB_PD_UNKNOWN_NAME, 0, "x ca", opcode, width, name);
    }
    return VGA_ENTRY_SKIPPED;
}

template <class Data> const Data *as_entry(const NB_UCHAR *entry) {
    return reinterpret_cast<const Data *>(entry);
}

/* The common end of every entry: a record was made (or there was no memory) and goes in. */
template <class Record>
VGA_ENTRY_RESULT insert(Record *record, Record *(*insert_record)(Record *)) {
    return record != nullptr && insert_record(record) != nullptr ? VGA_ENTRY_ADDED
                                                                 : VGA_ENTRY_NO_MEMORY;
}

/* What a constructor takes: its owner, and the entry as a packed record. */
template <class Function> struct CONSTRUCTOR;
template <class Record, class Owner, class Entry>
struct CONSTRUCTOR<Record *(*)(Owner *, const Entry *)> {
    typedef Owner OWNER;
    typedef Entry ENTRY;
};
template <auto Init> using ENTRY_OF = typename CONSTRUCTOR<decltype(Init)>::ENTRY;

/* Records under the domain, under the node of the list, and under an owner of the node whose name
 * stands at an offset of the entry. */

template <auto Init, auto Insert> VGA_ENTRY_RESULT of_system(VGA_NODE *, const NB_UCHAR *entry) {
    return insert(Init(gvga_system, as_entry<ENTRY_OF<Init>>(entry)), Insert);
}

template <auto Init, auto Insert> VGA_ENTRY_RESULT of_node(VGA_NODE *node, const NB_UCHAR *entry) {
    return insert(Init(node, as_entry<ENTRY_OF<Init>>(entry)), Insert);
}

template <NB_USHORT Opcode, auto Find, size_t Offset, size_t Width, auto Init, auto Insert>
VGA_ENTRY_RESULT of_owner(VGA_NODE *node, const NB_UCHAR *entry) {
    auto *owner = Find(node, entry + Offset);
    if (owner == nullptr) {
        return owner_missing(Opcode, entry + Offset, Width);
    }
    return insert(Init(owner, as_entry<ENTRY_OF<Init>>(entry)), Insert);
}

VGA_ENTRY_RESULT add_node(VGA_NODE *, const NB_UCHAR *entry) {
    return insert(vga_init_vga_node(as_entry<NAP_NODE_ALL_DATA>(entry)), vga_insert_vga_node);
}

/* The entry of a pool stands before those of its LUs; a pool that is known only by them is made
 * from the first. */
VGA_ENTRY_RESULT add_lu_pool(VGA_NODE *node, const NB_UCHAR *entry) {
    NAP_LU_POOL_DATA data = nap_copy<NAP_LU_POOL_DATA>(entry);
    NB_USHORT pool_itself = vga_blank_name(data.lu_name, sizeof(data.lu_name));
    VGA_POOL *pool = vga_find_pool(node, data.pool_name);
    if (pool == nullptr || pool_itself) {
        memset(data.lu_name, 0x40, sizeof(data.lu_name));
        VGA_POOL *fresh = vga_init_vga_pool(node, &data);
        pool = fresh != nullptr ? vga_insert_vga_pool(fresh) : nullptr;
    }
    if (pool == nullptr) {
        return VGA_ENTRY_NO_MEMORY;
    }
    return pool_itself ? VGA_ENTRY_ADDED
                       : insert(vga_init_vga_pool_lu(pool, as_entry<NAP_LU_POOL_DATA>(entry)),
                                vga_insert_vga_pool_lu);
}

VGA_ENTRY_RESULT add_extra_data(VGA_NODE *node, const NB_UCHAR *entry) {
    NAP_EXTRA_DATA_DATA data = nap_copy<NAP_EXTRA_DATA_DATA>(entry);
    VGA_LU03 *lu = vga_find_lu03(node, data.pu_name, data.lu_name);
    if (lu == nullptr) {
        return owner_missing(NAP_QUERY_EXTRA_DATA, data.lu_name, sizeof(data.lu_name));
    }
    return insert(vga_init_vga_extra_data(lu, as_entry<NAP_EXTRA_DATA_DATA>(entry)),
                  vga_insert_vga_extra_data);
}

/* A mode in use also tells of the partner. */
VGA_ENTRY_RESULT add_mode(VGA_NODE *node, const NB_UCHAR *entry) {
    NAP_MODE_DATA data = nap_copy<NAP_MODE_DATA>(entry);
    VGA_LU62 *lu = vga_find_lu62_by_alias(node, data.lu_alias);
    if (lu == nullptr) {
        return owner_missing(NAP_QUERY_MODE, data.lu_alias, 8);
    }
    NAP_PLU_DATA partner = {};
    partner.overlay_size = sizeof(partner);
    memcpy(partner.lu_alias, data.lu_alias, sizeof(partner.lu_alias));
    memcpy(partner.plu_alias, data.plu_alias, sizeof(partner.plu_alias));
    memcpy(partner.fqplu_name, data.fqplu_name, sizeof(partner.fqplu_name));
    memcpy(partner.fq_cp_name, data.fq_cp_name, sizeof(partner.fq_cp_name));
    VGA_PLU_KEY key;
    memcpy(key.plu_alias, data.plu_alias, sizeof(key.plu_alias));
    memcpy(key.fqplu_name, data.fqplu_name, sizeof(key.fqplu_name));
    if (ntl_avl_find(&lu->partners, &key) == nullptr &&
        insert(vga_init_vga_plu(lu, &partner), vga_insert_vga_plu) != VGA_ENTRY_ADDED) {
        return VGA_ENTRY_NO_MEMORY;
    }
    return insert(vga_init_vga_mode(lu, as_entry<NAP_MODE_DATA>(entry)), vga_insert_vga_mode);
}

VGA_ENTRY_RESULT add_plu(VGA_NODE *node, const NB_UCHAR *entry) {
    NAP_PLU_DATA data = nap_copy<NAP_PLU_DATA>(entry);
    VGA_LU62 *lu = vga_find_lu62_by_alias(node, data.lu_alias);
    if (lu == nullptr) {
        return owner_missing(NAP_QUERY_PARTNER_LU, data.lu_alias, 8);
    }
    return insert(vga_init_vga_plu(lu, as_entry<NAP_PLU_DATA>(entry)), vga_insert_vga_plu);
}

/* A definition goes to the partner wherever the directory or the sessions have put it, else under
 * the placeholder. */
VGA_ENTRY_RESULT add_plu_def(VGA_NODE *node, const NB_UCHAR *entry) {
    NAP_PLU_DEF_DATA data = nap_copy<NAP_PLU_DEF_DATA>(entry);
    VGA_REM_PLU *known = vga_need_rem_plu(node, data.fqplu_name, NAP_DIR_LU);
    if (known == nullptr) {
        return VGA_ENTRY_NO_MEMORY;
    }
    VGA_REM_PLU *plu =
        vga_init_vga_rem_plu(known->parent, as_entry<NAP_PLU_DEF_DATA>(entry), NAP_DIR_LU);
    if (plu == nullptr) {
        return VGA_ENTRY_NO_MEMORY;
    }
    plu->defined = 1;
    return insert(plu, vga_insert_vga_rem_plu);
}

#define VGA_OF(owner, type) owner<vga_init_##type, vga_insert_##type>
/* The owner's name is a field of the schema. */
#define VGA_OF_OWNER(schema, name, find, type)                                                     \
    of_owner<records::schema.lists[0].list, find, field(records::schema, name).offset,             \
             field(records::schema, name).width, vga_init_##type, vga_insert_##type>

/* clang-format off */
constexpr VGA_LIST lists[] = {
    {NAP_QUERY_NODE_ALL, &records::domain_node, add_node},
    {NAP_QUERY_SNA_NET, &records::domain_server, VGA_OF(of_system, vga_sna_net_node)},
    {NAP_QUERY_DLC, &records::dlc, VGA_OF(of_node, vga_dlc)},
    {NAP_QUERY_PORT, &records::port, VGA_OF_OWNER(port, "dlc_name", vga_find_dlc, vga_port)},
    {NAP_QUERY_LS, &records::ls, VGA_OF_OWNER(ls, "port_name", vga_find_port, vga_ls)},
    {NAP_QUERY_CN, &records::cn, VGA_OF(of_node, vga_cn)},
    {NAP_QUERY_CN_PORT, &records::cn_port, VGA_OF_OWNER(cn_port, "fqcn_name", vga_find_cn, vga_cn_port)},
    {NAP_QUERY_PU, &records::pu, VGA_OF(of_node, vga_local_pu)},
    {NAP_QUERY_DOWNSTREAM_PU, &records::down_pu, VGA_OF(of_node, vga_down_pu)},
    {NAP_QUERY_DLUR_PU, &records::pu, VGA_OF(of_node, vga_local_pu)},
    {NAP_QUERY_LOCAL_LU, &records::local_lu, VGA_OF(of_node, vga_lu62)},
    {NAP_QUERY_LU_0_TO_3, &records::lu03, VGA_OF_OWNER(lu03, "pu_name", vga_find_local_pu, vga_lu03)},
    {NAP_QUERY_DOWNSTREAM_LU, &records::down_lu, VGA_OF_OWNER(down_lu, "dspu_name", vga_find_down_pu, vga_down_lu)},
    {NAP_QUERY_LU_POOL, &records::lu_pool, add_lu_pool},
    {NAP_QUERY_MODE, &records::mode, add_mode},
    {NAP_QUERY_MODE_DEFINITION, &records::mode_def, VGA_OF(of_node, vga_mode_def)},
    {NAP_QUERY_COS, &records::cos, VGA_OF(of_node, vga_cos)},
    {NAP_QUERY_COS_NODE_ROW, &records::cos_node_row, VGA_OF_OWNER(cos_node_row, "cos_name", vga_find_cos, vga_cos_node_row)},
    {NAP_QUERY_COS_TG_ROW, &records::cos_tg_row, VGA_OF_OWNER(cos_tg_row, "cos_name", vga_find_cos, vga_cos_tg_row)},
    {NAP_QUERY_DIRECTORY_ENTRY, &records::directory, VGA_OF(of_node, vga_dir)},
    {NAP_QUERY_PARTNER_LU, &records::plu, add_plu},
    {NAP_QUERY_PARTNER_LU_DEFINITION, &records::plu_def, add_plu_def},
    {NAP_QUERY_TP_DEFINITION, &records::tp, VGA_OF(of_node, vga_tp_def)},
    {NAP_QUERY_TP_LOAD_INFO, &records::tp_load, VGA_OF(of_node, vga_tp_load_info)},
    {NAP_QUERY_LU62_TIMEOUT, &records::lu62_timeout, VGA_OF(of_node, vga_lu62_timeout)},
    {NAP_QUERY_LS_ROUTING, &records::ls_routing, VGA_OF_OWNER(ls_routing, "lu_name", vga_find_lu62, vga_ls_routing)},
    {NAP_QUERY_DSPU_TEMPLATE, &records::dspu_template, VGA_OF(of_node, vga_dspu_template)},
    {NAP_QUERY_RTP_CONNECTION, &records::rtp_conn, VGA_OF(of_node, vga_rtp_conn)},
    {NAP_QUERY_LU_LU_PASSWORD, &records::lu_lu_password, VGA_OF(of_node, vga_slsec_def)},
    {NAP_QUERY_USERID_PASSWORD, &records::userid_password, VGA_OF(of_node, vga_clsec_def)},
    {NAP_QUERY_SECURITY_ACCESS_LIST, &records::access_list, VGA_OF(of_node, vga_access_list)},
    {NAP_QUERY_CPIC_SIDE_INFO, &records::cpic, VGA_OF(of_system, vga_cpic)},
    {NAP_QUERY_EMULATOR_USER_DEF, &records::user, VGA_OF(of_system, vga_user)},
    {NAP_QUERY_RJE_WKSTN_DEF, &records::rje, VGA_OF(of_system, vga_rje_wkstn)},
    {NAP_QUERY_EXTRA_DATA, &records::extra_data, add_extra_data},
    {NAP_QUERY_PRIMARY_LINE, &records::primary_line, VGA_OF(of_node, vga_primary_line)},
    {NAP_QUERY_PRIMARY_LU0, &records::primary_lu0, VGA_OF_OWNER(primary_lu0, "line_name", vga_find_primary_line, vga_primary_lu0)},
    {NAP_QUERY_TN3270_ACCESS_DEF, &records::tn_access, VGA_OF(of_node, vga_tn_client)},
    {NAP_QUERY_TN3270_ASSOCIATION, &records::tn_assoc, VGA_OF(of_node, vga_tn_assoc)},
    {NAP_QUERY_TN_REDIRECT_DEF, &records::tn_redirect, VGA_OF(of_node, vga_tn_redirect)},
    {NAP_QUERY_TAMRIX_APPCIP, &records::tamrix_session, VGA_OF(of_node, vga_tamrix_appcip_sess)},
};
/* clang-format on */

#undef VGA_OF
#undef VGA_OF_OWNER

constexpr records::OpcodeIndex<VGA_LIST, std::size(lists)>
    by_opcode(lists, [](const VGA_LIST &list) { return std::array{list.opcode}; });

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

const VGA_LIST *vga_find_list(NB_USHORT opcode) {
    return by_opcode.find(opcode);
}

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
        if (list.add(node, entry) == VGA_ENTRY_NO_MEMORY) {
            VGA_BUILD_EXIT_AT(line);
            return 0;
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
