#include "vgalines.h"
#include "linelayout.h"
#include "nbbase.h"
#include "vgadsutl.h"
#include "vgamodel.h"
#include "vgamsgs.h"
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <span>

namespace {

constexpr NB_USHORT buffer_size = VGA_VIEWER_TEXT_BUFFER;

/* A value of a record and what stands for it. */
struct WORD {
    NB_USHORT value;
    NB_USHORT meaning; /* a message or an icon */
};

NB_USHORT look_up(std::span<const WORD> words, NB_USHORT value, NB_USHORT otherwise) {
    auto word = std::find_if(words.begin(), words.end(),
                             [value](const WORD &row) { return row.value == value; });
    return word != words.end() ? word->meaning : otherwise;
}

constexpr WORD status_words[] = {
    {NAP_NOT_ACTIVE, VGA_MSG_INACTIVE}, {NAP_PENDING_ACTIVE, VGA_MSG_STARTING},
    {NAP_ACTIVE, VGA_MSG_ACTIVE},       {NAP_PENDING_INACTIVE, VGA_MSG_STOPPING},
    {NAP_RESETTING, VGA_MSG_RESETTING}, {NAP_SSCP_ACTIVE, VGA_MSG_SSCP},
    {NAP_IN_SESSION, VGA_MSG_IN_USE},
};

const NB_CHAR *status_word(NB_ULONG state) {
    return vga_message(
        look_up(status_words, static_cast<NB_USHORT>(state), VGA_MSG_UNKNOWN_STATUS));
}

struct LINK_TYPE {
    NB_UCHAR dlc_type;
    NB_USHORT word;
    NB_USHORT icon;
};

constexpr NB_USHORT plain_port_icon = 2;
constexpr NB_USHORT dlur_port_icon = 40;
constexpr NB_USHORT sdlc_port_icon = 3;
constexpr NB_USHORT escon_icon = 64;
constexpr NB_USHORT block_mux_icon = 65;
constexpr NB_UCHAR first_block_mux_card = 128;

constexpr LINK_TYPE link_types[] = {
    {NAP_DLC_SDLC, 1271, sdlc_port_icon},
    {NAP_DLC_QLLC, 1272, 5},
    {NAP_DLC_TOKEN_RING, 1273, 4},
    {NAP_DLC_FDDI, 1274, 21},
    {NAP_DLC_ETHERNET, 1275, 20},
    {NAP_DLC_FRAME_RELAY, 1276, 63},
    {NAP_DLC_CHANNEL, 1277, escon_icon},
    {NAP_DLC_IP, 1278, 82},
    {NAP_DLC_MPC, 1279, 80},
    {NAP_DLC_MPC_PLUS, 1280, 83},
};

const LINK_TYPE *link_type(NB_UCHAR dlc_type) {
    auto row =
        std::find_if(std::begin(link_types), std::end(link_types),
                     [dlc_type](const LINK_TYPE &type) { return type.dlc_type == dlc_type; });
    return row != std::end(link_types) ? row : nullptr;
}

/* Texts of a record are anybody's: what looks like a column stop is taken apart, and what is no
 * character becomes a blank.  A text that does not fit any more loses its end. */
NB_VOID make_plain(NB_CHAR *text, size_t size) {
    for (NB_CHAR *place = text; *place != '\0'; ++place) {
        if (iscntrl(static_cast<unsigned char>(*place))) {
            *place = ' ';
        }
        if (place[0] == '%' && place[1] == 't' && isdigit(static_cast<unsigned char>(place[2]))) {
            const size_t rest = size - static_cast<size_t>(place + 2 - text);
            memmove(place + 2, place + 1, rest);
            place[1] = ' ';
            text[size - 1] = '\0';
        }
    }
}

/* A name in the local code page, without its padding. */
class NAME {
public:
    static NAME local(const NB_VOID *field, NB_USHORT width) { return NAME(field, width, 0); }
    static NAME ebcdic(const NB_VOID *field, NB_USHORT width) { return NAME(field, width, 1); }
    const NB_CHAR *text() const { return buffer; }

private:
    NAME(const NB_VOID *field, NB_USHORT width, NB_USHORT is_ebcdic) {
        NB_USHORT length = std::min<NB_USHORT>(width, sizeof(buffer) - 1);
        memcpy(buffer, field, length);
        if (is_ebcdic) {
            nba_ebcdic_to_local(reinterpret_cast<NB_UCHAR *>(buffer), length);
        }
        buffer[length] = '\0';
        for (size_t end = strlen(buffer); end > 0 && buffer[end - 1] == ' '; end--) {
            buffer[end - 1] = '\0';
        }
        make_plain(buffer, sizeof(buffer));
    }

    NB_CHAR buffer[65] = {};
};

/* A text field of a record, terminated whatever the node sent. */
template <size_t Width> class TEXT {
public:
    explicit TEXT(const NB_UCHAR (&field)[Width]) {
        memcpy(buffer, field, Width);
        make_plain(buffer, sizeof(buffer));
    }
    const NB_CHAR *text() const { return buffer; }

private:
    NB_CHAR buffer[Width + 1] = {};
};

NB_USHORT copy_message(NB_CHAR *buffer, NB_USHORT message) {
    return vga_print_msg(buffer, buffer_size, message, "");
}

constexpr WORD partner_words[] = {
    {NAP_ADJ_LEN_NODE, VGA_MSG_PEER_LEN},     {NAP_ADJ_NETWORK_NODE, VGA_MSG_PEER_NN},
    {NAP_ADJ_END_NODE, VGA_MSG_PEER_EN},      {NAP_ADJ_HOST, VGA_MSG_HOST},
    {NAP_ADJ_DOWNSTREAM, VGA_MSG_DOWNSTREAM},
};

constexpr WORD lu_words[] = {
    {NAP_LU_3270_DISPLAY_MODEL_2, 1286},
    {NAP_LU_3270_DISPLAY_MODEL_3, 1287},
    {NAP_LU_3270_DISPLAY_MODEL_4, 1288},
    {NAP_LU_3270_DISPLAY_MODEL_5, 1289},
    {NAP_LU_PRINTER, 1290},
    {NAP_LU_SCS_PRINTER, 1291},
};
constexpr NB_USHORT unrestricted_lu_word = 1292;

constexpr NB_USHORT display_icon = 23;
constexpr NB_USHORT rje_icon = 24;
constexpr NB_USHORT printer_icon = 25;
constexpr NB_USHORT lu03_icon = 11;

constexpr WORD lu_icons[] = {
    {NAP_LU_3270_DISPLAY_MODEL_2, display_icon},
    {NAP_LU_3270_DISPLAY_MODEL_3, display_icon},
    {NAP_LU_3270_DISPLAY_MODEL_4, display_icon},
    {NAP_LU_3270_DISPLAY_MODEL_5, display_icon},
    {NAP_LU_PRINTER, printer_icon},
    {NAP_LU_SCS_PRINTER, printer_icon},
    {NAP_LU_RJE, rje_icon},
};

constexpr WORD node_type_words[] = {
    {NAP_DIR_NETWORK_NODE, 1293},
    {NAP_DIR_END_NODE, 1294},
};

constexpr WORD node_lines[] = {
    {NAP_NODE_STOPPED, VGA_MSG_NODE_STOPPED},
    {NAP_NODE_STARTING, VGA_MSG_NODE_STARTING},
    {NAP_NODE_STOPPING, VGA_MSG_NODE_STOPPING},
    {NAP_NODE_ACTIVE, VGA_MSG_NODE_ACTIVE},
    {NAP_NODE_UNCONFIGURED, VGA_MSG_NODE_UNCONFIGURED},
    {NAP_NODE_BACK_LEVEL, VGA_MSG_NODE_BACK_LEVEL},
};

constexpr WORD role_words[] = {
    {VGA_ROLE_MASTER, VGA_MSG_MASTER_ROLE},
    {VGA_ROLE_BACKUP, VGA_MSG_BACKUP_ROLE},
};

NB_UCHAR lu_status(const NAP_LU03_DET &det) {
    if (det.plu_sess_active || det.appl_conn_active) {
        return NAP_IN_SESSION;
    }
    return det.lu_sscp_sess_active ? NAP_SSCP_ACTIVE : NAP_NOT_ACTIVE;
}

} // namespace

NB_USHORT vga_create_node_viewer_text(NB_VOID *data, NB_CHAR *buffer) {
    auto *node = static_cast<VGA_NODE *>(data);
    NB_USHORT message = look_up(node_lines, static_cast<NB_USHORT>(node->node_state), 0);
    NB_ASSERT(message != 0);
    NB_USHORT role = look_up(role_words, node->role, VGA_MSG_NO_ROLE);
    NAP_NODE_INFO info = node->vcb->info;
    TEXT<sizeof(info.description)> description(info.description);
    const NB_CHAR *third = node->node_state == NAP_NODE_UNCONFIGURED
                               ? vga_message(VGA_MSG_DEFINE_NODE_FIRST)
                               : description.text();
    return vga_print_msg(buffer, buffer_size, message, "s ca s", NAME::local(node->name, 64).text(),
                         15, vga_message(role), third);
}

NB_USHORT vga_choose_node_viewer_icon(NB_VOID *data) {
    constexpr NB_USHORT node_icon = 19;
    constexpr NB_USHORT back_level_icon = 62;
    auto *node = static_cast<VGA_NODE *>(data);
    return node->node_state == NAP_NODE_BACK_LEVEL ? back_level_icon : node_icon;
}

NB_USHORT vga_create_port_viewer_text(NB_VOID *data, NB_CHAR *buffer) {
    auto *port = static_cast<VGA_PORT *>(data);
    if (port->vcb == nullptr) {
        return copy_message(buffer, port == port->node->dlur_fake_port
                                        ? VGA_MSG_DLUR_TITLE
                                        : VGA_MSG_PRIMARY_LINES_TITLE);
    }
    NAP_PORT_DATA entry = *port->vcb;
    const LINK_TYPE *type = link_type(entry.def_data.dlc_type);
    return vga_print_msg(
        buffer, buffer_size, VGA_MSG_PORT_LINE, "s s s s s",
        NAME::local(port->name, sizeof(port->name)).text(), status_word(entry.det_data.port_state),
        type != nullptr ? vga_message(type->word) : "", TEXT(entry.def_data.local_address).text(),
        TEXT(entry.def_data.description).text());
}

NB_USHORT vga_choose_port_viewer_icon(NB_VOID *data) {
    auto *port = static_cast<VGA_PORT *>(data);
    if (port->vcb == nullptr) {
        return port == port->node->dlur_fake_port ? dlur_port_icon : sdlc_port_icon;
    }
    NAP_PORT_DEF def = port->vcb->def_data;
    const LINK_TYPE *type = link_type(def.dlc_type);
    if (def.dlc_type == NAP_DLC_CHANNEL &&
        port->parent->vcb->def_data.card_number >= first_block_mux_card) {
        return block_mux_icon;
    }
    return type != nullptr ? type->icon : plain_port_icon;
}

NB_USHORT vga_create_ls_viewer_text(NB_VOID *data, NB_CHAR *buffer) {
    auto *ls = static_cast<VGA_LS *>(data);
    NAP_LS_DATA entry = *ls->vcb;
    NB_USHORT role = look_up(partner_words, entry.def_data.adj_cp_type, VGA_MSG_ANY_PEER);
    NB_USHORT learned = !vga_blank_name(entry.det_data.adj_cp_name, 17);
    NAME partner =
        entry.def_data.adj_cp_type == NAP_ADJ_HOST && !vga_blank_name(entry.def_data.pu_name, 8)
            ? NAME::ebcdic(entry.def_data.pu_name, 8)
            : NAME::ebcdic(learned ? entry.det_data.adj_cp_name : entry.def_data.adj_cp_name, 17);
    return vga_print_msg(buffer, buffer_size, VGA_MSG_LS_LINE, "s s s s s",
                         NAME::local(ls->name, sizeof(ls->name)).text(), status_word(ls->state),
                         vga_message(role), partner.text(),
                         TEXT(entry.def_data.description).text());
}

NB_USHORT vga_choose_ls_viewer_icon(NB_VOID *data) {
    constexpr NB_USHORT plain = 6, host = 7, downstream = 8, peer = 9, implicit = 26;
    constexpr WORD icons[] = {
        {NAP_ADJ_LEN_NODE, peer}, {NAP_ADJ_NETWORK_NODE, peer},     {NAP_ADJ_END_NODE, peer},
        {NAP_ADJ_HOST, host},     {NAP_ADJ_DOWNSTREAM, downstream},
    };
    auto *ls = static_cast<VGA_LS *>(data);
    if (ls->vcb->det_data.dynamic) {
        return implicit;
    }
    return look_up(icons, ls->vcb->def_data.adj_cp_type, plain);
}

NB_USHORT vga_create_local_pu_viewer_text(NB_VOID *data, NB_CHAR *buffer) {
    auto *pu = static_cast<VGA_LOCAL_PU *>(data);
    NAP_PU_DATA entry = *pu->vcb;
    return vga_print_msg(buffer, buffer_size, VGA_MSG_LOCAL_PU_LINE, "s s s s",
                         NAME::ebcdic(pu->name, 8).text(), status_word(entry.pu_sscp_sess_active),
                         NAME::ebcdic(entry.def_data.dlus_name, 17).text(),
                         TEXT(entry.def_data.description).text());
}

NB_USHORT vga_choose_local_pu_viewer_icon(NB_VOID *) {
    constexpr NB_USHORT pu_icon = 10;
    return pu_icon;
}

NB_USHORT vga_create_deplu_viewer_text(NB_VOID *data, NB_CHAR *buffer) {
    auto *lu = static_cast<VGA_LU03 *>(data);
    NAP_LU03_DATA entry = *lu->vcb;
    NB_CHAR address[8];
    snprintf(address, sizeof(address), "%u", entry.def_data.nau_address);
    NAME pool = NAME::ebcdic(entry.def_data.pool_name, 8);
    TEXT description(entry.def_data.description);
    return vga_print_msg(
        buffer, buffer_size, VGA_MSG_DEPLU_LINE, "s s s s s", NAME::ebcdic(lu->name, 8).text(),
        status_word(lu_status(entry.det_data)),
        vga_message(look_up(lu_words, entry.def_data.lu_model, unrestricted_lu_word)), address,
        *pool.text() != '\0' ? pool.text() : description.text());
}

NB_USHORT vga_choose_deplu_viewer_icon(NB_VOID *data) {
    auto *lu = static_cast<VGA_LU03 *>(data);
    return look_up(lu_icons, lu->vcb->def_data.lu_model, lu03_icon);
}

NB_USHORT vga_create_lu62_viewer_text(NB_VOID *data, NB_CHAR *buffer) {
    auto *lu = static_cast<VGA_LU62 *>(data);
    NAP_LOCAL_LU_DATA entry = *lu->vcb;
    NAP_NODE_INFO node = lu->parent->node_data.info;
    NAME cp = NAME::ebcdic(node.fq_cp_name, sizeof(node.fq_cp_name));
    const NB_CHAR *period = strchr(cp.text(), '.');
    NB_INT network = period != nullptr ? static_cast<NB_INT>(period - cp.text()) + 1 : 0;
    NB_CHAR full_name[32];
    snprintf(full_name, sizeof(full_name), "%.*s%s", network, cp.text(),
             NAME::ebcdic(lu->name, 8).text());
    NB_USHORT status = entry.active_sessions != 0 ? VGA_MSG_IN_USE : VGA_MSG_DEFINED;
    return vga_print_msg(buffer, buffer_size, VGA_MSG_LU62_LINE, "s s s s",
                         NAME::local(lu->alias, 8).text(), full_name, vga_message(status),
                         TEXT(entry.def_data.description).text());
}

NB_USHORT vga_choose_lu62_viewer_icon(NB_VOID *data) {
    constexpr NB_USHORT dependent_icon = 12, lu62_icon = 13;
    auto *lu = static_cast<VGA_LU62 *>(data);
    return lu->vcb->def_data.nau_address != 0 ? dependent_icon : lu62_icon;
}

NB_USHORT vga_create_mode_viewer_text(NB_VOID *data, NB_CHAR *buffer) {
    auto *mode = static_cast<VGA_MODE *>(data);
    NAP_MODE_DATA entry = *mode->vcb;
    return vga_print_msg(
        buffer, buffer_size, VGA_MSG_MODE_LINE, "s s i i", NAME::ebcdic(entry.mode_name, 8).text(),
        NAME::ebcdic(entry.fqplu_name, 17).text(), entry.act_sess_count, entry.sess_limit);
}

NB_USHORT vga_choose_mode_viewer_icon(NB_VOID *) {
    constexpr NB_USHORT mode_icon = 18;
    return mode_icon;
}

NB_USHORT vga_create_rem_sys_viewer_text(NB_VOID *data, NB_CHAR *buffer) {
    auto *system = static_cast<VGA_REM_SYS *>(data);
    if (system == system->parent->network_fake_rem_sys) {
        return copy_message(buffer, VGA_MSG_NETWORK_TITLE);
    }
    NAP_DIR_DATA entry = *system->vcb;
    return vga_print_msg(
        buffer, buffer_size, VGA_MSG_REM_SYS_LINE, "s s s", NAME::ebcdic(system->name, 17).text(),
        vga_message(look_up(node_type_words, entry.resource_type, VGA_MSG_UNKNOWN_NODE_TYPE)),
        TEXT(entry.def_data.description).text());
}

NB_USHORT vga_choose_rem_sys_viewer_icon(NB_VOID *data) {
    constexpr NB_USHORT defined_icon = 27, learned_icon = 28, network_icon = 31;
    auto *system = static_cast<VGA_REM_SYS *>(data);
    if (system == system->parent->network_fake_rem_sys) {
        return network_icon;
    }
    return system->defined ? defined_icon : learned_icon;
}

NB_USHORT vga_create_rem_plu_viewer_text(NB_VOID *data, NB_CHAR *buffer) {
    auto *plu = static_cast<VGA_REM_PLU *>(data);
    NAP_PLU_DEF_DATA entry = *plu->vcb;
    NAME name = NAME::ebcdic(plu->key.fqplu_name, 17);
    NB_USHORT any = plu->key.type == NAP_DIR_WILDCARD_LU && *name.text() == '\0';
    return vga_print_msg(buffer, buffer_size, VGA_MSG_REM_PLU_LINE, "s s s",
                         any ? vga_message(VGA_MSG_ANY_PARTNER) : name.text(),
                         NAME::local(entry.def_data.plu_alias, 8).text(),
                         TEXT(entry.def_data.description).text());
}

NB_USHORT vga_choose_rem_plu_viewer_icon(NB_VOID *data) {
    constexpr NB_USHORT defined_icon = 29, learned_icon = 30, alias_icon = 41;
    auto *plu = static_cast<VGA_REM_PLU *>(data);
    if (!plu->defined) {
        return learned_icon;
    }
    return plu->in_directory ? defined_icon : alias_icon;
}

NB_USHORT vga_create_rem_sess_viewer_text(NB_VOID *data, NB_CHAR *buffer) {
    auto *session = static_cast<VGA_REM_SESS *>(data);
    NAP_MODE_DATA entry = *session->vcb;
    return vga_print_msg(buffer, buffer_size, VGA_MSG_REM_SESS_LINE, "s s i i",
                         NAME::local(entry.lu_alias, 8).text(),
                         NAME::ebcdic(entry.mode_name, 8).text(), entry.act_sess_count,
                         entry.sess_limit);
}

NB_USHORT vga_choose_rem_sess_viewer_icon(NB_VOID *data) {
    return vga_choose_mode_viewer_icon(data);
}
