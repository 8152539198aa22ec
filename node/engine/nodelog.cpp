/* The node's log: a table of lines like any other, newest first. */
#include "engine.h"

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
    {NAP_LOG_LINK_LOST, "lost its partner"},
    {NAP_LOG_STOP_FORCED, "did not end its sessions in time: they were ended"},
    {NAP_LOG_SESSION_ENDED, "had a session ended by an administrator"},
    {NAP_LOG_SESSION_REFUSED, "lost sessions, or could not have them"},
    {NAP_LOG_DEFINED, "was defined"},
    {NAP_LOG_DELETED, "was deleted"},
};

const char *meaning_of(NB_ULONG message) {
    const auto *found =
        std::find_if(std::begin(meanings), std::end(meanings),
                     [message](const Meaning &one) { return one.message == message; });
    return found != std::end(meanings) ? found->text : "";
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
    std::string text = about.row->schema->name;
    for (const FieldRow &field : about.row->schema->fields) {
        if (field.has(FIELD_KEY)) {
            text += " " + format_field(field, about.entry.get());
        }
    }
    text += std::string(" ") + meaning_of(message);
    if (sense != 0) {
        char code[32];
        snprintf(code, sizeof code, ", sense code %08X", sense);
        text += code;
    }
    log(severity, message, text + ".", sense);
}

} // namespace node
