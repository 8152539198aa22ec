#include "hooks.h"

VGA_HOOKS gvga_hooks;

NB_VOID vga_record_changed(NB_VOID *item, VGA_RECORD_CHANGE what) {
    if (gvga_hooks.record_changed != nullptr) {
        gvga_hooks.record_changed(item, what);
    }
}
