/* Schemas of what operating a node asks for: its sessions, the lines of its log, its trace files;
 * and of what an operator chooses where he starts or stops something.  Nobody defines them. */
#ifndef OPERATION_H
#define OPERATION_H

#include "fieldrows.h"

#define AT(member) FIELD_AT(Entry, member)

namespace records {

namespace rows::session {
using Entry = NAP_SESSION_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(lu_name)).key().required(),
    number(AT(session_number), 1, 65535).key("name"),
};

inline constexpr FieldRow status[] = {
    word(AT(session_type), session_words),
    state(AT(session_state)),
    sna(AT(mode_name)),
    fq(AT(fqplu_name)),
    fq(AT(fq_cp_name)),
    flag(AT(winner)),
    word(AT(app_type), application_words),
    text(AT(user_name)),
    local(AT(ls_name)),
    count(AT(started_at)).in(Unit::Time),
    count(AT(in_bytes)).in(Unit::Bytes),
    count(AT(out_bytes)).in(Unit::Bytes),
    count(AT(in_messages)).in(Unit::Messages),
    count(AT(out_messages)).in(Unit::Messages),
};
} // namespace rows::session

inline constexpr Schema session = {
    .name = "session",
    .lists = {{.list = NAP_QUERY_SESSION}},
    .owned = true,
    .entry_size = sizeof(NAP_SESSION_DATA),
    .det = rest_of<NAP_SESSION_DATA>(FIELD_AT(NAP_SESSION_DATA, session_type)),
    .key = key_of(rows::session::fields),
    .fields = rows::session::fields,
    .status = rows::session::status,
    .untold = true,
};

namespace rows::log_line {
using Entry = NAP_LOG_DATA;

inline constexpr FieldRow fields[] = {
    number(AT(position_high), 0, 65535).key(),
    number(AT(position_low), 0, 65535).key("name"),
};

inline constexpr FieldRow status[] = {
    word(AT(severity), severity_words),
    count(AT(line_number)),
    count(AT(time)).in(Unit::Time),
    count(AT(message)),
    hex(AT(sense)),
    text(AT(text)),
};
} // namespace rows::log_line

inline constexpr Schema log_line = {
    .name = "log_line",
    .lists = {{.list = NAP_QUERY_NODE_LOG}},
    .entry_size = sizeof(NAP_LOG_DATA),
    .det = rest_of<NAP_LOG_DATA>(FIELD_AT(NAP_LOG_DATA, severity)),
    .key = key_of(rows::log_line::fields),
    .fields = rows::log_line::fields,
    .status = rows::log_line::status,
    .untold = true,
};

namespace rows::trace_file {
using Entry = NAP_TRACE_FILE_DATA;

inline constexpr FieldRow fields[] = {
    word(AT(trace_kind), trace_words, "dlc").key(),
    text(AT(file_name)).key("name").required(),
};

inline constexpr FieldRow status[] = {
    flag(AT(active)),
    count(AT(size)).in(Unit::Bytes),
    count(AT(started_at)).in(Unit::Time),
};
} // namespace rows::trace_file

inline constexpr Schema trace_file = {
    .name = "trace_file",
    .lists = {{.list = NAP_QUERY_TRACE_FILE}},
    .entry_size = sizeof(NAP_TRACE_FILE_DATA),
    .det = rest_of<NAP_TRACE_FILE_DATA>(FIELD_AT(NAP_TRACE_FILE_DATA, active)),
    .key = key_of(rows::trace_file::fields),
    .fields = rows::trace_file::fields,
    .status = rows::trace_file::status,
    .untold = true,
};

inline constexpr FieldWord stop_words[] = {
    {"orderly", NAP_ORDERLY_STOP},
    {"immediate", NAP_IMMEDIATE_STOP},
};

/* What an operator chooses where he starts or stops something, and what he is told of it before.
 * Windows only: no node has it. */
struct Operation {
    NB_UCHAR stop;        /* NAP_ORDERLY_STOP or NAP_IMMEDIATE_STOP */
    NB_UCHAR start_pu;    /* flag: so is its PU */
    NB_USHORT sessions;   /* so many are activated */
    NB_ULONG ending;      /* so many end */
    NB_UCHAR what[160];   /* texts: what is stopped, */
    NB_UCHAR first[160];  /* what has to be started before, */
    NB_UCHAR pu[160];     /* and what goes with it: its PU, */
    NB_UCHAR lus[160];    /* its LUs, */
    NB_UCHAR others[160]; /* and all else */
};

namespace rows::operation {
using Entry = Operation;

inline constexpr FieldRow fields[] = {
    word(AT(stop), stop_words, "orderly"),
    flag(AT(start_pu), "yes"),
    number(AT(sessions), 1, 32767, "1").in(Unit::Sessions),
};

inline constexpr FieldRow status[] = {
    count(AT(ending)).in(Unit::Sessions),
    text(AT(what)),
    text(AT(first)),
    text(AT(pu)),
    text(AT(lus)),
    text(AT(others)),
};
} // namespace rows::operation

inline constexpr Schema operation = {
    .name = "operation",
    .entry_size = sizeof(Operation),
    .fields = rows::operation::fields,
    .status = rows::operation::status,
};

} // namespace records

#undef AT

#endif
