/* Loading a node: from its text at the first start, from its store later. */
#include "engine.h"

#include "generate.h"
#include "nbbase.h"
#include "nbproblem.h"
#include "nofverbs.h"
#include "secrethash.h"
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
    const ClassRow &row = *class_by_name(text.schema->name);
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
    world_ = world_of(domain, text.name);
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
        const Schema *schema = class_row(static_cast<ClassId>(id)).schema;
        for (const TextResource &resource : text.resources) {
            if (resource.schema == schema) {
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
    const bool done =
        store_->write(changes, {{FACT_WANTED, wanted_ ? "1" : "0"},
                                {FACT_BACK_LEVEL, node_state_ == NAP_NODE_BACK_LEVEL ? "1" : "0"},
                                {FACT_LOADED, "1"}});
    if (done) {
        hide_compared(true);
    }
    return done;
}

/* What is stored by its hash is not kept in memory either.  A store may have one that is not hashed
 * yet: of an earlier version, or from a hand. */
void Engine::hide_compared(bool hashed) {
    std::vector<Resource *> found;
    std::vector<StoreChange> changes;
    for (const auto &table : tables_) {
        const Schema &schema = *table->row().schema;
        const bool compares =
            std::any_of(schema.fields.begin(), schema.fields.end(),
                        [](const FieldRow &field) { return field.has(FIELD_COMPARED); });
        for (Resource *at = compares ? table->first() : nullptr; at != nullptr;
             at = ResourceTable::next(*at)) {
            if (brings_secret(schema.fields, at->entry.get())) {
                found.push_back(at);
                changes.push_back(kept(schema, at->entry.get(), at->behaviour));
            }
        }
    }
    if (hashed || changes.empty() || store_->write(changes)) {
        for (Resource *one : found) {
            mark_secrets(one->row->schema->fields, one->entry.get());
        }
    }
}

/* What does not fit is left out, and stays in the store. */
void Engine::load_stored(const ClassRow &row, StoreRow stored) {
    NB_UCHAR *entry = stored.record.get();
    Resource *old = tables_[row.id]->find(entry + KEY_OFFSET);
    if (!stored.whole || (old != nullptr && !generated_) || check_fields(*row.schema, entry) != 0 ||
        !check_refs(row, entry).ok() || !check_alias(row, entry, old).ok()) {
        nba_pd_print_problem(NB_PD_STORE_RECORD, 1, "s", title_of(row, entry).c_str());
        return;
    }
    if (row.hooks.fill != nullptr) {
        row.hooks.fill(*this, entry);
    }
    place(row, std::move(stored.record), stored.behaviour, old);
}

/* Takes what was deleted out of a generated node, dependants before their owners. */
bool Engine::forget_erased() {
    bool good = true;
    for (int id = CLASS_COUNT - 1; id >= 0 && good; id--) {
        const ClassRow &row = class_row(static_cast<ClassId>(id));
        good = store_->read(row, [this, &row](StoreRow &&stored) {
            Resource *resource = stored.erased && stored.whole
                                     ? find(row.id, stored.record.get() + KEY_OFFSET)
                                     : nullptr;
            if (resource != nullptr) {
                remove_tree(*resource);
            }
        });
    }
    return good;
}

bool Engine::load_generated(const Generated &domain, NB_ULONG index, std::string &why) {
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
    if (!store_->migrate(why)) {
        return false;
    }
    if (!forget_erased() || !read_store(configured)) {
        why = store_->unreadable();
        return false;
    }
    if (loaded != "1" && !store_->set_fact(FACT_LOADED, "1")) {
        why = "the store cannot be written; see the problem log";
        return false;
    }
    return true;
}

/* Resources in the order of what they refer to. */
bool Engine::read_store(bool &configured) {
    bool there = false;
    bool good = true;
    for (const Settings &row : records::settings) {
        good = good && store_->read(row, records_.image(row), there);
        configured = configured || (there && strcmp(row.name, "node") == 0);
    }
    for (NB_UCHAR id = 0; id < CLASS_COUNT && good; id++) {
        const ClassRow &row = class_row(static_cast<ClassId>(id));
        good = store_->read(row, [this, &row](StoreRow &&stored) {
            if (!stored.erased) {
                load_stored(row, std::move(stored));
            }
        });
    }
    return good;
}

bool Engine::load_store(std::string &why) {
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
    if (told && !store_->migrate(why)) {
        return false;
    }
    node_state_ = back_level == "1" ? NAP_NODE_BACK_LEVEL : NAP_NODE_STOPPED;
    if (!told || !read_store(configured)) {
        why = store_->unreadable();
        return false;
    }
    if (back_level != "1" && !configured) {
        node_state_ = NAP_NODE_UNCONFIGURED;
    }
    wanted_ = wanted == "1";
    if (scope_ == Scope::Node) {
        add_sna_defined();
    }
    hide_compared(false);
    store_->finish_reading(); /* no loss when it cannot: the next write does it, too */
    return true;
}

} // namespace node
