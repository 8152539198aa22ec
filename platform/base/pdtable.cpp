#include "pdtable.h"

#include "catalog.h"
#include "nbproblem.h"
#include "nofverbs.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace base {

namespace {

void catalog_facts(char *text, size_t size) {
    char own[PATH_MAX] = "";
    char common[PATH_MAX] = "";
    catalog_path(catalog_locale(), own, sizeof(own));
    catalog_path("C", common, sizeof(common));
    std::snprintf(text, size, "tried %s, then %s", own, common);
}

void uid_facts(char *text, size_t size) {
    const char *path = std::getenv("UIDPATH");
    std::snprintf(text, size, "UIDPATH is %s", path ? path : "not set");
}

constexpr PdRow rows[] = {
    {NB_PD_ASSERTION, "assertion failed", {{"expression"}, {"file"}, {"line"}}},
    {NB_PD_ENDS_UNKNOWN,
     "the program ends for an unknown reason",
     {{"code"}, {"subcode"}, {"file"}, {"line"}}},
    {NB_PD_ENDS_INTERNAL, "the program ends after an internal error", {{"file"}, {"line"}}},
    {NB_PD_VERB_FAILED,
     "verb failed",
     {{"opcode", PdDecode::opcode},
      {"primary_rc", PdDecode::primary_rc},
      {"secondary_rc", PdDecode::secondary_rc}}},
    {NB_PD_UNKNOWN_NAME, "unknown resource", {{"opcode", PdDecode::opcode}, {"name"}}},
    {NB_PD_CATALOGUE, "message catalogue cannot be used", {}, catalog_facts},
    {NB_PD_UID_FILE, "UID file cannot be used", {}, uid_facts},
    {NB_PD_WINDOW, "a window or an icon could not be made", {{"name"}}},
    {NB_PD_BAD_LIST,
     "a list from the node is not as it should be",
     {{"opcode", PdDecode::opcode}, {"entry_size"}, {"entries_read"}, {"entries"}}},
    {NB_PD_NO_MEMORY, "no memory for a resource", {{"opcode", PdDecode::opcode}, {"name"}}},
    {NB_PD_X_ERROR, "X protocol error", {{"error_code"}, {"request_code"}, {"text"}}},
    {NB_PD_VERB_LOG, "the verb log cannot be written", {{"file"}, {"reason"}}},
    {NB_PD_COMMAND, "a command could not be started", {{"command"}, {"reason"}}},
    {NB_PD_MODEL_FILE, "the file of the model cannot be written", {{"file"}, {"reason"}}},
    {NB_PD_UNREACHABLE, "node software cannot be reached", {{"socket"}, {"reason"}}},
    {NB_PD_LOST,
     "connection to the node software lost",
     {{"reason"}, {"verbs_in_flight"}, {"registrations"}}},
    {NB_PD_STORE, "the store cannot be used", {{"what"}, {"file"}, {"reason"}}},
    {NB_PD_STORE_RECORD,
     "a stored record does not fit; it is left out, and stays in the store",
     {{"section"}}},
    {NB_PD_STORE_FIELD,
     "a stored field is not known to this version and is left out",
     {{"section"}, {"field"}, {"file"}}},
    {NB_PD_STORE_UPDATE, "a store was brought to another layout", {{"file"}, {"from"}, {"to"}}},
    {NB_PD_NODE_ENDED, "the process of a node ended", {{"node"}}},
    {NB_PD_CLIENT_ENDED, "an administrator's connection was ended", {{"why"}, {"process"}}},
    {NB_PD_FAULTS, "the fault script has a bad line", {{"file"}, {"line"}}},
    {NB_PD_NODE_HANGS, "the process of a node hangs and is replaced", {{"node"}}},
    {NB_PD_ROLES, "the domain had no master or several; now it has one", {{"masters"}, {"node"}}},
    {NB_PD_NO_PLACE, "a connection was refused", {{"user"}, {"process"}}},
    {NB_PD_MAY_NOT, "a change was refused to a user who may only look", {{"user"}}},
    {NB_PD_CHANGES, "who changed what cannot be written down", {{"reason"}}},
    {NB_PD_NODE_LINK, "the process of a node sent what it must not", {{"node"}}},
};

constexpr PdRow general = {0, "problem of no known kind", {}};

struct PdDetail {
    NB_ULONG identifier;
    NB_USHORT detail;
    const char *text;
};

constexpr PdDetail details[] = {
    {NB_PD_ASSERTION, 1, "fatal assertion failed"},
    {NB_PD_VERB_FAILED, 2, "registration for indications failed"},
    {NB_PD_CATALOGUE, NB_PD_CATALOGUE_FOR_USAGE,
     "message catalogue could not be opened for the usage text"},
    {NB_PD_CATALOGUE, NB_PD_CATALOGUE_NO_ARGUMENT_TEXT,
     "message catalogue has no text for a bad argument (message 599)"},
    {NB_PD_CATALOGUE, NB_PD_CATALOGUE_NO_USAGE_TEXT,
     "message catalogue has no usage text (message 609)"},
    {NB_PD_CATALOGUE, NB_PD_CATALOGUE_NOT_OPEN, "message catalogue could not be opened"},
    {NB_PD_CATALOGUE, NB_PD_CATALOGUE_MESSAGE_MISSING,
     "message catalogue lacks a message, or there was no memory for one"},
    {NB_PD_UID_FILE, NB_PD_UID_FILE_DIALOGS,
     "UID file of the dialogs (quildlg.uid) could not be opened"},
    {NB_PD_UID_FILE, NB_PD_UID_FILE_ICONS, "no UID file of icons could be opened"},
    {NB_PD_WINDOW, NB_PD_WINDOW_SYSTEM, "contents of the system window could not be shown"},
    {NB_PD_WINDOW, NB_PD_WINDOW_NODE, "contents of the node window could not be shown"},
    {NB_PD_WINDOW, NB_PD_WINDOW_ICON, "an icon could not be fetched"},
    {NB_PD_WINDOW, NB_PD_WINDOW_SELECTED_ICON, "the selected form of an icon could not be fetched"},
    {NB_PD_WINDOW, NB_PD_WINDOW_NO_DESCRIPTION, "a window has no description in the UID file"},
    {NB_PD_WINDOW, NB_PD_WINDOW_NO_WIDGET, "a widget of a window is missing from its description"},
    {NB_PD_WINDOW, NB_PD_WINDOW_NO_CURSOR, "the busy cursor is missing from its UID file"},
    {NB_PD_BAD_LIST, NB_PD_BAD_LIST_SHORT, "an entry of a list is shorter than its record"},
    {NB_PD_BAD_LIST, NB_PD_BAD_LIST_LONG,
     "an entry of a list is longer than the rest of its buffer"},
    {NB_PD_BAD_LIST, NB_PD_BAD_LIST_EMPTY, "a list has more entries in all but brought none"},
    {NB_PD_BAD_LIST, NB_PD_BAD_LIST_STANDS_STILL,
     "a list brought the entry again behind which it was to go on"},
    {NB_PD_VERB_LOG, 0, "the verb log cannot be opened"},
};

const char *opcode_name(NB_ULONG number) {
    const NAP_VERB *verb =
        number <= USHRT_MAX ? nap_find_verb(static_cast<NB_USHORT>(number)) : nullptr;
    return verb ? verb->name : nullptr;
}

} // namespace

const PdRow &pd_find(NB_ULONG identifier) {
    for (const PdRow &row : rows) {
        if (row.identifier == identifier) {
            return row;
        }
    }
    return general;
}

const char *pd_detail(NB_ULONG identifier, NB_USHORT detail) {
    for (const PdDetail &row : details) {
        if (row.identifier == identifier && row.detail == detail) {
            return row.text;
        }
    }
    return nullptr;
}

const char *pd_explain(PdDecode decode, NB_ULONG number) {
    switch (decode) {
    case PdDecode::none:
        return nullptr;
    case PdDecode::opcode:
        return opcode_name(number);
    case PdDecode::primary_rc:
        return nap_primary_name(number);
    case PdDecode::secondary_rc:
        return nap_secondary_name(number);
    }
    return nullptr;
}

} // namespace base
