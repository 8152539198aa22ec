#include "vgaindct.h"
#include "completions.h"
#include "globals.h"
#include "model.h"
#include "nodestate.h"
#include "nofverbs.h"
#include "resourceindications.h"
#include "serverindications.h"

namespace {

/* Who takes the copy of a verb. */
VGA_PROCESSOR processor_of_copy(const NAP_VERB &verb) {
    if (verb.opcode == NAP_INIT_NODE || verb.opcode == NAP_STOP_NODE) {
        return vga_process_node_status_ind;
    }
    if (verb.kind == NAP_KIND_START || verb.kind == NAP_KIND_STOP) {
        return vga_process_node_manage_ind;
    }
    if (!NAP_KIND_COPIED(verb.kind)) {
        return nullptr;
    }
    return vga_is_verb_of_domain(verb.opcode) ? vga_process_system_config_ind
                                              : vga_process_node_config_ind;
}

} // namespace

VGA_PROCESSOR vga_find_processor(NB_USHORT opcode) {
    if (vga_is_resource_indication(opcode)) {
        return vga_indication_handler;
    }
    switch (opcode) {
    case NAP_NOF_STATUS_INDICATION:
        return vga_process_nof_status_ind;
    case NAP_SERVER_INDICATION:
        return vga_process_server_ind;
    case NAP_SNA_NET_INDICATION:
        return vga_process_sna_net_ind;
    default:
        const NAP_VERB *verb = nap_find_verb(opcode);
        return verb != nullptr ? processor_of_copy(*verb) : nullptr;
    }
}

NB_VOID vga_dispatch_indication(const VGA_PROCESS_STATE *work) {
    /* A program that closes wants to know only who is gone that it waits for. */
    if (gvga_closing && work->vcb->opcode != NAP_NOF_STATUS_INDICATION) {
        return;
    }
    VGA_PROCESSOR process =
        gvga_system != nullptr ? vga_find_processor(work->vcb->opcode) : nullptr;
    if (process != nullptr) {
        process(work);
    }
}
