/* What is written in the problem log, by number: the record, and what its detail says more.  The
 * texts of both stand in platform/base/pdtable.cpp.  Support staff look records up by these
 * numbers, so that none is ever given another meaning. */
#ifndef NBPROBLEM_H
#define NBPROBLEM_H

#include "nbbase.h"

enum nb_problem {
    NB_PD_ASSERTION = 0x40010001, /* expression, file, line; detail 1: a fatal one */

    /* The program. */
    NB_PD_ENDS_UNKNOWN = 0x40020000,  /* code, subcode, file, line */
    NB_PD_ENDS_INTERNAL = 0x40020001, /* file, line */
    NB_PD_VERB_FAILED = 0x40020002,   /* opcode, primary_rc, secondary_rc */
    NB_PD_UNKNOWN_NAME = 0x40020004,  /* opcode, name */
    NB_PD_CATALOGUE = 0x40020005,
    NB_PD_UID_FILE = 0x40020006,
    NB_PD_WINDOW = 0x40020007,     /* name */
    NB_PD_BAD_LIST = 0x40020008,   /* opcode, entry_size, entries_read, entries */
    NB_PD_NO_MEMORY = 0x40020009,  /* opcode, name */
    NB_PD_X_ERROR = 0x4002000B,    /* error_code, request_code, text */
    NB_PD_VERB_LOG = 0x4002000C,   /* file, reason */
    NB_PD_COMMAND = 0x4002000D,    /* command, reason */
    NB_PD_MODEL_FILE = 0x4002000E, /* file, reason */

    /* The verb interface. */
    NB_PD_UNREACHABLE = 0x40030001, /* socket, reason */
    NB_PD_LOST = 0x40030002,        /* reason, verbs_in_flight, registrations */

    /* The node software. */
    NB_PD_STORE = 0x40040001,        /* what, file, reason */
    NB_PD_STORE_RECORD = 0x40040002, /* section: a stored record that does not fit */
    NB_PD_NODE_ENDED = 0x40040003,   /* node */
    NB_PD_CLIENT_ENDED = 0x40040004, /* why, process */
    NB_PD_FAULTS = 0x40040005,       /* fault file, line */
    NB_PD_NODE_LINK = 0x40040006,    /* node: it sent what it must not */
    NB_PD_NODE_HANGS = 0x40040008,   /* node: it is replaced */
    NB_PD_ROLES = 0x40040009,        /* masters, node: there is one now, this */
    NB_PD_NO_PLACE = 0x40040007,     /* user, process: a connection that was refused */
    NB_PD_MAY_NOT = 0x4004000A,      /* user: he tried a change that is not his to make */
    NB_PD_CHANGES = 0x4004000B,      /* reason: a change took place and could not be written down */
    NB_PD_STORE_FIELD = 0x40040010,  /* section, field, file: stored, and not known any more */
    NB_PD_STORE_UPDATE = 0x40040011, /* file, from and to: it was brought to another layout */
};

/* Details of NB_PD_CATALOGUE, NB_PD_UID_FILE, NB_PD_WINDOW and NB_PD_BAD_LIST. */
enum nb_problem_detail {
    NB_PD_CATALOGUE_FOR_USAGE = 0,
    NB_PD_CATALOGUE_NO_ARGUMENT_TEXT = 1,
    NB_PD_CATALOGUE_NO_USAGE_TEXT = 2,
    NB_PD_CATALOGUE_NOT_OPEN = 3,
    NB_PD_CATALOGUE_MESSAGE_MISSING = 4,

    NB_PD_UID_FILE_DIALOGS = 0,
    NB_PD_UID_FILE_ICONS = 1,

    NB_PD_WINDOW_SYSTEM = 4,
    NB_PD_WINDOW_NODE = 5,
    NB_PD_WINDOW_ICON = 6,
    NB_PD_WINDOW_SELECTED_ICON = 7,
    NB_PD_WINDOW_NO_DESCRIPTION = 20,
    NB_PD_WINDOW_NO_WIDGET = 21,
    NB_PD_WINDOW_NO_CURSOR = 22,

    NB_PD_BAD_LIST_SHORT = 1,
    NB_PD_BAD_LIST_LONG = 2,
    NB_PD_BAD_LIST_EMPTY = 3,       /* but its total is not 0 */
    NB_PD_BAD_LIST_STANDS_STILL = 4 /* the entry behind which it was to go on came again */
};

/* What the trace control can silence: bit 0 of these bytes of ptrc. */
enum nb_trace_byte { NB_TRACE_X_ERRORS = 0, NB_TRACE_RESOURCES = 8 };

static inline NB_USHORT nba_is_silenced(enum nb_trace_byte byte) {
    return (ptrc.flags[byte] & 1) != 0;
}

#endif
