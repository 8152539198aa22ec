#include "attention.h"
#include "desktophints.h"
#include "toolkit.h"
#include "vgadgutl.h"
#include <set>

namespace {

std::set<Widget> covered; /* shells */

NB_USHORT is_or_belongs_to(const VGA_DIALOG *desc, const VGA_DIALOG *window) {
    while (desc != nullptr && desc != window) {
        desc = desc->parent;
    }
    return desc != nullptr;
}

/* Without a window manager the keyboard is where the pointer is, and nothing lies in an icon. */
NB_USHORT has_keyboard(const VGA_DIALOG *window) {
    Window focus = None;
    NB_INT revert = 0;
    XGetInputFocus(gvga_display, &focus, &revert);
    if (focus == PointerRoot) {
        return 1;
    }
    Widget widget = focus != None ? XtWindowToWidget(gvga_display, focus) : nullptr;
    return widget != nullptr && is_or_belongs_to(vga_get_dialog_from_widget(widget), window) != 0;
}

NB_USHORT is_on_screen(Widget shell) {
    XWindowAttributes attributes;
    return XtIsRealized(shell) && covered.count(shell) == 0 &&
           XGetWindowAttributes(XtDisplay(shell), XtWindow(shell), &attributes) != 0 &&
           attributes.map_state == IsViewable;
}

NB_VOID count(VGA_DIALOG *window, NB_ULONG failures) {
    const std::string title = vga_get_title(window);
    window->unseen = failures;
    vga_set_title(window, title.c_str());
    vga_set_urgent(window->shell, failures != 0);
}

NB_VOID watched(Widget shell, XtPointer data, XEvent *event, Boolean *) {
    auto *window = static_cast<VGA_DIALOG *>(data);
    if (event->type == VisibilityNotify) {
        if (event->xvisibility.state == VisibilityFullyObscured) {
            covered.insert(shell);
            return;
        }
        covered.erase(shell);
    }
    const bool seen =
        window->unseen != 0 &&
        (event->type == FocusIn || (event->type == VisibilityNotify && has_keyboard(window) != 0));
    if (seen) {
        count(window, 0);
    }
}

} // namespace

NB_VOID vga_watch_attention(VGA_DIALOG *window) {
    constexpr EventMask events = FocusChangeMask | VisibilityChangeMask;
    XtRemoveEventHandler(window->shell, events, False, watched, window); /* once */
    XtAddEventHandler(window->shell, events, False, watched, window);
}

NB_VOID vga_call_attention(VGA_DIALOG *window, NB_ULONG failures) {
    const bool seen = has_keyboard(window) != 0 && is_on_screen(window->shell) != 0;
    if (failures != 0 && !seen && vga_row_of(window).kind == VGA_KIND_MAIN) {
        count(window, window->unseen + failures);
    }
}
