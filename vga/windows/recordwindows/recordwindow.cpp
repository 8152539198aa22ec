#include "recordwindow.h"
#include "completions.h"
#include "defineblock.h"
#include "fieldwidgets.h"
#include "globals.h"
#include "hints.h"
#include "holders.h"
#include "messages.h"
#include "rowlist.h"
#include "toolkit.h"
#include "widgets.h"
#include <algorithm>
#include <memory>
#include <unordered_map>
#include <unordered_set>

namespace {

constexpr NB_ULONG gather_milliseconds = 100; /* changes that come together are shown together */
constexpr NB_USHORT rows_of_node = 8, rows_below = 4;

struct WINDOW;

/* A list in a window, for as long as its widgets. */
struct LIST {
    WINDOW *window;
    const VGA_RECORD_LIST *row;
    std::vector<std::string> titles = {};
    std::vector<VGA_ROW_COLUMN> columns = {};
    VGA_ROW_LIST_PLAN plan = {};
    VGA_ROW_LIST *rows = nullptr;
    std::vector<NB_ULONG> handles = {}; /* of the records that are shown */
};

struct WINDOW {
    VGA_DIALOG *desc;
    NB_ULONG node = 0; /* handle; 0: the window is closed */
    XtIntervalId timer = 0;
    std::vector<std::unique_ptr<LIST>> lists = {};
    std::unordered_set<const NB_VOID *> shown = {}; /* records that the rows are of */
    Widget panes = nullptr;
    Dimension least_width = 0, least_height = 0; /* of the panes */
};

std::unordered_map<const VGA_DIALOG *, std::unique_ptr<WINDOW>> windows;

WINDOW &window_of(const VGA_DIALOG *desc) {
    return *windows.at(desc);
}

/* Records. */

NB_VOID *record_of(const LIST &list, NB_LONG row) {
    return row >= 0 && static_cast<size_t>(row) < list.handles.size()
               ? nba_validate_handle(list.handles[static_cast<size_t>(row)])
               : nullptr;
}

/* The node, or the record that is selected in the window's first list; null when it is gone. */
NB_VOID *owner_of(const LIST &list) {
    const LIST &first = *list.window->lists.front();
    return &list == &first ? nba_validate_handle(list.window->node)
                           : record_of(first, vga_row_list_selected(first.rows));
}

/* What the rows show. */

NB_ULONG count(NB_VOID *context) {
    LIST &list = *static_cast<LIST *>(context);
    const NB_VOID *owner = owner_of(list);
    list.handles = owner != nullptr ? list.row->handles(owner) : std::vector<NB_ULONG>();
    for (NB_ULONG handle : list.handles) {
        list.window->shown.insert(nba_validate_handle(handle));
    }
    return static_cast<NB_ULONG>(list.handles.size());
}

std::string text(NB_VOID *context, NB_ULONG row, NB_USHORT column) {
    const LIST &list = *static_cast<LIST *>(context);
    const NB_VOID *record = record_of(list, static_cast<NB_LONG>(row));
    if (record == nullptr) {
        return "";
    }
    const records::FieldRow &field = *list.row->columns[column].field;
    const auto *entry = static_cast<const NB_UCHAR *>(list.row->type->entry(record));
    return vga_shown_word(field, records::format_field(field, entry));
}

NB_VOID fill(WINDOW &window) {
    window.shown.clear();
    vga_row_list_refill(window.lists.front()->rows);
}

/* Those below show what belongs to another record now. */
NB_VOID selected(NB_VOID *context, NB_LONG) {
    const auto &lists = static_cast<LIST *>(context)->window->lists;
    std::for_each(lists.begin() + 1, lists.end(),
                  [](const auto &list) { vga_row_list_refill(list->rows); });
}

/* What the buttons do. */

NB_USHORT form_of(const LIST &list) {
    return vga_find_row_named(list.row->form)->dialog_id;
}

NB_VOID add(NB_VOID *context) {
    const LIST &list = *static_cast<LIST *>(context);
    if (NB_VOID *owner = owner_of(list)) {
        vga_form_open(form_of(list), list.window->desc, nullptr, owner, VGA_FORM_ADD);
    }
}

NB_VOID change(NB_VOID *context, NB_ULONG row) {
    const LIST &list = *static_cast<LIST *>(context);
    if (NB_VOID *record = record_of(list, static_cast<NB_LONG>(row))) {
        vga_form_open(form_of(list), list.window->desc, record, nullptr, VGA_FORM_CHANGE);
    }
}

NB_USHORT stays(NB_VOID *context, NB_ULONG row) {
    const LIST &list = *static_cast<LIST *>(context);
    const NB_VOID *record = record_of(list, static_cast<NB_LONG>(row));
    return record != nullptr && list.row->stays != nullptr ? list.row->stays(record) : NB_USHORT{0};
}

NB_VOID deleted(const VGA_PROCESS_STATE *work) {
    vga_verb_completed(work);
    auto *desc = static_cast<VGA_DIALOG *>(nba_validate_handle(work->user_data));
    if (desc != nullptr && vga_verb_succeeded(work->vcb) == 0) {
        vga_display_verb_error(desc, work->vcb);
    }
}

/* The answer is about the record with that handle, wherever its row is now. */
NB_VOID delete_confirmed(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG handle) {
    for (const auto &list : window_of(desc).lists) {
        const bool listed =
            std::find(list->handles.begin(), list->handles.end(), handle) != list->handles.end();
        const NB_VOID *record = listed ? nba_validate_handle(handle) : nullptr;
        if (answer != VGA_ANSWER_OK || record == nullptr) {
            continue;
        }
        const VGA_FORM_TYPE &type = *list->row->type;
        auto verb = vga_new_verb<NAP_NAME_VERB>(list->row->schema->remove);
        if (verb) {
            *verb = records::make_name_block(*list->row->schema, list->row->schema->remove,
                                             static_cast<const NB_UCHAR *>(type.entry(record)));
        }
        vga_issue_verb(type.target(type.owner(record)), std::move(verb), desc->handle, deleted);
    }
}

NB_VOID remove(NB_VOID *context, NB_ULONG row) {
    const LIST &list = *static_cast<LIST *>(context);
    NB_CHAR name[256];
    v0_mb_strncpy(name, text(context, row, 0).c_str(), sizeof(name));
    vga_question_loses(list.window->desc);
    vga_display_confirm_dialog(list.window->desc, VGA_MSG_DELETE_RECORD, nullptr, delete_confirmed,
                               list.handles[row], "s", name);
}

/* Making a window. */

Widget part_of(const WINDOW &window, const NB_CHAR *part, size_t number) {
    return XtNameToWidget(window.desc->widget,
                          ("*" + std::string(part) + std::to_string(number)).c_str());
}

std::unique_ptr<LIST> make_list(WINDOW &window, const VGA_RECORD_LIST &row) {
    auto list = std::make_unique<LIST>(LIST{.window = &window, .row = &row});
    const std::string name = row.name;
    for (const VGA_RECORD_COLUMN &column : row.columns) {
        list->titles.push_back(vga_form_literal(name + "_" + column.field->name));
    }
    for (size_t at = 0; at < row.columns.size(); at++) {
        list->columns.push_back({list->titles[at].c_str(), row.columns[at].width});
    }
    const bool first = window.lists.empty();
    list->plan = {.columns = list->columns,
                  .in_view = first ? rows_of_node : rows_below,
                  .count = count,
                  .text = text,
                  .add = row.form != nullptr ? add : nullptr,
                  .change = row.form != nullptr ? change : nullptr,
                  .remove = row.schema->remove != 0 ? remove : nullptr,
                  .stays = stays,
                  .selected = first ? selected : nullptr,
                  .change_label = "recordProperties",
                  .remove_label = "recordDelete"};
    return list;
}

NB_VOID stop_timer(WINDOW &window) {
    if (window.timer != 0) {
        XtRemoveTimeOut(window.timer);
        window.timer = 0;
    }
}

NB_VOID forget_cb(Widget, XtPointer desc, XtPointer) {
    stop_timer(window_of(static_cast<VGA_DIALOG *>(desc)));
    windows.erase(static_cast<VGA_DIALOG *>(desc));
}

/* The room that the lists want, and what there is of it on the screen. */

NB_VOID set_size(Widget widget, int width, int height) {
    XtVaSetValues(widget, XmNwidth, static_cast<Dimension>(width), XmNheight,
                  static_cast<Dimension>(height), nullptr);
}

/* A scrolled window leaves its content as small as it is; the lists get all of a larger one. */
NB_VOID stretch(Widget clip, XtPointer data, XEvent *, Boolean *) {
    const auto *window = static_cast<const WINDOW *>(data);
    Dimension width = 0, height = 0;
    XtVaGetValues(clip, XmNwidth, &width, XmNheight, &height, nullptr);
    set_size(window->panes, std::max(width, window->least_width),
             std::max(height, window->least_height));
}

NB_VOID fit_screen(WINDOW &window, Widget page) {
    constexpr int bar = 24, edge = 64; /* pixels: a scroll bar; what a window manager adds */
    const XtWidgetGeometry wanted = vga_wanted_size(window.panes);
    window.least_width = wanted.width;
    window.least_height = wanted.height;
    set_size(page, wanted.width, wanted.height);
    const XtWidgetGeometry all = vga_wanted_size(window.desc->widget);
    const int wide = all.width + edge - WidthOfScreen(gvga_screen);
    const int high = all.height + edge - HeightOfScreen(gvga_screen);
    if (wide > 0 || high > 0) {
        set_size(page, wanted.width + (high > 0 ? bar : 0) - std::max(wide, 0),
                 wanted.height + (wide > 0 ? bar : 0) - std::max(high, 0));
    }
    Widget clip = nullptr;
    XtVaGetValues(page, XmNclipWindow, &clip, nullptr);
    XtAddEventHandler(clip, StructureNotifyMask, False, stretch, &window);
}

const VGA_RECORD_WINDOW *find_window(const NB_CHAR *name) {
    const auto found = std::find_if(
        gvga_record_windows.begin(), gvga_record_windows.end(),
        [name](const VGA_RECORD_WINDOW &window) { return strcmp(window.name, name) == 0; });
    return found != gvga_record_windows.end() ? &*found : nullptr;
}

/* Opening. */

NB_VOID refill_later(XtPointer desc, XtIntervalId *) {
    WINDOW &window = window_of(static_cast<VGA_DIALOG *>(desc));
    window.timer = 0;
    fill(window);
}

VGA_DIALOG *find_open(const VGA_UID_DESC &row, const VGA_NODE *node) {
    for (VGA_DIALOG *desc = row.first_desc; desc != nullptr; desc = desc->next_desc) {
        if (desc->in_use != 0 && window_of(desc).node == node->handle) {
            return desc;
        }
    }
    return nullptr;
}

NB_VOID set_title(VGA_DIALOG *desc, const VGA_NODE &node) {
    const LIST &first = *window_of(desc).lists.front();
    NB_CHAR title[256];
    vga_print_msg(title, sizeof(title), VGA_MSG_RECORDS_ON, "s cs",
                  vga_form_literal(first.row->name + std::string("_title")).c_str(),
                  static_cast<NB_INT>(sizeof(node.name)), node.name);
    vga_set_title(desc, title);
}

} // namespace

NB_USHORT vga_record_window_get_widgets(VGA_DIALOG *desc) {
    auto &window = windows[desc];
    window = std::make_unique<WINDOW>(WINDOW{.desc = desc});
    XtAddCallback(desc->widget, XmNdestroyCallback, forget_cb, desc);
    XtAddCallback(desc->widget, XmNokCallback, vga_close_cb, nullptr);
    XtVaSetValues(desc->widget, XmNcancelButton, XtNameToWidget(desc->widget, "OK"), nullptr);
    for (const VGA_RECORD_LIST &row : find_window(vga_row_of(desc).name)->lists) {
        const size_t number = window->lists.size();
        window->lists.push_back(make_list(*window, row));
        LIST &list = *window->lists.back();
        const VGA_STRING title(vga_form_literal(row.name + std::string("_title")).c_str());
        XtVaSetValues(part_of(*window, "recordGroup", number), XmNlabelString, title.get(),
                      nullptr);
        list.rows = vga_row_list_attach(part_of(*window, "recordPlace", number), &list.plan, &list);
        if (list.rows == nullptr) {
            return 0;
        }
    }
    for (size_t number = window->lists.size(); number < VGA_MOST_RECORD_LISTS; number++) {
        XtUnmanageChild(part_of(*window, "recordPane", number));
    }
    XtVaSetValues(part_of(*window, "recordPane", window->lists.size() - 1), XmNbottomAttachment,
                  XmATTACH_FORM, nullptr);
    vga_set_hint_line(desc->widget, XtNameToWidget(desc->widget, "*recordLine"));
    window->panes = XtNameToWidget(desc->widget, "*recordPanes");
    return 1;
}

NB_VOID vga_record_window_close_proc(VGA_DIALOG *desc) {
    WINDOW &window = window_of(desc);
    window.node = 0;
    stop_timer(window);
    fill(window);
}

/* Of what was added nobody knows whether it belongs here. */
NB_VOID vga_record_window_record_changed(VGA_DIALOG *desc, NB_VOID *item, VGA_RECORD_CHANGE what) {
    WINDOW &window = window_of(desc);
    const bool concerns = what == VGA_RECORD_ADDED || window.shown.contains(item);
    if (item == nba_validate_handle(window.node) && what == VGA_RECORD_GONE) {
        vga_close_children(desc, 1, 1);
    } else if (window.timer == 0 && concerns) {
        window.timer = XtAppAddTimeOut(XtWidgetToApplicationContext(desc->widget),
                                       gather_milliseconds, refill_later, desc);
    }
}

NB_VOID vga_show_record_window(const NB_CHAR *name, VGA_DIALOG *parent, VGA_NODE *node) {
    const VGA_UID_DESC &row = *vga_find_row_named(name);
    VGA_DIALOG *desc = find_open(row, node);
    if (desc != nullptr) {
        vga_raise_with_keyboard(desc);
        return;
    }
    if (vga_get_dialog(row.dialog_id, parent, nullptr, &desc) == 0) {
        return;
    }
    WINDOW &window = window_of(desc);
    window.node = node->handle;
    set_title(desc, *node);
    for (const auto &list : window.lists) {
        vga_row_list_set_read_only(list->rows, gvga_read_only);
    }
    fill(window);
    if (window.least_width == 0) {
        fit_screen(window, XtNameToWidget(desc->widget, "*recordPage"));
    }
    vga_display_dialog(desc);
    vga_row_list_focus(window.lists.front()->rows);
}
