/* What a node writes down: its log, a table of lines like any other, newest first, and traces. */
#include "engine.h"

#include "changewords.h"
#include "nofcopy.h"
#include "nofverbs.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace node {

namespace {

/* What a line says of a resource, by its message. */
struct Meaning {
    NB_ULONG message;
    const char *text;
};

constexpr Meaning meanings[] = {
    {NAP_LOG_STARTED, "is active"},
    {NAP_LOG_STOPPED, "is inactive"},
    {NAP_LOG_START_FAILED, "could not be started"},
    {NAP_LOG_LINK_LOST, "failed while it was active"},
    {NAP_LOG_STOP_FORCED, "did not end its sessions in time: they were ended"},
    {NAP_LOG_SESSION_ENDED, "had a session ended by an administrator"},
    {NAP_LOG_SESSION_REFUSED, "lost sessions, or could not have them"},
    {NAP_LOG_DEFINED, "was defined"},
    {NAP_LOG_DELETED, "was deleted"},
    {NAP_LOG_PATH_SWITCHED, "found another way"},
};

const char *meaning_of(NB_ULONG message) {
    const auto *found =
        std::find_if(std::begin(meanings), std::end(meanings),
                     [message](const Meaning &one) { return one.message == message; });
    return found != std::end(meanings) ? found->text : "";
}

struct TraceRow {
    NB_USHORT query;
    NB_USHORT kind;
};

constexpr TraceRow trace_rows[] = {
    {NAP_QUERY_DLC_TRACE, NAP_TRACE_DLC},
    {NAP_QUERY_TRACE_TYPE, NAP_TRACE_TYPE},
    {NAP_QUERY_CS_TRACE, NAP_TRACE_CS},
    {NAP_QUERY_BCK_CS_TRACE, NAP_TRACE_BACK_CS},
    {NAP_QUERY_TN_SERVER_TRACE, NAP_TRACE_TN_SERVER},
    {NAP_QUERY_TN3270_SLP_TRACE, NAP_TRACE_SLP},
};

std::string name_of(const Resource &resource) {
    return name_words(*resource.row->schema, resource.entry.get());
}

void set_position(NAP_LOG_DATA &line, NB_ULONG number) {
    const NB_ULONG position = 0xFFFFFFFF - number;
    line.position_high = static_cast<NB_USHORT>(position >> 16);
    line.position_low = static_cast<NB_USHORT>(position);
}

} // namespace

void Engine::log(NB_UCHAR severity, NB_ULONG message, const std::string &text, NB_ULONG sense) {
    NAP_LOG_DATA line = {};
    if (scope_ != Scope::Node) {
        return;
    }
    log_lines_++;
    set_position(line, log_lines_);
    line.line_number = log_lines_;
    line.severity = severity;
    line.message = message;
    line.time = clock_.wall_seconds();
    line.sense = sense;
    memcpy(line.text, text.data(), std::min(text.size(), sizeof line.text - 1));
    add_derived(CLASS_LOG_LINE, &line, sizeof line);
    if (log_lines_ > NAP_LOG_LINES) {
        set_position(line, log_lines_ - NAP_LOG_LINES);
        Resource *oldest =
            find(CLASS_LOG_LINE, reinterpret_cast<const NB_UCHAR *>(&line) + KEY_OFFSET);
        if (oldest != nullptr) {
            remove_tree(*oldest);
        }
    }
}

void Engine::log(NB_UCHAR severity, NB_ULONG message, const Resource &about, NB_ULONG sense) {
    std::string text = name_of(about);
    text += std::string(" ") + meaning_of(message);
    if (sense != 0) {
        char code[32];
        const std::string words = sense_words(sense);
        snprintf(code, sizeof code, ", sense code %08X", sense);
        text += (words.empty() ? "" : ": " + words) + code;
    }
    log(severity, message, text + ".", sense);
}

void Engine::keep_traces_in(const std::string &folder) {
    traces_.keep_in(folder);
    for (const Settings &row : records::settings) {
        set_trace(row);
    }
}

/* The trace is as the settings say. */
void Engine::set_trace(const Settings &row) {
    for (const TraceRow &trace : trace_rows) {
        if (trace.query != row.query || scope_ != Scope::Node) {
            continue;
        }
        const auto verb = nap_copy<NAP_QUERY_TRACE_VERB>(records_.image(row));
        const std::string name = local_text(verb.trace_file, sizeof verb.trace_file);
        if (!traces_.set(trace.kind, name, verb.trace_flags != 0, verb.truncation)) {
            log(NAP_LOG_PROBLEM, NAP_LOG_TRACE_FAILED,
                "Trace file " + name + " cannot be written.");
        }
    }
}

/* States of links are what the DLC trace is about: of all, or of those that it names. */
void Engine::trace_state(const Resource &resource) {
    const ClassId id = resource.row->id;
    if (!traces_.is_on(NAP_TRACE_DLC) || (id != CLASS_DLC && id != CLASS_PORT && id != CLASS_LS)) {
        return;
    }
    const auto trace = settings<NAP_QUERY_TRACE_VERB>(NAP_QUERY_DLC_TRACE);
    bool all = true;
    bool named = false;
    for (const auto &name : trace.names) {
        all = all && is_blank(KeyKind::Local, name, sizeof name);
        named = named || memcmp(name, resource.entry.get() + KEY_OFFSET, sizeof name) == 0;
    }
    if (all || named) {
        traces_.write(NAP_TRACE_DLC,
                      name_of(resource) + " state " + std::to_string(resource.state));
    }
}

void Engine::trace_client(const NAP_SESSION_DATA &session, const char *what) {
    if (session.app_type == NAP_APP_TN3270_SERVER && traces_.is_on(NAP_TRACE_TN_SERVER)) {
        traces_.write(NAP_TRACE_TN_SERVER,
                      local_text(session.user_name, sizeof session.user_name) + " on " +
                          ebcdic_text(session.lu_name, sizeof session.lu_name) + " " + what);
    }
}

/* Verbs, as they came, in the node's own trace and that of its clients. */
void Engine::trace_verb(const std::vector<NB_UCHAR> &block) {
    if (!traces_.is_on(NAP_TRACE_TYPE) && !traces_.is_on(NAP_TRACE_CS)) {
        return;
    }
    const auto header = nap_copy<NAP_VCB>(block.data());
    const NAP_VERB *verb = nap_find_verb(header.opcode);
    char line[128];
    snprintf(line, sizeof line, "%s %04X %08X", verb != nullptr ? verb->name : "?",
             header.primary_rc, header.secondary_rc);
    traces_.write(NAP_TRACE_TYPE, line);
    traces_.write(NAP_TRACE_CS, line);
}

void Engine::show_trace_files() {
    for (const Traces::File &file : traces_.files()) {
        NAP_TRACE_FILE_DATA entry = {};
        entry.trace_kind = file.kind;
        memcpy(entry.file_name, file.name.data(),
               std::min(file.name.size(), sizeof entry.file_name - 1));
        entry.active = file.active ? 1 : 0;
        entry.size = file.size;
        entry.started_at = file.started_at;
        add_derived(CLASS_TRACE_FILE, &entry, sizeof entry);
    }
}

} // namespace node
