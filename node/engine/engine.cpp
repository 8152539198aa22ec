#include "engine.h"

#include "frames.h"
#include "nbbase.h"
#include "nodedefinition.h"
#include "nofcopy.h"
#include "nofverbs.h"

#include <cstring>

namespace node {

namespace {

constexpr char RELEASE[] = "1.0";

/* A name of what the DLC trace is about. */
bool is_traced(const Settings &row, const FieldRow &field) {
    return row.reset == NAP_REMOVE_DLC_TRACE && field.kind == FieldKind::NameLocal;
}

/* What shows how much it carried. */
bool shows_counters(ClassId id) {
    return id == CLASS_SESSION || id == CLASS_LS || id == CLASS_PORT || id == CLASS_MODE;
}

} // namespace

Engine::Engine(Store *store, TimerQueue &timers, const Clock &clock, EngineListener &listener,
               Scope scope)
    : store_(store), timers_(timers), clock_(clock), listener_(listener), scope_(scope),
      traces_(clock) {
    for (NB_UCHAR id = 0; id < CLASS_COUNT; id++) {
        tables_[id] = std::make_unique<ResourceTable>(class_row(static_cast<ClassId>(id)));
    }
}

Engine::~Engine() {
    timers_.cancel(node_timer_);
    timers_.cancel(traffic_timer_);
    for (const auto &table : tables_) {
        for (Resource *at = table->first(); at != nullptr; at = ResourceTable::next(*at)) {
            timers_.cancel(at->timer);
        }
    }
}

void Engine::execute(const NB_VOID *block, size_t length, Answer &answer) {
    const auto *bytes = static_cast<const NB_UCHAR *>(block);
    answer.block.assign(bytes, bytes + length);
    answer.data.clear();
    changes_.clear();
    changed_nothing_ = false;
    Result result = check_block(bytes, length);
    if (result.ok()) {
        result = dispatch(answer.block, answer.data);
    }
    set_result(answer.block, result);
    answer.changes = std::move(changes_);
    answer.changed_nothing = changed_nothing_;
    trace_verb(answer.block);
    if (!result.ok()) {
        answer.data.clear();
    }
}

Result Engine::dispatch(std::vector<NB_UCHAR> &block, std::vector<NB_UCHAR> &data) {
    const auto header = nap_copy<NAP_VCB>(block.data());
    const NAP_VERB *verb = nap_find_verb(header.opcode);
    const ClassRow *row = class_by_verb(header.opcode);
    const Settings *settings = settings_by_verb(header.opcode);
    if (row != nullptr && !serves(*row)) {
        return {NAP_NOT_SUPPORTED, 0};
    }
    switch (verb->kind) {
    case NAP_KIND_LIST:
        return query_list(block, data);
    case NAP_KIND_RECORD:
        return query_record(block);
    case NAP_KIND_DEFINE:
        return header.opcode == NAP_DEFINE_NODE ? define_node(block.data())
               : row != nullptr                 ? define(*row, block)
               : settings != nullptr            ? define_record(*settings, block)
                                                : Result{NAP_NOT_SUPPORTED, 0};
    case NAP_KIND_DELETE:
        return row != nullptr        ? remove(*row, block.data())
               : settings != nullptr ? reset_record(*settings, block)
                                     : Result{NAP_NOT_SUPPORTED, 0};
    case NAP_KIND_LIMIT:
        return set_session_limit(block.data());
    case NAP_KIND_OPERATE:
        return operate(block);
    case NAP_KIND_START:
        return header.opcode == NAP_INIT_NODE ? init_node()
               : row != nullptr               ? start_verb(*row, block.data())
                                              : Result{NAP_NOT_SUPPORTED, 0};
    case NAP_KIND_STOP:
        return header.opcode == NAP_STOP_NODE ? stop_node(block.data())
               : row != nullptr               ? stop_verb(*row, block.data())
                                              : Result{NAP_NOT_SUPPORTED, 0};
    default:
        return {NAP_NOT_SUPPORTED, 0};
    }
}

Result Engine::query_list(std::vector<NB_UCHAR> &block, std::vector<NB_UCHAR> &data) {
    auto query = nap_copy<NAP_QUERY_LIST>(block.data());
    const ListRow *list = nullptr;
    const ClassRow *row = class_by_list(query.opcode, &list);
    if (row != nullptr && shows_counters(row->id)) {
        settle_all();
    } else if (row != nullptr && row->id == CLASS_RTP_CONN) {
        settle_routes();
    } else if (row != nullptr && row->id == CLASS_TRACE_FILE) {
        show_trace_files();
    }
    const Result result = row != nullptr && serves(*row)
                              ? tables_[row->id]->list(*list, query, data)
                              : list_nothing(query);
    memcpy(block.data(), &query, sizeof query);
    return result;
}

Result Engine::query_record(std::vector<NB_UCHAR> &block) {
    const auto header = nap_copy<NAP_VCB>(block.data());
    const Settings *row = settings_by_verb(header.opcode);
    if (row == nullptr || row->of_domain != (scope_ == Scope::Domain)) {
        return {NAP_NOT_SUPPORTED, 0};
    }
    memcpy(block.data() + sizeof header, records_.image(*row) + sizeof header,
           row->block_size - sizeof header);
    hide_secrets(row->fields, block.data());
    if (header.opcode == NAP_QUERY_NODE) {
        const NAP_QUERY_NODE_VERB now = node_record();
        memcpy(block.data() + sizeof header,
               reinterpret_cast<const NB_UCHAR *>(&now) + sizeof header,
               sizeof now - sizeof header);
    } else if (header.opcode == NAP_QUERY_NODE_LIMITS) {
        show_limits(block);
    }
    return GOOD;
}

/* Everything is counted where it changes. */
void Engine::show_limits(std::vector<NB_UCHAR> &block) const {
    auto limits = nap_copy<NAP_QUERY_NODE_LIMITS_VERB>(block.data());
    limits.lus = tables_[CLASS_LU03]->count() + tables_[CLASS_LOCAL_LU]->count();
    limits.links = tables_[CLASS_LS]->count();
    limits.sessions = active_sessions_;
    limits.users = users_;
    memcpy(block.data(), &limits, sizeof limits);
}

/* A definition that is new takes a place of the node. */
Result Engine::check_limit(const ClassRow &row) const {
    const auto limits = settings<NAP_QUERY_NODE_LIMITS_VERB>(NAP_QUERY_NODE_LIMITS);
    const bool lu = row.id == CLASS_LU03 || row.id == CLASS_LOCAL_LU;
    const NB_ULONG there = lu ? tables_[CLASS_LU03]->count() + tables_[CLASS_LOCAL_LU]->count()
                              : tables_[CLASS_LS]->count();
    const NB_ULONG most = lu ? limits.max_lus : row.id == CLASS_LS ? limits.max_links : 0;
    return most == 0 || there < most ? GOOD : bad_state(lu ? NAP_LU_LIMIT : NAP_LINK_LIMIT);
}

NAP_QUERY_NODE_VERB Engine::node_record() const {
    auto record = nap_copy<NAP_QUERY_NODE_VERB>(records_.image(records::setting("node")));
    record.info.node_state = node_state_;
    record.info.server_flags = server_flags_;
    memcpy(record.info.release, RELEASE, sizeof RELEASE);
    if (node_state_ == NAP_NODE_ACTIVE) {
        record.info.up_time = static_cast<NB_ULONG>((clock_.now_ms() - up_since_ms_) / 10);
    }
    record.active_sessions = active_sessions_;
    return record;
}

/* The settings records of the node take the fields of the define block; all else stays. */
Result Engine::define_node(const NB_UCHAR *block) {
    auto verb = nap_copy<NAP_DEFINE_NODE_VERB>(block);
    if (node_state_ != NAP_NODE_STOPPED && node_state_ != NAP_NODE_UNCONFIGURED) {
        return bad_state(NAP_RESOURCE_ACTIVE);
    }
    const Settings &row = records::setting("node");
    const Settings &limits_row = records::setting("limits");
    auto record = nap_copy<NAP_QUERY_NODE_VERB>(records_.image(row));
    auto limits = nap_copy<NAP_QUERY_NODE_LIMITS_VERB>(records_.image(limits_row));
    records::take_node_definition(verb, record, limits);
    auto *image = reinterpret_cast<NB_UCHAR *>(&record);
    for (const FieldRow &field : row.fields) {
        const NB_ULONG wrong = check_field(field, image);
        if (wrong != 0) {
            return bad_parameter(wrong);
        }
        tidy_field(field, image);
    }
    if (is_blank(KeyKind::Ebcdic, record.info.fq_cp_name, sizeof record.info.fq_cp_name)) {
        return bad_parameter(NAP_INVALID_NAME);
    }
    const auto *limits_image = reinterpret_cast<const NB_UCHAR *>(&limits);
    const Result kept =
        remember({{row.name, nullptr, 0, image, sizeof record, nullptr},
                  {limits_row.name, nullptr, 0, limits_image, sizeof limits, nullptr}},
                 {}, IfFull::Refuse);
    if (!kept.ok()) {
        return kept;
    }
    memcpy(records_.image(row), image, sizeof record);
    memcpy(records_.image(limits_row), limits_image, sizeof limits);
    node_state_ = NAP_NODE_STOPPED;
    announce();
    return GOOD;
}

/* A resource that the DLC trace may name, or null. */
const Resource *Engine::find_traced(const NB_UCHAR *name) const {
    for (const ClassId id : {CLASS_DLC, CLASS_PORT, CLASS_LS}) {
        if (const Resource *found = find(id, name)) {
            return found;
        }
    }
    return nullptr;
}

/* What settings demand of resources: the mode that the defaults name, and those that are traced,
 * which are kept as the resources spell them. */
Result Engine::check_settings(const Settings &row, NB_UCHAR *image) const {
    for (const FieldRow &field : row.fields) {
        NB_UCHAR *name = image + field.offset;
        const bool is_mode = row.query == NAP_QUERY_DEFAULTS && field.kind == FieldKind::NameA;
        if (strcmp(field.name, "trace_file") == 0 &&
            !Traces::is_name(local_text(name, field.width))) {
            return bad_parameter(NAP_INVALID_VALUE);
        }
        if ((!is_mode && !is_traced(row, field)) || is_empty_field(field, image)) {
            continue;
        }
        const Resource *found = is_mode ? find(CLASS_MODE_DEF, name) : find_traced(name);
        if (found == nullptr) {
            return bad_parameter(NAP_UNKNOWN_OWNER);
        }
        memcpy(name, found->entry.get() + KEY_OFFSET, field.width);
    }
    return GOOD;
}

/* The record takes the fields of the block; all else stays. */
Result Engine::define_record(const Settings &row, std::vector<NB_UCHAR> &block) {
    std::vector<NB_UCHAR> image(records_.image(row), records_.image(row) + row.block_size);
    if (row.of_domain != (scope_ == Scope::Domain)) {
        return {NAP_NOT_SUPPORTED, 0};
    }
    for (const FieldRow &field : row.fields) {
        const NB_ULONG wrong = check_field(field, block.data());
        if (wrong != 0) {
            return bad_parameter(wrong);
        }
        memcpy(image.data() + field.offset, block.data() + field.offset, field.width);
        tidy_field(field, image.data());
    }
    keep_secrets(row.fields, image.data(), records_.image(row));
    const Result checked = check_settings(row, image.data());
    return checked.ok() ? take_record(row, image, block) : checked;
}

/* Takes a name out of those that are traced; false when it is not there. */
bool Engine::forget_traced(const Settings &row, const NB_UCHAR *name, NB_UCHAR *image) const {
    const Resource *known = find_traced(name);
    const NB_UCHAR *spelled = known != nullptr ? known->entry.get() + KEY_OFFSET : name;
    bool found = false;
    for (const FieldRow &field : row.fields) {
        if (is_traced(row, field) && memcmp(spelled, image + field.offset, field.width) == 0) {
            memset(image + field.offset, ' ', field.width);
            found = true;
        }
    }
    return found;
}

/* Without names, the initial values; with some, these are traced no longer, and nothing is when
 * they were the last. */
Result Engine::reset_record(const Settings &row, std::vector<NB_UCHAR> &block) {
    std::vector<NB_UCHAR> image(records_.image(row), records_.image(row) + row.block_size);
    bool named = false;
    bool left = false;
    if (row.of_domain != (scope_ == Scope::Domain)) {
        return {NAP_NOT_SUPPORTED, 0};
    }
    for (const FieldRow &field : row.fields) {
        if (is_traced(row, field) && !is_empty_field(field, block.data())) {
            named = true;
            if (!forget_traced(row, block.data() + field.offset, image.data())) {
                return bad_parameter(NAP_UNKNOWN_RESOURCE);
            }
        }
    }
    for (const FieldRow &field : row.fields) {
        left = left || (is_traced(row, field) && !is_empty_field(field, image.data()));
    }
    if (!named || !left) {
        set_initial_fields(row.fields, image.data());
    }
    return take_record(row, image, block);
}

/* Stores a settings record, then has it, then shows it in the block. */
Result Engine::take_record(const Settings &row, std::vector<NB_UCHAR> &image,
                           std::vector<NB_UCHAR> &block) {
    const Result kept =
        remember({{row.name, nullptr, 0, image.data(), image.size(), nullptr}}, {}, IfFull::Refuse);
    if (!kept.ok()) {
        return kept;
    }
    memcpy(records_.image(row), image.data(), image.size());
    set_trace(row);
    hide_secrets(row.fields, image.data());
    memcpy(block.data() + sizeof(NAP_VCB), image.data() + sizeof(NAP_VCB),
           image.size() - sizeof(NAP_VCB));
    return GOOD;
}

void Engine::set_server_flags(NB_ULONG flags) {
    server_flags_ = flags;
}

void Engine::indicate(const Resource &resource, bool deactivated) {
    const ClassRow &row = *resource.row;
    const ListRow &list = shown_by(row, resource.entry.get());
    NAP_RESOURCE_INDICATION indication = {};
    if (list.indication == 0) {
        return;
    }
    indication.opcode = list.indication;
    indication.primary_rc = NAP_INDICATION;
    memcpy(indication.key, resource.entry.get() + KEY_OFFSET, row.schema->key_size());
    indication.deactivated = deactivated ? 1 : 0;
    indication.state = row.hooks.report != nullptr ? row.hooks.report(resource) : resource.state;
    static_assert(sizeof(NAP_LS_DET) <= sizeof indication.det_data);
    indication.det_length = static_cast<NB_USHORT>(row.schema->det.width);
    memcpy(indication.det_data, resource.entry.get() + row.schema->det.offset,
           row.schema->det.width);
    listener_.indicate(&indication, sizeof indication);
}

} // namespace node
