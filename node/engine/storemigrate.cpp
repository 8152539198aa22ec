/* Stores of earlier layouts. */
#include "nbbase.h"
#include "nbproblem.h"
#include "store.h"
#include "storesql.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

/* Rows of layout 0: section, key, record, behaviour.  The two last are as they lay in memory and
 * have grown at their ends. */
enum Column { SECTION, KEY, RECORD, BEHAVIOUR };

/* Status that a record of layout 0 does not have in its middle. */
struct Inserted {
    std::string_view section;
    size_t at;
    size_t bytes;
};

constexpr Inserted inserted[] = {
    {"pu", offsetof(NAP_PU_DATA, active_dlus_name),
     offsetof(NAP_PU_DATA, def_data) - offsetof(NAP_PU_DATA, active_dlus_name)},
};

std::string as_of_today(std::string_view section, std::string_view record) {
    std::string whole(record);
    for (const Inserted &one : inserted) {
        if (one.section == section && whole.size() > one.at) {
            whole.insert(one.at, one.bytes, '\0');
        }
    }
    return whole;
}

/* Else records grew by status at their ends, so an older one has the whole definition. */
bool is_whole(const Schema &schema, size_t length) {
    size_t end = schema.nested.name != nullptr ? schema.overlay_size() : schema.def.end();
    for (const FieldRow &field : schema.fields) {
        end = std::max(end, size_t{field.offset} + field.width);
    }
    return length > KEY_OFFSET + schema.key_size() && length >= end &&
           length <= schema.overlay_size();
}

/* The mark of an erased row: two zeroes where a record has its length, and the key. */
bool is_mark(const Schema &schema, std::string_view record) {
    return record.size() == KEY_OFFSET + schema.key_size() && record[0] == 0 && record[1] == 0;
}

/* What was written down reads as what was there, in every field. */
bool reads_back(StoredForm &form, const StoredText &text) {
    std::vector<NB_UCHAR> record(form.record_size());
    Behaviour behaviour = DEFAULT_BEHAVIOUR;
    std::set<std::string> unknown;
    StoredText again;
    if (!form.read(text.fields, text.secrets, record.data(), behaviour, unknown)) {
        return false;
    }
    return form.write(record.data(), &behaviour, again) && unknown.empty() &&
           again.fields == text.fields && (form.has_compared() || again.secrets == text.secrets);
}

} // namespace

/* Writes a row of layout 0 as one of this; false when it does not fit. */
bool Store::migrate_row(sqlite3_stmt *row, bool &fits) {
    const std::string name(column(row, SECTION));
    const std::string_view key = column(row, KEY);
    const std::string old = as_of_today(name, column(row, RECORD));
    const std::string_view beside = column(row, BEHAVIOUR);
    const ClassRow *of = class_by_name(name);
    const Settings *settings = records::settings_by_name(name);
    StoreChange change = {
        name.c_str(), reinterpret_cast<const NB_UCHAR *>(key.data()), key.size(), nullptr, 0,
        nullptr};
    Behaviour behaviour = DEFAULT_BEHAVIOUR;
    std::vector<NB_UCHAR> record;
    std::set<std::string> unknown;
    const bool mark = of != nullptr && is_mark(*of->schema, old);
    fits = mark || (of != nullptr && is_whole(*of->schema, old.size())) ||
           (settings != nullptr && old.size() <= settings->block_size);
    fits = fits && beside.size() <= sizeof behaviour &&
           (of == nullptr || (key.size() == of->schema->key_size() &&
                              memcmp(key.data(), old.data() + KEY_OFFSET, key.size()) == 0));
    if (!fits) {
        return true;
    }
    Section *into = section(name);
    if (into == nullptr) {
        return false;
    }
    record.resize(into->form.record_size());
    into->form.read("", "", record.data(), behaviour, unknown);
    memcpy(record.data(), old.data(), old.size());
    behaviour = DEFAULT_BEHAVIOUR;
    memcpy(&behaviour, beside.data(), beside.size());
    change.record = mark ? nullptr : record.data();
    change.behaviour = &behaviour;
    if (!apply(change)) {
        return false;
    }
    fits = mark || reads_back(into->form, text_);
    return true;
}

/* What does not fit goes into a table of its own, as it was. */
bool Store::migrate_rows() {
    if (!run("ALTER TABLE resource RENAME TO earlier; CREATE TABLE unread (section, key, record,"
             " behaviour)") ||
        !run(make_tables_sql().c_str())) {
        return false;
    }
    const Statement select(db_, "SELECT section, key, record, behaviour FROM earlier");
    const Statement keep(db_, "INSERT INTO unread SELECT * FROM earlier"
                              " WHERE section = ?1 AND key = ?2");
    int step = SQLITE_ERROR;
    while (select.handle != nullptr && (step = sqlite3_step(select.handle)) == SQLITE_ROW) {
        bool fits = false;
        if (!migrate_row(select.handle, fits)) {
            return false;
        }
        if (fits) {
            continue;
        }
        nba_pd_print_problem(NB_PD_STORE_RECORD, 4, "s",
                             std::string(column(select.handle, SECTION)).c_str());
        sqlite3_bind_value(keep.handle, 1, sqlite3_column_value(select.handle, SECTION));
        sqlite3_bind_value(keep.handle, 2, sqlite3_column_value(select.handle, KEY));
        if (sqlite3_step(keep.handle) != SQLITE_DONE) {
            return false;
        }
        sqlite3_reset(keep.handle);
    }
    sqlite3_reset(select.handle);
    return step == SQLITE_DONE && put_bases() && run("DROP TABLE earlier");
}

bool Store::migrate(std::string &why) {
    if (layout_ == STORE_LAYOUT || forgets_) {
        return true;
    }
    if (before_migration_ && !before_migration_(*this, why)) {
        return false;
    }
    const bool keeps = keeps_erased_;
    keeps_erased_ = true; /* marks are carried over */
    const bool done = in_transaction([this] { return migrate_rows(); });
    keeps_erased_ = keeps;
    if (!done) {
        why = path_ + " is of an earlier version and could not be brought to this one; it is as it "
                      "was. The problem log says what failed: give it room, or start the earlier "
                      "version";
        return false;
    }
    nba_pd_print_problem(NB_PD_STORE_UPDATE, 1, "s s s", path_.c_str(),
                         std::to_string(layout_).c_str(), std::to_string(STORE_LAYOUT).c_str());
    layout_ = STORE_LAYOUT;
    /* Gives back the room of the old rows.  Without room for that it is only larger. */
    sqlite3_exec(db_, "VACUUM; PRAGMA wal_checkpoint(TRUNCATE)", nullptr, nullptr, nullptr);
    return true;
}

} // namespace node
