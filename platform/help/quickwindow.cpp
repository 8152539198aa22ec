#include "quickwindow.h"

#include <Xm/Form.h>
#include <Xm/RowColumn.h>

namespace help {

namespace {

constexpr int columns = 36, rows = 22; // of the window, in lines of text

} // namespace

QuickWindow::QuickWindow(Widget help_widget, Resources &help_resources)
    : Window(help_widget, help_resources), topic_view(widget, look) {
    Widget row = XtVaCreateManagedWidget("helpButtons", xmRowColumnWidgetClass, widget,
                                         XmNorientation, XmHORIZONTAL, XmNpacking, XmPACK_TIGHT,
                                         XmNspacing, look.em() / 2, XmNmarginWidth, look.em() / 2,
                                         XmNmarginHeight, look.em() / 2, XmNbottomAttachment,
                                         XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, nullptr);
    buttons[NB_HELP_QUICK_CLOSE] =
        button(row, "helpClose", Label::close, [](Widget, XtPointer self, XtPointer data) {
            static_cast<QuickWindow *>(self)->close(
                static_cast<XmAnyCallbackStruct *>(data)->event);
        });
    buttons[NB_HELP_QUICK_BACK] =
        button(row, "helpBack", Label::back, [](Widget, XtPointer self, XtPointer) {
            guarded([&] { static_cast<QuickWindow *>(self)->step(-1); });
        });
    buttons[NB_HELP_QUICK_WINDOW] =
        button(row, "helpWindow", Label::window, [](Widget, XtPointer self, XtPointer) {
            guarded([&] { static_cast<QuickWindow *>(self)->ask_for_window(); });
        });
    buttons[NB_HELP_QUICK_MORE] =
        button(row, "helpMore", Label::more, [](Widget, XtPointer self, XtPointer) {
            guarded([&] { static_cast<QuickWindow *>(self)->home(); });
        });
    XtVaSetValues(topic_view.widget(), XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment,
                  XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment,
                  XmATTACH_WIDGET, XmNbottomWidget, row, nullptr);
    XtManageChild(topic_view.widget());
    XtVaSetValues(widget, XmNcancelButton, buttons[NB_HELP_QUICK_CLOSE], nullptr);
    set_size(columns, rows);
    start(topic_view);
}

Widget QuickWindow::quick_button(int which) const {
    return which >= 0 && which <= NB_HELP_QUICK_MORE ? buttons[static_cast<size_t>(which)]
                                                     : nullptr;
}

void QuickWindow::shown(const std::string &) {
    XtSetSensitive(buttons[NB_HELP_QUICK_BACK], can_step(-1));
}

} // namespace help
