#include "helpclass.h"
#include "canvas.h"
#include "window.h"

#include <Xm/FormP.h>
#include <cstddef>

namespace help {

namespace {

struct Help_Class_Part {
    XtPointer extension;
};

struct Help_Class_Rec {
    CoreClassPart core_class;
    CompositeClassPart composite_class;
    ConstraintClassPart constraint_class;
    XmManagerClassPart manager_class;
    XmBulletinBoardClassPart bulletin_board_class;
    XmFormClassPart form_class;
    Help_Class_Part help_class;
};

struct Help_Rec {
    CorePart core;
    CompositePart composite;
    ConstraintPart constraint;
    XmManagerPart manager;
    XmBulletinBoardPart bulletin_board;
    XmFormPart form;
    Resources help;
};

constexpr Cardinal at(size_t offset) {
    return static_cast<Cardinal>(offsetof(Help_Rec, help) + offset);
}

constexpr Cardinal pixel_at(Colour colour) {
    return at(offsetof(Resources, pixels) + sizeof(Pixel) * static_cast<size_t>(colour));
}

constexpr Cardinal label_at(Label label) {
    return at(offsetof(Resources, labels) + sizeof(String) * static_cast<size_t>(label));
}

XtResource row(const char *name, const char *name_class, const char *type, size_t size,
               Cardinal offset, const char *default_type, const void *value) {
    return {const_cast<String>(name),
            const_cast<String>(name_class),
            const_cast<String>(type),
            static_cast<Cardinal>(size),
            offset,
            const_cast<String>(default_type),
            const_cast<XtPointer>(value)};
}

XtResource text(const char *name, Cardinal offset, const char *value) {
    return row(name, "HelpText", XtRString, sizeof(String), offset, XtRString, value);
}

XtResource pixel(const char *name, Colour colour, const char *value) {
    return row(name, "HelpColor", XtRPixel, sizeof(Pixel), pixel_at(colour), XtRString, value);
}

XtResource label(const char *name, Label which, const char *value) {
    return text(name, label_at(which), value);
}

const Boolean not_quick = False;

XtResource resource_list[] = {
    text(NB_HELP_VOLUME, at(offsetof(Resources, volume)), ""),
    text(NB_HELP_LOCATION, at(offsetof(Resources, location)), NB_HELP_HOME),
    text(NB_HELP_MAN_PAGE, at(offsetof(Resources, man_page)), ""),
    row(NB_HELP_TYPE, "HelpType", "UnsignedChar", sizeof(unsigned char),
        at(offsetof(Resources, type)), XtRImmediate, reinterpret_cast<void *>(NB_HELP_TYPE_TOPIC)),
    row(NB_HELP_CLOSE_CALLBACK, XtCCallback, XtRCallback, sizeof(XtCallbackList),
        at(offsetof(Resources, close_callback)), XtRImmediate, nullptr),
    row(NB_HELP_HYPER_LINK_CALLBACK, XtCCallback, XtRCallback, sizeof(XtCallbackList),
        at(offsetof(Resources, hyper_callback)), XtRImmediate, nullptr),
    row("quickHelp", "QuickHelp", XtRBoolean, sizeof(Boolean), at(offsetof(Resources, quick)),
        XtRBoolean, &not_quick),

    text("textFont", at(offsetof(Resources, text_font)), "DejaVu Sans-10"),
    text("fixedFont", at(offsetof(Resources, fixed_font)), "DejaVu Sans Mono-9.5"),
    pixel("textColor", Colour::text, "#1D2733"),
    pixel("pageColor", Colour::page, "#FFFFFF"),
    pixel("headingColor", Colour::heading, "#17365D"),
    pixel("linkColor", Colour::link, "#1F5FA8"),
    pixel("mutedColor", Colour::muted, "#6B7885"),
    pixel("panelColor", Colour::panel, "#F7F8FA"),
    pixel("selectionColor", Colour::selection, "#17365D"),
    pixel("selectedTextColor", Colour::selected_text, "#FFFFFF"),
    pixel("ruleColor", Colour::rule, "#C9D0D8"),
    pixel("shadeColor", Colour::shade, "#EEF1F5"),

    label("backText", Label::back, "Back"),
    label("forwardText", Label::forward, "Forward"),
    label("homeText", Label::home, "Home"),
    label("closeText", Label::close, "Close"),
    label("contentsText", Label::contents, "Contents"),
    label("indexText", Label::index, "Index"),
    label("searchText", Label::search, "Search"),
    label("windowText", Label::window, "Window"),
    label("moreText", Label::more, "More"),
    label("findText", Label::find, "Find:"),
    label("noneFoundText", Label::none_found, "No topic has all of these words."),
    label("typeToSearchText", Label::type_to_search, "Type words to find pages."),
    label("hitsText", Label::hits, "topics found"),
    label("noHelpText", Label::no_help, "Help cannot be shown"),
    label("noTopicText", Label::no_topic, "The help volume has no topic of this name:"),
    label("noPageText", Label::no_page, "There is no manual page of this name:"),
    label("readingPageText", Label::reading_page, "Reading the manual page..."),
    label("newWindowText", Label::new_window, "Opens a window:"),
    label("manualPageText", Label::manual_page, "Manual page:"),
};

Resources &part(Widget widget) {
    return reinterpret_cast<Help_Rec *>(widget)->help;
}

void copy_text(String &text_field) {
    text_field = XtNewString(text_field != nullptr ? text_field : const_cast<String>(""));
}

void initialize(Widget, Widget widget, ArgList, Cardinal *) {
    Resources &own = part(widget);
    for (String *field : {&own.volume, &own.location, &own.man_page}) {
        copy_text(*field);
    }
    own.window = nullptr; // made when the widget is whole
}

Boolean set_values(Widget old, Widget, Widget widget, ArgList, Cardinal *) {
    const Resources &before = part(old);
    Resources &now = part(widget);
    bool another = before.type != now.type;
    for (String Resources::*field :
         {&Resources::volume, &Resources::location, &Resources::man_page}) {
        if (before.*field != now.*field) {
            copy_text(now.*field);
            XtFree(before.*field);
            another = true;
        }
    }
    if (another && now.window != nullptr) {
        guarded([&] { now.window->show_resources(); });
    }
    return False;
}

void destroy(Widget widget) {
    Resources &own = part(widget);
    delete own.window;
    for (const String field : {own.volume, own.location, own.man_page}) {
        XtFree(field);
    }
}

Help_Class_Rec make_class() {
    Help_Class_Rec record = {};
    CoreClassPart &core = record.core_class;
    core.superclass = reinterpret_cast<WidgetClass>(&xmFormClassRec);
    core.class_name = const_cast<String>("HelpDialog");
    core.widget_size = sizeof(Help_Rec);
    core.initialize = initialize;
    core.realize = XtInheritRealize;
    core.resources = resource_list;
    core.num_resources = XtNumber(resource_list);
    core.xrm_class = NULLQUARK;
    core.compress_motion = True;
    core.compress_exposure = XtExposeCompressMaximal;
    core.compress_enterleave = True;
    core.destroy = destroy;
    core.resize = XtInheritResize;
    core.expose = XtInheritExpose;
    core.set_values = set_values;
    core.set_values_almost = XtInheritSetValuesAlmost;
    core.version = XtVersion;
    core.tm_table = XtInheritTranslations;
    core.query_geometry = XtInheritQueryGeometry;
    core.display_accelerator = XtInheritDisplayAccelerator;
    record.composite_class = {XtInheritGeometryManager, XtInheritChangeManaged,
                              XtInheritInsertChild, XtInheritDeleteChild, nullptr};
    record.constraint_class.constraint_size = sizeof(XmFormConstraintRec);
    record.manager_class.translations = XtInheritTranslations;
    record.manager_class.parent_process = XmInheritParentProcess;
    record.bulletin_board_class.geo_matrix_create = XmInheritGeoMatrixCreate;
    record.bulletin_board_class.focus_moved_proc = XmInheritFocusMovedProc;
    return record;
}

Help_Class_Rec class_record = make_class();
const auto help_class = reinterpret_cast<WidgetClass>(&class_record);

Widget create(Widget parent, NB_CHAR *name, ArgList args, Cardinal count, bool quick) {
    Arg mine[3];
    XtSetArg(mine[0], const_cast<String>("quickHelp"), quick ? True : False);
    XtSetArg(mine[1], XmNautoUnmanage, False);
    XtSetArg(mine[2], XmNresizePolicy, XmRESIZE_NONE);
    ArgList all = XtMergeArgLists(mine, XtNumber(mine), args, count);
    Widget widget = XtCreateWidget(name, help_class, parent, all, count + XtNumber(mine));
    XtFree(reinterpret_cast<char *>(all));
    guarded([&] {
        Resources &own = part(widget);
        own.window = make_window(widget, own);
        own.window->show_resources();
    });
    return widget;
}

} // namespace

Resources *resources_of(Widget widget) {
    return widget != nullptr && XtIsSubclass(widget, help_class) ? &part(widget) : nullptr;
}

} // namespace help

Widget DtCreateHelpDialog(Widget parent, NB_CHAR *name, ArgList args, Cardinal count) {
    return help::create(parent, name, args, count, false);
}

Widget DtCreateHelpQuickDialog(Widget parent, NB_CHAR *name, ArgList args, Cardinal count) {
    return help::create(parent, name, args, count, true);
}

Widget nb_help_quick_button(Widget dialog, NB_INT which) {
    const help::Resources *own = help::resources_of(dialog);
    return own != nullptr && own->window != nullptr ? own->window->quick_button(which) : nullptr;
}
