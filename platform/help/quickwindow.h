/* Quick help: one topic and a row of buttons. */
#ifndef HELP_QUICKWINDOW_H
#define HELP_QUICKWINDOW_H

#include "window.h"

namespace help {

class QuickWindow : public Window {
public:
    QuickWindow(Widget help_widget, Resources &help_resources);
    Widget quick_button(int which) const override;

private:
    void shown(const std::string &location) override;

    TopicView topic_view;
    std::array<Widget, NB_HELP_QUICK_MORE + 1> buttons{};
};

} // namespace help

#endif
