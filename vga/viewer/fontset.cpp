#include "graphics.h"
#include "messages.h"
#include "resourcereader.h"
#include "toolkit.h"
#include <Xm/Xm.h>
#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

struct FONT_SET_TRY {
    XFontSet set;
    bool complete;
};

FONT_SET_TRY make_font_set(Display *display, const NB_CHAR *pattern) {
    if (pattern[0] == '\0') {
        return {}; // Xlib frees what it has not made
    }
    NB_CHAR **missing = nullptr, *default_string;
    NB_INT missing_count = 0;
    const XFontSet set =
        XCreateFontSet(display, pattern, &missing, &missing_count, &default_string);
    if (missing != nullptr) {
        XFreeStringList(missing);
    }
    return {set, set != nullptr && missing_count == 0};
}

NB_VOID free_font_set(Display *display, XFontSet set) {
    if (set != nullptr) {
        XFreeFontSet(display, set);
    }
}

bool is_fixed_pitch(Display *display, XFontSet set) {
    XFontStruct **fonts;
    NB_CHAR **names;
    const NB_INT count = XFontsOfFontSet(set, &fonts, &names);
    bool fixed = true;
    for (NB_INT i = 0; i < count && fixed; ++i) {
        XFontStruct *font = XLoadQueryFont(display, names[i]);
        fixed = font != nullptr && font->min_bounds.width == font->max_bounds.width;
        if (font != nullptr) {
            XFreeFont(display, font);
        }
    }
    return fixed;
}

/* The first font set of the widget's font list; it stays the toolkit's. */
XFontSet font_set_of_list(Widget widget) {
    XmFontList list = nullptr;
    XtVaGetValues(widget, XmNfontList, &list, nullptr);
    XmFontContext context;
    if (list == nullptr || !XmFontListInitFontContext(&context, list)) {
        return nullptr;
    }
    XFontSet set = nullptr;
    XmFontListEntry entry;
    while (set == nullptr && (entry = XmFontListNextEntry(context)) != nullptr) {
        XmFontType type = XmFONT_IS_FONT;
        XtPointer font = XmFontListEntryGetFont(entry, &type);
        set = type == XmFONT_IS_FONTSET ? static_cast<XFontSet>(font) : nullptr;
    }
    XmFontListFreeFontContext(context);
    return set;
}

/* A set of our own with the widget's fonts, which may go before ours. */
XFontSet copy_of_widget_fonts(Widget widget) {
    const XFontSet set = font_set_of_list(widget);
    if (set == nullptr || (MB_CUR_MAX == 1 && !is_fixed_pitch(XtDisplay(widget), set))) {
        return nullptr;
    }
    return make_font_set(XtDisplay(widget), XBaseFontNameListOfFontSet(set)).set;
}

} // namespace

NB_VOID vga_enlarge_default_font(Display *display, NB_INT scale) {
    constexpr NB_INT height = 18; /* pixels at 96 dots an inch */
    NB_CHAR named[129];
    if (scale == 1 || vga_get_resource_string("*fontName", "", named, sizeof(named) - 1) != 0) {
        return;
    }
    const std::string pattern =
        "-misc-fixed-medium-r-normal--" + std::to_string(height * scale) + "-*-*-*-*-*-*-*";
    const FONT_SET_TRY found = make_font_set(display, pattern.c_str());
    if (found.complete) {
        XrmDatabase dense = nullptr;
        XrmPutStringResource(&dense, VGA_CLASS "*fontName", pattern.c_str());
        XrmCombineDatabase(dense, &gvga_resource_database, False);
    }
    free_font_set(display, found.set);
}

XFontSet vga_load_fixed_fontset(const NB_CHAR *resource_name, const NB_CHAR *default_pattern,
                                NB_USHORT message_number, Widget widget) {
    if (const XFontSet own = copy_of_widget_fonts(widget)) {
        return own;
    }
    Display *const display = XtDisplay(widget);
    NB_CHAR named[129];
    if (vga_get_resource_string(resource_name, "", named, sizeof(named) - 1) != 0) {
        const FONT_SET_TRY found = make_font_set(display, named);
        if (!found.complete) {
            XtAppWarning(
                gvga_appcontext,
                vga_message(found.set != nullptr ? VGA_MSG_FONT_PARTIAL : VGA_MSG_FONT_NOT_FOUND));
        }
        if (found.set != nullptr) {
            return found.set;
        }
    }
    XFontSet partial = nullptr;
    for (const NB_CHAR *pattern : {vga_message(message_number), default_pattern}) {
        const FONT_SET_TRY found = make_font_set(display, pattern);
        if (found.set == nullptr) {
            continue;
        }
        if (found.complete) {
            free_font_set(display, partial);
            return found.set;
        }
        if (partial == nullptr) {
            partial = found.set;
        } else {
            free_font_set(display, found.set);
        }
    }
    XtAppWarning(gvga_appcontext, vga_message(partial != nullptr ? VGA_MSG_FONT_DEFAULT_PARTIAL
                                                                 : VGA_MSG_FONT_NONE));
    return partial;
}
