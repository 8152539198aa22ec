/* The tables that the build makes of the windows' descriptions (resources/windows). */
#include "dialogids.h"
#include "globals.h"
#include "listwindow.h"
#include "messages.h"
#include "windows.h"
#include "windows.inc"
#include <cstring>

const VGA_LISTW_PLAN *vga_find_plan(const NB_CHAR *name) {
    for (const VGA_LISTW_PLAN *plan : plans) {
        if (strcmp(plan->prefix, name) == 0) {
            return plan;
        }
    }
    return nullptr;
}
