#include "listwindow.h"
#include "messages.h"
#include "recordwindow.h"
#include "schemas.h"

namespace {

using records::field;

/* What the network made known, or every node has, cannot be deleted. */
NB_USHORT found_entry_stays(const NB_VOID *record) {
    return static_cast<const VGA_DIR *>(record)->vcb->entry_type != NAP_DIR_HOME
               ? NB_USHORT{VGA_MSG_NODEW_NOT_DEFINED}
               : NB_USHORT{0};
}

NB_USHORT stays_in(const VGA_COS &cos) {
    return cos.vcb->def_data.sna_defined != 0 ? NB_USHORT{VGA_MSG_NODEW_NOT_DEFINED} : NB_USHORT{0};
}

NB_USHORT sna_class_stays(const NB_VOID *record) {
    return stays_in(*static_cast<const VGA_COS *>(record));
}

template <class Row> NB_USHORT sna_row_stays(const NB_VOID *record) {
    return stays_in(*static_cast<const Row *>(record)->parent);
}

constexpr VGA_RECORD_COLUMN entry_columns[] = {
    {&field(records::directory, "name"), 17},
    {&field(records::directory, "resource_type"), 12},
    {&field(records::directory, "fqcp_name"), 17},
    {&field(records::directory, "entry_type"), 10},
    {&field(records::directory, "description"), 16},
};

constexpr VGA_RECORD_COLUMN network_columns[] = {
    {&field(records::cn, "name"), 17},        {&field(records::cn, "dlc_type"), 11},
    {&field(records::cn, "num_ports"), 5},    {&field(records::cn, "num_act_ports"), 5},
    {&field(records::cn, "description"), 24},
};

constexpr VGA_RECORD_COLUMN network_port_columns[] = {
    {&field(records::cn_port, "name"), 17},
    {&field(records::cn_port, "tg_num"), 11},
};

constexpr VGA_RECORD_COLUMN partner_columns[] = {
    {&field(records::plu_def, "plu_alias"), 9},
    {&field(records::plu_def, "name"), 17},
    {&field(records::plu_def, "parallel_sess_supp"), 9},
    {&field(records::plu_def, "description"), 24},
};

constexpr VGA_RECORD_COLUMN class_columns[] = {
    {&field(records::cos, "name"), 9},
    {&field(records::cos, "transmission_priority"), 9},
    {&field(records::cos, "num_of_node_rows"), 5},
    {&field(records::cos, "num_of_tg_rows"), 5},
    {&field(records::cos, "description"), 24},
};

constexpr VGA_RECORD_COLUMN node_row_columns[] = {
    {&field(records::cos_node_row, "name"), 3},
    {&field(records::cos_node_row, "weight"), 6},
    {&field(records::cos_node_row, "min_congestion"), 4},
    {&field(records::cos_node_row, "max_congestion"), 4},
    {&field(records::cos_node_row, "min_resistance"), 4},
    {&field(records::cos_node_row, "max_resistance"), 4},
};

constexpr VGA_RECORD_COLUMN tg_row_columns[] = {
    {&field(records::cos_tg_row, "name"), 3},
    {&field(records::cos_tg_row, "weight"), 6},
    {&field(records::cos_tg_row, "min_capacity"), 4},
    {&field(records::cos_tg_row, "max_capacity"), 4},
    {&field(records::cos_tg_row, "min_security"), 4},
    {&field(records::cos_tg_row, "max_security"), 4},
    {&field(records::cos_tg_row, "max_propagation_delay"), 4},
};

/* Partner LUs stand in the model with what is known of them besides; the defined ones are listed.
 */
std::vector<NB_ULONG> defined_partners(const NB_VOID *owner) {
    std::vector<NB_ULONG> found;
    vga_for_each(static_cast<const VGA_NODE *>(owner)->remote_systems, &VGA_REM_SYS::links,
                 [&found](const VGA_REM_SYS &system) {
                     vga_for_each(system.remote_plu_tree, &VGA_REM_PLU::links,
                                  [&found](const VGA_REM_PLU &plu) {
                                      if (plu.defined != 0) {
                                          found.push_back(plu.handle);
                                      }
                                  });
                 });
    return found;
}

constexpr VGA_RECORD_LIST directory_lists[] = {
    {.name = "directory",
     .schema = &records::directory,
     .type = &vga_form_type<VGA_DIR>,
     .handles = VGA_RECORDS_OF<&VGA_NODE::directory, &VGA_DIR::links>::handles,
     .columns = entry_columns,
     .form = "dird",
     .stays = found_entry_stays},
};

constexpr VGA_RECORD_LIST network_lists[] = {
    {.name = "cn",
     .schema = &records::cn,
     .type = &vga_form_type<VGA_CN>,
     .handles = VGA_RECORDS_OF<&VGA_NODE::connection_networks, &VGA_CN::links>::handles,
     .columns = network_columns,
     .form = "cnd"},
    {.name = "cnPort",
     .schema = &records::cn_port,
     .type = &vga_form_type<VGA_CN_PORT>,
     .handles = VGA_RECORDS_OF<&VGA_CN::ports, &VGA_CN_PORT::links>::handles,
     .columns = network_port_columns,
     .form = "cnpd"},
};

constexpr VGA_RECORD_LIST partner_lists[] = {
    {.name = "partner",
     .schema = &records::plu_def,
     .type = &vga_form_type<VGA_REM_PLU>,
     .handles = defined_partners,
     .columns = partner_columns},
};

constexpr VGA_RECORD_LIST class_lists[] = {
    {.name = "cos",
     .schema = &records::cos,
     .type = &vga_form_type<VGA_COS>,
     .handles = VGA_RECORDS_OF<&VGA_NODE::classes_of_service, &VGA_COS::links>::handles,
     .columns = class_columns,
     .form = "cosd",
     .stays = sna_class_stays},
    {.name = "nodeRow",
     .schema = &records::cos_node_row,
     .type = &vga_form_type<VGA_COS_NODE_ROW>,
     .handles = VGA_RECORDS_OF<&VGA_COS::node_rows, &VGA_COS_NODE_ROW::links>::handles,
     .columns = node_row_columns,
     .form = "cosnd",
     .stays = sna_row_stays<VGA_COS_NODE_ROW>},
    {.name = "tgRow",
     .schema = &records::cos_tg_row,
     .type = &vga_form_type<VGA_COS_TG_ROW>,
     .handles = VGA_RECORDS_OF<&VGA_COS::tg_rows, &VGA_COS_TG_ROW::links>::handles,
     .columns = tg_row_columns,
     .form = "costd",
     .stays = sna_row_stays<VGA_COS_TG_ROW>},
};

constexpr VGA_RECORD_WINDOW windows[] = {
    {.name = "dirw", .lists = directory_lists},
    {.name = "cnw", .lists = network_lists},
    {.name = "aliw", .lists = partner_lists},
    {.name = "cosw", .lists = class_lists},
};

} // namespace

constinit const std::span<const VGA_RECORD_WINDOW> gvga_record_windows = windows;

static NB_VOID show(const NB_CHAR *name, VGA_LIST_WINDOW *window) {
    if (VGA_NODE *node = vga_listw_node(window)) {
        vga_show_record_window(name, &window->common, node);
    }
}

NB_VOID vga_show_directory(VGA_LIST_WINDOW *window) {
    show("dirw", window);
}
NB_VOID vga_show_connection_networks(VGA_LIST_WINDOW *window) {
    show("cnw", window);
}
NB_VOID vga_show_partner_aliases(VGA_LIST_WINDOW *window) {
    show("aliw", window);
}
NB_VOID vga_show_classes_of_service(VGA_LIST_WINDOW *window) {
    show("cosw", window);
}
