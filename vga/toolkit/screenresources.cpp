#include "screenresources.h"
#include "messages.h"
#include "toolkit.h"

static constexpr NB_INT small_screen_height = 480;

NB_VOID vga_add_screen_resources(Screen *screen, XrmDatabase *database) {
    XrmDatabase added = nullptr;
    if (HeightOfScreen(screen) <= small_screen_height) {
        XrmPutStringResource(&added, VGA_CLASS "*marginHeight", "0");
        XrmPutStringResource(&added, VGA_CLASS "*fontList", vga_message(VGA_MSG_SMALL_SCREEN_FONT));
    }
    /* Soft edges are mixed with what a letter stands on, which the server can only do where a pixel
     * says its colour; of others it would make black ones. */
    if (DefaultVisualOfScreen(screen)->c_class != TrueColor) {
        XrmPutStringResource(&added, "Xft.render", "False");
        XrmPutStringResource(&added, "Xft.antialias", "False");
    }
    XrmCombineDatabase(added, database, False);
}
