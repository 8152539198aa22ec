#include "rowlist.h"
#include "columntext.h"
#include "fieldwidgets.h"
#include "hints.h"
#include "messages.h"
#include "nbproblem.h"
#include "toolkit.h"
#include "widgets.h"
#include <Mrm/MrmPublic.h>
#include <Xm/List.h>
#include <Xm/PushB.h>
#include <algorithm>
#include <memory>
#include <unordered_map>

struct VGA_ROW_LIST {
    const VGA_ROW_LIST_PLAN *plan;
    NB_VOID *context;
    Widget rows, title, add, change, show, remove;
    NB_USHORT read_only = 0;
    std::vector<std::string> keys = {}; /* of the rows that are shown */
    std::vector<NB_USHORT> widths = {}; /* of the columns' texts, pixels */
};

namespace {

std::unordered_map<Widget, std::unique_ptr<VGA_ROW_LIST>> lists; /* by their rows */

/* The buttons. */

NB_VOID show_button(Widget button, bool on) {
    (on ? XtManageChild : XtUnmanageChild)(button);
}

NB_VOID set_button(Widget button, bool on, const NB_CHAR *reason) {
    vga_set_sensitive(button, on);
    vga_set_reason_text(button, on ? nullptr : reason);
}

bool full(const VGA_ROW_LIST &list) {
    return list.plan->most != 0 && list.keys.size() >= list.plan->most;
}

/* The message that says why the row cannot be removed; 0: it can. */
NB_USHORT why_it_stays(const VGA_ROW_LIST &list, NB_LONG row) {
    const VGA_ROW_LIST_PLAN &plan = *list.plan;
    return row < 0                 ? NB_USHORT{VGA_MSG_ROW_LIST_EMPTY}
           : plan.stays == nullptr ? NB_USHORT{0}
                                   : plan.stays(list.context, static_cast<NB_ULONG>(row));
}

NB_VOID arrange(const VGA_ROW_LIST &list) {
    const VGA_ROW_LIST_PLAN &plan = *list.plan;
    const bool edit = list.read_only == 0;
    show_button(list.add, edit && plan.add != nullptr);
    show_button(list.change, edit && plan.change != nullptr);
    show_button(list.show, !edit && plan.change != nullptr);
    show_button(list.remove, edit && plan.remove != nullptr);

    NB_CHAR reason[256];
    vga_print_msg(reason, sizeof(reason), VGA_MSG_ROW_LIST_FULL, "i", NB_INT{plan.most});
    set_button(list.add, !full(list), reason);
    const NB_LONG selected = vga_row_list_selected(&list);
    for (Widget button : {list.change, list.show}) {
        set_button(button, selected >= 0, vga_message(VGA_MSG_ROW_LIST_EMPTY));
    }
    const NB_USHORT stays = why_it_stays(list, selected);
    set_button(list.remove, stays == 0, vga_message(stays));
}

/* What a button does, and its key: nothing while it is off. */
NB_VOID press(VGA_ROW_LIST &list, const std::string &what) {
    const VGA_ROW_LIST_PLAN &plan = *list.plan;
    const NB_LONG selected = vga_row_list_selected(&list);
    if (what == "add" && XtIsManaged(list.add) && XtIsSensitive(list.add)) {
        plan.add(list.context);
    } else if (what == "change" && plan.change != nullptr && selected >= 0) {
        plan.change(list.context, static_cast<NB_ULONG>(selected));
    } else if (what == "remove" && XtIsManaged(list.remove) && why_it_stays(list, selected) == 0) {
        plan.remove(list.context, static_cast<NB_ULONG>(selected));
    }
}

NB_VOID press_add(Widget, XtPointer list, XtPointer) {
    press(*static_cast<VGA_ROW_LIST *>(list), "add");
}

NB_VOID press_change(Widget, XtPointer list, XtPointer) {
    press(*static_cast<VGA_ROW_LIST *>(list), "change");
}

NB_VOID press_remove(Widget, XtPointer list, XtPointer) {
    press(*static_cast<VGA_ROW_LIST *>(list), "remove");
}

/* The rows. */

/* The columns begin where their widths say, and the title line above them in the same places. */
NB_VOID size_columns(VGA_ROW_LIST &list) {
    const std::string capitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ"; /* what most names are made of */
    const int letter = vga_text_width(list.rows, capitals) / static_cast<int>(capitals.size());
    std::vector<NB_USHORT> stops;
    std::vector<std::string> titles;
    int end = 0;
    for (const VGA_ROW_COLUMN &column : list.plan->columns) {
        const int letters = (column.width + 1) * letter; /* some names are wider than others */
        const int width = std::max<int>(letters, vga_text_width(list.rows, column.title));
        list.widths.push_back(static_cast<NB_USHORT>(width));
        titles.emplace_back(column.title);
        end += width + letter;
        stops.push_back(static_cast<NB_USHORT>(end));
    }
    Dimension shadow = 0, highlight = 0, margin = 0;
    XtVaGetValues(list.rows, XmNshadowThickness, &shadow, XmNhighlightThickness, &highlight,
                  XmNlistMarginWidth, &margin, nullptr);
    const int edge = shadow + highlight + margin;
    for (Widget widget : {list.rows, list.title}) {
        vga_set_column_stops(widget, stops);
    }
    Widget bar = nullptr;
    Dimension bar_width = 0, spacing = 0;
    XtVaGetValues(XtParent(list.rows), XmNverticalScrollBar, &bar, XmNspacing, &spacing, nullptr);
    XtVaGetValues(bar, XmNwidth, &bar_width, nullptr);
    const VGA_STRING title = vga_column_text(titles);
    XtVaSetValues(list.title, XmNlabelString, title.get(), XmNmarginWidth, 0, XmNmarginLeft,
                  static_cast<Dimension>(edge), XmNwidth,
                  static_cast<Dimension>(end - letter + 2 * edge + spacing + bar_width), nullptr);
    XtVaSetValues(list.rows, XmNvisibleItemCount, static_cast<int>(list.plan->in_view), nullptr);
    Dimension title_height = 0;
    XtVaGetValues(list.title, XmNheight, &title_height, nullptr);
    XtVaSetValues(XtParent(list.add), XmNtopOffset, static_cast<int>(title_height), nullptr);
}

/* At least those of the plan: the buttons may take more room. */
int rows_in_view(const VGA_ROW_LIST &list) {
    int rows = 0;
    XtVaGetValues(list.rows, XmNvisibleItemCount, &rows, nullptr);
    return rows;
}

NB_VOID put_rows(VGA_ROW_LIST &list) {
    const NB_ULONG count = list.plan->count(list.context);
    std::vector<VGA_STRING> rows;
    std::vector<XmString> items;
    list.keys.clear();
    for (NB_ULONG row = 0; row < count; row++) {
        std::vector<std::string> cells;
        for (NB_USHORT column = 0; column < list.widths.size(); column++) {
            const std::string text = list.plan->text(list.context, row, column);
            cells.push_back(vga_cut_text(list.rows, text, list.widths[column]));
            if (column == 0) {
                list.keys.push_back(text);
            }
        }
        rows.push_back(vga_column_text(cells));
        items.push_back(rows.back().get());
    }
    int top = 1;
    XtVaGetValues(list.rows, XmNtopItemPosition, &top, nullptr);
    XmListDeselectAllItems(list.rows);
    XmListDeleteAllItems(list.rows);
    XmListAddItemsUnselected(list.rows, items.data(), static_cast<int>(items.size()), 0);
    const int last_top = static_cast<int>(items.size()) - rows_in_view(list) + 1;
    XmListSetPos(list.rows, std::max(1, std::min(top, last_top)));
}

/* Making one. */

/* Null where the descriptions have none. */
Widget fetch_form(Widget place) {
    NB_CHAR name[] = "rowList";
    Widget form = nullptr;
    MrmType type;
    VGA_NO_WARNINGS silence;
    const bool found = gvga_uil_hierarchy != nullptr &&
                       MrmFetchWidget(gvga_uil_hierarchy, name, place, &form, &type) == MrmSUCCESS;
    if (!found) {
        nba_pd_print_problem(NB_PD_WINDOW, NB_PD_WINDOW_NO_DESCRIPTION, "s", name);
    }
    return found ? form : nullptr;
}

NB_VOID double_click(Widget, XtPointer list, XtPointer) {
    press(*static_cast<VGA_ROW_LIST *>(list), "change");
}

NB_VOID row_selected(Widget, XtPointer client_data, XtPointer) {
    const auto &list = *static_cast<VGA_ROW_LIST *>(client_data);
    arrange(list);
    if (list.plan->selected != nullptr) {
        list.plan->selected(list.context, vga_row_list_selected(&list));
    }
}

NB_VOID set_label(Widget button, const NB_CHAR *literal) {
    if (literal != nullptr) {
        const VGA_STRING label(vga_form_literal(literal).c_str());
        XtVaSetValues(button, XmNlabelString, label.get(), nullptr);
    }
}

NB_VOID forget(Widget rows, XtPointer, XtPointer) {
    lists.erase(rows);
}

} // namespace

VGA_ROW_LIST *vga_row_list_attach(Widget place, const VGA_ROW_LIST_PLAN *plan, NB_VOID *context) {
    Widget form = place != nullptr ? fetch_form(place) : nullptr;
    if (form == nullptr) {
        return nullptr;
    }
    Widget rows = XtNameToWidget(form, "*rowListRows");
    auto &list = lists[rows];
    list = std::make_unique<VGA_ROW_LIST>(
        VGA_ROW_LIST{.plan = plan,
                     .context = context,
                     .rows = rows,
                     .title = XtNameToWidget(form, "*rowListTitle"),
                     .add = XtNameToWidget(form, "*rowListAdd"),
                     .change = XtNameToWidget(form, "*rowListChange"),
                     .show = XtNameToWidget(form, "*rowListShow"),
                     .remove = XtNameToWidget(form, "*rowListRemove")});
    XtAddCallback(rows, XmNdestroyCallback, forget, nullptr);
    XtAddCallback(rows, XmNdefaultActionCallback, double_click, list.get());
    XtAddCallback(rows, XmNbrowseSelectionCallback, row_selected, list.get());
    XtAddCallback(list->add, XmNactivateCallback, press_add, list.get());
    XtAddCallback(list->change, XmNactivateCallback, press_change, list.get());
    XtAddCallback(list->show, XmNactivateCallback, press_change, list.get());
    XtAddCallback(list->remove, XmNactivateCallback, press_remove, list.get());
    set_label(list->change, plan->change_label);
    set_label(list->remove, plan->remove_label);
    size_columns(*list);
    vga_row_list_refill(list.get());
    XtManageChild(form);
    return list.get();
}

NB_VOID vga_row_list_refill(VGA_ROW_LIST *list) {
    if (list == nullptr) {
        return;
    }
    const NB_LONG selected = std::max(vga_row_list_selected(list), 0);
    const auto at = static_cast<size_t>(selected);
    const std::string key = at < list->keys.size() ? list->keys[at] : "";
    put_rows(*list);
    const auto same = std::find(list->keys.begin(), list->keys.end(), key);
    const bool stays = at < list->keys.size() && list->keys[at] == key;
    const size_t row =
        stays || same == list->keys.end() ? at : static_cast<size_t>(same - list->keys.begin());
    vga_row_list_select(list, static_cast<NB_ULONG>(row));
    row_selected(list->rows, list, nullptr);
}

NB_VOID vga_row_list_select(VGA_ROW_LIST *list, NB_ULONG row) {
    if (list == nullptr || list->keys.empty()) {
        return;
    }
    const int position = static_cast<int>(std::min<size_t>(row, list->keys.size() - 1)) + 1;
    int top = 1;
    XtVaGetValues(list->rows, XmNtopItemPosition, &top, nullptr);
    XmListSelectPos(list->rows, position, False);
    XmListSetKbdItemPos(list->rows, position);
    if (position < top) {
        XmListSetPos(list->rows, position);
    } else if (position >= top + rows_in_view(*list)) {
        XmListSetBottomPos(list->rows, position);
    }
}

NB_LONG vga_row_list_selected(const VGA_ROW_LIST *list) {
    int *positions = nullptr;
    int count = 0;
    if (list == nullptr || !XmListGetSelectedPos(list->rows, &positions, &count)) {
        return -1;
    }
    const NB_LONG row = positions[0] - 1;
    XtFree(reinterpret_cast<NB_CHAR *>(positions));
    return row;
}

NB_VOID vga_row_list_focus(const VGA_ROW_LIST *list) {
    if (list != nullptr) {
        XmProcessTraversal(list->rows, XmTRAVERSE_CURRENT);
    }
}

NB_VOID vga_row_list_set_read_only(VGA_ROW_LIST *list, NB_USHORT read_only) {
    if (list != nullptr) {
        list->read_only = read_only;
        arrange(*list);
    }
}

NB_VOID vga_row_list_action(Widget rows, XEvent *, String *params, Cardinal *param_count) {
    const auto found = lists.find(rows);
    if (found != lists.end() && *param_count != 0) {
        press(*found->second, params[0]);
    }
}
