/* The least that a toolkit program does to show the window that bench_startup measures: opens the
 * same description and icon files, fetches the same icons and the tree of the node window, maps it
 * and runs its main loop.  Nothing of the administration program runs here: its library only lends
 * the names. */
#include "graphics.h"
#include "nbbase.h"
#include "v0uidpth.h"
#include "widgets.h"
#include "windows.h"

#include <Mrm/MrmPublic.h>
#include <Xm/Xm.h>
#include <cstdio>
#include <string>

namespace {

constexpr int small_screen = 1024; /* pixels; wider ones get the big icons */

void do_nothing(Widget, XtPointer, XtPointer) {}
void no_action(Widget, XEvent *, String *, Cardinal *) {}
void no_warning(String) {}

MrmHierarchy open_file(Display *display, const char *name) {
    String files[] = {const_cast<String>(name)};
    MrmHierarchy hierarchy = nullptr;
    return MrmOpenHierarchyPerDisplay(display, 1, files, nullptr, &hierarchy) == MrmSUCCESS
               ? hierarchy
               : nullptr;
}

bool fetch_icons(Display *display, Widget widget) {
    Screen *const screen = XtScreen(widget);
    Pixel foreground, background;
    XtVaGetValues(widget, XmNforeground, &foreground, XmNbackground, &background, nullptr);
    const std::string size = WidthOfScreen(screen) > small_screen ? "big" : "";
    const MrmHierarchy icons = open_file(display, ("icons" + size + ".uid").c_str());
    bool complete = icons != nullptr;
    for (int icon = 0; complete && icon < VGA_ICON_COUNT; icon++) {
        for (const char *form : {"", "i"}) {
            std::string name = gvga_pixmap_names[icon] + size + "_icon" + form;
            Pixmap pixmap;
            complete &= MrmFetchIconLiteral(icons, name.data(), screen, display, foreground,
                                            background, &pixmap) == MrmSUCCESS;
        }
    }
    return complete;
}

void register_names(XtAppContext context) {
    static const char *const common[] = {"vga_close_cb", "vga_exit_cb", "vga_menu_help_web",
                                         "vga_button_push", "vga_button_pop"};
    const auto add = [](const char *name) {
        MRMRegisterArg row{const_cast<String>(name), reinterpret_cast<XtPointer>(do_nothing)};
        MrmRegisterNames(&row, 1);
    };
    for (const char *name : common) {
        add(name);
    }
    for (const MRMRegisterArg &row : gvga_nodew_callbacks) {
        add(row.name);
    }
    XtActionsRec actions[] = {{const_cast<String>("vga_activate_action"), no_action}};
    XtAppAddActions(context, actions, 1);
    for (const XtActionsRec &row : gvga_nodew_actions) {
        XtActionsRec action{row.string, no_action};
        XtAppAddActions(context, &action, 1);
    }
}

} // namespace

int main(int argc, char **argv) {
    XtAppContext context;
    nba_set_app_defaults_path();
    MrmInitialize();
    XtSetLanguageProc(nullptr, nullptr, nullptr);
    Widget shell =
        XtVaAppInitialize(&context, "Quiladmin", nullptr, 0, &argc, argv, nullptr, nullptr);
    XtAppSetWarningHandler(context, no_warning);
    Display *const display = XtDisplay(shell);
    v0_set_uidpath((std::string(nba_prefix()) + "/lib/X11").c_str(), "Quiladmin", "Quiladmin",
                   nullptr, nullptr);
    register_names(context);
    const MrmHierarchy windows = open_file(display, "quildlg.uid");
    Widget window = nullptr;
    MrmType type;
    if (windows == nullptr ||
        MrmFetchWidget(windows, const_cast<String>("nodew"), shell, &window, &type) != MrmSUCCESS) {
        std::fputs("the description of the window cannot be had\n", stderr);
        return 1;
    }
    if (!fetch_icons(display, window)) {
        std::fputs("the icons cannot be had\n", stderr);
        return 1;
    }
    XtManageChild(window);
    XtRealizeWidget(shell);
    XtAppMainLoop(context);
}
