#include "holders.h"
#include "toolkit.h"

NB_VOID vga_no_warning(String) {}

VGA_NO_WARNINGS::VGA_NO_WARNINGS()
    : previous(XtAppSetWarningHandler(gvga_appcontext, vga_no_warning)) {}

VGA_NO_WARNINGS::~VGA_NO_WARNINGS() {
    XtAppSetWarningHandler(gvga_appcontext, previous);
}
