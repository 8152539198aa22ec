#include "vgaindre.h"
#include "nofverbs.h"
#include "vgadsadd.h"
#include "vgadsdel.h"
#include "vgatypes.h"
#include <algorithm>
#include <iterator>

namespace {

constexpr NB_ULONG unknown_resource = 0x40020004;
constexpr NB_USHORT exception_flag_byte = 8;

/* The bytes of a list entry that the indication brings anew. */
struct PART {
    NB_USHORT offset;
    NB_USHORT length;
};

struct RESOURCE_CLASS {
    NB_USHORT opcode;
    NB_USHORT chain;                   /* of VGA_NODE_CHAIN: the list that makes the records */
    NB_USHORT detail;                  /* of the report of an unknown resource */
    NB_USHORT name_offset, name_width; /* in the key, for that report */
    /* Applies the indication; returns 0 when there is no such record. */
    NB_USHORT (*apply)(VGA_NODE *node, const NAP_RESOURCE_INDICATION &indication);
};

/* How records are found. */

VGA_DLC *find_dlc(VGA_NODE *node, const NB_UCHAR *key) {
    return vga_find_dlc(node, key);
}
VGA_PORT *find_port(VGA_NODE *node, const NB_UCHAR *key) {
    return vga_find_port(node, key);
}
VGA_LS *find_ls(VGA_NODE *node, const NB_UCHAR *key) {
    return vga_find_ls(node, key);
}
VGA_LOCAL_PU *find_pu(VGA_NODE *node, const NB_UCHAR *key) {
    return vga_find_local_pu(node, key);
}

VGA_LU03 *find_lu03(VGA_NODE *node, const NB_UCHAR *key) {
    VGA_LOCAL_PU *pu = vga_find_local_pu(node, key);
    const NB_UCHAR *name = key + sizeof(pu->name);
    return pu != nullptr ? static_cast<VGA_LU03 *>(ntl_avl_find(&pu->lus, name)) : nullptr;
}

VGA_LU62 *find_lu62(VGA_NODE *node, const NB_UCHAR *key) {
    return static_cast<VGA_LU62 *>(ntl_avl_find(&node->lus, key));
}

VGA_MODE *find_mode(VGA_NODE *node, const NB_UCHAR *key) {
    VGA_LU62 *lu = vga_find_lu62_by_alias(node, key);
    const NB_UCHAR *mode_key = key + sizeof(lu->alias);
    return lu != nullptr ? static_cast<VGA_MODE *>(ntl_avl_find(&lu->modes, mode_key)) : nullptr;
}

/* What a change means. */

template <class Record> NB_VOID record_follows(Record *) {}

NB_VOID record_follows(VGA_LS *ls) {
    ls->state = ls->vcb->det_data.ls_state;
}

/* The sessions with the partner are those of the mode. */
NB_VOID record_follows(VGA_MODE *mode) {
    VGA_NODE *node = mode->parent->parent;
    NAP_MODE_DATA data = *mode->vcb;
    VGA_REM_PLU *plu = vga_add_vga_rem_sess(node, mode->vcb);
    if (plu == nullptr || data.act_sess_count != 0) {
        return;
    }
    VGA_REM_SESS_KEY key;
    memcpy(key.lu_alias, data.lu_alias, sizeof(key.lu_alias));
    memcpy(key.mode_name, data.mode_name, sizeof(key.mode_name));
    auto *session = static_cast<VGA_REM_SESS *>(ntl_avl_find(&plu->sess_tree, &key));
    if (session != nullptr) {
        vga_delete_vga_rem_sess(session);
    }
}

template <class Record>
NB_VOID change_record(Record *record, PART part, const NAP_RESOURCE_INDICATION &indication) {
    auto *bytes = reinterpret_cast<NB_UCHAR *>(record->vcb) + part.offset;
    NB_USHORT length = std::min(
        {part.length, indication.det_length, static_cast<NB_USHORT>(sizeof(indication.det_data))});
    if (memcmp(bytes, indication.det_data, length) == 0) {
        return;
    }
    memcpy(bytes, indication.det_data, length);
    record_follows(record);
    vga_update_line(record);
    vga_record_changed(record, VGA_RECORD_CHANGED);
}

template <auto Find, NB_USHORT Offset, size_t Length>
NB_USHORT apply(VGA_NODE *node, const NAP_RESOURCE_INDICATION &indication) {
    auto *record = Find(node, indication.key);
    if (record == nullptr) {
        return 0;
    }
    if (indication.deactivated) {
        vga_record_changed(record, VGA_RECORD_GONE);
        vga_delete_record(record);
    } else {
        change_record(record, PART{Offset, static_cast<NB_USHORT>(Length)}, indication);
    }
    return 1;
}

#define VGA_BETWEEN(record, first, behind)                                                         \
    offsetof(record, first), offsetof(record, behind) - offsetof(record, first)
#define VGA_FROM(record, first) offsetof(record, first), sizeof(record) - offsetof(record, first)

constexpr NB_USHORT port_detail = 17;
constexpr NB_USHORT other_detail = 8;

constexpr RESOURCE_CLASS classes[] = {
    {NAP_DLC_INDICATION, VGA_DLC_LIST, other_detail, 0, 8,
     apply<find_dlc, VGA_BETWEEN(NAP_DLC_DATA, dlc_sts, def_data)>},
    {NAP_PORT_INDICATION, VGA_PORT_LIST, port_detail, 0, 8,
     apply<find_port, VGA_BETWEEN(NAP_PORT_DATA, det_data, def_data)>},
    {NAP_LS_INDICATION, VGA_LS_LIST, other_detail, 0, 8,
     apply<find_ls, VGA_BETWEEN(NAP_LS_DATA, det_data, def_data)>},
    {NAP_PU_INDICATION, VGA_PU_LIST, other_detail, 0, 8,
     apply<find_pu, VGA_BETWEEN(NAP_PU_DATA, host_attachment, def_data)>},
    {NAP_DLUR_PU_INDICATION, VGA_DLUR_PU_LIST, other_detail, 0, 8,
     apply<find_pu, VGA_BETWEEN(NAP_PU_DATA, host_attachment, def_data)>},
    {NAP_LU_0_TO_3_INDICATION, VGA_LU03_LIST, other_detail, 8, 8,
     apply<find_lu03, VGA_BETWEEN(NAP_LU03_DATA, det_data, def_data)>},
    {NAP_LOCAL_LU_INDICATION, VGA_LU62_LIST, other_detail, 0, 8,
     apply<find_lu62, VGA_BETWEEN(NAP_LOCAL_LU_DATA, lu_sscp_sess_active, def_data)>},
    {NAP_MODE_INDICATION, VGA_MODE_LIST, other_detail, 8, 8,
     apply<find_mode, VGA_FROM(NAP_MODE_DATA, plu_alias)>},
};

NB_VOID report_unknown(const VGA_NODE *node, const RESOURCE_CLASS &row,
                       const NAP_RESOURCE_INDICATION &indication) {
    if (node->startup_status[row.chain] || (ptrc.flags[exception_flag_byte] & 1) != 0) {
        return;
    }
    nba_pd_print_exception(unknown_resource, row.detail, "x ca", indication.opcode,
                           static_cast<NB_INT>(row.name_width), indication.key + row.name_offset);
}

} // namespace

NB_USHORT vga_indication_handler(const VGA_PROCESS_STATE *work) {
    auto row = std::find_if(
        std::begin(classes), std::end(classes),
        [work](const RESOURCE_CLASS &candidate) { return candidate.opcode == work->vcb->opcode; });
    if (row == std::end(classes)) {
        return 0;
    }
    auto *node = static_cast<VGA_NODE *>(nba_validate_handle(work->user_data));
    if (node == nullptr) {
        return 1;
    }
    NAP_RESOURCE_INDICATION indication;
    memcpy(&indication, work->vcb, sizeof(indication));
    if (row->apply(node, indication) == 0) {
        report_unknown(node, *row, indication);
    }
    return 1;
}
