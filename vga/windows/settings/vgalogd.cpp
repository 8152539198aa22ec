/* The dialog of logging: three settings of the domain. */
#include "forms.h"
#include "globals.h"
#include "schemas.h"

std::vector<VGA_CHOICE> vga_logd_nodes(const VGA_FORM *) {
    VGA_CHOICES choices;
    choices.add(gvga_system->nodes, &VGA_NODE::links, records::field(records::domain_node, "name"),
                records::field(records::domain_node, "description"));
    return choices.take();
}
