#include "marks.h"
#include "holders.h"
#include "resourcereader.h"
#include "toolkit.h"
#include "vgadgutl.h"
#include <Xm/Label.h>
#include <fnmatch.h>
#include <map>
#include <utility>

namespace {

constexpr NB_USHORT longest = 1000; /* bytes of the resource */

std::map<const VGA_DIALOG *, VGA_MARK> marks;
std::map<const VGA_DIALOG *, std::string> nodes; /* names, of all windows that have one */

/* What labels look like without a mark: background and foreground. */
std::map<Widget, std::pair<Pixel, Pixel>> plain;

NB_VOID forget_label(Widget label, XtPointer, XtPointer) {
    plain.erase(label);
}

std::string trimmed(const std::string &text) {
    const size_t from = text.find_first_not_of(" \t");
    return from == std::string::npos ? std::string()
                                     : text.substr(from, text.find_last_not_of(" \t") + 1 - from);
}

/* The colour that the resource names for a node; empty: none. */
std::string colour_of(const NB_CHAR *node_name) {
    NB_CHAR value[longest + 1];
    if (vga_get_resource_string(".nodeColours", "", value, longest) == 0) {
        return {};
    }
    const std::string pairs = std::string(value) + ",";
    for (size_t from = 0, end; (end = pairs.find(',', from)) != std::string::npos; from = end + 1) {
        const std::string pair = pairs.substr(from, end - from);
        const size_t middle = pair.find('=');
        if (middle != std::string::npos &&
            fnmatch(trimmed(pair.substr(0, middle)).c_str(), node_name, 0) == 0) {
            return trimmed(pair.substr(middle + 1));
        }
    }
    return {};
}

bool find_pixel(const std::string &colour, Pixel *pixel) {
    XrmValue from = {static_cast<unsigned>(colour.size() + 1),
                     const_cast<XPointer>(colour.c_str())};
    XrmValue to = {sizeof(*pixel), reinterpret_cast<XPointer>(pixel)};
    return XtConvertAndStore(gvga_toplevel, XmRString, &from, XmRPixel, &to) != 0;
}

} // namespace

NB_VOID vga_set_mark(const VGA_DIALOG *window, const NB_CHAR *node_name) {
    marks.erase(window);
    nodes[window] = node_name;
    const std::string colour = *node_name != '\0' ? colour_of(node_name) : std::string();
    VGA_MARK mark = {node_name, 0, 0};
    if (colour.empty() || !find_pixel(colour, &mark.background)) {
        return;
    }
    Colormap colours = None;
    XtVaGetValues(window->widget, XmNcolormap, &colours, nullptr);
    XmGetColors(gvga_screen, colours, mark.background, &mark.foreground, nullptr, nullptr, nullptr);
    marks.emplace(window, mark);
}

std::string vga_marked_node(const VGA_DIALOG *dialog) {
    for (; dialog != nullptr; dialog = dialog->parent) {
        const auto found = nodes.find(dialog);
        if (found != nodes.end()) {
            return found->second;
        }
    }
    return {};
}

const VGA_MARK *vga_mark_of(const VGA_DIALOG *dialog) {
    for (; dialog != nullptr; dialog = dialog->parent) {
        const auto found = marks.find(dialog);
        if (found != marks.end()) {
            return &found->second;
        }
    }
    return nullptr;
}

NB_VOID vga_show_mark(Widget label, const VGA_MARK *mark, const NB_CHAR *text) {
    std::string line = mark != nullptr ? mark->name : std::string();
    line += line.empty() || text == nullptr || *text == '\0' ? "" : "    ";
    line += text != nullptr ? text : "";
    VGA_STRING string(line.c_str());
    XtVaSetValues(label, XmNlabelString, string.get(), nullptr);
    const auto [own, is_new] = plain.try_emplace(label);
    if (is_new) {
        XtVaGetValues(label, XmNbackground, &own->second.first, XmNforeground, &own->second.second,
                      nullptr);
        XtAddCallback(label, XmNdestroyCallback, forget_label, nullptr);
    }
    XtVaSetValues(label, XmNbackground, mark != nullptr ? mark->background : own->second.first,
                  XmNforeground, mark != nullptr ? mark->foreground : own->second.second, nullptr);
}

NB_VOID vga_mark_form(Widget last, const VGA_MARK *mark) {
    Widget label = XtNameToWidget(XtParent(last), "messageMark");
    if (mark == nullptr) {
        XtVaSetValues(last, XmNbottomAttachment, XmATTACH_FORM, nullptr);
        if (label != nullptr) {
            XtUnmanageChild(label);
        }
        return;
    }
    if (label == nullptr) {
        label =
            XtVaCreateWidget("messageMark", xmLabelWidgetClass, XtParent(last), XmNleftAttachment,
                             XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment,
                             XmATTACH_FORM, XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
    }
    vga_show_mark(label, mark, nullptr);
    XtManageChild(label);
    XtVaSetValues(last, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, label, nullptr);
}
