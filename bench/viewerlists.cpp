#include "viewerlists.h"
#include "graphics.h"
#include "messages.h"
#include "toolkit.h"
#include "viewerparts.h"
#include <Xm/DrawnB.h>
#include <Xm/List.h>
#include <Xm/ScrollBar.h>
#include <Xm/ScrolledW.h>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <span>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

constexpr int window_width = 780;
constexpr int line_height = 20; // of the small icons
constexpr NB_CHAR font_name[] = "-misc-fixed-medium-r-semicondensed--13-*-*-*-*-*-*-*";
constexpr NB_CHAR scalable_font[] = "DejaVu Sans Mono:size=9";
constexpr NB_USHORT group_icon = 2, member_icon = 6;
enum TYPE : NB_USHORT { GROUP, MEMBER, TYPES };

NB_USHORT create_text(NB_VOID *data, NB_CHAR *buffer) {
    const NB_CHAR *text = static_cast<const LINE *>(data)->text;
    const size_t length = strlen(text);
    memcpy(buffer, text, length);
    return static_cast<NB_USHORT>(length);
}
NB_USHORT choose_group_icon(NB_VOID *) {
    return group_icon;
}
NB_USHORT choose_member_icon(NB_VOID *) {
    return member_icon;
}

constexpr VGA_VIEWER_DESC row(decltype(VGA_VIEWER_DESC::choose_icon) icon, NB_USHORT expandable) {
    VGA_VIEWER_DESC desc = {};
    desc.create_text = create_text;
    desc.choose_icon = icon;
    desc.show_icon = 1;
    desc.expandable = expandable;
    return desc;
}
constexpr VGA_VIEWER_DESC types[TYPES] = {row(choose_group_icon, 1), row(choose_member_icon, 0)};

[[noreturn]] void die(const char *what) {
    fprintf(stderr, "bench_viewer: %s\n", what);
    exit(2);
}

pid_t server_process;

/* A server that ends with this process; its display becomes DISPLAY. */
void start_server() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        die("no pipe");
    }
    server_process = fork();
    if (server_process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        dup2(ends[1], STDOUT_FILENO);
        dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
        execlp("Xvfb", "Xvfb", "-displayfd", "1", "-screen", "0", "3400x1200x24", "-nolisten",
               "tcp", "-noreset", static_cast<char *>(nullptr));
        _exit(127);
    }
    close(ends[1]);
    std::string number = ":";
    char byte = '\0';
    while (read(ends[0], &byte, 1) == 1 && byte != '\n') {
        number += byte;
    }
    close(ends[0]);
    if (byte != '\n') {
        die("Xvfb does not start");
    }
    setenv("DISPLAY", number.c_str(), 1);
}

/* A window of its own, beside the others, with a list area and two scroll bars in it. */
struct WINDOW {
    Widget shell, scrolled;
};
WINDOW make_window(int place) {
    WINDOW window = {};
    window.shell = XtVaAppCreateShell("list", VGA_CLASS, applicationShellWidgetClass, gvga_display,
                                      XmNx, place * (window_width + 50), XmNy, 10, XmNwidth,
                                      window_width + 16, XmNheight, page_lines * line_height + 16,
                                      XmNmappedWhenManaged, True, nullptr);
    window.scrolled = XtVaCreateManagedWidget(
        "window", xmScrolledWindowWidgetClass, window.shell, XmNscrollingPolicy,
        XmAPPLICATION_DEFINED, XmNvisualPolicy, XmVARIABLE, XmNscrollBarDisplayPolicy, XmSTATIC,
        XmNspacing, 0, XmNshadowThickness, 0, nullptr);
    return window;
}

Widget make_area(Widget parent) {
    return XtVaCreateManagedWidget("area", xmDrawnButtonWidgetClass, parent, XmNshadowThickness, 0,
                                   XmNhighlightThickness, 0, XmNbackground,
                                   WhitePixelOfScreen(gvga_screen), XmNforeground,
                                   BlackPixelOfScreen(gvga_screen), nullptr);
}

Widget make_bar(Widget parent, int orientation, Boolean managed) {
    Widget bar = XtVaCreateWidget("bar", xmScrollBarWidgetClass, parent, XmNorientation,
                                  orientation, XmNhighlightThickness, 0, nullptr);
    if (managed) {
        XtManageChild(bar);
    }
    return bar;
}

/* The line as the toolkit's list can show it: its columns filled up with blanks. */
XmString make_string(const LINE &line) {
    std::string plain;
    const NB_CHAR *text = line.text;
    NB_ULONG column = 0;
    VGA_VIEWER_RUN run;
    while (vga_viewer_next_run(&text, &column, &run) != 0) {
        plain.resize(run.column, ' ');
        plain.append(run.text, static_cast<size_t>(run.length));
    }
    return XmStringCreateLocalized(plain.data());
}

} // namespace

LINES make_lines(size_t count) {
    static const NB_CHAR *const states[] = {"Active", "Inactive", "Starting", "Stopping"};
    LINES lines(count);
    for (size_t i = 0; i < count; ++i) {
        snprintf(lines[i].text, sizeof(lines[i].text),
                 "LINE%07zu%%t16%%%s%%t28%%Ethernet link%%t44%%10.%zu.%zu.%zu%%t62%%"
                 "Description of line %07zu, as it is.",
                 i, states[i % std::size(states)], i >> 16, (i >> 8) & 0xFF, i & 0xFF, i);
    }
    return lines;
}

bool begins_group(size_t line) {
    return line % group_lines == 0;
}

void open_display(bool server_font) {
    setenv("UIDPATH", BENCH_UID_PATH, 0);
    setenv("LC_ALL", "C", 1);
    if (getenv("DISPLAY") == nullptr) {
        start_server();
    }
    XtSetLanguageProc(nullptr, nullptr, nullptr);
    XtToolkitInitialize();
    MrmInitialize();
    gvga_appcontext = XtCreateApplicationContext();
    int count = 0;
    gvga_display = XtOpenDisplay(gvga_appcontext, nullptr, "bench_viewer", VGA_CLASS, nullptr, 0,
                                 &count, nullptr);
    if (gvga_display == nullptr) {
        die("the display does not open");
    }
    gvga_screen = DefaultScreenOfDisplay(gvga_display);
    gvga_root_window = RootWindowOfScreen(gvga_screen);
    gvga_resource_database = XtDatabase(gvga_display);
    XrmPutStringResource(&gvga_resource_database, "Quiladmin*size", "small");
    gvga_messages[VGA_MSG_SMALL_FONT] = font_name;
    XrmPutStringResource(&gvga_resource_database, "*list.renderTable", "");
    const NB_CHAR *const resources[][2] = {
        {"*list.fontList", font_name},
        {"Quiladmin*viewerFont", scalable_font},
        {"*list.renderTable.fontType", "FONT_IS_XFT"},
        {"*list.renderTable.fontName", "DejaVu Sans Mono"},
        {"*list.renderTable.fontSize", "9"},
    };
    for (const auto &[name, value] :
         std::span(resources).subspan(server_font ? 0 : 1, server_font ? 1 : 4)) {
        XrmPutStringResource(&gvga_resource_database, name, value);
    }
    vga_viewer_set_types(types, TYPES);
}

double server_seconds() {
    if (server_process == 0) {
        return 0;
    }
    const std::string path = "/proc/" + std::to_string(server_process) + "/schedstat";
    double nanoseconds = 0;
    if (FILE *file = fopen(path.c_str(), "re")) {
        if (fscanf(file, "%lf", &nanoseconds) != 1) {
            nanoseconds = 0;
        }
        fclose(file);
    }
    return nanoseconds * 1e-9;
}

void catch_up() {
    XSync(gvga_display, False);
    while (XtAppPending(gvga_appcontext) != 0) {
        XtAppProcessEvent(gvga_appcontext, XtIMAll);
    }
    XSync(gvga_display, False);
}

/* The viewer. */

OURS::OURS(int place) {
    const WINDOW window = make_window(place);
    Widget area = make_area(window.scrolled);
    Widget horizontal = make_bar(window.scrolled, XmHORIZONTAL, False);
    Widget vertical = make_bar(window.scrolled, XmVERTICAL, False);
    if ((gvga_viewer_item_height == 0 && vga_init_graphics(area, area) == 0) ||
        vga_viewer_init_root(&root) == 0) {
        die("the icons cannot be had");
    }
    XtRealizeWidget(window.shell);
    vga_viewer_display_root(&root, area, horizontal, vertical);
    draw();
}

void OURS::fill(LINES *lines) {
    VGA_VIEWER_ITEM *group = nullptr;
    for (size_t i = 0; i < lines->size(); ++i) {
        LINE &line = (*lines)[i];
        if (begins_group(i)) {
            vga_create_viewer(&root, &line.item, GROUP, &line, nullptr, VGA_VIEWER_LAST);
            group = &line.item;
        } else {
            vga_create_viewer(&root, &line.item, MEMBER, &line, group, VGA_VIEWER_LAST);
            vga_expand_viewer(&root, group, 1);
        }
    }
    draw();
}

void OURS::clear(LINES *lines) {
    for (LINE &line : *lines) {
        vga_delete_viewer(&root, &line.item);
    }
    draw();
    catch_up();
}

void OURS::step(size_t first) {
    const int64_t y = static_cast<int64_t>(first) * gvga_viewer_item_height;
    vga_viewer_scroll_view(&root, static_cast<NB_LONG>(y - vga_viewer_view(&root)->y_offset));
    draw();
}

void OURS::draw() {
    vga_viewer_update_now(&root);
    XSync(gvga_display, False);
}

/* The bare one. */

BARE::BARE(int place) {
    const WINDOW window = make_window(place);
    area_ = make_area(window.scrolled);
    bar_ = make_bar(window.scrolled, XmVERTICAL, True);
    XmScrolledWindowSetAreas(window.scrolled, nullptr, bar_, area_);
    XtRealizeWidget(window.shell);
    gc_ = gvga_normal_gc;
    erase_ = gvga_inverted_gc;
    canvas_ = vga_list_canvas(gvga_display, XtWindow(area_));
}

void BARE::fill(const LINES &lines) {
    rows_.clear();
    rows_.reserve(lines.size());
    for (size_t i = 0; i < lines.size(); ++i) {
        ROW row = {};
        row.group = begins_group(i);
        const NB_CHAR *text = lines[i].text;
        NB_ULONG column = 0;
        VGA_VIEWER_RUN run;
        for (RUN *next = row.runs; vga_viewer_next_run(&text, &column, &run) != 0; ++next) {
            *next = {run.text, static_cast<unsigned char>(run.length),
                     static_cast<unsigned char>(run.column)};
        }
        rows_.push_back(row);
    }
    XtVaSetValues(bar_, XmNvalue, 0, nullptr);
    XtVaSetValues(bar_, XmNmaximum,
                  static_cast<int>(rows_.size() * gvga_viewer_item_height) + line_height,
                  XmNsliderSize, static_cast<int>(page_lines * gvga_viewer_item_height), nullptr);
    step(0);
}

void BARE::step(size_t first) {
    const int height = static_cast<int>(gvga_viewer_item_height);
    XtVaSetValues(bar_, XmNvalue, static_cast<int>(first) * height, nullptr);
    Dimension width = 0, window_height = 0;
    XtVaGetValues(area_, XmNwidth, &width, XmNheight, &window_height, nullptr);
    XFillRectangle(gvga_display, XtWindow(area_), erase_, 0, 0, width, window_height);
    VGA_LIST_PEN pen(gvga_display, XtWindow(area_), canvas_, gc_);
    for (int y = 0; first < rows_.size() && y < window_height; y += height) {
        draw_row(rows_[first++], y, &pen);
    }
    pen.draw();
    XSync(gvga_display, False);
}

void BARE::draw_row(const ROW &row, int y, VGA_LIST_PEN *pen) const {
    int x = 0;
    const auto icon = [&](int number, NB_ULONG width, NB_ULONG height, NB_ULONG down) {
        XCopyArea(gvga_display, gvga_pixmaps[number], XtWindow(area_), gc_, 0, 0,
                  static_cast<unsigned>(width), static_cast<unsigned>(height), x,
                  y + static_cast<int>(down));
    };
    if (row.group) {
        icon(VGA_ICON_MINUS, gvga_viewer_expand_icon_width, gvga_viewer_expand_icon_height,
             gvga_viewer_expand_icon_y);
    }
    x += static_cast<int>(gvga_viewer_expand_icon_width);
    icon(row.group ? group_icon : member_icon, gvga_viewer_icon_width, gvga_viewer_icon_height,
         gvga_viewer_icon_y);
    x += static_cast<int>(gvga_viewer_icon_width) + 4;
    for (const RUN &run : row.runs) {
        pen->put(x + run.column * static_cast<int>(gvga_viewer_char_width),
                 y + static_cast<int>(gvga_viewer_text_y), run.text, run.length);
    }
}

/* The toolkit's. */

TOOLKIT::TOOLKIT(int place) {
    const WINDOW window = make_window(place);
    list_ = XtVaCreateManagedWidget("list", xmListWidgetClass, window.scrolled, XmNvisibleItemCount,
                                    page_lines, XmNlistSizePolicy, XmCONSTANT,
                                    XmNscrollBarDisplayPolicy, XmSTATIC, nullptr);
    XtRealizeWidget(window.shell);
}

void TOOLKIT::fill(const LINES &lines) {
    std::vector<XmString> strings;
    for (const LINE &line : lines) {
        strings.push_back(make_string(line));
    }
    XmListAddItemsUnselected(list_, strings.data(), static_cast<int>(strings.size()), 0);
    for (XmString string : strings) {
        XmStringFree(string);
    }
    draw();
}

void TOOLKIT::clear() {
    XmListDeleteAllItems(list_);
    catch_up();
}

void TOOLKIT::step(size_t first) {
    XmListSetPos(list_, static_cast<int>(first) + 1);
    draw();
}

void TOOLKIT::insert(size_t place, const LINE &line) {
    XmString string = make_string(line);
    XmListAddItemUnselected(list_, string, static_cast<int>(place) + 1);
    XmStringFree(string);
}

void TOOLKIT::replace(size_t place, const LINE &line) {
    XmString string = make_string(line);
    XmListReplaceItemsPosUnselected(list_, &string, 1, static_cast<int>(place) + 1);
    XmStringFree(string);
}

void TOOLKIT::draw() {
    XmUpdateDisplay(list_);
    XSync(gvga_display, False);
}

} // namespace bench
