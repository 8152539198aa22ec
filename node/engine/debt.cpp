#include "debt.h"

#include "store.h"

namespace node {

namespace {

std::string bytes_of(const NB_UCHAR *bytes, size_t length) {
    return length != 0 ? std::string(reinterpret_cast<const char *>(bytes), length) : "";
}

const NB_UCHAR *bytes_in(const std::string &text) {
    return reinterpret_cast<const NB_UCHAR *>(text.data());
}

} // namespace

void Debt::add(const std::vector<StoreChange> &changes, const std::vector<StoreFact> &facts) {
    for (const StoreChange &change : changes) {
        Row row;
        if (change.record != nullptr) {
            row.record = bytes_of(change.record, change.record_length);
        }
        if (change.behaviour != nullptr) {
            row.behaviour = *change.behaviour;
        }
        rows_[{change.section, bytes_of(change.key, change.key_length)}] = std::move(row);
    }
    for (const StoreFact &fact : facts) {
        facts_[fact.name] = fact.value;
    }
}

std::vector<StoreChange> Debt::changes() const {
    std::vector<StoreChange> changes;
    for (const auto &[name, row] : rows_) {
        const auto &[section, key] = name;
        changes.push_back({section.c_str(), bytes_in(key), key.size(),
                           row.record ? bytes_in(*row.record) : nullptr,
                           row.record ? row.record->size() : 0,
                           row.behaviour ? &*row.behaviour : nullptr});
    }
    return changes;
}

std::vector<StoreFact> Debt::facts() const {
    std::vector<StoreFact> facts;
    for (const auto &[name, value] : facts_) {
        facts.push_back({name, value});
    }
    return facts;
}

void Debt::clear() {
    rows_.clear();
    facts_.clear();
}

} // namespace node
