/* What is peculiar to the TN3270 server, the TN redirector and SNA over IP. */
#include "classhooks.h"
#include "engine.h"
#include "nofcopy.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

template <class Record> Result check_client(const Record &entry) {
    const bool anybody = entry.address_type == NAP_TN_DEFAULT_RECORD;
    return anybody == (entry.client_address[0] == 0) ? GOOD : bad_parameter(NAP_INVALID_NAME);
}

bool unknown_lu(const Engine &engine, const NB_UCHAR *name) {
    return !is_blank8(name) && !is_lu_or_pool(engine, name);
}

Result check_tn_access(const Engine &engine, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = nap_copy<NAP_TN_ACCESS_DATA>(bytes);
    if (engine.node_record().tn3270_support == 0) {
        return {NAP_NOT_SUPPORTED, 0};
    }
    for (NB_USHORT at = 0; at < entry.def_data.num_sessions; at++) {
        const NAP_TN_SESSION session = entry.def_data.sessions[at];
        if (unknown_lu(engine, session.display_lu_name) ||
            unknown_lu(engine, session.printer_lu_name)) {
            return bad_parameter(NAP_UNKNOWN_OWNER);
        }
        for (NB_USHORT before = 0; before < at; before++) {
            const NAP_TN_SESSION other = entry.def_data.sessions[before];
            if (other.port == session.port &&
                same_name(other.listen_local_address, session.listen_local_address,
                          sizeof session.listen_local_address)) {
                return bad_parameter(NAP_INVALID_VALUE);
            }
        }
    }
    return check_client(entry);
}

Result check_tn_assoc(const Engine &engine, const NB_UCHAR *, const Resource *) {
    return engine.node_record().tn3270_support != 0 ? GOOD : Result{NAP_NOT_SUPPORTED, 0};
}

Result check_tn_redirect(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = nap_copy<NAP_TN_REDIRECT_DATA>(bytes);
    return entry.def_data.host_address[0] != 0 ? check_client(entry)
                                               : bad_parameter(NAP_INVALID_VALUE);
}

NB_UCHAR report_tamrix(const Resource &resource) {
    return Engine::get<NAP_TAMRIX_SESSION_DATA>(resource).session_state;
}

constexpr ClassRow classes[] = {
    {.id = CLASS_TN_ACCESS, .schema = &records::tn_access, .hooks = {.check = check_tn_access}},
    {.id = CLASS_TN_ASSOC, .schema = &records::tn_assoc, .hooks = {.check = check_tn_assoc}},
    {.id = CLASS_TN_REDIRECT,
     .schema = &records::tn_redirect,
     .hooks = {.check = check_tn_redirect}},
    {.id = CLASS_TAMRIX_SESSION,
     .schema = &records::tamrix_session,
     .hooks = {.busy = never_busy, .report = report_tamrix}},
    {.id = CLASS_LOG_LINE, .schema = &records::log_line, .hooks = {.busy = never_busy}},
    {.id = CLASS_TRACE_FILE, .schema = &records::trace_file, .hooks = {.busy = never_busy}},
};

} // namespace

std::span<const ClassRow> service_classes() {
    return classes;
}

} // namespace node
