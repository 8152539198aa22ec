/* The list of a node's modes has one command of its own: which mode serves for names that nobody
 * defined. */
#include "completions.h"
#include "listwindow.h"
#include "messages.h"
#include "nofverbs.h"
#include "windows.h"
#include <cstring>

static bool is_default(const VGA_MODE_DEF &mode) {
    return memcmp(mode.name, mode.parent->defaults.def_data.mode_name, sizeof(mode.name)) == 0;
}

NB_USHORT vga_modew_refuses_default(const VGA_SITUATION &situation) {
    if (situation.count != 1 || situation.record == nullptr) {
        return situation.count == 0 ? VGA_MSG_NODEW_SELECT_FIRST : VGA_MSG_NODEW_ONE_ONLY;
    }
    return is_default(*static_cast<const VGA_MODE_DEF *>(situation.record))
               ? NB_USHORT{VGA_MSG_MODEW_IS_DEFAULT}
               : NB_USHORT{0};
}

static NB_VOID completed(const VGA_PROCESS_STATE *work) {
    vga_verb_completed(work);
    auto *dialog = static_cast<VGA_DIALOG *>(nba_validate_handle(work->user_data));
    if (dialog != nullptr && vga_verb_succeeded(work->vcb) == 0) {
        vga_display_verb_error(dialog, work->vcb);
    }
}

NB_VOID vga_modew_make_default(VGA_LIST_WINDOW *window) {
    const VGA_NODE *node = vga_listw_node(window);
    const auto *mode =
        static_cast<const VGA_MODE_DEF *>(vga_listw_get_selection(window, nullptr, nullptr));
    auto verb = vga_new_verb<NAP_QUERY_DEFAULTS_VERB>(NAP_DEFINE_DEFAULTS);
    if (node != nullptr && mode != nullptr && verb) {
        verb->def_data = node->defaults.def_data;
        memcpy(verb->def_data.mode_name, mode->name, sizeof(mode->name));
        vga_issue_verb(node->target, std::move(verb), window->common.handle, completed);
    }
}
