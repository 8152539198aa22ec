#include "store.h"

#include "nbbase.h"
#include "nbproblem.h"
#include "secrethash.h"
#include "storefiles.h"
#include "storesql.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>
#include <unistd.h>

namespace node {

namespace {

/* Exclusive before anything is read: then the write-ahead log has its index in memory, and there is
 * no file of shared memory that others could lock. */
constexpr const char *LOCK = "PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE; COMMIT;";
constexpr const char *MODES = "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;"
                              "PRAGMA secure_delete=ON;";

/* What `apply` does, in the order of the statements.  Both tables have the same key. */
enum Action { PUT, ERASE, PUT_SECRET, ERASE_SECRET };
constexpr const char *actions[] = {
    "INSERT OR REPLACE INTO resource VALUES (?1, ?2, ?3)",
    "DELETE FROM resource WHERE section = ?1 AND key = ?2",
    "INSERT OR REPLACE INTO secret VALUES (?1, ?2, ?3)",
    "DELETE FROM secret WHERE section = ?1 AND key = ?2",
};

/* The first line of a mark. */
constexpr std::string_view MARK = "-\n";

void bind_key(sqlite3_stmt *statement, const StoreChange &change) {
    sqlite3_bind_text(statement, 1, change.section, -1, SQLITE_STATIC);
    sqlite3_bind_blob(statement, 2,
                      change.key_length == 0 ? "" : static_cast<const void *>(change.key),
                      static_cast<int>(change.key_length), SQLITE_STATIC);
}

} // namespace

Store::~Store() {
    settle();
    for (sqlite3_stmt *statement : statements_) {
        sqlite3_finalize(statement);
    }
    sqlite3_close(db_);
}

bool Store::failed(const char *what) {
    nba_pd_print_problem(NB_PD_STORE, 1, "s s s", what, path_.c_str(),
                         db_ != nullptr ? sqlite3_errmsg(db_) : "no memory");
    return false;
}

bool Store::run(const char *sql) {
    return sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) == SQLITE_OK || failed(sql);
}

/* A database of something else has other tables; nothing may be made in it. */
bool Store::is_foreign() {
    const Statement count(db_, "SELECT count(*), ifnull(sum(name IN ('resource', 'fact')), 0)"
                               " FROM sqlite_master WHERE type = 'table'");
    return count.handle != nullptr && sqlite3_step(count.handle) == SQLITE_ROW &&
           sqlite3_column_int(count.handle, 0) != 0 && sqlite3_column_int(count.handle, 1) != 2;
}

bool Store::read_layout() {
    const Statement ask(db_, "PRAGMA user_version");
    const bool good = ask.handle != nullptr && sqlite3_step(ask.handle) == SQLITE_ROW;
    layout_ = good ? sqlite3_column_int(ask.handle, 0) : 0;
    return good;
}

/* A file without tables is a new store; one of an earlier layout is left as it is. */
int Store::make_tables() {
    const Statement count(db_, "SELECT count(*) FROM sqlite_master");
    const int code = count.handle != nullptr ? sqlite3_step(count.handle) : SQLITE_ERROR;
    if (code != SQLITE_ROW) {
        return code;
    }
    const bool is_new = sqlite3_column_int(count.handle, 0) == 0;
    sqlite3_reset(count.handle);
    layout_ = is_new ? STORE_LAYOUT : layout_;
    return is_new ? sqlite3_exec(db_, ("BEGIN;" + make_tables_sql() + ";COMMIT").c_str(), nullptr,
                                 nullptr, nullptr)
                  : SQLITE_OK;
}

/* Returns the code of SQLite; SQLITE_MISMATCH for a database of something else, SQLITE_SCHEMA for a
 * store of a later layout.  What is half open is closed by the next try or the destructor. */
int Store::open_once() {
    sqlite3_close(db_);
    int code =
        sqlite3_open_v2(path_.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    code = code == SQLITE_OK ? sqlite3_exec(db_, LOCK, nullptr, nullptr, nullptr) : code;
    code = code == SQLITE_OK && !read_layout() ? sqlite3_errcode(db_) : code;
    code = code == SQLITE_OK && is_foreign() ? SQLITE_MISMATCH : code;
    code = code == SQLITE_OK && layout_ > STORE_LAYOUT ? SQLITE_SCHEMA : code;
    code = code == SQLITE_OK ? sqlite3_exec(db_, MODES, nullptr, nullptr, nullptr) : code;
    return code == SQLITE_OK ? make_tables() : code;
}

std::string Store::refusal(int code) const {
    if (code == SQLITE_MISMATCH) {
        return path_ + " is a database of something else; move it away, or give another folder "
                       "with --state";
    }
    if (code == SQLITE_SCHEMA) {
        return path_ + " has layout " + std::to_string(layout_) +
               " of a later version of this program, which knows layouts up to " +
               std::to_string(STORE_LAYOUT) +
               "; start that version, put a copy from before it in its place, or give another "
               "folder with --state";
    }
    return unreadable();
}

/* A process that was killed a moment ago may still have the lock; it is waited for, here only. */
bool Store::open(const std::string &path, std::string &why) {
    constexpr int TRIES = 100;
    constexpr auto PAUSE = std::chrono::milliseconds(20);
    path_ = path;
    if (!own_store_files(path, why)) {
        return false;
    }
    int code = open_once();
    for (int tried = 1; code == SQLITE_BUSY && tried < TRIES; tried++) {
        std::this_thread::sleep_for(PAUSE);
        code = open_once();
    }
    if (code == SQLITE_OK) {
        unlink((path + "-shm").c_str()); /* of an earlier version; nothing reads it any more */
        return true;
    }
    failed("open");
    why = refusal(code);
    if (code == SQLITE_BUSY) {
        sqlite3_close(db_);
        db_ = nullptr;
        why = path + " is held" + holder_of(path) + "; end that first";
    }
    return false;
}

std::string Store::unreadable() const {
    return path_ + " cannot be read (" + (db_ != nullptr ? sqlite3_errmsg(db_) : "no memory") +
           "); take one back with --restore, or move it away and start with --fresh to begin anew";
}

bool Store::belongs_to(const std::string &owner, std::string &why) {
    std::string found;
    owner_ = owner;
    if (!fact(FACT_OWNER, found)) {
        why = unreadable();
        return false;
    }
    claimed_ = !found.empty();
    if (claimed_ && found != owner) {
        why = path_ + " is the store of " + found + ", not of " + owner +
              "; put the right file in its place, give another folder with --state, or --fresh to "
              "forget what is kept";
        return false;
    }
    return true;
}

/* The base that the store has goes over the program's; new fields keep the program's. */
Store::Section *Store::section(std::string_view name) {
    const auto known = sections_.find(name);
    const ClassRow *row = class_by_name(name);
    const Settings *settings = records::settings_by_name(name);
    if (known != sections_.end()) {
        return &known->second;
    }
    if (row == nullptr && settings == nullptr) {
        return nullptr;
    }
    Section made = {row != nullptr ? StoredForm(*row) : StoredForm(*settings)};
    if (!forgets_) {
        const Statement select(db_, "SELECT text FROM initial WHERE section = ?1");
        sqlite3_bind_text(select.handle, 1, name.data(), static_cast<int>(name.size()),
                          SQLITE_STATIC);
        const int step = select.handle != nullptr ? sqlite3_step(select.handle) : SQLITE_ERROR;
        if (step != SQLITE_ROW && step != SQLITE_DONE) {
            failed("initial");
            return nullptr;
        }
        made.base_kept = step == SQLITE_ROW && made.form.take_base(column(select.handle, 0));
    }
    return &sections_.emplace(name, std::move(made)).first->second;
}

bool Store::finish_reading() {
    const bool settled = (owner_.empty() || claimed_) &&
                         std::all_of(sections_.begin(), sections_.end(),
                                     [](const auto &one) { return is_settled(one.second); });
    return log_unknown_sections() && (settled || write({}));
}

bool Store::act(int action, const StoreChange &change, const std::string &text) {
    sqlite3_stmt *&statement = statements_[action];
    if (statement == nullptr &&
        sqlite3_prepare_v2(db_, actions[action], -1, &statement, nullptr) != SQLITE_OK) {
        return false;
    }
    bind_key(statement, change);
    if (action == PUT || action == PUT_SECRET) {
        sqlite3_bind_text(statement, 3, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
    }
    const bool done = sqlite3_step(statement) == SQLITE_DONE;
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
    return done;
}

bool Store::read_secrets(const StoreChange &of, std::string &secrets) {
    const Statement select(db_, "SELECT text FROM secret WHERE section = ?1 AND key = ?2");
    if (select.handle == nullptr) {
        return false;
    }
    bind_key(select.handle, of);
    const int step = sqlite3_step(select.handle);
    secrets = step == SQLITE_ROW ? column(select.handle, 0) : "";
    return step == SQLITE_ROW || step == SQLITE_DONE;
}

bool Store::write_text(const StoreChange &change, StoredForm &form) {
    std::string before;
    if (change.record == nullptr) {
        text_ = {std::string(MARK), ""};
        form.write_key(change.key, change.key_length, text_.fields);
        return true;
    }
    return form.write(change.record, change.behaviour, text_) &&
           (!form.has_compared() ||
            (read_secrets(change, before) && form.keep_hashes(before, text_.secrets)));
}

bool Store::matches_secret(const records::Schema &schema, const FieldRow &field,
                           const NB_UCHAR *typed) {
    std::string secrets;
    const StoreChange of = erased(schema, typed);
    const bool known = read_secrets(of, secrets);
    const std::string hash = StoredForm::hash_in(secrets, field.name);
    return known && !hash.empty() && matches_hash(hash, field, typed + field.offset);
}

bool Store::apply(const StoreChange &change) {
    Section *of = section(change.section);
    int action = change.record != nullptr || keeps_erased_ ? PUT : ERASE;
    if (of == nullptr) {
        return false;
    }
    of->used = true;
    if (!write_text(change, of->form) || !act(action, change, text_.fields)) {
        return false;
    }
    action = text_.secrets.empty() ? ERASE_SECRET : PUT_SECRET;
    return !of->form.has_secrets() || act(action, change, text_.secrets);
}

bool Store::put_base(const std::string &name, Section &of) {
    const Statement put(db_, "INSERT OR REPLACE INTO initial VALUES (?1, ?2)");
    const std::string text = of.form.base_text();
    sqlite3_bind_text(put.handle, 1, name.c_str(), -1, SQLITE_STATIC);
    sqlite3_bind_text(put.handle, 2, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
    of.base_kept = put.handle != nullptr && sqlite3_step(put.handle) == SQLITE_DONE;
    return of.base_kept;
}

bool Store::put_bases() {
    return std::all_of(sections_.begin(), sections_.end(), [this](auto &one) {
        return is_settled(one.second) || put_base(one.first, one.second);
    });
}

bool Store::put_fact(const StoreFact &fact) {
    const Statement put(db_, "INSERT OR REPLACE INTO fact VALUES (?1, ?2)");
    sqlite3_bind_text(put.handle, 1, fact.name.c_str(), -1, SQLITE_STATIC);
    sqlite3_bind_text(put.handle, 2, fact.value.c_str(), -1, SQLITE_STATIC);
    return put.handle != nullptr && sqlite3_step(put.handle) == SQLITE_DONE;
}

/* What a transaction does.  Whose the store is goes with it, and costs one row more. */
bool Store::fill(const std::vector<StoreChange> &changes, const std::vector<StoreFact> &facts) {
    return (!forgets_ || (run(DROP_TABLES) && run(make_tables_sql().c_str()))) &&
           std::all_of(changes.begin(), changes.end(),
                       [this](const StoreChange &change) { return apply(change); }) &&
           std::all_of(facts.begin(), facts.end(),
                       [this](const StoreFact &fact) { return put_fact(fact); }) &&
           ((layout_ != STORE_LAYOUT && !forgets_) || put_bases()) &&
           (owner_.empty() || claimed_ || put_fact({FACT_OWNER, owner_}));
}

bool Store::in_transaction(const std::function<bool()> &action) {
    if (!run("BEGIN IMMEDIATE")) {
        return false;
    }
    const bool filled = action() || failed("write");
    if (filled && when_writing_) {
        when_writing_(false);
    }
    const bool done = filled && run("COMMIT");
    if (done && when_writing_) {
        when_writing_(true);
    }
    if (!done) {
        sections_.clear(); /* the bases that it put are not there */
    }
    if (!done && sqlite3_get_autocommit(db_) == 0) {
        run("ROLLBACK");
    }
    return done;
}

bool Store::commit(const std::vector<StoreChange> &changes, const std::vector<StoreFact> &facts) {
    const bool done = in_transaction([&] { return fill(changes, facts); });
    layout_ = done && forgets_ ? STORE_LAYOUT : layout_;
    forgets_ = forgets_ && !done;
    claimed_ = claimed_ || (done && !owner_.empty());
    return done;
}

bool Store::write(const std::vector<StoreChange> &changes, const std::vector<StoreFact> &facts) {
    return settle() && commit(changes, facts);
}

bool Store::write_or_owe(const std::vector<StoreChange> &changes,
                         const std::vector<StoreFact> &facts) {
    if (debt_.empty() && commit(changes, facts)) {
        return true;
    }
    debt_.add(changes, facts);
    return settle();
}

bool Store::settle() {
    if (!debt_.empty() && commit(debt_.changes(), debt_.facts())) {
        debt_.clear();
    }
    return debt_.empty();
}

bool Store::read_section(std::string_view name, size_t key_length,
                         const std::function<void(StoreRow &&)> &take) {
    if (forgets_) {
        return true;
    }
    Section *of = section(name);
    const Statement select(db_,
                           of != nullptr && of->form.has_secrets()
                               ? "SELECT key, text, (SELECT text FROM secret WHERE section = ?1"
                                 " AND secret.key = resource.key) FROM resource WHERE section = ?1"
                               : "SELECT key, text, '' FROM resource WHERE section = ?1");
    if (of == nullptr || select.handle == nullptr) {
        return failed("read");
    }
    int step = SQLITE_DONE;
    std::set<std::string> unknown;
    sqlite3_bind_text(select.handle, 1, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
    while ((step = sqlite3_step(select.handle)) == SQLITE_ROW) {
        const std::string_view key = column(select.handle, 0);
        std::string_view text = column(select.handle, 1);
        StoreRow row;
        row.record = std::make_unique_for_overwrite<NB_UCHAR[]>(of->form.record_size());
        row.erased = text.substr(0, MARK.size()) == MARK;
        text.remove_prefix(row.erased ? MARK.size() : 0);
        of->used = true;
        row.whole = of->form.read(text, column(select.handle, 2), row.record.get(), row.behaviour,
                                  unknown) &&
                    key.size() == key_length &&
                    memcmp(key.data(), row.record.get() + KEY_OFFSET, key_length) == 0;
        take(std::move(row));
    }
    for (const std::string &field : unknown) {
        nba_pd_print_problem(NB_PD_STORE_FIELD, 1, "s s s", std::string(name).c_str(),
                             field.c_str(), path_.c_str());
    }
    return step == SQLITE_DONE || failed("read");
}

bool Store::read(const ClassRow &row, const std::function<void(StoreRow &&)> &take) {
    return read_section(row.schema->name, row.schema->key_size(), take);
}

bool Store::read(const Settings &row, NB_UCHAR *image, bool &there) {
    there = false;
    return read_section(row.name, 0, [&](StoreRow &&stored) {
        there = stored.whole;
        if (stored.whole) {
            memcpy(image, stored.record.get(), row.block_size);
        } else {
            nba_pd_print_problem(NB_PD_STORE_RECORD, 2, "s", row.name);
        }
    });
}

/* From section to section, without a look at their rows. */
bool Store::log_unknown_sections() {
    const Statement next(db_, "SELECT section FROM resource WHERE section > ?1"
                              " ORDER BY section LIMIT 1");
    int step = next.handle != nullptr && !forgets_ ? SQLITE_ROW : SQLITE_DONE;
    std::string name;
    while (step == SQLITE_ROW) {
        sqlite3_bind_text(next.handle, 1, name.c_str(), -1, SQLITE_TRANSIENT);
        step = sqlite3_step(next.handle);
        if (step == SQLITE_ROW) {
            name = column(next.handle, 0);
            if (class_by_name(name) == nullptr && records::settings_by_name(name) == nullptr) {
                nba_pd_print_problem(NB_PD_STORE_RECORD, 3, "s", name.c_str());
            }
        }
        sqlite3_reset(next.handle);
    }
    return step == SQLITE_DONE || failed("read");
}

bool Store::fact(const std::string &name, std::string &value) {
    value.clear();
    if (forgets_) {
        return true;
    }
    const Statement select(db_, "SELECT value FROM fact WHERE name = ?1");
    sqlite3_bind_text(select.handle, 1, name.c_str(), -1, SQLITE_STATIC);
    const int step = select.handle != nullptr ? sqlite3_step(select.handle) : SQLITE_ERROR;
    if (step == SQLITE_ROW) {
        value = reinterpret_cast<const char *>(sqlite3_column_text(select.handle, 0));
    }
    return step == SQLITE_ROW || step == SQLITE_DONE || failed("fact");
}

bool Store::set_fact(const std::string &name, const std::string &value) {
    return write({}, {{name, value}});
}

} // namespace node
