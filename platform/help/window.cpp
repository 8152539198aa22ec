#include "window.h"
#include "fullwindow.h"
#include "quickwindow.h"

#include <Xm/Protocols.h>
#include <Xm/PushB.h>
#include <algorithm>

namespace help {

namespace {

constexpr char help_on_help[] = "helphelp"; // every volume is to have it
constexpr size_t max_history = 200;
constexpr int least_columns = 40, usual_columns = 72, most_columns = 100;

/* What a target of a link leads to, by its beginning. */
struct Link_Form {
    const char *prefix;
    NB_HELP_LINK_KIND kind;
};

constexpr Link_Form forms[] = {
    {"man:", NB_HELP_LINK_MAN_PAGE},
    {"app:", NB_HELP_LINK_APPLICATION},
    {"+", NB_HELP_LINK_NEW_WINDOW},
};

const Link_Form *form_of(const std::string &target) {
    const auto found = std::find_if(std::begin(forms), std::end(forms), [&](const Link_Form &form) {
        return target.rfind(form.prefix, 0) == 0;
    });
    return found == std::end(forms) ? nullptr : found;
}

Block paragraph(Kind kind, const std::string &text, Style style = Style::plain) {
    return {kind, 0, {{style, "", text}}};
}

} // namespace

void set_label(Widget widget, const std::string &text) {
    const XmString string = XmStringCreateLocalized(const_cast<char *>(text.c_str()));
    XtVaSetValues(widget, XmNlabelString, string, nullptr);
    XmStringFree(string);
}

Window *make_window(Widget widget, Resources &resources) {
    if (resources.quick) {
        return new QuickWindow(widget, resources);
    }
    return new FullWindow(widget, resources);
}

Window::Window(Widget help_widget, Resources &help_resources)
    : widget(help_widget), own(help_resources),
      look(widget, own.text_font, own.fixed_font, own.pixels) {
    Widget shell = XtParent(widget);
    XtVaSetValues(shell, XmNdeleteResponse, XmDO_NOTHING, nullptr);
    const Atom wm_close = XInternAtom(XtDisplay(shell), "WM_DELETE_WINDOW", False);
    XmAddWMProtocolCallback(shell, wm_close, on_wm_close, this);
    XtAddCallback(widget, XmNhelpCallback, on_help, this);
}

void Window::start(TopicView &topic_view) {
    view = &topic_view;
    view->on_link = [this](const std::string &target, bool new_window) {
        follow(target, new_window);
    };
    view->on_hover = [this](const std::string &target) { describe(target); };
    view->other_key = [this](Key key) {
        if (key == Key::back) {
            step(-1);
        }
        return key == Key::back;
    };
    XtAddEventHandler(XtParent(widget), StructureNotifyMask, False, on_map, this);
}

void Window::set_size(int columns, int rows) {
    constexpr int frame_width = 24, frame_height = 72; // the window manager's, and a panel
    const Screen *screen = XtScreen(widget);
    XtVaSetValues(widget, XmNwidth,
                  std::min(columns * look.em(), WidthOfScreen(screen) - frame_width), XmNheight,
                  std::min(rows * look.em(), HeightOfScreen(screen) - frame_height), nullptr);
}

Widget Window::button(Widget parent, const char *name, Label text, XtCallbackProc proc) {
    Widget made =
        XtVaCreateManagedWidget(name, xmPushButtonWidgetClass, parent, XmNmarginWidth,
                                look.em() * 2 / 3, XmNmarginHeight, look.em() / 5, nullptr);
    set_label(made, label(text));
    XtAddCallback(made, XmNactivateCallback, proc, this);
    return made;
}

/* What is shown. */

void Window::load() {
    if (loaded.volume == nullptr || volume_name != own.volume) {
        volume_name = own.volume;
        loaded = read_volume(volume_path(volume_name));
    }
}

void Window::show_resources() {
    load();
    if (own.type == NB_HELP_TYPE_MAN_PAGE) {
        visit({true, own.man_page, 0});
        return;
    }
    visit({false, own.location, 0});
}

void Window::visit(Place place) {
    if (!history.empty()) {
        history[at].top = view->top();
        history.resize(at + 1);
    }
    if (history.size() == max_history) {
        history.erase(history.begin());
    }
    history.push_back(std::move(place));
    at = history.size() - 1;
    show_place();
}

void Window::show_place() {
    const Place place = history[at]; // its name may change: the first topic has one of its own
    reader.reset();
    say("");
    if (place.man_page) {
        show_page(place.name, place.top);
    } else {
        show_topic(place.name, place.top);
    }
    shown(place.name);
}

void Window::show_topic(const std::string &name, int top) {
    if (loaded.volume == nullptr) {
        show_fault(Label::no_help, loaded.fault);
        return;
    }
    const bool first =
        name.empty() || name == NB_HELP_HOME || name == NB_HELP_INDEX || name == NB_HELP_SEARCH;
    const Topic *topic = first ? &loaded.volume->topics.front() : loaded.volume->find(name);
    if (topic == nullptr) {
        show_fault(Label::no_topic, name);
        return;
    }
    history[at].name = topic->id;
    view->show_topic(*topic, top);
}

void Window::show_fault(Label reason, const std::string &detail) {
    Topic topic = {"", label(Label::no_help), {}};
    if (reason != Label::no_help) {
        topic.blocks.push_back(paragraph(Kind::paragraph, label(reason)));
    }
    topic.blocks.push_back(paragraph(Kind::note, detail, Style::strong));
    view->show_topic(std::move(topic), 0);
}

void Window::show_page(const std::string &name, int top) {
    view->show_topic({"", name, {paragraph(Kind::paragraph, label(Label::reading_page))}}, 0);
    Dimension width = 0;
    XtVaGetValues(view->area(), XmNwidth, &width, nullptr);
    const int character = std::max(look.width(Font::fixed, "m"), 1);
    const int fitting = (width - 3 * look.em()) / character;
    const int columns = !XtIsRealized(view->area())
                            ? usual_columns
                            : std::clamp(fitting, least_columns, most_columns);
    const auto done = [this, name, top](const std::string &output) {
        if (output.empty()) {
            show_fault(Label::no_page, name);
        } else {
            view->show_topic(man_topic(name, output), top);
        }
    };
    reader = std::make_unique<ManReader>(XtWidgetToApplicationContext(widget), parse_man_name(name),
                                         columns, done);
}

/* Moving about. */

void Window::go(const std::string &topic) {
    const Place &now = history[at];
    if (now.man_page || now.name != topic) {
        visit({false, topic, 0});
    }
}

void Window::home() {
    visit({false, NB_HELP_HOME, 0});
}

bool Window::can_step(int by) const {
    return by < 0 ? at > 0 : at + 1 < history.size();
}

void Window::step(int by) {
    if (can_step(by)) {
        history[at].top = view->top();
        at = by < 0 ? at - 1 : at + 1;
        show_place();
    }
}

void Window::describe(const std::string &target) {
    const Link_Form *form = form_of(target);
    if (form == nullptr) {
        const Topic *topic = loaded.volume != nullptr ? loaded.volume->find(target) : nullptr;
        say(topic != nullptr ? topic->title : "");
        return;
    }
    const std::string rest = target.substr(std::string_view(form->prefix).size());
    if (form->kind == NB_HELP_LINK_NEW_WINDOW) {
        say(std::string(label(Label::new_window)) + " " + rest);
    } else if (form->kind == NB_HELP_LINK_MAN_PAGE) {
        say(std::string(label(Label::manual_page)) + " " + rest);
    }
}

void Window::follow(const std::string &target, bool new_window) {
    const Link_Form *form = form_of(target);
    const std::string rest =
        form != nullptr ? target.substr(std::string_view(form->prefix).size()) : target;
    const bool asked = form == nullptr && new_window;
    if ((form != nullptr || asked) && own.hyper_callback != nullptr) {
        call_link(asked ? NB_HELP_LINK_NEW_WINDOW : form->kind, rest);
    } else if (form == nullptr || form->kind == NB_HELP_LINK_NEW_WINDOW) {
        go(rest);
    } else if (form->kind == NB_HELP_LINK_MAN_PAGE) {
        visit({true, rest, 0});
    }
}

/* To the program. */

void Window::call_link(NB_HELP_LINK_KIND kind, const std::string &location) {
    const std::string volume = volume_name, where = location; // this may go in the call
    NB_HELP_CALLBACK data = {NB_HELP_LINK, nullptr, volume.c_str(), where.c_str(), kind};
    XtCallCallbackList(widget, own.hyper_callback, &data);
}

void Window::ask_for_window() {
    if (own.hyper_callback != nullptr) {
        call_link(NB_HELP_LINK_NEW_WINDOW, history[at].name);
    }
}

void Window::close(XEvent *event) {
    XtPopdown(XtParent(widget));
    NB_HELP_CALLBACK data = {NB_HELP_CLOSED, event, nullptr, nullptr, 0};
    XtCallCallbackList(widget, own.close_callback, &data);
}

/* Before the window is there nothing in it can be given the keyboard. */
void Window::on_map(Widget shell, XtPointer window, XEvent *event, Boolean *) {
    if (event->type == MapNotify) {
        XtRemoveEventHandler(shell, StructureNotifyMask, False, on_map, window);
        static_cast<Window *>(window)->focus();
    }
}

void Window::on_wm_close(Widget, XtPointer window, XtPointer call_data) {
    static_cast<Window *>(window)->close(static_cast<XmAnyCallbackStruct *>(call_data)->event);
}

void Window::on_help(Widget, XtPointer window, XtPointer) {
    guarded([&] { static_cast<Window *>(window)->go(help_on_help); });
}

} // namespace help
