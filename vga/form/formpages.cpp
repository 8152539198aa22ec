#include "fieldchecks.h"
#include "fieldwidgets.h"
#include "form.h"
#include "formparts.h"
#include "globals.h"
#include "hints.h"
#include "holders.h"
#include "messages.h"
#include "toolkit.h"
#include "widgets.h"
#include <Xm/ScrolledW.h>
#include <Xm/TabStack.h>
#include <algorithm>
#include <cstdlib>
#include <ctime>

namespace {

/* Pages are scrolled windows, "<name>Page1" and so on, with a column of fields in each. */
Widget page_of(const VGA_FORM *form, NB_USHORT page) {
    return page < form->plan->pages
               ? vga_form_part(form, ("Page" + std::to_string(page + 1)).c_str())
               : vga_form_part(form, "SummaryPage");
}

NB_USHORT page_count(const VGA_FORM *form) {
    return static_cast<NB_USHORT>(form->plan->pages +
                                  (form->plan->kind == VGA_FORM_GUIDED ? 1 : 0));
}

struct SIZE {
    int width = 0, height = 0;
};

SIZE wanted_size(Widget widget) {
    XtWidgetGeometry wanted = {};
    XtQueryGeometry(widget, nullptr, &wanted);
    return {wanted.width, wanted.height};
}

Widget content_of(Widget page) {
    Widget content = nullptr;
    XtVaGetValues(page, XmNworkWindow, &content, nullptr);
    return content;
}

/* Every page is as large as the largest. */
SIZE largest_page(const VGA_FORM *form) {
    SIZE largest;
    for (NB_USHORT page = 0; page < page_count(form); page++) {
        const SIZE size = wanted_size(content_of(page_of(form, page)));
        largest.width = std::max(largest.width, size.width);
        largest.height = std::max(largest.height, size.height);
    }
    return largest;
}

NB_VOID set_page_sizes(const VGA_FORM *form, const SIZE &size) {
    for (NB_USHORT page = 0; page < page_count(form); page++) {
        XtVaSetValues(page_of(form, page), XmNwidth, static_cast<Dimension>(size.width), XmNheight,
                      static_cast<Dimension>(size.height), nullptr);
    }
}

/* A scrolled window takes keys from the fields in it; those that move in a text are theirs. */
NB_VOID give_keys_back(Widget page) {
    Widget clip = nullptr;
    XtVaGetValues(page, XmNclipWindow, &clip, nullptr);
    XtUninstallTranslations(clip);
    XtAugmentTranslations(clip,
                          XtParseTranslationTable(":<Key>osfPageUp: ActionGrab(SWUpPage)\n"
                                                  ":<Key>osfPageDown: ActionGrab(SWDownPage)"));
}

/* Without it the keyboard could not go to what is scrolled out of view. */
NB_VOID show_field_cb(Widget page, XtPointer, XtPointer call_data) {
    constexpr Dimension around = 8; /* pixels */
    const auto *obscured = static_cast<const XmTraverseObscuredCallbackStruct *>(call_data);
    XmScrollVisible(page, obscured->traversal_destination, around, around);
}

/* The summary of a guided form: what was entered, a line a field. */
NB_VOID write_summary(const VGA_FORM *form) {
    std::string text;
    for (NB_USHORT field = 0; field < form->plan->fields.size(); field++) {
        if (vga_form_field_of_use(form, field) != 0) {
            text += (text.empty() ? "" : "\n") + vga_form_label(form, field) + ": " +
                    vga_form_field_text(form, field);
        }
    }
    const VGA_STRING string(text.c_str());
    XtVaSetValues(vga_form_part(form, "Summary"), XmNlabelString, string.get(), nullptr);
}

/* Where the operator goes on: the page's first field, and on the summary the button. */
NB_VOID focus_page(VGA_FORM *form) {
    for (NB_USHORT field = 0; field < form->plan->fields.size(); field++) {
        if (form->plan->fields[field].page == form->page &&
            vga_form_field_editable(form, field) != 0) {
            vga_focus_field(vga_form_focus_of(form, field));
            return;
        }
    }
    vga_focus_field(XtNameToWidget(form->common.widget, "OK"));
}

NB_VOID show_guided_page(VGA_FORM *form, NB_USHORT page) {
    for (NB_USHORT other = 0; other < page_count(form); other++) {
        (other == page ? XtManageChild : XtUnmanageChild)(page_of(form, other));
    }
    form->page = page;
    const bool last = page == form->plan->pages;
    if (last) {
        write_summary(form);
    }
    const VGA_STRING label(
        vga_message(last || form->read_only != 0 ? VGA_MSG_FORM_OK : VGA_MSG_FORM_NEXT));
    XtVaSetValues(form->common.widget, XmNokLabelString, label.get(), nullptr);
    vga_set_sensitive(form->back_button, page > 0);
    focus_page(form);
}

NB_VOID back_cb(Widget widget, XtPointer, XtPointer) {
    VGA_FORM *form = vga_form_of_widget(widget);
    if (form != nullptr && form->page > 0) {
        show_guided_page(form, static_cast<NB_USHORT>(form->page - 1));
    }
}

/* Status forms. */

/* What it shows stays of use meanwhile, and the keyboard where it is. */
NB_VOID ask(VGA_FORM *form) {
    if (form->pending != 0 || vga_form_record(form) == nullptr) {
        return;
    }
    form->pending = 1;
    if (form->plan->refresh(form) == 0) {
        form->pending = 0;
        VGA_EXIT(VGA_EXIT_INTERNAL, 0);
    }
}

NB_VOID refresh_cb(Widget widget, XtPointer, XtPointer) {
    if (VGA_FORM *form = vga_form_of_widget(widget)) {
        vga_form_ask_anew(form);
    }
}

/* The items of the option menu are named after their seconds; the first says "never". */
NB_ULONG seconds_of(const VGA_FORM *form) {
    Widget chosen = nullptr;
    if (form->period != nullptr) {
        XtVaGetValues(form->period, XmNmenuHistory, &chosen, nullptr);
    }
    const std::string before = std::string(vga_form_name(form)) + "Period";
    return chosen != nullptr ? strtoul(XtName(chosen) + before.size(), nullptr, 10) : 0;
}

NB_VOID set_timer(VGA_FORM *form);

NB_VOID time_out(XtPointer data, XtIntervalId *) {
    auto *form = static_cast<VGA_FORM *>(data);
    form->timer = 0;
    set_timer(form);
    ask(form);
}

NB_VOID set_timer(VGA_FORM *form) {
    if (form->timer != 0) {
        XtRemoveTimeOut(form->timer);
        form->timer = 0;
    }
    if (const NB_ULONG seconds = seconds_of(form)) {
        form->timer = XtAppAddTimeOut(gvga_appcontext, seconds * 1000, time_out, form);
    }
}

NB_VOID period_cb(Widget widget, XtPointer, XtPointer) {
    if (VGA_FORM *form = vga_form_of_widget(widget)) {
        set_timer(form);
    }
}

NB_VOID watch_period(VGA_FORM *form) {
    Widget menu = nullptr;
    WidgetList items = nullptr;
    Cardinal count = 0;
    XtVaGetValues(form->period, XmNsubMenuId, &menu, nullptr);
    XtVaGetValues(menu, XmNchildren, &items, XmNnumChildren, &count, nullptr);
    for (Cardinal item = 0; item < count; item++) {
        XtAddCallback(items[item], XmNactivateCallback, period_cb, nullptr);
    }
}

} // namespace

NB_VOID vga_form_find_pages(VGA_FORM *form) {
    form->back_button = vga_form_part(form, "BackButton");
    form->refresh_button = vga_form_part(form, "RefreshButton");
    form->period = vga_form_part(form, "Period");
    for (NB_USHORT page = 0; page < page_count(form); page++) {
        give_keys_back(page_of(form, page));
        XtAddCallback(page_of(form, page), XmNtraverseObscuredCallback, show_field_cb, nullptr);
    }
    if (form->back_button != nullptr) {
        XtAddCallback(form->back_button, XmNactivateCallback, back_cb, nullptr);
    }
    if (form->refresh_button != nullptr) {
        XtAddCallback(form->refresh_button, XmNactivateCallback, refresh_cb, nullptr);
    }
    if (form->period != nullptr) {
        watch_period(form);
    }
}

/* A page as high as its fields may be higher than the screen: then it is scrolled. */
NB_VOID vga_form_fit_pages(VGA_FORM *form) {
    constexpr int bar = 24, edge = 64; /* pixels: a scroll bar; what a window manager adds */
    const SIZE full = largest_page(form);
    set_page_sizes(form, full);
    vga_reserve_hint_line(form->common.widget);
    const int over = wanted_size(form->common.widget).height + edge - HeightOfScreen(gvga_screen);
    if (over > 0) {
        set_page_sizes(form, {full.width + bar, std::max(full.height - over, full.height / 4)});
    }
    if (form->plan->kind == VGA_FORM_GUIDED) {
        show_guided_page(form, 0);
    }
}

NB_VOID vga_form_show_page(VGA_FORM *form, NB_USHORT page) {
    if (form->plan->kind == VGA_FORM_GUIDED) {
        show_guided_page(form, page);
    } else if (vga_form_part(form, "Pages") != nullptr) {
        XmTabStackSelectTab(page_of(form, page), False);
    }
}

NB_VOID vga_form_say(VGA_FORM *form, const NB_CHAR *text) {
    const NB_CHAR *at_rest = form->refusal != 0 ? vga_message(form->refusal) : " ";
    vga_set_line_text(form->message_line, text[0] != '\0' ? text : at_rest);
}

NB_USHORT vga_form_next_page(VGA_FORM *form) {
    if (form->page == form->plan->pages) {
        return 0;
    }
    if (const VGA_FAULT fault = vga_form_collect(form, static_cast<NB_SHORT>(form->page))) {
        vga_form_refuse(form, fault);
        return 1;
    }
    show_guided_page(form, static_cast<NB_USHORT>(form->page + 1));
    return 1;
}

NB_VOID vga_form_ask_anew(VGA_FORM *form) {
    vga_form_say_waiting(form);
    ask(form);
}

NB_VOID vga_form_say_when(VGA_FORM *form) {
    NB_CHAR clock[64], text[200] = "";
    struct tm parts;
    if (form->as_of != 0 && localtime_r(&form->as_of, &parts) != nullptr) {
        strftime(clock, sizeof(clock), "%X", &parts);
        vga_print_msg(text, sizeof(text), VGA_MSG_FORM_AS_OF, "s", clock);
    }
    vga_form_say(form, text);
}

NB_VOID vga_form_refreshed(VGA_FORM *form) {
    form->as_of = time(nullptr);
    vga_form_reload(form);
    vga_form_say_when(form);
}

NB_VOID vga_form_stop_asking(VGA_FORM *form) {
    Widget menu = nullptr;
    WidgetList items = nullptr;
    if (form->period != nullptr) {
        XtVaGetValues(form->period, XmNsubMenuId, &menu, nullptr);
        XtVaGetValues(menu, XmNchildren, &items, nullptr);
        XtVaSetValues(form->period, XmNmenuHistory, items[0], nullptr);
        set_timer(form);
    }
}
