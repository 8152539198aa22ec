#include "pdtable.h"

#include "catalog.h"
#include "nbbase.h"
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
    {pd_assertion, "assertion failed", {{"expression"}, {"file"}, {"line"}}},
    {0x40020000,
     "the program ends for an unknown reason",
     {{"code"}, {"subcode"}, {"file"}, {"line"}}},
    {0x40020001, "the program ends after an internal error", {{"file"}, {"line"}}},
    {0x40020002,
     "verb failed",
     {{"opcode", PdDecode::opcode},
      {"primary_rc", PdDecode::primary_rc},
      {"secondary_rc", PdDecode::secondary_rc}}},
    {0x40020004, "unknown resource", {{"opcode", PdDecode::opcode}, {"name"}}},
    {0x40020005, "message catalogue cannot be used", {}, catalog_facts},
    {0x40020006, "UID file cannot be used", {}, uid_facts},
    {0x40020007, "a window or an icon could not be made", {{"name"}}},
    {0x40020008,
     "a list from the node is not as it should be",
     {{"opcode", PdDecode::opcode}, {"entry_size"}, {"entries_read"}, {"entries"}}},
    {0x40020009, "no memory for a resource", {{"opcode", PdDecode::opcode}, {"name"}}},
    {0x4002000B, "X protocol error", {{"error_code"}, {"request_code"}, {"text"}}},
    {0x4002000C, "the verb log cannot be written", {{"file"}, {"reason"}}},
    {0x4002000D, "a command could not be started", {{"command"}, {"reason"}}},
    {0x40030001, "node software cannot be reached", {{"socket"}, {"reason"}}},
    {0x40030002,
     "connection to the node software lost",
     {{"reason"}, {"verbs_in_flight"}, {"registrations"}}},
    {0x40040001, "the store cannot be used", {{"what"}, {"file"}, {"reason"}}},
    {0x40040002, "a stored record does not fit and is left out", {{"section"}}},
    {0x40040003, "the process of a node ended", {{"node"}}},
    {0x40040004, "an administrator's connection was ended", {{"why"}, {"process"}}},
    {0x40040005, "the fault script has a bad line", {{"file"}, {"line"}}},
    {0x40040006, "the process of a node sent what it must not", {{"node"}}},
};

constexpr PdRow general = {0, "problem of no known kind", {}};

struct PdDetail {
    NB_ULONG identifier;
    NB_USHORT detail;
    const char *text;
};

constexpr PdDetail details[] = {
    {pd_assertion, 1, "fatal assertion failed"},
    {0x40020002, 2, "registration for indications failed"},
    {0x40020005, 0, "message catalogue could not be opened for the usage text"},
    {0x40020005, 1, "message catalogue has no text for a bad argument (message 599)"},
    {0x40020005, 2, "message catalogue has no usage text (message 609)"},
    {0x40020005, 3, "message catalogue could not be opened"},
    {0x40020005, 4, "message catalogue lacks a message, or there was no memory for one"},
    {0x40020006, 0, "UID file of the dialogs (quildlg.uid) could not be opened"},
    {0x40020006, 1, "no UID file of icons could be opened"},
    {0x40020007, 4, "contents of the system window could not be shown"},
    {0x40020007, 5, "contents of the node window could not be shown"},
    {0x40020007, 6, "an icon could not be fetched"},
    {0x40020007, 7, "the selected form of an icon could not be fetched"},
    {0x40020007, 20, "a window has no description in the UID file"},
    {0x40020007, 21, "a widget of a window is missing from its description"},
    {0x40020008, 1, "an entry of a list is shorter than its record"},
    {0x40020008, 2, "an entry of a list is longer than the rest of its buffer"},
    {0x40020008, 3, "a list has more entries in all but brought none"},
    {0x4002000C, 0, "the verb log cannot be opened"},
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
