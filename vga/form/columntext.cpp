#include "columntext.h"

#include <algorithm>
#include <cstdlib>

namespace {

XmRenderTable fonts_of(Widget widget) {
    XmRenderTable fonts = nullptr;
    XtVaGetValues(widget, XmNrenderTable, &fonts, nullptr);
    return fonts;
}

/* The bytes of the text without its last character. */
size_t shorter(const std::string &text) {
    size_t length = 0;
    for (size_t at = 0; at < text.size();) {
        const int bytes = mblen(text.c_str() + at, text.size() - at);
        length = at;
        at += bytes > 0 ? static_cast<size_t>(bytes) : 1;
    }
    return length;
}

} // namespace

NB_VOID vga_set_column_stops(Widget widget, const std::vector<NB_USHORT> &stops) {
    std::vector<XmTab> tabs;
    NB_CHAR decimal[] = ".";
    for (const NB_USHORT stop : stops) {
        tabs.push_back(XmTabCreate(static_cast<float>(stop), XmPIXELS, XmABSOLUTE,
                                   XmALIGNMENT_BEGINNING, decimal));
    }
    XmTabList list =
        XmTabListInsertTabs(nullptr, tabs.data(), static_cast<Cardinal>(tabs.size()), 0);
    std::for_each(tabs.begin(), tabs.end(), XmTabFree);

    /* The stops are the fonts' in this toolkit: a copy of the widget's table gets them. */
    XmRenderTable table = XmRenderTableCopy(fonts_of(widget), nullptr, 0);
    XmStringTag *tags = nullptr;
    const int count = XmRenderTableGetTags(table, &tags);
    for (int ii = 0; ii < count; ii++) {
        XmRendition rendition = XmRenderTableGetRendition(table, tags[ii]);
        Arg args[1];
        XtSetArg(args[0], XmNtabList, list);
        XmRenditionUpdate(rendition, args, 1);
        table = XmRenderTableAddRenditions(table, &rendition, 1, XmMERGE_REPLACE);
        XmRenditionFree(rendition);
        XtFree(tags[ii]);
    }
    XtFree(reinterpret_cast<NB_CHAR *>(tags));
    XtVaSetValues(widget, XmNrenderTable, table, nullptr);
    XmRenderTableFree(table);
    XmTabListFree(list);
}

VGA_STRING vga_column_text(std::span<const std::string> cells) {
    XmString row = nullptr;
    for (std::string cell : cells) {
        std::replace(cell.begin(), cell.end(), '\n', ' ');
        if (row != nullptr) {
            row = XmStringConcatAndFree(
                row, XmStringComponentCreate(XmSTRING_COMPONENT_TAB, 0, nullptr));
        }
        row = XmStringConcatAndFree(row, VGA_STRING(cell.c_str()).release());
    }
    return VGA_STRING(row);
}

NB_USHORT vga_text_width(Widget widget, const std::string &text) {
    return XmStringWidth(fonts_of(widget), VGA_STRING(text.c_str()).get());
}

std::string vga_cut_text(Widget widget, const std::string &text, NB_USHORT width) {
    std::string cut = text, shown = text;
    while (!cut.empty() && vga_text_width(widget, shown) > width) {
        cut.resize(shorter(cut));
        shown = cut + "...";
    }
    return shown;
}
