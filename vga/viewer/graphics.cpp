#include "graphics.h"
#include "dotscale.h"
#include "globals.h"
#include "holders.h"
#include "listfont.h"
#include "messages.h"
#include "nbproblem.h"
#include "resourcereader.h"
#include "statemarks.h"
#include "toolkit.h"
#include <Xm/Screen.h>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

const NB_CHAR *const gvga_pixmap_names[VGA_ICON_COUNT] = {
    "plus",      "minus",     "port",       "portsdlc", "porttr",     "portx25",   "ls",
    "lshost",    "lsdown",    "lspeer",     "pu",       "lu03",       "dlu",       "lu62",
    "blank",     "user",      "pool",       "cpic",     "mode",       "node",      "portether",
    "portfddi",  "rjew",      "ludisp",     "lurje",    "luprint",    "lsimpl",    "remsysd",
    "remsys",    "remplud",   "remplu",     "remsysf",  "disp3270",   "print3270", "disp5250",
    "print5250", "usergroup", "tnclient",   "convsec",  "sesssec",    "dlurport",  "remplua",
    "start",     "startins",  "stop",       "stopins",  "zoom",       "zoomins",   "add",
    "addins",    "del",       "delins",     "copy",     "copyins",    "terminal",  "key",
    "status",    "statusins", "poollu03",   "lu3270",   "lu5250",     "v5",        "backnode",
    "portfr",    "portescon", "portblkmux", "tnassoc",  "rtpconn",    "lsrt",      "lsr",
    "adddflt",   "deldflt",   "addrmap",    "portmap",  "gateway",    "snackets",  "appcip",
    "acclist",   "tpdef",     "tpload",     "portmpc",  "tnredirect", "portip",    "portmpcplus",
    "ludispsec"};

Pixmap gvga_pixmaps[VGA_ICON_COUNT];
Pixmap gvga_inverted_pixmaps[VGA_ICON_COUNT];
GC gvga_normal_gc, gvga_inverted_gc, gvga_outline_gc;
XFontSet gvga_viewer_fontset;
NB_ULONG gvga_viewer_char_width, gvga_viewer_char_ascent, gvga_viewer_char_descent,
    gvga_viewer_item_height, gvga_viewer_indent_width, gvga_viewer_icon_width,
    gvga_viewer_icon_height, gvga_viewer_expand_icon_width, gvga_viewer_expand_icon_height,
    gvga_viewer_icon_y, gvga_viewer_expand_icon_y, gvga_viewer_text_y;

namespace {

constexpr NB_CHAR default_fonts[] = "-misc-fixed-*-*-*-*-*-*-*-*-*-*-*-*";
constexpr NB_INT small_screen = 1024; // pixels of its width
constexpr double small_points = 9;    // of the scalable font beside small icons
constexpr double points_of_dialogs = 10;
constexpr NB_ULONG indent_columns = 8; // character widths that a level is indented by

Display *graphics_display;
XFontStruct *gc_font; // of gvga_normal_gc, when there is no font set

struct COLOURS {
    Colormap map;
    Pixel foreground, background, top_shadow, bottom_shadow;
};

/* The icon size: what the file and icon names end in, and the message that names the font. */
struct ICON_SET {
    NB_CHAR suffix[21];
    NB_USHORT font_message;
    bool chosen; // by the user
};

COLOURS read_colours(Widget widget) {
    COLOURS colours = {};
    XtVaGetValues(widget, XmNcolormap, &colours.map, XmNforeground, &colours.foreground,
                  XmNbackground, &colours.background, nullptr);
    Pixel foreground, select;
    XmGetColors(XtScreen(widget), colours.map, colours.background, &foreground, &colours.top_shadow,
                &colours.bottom_shadow, &select);
    return colours;
}

NB_VOID set_size(ICON_SET *set, bool big) {
    snprintf(set->suffix, sizeof(set->suffix), "%s", big ? vga_message(VGA_MSG_BIG_SUFFIX) : "");
    set->font_message = big ? VGA_MSG_BIG_FONT : VGA_MSG_SMALL_FONT;
}

ICON_SET choose_size(Screen *screen) {
    ICON_SET set = {};
    set_size(&set, WidthOfScreen(screen) > small_screen);
    NB_CHAR size[31];
    if (vga_get_resource_string("*size", "", size, 30) != 0) {
        if (strcmp(size, "small") == 0 || strcmp(size, "big") == 0) {
            set_size(&set, size[0] == 'b');
            set.chosen = true;
        } else {
            XtAppWarning(gvga_appcontext, vga_message(VGA_MSG_BAD_SIZE));
        }
    }
    NB_CHAR suffix[sizeof(set.suffix)];
    if (vga_get_resource_string(".iconSize", "", suffix, sizeof(suffix) - 1) != 0 &&
        suffix[0] != '\0') {
        strcpy(set.suffix, suffix);
        set.chosen = true;
    }
    return set;
}

NB_VOID make_contexts(Widget widget, const COLOURS &colours) {
    XGCValues values;
    values.foreground = colours.foreground;
    values.background = colours.background;
    values.graphics_exposures = False;
    const Window root = RootWindowOfScreen(XtScreen(widget));
    const NB_ULONG common = GCForeground | GCBackground | GCGraphicsExposures;
    gvga_normal_gc = XCreateGC(graphics_display, root, common, &values);
    std::swap(values.foreground, values.background);
    gvga_inverted_gc = XCreateGC(graphics_display, root, common, &values);
    values.function = GXxor;
    values.foreground = colours.background ^ colours.foreground;
    values.line_style = LineOnOffDash;
    values.dashes = 1;
    gvga_outline_gc = XCreateGC(
        graphics_display, root,
        GCFunction | GCForeground | GCLineStyle | GCDashList | GCGraphicsExposures, &values);
}

/* An icon file, closed at the end of its life. */
class ICON_FILE {
public:
    ICON_FILE() = default;
    ICON_FILE(const ICON_FILE &) = delete;
    ICON_FILE &operator=(const ICON_FILE &) = delete;
    ~ICON_FILE() {
        if (hierarchy != nullptr) {
            MrmCloseHierarchy(hierarchy);
        }
    }

    bool open(const NB_CHAR *suffix) {
        NB_CHAR name[40];
        snprintf(name, sizeof(name), "icons%s.uid", suffix);
        String names[] = {name};
        const VGA_NO_WARNINGS quiet;
        return MrmOpenHierarchyPerDisplay(graphics_display, 1, names, nullptr, &hierarchy) ==
               MrmSUCCESS;
    }

    bool fetch(const NB_CHAR *name, Screen *screen, const COLOURS &colours, Pixmap *pixmap) {
        const VGA_NO_WARNINGS quiet;
        return MrmFetchIconLiteral(hierarchy, const_cast<String>(name), screen, graphics_display,
                                   colours.foreground, colours.background, pixmap) == MrmSUCCESS;
    }

    bool fetch_bitmap(const NB_CHAR *name, Screen *screen, Pixmap *bitmap) {
        const VGA_NO_WARNINGS quiet;
        Dimension width, height;
        return MrmFetchBitmapLiteral(hierarchy, const_cast<String>(name), screen, graphics_display,
                                     bitmap, &width, &height) == MrmSUCCESS;
    }

private:
    MrmHierarchy hierarchy = nullptr;
};

bool open_icons(ICON_FILE *file, ICON_SET *set) {
    if (file->open(set->suffix)) {
        return true;
    }
    if (set->suffix[0] != '\0') {
        set->suffix[0] = '\0';
        if (file->open("")) {
            if (set->chosen) {
                XtAppWarning(gvga_appcontext, vga_message(VGA_MSG_NO_BIG_ICONS));
            }
            return true;
        }
    }
    nba_pd_print_problem(NB_PD_UID_FILE, NB_PD_UID_FILE_ICONS, nullptr);
    VGA_EXIT(VGA_EXIT_START_UP, 0);
    return false;
}

/* As the text of dialogs, but only where there is room for all that stands beside it. */
NB_INT list_scale(Screen *screen) {
    const NB_INT most = std::max(WidthOfScreen(screen) / small_screen, 1);
    return std::min(vga_dot_scale(screen), most);
}

/* The icons for more dots an inch, the largest first: from which font unit (fontunits.h) on, if the
 * screen is as wide as that. */
struct DENSE_ICONS {
    const NB_CHAR *suffix;
    NB_INT font_unit, screen_width;
};
constexpr DENSE_ICONS dense_icons[] = {{"large", 16, 2 * small_screen},
                                       {"medium", 12, small_screen * 3 / 2}};

/* Screens with many dots an inch get icons to match, unless a size was chosen. */
NB_VOID add_dense_screen_resources(Screen *screen) {
    NB_CHAR size[31];
    if (vga_get_resource_string("*size", "", size, sizeof(size) - 1) != 0) {
        return;
    }
    NB_INT unit = 0;
    XtVaGetValues(XmGetXmScreen(screen), XmNverticalFontUnit, &unit, nullptr);
    for (const DENSE_ICONS &row : dense_icons) {
        if (unit >= row.font_unit && WidthOfScreen(screen) >= row.screen_width) {
            XrmDatabase dense = nullptr;
            XrmPutStringResource(&dense, VGA_CLASS ".iconSize", row.suffix);
            XrmCombineDatabase(dense, &gvga_resource_database, False);
            return;
        }
    }
}

/* How many pixels one of an icon takes: of those for more dots an inch it is one, where the other
 * icons would take two. */
NB_INT icon_scale(Screen *screen, const ICON_SET &set) {
    const bool dense =
        std::any_of(std::begin(dense_icons), std::end(dense_icons),
                    [&](const DENSE_ICONS &row) { return strcmp(row.suffix, set.suffix) == 0; });
    return dense ? std::max(list_scale(screen) / 2, 1) : list_scale(screen);
}

bool fetch_icons(ICON_FILE *file, const ICON_SET &set, Screen *screen, const COLOURS &colours) {
    struct FORM {
        const NB_CHAR *ending;
        Pixmap *pixmaps;
        NB_USHORT problem;
    } const forms[] = {{"", gvga_pixmaps, NB_PD_WINDOW_ICON},
                       {"i", gvga_inverted_pixmaps, NB_PD_WINDOW_SELECTED_ICON}};
    const NB_INT scale = icon_scale(screen, set);
    for (NB_USHORT icon = 0; icon < VGA_ICON_COUNT; ++icon) {
        NB_ASSERT(strlen(gvga_pixmap_names[icon]) < VGA_MAX_ICON_NAME);
        for (const FORM &form : forms) {
            NB_CHAR name[VGA_MAX_ICON_NAME + sizeof(set.suffix) + 8];
            snprintf(name, sizeof(name), "%s%s_icon%s", gvga_pixmap_names[icon], set.suffix,
                     form.ending);
            if (!file->fetch(name, screen, colours, &form.pixmaps[icon])) {
                nba_pd_print_problem(NB_PD_WINDOW, form.problem, "s", name);
                return false;
            }
            form.pixmaps[icon] = vga_enlarge_pixmap(screen, form.pixmaps[icon], scale);
        }
    }
    return true;
}

/* Whoever names a font of the server gets that, and so does a locale whose application defaults
 * name none that is scalable. */
bool open_scalable_font(Widget widget, const ICON_SET &set) {
    NB_CHAR name[129];
    if (vga_get_resource_string("*fontName", "", name, sizeof(name) - 1) != 0 ||
        vga_get_resource_string("*viewerFont", "", name, sizeof(name) - 1) == 0 ||
        name[0] == '\0') {
        return false;
    }
    const double points = set.suffix[0] == '\0' ? small_points : points_of_dialogs;
    return vga_open_list_font(widget, name, points) != 0;
}

/* The colour that a resource names; the foreground where it names none. */
Pixel colour_of(const NB_CHAR *resource, const COLOURS &colours) {
    NB_CHAR name[31];
    XColor colour;
    return vga_get_resource_string(resource, "", name, sizeof(name) - 1) != 0 &&
                   XParseColor(graphics_display, colours.map, name, &colour) != 0 &&
                   XAllocColor(graphics_display, colours.map, &colour) != 0
               ? colour.pixel
               : colours.foreground;
}

/* A file of a site's own icons may have no marks: the icons then stand alone. */
NB_VOID fetch_marks(ICON_FILE *file, const ICON_SET &set, Screen *screen, const COLOURS &colours) {
    const NB_INT scale = icon_scale(screen, set);
    for (NB_UCHAR state = VGA_LINE_NO_STATE + 1; state < VGA_LINE_STATES; ++state) {
        const VGA_STATE_MARK_NAMES &mark = gvga_state_marks[state];
        NB_CHAR name[VGA_MAX_ICON_NAME + sizeof(set.suffix) + 8];
        snprintf(name, sizeof(name), "%s%s_icon", mark.icon, set.suffix);
        COLOURS inked = colours;
        inked.foreground = colour_of(mark.colour, colours);
        Pixmap picture, mask;
        if (!file->fetch(name, screen, inked, &picture)) {
            return;
        }
        strcat(name, "i");
        if (!file->fetch_bitmap(name, screen, &mask)) {
            XFreePixmap(graphics_display, picture);
            return;
        }
        vga_set_state_mark(graphics_display, static_cast<VGA_LINE_STATE>(state),
                           vga_enlarge_pixmap(screen, picture, scale),
                           vga_enlarge_pixmap(screen, mask, scale));
    }
}

VGA_VIEWER_ICON_SIZE size_of(Pixmap pixmap) {
    Window root;
    NB_INT x, y;
    unsigned width = 0, height = 0, border, depth;
    XGetGeometry(graphics_display, pixmap, &root, &x, &y, &width, &height, &border, &depth);
    return {width, height};
}

VGA_VIEWER_FONT_SIZE size_of_font() {
    VGA_VIEWER_FONT_SIZE size = {};
    if (vga_list_font_size(&size) != 0) {
        return size;
    }
    if (gvga_viewer_fontset != nullptr) {
        XFontStruct **fonts;
        NB_CHAR **names;
        const NB_INT num_fonts = XFontsOfFontSet(gvga_viewer_fontset, &fonts, &names);
        NB_ASSERT(num_fonts > 0);
        for (NB_INT i = 0; i < num_fonts; ++i) {
            size.ascent = std::max<NB_ULONG>(size.ascent, fonts[i]->ascent);
            size.descent = std::max<NB_ULONG>(size.descent, fonts[i]->descent);
        }
    } else {
        gc_font = XQueryFont(graphics_display, XGContextFromGC(gvga_normal_gc));
        if (gc_font != nullptr) {
            size.ascent = static_cast<NB_ULONG>(gc_font->ascent);
            size.descent = static_cast<NB_ULONG>(gc_font->descent);
        }
    }
    size.width = vga_viewer_measure("W", 1);
    return size;
}

} // namespace

NB_USHORT vga_init_graphics(Widget widget, Widget font_widget) {
    graphics_display = XtDisplay(widget);
    Screen *const screen = XtScreen(widget);
    const COLOURS colours = read_colours(widget);
    add_dense_screen_resources(screen);
    ICON_SET set = choose_size(screen);
    if (!open_scalable_font(widget, set)) {
        vga_enlarge_default_font(graphics_display, list_scale(screen));
    }
    gvga_viewer_fontset =
        vga_load_fixed_fontset("*fontName", default_fonts, set.font_message, font_widget);
    make_contexts(widget, colours);

    ICON_FILE file;
    if (!open_icons(&file, &set) || !fetch_icons(&file, set, screen, colours)) {
        return 0;
    }
    fetch_marks(&file, set, screen, colours);
    if (PlanesOfScreen(screen) == 1 && BlackPixelOfScreen(screen) == colours.foreground) {
        std::swap(gvga_pixmaps, gvga_inverted_pixmaps);
    }
    for (const Pixmap *pixmaps : {gvga_pixmaps, gvga_inverted_pixmaps}) {
        for (const NB_USHORT icon : {VGA_ICON_PLUS, VGA_ICON_MINUS}) {
            vga_swap_shadows(pixmaps[icon], colours.top_shadow, colours.bottom_shadow);
        }
    }
    const VGA_VIEWER_FONT_SIZE font = size_of_font();
    const VGA_VIEWER_ICON_SIZE icon = size_of(gvga_pixmaps[VGA_ICON_CONVSEC]);
    const VGA_VIEWER_ICON_SIZE expand_icon = size_of(gvga_pixmaps[VGA_ICON_PLUS]);
    vga_set_viewer_metrics(&font, &icon, &expand_icon);
    return 1;
}

NB_VOID vga_free_pixmaps(NB_VOID) {
    vga_free_state_marks();
    for (Pixmap *pixmaps : {gvga_pixmaps, gvga_inverted_pixmaps}) {
        for (NB_USHORT icon = 0; icon < VGA_ICON_COUNT; ++icon) {
            if (pixmaps[icon] != 0) {
                XFreePixmap(graphics_display, pixmaps[icon]);
                pixmaps[icon] = 0;
            }
        }
    }
}

NB_VOID vga_free_graphics(NB_VOID) {
    vga_free_pixmaps();
    for (GC *gc : {&gvga_normal_gc, &gvga_inverted_gc, &gvga_outline_gc}) {
        if (*gc != nullptr) {
            XFreeGC(graphics_display, *gc);
            *gc = nullptr;
        }
    }
    vga_close_list_font();
    if (gvga_viewer_fontset != nullptr) {
        XFreeFontSet(graphics_display, gvga_viewer_fontset);
        gvga_viewer_fontset = nullptr;
    }
    if (gc_font != nullptr) {
        XFreeFontInfo(nullptr, gc_font, 1);
        gc_font = nullptr;
    }
}

NB_ULONG vga_viewer_measure(const NB_CHAR *text, NB_INT length) {
    NB_INT width = 0;
    VGA_VIEWER_FONT_SIZE size;
    if (vga_list_font_size(&size) != 0) {
        return vga_list_font_measure(text, length);
    }
    if (gvga_viewer_fontset != nullptr) {
        width = XmbTextEscapement(gvga_viewer_fontset, text, length);
    } else if (gc_font != nullptr) {
        width = XTextWidth(gc_font, text, length);
    }
    return static_cast<NB_ULONG>(std::max(width, 0));
}

NB_VOID vga_swap_shadows(Pixmap pixmap, Pixel top_shadow, Pixel bottom_shadow) {
    const VGA_VIEWER_ICON_SIZE size = size_of(pixmap);
    if (size.width < 2 || size.height < 2) {
        return;
    }
    const short bottom = static_cast<short>(size.height - 1);
    const short right = std::min(static_cast<short>(size.width - 1), bottom);
    XGCValues values;
    values.foreground = bottom_shadow;
    const GC gc = XCreateGC(graphics_display, pixmap, GCForeground, &values);
    XSegment dark[] = {{0, bottom, right, bottom}, {right, 0, right, bottom}};
    XDrawSegments(graphics_display, pixmap, gc, dark, 2);
    XSetForeground(graphics_display, gc, top_shadow);
    XSegment light[] = {{0, 0, right, 0}, {0, 0, 0, bottom}};
    XDrawSegments(graphics_display, pixmap, gc, light, 2);
    XFreeGC(graphics_display, gc);
}

NB_VOID vga_set_viewer_metrics(const VGA_VIEWER_FONT_SIZE *font, const VGA_VIEWER_ICON_SIZE *icon,
                               const VGA_VIEWER_ICON_SIZE *expand_icon) {
    gvga_viewer_char_width = font->width;
    gvga_viewer_char_ascent = font->ascent;
    gvga_viewer_char_descent = font->descent;
    gvga_viewer_indent_width = indent_columns * font->width;
    gvga_viewer_icon_width = icon->width;
    gvga_viewer_icon_height = icon->height;
    gvga_viewer_expand_icon_width = expand_icon->width;
    gvga_viewer_expand_icon_height = expand_icon->height;
    const NB_ULONG text_height = font->ascent + font->descent;
    const NB_ULONG icon_height = std::max(icon->height, expand_icon->height);
    if (text_height >= icon_height) {
        gvga_viewer_item_height = text_height;
        gvga_viewer_text_y = font->ascent;
    } else {
        gvga_viewer_item_height = icon_height;
        gvga_viewer_text_y = (font->ascent + icon_height - font->descent) / 2;
    }
    gvga_viewer_icon_y = (gvga_viewer_item_height - icon->height) / 2;
    gvga_viewer_expand_icon_y = (gvga_viewer_item_height - expand_icon->height) / 2;
}
