/* Loading a node: from its text at the first start, from its store later. */
#include "engine.h"

#include "generate.h"
#include "nbbase.h"
#include "nbproblem.h"
#include "nofverbs.h"
#include "snadefined.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

struct Meaning {
    NB_ULONG secondary;
    const char *text;
};

constexpr Meaning meanings[] = {
    {NAP_INVALID_NAME, "a name that it needs is missing or not allowed"},
    {NAP_INVALID_VALUE, "two of its values do not fit together, or an address is used twice"},
    {NAP_UNKNOWN_OWNER, "it names a resource that this node does not have; define that first"},
    {NAP_DUPLICATE_NAME, "its name or alias is used already; choose another"},
};

const char *meaning_of(Result result) {
    if (result.primary == NAP_NOT_SUPPORTED) {
        return "the node does not support it; see the lines of its [node] section";
    }
    for (const Meaning &meaning : meanings) {
        if (meaning.secondary == result.secondary) {
            return meaning.text;
        }
    }
    return "it does not fit";
}

/* The name of a resource as the text writes it. */
std::string title_of(const ClassRow &row, const NB_UCHAR *entry) {
    std::string title = row.schema->name;
    for (const FieldRow &field : row.schema->fields) {
        if (field.has(FIELD_KEY)) {
            title += " " + format_field(field, entry);
        }
    }
    return title;
}

/* Records grow at their ends, and by status only: one that was stored before has the definition.
 * One of the key's length is the mark of an erased one. */
bool is_whole(const Schema &schema, const StoreRow &stored) {
    const size_t mark = KEY_OFFSET + schema.key_size();
    size_t end = schema.nested.name != nullptr ? schema.overlay_size() : schema.def.end();
    for (const FieldRow &field : schema.fields) {
        end = std::max(end, size_t{field.offset} + field.width);
    }
    return stored.record_length > mark && stored.record_length >= end &&
           stored.record_length <= schema.overlay_size();
}

std::unique_ptr<NB_UCHAR[]> copy_of(const ClassRow &row, const NB_UCHAR *entry, size_t length) {
    auto copy = std::make_unique<NB_UCHAR[]>(row.schema->overlay_size());
    memcpy(copy.get(), entry, length);
    return copy;
}

} // namespace

void Engine::add_sna_defined() {
    const auto add = [this](ClassId id, const NB_VOID *entry, size_t length) {
        const auto *bytes = static_cast<const NB_UCHAR *>(entry);
        if (tables_[id]->find(bytes + KEY_OFFSET) == nullptr) {
            place(class_row(id), copy_of(class_row(id), bytes, length), DEFAULT_BEHAVIOUR, nullptr);
        }
    };
    for (const NAP_COS_DATA &entry : records::sna_cos()) {
        add(CLASS_COS, &entry, sizeof entry);
    }
    for (const NAP_COS_NODE_ROW_DATA &entry : records::sna_cos_node_rows()) {
        add(CLASS_COS_NODE_ROW, &entry, sizeof entry);
    }
    for (const NAP_COS_TG_ROW_DATA &entry : records::sna_cos_tg_rows()) {
        add(CLASS_COS_TG_ROW, &entry, sizeof entry);
    }
    for (const NAP_MODE_DEF_DATA &entry : records::sna_modes()) {
        add(CLASS_MODE_DEF, &entry, sizeof entry);
    }
}

void Engine::load_resource(const TextResource &text, DomainText &domain) {
    const ClassRow &row = *text.row;
    Entry entry = copy_of(row, text.entry.data(), text.entry.size());
    Resource *old = tables_[row.id]->find(entry.get() + KEY_OFFSET);
    const bool replaces = old != nullptr && row.hooks.removable != nullptr &&
                          row.hooks.removable(*this, *old).secondary == NAP_INVALID_NAME;
    Result result = old != nullptr && !replaces ? bad_parameter(NAP_DUPLICATE_NAME)
                                                : check_entry(row, entry.get(), old);
    if (!result.ok()) {
        domain.error(text.line, title_of(row, text.entry.data()) + ": " + meaning_of(result));
        return;
    }
    if (row.hooks.fill != nullptr) {
        row.hooks.fill(*this, entry.get());
    }
    place(row, std::move(entry), text.behaviour, old);
}

bool Engine::load_text(const TextNode &text, DomainText &domain) {
    const size_t errors_before = domain.errors.size();
    for (const TextRecord &record : text.records) {
        memcpy(records_.image(*record.row), record.image.data(), record.image.size());
    }
    server_flags_ = text.facts.server_flags;
    wanted_ = text.facts.start != 0;
    node_state_ = text.facts.back_level != 0   ? NAP_NODE_BACK_LEVEL
                  : text.facts.configured != 0 ? NAP_NODE_STOPPED
                                               : NAP_NODE_UNCONFIGURED;
    const NAP_QUERY_NODE_VERB record = node_record();
    if (scope_ == Scope::Node && text.facts.configured != 0 &&
        is_blank(KeyKind::Ebcdic, record.info.fq_cp_name, sizeof record.info.fq_cp_name)) {
        domain.error(text.line, "node " + text.name + " needs a line fq_cp_name = NETWORK.NAME");
    }
    if (scope_ == Scope::Node) {
        add_sna_defined();
    }
    for (NB_UCHAR id = 0; id < CLASS_COUNT; id++) {
        for (const TextResource &resource : text.resources) {
            if (resource.row->id == id) {
                load_resource(resource, domain);
            }
        }
    }
    if (domain.errors.size() != errors_before) {
        return false;
    }
    if (!store_all()) {
        domain.error(text.line, "node " + text.name + " could not be stored; see the problem log");
        return false;
    }
    return true;
}

/* Everything, and the facts, as one transaction. */
bool Engine::store_all() {
    std::vector<StoreChange> changes;
    if (store_ == nullptr) {
        return true;
    }
    for (const auto &table : tables_) {
        for (Resource *at = table->first(); at != nullptr; at = ResourceTable::next(*at)) {
            if (!at->derived) {
                changes.push_back(kept(*at->row->schema, at->entry.get(), at->behaviour));
            }
        }
    }
    for (const Settings &row : records::settings) {
        const bool skipped =
            row.of_domain != (scope_ == Scope::Domain) ||
            (node_state_ == NAP_NODE_UNCONFIGURED && strcmp(row.name, "node") == 0);
        if (!skipped) {
            changes.push_back({row.name, nullptr, 0, records_.image(row), row.block_size, nullptr});
        }
    }
    store_->forget();
    return store_->write(changes,
                         {{FACT_WANTED, wanted_ ? "1" : "0"},
                          {FACT_BACK_LEVEL, node_state_ == NAP_NODE_BACK_LEVEL ? "1" : "0"},
                          {FACT_LOADED, "1"}});
}

void Engine::load_stored(const ClassRow &row, const NB_UCHAR *bytes, const Behaviour &behaviour) {
    Entry entry = copy_of(row, bytes, row.schema->overlay_size());
    if (row.life.has_states) {
        memset(entry.get() + row.schema->det.offset, 0, row.schema->det.width);
    }
    Resource *old = tables_[row.id]->find(entry.get() + KEY_OFFSET);
    if ((old != nullptr && !generated_) || check_fields(*row.schema, entry.get()) != 0 ||
        !check_refs(row, entry.get()).ok() || !check_alias(row, entry.get(), old).ok()) {
        nba_pd_print_problem(NB_PD_STORE_RECORD, 1, "s", title_of(row, bytes).c_str());
        return;
    }
    if (row.hooks.fill != nullptr) {
        row.hooks.fill(*this, entry.get());
    }
    place(row, std::move(entry), behaviour, old);
}

/* Takes what was deleted out of a generated node, dependants before their owners. */
void Engine::forget_erased(const std::vector<TextResource> &resources) {
    for (auto stored = resources.rbegin(); stored != resources.rend(); ++stored) {
        Resource *resource = is_erased(stored->entry.data(), stored->entry.size())
                                 ? find(stored->row->id, stored->entry.data() + KEY_OFFSET)
                                 : nullptr;
        if (resource != nullptr) {
            remove_tree(*resource);
        }
    }
}

bool Engine::load_generated(const Generated &domain, NB_ULONG index, std::string &why) {
    std::vector<TextResource> stored;
    std::string wanted;
    std::string loaded;
    bool configured = false;
    if (store_ != nullptr &&
        !(store_->fact(FACT_WANTED, wanted) && store_->fact(FACT_LOADED, loaded))) {
        why = store_->unreadable();
        return false;
    }
    generated_ = true;
    memcpy(records_.image(records::setting("node")), generated_node(domain, index).data(),
           sizeof(NAP_QUERY_NODE_VERB));
    wanted_ = wanted != "0";
    node_state_ = NAP_NODE_STOPPED;
    add_sna_defined();
    generate_resources(domain, index, [this](const ClassRow &row, const NB_UCHAR *bytes) {
        Entry entry = copy_of(row, bytes, row.schema->entry_size);
        if (row.hooks.fill != nullptr) {
            row.hooks.fill(*this, entry.get());
        }
        place(row, std::move(entry), DEFAULT_BEHAVIOUR, nullptr);
    });
    if (store_ == nullptr) {
        return true;
    }
    store_->keep_erased();
    if (!read_store(stored, configured)) {
        why = store_->unreadable();
        return false;
    }
    forget_erased(stored);
    for (const TextResource &one : stored) {
        if (!is_erased(one.entry.data(), one.entry.size())) {
            load_stored(*one.row, one.entry.data(), one.behaviour);
        }
    }
    if (loaded != "1" && !store_->set_fact(FACT_LOADED, "1")) {
        why = "the store cannot be written; see the problem log";
        return false;
    }
    return true;
}

/* Settings take their places at once; resources are put in the order of what they refer to. */
bool Engine::read_store(std::vector<TextResource> &resources, bool &configured) {
    const bool good = store_->read([&](const StoreRow &stored) {
        const ClassRow *row = class_by_name(stored.section);
        const Settings *record = records::settings_by_name(stored.section);
        if (record != nullptr && stored.record_length <= record->block_size) {
            memcpy(records_.image(*record), stored.record, stored.record_length);
            configured = configured || stored.section == "node";
        } else if (row != nullptr &&
                   (is_whole(*row->schema, stored) ||
                    (stored.record_length == KEY_OFFSET + row->schema->key_size() &&
                     is_erased(stored.record, stored.record_length)))) {
            resources.push_back(
                {row, {stored.record, stored.record + stored.record_length}, stored.behaviour, 0});
            if (is_whole(*row->schema, stored)) {
                resources.back().entry.resize(row->schema->overlay_size());
            }
        } else {
            nba_pd_print_problem(NB_PD_STORE_RECORD, 2, "s", stored.section.c_str());
        }
        return true;
    });
    std::stable_sort(resources.begin(), resources.end(),
                     [](const TextResource &left, const TextResource &right) {
                         return left.row->id < right.row->id;
                     });
    return good;
}

bool Engine::load_store(std::string &why) {
    std::vector<TextResource> resources;
    std::string loaded;
    std::string wanted;
    std::string back_level;
    bool configured = false;
    why.clear();
    if (store_ == nullptr) {
        return false;
    }
    const bool told = store_->fact(FACT_LOADED, loaded) && store_->fact(FACT_WANTED, wanted) &&
                      store_->fact(FACT_BACK_LEVEL, back_level);
    if (told && loaded != "1") {
        return false;
    }
    if (!told || !read_store(resources, configured)) {
        why = store_->unreadable();
        return false;
    }
    node_state_ = back_level == "1" ? NAP_NODE_BACK_LEVEL
                  : configured      ? NAP_NODE_STOPPED
                                    : NAP_NODE_UNCONFIGURED;
    wanted_ = wanted == "1";
    for (const TextResource &stored : resources) {
        load_stored(*stored.row, stored.entry.data(), stored.behaviour);
    }
    if (scope_ == Scope::Node) {
        add_sna_defined();
    }
    store_->claim(); /* no loss when it cannot be: the next write says it, too */
    return true;
}

} // namespace node
