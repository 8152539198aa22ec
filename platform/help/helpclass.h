/* The widget class of help dialogs: a form whose instance record holds the resources and the C++
 * object that does the work.  Full and quick dialogs are of one class and differ in that object. */
#ifndef HELP_HELPCLASS_H
#define HELP_HELPCLASS_H

#include "help.h"
#include "look.h"

namespace help {

class Window;

/* Every text that the library itself shows, as a resource: row of the table in helpclass.cpp. */
enum class Label {
    back,
    forward,
    home,
    close,
    contents,
    index,
    search,
    window,
    more,
    find,
    none_found,
    type_to_search,
    hits,
    no_help,
    no_topic,
    no_page,
    reading_page,
    new_window,
    manual_page,
    count
};
constexpr size_t label_count = static_cast<size_t>(Label::count);

struct Resources {
    String volume, location, man_page;
    unsigned char type;
    XtCallbackList close_callback, hyper_callback;
    String text_font, fixed_font;
    std::array<Pixel, colour_count> pixels;
    std::array<String, label_count> labels;
    Boolean quick;
    Window *window;
};

/* The resources of a help dialog; null for another widget. */
Resources *resources_of(Widget widget);

} // namespace help

#endif
