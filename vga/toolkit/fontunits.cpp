#include "fontunits.h"
#include "holders.h"
#include "toolkit.h"
#include <Xm/Label.h>
#include <Xm/Screen.h>
#include <algorithm>

namespace {

/* The lists have a font of their own, so a small one in dialogs must not make their window small.
 */
constexpr NB_INT least_unit = 8;

/* Pixels of a line of dialog text; 0 when its font cannot be had.  A label finds the font as every
 * dialog does, whichever resource names it. */
NB_INT line_height(Widget shell) {
    const VGA_NO_WARNINGS quiet;
    Widget label = XtVaCreateWidget("label", xmLabelWidgetClass, shell, nullptr);
    XmRenderTable fonts = nullptr;
    XtVaGetValues(label, XmNrenderTable, &fonts, nullptr);
    const VGA_STRING line("Mg");
    const NB_INT height = fonts != nullptr ? XmStringHeight(fonts, line.get()) : 0;
    XtDestroyWidget(label);
    return height;
}

/* The name of the program in front makes them win over every render table of the application
 * defaults. */
NB_VOID use_server_fonts(NB_VOID) {
    XrmPutStringResource(&gvga_resource_database, VGA_CLASS "*renderTable.fontType",
                         "FONT_IS_FONTSET");
    XrmPutStringResource(&gvga_resource_database, VGA_CLASS "*renderTable.fontName",
                         "-misc-fixed-medium-r-normal--14-*-*-*-*-*-*-*,fixed");
}

} // namespace

NB_VOID vga_set_font_units(Widget shell) {
    NB_INT height = line_height(shell);
    if (height == 0) {
        use_server_fonts();
        height = line_height(shell);
    }
    const NB_INT unit = std::max(height / 2, least_unit);
    XtVaSetValues(XmGetXmScreen(XtScreen(shell)), XmNhorizontalFontUnit, unit, XmNverticalFontUnit,
                  unit, nullptr);
}
