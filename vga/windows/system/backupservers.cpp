#include "backupservers.h"
#include "completions.h"
#include "listwindow.h"
#include "messagebox.h"
#include "messages.h"
#include "nofverbs.h"
#include "outcomes.h"
#include "recordpattern.h"
#include "vgadsutl.h"
#include <cstring>

namespace {

NB_USHORT has_another_server(const VGA_NODE *than) {
    NB_USHORT found = 0;
    vga_for_each(gvga_system->nodes, &VGA_NODE::links, [&found, than](const VGA_NODE &node) {
        found |= &node != than && (node.role == VGA_ROLE_MASTER || node.role == VGA_ROLE_BACKUP);
    });
    return found;
}

NB_VOID issue(NB_USHORT opcode, const VGA_NODE *node, VGA_COMPLETION completion) {
    auto verb = vga_new_verb<NAP_NAME_VERB>(opcode);
    if (verb) {
        memcpy(verb->key, node->name, sizeof(node->name));
        vga_issue_verb(gvga_system->domain_target, std::move(verb), node->handle, completion);
    }
}

/* Meanwhile the node may have gone, or have no role any more. */
NB_VOID confirmed(VGA_DIALOG *, VGA_ANSWER answer, NB_ULONG handle) {
    const auto *node = static_cast<const VGA_NODE *>(nba_validate_handle(handle));
    if (answer == VGA_ANSWER_OK && node != nullptr && node->role != VGA_ROLE_NONE) {
        issue(NAP_DELETE_BACKUP, node, vga_sysw_del_backup_cb);
    }
}

NB_VOID show_outcome(const VGA_PROCESS_STATE *work, NB_USHORT done) {
    const auto *node = static_cast<const VGA_NODE *>(nba_validate_handle(work->user_data));
    if (work->vcb->primary_rc != NAP_OK) {
        vga_display_verb_error(gvga_system->window, work->vcb);
    } else if (node != nullptr) {
        NB_CHAR text[256];
        vga_print_msg(text, sizeof(text), done, "cs", static_cast<NB_INT>(sizeof(node->name)),
                      node->name);
        vga_tell_outcome(vga_node_name(node), text);
    }
}

} // namespace

NB_VOID vga_add_backup(const VGA_NODE *node) {
    issue(NAP_ADD_BACKUP, node, vga_sysw_add_backup_cb);
}

NB_VOID vga_delete_backup(VGA_DIALOG *window, const VGA_NODE *node) {
    constexpr NB_INT size = sizeof(node->name);
    if (!has_another_server(node)) {
        vga_display_error_dialog(window, VGA_MSG_LAST_BACKUP, "cantdellastbackup", nullptr, 0, "cs",
                                 size, node->name);
        return;
    }
    vga_display_confirm_dialog(window, VGA_MSG_CONFIRM_DELETE_BACKUP, "confirmdelbackup", confirmed,
                               node->handle, "cs", size, node->name);
}

NB_VOID vga_sysw_add_backup_cb(const VGA_PROCESS_STATE *work) {
    NB_ASSERT(work->vcb->opcode == NAP_ADD_BACKUP);
    vga_process_add_backup(work);
    show_outcome(work, VGA_MSG_BACKUP_ADDED);
}

NB_VOID vga_sysw_del_backup_cb(const VGA_PROCESS_STATE *work) {
    NB_ASSERT(work->vcb->opcode == NAP_DELETE_BACKUP);
    vga_process_delete_backup(work);
    show_outcome(work, VGA_MSG_BACKUP_DELETED);
}
