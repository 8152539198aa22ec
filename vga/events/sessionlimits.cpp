#include "sessionlimits.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "recordtypes.h"
#include "vgadsadd.h"

namespace {

VGA_MODE *find_mode(VGA_NODE *node, const NAP_SESSION_LIMIT_VERB &verb) {
    VGA_LU62 *lu = vga_find_lu62_by_alias(node, verb.lu_alias);
    VGA_MODE_KEY key;
    memcpy(key.mode_name, verb.mode_name, sizeof(key.mode_name));
    memcpy(key.fqplu_name, verb.fqplu_name, sizeof(key.fqplu_name));
    return lu != nullptr ? static_cast<VGA_MODE *>(ntl_avl_find(&lu->modes, &key)) : nullptr;
}

} // namespace

NB_VOID vga_process_session_limit(const VGA_PROCESS_STATE *work) {
    VGA_NODE *node =
        vga_verb_succeeded(work->vcb) ? vga_find_node_of_target(work->target) : nullptr;
    if (node == nullptr) {
        return;
    }
    auto verb = nap_copy<NAP_SESSION_LIMIT_VERB>(work->vcb);
    VGA_MODE *mode = find_mode(node, verb);
    if (mode == nullptr) {
        return;
    }
    mode->vcb->sess_limit = verb.sess_limit;
    mode->vcb->min_conwinners = verb.min_conwinners;
    mode->vcb->min_conlosers = verb.min_conlosers;
    vga_update_line(mode);
    vga_record_changed(mode, VGA_RECORD_CHANGED);
}
