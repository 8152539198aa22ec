#include "statusclasses.h"
#include "messages.h"
#include "nofverbs.h"
#include "opcodeindex.h"
#include "outcomes.h"
#include "recordtypes.h"
#include "schemas.h"
#include "takeout.h"
#include "vgadsadd.h"
#include "vgadsutl.h"
#include <cstring>
#include <type_traits>

namespace {

/* What follows from a change. */

template <class Record> NB_VOID status_follows(Record *) {}

/* Connection networks say which of their ports are active. */
NB_VOID status_follows(VGA_PORT *port) {
    NB_USHORT active = port->vcb->det_data.port_state == NAP_ACTIVE;
    vga_for_each(port->node->connection_networks, &VGA_CN::links, [port, active](VGA_CN &cn) {
        const auto *member = static_cast<VGA_CN_PORT *>(ntl_avl_find(&cn.ports, port->name));
        if (member != nullptr && active != (member->vcb->tg_num != 0)) {
            vga_cn_follows(&cn);
        }
    });
}

NB_VOID status_follows(VGA_LS *ls) {
    ls->state = ls->vcb->det_data.ls_state;
}

/* How a PU is attached decides where its line and those of its LUs are. */
NB_VOID status_follows(VGA_LOCAL_PU *pu) {
    NB_USHORT has_line = VGA_RECORD_TYPE<VGA_LOCAL_PU>::line(*pu).root != nullptr;
    if (has_line != (pu->gui_data.list != nullptr)) {
        vga_place_line(pu);
        VGA_RECORD_TYPE<VGA_LOCAL_PU>::settled(*pu);
    }
    vga_update_local_pu_viewer(pu);
}

NB_VOID status_follows(VGA_DOWN_PU *pu) {
    vga_update_ls_viewer(pu->ls_entry);
}

NB_VOID status_follows(VGA_LU03 *lu) {
    vga_pool_follows(lu);
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

/* Failures. */

/* Names of records are padded or end with NUL. */
NB_VOID tell_failed(const VGA_NODE &node, const NB_UCHAR *name, NB_USHORT message, NB_ULONG sense) {
    NB_CHAR text[200];
    vga_print_msg(text, sizeof(text), message, "ca lx", NTL_NAME_WIDTH, name, sense);
    vga_tell_outcome(vga_node_name(&node), text, 1);
}

template <class Record> NB_VOID tell_failure(Record &, const NB_UCHAR *) {}

NB_VOID tell_failure(VGA_PORT &port, const NB_UCHAR *status) {
    NAP_PORT_DET before;
    memcpy(&before, status, sizeof(before));
    const NAP_PORT_DET &now = port.vcb->det_data;
    if (now.failures > before.failures && now.failed_at != 0) {
        tell_failed(*port.node, port.name,
                    before.port_state == NAP_ACTIVE ? VGA_MSG_PORT_FAILED
                                                    : VGA_MSG_PORT_NOT_STARTED,
                    now.last_sense);
    }
}

/* What the node tries again and again by itself has been told once. */
NB_VOID tell_failure(VGA_LS &ls, const NB_UCHAR *status) {
    NAP_LS_DET before;
    memcpy(&before, status, sizeof(before));
    const NAP_LS_DET &now = ls.vcb->det_data;
    const bool goes_up = before.ls_state == NAP_NOT_ACTIVE && now.ls_state == NAP_PENDING_ACTIVE;
    if (now.retries != before.retries) {
        ls.retrying = 1;
    } else if (goes_up || now.ls_state == NAP_ACTIVE) {
        ls.retrying = 0;
    }
    if (now.failures > before.failures && now.failed_at != 0 && ls.retrying == 0) {
        tell_failed(*ls.parent->node, ls.name,
                    before.ls_state == NAP_ACTIVE ? VGA_MSG_LINK_FAILED : VGA_MSG_LINK_NOT_STARTED,
                    now.last_sense);
    }
}

/* The row's functions, from those above. */

template <class Record, NB_USHORT Offset, NB_USHORT Width>
NB_VOID change(NB_VOID *item, const NB_UCHAR *status, NB_USHORT length) {
    auto *record = static_cast<Record *>(item);
    auto *held = reinterpret_cast<NB_UCHAR *>(record->vcb) + Offset;
    if (memcmp(held, status, length) == 0) {
        return;
    }
    NB_UCHAR before[Width];
    memcpy(before, held, Width);
    memcpy(held, status, length);
    tell_failure(*record, before);
    status_follows(record);
    vga_update_line(record);
    vga_record_changed(record, VGA_RECORD_CHANGED);
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
constexpr UNKNOWN report_lu03 = {.name_offset = NTL_NAME_WIDTH};
constexpr UNKNOWN report_and_read = {.reaction = VGA_UNKNOWN_REPORT | VGA_UNKNOWN_READ};
constexpr UNKNOWN read_it = {.reaction = VGA_UNKNOWN_READ};
constexpr UNKNOWN read_ls = {.reaction = VGA_UNKNOWN_READ, .kept_by_merge = 1};

/* `List` is the place of the class's list in the schema. */
template <class Record, const records::Schema &Of, size_t List = 0>
constexpr VGA_STATUS_CLASS make_row(VGA_STATUS_ID id, NB_USHORT chain, const UNKNOWN &unknown) {
    static_assert(Of.det.end() <= sizeof(std::remove_pointer_t<decltype(Record::vcb)>));
    return {.id = id,
            .query = Of.lists[List].list,
            .indication = Of.lists[List].indication,
            .chain = chain,
            .schema = &Of,
            .unknown = unknown.reaction,
            .detail = unknown.detail,
            .name_offset = unknown.name_offset,
            .name_width = NTL_NAME_WIDTH,
            .kept_by_merge = unknown.kept_by_merge,
            .change = change<Record, Of.det.offset, Of.det.width>};
}

} // namespace

constexpr VGA_STATUS_CLASS gvga_status_classes[VGA_STATUS_CLASSES] = {
    make_row<VGA_DLC, records::dlc>(VGA_STATUS_DLC, VGA_DLC_LIST, report),
    make_row<VGA_PORT, records::port>(VGA_STATUS_PORT, VGA_PORT_LIST, report_port),
    make_row<VGA_LS, records::ls>(VGA_STATUS_LS, VGA_LS_LIST, read_ls),
    make_row<VGA_LOCAL_PU, records::pu>(VGA_STATUS_PU, VGA_PU_LIST, report),
    make_row<VGA_LOCAL_PU, records::pu, 1>(VGA_STATUS_DLUR_PU, VGA_DLUR_PU_LIST, report),
    make_row<VGA_DOWN_PU, records::down_pu>(VGA_STATUS_DOWN_PU, VGA_DOWN_PU_LIST, report_and_read),
    make_row<VGA_DOWN_LU, records::down_lu>(VGA_STATUS_DOWN_LU, VGA_DOWN_LU_LIST, read_it),
    make_row<VGA_LU62, records::local_lu>(VGA_STATUS_LU62, VGA_LU62_LIST, report),
    make_row<VGA_LU03, records::lu03>(VGA_STATUS_LU03, VGA_LU03_LIST, report_lu03),
    make_row<VGA_MODE, records::mode>(VGA_STATUS_MODE, VGA_MODE_LIST, read_it),
    make_row<VGA_PLU, records::plu>(VGA_STATUS_PLU, VGA_PLU_LIST, read_it),
    make_row<VGA_DIR, records::directory>(VGA_STATUS_DIR, VGA_DIR_LIST, read_it),
    make_row<VGA_TAMRIX_APPCIP_SESS, records::tamrix_session>(VGA_STATUS_TAMRIX_SESS,
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
