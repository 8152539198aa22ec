#include "chooser.h"
#include "buttonletters.h"
#include "columntext.h"
#include "fieldchecks.h"
#include "filtercallbacks.h"
#include "firewall.h"
#include "helpwindows.h"
#include "hints.h"
#include "messages.h"
#include "nbproblem.h"
#include "toolkit.h"
#include "vgadgutl.h"
#include "widgets.h"
#include <Xm/DialogS.h>
#include <Xm/List.h>
#include <Xm/MessageB.h>
#include <Xm/Protocols.h>
#include <Xm/ScrollBar.h>
#include <Xm/TextF.h>
#include <algorithm>
#include <cctype>
#include <numeric>
#include <unordered_map>

namespace {

NB_CHAR description[] = "chooser";
constexpr NB_CHAR key_end = '\n'; /* of a choice's text, in its key */
constexpr size_t measured = 32;   /* how many of the longest texts are looked at for the widest */
constexpr NB_LONG wheel_rows = 3;

struct ATTACHED {
    VGA_DIALOG *desc;
    Widget button;
    VGA_CHOOSER chooser;
};
std::unordered_map<Widget, ATTACHED> attached; /* by field */

/* The window of a dialog. */
struct WINDOW {
    VGA_DIALOG *desc = nullptr;
    Widget box = nullptr, find = nullptr, list = nullptr, bar = nullptr, line = nullptr;
    Widget field = nullptr; /* null: the window is closed */
    std::vector<VGA_CHOICE> choices = {};
    std::vector<std::string> keys = {}; /* of each choice: what a typed text is looked for in */
    std::vector<size_t> found = {};     /* the choices that have it, in the order shown */
    size_t chosen = 0, top = 0; /* in `found`: what is selected, and the first row in view */
    NB_USHORT text_room = 0, detail_room = 0; /* pixels of the columns */
};
std::unordered_map<const VGA_DIALOG *, WINDOW> windows;

bool can_be_edited(Widget field) {
    Boolean editable = False;
    XtVaGetValues(field, XmNeditable, &editable, nullptr);
    return editable != False && XtIsSensitive(field);
}

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](NB_CHAR character) {
        return static_cast<NB_CHAR>(tolower(static_cast<NB_UCHAR>(character)));
    });
    return text;
}

std::string text_of(Widget field) {
    return VGA_TEXT(XmTextFieldGetString(field)).get();
}

/* The list. */

NB_ULONG rows_in_view(const WINDOW &window) {
    int rows = 0;
    XtVaGetValues(window.list, XmNvisibleItemCount, &rows, nullptr);
    return static_cast<NB_ULONG>(std::max(rows, 1));
}

size_t last_top(const WINDOW &window) {
    const size_t rows = rows_in_view(window);
    return window.found.size() > rows ? window.found.size() - rows : 0;
}

NB_VOID show_rows(const WINDOW &window) {
    std::vector<VGA_STRING> rows;
    std::vector<XmString> items;
    const size_t end = std::min(window.found.size(), window.top + rows_in_view(window));
    for (size_t at = window.top; at < end; at++) {
        const VGA_CHOICE &choice = window.choices[window.found[at]];
        const std::string cells[] = {vga_cut_text(window.list, choice.text, window.text_room),
                                     vga_cut_text(window.list, choice.detail, window.detail_room)};
        rows.push_back(vga_column_text(cells));
        items.push_back(rows.back().get());
    }
    int before = 0;
    XtVaGetValues(window.list, XmNitemCount, &before, nullptr);
    const int count = static_cast<int>(items.size());
    XmListDeselectAllItems(window.list);
    if (count == before) { /* in their places: the list still knows where a click was */
        XmListReplaceItemsPosUnselected(window.list, items.data(), count, 1);
    } else {
        XmListDeleteAllItems(window.list);
        XmListAddItemsUnselected(window.list, items.data(), count, 0);
    }
    if (window.chosen >= window.top && window.chosen < end) {
        XmListSelectPos(window.list, static_cast<int>(window.chosen - window.top) + 1, False);
    }
}

NB_VOID show_bar(const WINDOW &window) {
    const int rows = static_cast<int>(rows_in_view(window));
    const int count = std::max(static_cast<int>(window.found.size()), rows);
    XtVaSetValues(window.bar, XmNminimum, 0, XmNmaximum, count, XmNsliderSize, rows,
                  XmNpageIncrement, std::max(rows - 1, 1), XmNvalue, static_cast<int>(window.top),
                  nullptr);
}

NB_VOID show_line(const WINDOW &window) {
    NB_CHAR text[256];
    const auto found = static_cast<NB_ULONG>(window.found.size());
    const auto all = static_cast<NB_ULONG>(window.choices.size());
    if (found != 0) {
        vga_print_msg(text, sizeof(text), VGA_MSG_CHOOSER_COUNT, "l l", found, all);
    } else {
        vga_print_msg(text, sizeof(text), VGA_MSG_CHOOSER_NO_MATCH, "l", all);
    }
    const VGA_STRING string(text);
    XtVaSetValues(window.line, XmNlabelString, string.get(), nullptr);
    vga_set_sensitive(XtNameToWidget(window.box, "OK"), found != 0);
}

NB_VOID scroll_to(WINDOW &window, size_t top) {
    window.top = std::min(top, last_top(window));
    show_bar(window);
    show_rows(window);
}

NB_VOID choose(WINDOW &window, size_t chosen) {
    const size_t rows = rows_in_view(window);
    window.chosen = window.found.empty() ? 0 : std::min(chosen, window.found.size() - 1);
    size_t top = std::min(window.top, window.chosen);
    scroll_to(window, window.chosen >= top + rows ? window.chosen - rows + 1 : top);
}

NB_VOID filter(WINDOW &window) {
    const std::string wanted = lower(text_of(window.find));
    std::vector<size_t> inside;
    window.found.clear();
    for (size_t ii = 0; ii < window.keys.size(); ii++) {
        const size_t at = window.keys[ii].find(wanted);
        if (at != std::string::npos) {
            (at == 0 ? window.found : inside).push_back(ii);
        }
    }
    window.found.insert(window.found.end(), inside.begin(), inside.end());
    choose(window, 0);
    show_line(window);
}

/* Selects what the field holds, else the first choice that begins like it, in the middle of the
 * view. */
NB_VOID choose_current(WINDOW &window) {
    const std::string current = lower(text_of(window.field));
    size_t similar = window.keys.size();
    for (size_t ii = window.keys.size(); ii-- > 0;) {
        if (window.keys[ii].starts_with(current)) {
            similar = ii;
        }
        if (window.keys[ii].starts_with(current + key_end)) {
            break;
        }
    }
    const size_t half = rows_in_view(window) / 2;
    window.chosen = similar < window.keys.size() ? similar : 0;
    scroll_to(window, window.chosen > half ? window.chosen - half : 0);
}

/* The width of the columns. */

NB_USHORT widest(const WINDOW &window, std::string VGA_CHOICE::*member) {
    std::vector<size_t> order(window.choices.size());
    std::iota(order.begin(), order.end(), size_t{0});
    const auto end = order.begin() + static_cast<std::ptrdiff_t>(std::min(measured, order.size()));
    std::partial_sort(order.begin(), end, order.end(), [&](size_t one, size_t other) {
        return (window.choices[one].*member).size() > (window.choices[other].*member).size();
    });
    NB_USHORT width = 0;
    std::for_each(order.begin(), end, [&](size_t ii) {
        width = std::max(width, vga_text_width(window.list, window.choices[ii].*member));
    });
    return width;
}

/* As wide as what is in it, from a third up to two thirds of an ordinary screen's 100 letters. */
NB_VOID size_columns(WINDOW &window) {
    const NB_USHORT letter = vga_text_width(window.list, "n");
    Dimension shadow = 0, highlight = 0, margin = 0;
    XtVaGetValues(window.list, XmNshadowThickness, &shadow, XmNhighlightThickness, &highlight,
                  XmNlistMarginWidth, &margin, nullptr);
    const int edges = 2 * (shadow + highlight + margin);
    const int gap = 2 * letter;
    const int text = std::min<int>(widest(window, &VGA_CHOICE::text), 30 * letter);
    const int detail = std::min<int>(widest(window, &VGA_CHOICE::detail), 45 * letter);
    const int width = std::max(text + gap + detail + letter, 36 * letter);
    window.text_room = static_cast<NB_USHORT>(detail != 0 ? text : width);
    window.detail_room = static_cast<NB_USHORT>(width - text - gap - letter);
    vga_set_column_stops(window.list, {static_cast<NB_USHORT>(text + gap)});
    XtVaSetValues(window.list, XmNwidth, static_cast<Dimension>(width + edges), nullptr);
}

/* The window. */

/* Below the field; above it where there is more room; and all of it on the screen. */
NB_VOID place(Widget box, XtPointer client_data, XtPointer) {
    const auto *window = static_cast<const WINDOW *>(client_data);
    if (window->field == nullptr) {
        return;
    }
    Dimension field_height = 0, width = 0, height = 0;
    XtVaGetValues(window->field, XmNheight, &field_height, nullptr);
    XtVaGetValues(XtParent(box), XmNwidth, &width, XmNheight, &height, nullptr);
    Position left = 0, top = 0;
    XtTranslateCoords(window->field, 0, 0, &left, &top);
    const int below = top + field_height;
    const bool fits = below + height <= HeightOfScreen(XtScreen(box));
    const int x = std::min<int>(left, WidthOfScreen(XtScreen(box)) - width);
    const int y = fits ? below : top - height;
    XtVaSetValues(box, XmNx, static_cast<Position>(std::max(x, 0)), XmNy,
                  static_cast<Position>(std::max(y, 0)), nullptr);
}

NB_VOID close_window(WINDOW &window) {
    if (window.field != nullptr) {
        window.field = nullptr;
        vga_modal_firewall_forget_tree(window.box);
        XtUnmanageChild(window.box);
        window.choices.clear();
        window.keys.clear();
        window.found.clear();
    }
}

NB_VOID leave(Widget, XtPointer client_data, XtPointer) {
    auto &window = *static_cast<WINDOW *>(client_data);
    Widget field = window.field;
    close_window(window);
    if (field != nullptr) {
        vga_focus_field(field);
    }
}

NB_VOID take(Widget widget, XtPointer client_data, XtPointer) {
    auto &window = *static_cast<WINDOW *>(client_data);
    Widget field = window.field;
    if (field == nullptr || window.found.empty()) {
        return;
    }
    const std::string text = window.choices[window.found[window.chosen]].text;
    const bool still = can_be_edited(field);
    leave(widget, &window, nullptr);
    if (still) {
        vga_fill_field(field, text.c_str());
    }
}

NB_VOID typed(Widget, XtPointer client_data, XtPointer) {
    auto &window = *static_cast<WINDOW *>(client_data);
    if (window.field != nullptr) {
        filter(window);
    }
}

NB_VOID row_clicked(Widget, XtPointer client_data, XtPointer call_data) {
    auto &window = *static_cast<WINDOW *>(client_data);
    const auto *call = static_cast<const XmListCallbackStruct *>(call_data);
    window.chosen = window.top + static_cast<size_t>(call->item_position) - 1;
}

/* The list takes two clicks on one place of it for a double click, though it was scrolled between.
 */
NB_VOID row_taken(Widget list, XtPointer client_data, XtPointer call_data) {
    auto &window = *static_cast<WINDOW *>(client_data);
    const size_t before = window.chosen;
    row_clicked(list, client_data, call_data);
    if (window.chosen == before) {
        take(list, client_data, nullptr);
    } else {
        choose(window, window.chosen);
    }
}

NB_VOID bar_moved(Widget, XtPointer client_data, XtPointer call_data) {
    auto &window = *static_cast<WINDOW *>(client_data);
    window.top = static_cast<size_t>(static_cast<XmScrollBarCallbackStruct *>(call_data)->value);
    show_rows(window);
}

NB_VOID dialog_left(Widget, XtPointer client_data, XtPointer) {
    vga_close_chooser(static_cast<VGA_DIALOG *>(client_data));
}

NB_VOID forget_window(Widget, XtPointer client_data, XtPointer) {
    windows.erase(static_cast<const VGA_DIALOG *>(client_data));
}

NB_VOID add_callbacks(WINDOW &window, Widget shell) {
    XtAddCallback(window.box, XmNokCallback, take, &window);
    XtAddCallback(window.box, XmNcancelCallback, leave, &window);
    XtAddCallback(window.box, XmNmapCallback, place, &window);
    XtAddCallback(window.box, XmNhelpCallback, vga_help_cb, vga_row_of(window.desc).name);
    XtAddCallback(window.find, XmNvalueChangedCallback, typed, &window);
    XtAddCallback(window.list, XmNbrowseSelectionCallback, row_clicked, &window);
    XtAddCallback(window.list, XmNdefaultActionCallback, row_taken, &window);
    XtAddCallback(window.bar, XmNvalueChangedCallback, bar_moved, &window);
    XtAddCallback(window.bar, XmNdragCallback, bar_moved, &window);
    XmAddWMProtocolCallback(shell, gvga_close_atom, leave, reinterpret_cast<XPointer>(&window));
    XtAddCallback(window.desc->widget, XmNunmapCallback, dialog_left, window.desc);
    XtAddCallback(window.box, XmNdestroyCallback, forget_window, window.desc);
}

/* Null where the descriptions have none. */
Widget fetch_box(Widget shell) {
    Widget box = nullptr;
    MrmType type;
    VGA_NO_WARNINGS silence;
    const bool found =
        gvga_uil_hierarchy != nullptr &&
        MrmFetchWidget(gvga_uil_hierarchy, description, shell, &box, &type) == MrmSUCCESS;
    return found ? box : nullptr;
}

WINDOW *make_window(VGA_DIALOG *desc) {
    Arg args[2];
    XtSetArg(args[0], XmNdeleteResponse, XmDO_NOTHING);
    XtSetArg(args[1], XmNallowShellResize, True);
    NB_CHAR name[] = VGA_CLASS;
    Widget shell = XmCreateDialogShell(desc->shell, name, args, 2);
    Widget box = fetch_box(shell);
    if (box == nullptr) {
        XtDestroyWidget(shell);
        return nullptr;
    }
    WINDOW &window = windows[desc];
    window = {.desc = desc,
              .box = box,
              .find = XtNameToWidget(box, "*chooserFind"),
              .list = XtNameToWidget(box, "*chooserList"),
              .bar = XtNameToWidget(box, "*chooserBar"),
              .line = XtNameToWidget(box, "*chooserLine")};
    add_callbacks(window, shell);
    vga_set_configured_colours(box);
    vga_give_letters(box);
    vga_add_modal_popup_firewall(box);
    const Widget stops[] = {window.find, XtNameToWidget(box, "OK"), XtNameToWidget(box, "Cancel")};
    vga_define_tab_groups(stops, XtNumber(stops));
    return &window;
}

NB_VOID fill(WINDOW &window, Widget field, const VGA_CHOOSER &chooser,
             std::vector<VGA_CHOICE> choices) {
    window.field = field;
    window.choices = std::move(choices);
    window.keys.clear();
    for (const VGA_CHOICE &choice : window.choices) {
        window.keys.push_back(lower(choice.text + key_end + choice.detail));
    }
    const VGA_STRING title(chooser.title.c_str());
    XtVaSetValues(window.box, XmNdialogTitle, title.get(), nullptr);
    size_columns(window);
    vga_fill_field(window.find, "");
    filter(window);
    choose_current(window);
}

/* The fields. */

NB_VOID button_pressed(Widget, XtPointer field, XtPointer) {
    const auto found = attached.find(static_cast<Widget>(field));
    if (found != attached.end()) {
        vga_open_chooser(found->second.desc, found->first);
    }
}

NB_VOID forget_field(Widget field, XtPointer, XtPointer) {
    attached.erase(field);
}

WINDOW *window_around(Widget widget) {
    for (auto &[desc, window] : windows) {
        if (widget == window.find || widget == window.list) {
            return window.field != nullptr ? &window : nullptr;
        }
    }
    return nullptr;
}

} // namespace

NB_VOID vga_attach_chooser(VGA_DIALOG *desc, Widget field, Widget button, VGA_CHOOSER chooser) {
    if (field == nullptr) {
        return;
    }
    attached[field] = {desc, button, std::move(chooser)};
    XtAddCallback(field, XmNdestroyCallback, forget_field, nullptr);
    XtOverrideTranslations(field,
                           XtParseTranslationTable("Mod1<Key>osfDown: vga_chooser_action(open)\n"
                                                   "<Key>F4: vga_chooser_action(open)\n"));
    if (button != nullptr) {
        XtAddCallback(button, XmNactivateCallback, button_pressed, field);
        vga_set_field_hint(button, VGA_MSG_CHOOSER_HINT);
    }
}

NB_USHORT vga_open_chooser(VGA_DIALOG *desc, Widget field) {
    const auto found = attached.find(field);
    if (found == attached.end() || desc->in_use == 0 || !can_be_edited(field)) {
        return 0;
    }
    vga_close_chooser(desc);
    const VGA_CHOOSER &chooser = found->second.chooser;
    std::vector<VGA_CHOICE> choices = chooser.choices();
    if (choices.empty()) {
        vga_display_info_dialog(desc, VGA_MSG_CHOOSER_NOTHING, nullptr, nullptr, 0, "s",
                                chooser.none.c_str());
        return 0;
    }
    const auto made = windows.find(desc);
    WINDOW *window = made != windows.end() ? &made->second : make_window(desc);
    if (window == nullptr) {
        nba_pd_print_problem(NB_PD_WINDOW, NB_PD_WINDOW_NO_DESCRIPTION, "s", description);
        vga_display_error_dialog(desc, VGA_MSG_DIALOG_FAILED, nullptr, nullptr, 0, "");
        return 0;
    }
    fill(*window, field, chooser, std::move(choices));
    XtManageChild(window->box);
    XmProcessTraversal(window->find, XmTRAVERSE_CURRENT);
    return 1;
}

NB_VOID vga_close_chooser(VGA_DIALOG *desc) {
    const auto found = windows.find(desc);
    if (found != windows.end()) {
        close_window(found->second);
    }
}

NB_VOID vga_check_choosers(VGA_DIALOG *desc) {
    for (const auto &[field, row] : attached) {
        if (row.desc == desc) {
            const bool on = can_be_edited(field);
            vga_set_sensitive(row.button, on);
            vga_set_reason_text(row.button, on ? nullptr : vga_shown_hint(field));
        }
    }
    const auto found = windows.find(desc);
    if (found != windows.end() && found->second.field != nullptr &&
        !can_be_edited(found->second.field)) {
        close_window(found->second);
    }
}

NB_VOID vga_chooser_action(Widget widget, XEvent *, String *params, Cardinal *param_count) {
    const std::string what = *param_count != 0 ? params[0] : "";
    if (what == "open") {
        button_pressed(widget, widget, nullptr);
        return;
    }
    WINDOW *window = window_around(widget);
    if (window == nullptr) {
        return;
    }
    const auto page = static_cast<NB_LONG>(rows_in_view(*window)) - 1;
    const struct {
        const NB_CHAR *name;
        NB_LONG rows;
    } moves[] = {{"up", -1},
                 {"down", 1},
                 {"page_up", -page},
                 {"page_down", page},
                 {"first", -static_cast<NB_LONG>(window->found.size())},
                 {"last", static_cast<NB_LONG>(window->found.size())}};
    const auto moved = [](size_t from, NB_LONG rows) {
        return rows < 0 && static_cast<size_t>(-rows) > from ? 0 : from + static_cast<size_t>(rows);
    };
    for (const auto &move : moves) {
        if (what == move.name) {
            choose(*window, moved(window->chosen, move.rows));
        }
    }
    if (what == "wheel_up" || what == "wheel_down") {
        scroll_to(*window, moved(window->top, what == "wheel_up" ? -wheel_rows : wheel_rows));
    }
}
