#include "fieldletters.h"
#include "holders.h"
#include "libraryleaks.h"
#include <Xm/Column.h>
#include <Xm/Label.h>
#include <Xm/LabelG.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/ScrolledW.h>
#include <Xm/TabStack.h>
#include <Xm/ToggleB.h>
#include <algorithm>
#include <unordered_map>

namespace {

NB_CHAR letter_rendition[] = "letter";

/* A page has no label of its own to hold the letter of its tab. */
std::unordered_map<Widget, NB_CHAR> tabs;

bool is_tab_page(Widget widget) {
    return XmIsTabStack(XtParent(widget)) && !XmIsPrimitive(widget) &&
           !vga_label_text(widget, XmNtabLabelString).empty();
}

bool is_page(Widget widget) {
    return XmIsScrolledWindow(widget) || is_tab_page(widget);
}

bool is_menu(Widget widget) {
    unsigned char type = XmWORK_AREA;
    if (XmIsRowColumn(widget)) {
        XtVaGetValues(widget, XmNrowColumnType, &type, nullptr);
    }
    return type != XmWORK_AREA && type != XmMENU_OPTION;
}

/* A label, or a value beside its unit. */
bool only_shows(Widget widget) {
    unsigned char type = XmMENU_OPTION;
    if (XmIsRowColumn(widget)) {
        XtVaGetValues(widget, XmNrowColumnType, &type, nullptr);
    }
    const std::vector<Widget> parts = vga_children_of(widget);
    const bool has_label = XmIsLabel(widget) || XmIsLabelGadget(widget);
    return (has_label && !XmIsPushButton(widget) && !XmIsToggleButton(widget)) ||
           (type == XmWORK_AREA && std::all_of(parts.begin(), parts.end(), only_shows));
}

/* What carries the letter of `widget`, which is no field then: null.  A button whose text has no
 * letter, such as that of a chooser, is found but gets none. */
Widget label_of(Widget widget) {
    if (XmIsToggleButton(widget) || XmIsPushButton(widget)) {
        return widget;
    }
    if (!XmIsColumn(XtParent(widget)) || only_shows(widget)) {
        return nullptr;
    }
    const std::string name = std::string(XtName(widget)) + "_label";
    return XtNameToWidget(XtParent(widget), name.c_str());
}

/* Calls `visit` with each field and what carries its letter; pages are left out unless `enter` says
 * that they are of interest.  `visit` returns true to end the walk. */
template <class Enter, class Visit>
bool walk(Widget parent, const Enter &enter, const Visit &visit) {
    for (Widget child : vga_children_of(parent)) {
        Widget label = label_of(child);
        if (label != nullptr && visit(child, label)) {
            return true;
        }
        if (!is_menu(child) && (!is_page(child) || enter(child)) && walk(child, enter, visit)) {
            return true;
        }
    }
    return false;
}

NB_VOID collect_pages(Widget parent, std::vector<Widget> &pages) {
    for (Widget child : vga_children_of(parent)) {
        if (is_page(child)) {
            pages.push_back(child);
        }
        collect_pages(child, pages);
    }
}

/* Tabs. */

NB_VOID forget_tab(Widget page, XtPointer, XtPointer) {
    tabs.erase(page);
}

/* The string in three parts, the middle one underlined.  The others have a rendition, too, though
 * no table has it and they look as without: the toolkit frees a text twice in which a rendition
 * ends and none begins. */
NB_VOID underline_tab(Widget page, const std::string &text, size_t at) {
    static NB_CHAR plain[] = "plain";
    struct PART {
        std::string text;
        NB_CHAR *rendition;
    };
    XmString whole = nullptr;
    for (const PART &part :
         {PART{text.substr(0, at), plain}, PART{text.substr(at, 1), letter_rendition},
          PART{text.substr(at + 1), plain}}) {
        if (!part.text.empty()) {
            whole = XmStringConcatAndFree(
                whole, XmStringGenerate(const_cast<NB_CHAR *>(part.text.c_str()), nullptr,
                                        XmMULTIBYTE_TEXT, part.rendition));
        }
    }
    XtVaSetValues(page, XmNtabLabelString, whole, nullptr);
    XmStringFree(whole);
}

/* A table of its own with one rendition more: a copy of a table has a count that nobody sets. */
NB_VOID prepare_stack(Widget stack) {
    const VGA_LIBRARY_LEAKS known; /* a table of eight bytes, once a dialog */
    XmRenderTable fonts = nullptr;
    XtVaGetValues(stack, XmNrenderTable, &fonts, nullptr);
    XmStringTag *tags = nullptr;
    const int count = XmRenderTableGetTags(fonts, &tags);
    std::vector<XmRendition> renditions;
    for (int at = 0; at < count; at++) {
        renditions.push_back(XmRenderTableGetRendition(fonts, tags[at]));
        XtFree(tags[at]);
    }
    XtFree(reinterpret_cast<NB_CHAR *>(tags));
    Arg args[2];
    XtSetArg(args[0], XmNunderlineType, XmSINGLE_LINE);
    XtSetArg(args[1], XmNfontName, XmAS_IS); /* not that of the lists: it has the text's */
    const VGA_NO_WARNINGS quiet;             /* that there is none */
    renditions.push_back(XmRenditionCreate(stack, letter_rendition, args, std::size(args)));
    fonts = XmRenderTableAddRenditions(nullptr, renditions.data(),
                                       static_cast<Cardinal>(renditions.size()), XmMERGE_NEW);
    XtVaSetValues(stack, XmNrenderTable, fonts, nullptr); /* not copied: the stack frees it */
    for (XmRendition rendition : renditions) {
        XmRenditionFree(rendition);
    }
}

NB_VOID give_tab_letter(Widget page, VGA_LETTERS &taken) {
    const std::string text = vga_label_text(page, XmNtabLabelString);
    const size_t at = vga_choose_letter(text, taken);
    if (at == std::string::npos) {
        return;
    }
    underline_tab(page, text, at);
    XtRemoveCallback(page, XmNdestroyCallback, forget_tab, nullptr); /* once */
    XtAddCallback(page, XmNdestroyCallback, forget_tab, nullptr);
    tabs[page] = vga_as_letter(static_cast<NB_UCHAR>(text[at]));
}

/* The keyboard. */

/* The first part of a field or page that can have the keyboard gets it. */
bool focus_on(Widget widget) {
    if (XmIsTraversable(widget) && XmProcessTraversal(widget, XmTRAVERSE_CURRENT)) {
        return true;
    }
    for (Widget child : vga_children_of(widget)) {
        if (XtIsManaged(child) && focus_on(child)) {
            return true;
        }
    }
    return false;
}

NB_VOID go_to_page(Widget page) {
    XmTabStackSelectTab(page, True);
    focus_on(page);
}

NB_VOID go_to_field(Widget field, XEvent *event) {
    focus_on(field);
    if (XmIsToggleButton(field) || XmIsPushButton(field)) {
        vga_push_button(field, event);
    }
}

bool shows(Widget page) {
    return XtIsManaged(page) &&
           (!is_tab_page(page) || XmTabStackGetSelectedTab(XtParent(page)) == page);
}

Widget stack_below(Widget widget) {
    for (Widget child : vga_children_of(widget)) {
        Widget stack = XmIsTabStack(child) ? child : stack_below(child);
        if (stack != nullptr && XtIsManaged(stack)) {
            return stack;
        }
    }
    return nullptr;
}

} // namespace

NB_VOID vga_give_field_letters(Widget box, VGA_LETTERS &taken) {
    const auto never = [](Widget) { return false; };
    std::vector<Widget> pages;
    collect_pages(box, pages);
    Widget stack = nullptr;
    for (Widget page : pages) {
        if (is_tab_page(page)) {
            if (stack != XtParent(page)) {
                stack = XtParent(page);
                prepare_stack(stack);
            }
            give_tab_letter(page, taken);
        }
    }
    const auto give = [](Widget parent, VGA_LETTERS &letters, const auto &enter) {
        walk(parent, enter, [&letters, parent](Widget field, Widget label) {
            if (XtParent(field) != parent || !XmIsPushButton(field)) { /* the box's have theirs */
                vga_give_letter(label, letters);
            }
            return false;
        });
    };
    give(box, taken, never);
    for (Widget page : pages) {
        VGA_LETTERS here = taken;
        give(page, here, never);
    }
}

NB_VOID vga_go_to_letter(Widget box, NB_CHAR letter, XEvent *event) {
    std::vector<Widget> pages;
    collect_pages(box, pages);
    for (Widget page : pages) {
        const auto tab = tabs.find(page);
        if (tab != tabs.end() && tab->second == letter && XtIsManaged(page)) {
            go_to_page(page);
            return;
        }
    }
    walk(box, shows, [letter, event](Widget field, Widget label) {
        const bool meant = vga_letter_of(label) == letter && XtIsManaged(field) &&
                           XtIsManaged(XtParent(field)) && XtIsSensitive(field);
        if (meant) {
            go_to_field(field, event);
        }
        return meant;
    });
}

NB_VOID vga_turn_page(Widget box, NB_INT step) {
    Widget stack = stack_below(box);
    if (stack == nullptr) {
        return;
    }
    std::vector<Widget> pages = vga_children_of(stack);
    std::erase_if(pages, [](Widget page) { return !is_tab_page(page) || !XtIsManaged(page); });
    const Widget shown = XmTabStackGetSelectedTab(stack);
    const auto count = static_cast<NB_INT>(pages.size());
    for (NB_INT at = 0; at < count; at++) {
        if (pages[static_cast<size_t>(at)] == shown) {
            go_to_page(pages[static_cast<size_t>((at + step + count) % count)]);
            return;
        }
    }
}
