#include "commonnames.h"
#include "buttonletters.h"
#include "chooser.h"
#include "filtercallbacks.h"
#include "firewall.h"
#include "form.h"
#include "helpwindows.h"
#include "rowlist.h"
#include "toolkit.h"
#include "vgadgutl.h"
#include "webhelp.h"
#include "widgets.h"

NB_VOID vga_register_common_names(NB_VOID) {
    struct COMMON_NAME {
        const NB_CHAR *name;
        XtCallbackProc proc;
    };
    static const COMMON_NAME names[] = {
        {"vga_close_cb", vga_close_cb},
        {"vga_command_cb", vga_command_cb},
        {"vga_exit_cb", vga_exit_cb},
        {"vga_help_cb", vga_help_cb},
        {"vga_menu_help_about", vga_menu_help_about},
        {"vga_menu_help_contents", vga_menu_help_contents},
        {"vga_menu_help_help", vga_menu_help_help},
        {"vga_menu_help_index", vga_menu_help_index},
        {"vga_menu_help_search", vga_menu_help_search},
        {"vga_menu_help_web", vga_menu_help_web},
        {"vga_modal_dialog_cb", vga_modal_dialog_cb},
        {"vga_modal_firewall_on", vga_modal_firewall_on},
        {"vga_modal_firewall_off", vga_modal_firewall_off},
        {"vga_button_push", vga_button_push},
        {"vga_button_pop", vga_button_pop},
    };
    static XtActionsRec actions[] = {
        {const_cast<NB_CHAR *>("vga_activate_action"), vga_activate_action},
        {const_cast<NB_CHAR *>("vga_chooser_action"), vga_chooser_action},
        {const_cast<NB_CHAR *>("vga_letter_action"), vga_letter_action},
        {const_cast<NB_CHAR *>("vga_page_action"), vga_page_action},
        {const_cast<NB_CHAR *>("vga_row_list_action"), vga_row_list_action},
    };
    for (const COMMON_NAME &row : names) {
        MRMRegisterArg argument = {const_cast<NB_CHAR *>(row.name),
                                   reinterpret_cast<XtPointer>(row.proc)};
        MrmRegisterNames(&argument, 1);
    }
    vga_register_field_filters();
    XtAppAddActions(gvga_appcontext, actions, XtNumber(actions));
}
