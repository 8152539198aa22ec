/* What the forms of listed records have in code: what a new one belongs to, what can be chosen, and
 * checks across fields. */
#include "forms.h"
#include "messages.h"
#include "schemas.h"
#include <cstring>

namespace {

using records::field;

const VGA_NODE &node_of(const VGA_FORM *form) {
    return *static_cast<const VGA_NODE *>(vga_form_owner(form));
}

/* A new row gets the name of the class that it is added to. */
template <class Row> NB_VOID take_class(const VGA_FORM *form, Row *row) {
    const auto *cos = static_cast<const VGA_COS *>(vga_form_owner(form));
    if (form->adding != 0 && cos != nullptr) {
        memcpy(row->cos_name, cos->name, sizeof(row->cos_name));
    }
}

VGA_FAULT crossed(const VGA_FORM *form, NB_SHORT low, NB_SHORT high) {
    return {.message = VGA_MSG_BOUNDS_CROSS,
            .field = high,
            .arguments = {vga_form_label(form, static_cast<NB_USHORT>(low)),
                          vga_form_label(form, static_cast<NB_USHORT>(high))}};
}

} // namespace

/* Directory entries. */

NB_USHORT vga_dird_is_lu(const VGA_FORM *, const NB_VOID *data) {
    return vga_dird_data(data).directory.resource_type == NAP_DIR_LU;
}

std::vector<VGA_CHOICE> vga_dird_systems(const VGA_FORM *form) {
    VGA_CHOICES choices;
    if (vga_form_owner(form) != nullptr) {
        choices.add(node_of(form).directory, &VGA_DIR::links,
                    field(records::directory, "fqcp_name"),
                    field(records::directory, "resource_type"));
    }
    return choices.take();
}

NB_USHORT vga_dird_may_edit(const VGA_FORM *form) {
    const auto *entry = static_cast<const VGA_DIR *>(vga_form_record(form));
    return entry == nullptr || entry->vcb->entry_type == NAP_DIR_HOME;
}

/* A node's own entry has its name twice; how much of a name counts follows from the other fields.
 */
VGA_FAULT vga_dird_check(const VGA_FORM *, NB_VOID *wanted) {
    NAP_DIR_DATA &entry = static_cast<VGA_DIRD_DATA *>(wanted)->directory;
    const bool of_lus =
        entry.resource_type == NAP_DIR_LU || entry.resource_type == NAP_DIR_WILDCARD_LU;
    if (!of_lus) {
        memcpy(entry.resource_name, entry.fqcp_name, sizeof(entry.resource_name));
    }
    const bool named = !records::is_empty_field(field(records::directory, "name"),
                                                reinterpret_cast<const NB_UCHAR *>(&entry));
    entry.def_data.wildcard = entry.resource_type != NAP_DIR_WILDCARD_LU ? NAP_DIR_WILDCARD_NONE
                              : named                                    ? NAP_DIR_WILDCARD_PARTIAL
                                                                         : NAP_DIR_WILDCARD_FULL;
    return {};
}

/* Ports of connection networks. */

NB_VOID vga_cnpd_load(const VGA_FORM *form, NB_VOID *data) {
    const auto *network = static_cast<const VGA_CN *>(vga_form_owner(form));
    if (form->adding != 0 && network != nullptr) {
        memcpy(static_cast<VGA_CNPD_DATA *>(data)->cn_port.fqcn_name, network->name,
               sizeof(network->name));
    }
}

/* Those of its medium. */
std::vector<VGA_CHOICE> vga_cnpd_ports(const VGA_FORM *form) {
    VGA_CHOICES choices;
    const auto *network = static_cast<const VGA_CN *>(vga_form_owner(form));
    if (network != nullptr) {
        vga_for_each(network->parent->ports, &VGA_PORT::node_links, [&](const VGA_PORT &port) {
            if (port.vcb->def_data.dlc_type == network->vcb->def_data.dlc_type) {
                choices.add(port, field(records::port, "name"),
                            field(records::port, "description"));
            }
        });
    }
    return choices.take();
}

/* Rows of classes of service. */

NB_VOID vga_cosnd_load(const VGA_FORM *form, NB_VOID *data) {
    take_class(form, &static_cast<VGA_COSND_DATA *>(data)->cos_node_row);
}

VGA_FAULT vga_cosnd_check(const VGA_FORM *form, NB_VOID *wanted) {
    const auto &row = static_cast<VGA_COSND_DATA *>(wanted)->cos_node_row.def_data;
    if (row.min_congestion > row.max_congestion) {
        return crossed(form, VGA_COSND_MIN_CONGESTION, VGA_COSND_MAX_CONGESTION);
    }
    return row.min_resistance > row.max_resistance
               ? crossed(form, VGA_COSND_MIN_RESISTANCE, VGA_COSND_MAX_RESISTANCE)
               : VGA_FAULT{};
}

NB_VOID vga_costd_load(const VGA_FORM *form, NB_VOID *data) {
    take_class(form, &static_cast<VGA_COSTD_DATA *>(data)->cos_tg_row);
}

VGA_FAULT vga_costd_check(const VGA_FORM *form, NB_VOID *wanted) {
    const auto &limits = static_cast<VGA_COSTD_DATA *>(wanted)->cos_tg_row.def_data;
    const auto &low = limits.min, &high = limits.max;
    const struct {
        NB_UCHAR low, high;
        NB_SHORT low_field, high_field;
    } ranges[] = {
        {low.capacity, high.capacity, VGA_COSTD_MIN_CAPACITY, VGA_COSTD_MAX_CAPACITY},
        {low.connect_cost, high.connect_cost, VGA_COSTD_MIN_CONNECT_COST,
         VGA_COSTD_MAX_CONNECT_COST},
        {low.byte_cost, high.byte_cost, VGA_COSTD_MIN_BYTE_COST, VGA_COSTD_MAX_BYTE_COST},
        {low.security, high.security, VGA_COSTD_MIN_SECURITY, VGA_COSTD_MAX_SECURITY},
        {low.propagation_delay, high.propagation_delay, VGA_COSTD_MIN_PROPAGATION_DELAY,
         VGA_COSTD_MAX_PROPAGATION_DELAY},
        {low.user_defined[0], high.user_defined[0], VGA_COSTD_MIN_USER_1, VGA_COSTD_MAX_USER_1},
        {low.user_defined[1], high.user_defined[1], VGA_COSTD_MIN_USER_2, VGA_COSTD_MAX_USER_2},
        {low.user_defined[2], high.user_defined[2], VGA_COSTD_MIN_USER_3, VGA_COSTD_MAX_USER_3},
    };
    for (const auto &range : ranges) {
        if (range.low > range.high) {
            return crossed(form, range.low_field, range.high_field);
        }
    }
    return {};
}
