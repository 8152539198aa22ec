#include "fullwindow.h"
#include "search.h"

#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/PanedW.h>
#include <Xm/RowColumn.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>
#include <algorithm>

namespace help {

namespace {

constexpr int columns = 58, rows = 40, navigation_columns = 20; // in lines of text

struct Pane_Look {
    const char *tab, *list;
    Label text;
};

/* By Pane. */
constexpr Pane_Look panes[] = {
    {"helpContentsTab", "helpContents", Label::contents},
    {"helpIndexTab", "helpIndex", Label::index},
    {"helpSearchTab", "helpSearch", Label::search},
};
static_assert(std::size(panes) == static_cast<size_t>(Pane::count));

} // namespace

FullWindow::FullWindow(Widget help_widget, Resources &help_resources)
    : Window(help_widget, help_resources) {
    make_toolbar();
    status = XtVaCreateManagedWidget("helpStatus", xmLabelWidgetClass, widget, XmNalignment,
                                     XmALIGNMENT_BEGINNING, XmNrecomputeSize, False,
                                     XmNbottomAttachment, XmATTACH_FORM, XmNleftAttachment,
                                     XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, nullptr);
    set_label(status, " ");
    set_size(columns, rows);
    make_body();
    XtVaSetValues(widget, XmNcancelButton, close_button, nullptr);
    start(*topic_view);
    show_pane(Pane::contents);
}

/* The widgets. */

void FullWindow::make_toolbar() {
    const int gap = look.em() / 3;
    toolbar =
        XtVaCreateManagedWidget("helpToolbar", xmFormWidgetClass, widget, XmNtopAttachment,
                                XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment,
                                XmATTACH_FORM, XmNshadowThickness, 0, nullptr);
    Widget row = XtVaCreateManagedWidget(
        "helpButtons", xmRowColumnWidgetClass, toolbar, XmNorientation, XmHORIZONTAL, XmNpacking,
        XmPACK_TIGHT, XmNspacing, gap, XmNmarginWidth, gap, XmNmarginHeight, gap, XmNleftAttachment,
        XmATTACH_FORM, XmNtopAttachment, XmATTACH_FORM, nullptr);
    back_button = button(row, "helpBack", Label::back, [](Widget, XtPointer self, XtPointer) {
        guarded([&] { static_cast<FullWindow *>(self)->step(-1); });
    });
    forward_button =
        button(row, "helpForward", Label::forward, [](Widget, XtPointer self, XtPointer) {
            guarded([&] { static_cast<FullWindow *>(self)->step(1); });
        });
    button(row, "helpHome", Label::home, [](Widget, XtPointer self, XtPointer) {
        guarded([&] { static_cast<FullWindow *>(self)->home(); });
    });
    close_button =
        button(toolbar, "helpClose", Label::close, [](Widget, XtPointer self, XtPointer data) {
            static_cast<FullWindow *>(self)->close(static_cast<XmAnyCallbackStruct *>(data)->event);
        });
    XtVaSetValues(close_button, XmNrightAttachment, XmATTACH_FORM, XmNrightOffset, gap,
                  XmNtopAttachment, XmATTACH_FORM, XmNtopOffset, gap, nullptr);
}

void FullWindow::make_body() {
    body = XtVaCreateManagedWidget("helpBody", xmPanedWindowWidgetClass, widget, XmNorientation,
                                   XmHORIZONTAL, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget,
                                   toolbar, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget,
                                   status, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment,
                                   XmATTACH_FORM, XmNmarginWidth, 0, XmNmarginHeight, 0, nullptr);
    make_navigation();
    topic_view = std::make_unique<TopicView>(body, look);
    XtManageChild(topic_view->widget());
}

void FullWindow::make_navigation() {
    Dimension window_width = 0;
    XtVaGetValues(widget, XmNwidth, &window_width, nullptr);
    navigation =
        XtVaCreateManagedWidget("helpNavigation", xmFormWidgetClass, body, XmNwidth,
                                std::min(navigation_columns * look.em(), window_width * 2 / 5),
                                XmNpaneMinimum, 6 * look.em(), XmNshadowThickness, 0, nullptr);
    Widget tab_row = XtVaCreateManagedWidget(
        "helpTabs", xmRowColumnWidgetClass, navigation, XmNorientation, XmHORIZONTAL,
        XmNradioBehavior, True, XmNpacking, XmPACK_TIGHT, XmNspacing, 0, XmNmarginHeight, 0,
        XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment,
        XmATTACH_FORM, nullptr);
    field_row = XtVaCreateWidget("helpField", xmFormWidgetClass, navigation, XmNtopAttachment,
                                 XmATTACH_WIDGET, XmNtopWidget, tab_row, XmNleftAttachment,
                                 XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, XmNmarginHeight,
                                 look.em() / 4, XmNmarginWidth, look.em() / 4, nullptr);
    Widget find = XtVaCreateManagedWidget("helpFind", xmLabelWidgetClass, field_row,
                                          XmNtopAttachment, XmATTACH_FORM, XmNbottomAttachment,
                                          XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM, nullptr);
    set_label(find, label(Label::find));
    field = XtVaCreateManagedWidget("helpText", xmTextFieldWidgetClass, field_row, XmNtopAttachment,
                                    XmATTACH_FORM, XmNleftAttachment, XmATTACH_WIDGET,
                                    XmNleftWidget, find, XmNleftOffset, look.em() / 4,
                                    XmNrightAttachment, XmATTACH_FORM, nullptr);
    XtAddCallback(
        field, XmNvalueChangedCallback,
        [](Widget, XtPointer self, XtPointer) {
            guarded([&] { static_cast<FullWindow *>(self)->typed(); });
        },
        this);
    XtAddCallback(
        field, XmNactivateCallback,
        [](Widget, XtPointer self, XtPointer) {
            guarded([&] { static_cast<FullWindow *>(self)->follow_field(); });
        },
        this);
    for (size_t ii = 0; ii < pane_count; ii++) {
        tabs[ii] = XtVaCreateManagedWidget(panes[ii].tab, xmToggleButtonWidgetClass, tab_row,
                                           XmNindicatorOn, XmINDICATOR_NONE, XmNshadowThickness, 1,
                                           XmNmarginWidth, look.em() / 2, XmNmarginHeight,
                                           look.em() / 5, XmNfillOnSelect, False, nullptr);
        set_label(tabs[ii], label(panes[ii].text));
        XtAddCallback(tabs[ii], XmNvalueChangedCallback, on_tab, this);
        lists[ii] = std::make_unique<OutlineView>(navigation, panes[ii].list, look);
        lists[ii]->on_choice = [this](const std::string &topic) { go(topic); };
        XtVaSetValues(lists[ii]->widget(), XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, tab_row,
                      XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                      XmNbottomAttachment, XmATTACH_FORM, nullptr);
    }
    list(Pane::search).set_empty_text(label(Label::type_to_search));
}

/* The panes. */

void FullWindow::on_tab(Widget tab, XtPointer self, XtPointer call_data) {
    if (!static_cast<const XmToggleButtonCallbackStruct *>(call_data)->set) {
        return;
    }
    guarded([&] {
        auto *window = static_cast<FullWindow *>(self);
        const auto found = std::find(window->tabs.begin(), window->tabs.end(), tab);
        window->show_pane(static_cast<Pane>(found - window->tabs.begin()));
        if (window->pane == Pane::contents) {
            window->list(Pane::contents).focus();
            return;
        }
        window->typed();
        XmProcessTraversal(window->field, XmTRAVERSE_CURRENT);
        XmTextFieldSetSelection(window->field, 0, XmTextFieldGetLastPosition(window->field),
                                XtLastTimestampProcessed(XtDisplay(tab)));
    });
}

void FullWindow::show_pane(Pane wanted) {
    pane = wanted;
    const bool with_field = pane != Pane::contents;
    for (size_t ii = 0; ii < pane_count; ii++) {
        const bool here = ii == static_cast<size_t>(pane);
        XmToggleButtonSetState(tabs[ii], here, False);
        XtVaSetValues(tabs[ii], XmNforeground,
                      look.colour(here ? Colour::selected_text : Colour::text).pixel, XmNbackground,
                      look.colour(here ? Colour::selection : Colour::panel).pixel, nullptr);
        if (!here) {
            XtUnmanageChild(lists[ii]->widget());
        }
    }
    (with_field ? XtManageChild : XtUnmanageChild)(field_row);
    XtVaSetValues(list(pane).widget(), XmNtopWidget, with_field ? field_row : XtParent(tabs[0]),
                  nullptr);
    XtManageChild(list(pane).widget());
}

void FullWindow::fill_lists() {
    if (listed != loaded.volume) {
        listed = loaded.volume;
        list(Pane::contents).show_entries(listed ? listed->contents : std::vector<Entry>());
        list(Pane::index).show_entries(listed ? listed->index : std::vector<Entry>(), true);
    }
}

void FullWindow::shown(const std::string &location) {
    fill_lists();
    if (location == NB_HELP_INDEX) {
        show_pane(Pane::index);
    } else if (location == NB_HELP_SEARCH) {
        show_pane(Pane::search);
    } else if (location == NB_HELP_HOME) {
        show_pane(Pane::contents);
    }
    list(Pane::contents).select_topic(view->topic().id);
    XtSetSensitive(back_button, can_step(-1));
    XtSetSensitive(forward_button, can_step(1));
}

void FullWindow::focus() {
    if (pane == Pane::contents) {
        Window::focus();
    } else {
        XmProcessTraversal(field, XmTRAVERSE_CURRENT);
    }
}

void FullWindow::say(const std::string &text) {
    set_label(status, text.empty() ? " " : text);
}

/* Index and search. */

std::string FullWindow::query() const {
    char *text = XmTextFieldGetString(field);
    std::string copy = text;
    XtFree(text);
    return copy;
}

void FullWindow::typed() {
    if (pane == Pane::index) {
        list(Pane::index).select_text(query());
    } else if (pane == Pane::search && loaded.volume != nullptr) {
        search();
    }
}

/* Return in the field: what is selected, which is the first of what a search found. */
void FullWindow::follow_field() {
    if (const Entry *entry = list(pane).selection()) {
        go(std::string(entry->topic));
    }
}

void FullWindow::search() {
    std::vector<Entry> found;
    for (const Topic *topic : help::search(*loaded.volume, query())) {
        found.push_back({0, topic->title, topic->id});
    }
    const bool asked = !query_words(query()).empty();
    list(Pane::search).set_empty_text(label(asked ? Label::none_found : Label::type_to_search));
    say(asked ? std::to_string(found.size()) + " " + label(Label::hits) : "");
    list(Pane::search).show_entries(std::move(found));
    list(Pane::search).select_first();
}

} // namespace help
