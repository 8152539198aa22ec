#include "vgalook.h"
#include "vgaxt.h"
#include <Xm/Label.h>
#include <Xm/Screen.h>
#include <algorithm>

NB_VOID vga_set_font_units(Widget shell) {
    /* A label finds the font as every dialog does, whichever resource names it. */
    Widget label = XtVaCreateWidget("label", xmLabelWidgetClass, shell, nullptr);
    XmRenderTable fonts = nullptr;
    XtVaGetValues(label, XmNrenderTable, &fonts, nullptr);
    const VGA_STRING line("Mg");
    const NB_INT unit = std::max<NB_INT>(XmStringHeight(fonts, line.get()) / 2, 1);
    XtDestroyWidget(label);
    XtVaSetValues(XmGetXmScreen(XtScreen(shell)), XmNhorizontalFontUnit, unit, XmNverticalFontUnit,
                  unit, nullptr);
}
