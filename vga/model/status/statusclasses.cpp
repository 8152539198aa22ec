#include "statusclasses.h"
#include "nofverbs.h"
#include "opcodeindex.h"
#include "recordtypes.h"
#include "schemas.h"
#include "vgadsadd.h"
#include "vgadsdel.h"
#include "vgadsutl.h"
#include <type_traits>

namespace {

/* How records are found. */

constexpr size_t name8 = 8;

VGA_DOWN_LU *find_down_lu(const VGA_NODE *node, const NB_UCHAR *key) {
    VGA_DOWN_PU *pu = vga_find_down_pu(node, key);
    return pu != nullptr ? static_cast<VGA_DOWN_LU *>(ntl_avl_find(&pu->lus, key + name8))
                         : nullptr;
}

VGA_LU03 *find_lu03(const VGA_NODE *node, const NB_UCHAR *key) {
    return vga_find_lu03(node, key, key + name8);
}

/* Modes and partners in use: the key of the record follows the alias of its LU. */
template <class Record, auto Tree> Record *find_of_lu(const VGA_NODE *node, const NB_UCHAR *key) {
    VGA_LU62 *lu = vga_find_lu62_by_alias(node, key);
    return lu != nullptr ? static_cast<Record *>(ntl_avl_find(&(lu->*Tree), key + name8)) : nullptr;
}

VGA_DIR *find_dir(const VGA_NODE *node, const NB_UCHAR *bytes) {
    VGA_DIR_KEY key;
    memcpy(&key, bytes, sizeof(key));
    return static_cast<VGA_DIR *>(ntl_avl_find(&node->directory, &key));
}

VGA_TAMRIX_APPCIP_SESS *find_tamrix_sess(const VGA_NODE *node, const NB_UCHAR *bytes) {
    NB_USHORT number;
    memcpy(&number, bytes, sizeof(number));
    NB_ULONG key = number;
    return static_cast<VGA_TAMRIX_APPCIP_SESS *>(ntl_avl_find(&node->tamrix_numbers, &key));
}

/* The keys of these are copied whole, or compared in place behind the alias. */
static_assert(sizeof(VGA_DIR_KEY) == 36 && sizeof(VGA_MODE_KEY) == 25 && sizeof(VGA_PLU_KEY) == 25);

/* What follows from a change. */

template <class Record> NB_VOID status_follows(Record *) {}

NB_VOID status_follows(VGA_LS *ls) {
    ls->state = ls->vcb->det_data.ls_state;
}

/* The line of a link station stands for the PU that is on it, and so do its buttons. */
NB_VOID link_station_follows(VGA_LS *ls) {
    if (ls != nullptr) {
        vga_update_line(ls);
        vga_record_changed(ls, VGA_RECORD_CHANGED);
    }
}

NB_VOID status_follows(VGA_LOCAL_PU *pu) {
    link_station_follows(pu->ls_entry);
}

NB_VOID status_follows(VGA_DOWN_PU *pu) {
    link_station_follows(pu->ls_entry);
}

/* The pool that has the LU shows whether it is active and in use. */
NB_VOID status_follows(VGA_LU03 *lu) {
    NAP_LU03_DATA data = *lu->vcb;
    VGA_POOL_LU *member = vga_find_pool_lu(lu->parent->parent, data.def_data.pool_name, lu->name);
    if (member != nullptr) {
        member->vcb->lu_active = data.det_data.lu_sscp_sess_active;
        member->vcb->lu_in_use = data.det_data.plu_sess_active || data.det_data.appl_conn_active;
        vga_update_line(member);
    }
}

/* They name their partner anew, and tell of the sessions with it. */
NB_VOID status_follows(VGA_MODE *mode) {
    VGA_RECORD_TYPE<VGA_MODE>::settled(*mode);
}

NB_VOID status_follows(VGA_PLU *plu) {
    VGA_RECORD_TYPE<VGA_PLU>::settled(*plu);
}

/* A remote system has the entry of its control point. */
NB_VOID status_follows(VGA_DIR *dir) {
    VGA_RECORD_TYPE<VGA_DIR>::settled(*dir);
}

/* A session's number may have been given to another one. */
NB_VOID status_follows(VGA_TAMRIX_APPCIP_SESS *session) {
    VGA_TAMRIX_APPCIP_SESS now = *session;
    VGA_RECORD_TYPE<VGA_TAMRIX_APPCIP_SESS>::init(now);
    vga_relink_as(*session, now);
}

/* What goes with a resource. */

template <class Record> NB_VOID take_out(Record *record) {
    vga_delete_record(record);
}

/* The link station stays, without a PU. */
template <class Pu> NB_VOID take_pu_out(Pu *pu) {
    VGA_LS *ls = pu->ls_entry;
    vga_delete_record(pu);
    link_station_follows(ls);
}

NB_VOID take_out(VGA_LOCAL_PU *pu) {
    take_pu_out(pu);
}

NB_VOID take_out(VGA_DOWN_PU *pu) {
    take_pu_out(pu);
}

/* The row's functions, from those above. */

template <auto Find>
using FOUND = std::remove_pointer_t<decltype(Find(static_cast<VGA_NODE *>(nullptr),
                                                  static_cast<const NB_UCHAR *>(nullptr)))>;

template <auto Find> NB_VOID *find(VGA_NODE *node, const NB_UCHAR *key) {
    return Find(node, key);
}

template <class Record, NB_USHORT Offset>
NB_VOID change(NB_VOID *item, const NB_UCHAR *status, NB_USHORT length) {
    auto *record = static_cast<Record *>(item);
    auto *held = reinterpret_cast<NB_UCHAR *>(record->vcb) + Offset;
    if (memcmp(held, status, length) == 0) {
        return;
    }
    memcpy(held, status, length);
    status_follows(record);
    vga_update_line(record);
    vga_record_changed(record, VGA_RECORD_CHANGED);
}

template <class Record> NB_VOID remove_record(NB_VOID *item) {
    vga_record_changed(item, VGA_RECORD_GONE);
    take_out(static_cast<Record *>(item));
}

/* What an indication about an unknown resource leads to. */
struct UNKNOWN {
    NB_USHORT reaction = VGA_UNKNOWN_REPORT;
    NB_USHORT detail = 8;
    NB_USHORT name_offset = 0; /* in the key */
    NB_USHORT kept_by_merge = 0;
};

constexpr UNKNOWN report = {};
constexpr UNKNOWN report_port = {.detail = 17, .kept_by_merge = 1};
constexpr UNKNOWN report_lu03 = {.name_offset = name8};
constexpr UNKNOWN report_and_read = {.reaction = VGA_UNKNOWN_REPORT | VGA_UNKNOWN_READ};
constexpr UNKNOWN read_it = {.reaction = VGA_UNKNOWN_READ};
constexpr UNKNOWN read_ls = {.reaction = VGA_UNKNOWN_READ, .kept_by_merge = 1};

/* `List` is the place of the class's list in the schema. */
template <auto Find, const records::Schema &Of, size_t List = 0>
constexpr VGA_STATUS_CLASS make_row(VGA_STATUS_ID id, NB_USHORT chain, const UNKNOWN &unknown) {
    using RECORD = FOUND<Find>;
    static_assert(Of.det.end() <= sizeof(std::remove_pointer_t<decltype(RECORD::vcb)>));
    return {.id = id,
            .query = Of.lists[List].list,
            .indication = Of.lists[List].indication,
            .chain = chain,
            .schema = &Of,
            .unknown = unknown.reaction,
            .detail = unknown.detail,
            .name_offset = unknown.name_offset,
            .name_width = name8,
            .kept_by_merge = unknown.kept_by_merge,
            .find = find<Find>,
            .change = change<RECORD, Of.det.offset>,
            .remove = remove_record<RECORD>};
}

constexpr auto find_mode = find_of_lu<VGA_MODE, &VGA_LU62::modes>;
constexpr auto find_plu = find_of_lu<VGA_PLU, &VGA_LU62::partners>;

} // namespace

constexpr VGA_STATUS_CLASS gvga_status_classes[VGA_STATUS_CLASSES] = {
    make_row<vga_find_dlc, records::dlc>(VGA_STATUS_DLC, VGA_DLC_LIST, report),
    make_row<vga_find_port, records::port>(VGA_STATUS_PORT, VGA_PORT_LIST, report_port),
    make_row<vga_find_ls, records::ls>(VGA_STATUS_LS, VGA_LS_LIST, read_ls),
    make_row<vga_find_local_pu, records::pu>(VGA_STATUS_PU, VGA_PU_LIST, report),
    make_row<vga_find_local_pu, records::pu, 1>(VGA_STATUS_DLUR_PU, VGA_DLUR_PU_LIST, report),
    make_row<vga_find_down_pu, records::down_pu>(VGA_STATUS_DOWN_PU, VGA_DOWN_PU_LIST,
                                                 report_and_read),
    make_row<find_down_lu, records::down_lu>(VGA_STATUS_DOWN_LU, VGA_DOWN_LU_LIST, read_it),
    make_row<vga_find_lu62, records::local_lu>(VGA_STATUS_LU62, VGA_LU62_LIST, report),
    make_row<find_lu03, records::lu03>(VGA_STATUS_LU03, VGA_LU03_LIST, report_lu03),
    make_row<find_mode, records::mode>(VGA_STATUS_MODE, VGA_MODE_LIST, read_it),
    make_row<find_plu, records::plu>(VGA_STATUS_PLU, VGA_PLU_LIST, read_it),
    make_row<find_dir, records::directory>(VGA_STATUS_DIR, VGA_DIR_LIST, read_it),
    make_row<find_tamrix_sess, records::tamrix_session>(VGA_STATUS_TAMRIX_SESS,
                                                        VGA_TAMRIX_SESS_LIST, read_it),
};

/* VGA_STATUS_ID is the index. */
static_assert([] {
    for (NB_USHORT id = 0; id < VGA_STATUS_CLASSES; id++) {
        if (gvga_status_classes[id].id != id) {
            return false;
        }
    }
    return true;
}());

const VGA_STATUS_CLASS *vga_find_status_class(NB_USHORT opcode) {
    constexpr static records::OpcodeIndex<VGA_STATUS_CLASS, 2 * VGA_STATUS_CLASSES> index(
        gvga_status_classes, [](const VGA_STATUS_CLASS &row) {
            return std::array{row.query, row.indication};
        });
    return index.find(opcode);
}
