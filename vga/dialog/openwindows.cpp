#include "openwindows.h"
#include "holders.h"
#include "vgadgutl.h"
#include <Xm/PushB.h>
#include <algorithm>
#include <new>
#include <string>
#include <vector>

namespace {

struct NODE_WINDOW {
    NB_USHORT number;
    VGA_DIALOG *window;
    std::string name;
    Widget entry; /* null without a menu */
};

constexpr NB_CHAR mnemonics[] = "123456789abcdefghijklmnopqrstuvwxyz";

std::vector<NODE_WINDOW> windows; /* by number */
Widget menu;

NB_VOID forget_menu(Widget widget, XtPointer, XtPointer) {
    if (widget == menu) {
        menu = nullptr;
        for (NODE_WINDOW &each : windows) {
            each.entry = nullptr;
        }
    }
}

NB_VOID remove_entry(NODE_WINDOW &each) {
    if (each.entry != nullptr) {
        XtDestroyWidget(each.entry);
        each.entry = nullptr;
    }
}

NB_VOID show_name(const NODE_WINDOW &each) {
    KeySym mnemonic = vga_node_widget_mnemonic(each.number);
    std::string text = each.name;
    if (mnemonic != NoSymbol) {
        text = std::string(1, mnemonics[each.number - 1]) + "  " + text;
    }
    VGA_STRING label(text.c_str());
    XtVaSetValues(each.entry, XmNlabelString, label.get(), XmNmnemonic, mnemonic, nullptr);
}

NB_VOID make_entry(NODE_WINDOW &each) {
    if (menu == nullptr) {
        return;
    }
    auto place = std::find_if(windows.begin(), windows.end(),
                              [&each](const NODE_WINDOW &other) { return &other == &each; });
    auto position = static_cast<short>(place - windows.begin());
    /* Entries of others may stand in front of these. */
    Cardinal count = 0;
    XtVaGetValues(menu, XmNnumChildren, &count, nullptr);
    auto entries = std::count_if(windows.begin(), windows.end(),
                                 [](const NODE_WINDOW &other) { return other.entry != nullptr; });
    position =
        static_cast<short>(position + static_cast<short>(count) - static_cast<short>(entries));
    each.entry = XtVaCreateManagedWidget("nodeWindowEntry", xmPushButtonWidgetClass, menu,
                                         XmNpositionIndex, position, nullptr);
    XtAddCallback(each.entry, XmNactivateCallback, vga_raise_node_window, nullptr);
    show_name(each);
}

auto find(const VGA_DIALOG *window) {
    return std::find_if(windows.begin(), windows.end(),
                        [window](const NODE_WINDOW &each) { return each.window == window; });
}

NODE_WINDOW *find_entry(Widget widget) {
    auto found = std::find_if(windows.begin(), windows.end(), [widget](const NODE_WINDOW &each) {
        return widget != nullptr && each.entry == widget;
    });
    return found != windows.end() ? &*found : nullptr;
}

/* Inserts it where the first number is free. */
NODE_WINDOW &insert(VGA_DIALOG *window) {
    NB_USHORT number = 1;
    auto place = windows.begin();
    while (place != windows.end() && place->number == number) {
        number++;
        place++;
    }
    return *windows.insert(place, {number, window, "", nullptr});
}

} // namespace

NB_VOID vga_set_node_window_menu(Widget new_menu) {
    for (NODE_WINDOW &each : windows) {
        remove_entry(each);
    }
    menu = new_menu;
    if (menu != nullptr) {
        XtRemoveCallback(menu, XmNdestroyCallback, forget_menu, nullptr);
        XtAddCallback(menu, XmNdestroyCallback, forget_menu, nullptr);
    }
    for (NODE_WINDOW &each : windows) {
        make_entry(each);
    }
}

NB_USHORT vga_add_node_window_widget(VGA_DIALOG *window, const NB_CHAR *name) {
    try {
        auto place = find(window);
        NODE_WINDOW &each = place != windows.end() ? *place : insert(window);
        each.name = name;
        if (each.entry != nullptr) {
            show_name(each);
        } else {
            make_entry(each);
        }
        return each.number;
    } catch (const std::bad_alloc &) {
        return 0;
    }
}

NB_VOID vga_remove_node_window_widget(const VGA_DIALOG *window) {
    auto place = find(window);
    if (place != windows.end()) {
        remove_entry(*place);
        windows.erase(place);
    }
}

NB_VOID vga_remove_all_node_window_widgets(NB_VOID) {
    for (NODE_WINDOW &each : windows) {
        remove_entry(each);
    }
    windows.clear();
}

NB_USHORT vga_get_node_number_from_widget(Widget widget) {
    const NODE_WINDOW *each = find_entry(widget);
    return each != nullptr ? each->number : NB_USHORT(0);
}

KeySym vga_node_widget_mnemonic(NB_USHORT number) {
    return number >= 1 && number < sizeof(mnemonics) ? static_cast<KeySym>(mnemonics[number - 1])
                                                     : NoSymbol;
}

NB_VOID vga_raise_node_window(Widget widget, XtPointer, XtPointer) {
    if (const NODE_WINDOW *each = find_entry(widget)) {
        vga_raise_dialog(each->window);
    }
}
