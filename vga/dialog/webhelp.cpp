#include "webhelp.h"
#include "childprocess.h"
#include "globals.h"
#include "messagebox.h"
#include "messages.h"
#include "nbbase.h"
#include "resourcereader.h"
#include "vgadgutl.h"
#include <cstdio>
#include <cstring>
#include <string>

namespace {

constexpr NB_INT max_part = 200; /* of browser and address */

struct WEB_ENTRY {
    const NB_CHAR *tag;
    NB_USHORT address; /* message */
};

/* A page of the installation that is not under the usual prefix is found under the real one. */
std::string real_address(std::string address) {
    const std::string usual = "file://" NB_DEFAULT_PREFIX "/";
    if (address.compare(0, usual.size(), usual) == 0) {
        address.replace(0, usual.size() - 1, std::string("file://") + nba_prefix());
    }
    return address;
}

const WEB_ENTRY entries[] = {
    {"1", VGA_MSG_WEB_PAGE},
    {"2", VGA_MSG_WEB_SUPPORT_PAGE},
};

} // namespace

NB_VOID vga_menu_help_web(Widget widget, XtPointer client_data, XtPointer) {
    const auto *tag = static_cast<const NB_CHAR *>(client_data);
    for (const WEB_ENTRY &entry : entries) {
        if (tag != nullptr && strcmp(tag, entry.tag) == 0) {
            NB_CHAR command[2 * max_part + 2];
            const std::string address = real_address(vga_message(entry.address));
            vga_get_web_browser_path();
            snprintf(command, sizeof(command), "%.*s %.*s", max_part, gvga_web_browser, max_part,
                     address.c_str());
            if (vga_can_run(gvga_web_browser)) {
                vga_run_detached(command);
            } else {
                vga_display_error_dialog(widget != nullptr ? vga_get_dialog_from_widget(widget)
                                                           : nullptr,
                                         VGA_MSG_NO_BROWSER, nullptr, nullptr, 0, "s s",
                                         gvga_web_browser, address.c_str());
            }
            return;
        }
    }
    v0_assert(__FILE__, __LINE__, "FALSE");
}
