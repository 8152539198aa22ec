/* Lists in a form: the items within the first record of its working data, which a child form edits
 * one by one. */
#include "entry.h"
#include "fieldwidgets.h"
#include "form.h"
#include "formparts.h"
#include "nesteditems.h"
#include "rowlist.h"
#include <cstring>
#include <memory>

namespace {

/* What one list of one form needs for as long as the program runs, as its form does. */
struct LIST {
    VGA_FORM *form;
    const VGA_FORM_LIST *row;
    std::vector<std::string> titles;
    std::vector<VGA_ROW_COLUMN> columns;
    VGA_ROW_LIST_PLAN plan;
    VGA_ROW_LIST *rows;
};

std::vector<std::unique_ptr<LIST>> lists;

NB_UCHAR *entry_of(const LIST &list) {
    return static_cast<NB_UCHAR *>(vga_form_working(list.form));
}

NB_ULONG count(NB_VOID *context) {
    const LIST &list = *static_cast<LIST *>(context);
    return records::item_count(*list.row->items, entry_of(list));
}

std::string text(NB_VOID *context, NB_ULONG row, NB_USHORT column) {
    const LIST &list = *static_cast<LIST *>(context);
    const records::FieldRow &field = *list.row->columns[column].field;
    return vga_shown_word(field, records::item_text(*list.row->items, entry_of(list), row, field));
}

NB_VOID edit(NB_VOID *context, NB_ULONG row) {
    const LIST &list = *static_cast<LIST *>(context);
    vga_form_open_item(list.form, list.row, static_cast<NB_LONG>(row));
}

NB_VOID add(NB_VOID *context) {
    edit(context, count(context));
}

NB_VOID remove(NB_VOID *context, NB_ULONG row) {
    const LIST &list = *static_cast<LIST *>(context);
    if (records::remove_item(*list.row->items, entry_of(list), row)) {
        vga_form_working_changed(list.form);
    }
}

NB_VOID forget_cb(Widget, XtPointer data, XtPointer) {
    std::erase_if(lists, [data](const auto &list) { return list.get() == data; });
}

std::unique_ptr<LIST> make_list(VGA_FORM *form, const VGA_FORM_LIST &row) {
    auto list = std::make_unique<LIST>();
    list->form = form;
    list->row = &row;
    for (const VGA_FORM_COLUMN &column : row.columns) {
        list->titles.push_back(vga_form_literal(column.title));
    }
    for (size_t at = 0; at < row.columns.size(); at++) {
        list->columns.push_back({list->titles[at].c_str(), row.columns[at].width});
    }
    list->plan = {.columns = list->columns,
                  .most = static_cast<NB_USHORT>(row.items->most),
                  .count = count,
                  .text = text,
                  .add = add,
                  .change = edit,
                  .remove = remove};
    return list;
}

} // namespace

NB_VOID vga_form_attach_lists(VGA_FORM *form) {
    /* Of a form that was freed and lay in the same memory. */
    std::erase_if(lists, [form](const auto &list) { return list->form == form; });
    for (const VGA_FORM_LIST &row : form->plan->lists) {
        lists.push_back(make_list(form, row));
        LIST &list = *lists.back();
        Widget place = *static_cast<Widget *>(vga_form_data(form, row.member));
        list.rows = vga_row_list_attach(place, &list.plan, &list);
        XtAddCallback(place, XmNdestroyCallback, forget_cb, &list);
    }
}

NB_VOID vga_form_fill_lists(VGA_FORM *form) {
    for (const auto &list : lists) {
        if (list->form == form) {
            vga_row_list_set_read_only(list->rows, form->read_only);
            vga_row_list_refill(list->rows);
        }
    }
}

NB_VOID vga_form_load_item(const VGA_FORM *form, NB_VOID *data) {
    const VGA_FORM *parent = vga_form_of(form->common.parent);
    const records::Nested &items = *form->list->items;
    const auto *entry = static_cast<const NB_UCHAR *>(vga_form_working(parent));
    const NB_UCHAR *item = records::item_at(items, entry, static_cast<NB_ULONG>(form->item));
    if (item != nullptr) {
        memcpy(data, item, items.size);
    } else {
        records::set_initial_fields(items.fields, static_cast<NB_UCHAR *>(data));
    }
}

/* An item is called by its first field. */
NB_USHORT vga_form_item_is_taken(const VGA_FORM *form) {
    const VGA_FORM *parent = vga_form_of(form->common.parent);
    const records::Nested &items = *form->list->items;
    const records::FieldRow &name = items.fields.front();
    const auto *entry = static_cast<const NB_UCHAR *>(vga_form_working(parent));
    const auto *wanted = static_cast<const NB_UCHAR *>(vga_form_wanted(form));
    const std::string text = records::format_field(name, wanted);
    for (NB_ULONG at = 0; at < records::item_count(items, entry); at++) {
        if (static_cast<NB_LONG>(at) != form->item &&
            records::item_text(items, entry, at, name) == text) {
            return 1;
        }
    }
    return 0;
}

NB_VOID vga_form_accept_item(VGA_FORM *form) {
    VGA_FORM *parent = vga_form_of(form->common.parent);
    const records::Nested &items = *form->list->items;
    auto *entry = static_cast<NB_UCHAR *>(vga_form_working(parent));
    const auto *item = static_cast<const NB_UCHAR *>(vga_form_wanted(form));
    const auto number = static_cast<NB_ULONG>(form->item);
    if (NB_UCHAR *place = records::item_at(items, entry, number)) {
        memcpy(place, item, items.size);
    } else {
        records::append_item(items, entry, item);
    }
    vga_form_working_changed(parent);
    for (const auto &list : lists) {
        if (list->form == parent && list->row == form->list) {
            vga_row_list_select(list->rows, number);
        }
    }
}
