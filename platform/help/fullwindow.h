/* The full help window: contents, index and search on the left, the topic on the right. */
#ifndef HELP_FULLWINDOW_H
#define HELP_FULLWINDOW_H

#include "outline.h"
#include "window.h"

namespace help {

enum class Pane { contents, index, search, count };

class FullWindow : public Window {
public:
    FullWindow(Widget help_widget, Resources &help_resources);

private:
    static constexpr size_t pane_count = static_cast<size_t>(Pane::count);

    void shown(const std::string &location) override;
    void say(const std::string &text) override;
    void focus() override;
    void make_toolbar();
    void make_body();
    void make_navigation();
    void show_pane(Pane pane);
    void fill_lists();
    void typed();
    void search();
    void follow_field();
    std::string query() const;
    OutlineView &list(Pane pane) { return *lists[static_cast<size_t>(pane)]; }
    static void on_tab(Widget, XtPointer, XtPointer);

    Widget toolbar = nullptr, status = nullptr, body = nullptr, navigation = nullptr;
    Widget back_button = nullptr, forward_button = nullptr, close_button = nullptr;
    Widget field_row = nullptr, field = nullptr;
    std::array<Widget, pane_count> tabs{};
    std::array<std::unique_ptr<OutlineView>, pane_count> lists;
    std::unique_ptr<TopicView> topic_view;
    std::shared_ptr<const Volume> listed; // whose contents and index the lists show
    Pane pane = Pane::contents;
};

} // namespace help

#endif
