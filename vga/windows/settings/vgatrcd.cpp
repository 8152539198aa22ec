/* The dialog of tracing: six settings of a node with the same block. */
#include "forms.h"
#include "messages.h"
#include "schemas.h"
#include <cstring>

/* A file lies in the folder that the node keeps: its name leads nowhere else, and is not hidden. */
VGA_FAULT vga_trcd_check(const VGA_FORM *form, NB_VOID *wanted) {
    for (NB_SHORT number = 0; number < static_cast<NB_SHORT>(form->plan->fields.size()); number++) {
        const auto field = static_cast<NB_USHORT>(number);
        const std::string name = vga_form_text_of(form, field, wanted);
        const bool is_file = strcmp(form->plan->fields[field].row->name, "trace_file") == 0;
        if (is_file && (name[0] == '.' || name.find('/') != std::string::npos)) {
            return {.message = VGA_MSG_TRCD_BAD_FILE, .field = number};
        }
    }
    return {};
}

/* What carries links. */
std::vector<VGA_CHOICE> vga_trcd_traced(const VGA_FORM *form) {
    VGA_CHOICES choices;
    if (const auto *node = static_cast<const VGA_NODE *>(vga_form_record(form))) {
        choices.add(node->dlcs, &VGA_DLC::links, records::field(records::dlc, "name"),
                    records::field(records::dlc, "description"));
        choices.add(node->ports, &VGA_PORT::node_links, records::field(records::port, "name"),
                    records::field(records::port, "description"));
        choices.add(node->link_stations, &VGA_LS::node_links, records::field(records::ls, "name"),
                    records::field(records::ls, "description"));
    }
    return choices.take();
}
