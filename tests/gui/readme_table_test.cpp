// The README's table of what an operator can do, against the tables of the program.

#include <gtest/gtest.h> // before the toolkit's headers

#include "dialogids.h"
#include "linerules.h"
#include "recordwindow.h"
#include "startstop.h"
#include "windowtable.h"

#include <fstream>
#include <sstream>

namespace {

/* A kind of resource: the window that lists it, and the type of its lines or the dialog that
 * changes what has no line. */
struct KIND {
    const char *name;
    VGA_DIALOG_ID window;
    NB_SHORT type = VGA_VIEWER_SELECT_NONE;
    NB_USHORT dialog = VGA_NO_DIALOG;
};

const KIND kinds[] = {
    {"Nodes", VGA_UID_NODE_WINDOW, VGA_VIEWER_NODE, VGA_UID_NODE_DIALOG},
    {"Ports", VGA_UID_NODE_WINDOW, VGA_VIEWER_PORT},
    {"Link stations", VGA_UID_NODE_WINDOW, VGA_VIEWER_LS},
    {"PUs", VGA_UID_NODE_WINDOW, VGA_VIEWER_LOCAL_PU},
    {"Dependent LUs", VGA_UID_NODE_WINDOW, VGA_VIEWER_DEPLU},
    {"Downstream LUs", VGA_UID_NODE_WINDOW, VGA_VIEWER_DOWN_LU},
    {"Primary SDLC lines", VGA_UID_NODE_WINDOW, VGA_VIEWER_PRIMARY_LINE},
    {"Local LUs", VGA_UID_NODE_WINDOW, VGA_VIEWER_LU62},
    {"Modes in use", VGA_UID_NODE_WINDOW, VGA_VIEWER_MODE},
    {"Remote systems", VGA_UID_NODE_WINDOW, VGA_VIEWER_REM_SYS},
    {"Partner LUs", VGA_UID_NODE_WINDOW, VGA_VIEWER_REM_PLU},
    {"Link station routing", VGA_UID_NODE_WINDOW, VGA_VIEWER_LS_R},
    {"Modes", VGA_UID_MODE_WINDOW, VGA_VIEWER_MODE_DEF},
    {"CPI-C destinations", VGA_UID_CPIC_WINDOW, VGA_VIEWER_CPIC},
    {"Transaction programs", VGA_UID_TP_WINDOW, VGA_VIEWER_TP_DEF},
    {"LU pools", VGA_UID_POOL_WINDOW, VGA_VIEWER_POOL},
    {"Users", VGA_UID_USER_WINDOW, VGA_VIEWER_USER},
    {"RJE workstations", VGA_UID_RJEW_WINDOW, VGA_VIEWER_RJE},
    {"TN3270 server records", VGA_UID_TN_WINDOW, VGA_VIEWER_TN_SESS},
    {"RTP connections", VGA_UID_HPR_WINDOW, VGA_VIEWER_RTP_CONN},
    {"SNA over IP", VGA_UID_TAMRIX_WINDOW, VGA_VIEWER_APPCIP_SESS},
    {"Conversation security", VGA_UID_CL_SECURITY_WINDOW, VGA_VIEWER_CL_SECURITY},
    {"Session security", VGA_UID_SL_SECURITY_WINDOW, VGA_VIEWER_SL_SECURITY},
    {"Tracing", VGA_UID_TRACE_DIALOG, VGA_VIEWER_SELECT_NONE, VGA_UID_TRACE_DIALOG},
    {"Logging", VGA_UID_LOG_DIALOG, VGA_VIEWER_SELECT_NONE, VGA_UID_LOG_DIALOG},
};

const struct {
    const char *list, *name;
} records_without_lines[] = {
    {"directory", "Directory entries"},
    {"cn", "Connection networks"},
    {"partner", "Partner aliases"},
    {"cos", "Classes of service"},
};

std::string row(const std::string &name, std::initializer_list<bool> can, const char *operated) {
    std::string text = "| " + name + " |";
    for (const bool one : can) {
        text += one ? " yes |" : " |";
    }
    return text + (operated[0] != '\0' ? std::string(" ") + operated : "") + " |\n";
}

/* An LU is not started: its sessions are ended. */
const char *operations(NB_SHORT type) {
    VGA_VIEWER_ITEM line = {};
    line.type = static_cast<decltype(line.type)>(type);
    switch (vga_resource_of_line(&line).kind) {
    case VGA_OPERABLE_NONE:
        return "";
    case VGA_OPERABLE_LU62:
    case VGA_OPERABLE_LU03:
        return "stop";
    default:
        return "both";
    }
}

std::string row_of(const KIND &kind) {
    const VGA_LINE_RULE *found = vga_line_rule(kind.type);
    const VGA_LINE_RULE rule =
        found != nullptr ? *found : VGA_LINE_RULE{.type = {}, .can_copy = 0, .can_delete = 0};
    const bool seen = vga_is_written(kind.window) != 0;
    const NB_USHORT dialog =
        kind.dialog != VGA_NO_DIALOG ? kind.dialog : vga_properties_of(rule, nullptr);
    const bool changed = seen && vga_is_written(dialog) != 0;
    return row(kind.name,
               {seen, seen && vga_is_written(rule.status) != 0, changed && rule.can_copy != 0,
                changed, changed && rule.can_copy != 0, seen && rule.can_delete != 0},
               seen && kind.type != VGA_VIEWER_SELECT_NONE ? operations(kind.type) : "");
}

std::string table() {
    std::string text = "| | See | Status | Add | Change | Copy | Delete | Start, stop |\n"
                       "|---|---|---|---|---|---|---|---|\n";
    for (const KIND &kind : kinds) {
        text += row_of(kind);
    }
    for (const auto &wanted : records_without_lines) {
        for (const VGA_RECORD_WINDOW &window : gvga_record_windows) {
            const VGA_RECORD_LIST &list = window.lists.front();
            if (std::string(list.name) == wanted.list) {
                const bool form = list.form != nullptr;
                text += row(wanted.name, {true, false, form, form, false, true}, "");
            }
        }
    }
    return text;
}

TEST(Readme, SaysWhatAnOperatorCanDo) {
    std::ifstream file(README);
    std::stringstream text;
    text << file.rdbuf();
    EXPECT_NE(text.str().find("\n" + table() + "\n"), std::string::npos)
        << "the table in README.md has to be\n"
        << table();
}

} // namespace
