#include "windowband.h"
#include "globals.h"
#include "marks.h"
#include "messages.h"
#include "windowroom.h"
#include <Xm/Xm.h>
#include <string>

namespace {

std::string view_only_text(NB_VOID) {
    if (gvga_read_only == 0) {
        return {};
    }
    const NB_USHORT reason = gvga_look_only != 0 ? VGA_MSG_BAND_ASKED : VGA_MSG_BAND_NO_RIGHT;
    NB_CHAR text[512];
    vga_print_msg(text, sizeof(text), VGA_MSG_BAND_VIEW_ONLY, "s", vga_message(reason));
    return text;
}

} // namespace

NB_VOID vga_listw_show_band(VGA_LIST_WINDOW *window) {
    const VGA_NODE *node = vga_listw_node(window);
    const std::string name =
        node != nullptr ? std::string(node->name, strnlen(node->name, sizeof(node->name))) : "";
    vga_set_mark(&window->common, name.c_str());
    const VGA_MARK *mark = vga_mark_of(&window->common);
    const std::string text = view_only_text();
    const bool wanted = mark != nullptr || !text.empty();
    if (wanted) {
        vga_show_mark(window->band, mark, text.c_str());
    }
    if (wanted != (XtIsManaged(window->band) != 0)) {
        (wanted ? XtManageChild : XtUnmanageChild)(window->band);
        vga_listw_share_room(window);
    }
}
