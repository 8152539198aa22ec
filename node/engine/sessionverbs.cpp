/* The verbs that activate and end sessions of LUs. */
#include "engine.h"
#include "keybytes.h"

#include "nofcopy.h"
#include "nofverbs.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

constexpr NB_USHORT MOST_SESSIONS = 32767;
constexpr NB_ULONG MOST_NUMBERS = 65535; /* of the sessions of an LU */

bool is_stop_type(NB_UCHAR type) {
    return type <= NAP_IMMEDIATE_STOP;
}

} // namespace

Result Engine::operate(std::vector<NB_UCHAR> &block) {
    if (scope_ != Scope::Node) {
        return {NAP_NOT_SUPPORTED, 0};
    }
    switch (nap_copy<NAP_VCB>(block.data()).opcode) {
    case NAP_ACTIVATE_SESSION:
        return activate_session(block);
    case NAP_DEACTIVATE_SESSION:
        return deactivate_session(block.data());
    case NAP_END_LU_SESSION:
        return end_lu_session(block.data());
    default:
        return end_tn_client(block.data());
    }
}

/* What a mode is in use with when nobody said so: the partner is where the directory knows it, and
 * has the alias that it is in use with. */
NAP_MODE_DATA Engine::new_mode(const NAP_LU62_SESSION_VERB &verb,
                               const NAP_MODE_CHARS &chars) const {
    NAP_MODE_DATA mode = {};
    memcpy(mode.lu_alias, verb.lu_alias, sizeof mode.lu_alias);
    memcpy(mode.mode_name, verb.mode_name, sizeof mode.mode_name);
    memcpy(mode.fqplu_name, verb.fqplu_name, sizeof mode.fqplu_name);
    memset(mode.plu_alias, ' ', sizeof mode.plu_alias);
    memset(mode.fq_cp_name, 0x40, sizeof mode.fq_cp_name);
    mode.sess_limit = chars.plu_mode_session_limit;
    mode.min_conwinners = chars.min_conwin_src;
    mode.min_conlosers = chars.min_conloser_src;
    const ResourceTable &partners = *tables_[CLASS_PLU];
    for (Resource *at = partners.first_with(verb.lu_alias, sizeof verb.lu_alias); at != nullptr;
         at = ResourceTable::next_with(*at, sizeof verb.lu_alias)) {
        const auto partner = get<NAP_PLU_DATA>(*at);
        if (memcmp(partner.fqplu_name, verb.fqplu_name, sizeof verb.fqplu_name) == 0) {
            memcpy(mode.plu_alias, partner.plu_alias, sizeof mode.plu_alias);
        }
    }
    const ResourceTable &entries = *tables_[CLASS_DIRECTORY];
    for (Resource *at = entries.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto known = get<NAP_DIR_DATA>(*at);
        if (known.resource_type == NAP_DIR_LU &&
            memcmp(known.resource_name, verb.fqplu_name, sizeof verb.fqplu_name) == 0) {
            memcpy(mode.fq_cp_name, known.fqcp_name, sizeof mode.fq_cp_name);
        }
    }
    return mode;
}

/* Whether the mode, its LU and the node allow so many more sessions. */
Result Engine::check_more(const NAP_MODE_DATA &mode, NB_ULONG more) const {
    const auto lu = get<NAP_LOCAL_LU_DATA>(*tables_[CLASS_LOCAL_LU]->find_alias(mode.lu_alias));
    const auto limits = settings<NAP_QUERY_NODE_LIMITS_VERB>(NAP_QUERY_NODE_LIMITS);
    const NB_ULONG lu_limit = lu.def_data.lu_session_limit;
    const bool fits = mode.draining == 0 && lu.def_data.disable == 0 &&
                      mode.act_sess_count + more <= mode.sess_limit &&
                      (lu_limit == 0 || lu.active_sessions + more <= lu_limit) &&
                      lu.active_sessions + more <= MOST_NUMBERS &&
                      (limits.max_sessions == 0 || active_sessions_ + more <= limits.max_sessions);
    return fits ? GOOD : bad_state(NAP_SESSION_LIMIT);
}

/* It goes again some time behind its last session, and so does its partner. */
Resource &Engine::begin_mode(const NAP_MODE_DATA &entry) {
    Resource &mode = add_derived(CLASS_MODE, &entry, sizeof entry);
    forget_later(CLASS_MODE, key_bytes(mode));
    for (Resource *at = tables_[CLASS_PLU]->first_with(entry.lu_alias, sizeof entry.lu_alias);
         at != nullptr; at = ResourceTable::next_with(*at, sizeof entry.lu_alias)) {
        if (memcmp(get<NAP_PLU_DATA>(*at).fqplu_name, entry.fqplu_name, 17) == 0) {
            forget_later(CLASS_PLU, key_bytes(*at));
        }
    }
    return mode;
}

Result Engine::activate_session(std::vector<NB_UCHAR> &block) {
    auto verb = nap_copy<NAP_LU62_SESSION_VERB>(block.data());
    const Resource *definition = find(CLASS_MODE_DEF, verb.mode_name);
    Resource *mode = find(CLASS_MODE, block.data() + KEY_IN_BLOCK);
    if (verb.stop_type != 0 || verb.sessions == 0 || verb.sessions > MOST_SESSIONS ||
        verb.session_number != 0) {
        return bad_parameter(NAP_INVALID_VALUE);
    }
    if (definition == nullptr || tables_[CLASS_LOCAL_LU]->find_alias(verb.lu_alias) == nullptr) {
        return bad_parameter(NAP_UNKNOWN_OWNER);
    }
    const auto chars = get<NAP_MODE_DEF_DATA>(*definition).mode_chars;
    NAP_MODE_DATA entry = mode != nullptr ? get<NAP_MODE_DATA>(*mode) : new_mode(verb, chars);
    const NB_ULONG wrong = check_fields(records::mode, reinterpret_cast<NB_UCHAR *>(&entry));
    if (wrong != 0 || (chars.mode_flags & NAP_MODE_CONTROL_POINT) != 0) {
        return bad_parameter(wrong != 0 ? wrong : NAP_INVALID_NAME);
    }
    if (node_state_ != NAP_NODE_ACTIVE) {
        return bad_state(NAP_NODE_NOT_ACTIVE);
    }
    if (link_to(entry.fq_cp_name) == nullptr) {
        if (mode != nullptr) {
            lose_sessions(*mode, verb.sessions, SENSE_LINK_FAILED);
        }
        return bad_state(NAP_PARTNER_UNREACHABLE);
    }
    count_traffic(); /* others have first what they were to have */
    entry = mode != nullptr ? get<NAP_MODE_DATA>(*mode) : entry;
    const Result allowed = check_more(entry, verb.sessions);
    if (!allowed.ok()) {
        return allowed;
    }
    mode = mode != nullptr ? mode : &begin_mode(entry);
    const auto wanted = static_cast<NB_USHORT>(entry.act_sess_count + verb.sessions);
    mode->extra = int32_t{wanted} - mode->behaviour.sessions;
    const std::vector<Resource *> before = sessions_of(*mode);
    count_traffic();
    const std::vector<Resource *> there = sessions_of(*mode);
    const auto first =
        std::mismatch(there.begin(), there.end(), before.begin(), before.end()).first;
    if (first == there.end()) {
        mode->extra = int32_t{entry.act_sess_count} - mode->behaviour.sessions;
        return bad_state(NAP_SESSION_LIMIT);
    }
    verb.session_number = get<NAP_SESSION_DATA>(**first).session_number;
    memcpy(block.data(), &verb, sizeof verb);
    return GOOD;
}

/* One session of a mode in use, or all. */
Result Engine::end_mode_sessions(Resource &mode, NB_USHORT number, Stop how) {
    for (Resource *at : sessions_of(mode)) {
        auto session = get<NAP_SESSION_DATA>(*at);
        if (session.session_number == number && how == Stop::Orderly) {
            session.session_state = NAP_PENDING_INACTIVE;
            put(*at, session);
            end_later(*at, end_ms(mode), &Engine::session_over);
        } else if (session.session_number == number) {
            session_over(*at);
        }
        if (session.session_number == number) {
            return GOOD;
        }
    }
    if (number != 0 || get<NAP_MODE_DATA>(mode).act_sess_count == 0) {
        return bad_parameter(NAP_UNKNOWN_RESOURCE);
    }
    mode.extra = -int32_t{mode.behaviour.sessions};
    log(NAP_LOG_AUDIT, NAP_LOG_SESSION_ENDED, mode);
    if (how == Stop::Orderly) {
        drain(mode);
    } else {
        drained(mode);
    }
    return GOOD;
}

Result Engine::deactivate_session(const NB_UCHAR *block) {
    const auto verb = nap_copy<NAP_LU62_SESSION_VERB>(block);
    Resource *mode = find(CLASS_MODE, block + KEY_IN_BLOCK);
    const Resource *definition = find(CLASS_MODE_DEF, verb.mode_name);
    if (!is_stop_type(verb.stop_type) || verb.sessions != 0) {
        return bad_parameter(NAP_INVALID_VALUE);
    }
    if (mode == nullptr || definition == nullptr) {
        return bad_parameter(NAP_UNKNOWN_RESOURCE);
    }
    const NB_UCHAR flags = get<NAP_MODE_DEF_DATA>(*definition).mode_chars.mode_flags;
    return (flags & NAP_MODE_CONTROL_POINT) != 0
               ? bad_parameter(NAP_INVALID_NAME)
               : end_mode_sessions(*mode, verb.session_number, static_cast<Stop>(verb.stop_type));
}

Result Engine::end_lu_session(const NB_UCHAR *block) {
    const auto verb = nap_copy<NAP_END_LU_SESSION_VERB>(block);
    const auto how = static_cast<Stop>(verb.stop_type);
    const NB_UCHAR *name = block + KEY_IN_BLOCK;
    Result result = bad_parameter(NAP_UNKNOWN_RESOURCE);
    if (!is_stop_type(verb.stop_type)) {
        return bad_parameter(NAP_INVALID_VALUE);
    }
    std::vector<Resource *> ended; /* LUs of type 0 to 3, and modes in use */
    const ResourceTable &all = *tables_[CLASS_SESSION];
    for (Resource *at = all.first_with(name, 8); at != nullptr;
         at = ResourceTable::next_with(*at, 8)) {
        const auto session = get<NAP_SESSION_DATA>(*at);
        Resource *mode = mode_of(session);
        Resource *owner = mode != nullptr ? mode : tables_[CLASS_LU03]->find_alias(name);
        const bool meant =
            verb.session_number == 0 || verb.session_number == session.session_number;
        if (meant && owner != nullptr && (ended.empty() || ended.back() != owner)) {
            ended.push_back(owner);
        }
    }
    for (Resource *owner : ended) {
        if (owner->row->id == CLASS_MODE) {
            const Result one = end_mode_sessions(*owner, verb.session_number, how);
            result = result.ok() ? result : one;
        } else if (how == Stop::Orderly) {
            end_later(*owner, end_ms(*owner), &Engine::log_off);
            result = GOOD;
        } else {
            log_off(*owner);
            result = GOOD;
        }
    }
    return result;
}

/* A client of the TN3270 server is who uses the LUs that it has. */
Result Engine::end_tn_client(const NB_UCHAR *block) {
    const auto verb = nap_copy<NAP_END_TN_CLIENT_VERB>(block);
    const std::string client = local_text(verb.client_address, sizeof verb.client_address);
    const bool any = is_blank(KeyKind::Ebcdic, verb.lu_name, sizeof verb.lu_name);
    std::vector<Resource *> ended;
    const ResourceTable &all = *tables_[CLASS_SESSION];
    for (Resource *at = all.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto session = get<NAP_SESSION_DATA>(*at);
        const std::string user = local_text(session.user_name, sizeof session.user_name);
        if (session.app_type == NAP_APP_TN3270_SERVER &&
            strcasecmp(user.c_str(), client.c_str()) == 0 &&
            (any || memcmp(session.lu_name, verb.lu_name, sizeof verb.lu_name) == 0)) {
            ended.push_back(tables_[CLASS_LU03]->find_alias(session.lu_name));
        }
    }
    ended.erase(std::remove(ended.begin(), ended.end(), nullptr), ended.end());
    for (Resource *lu : ended) {
        log_off(*lu);
    }
    return ended.empty() ? bad_parameter(NAP_UNKNOWN_RESOURCE) : GOOD;
}

} // namespace node
