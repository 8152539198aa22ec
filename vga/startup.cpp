#include "startup.h"
#include "colours.h"
#include "commonnames.h"
#include "globals.h"
#include "graphics.h"
#include "holders.h"
#include "linetable.h"
#include "messages.h"
#include "nbproblem.h"
#include "resourcereader.h"
#include "roundtrips.h"
#include "screenresources.h"
#include "toolkit.h"
#include "v0uidpth.h"
#include "verbqueue.h"
#include "vgadgutl.h"
#include "vgadsadd.h"
#include "vgaviewr.h"
#include <X11/Xatom.h>
#include <algorithm>
#include <array>
#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

constexpr NB_INT io_limit = 10;
constexpr size_t locale_length = 5;
constexpr NB_USHORT usage_size = 8192; /* more than a message and a path */

const NB_CHAR user_file[] = "/.quilrc";

NB_USHORT start_up_failed(NB_ULONG problem, NB_USHORT detail) {
    nba_pd_print_problem(problem, detail, nullptr);
    VGA_EXIT(VGA_EXIT_START_UP, 0);
    return 0;
}

std::string user_file_path(NB_VOID) {
    const NB_CHAR *home = getenv("HOME");
    std::string path = home != nullptr ? home : "";
    if (path.size() + sizeof(user_file) > sizeof(gvga_local_db_file)) {
        path.clear();
    }
    return path + user_file;
}

/* The user's resources, or null.  Only a plain file is read: a pipe of that name would hold the
 * start until somebody writes into it. */
XrmDatabase read_user_file(NB_VOID) {
    const std::string path = user_file_path();
    struct stat facts;
    return stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode)
               ? XrmGetFileDatabase(path.c_str())
               : nullptr;
}

/* The toolkit chooses a file of application defaults before the user's file is merged, so what that
 * says about the choice becomes an argument, unless there is one already.  Empty when the user has
 * not chosen.  Static, because the toolkit keeps the arguments. */
const std::string &user_customization(NB_INT argc, NB_CHAR **argv) {
    static std::string argument;
    argument.clear();
    if (std::any_of(argv, argv + argc,
                    [](const NB_CHAR *word) { return strstr(word, "customization") != nullptr; })) {
        return argument;
    }
    XrmInitialize();
    const XrmDatabase file = read_user_file();
    NB_CHAR *type;
    XrmValue value;
    if (file != nullptr && XrmGetResource(file, VGA_CLASS ".customization",
                                          VGA_CLASS ".Customization", &type, &value)) {
        argument = std::string(VGA_CLASS "*customization: ") + static_cast<NB_CHAR *>(value.addr);
    }
    XrmDestroyDatabase(file);
    return argument;
}

/* As XtVaAppInitialize, with a shell that knows of sessions; what it leaves of the arguments is in
 * `argv`. */
Widget open_toolkit(NB_INT *argc, NB_CHAR **argv, NB_CHAR **fallbacks) {
    std::vector<NB_CHAR *> words(argv, argv + *argc + 1);
    NB_INT count = *argc;
    if (const std::string &look = user_customization(*argc, argv); !look.empty() && count > 0) {
        NB_CHAR *const option[] = {const_cast<NB_CHAR *>("-xrm"),
                                   const_cast<NB_CHAR *>(look.c_str())};
        words.insert(words.begin() + 1, std::begin(option), std::end(option));
        count += 2;
    }
    Widget shell = XtVaOpenApplication(&gvga_appcontext, VGA_CLASS, nullptr, 0, &count,
                                       words.data(), fallbacks, sessionShellWidgetClass, nullptr);
    *argc = std::min(*argc, count);
    std::copy_n(words.begin(), *argc, argv);
    argv[*argc] = nullptr;
    return shell;
}

/* LANG is cut to the locale without its code set, which few systems have.  The toolkit would warn
 * of a fault that is not the operator's, and then do the same. */
NB_USHORT language_was_cut;

NB_USHORT cut_locale_is_missing(NB_VOID) {
    const NB_CHAR *all = getenv("LC_ALL");
    if (!language_was_cut || (all != nullptr && *all != '\0')) {
        return 0;
    }
    NB_USHORT missing = setlocale(LC_ALL, "") == nullptr;
    setlocale(LC_ALL, "C");
    return missing;
}

String use_c_locale(Display *, String, XtPointer) {
    XSetLocaleModifiers("");
    return setlocale(LC_ALL, "C");
}

NB_VOID start_toolkit(NB_INT *argc, NB_CHAR **argv) {
    static NB_CHAR *fallbacks[] = {const_cast<NB_CHAR *>("*fontList: Fixed"), nullptr};
    nba_set_app_defaults_path();
    vga_spare_round_trips();
    MrmInitialize();
    XtSetLanguageProc(nullptr, cut_locale_is_missing() ? use_c_locale : nullptr, nullptr);
    gvga_toplevel = open_toolkit(argc, argv, fallbacks);
    gvga_display = XtDisplay(gvga_toplevel);
    gvga_screen = XtScreen(gvga_toplevel);
    vga_work_out_colours(gvga_display, gvga_screen);
    gvga_root_window = RootWindowOfScreen(gvga_screen);
    gvga_close_atom = XInternAtom(gvga_display, "WM_DELETE_WINDOW", False);
}

NB_VOID read_own_option(NB_INT *argc, NB_CHAR **argv) {
    static XrmOptionDescRec options[] = {
        {const_cast<NB_CHAR *>("-size"), const_cast<NB_CHAR *>("*size"), XrmoptionSepArg, nullptr}};
    XrmInitialize();
    gvga_resource_database = XtDatabase(gvga_display);
    XrmParseCommand(&gvga_resource_database, options, std::size(options), VGA_CLASS, argc, argv);
}

NB_VOID merge_user_file(NB_VOID) {
    snprintf(gvga_local_db_file, sizeof(gvga_local_db_file), "%s", user_file_path().c_str());
    gvga_local_database = read_user_file();
    if (gvga_local_database != nullptr) {
        XrmCombineFileDatabase(gvga_local_db_file, &gvga_resource_database, True);
        /* The shell is older than what it says. */
        NB_CHAR *type;
        XrmValue geometry;
        if (XrmGetResource(gvga_local_database, "quiladmin.geometry", VGA_CLASS ".Geometry", &type,
                           &geometry)) {
            XtVaSetValues(gvga_toplevel, XmNgeometry, geometry.addr, nullptr);
        }
    }
}

const NB_CHAR *get_x_default(NB_VOID *display, const NB_CHAR *program, const NB_CHAR *option) {
    return XGetDefault(static_cast<Display *>(display), program, option);
}

/* The problem log names the file and its path; the toolkit's own warnings would only repeat it. */
NB_USHORT open_uid_file(NB_VOID) {
    NB_CHAR *files[] = {const_cast<NB_CHAR *>("quildlg.uid")};
    VGA_NO_WARNINGS silent;
    return MrmOpenHierarchyPerDisplay(gvga_display, 1, files, nullptr, &gvga_uil_hierarchy) ==
           MrmSUCCESS;
}

NB_USHORT open_window_descriptions(NB_VOID) {
    std::string directory = std::string(nba_prefix()) + "/lib/X11";
    v0_set_uidpath(directory.c_str(), VGA_CLASS, VGA_CLASS, gvga_display, get_x_default);
    if (open_uid_file() == 0) {
        return start_up_failed(NB_PD_UID_FILE, NB_PD_UID_FILE_DIALOGS);
    }
    vga_register_common_names();
    vga_init_dialogs();
    return 1;
}

NB_USHORT asks_for_help(const NB_CHAR *argument) {
    for (const NB_CHAR *word : {"-?", "-help", "-HELP"}) {
        if (strcmp(argument, word) == 0) {
            return 1;
        }
    }
    return 0;
}

/* The toolkit takes every beginning of its name, too. */
NB_USHORT is_own_option(const std::string &argument) {
    return argument.size() > 1 && std::string("-size").rfind(argument, 0) == 0;
}

/* On standard output, with arguments of the type "s".  Without the text the exit is requested, with
 * this detail of the problem. */
NB_VOID print_text(NB_INT catalog, NB_USHORT message, NB_USHORT missing, const NB_CHAR *types,
                   ...) {
    const NB_CHAR *text = v0_get_message(catalog, VGA_MESSAGE_SET, message);
    if (text == nullptr) {
        start_up_failed(NB_PD_CATALOGUE, missing);
        return;
    }
    std::vector<NB_CHAR> lines(usage_size);
    va_list arguments;
    va_start(arguments, types);
    vga_format_text(lines.data(), usage_size, text, types, arguments);
    va_end(arguments);
    fputs(lines.data(), stdout);
}

NB_VOID print_texts(NB_INT catalog, const NB_CHAR *bad_argument) {
    if (bad_argument != nullptr) {
        print_text(catalog,
                   is_own_option(bad_argument) ? VGA_MSG_SIZE_WITHOUT_VALUE : VGA_MSG_BAD_ARGUMENT,
                   NB_PD_CATALOGUE_NO_ARGUMENT_TEXT, "s", bad_argument);
    }
    const NB_CHAR *log = nba_pd_log_file();
    const NB_CHAR *nowhere = v0_get_message(catalog, VGA_MESSAGE_SET, VGA_MSG_STANDARD_ERROR);
    print_text(catalog, VGA_MSG_USAGE, NB_PD_CATALOGUE_NO_USAGE_TEXT, "s s", gvga_version,
               log != nullptr ? log : nowhere);
}

/* Two or three letters, and the same behind "_"; whatever behind "." or "@". */
bool begins_with_language(const std::string &name) {
    const std::string places = name.substr(0, name.find_first_of(".@"));
    const size_t gap = places.find('_');
    const auto is_code = [](const std::string &code) {
        return (code.size() == 2 || code.size() == 3) &&
               std::all_of(code.begin(), code.end(), [](unsigned char letter) {
                   return letter < 128 && isalpha(letter) != 0;
               });
    };
    return is_code(places.substr(0, gap)) &&
           (gap == std::string::npos || is_code(places.substr(gap + 1)));
}

/* The font library warns of a locale whose name does not begin with a language, as "C.UTF" does
 * not, which is what is left of "C.UTF-8"; such a locale has English texts. */
NB_VOID name_language_of_fonts(NB_VOID) {
    for (const NB_CHAR *variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const NB_CHAR *name = getenv(variable);
        if (name != nullptr && *name != '\0') {
            if (!begins_with_language(name)) {
                setenv("FC_LANG", "en", 0);
            }
            return;
        }
    }
}

} // namespace

NB_VOID vga_set_locale_environment(NB_VOID) {
    const NB_CHAR *lang = getenv("LANG");
    if (lang == nullptr) {
        return;
    }
    std::string cut = std::string(lang).substr(0, locale_length);
    if (gvga_variant_y && cut == "Ja_JP") {
        cut = "ja_JP";
    }
    language_was_cut = cut != lang;
    if (language_was_cut) {
        setenv("LANG", cut.c_str(), 1);
    }
    if (getenv("LC_CTYPE") != nullptr) {
        setenv("LC_CTYPE", cut.c_str(), 1);
    }
    name_language_of_fonts();
}

NB_USHORT vga_initialise_frontend(NB_INT *argc, NB_CHAR **argv) {
    if (vga_load_messages() == 0) {
        return 0;
    }
    start_toolkit(argc, argv);
    read_own_option(argc, argv);
    vga_add_screen_resources(gvga_screen, &gvga_resource_database);
    merge_user_file();
    if (*argc >= 2) {
        vga_print_usage(1, argv);
        VGA_EXIT(VGA_EXIT_USAGE, 0);
        return 0;
    }
    vga_get_options();
    vga_warn_of_colours();
    vga_viewer_set_types(gvga_viewer_types.data(), VGA_VIEWER_TYPE_COUNT);
    return open_window_descriptions();
}

NB_VOID vga_terminate_frontend(NB_VOID) {
    MrmCloseHierarchy(gvga_uil_hierarchy);
    vga_free_pixmaps();
    vga_unload_messages();
    vga_free_dialogs();
    vga_free_graphics();
    XrmDestroyDatabase(gvga_local_database);
    gvga_local_database = nullptr;
    XrmSetDatabase(gvga_display, nullptr);
    XrmDestroyDatabase(gvga_resource_database);
    gvga_resource_database = nullptr;
}

NB_USHORT vga_initialise_backend(NB_VOID) {
    vpm_asm_use_xt_sched(gvga_appcontext, reinterpret_cast<NB_ADD_INPUT>(XtAppAddInput),
                         reinterpret_cast<NB_REMOVE_INPUT>(XtRemoveInput));
    vpm_set_io_limit(io_limit);
    if (nba_hm_initialise() == 0) {
        VGA_EXIT_AT(VGA_EXIT_START_UP, 0, gvga_exit_back_end);
        return 0;
    }
    vga_init_verb_queues();
    gvga_read_only = 0;
    gvga_system = vga_init_vga_system();
    if (gvga_system == nullptr) {
        gvga_exit_code = 0; /* as with the first window */
        VGA_EXIT(VGA_EXIT_START_UP, 0);
        return 0;
    }
    return 1;
}

/* The fatal report has an event loop of its own, in which an answer could still come: the verb
 * interface ends before the blocks that it fills are freed. */
NB_VOID vga_terminate_backend(NB_VOID) {
    nof_terminate();
    vga_empty_verb_queues();
}

NB_VOID vga_print_usage(NB_USHORT bad_argument_present, NB_CHAR **argv) {
    NB_INT catalog = -1;
    if (v0_initialise_message_catalog(&catalog) == 0) {
        start_up_failed(NB_PD_CATALOGUE, NB_PD_CATALOGUE_FOR_USAGE);
        return;
    }
    NB_USHORT name_it = bad_argument_present && !asks_for_help(argv[1]);
    print_texts(catalog, name_it ? argv[1] : nullptr);
    v0_close_message_catalog(&catalog);
}

NB_USHORT vga_check_print_usage(const NB_INT *argc, NB_CHAR **argv) {
    for (NB_INT argument = 1; argument < *argc; argument++) {
        if (strcmp(argv[argument], "-h") == 0) {
            vga_print_usage(0, nullptr);
            return 1;
        }
    }
    return 0;
}

NB_VOID vga_add_params_to_command_line(NB_INT argc, NB_CHAR **argv, NB_INT *new_argc,
                                       NB_CHAR ***new_argv) {
    static NB_CHAR option[] = "-xrm";
    static NB_CHAR resource[] = "*enableEtchedInMenu: False";
    constexpr NB_INT added = 2;
    auto **vector =
        static_cast<NB_CHAR **>(malloc(sizeof(NB_CHAR *) * static_cast<size_t>(argc + added + 1)));
    *new_argc = argc;
    *new_argv = argv;
    if (vector == nullptr) {
        return;
    }
    vector[0] = argv[0];
    vector[1] = option;
    vector[2] = resource;
    memcpy(vector + 1 + added, argv + 1, sizeof(NB_CHAR *) * static_cast<size_t>(argc));
    *new_argc = argc + added;
    *new_argv = vector;
}
