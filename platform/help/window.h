/* The object behind a help dialog: which volume and topic it shows, its history, its links.  What
 * it looks like is its heirs': FullWindow and QuickWindow.
 *
 * The widget owns it and destroys it.  A callback of the program may destroy the widget, so nothing
 * of this is touched behind one. */
#ifndef HELP_WINDOW_H
#define HELP_WINDOW_H

#include "helpclass.h"
#include "manpage.h"
#include "topicview.h"

namespace help {

/* Something that a window showed. */
struct Place {
    bool man_page;
    std::string name; // of the topic or page
    int top;          // pixels scrolled away
};

class Window {
public:
    Window(Widget help_widget, Resources &help_resources);
    Window(const Window &) = delete;
    Window &operator=(const Window &) = delete;
    virtual ~Window() = default;

    /* Shows what the resources say now. */
    void show_resources();

    /* See nb_help_quick_button. */
    virtual Widget quick_button(int) const { return nullptr; }

protected:
    /* A topic was shown: `location` is its name, or one of the locations of every volume. */
    virtual void shown(const std::string &location) = 0;
    virtual void say(const std::string & /*text*/) {}
    /* Gives the keyboard to where an operator begins. */
    virtual void focus() { view->focus(); }

    void start(TopicView &topic_view);    // by the heir, once there is a view
    void set_size(int columns, int rows); // in lines of text, but no larger than the screen
    void go(const std::string &topic);
    void home();
    void step(int by); // through the history
    bool can_step(int by) const;
    void close(XEvent *event);
    void ask_for_window();
    void describe(const std::string &target);
    const char *label(Label which) const { return own.labels[static_cast<size_t>(which)]; }
    Widget button(Widget parent, const char *name, Label text, XtCallbackProc proc);

    Widget widget;
    Resources &own;
    Look look;
    TopicView *view = nullptr;
    Loaded loaded;

private:
    static void on_wm_close(Widget, XtPointer, XtPointer);
    static void on_map(Widget, XtPointer, XEvent *, Boolean *);
    static void on_help(Widget, XtPointer, XtPointer);
    void load();
    void follow(const std::string &target, bool new_window);
    void visit(Place place);
    void show_place();
    void show_topic(const std::string &name, int top);
    void show_page(const std::string &name, int top);
    void show_fault(Label reason, const std::string &detail);
    void call_link(NB_HELP_LINK_KIND kind, const std::string &location);

    std::string volume_name;
    std::vector<Place> history;
    size_t at = 0;
    std::unique_ptr<ManReader> reader;
};

/* Makes the object that fits the resources, with all its widgets. */
Window *make_window(Widget widget, Resources &resources);

/* Frees what the toolkit makes of a text for a label. */
void set_label(Widget widget, const std::string &text);

} // namespace help

#endif
