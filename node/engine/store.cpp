#include "store.h"

#include "nbbase.h"
#include "nbproblem.h"
#include "storefiles.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <sqlite3.h>
#include <thread>
#include <unistd.h>

namespace node {

namespace {

/* Exclusive before anything is read: then the write-ahead log has its index in memory, and there is
 * no file of shared memory that others could lock. */
constexpr const char *LOCK = "PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE; COMMIT;";
constexpr const char *SCHEMA =
    "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;"
    "CREATE TABLE IF NOT EXISTS resource (section TEXT NOT NULL, key BLOB NOT NULL,"
    " record BLOB NOT NULL, behaviour BLOB, PRIMARY KEY (section, key)) WITHOUT ROWID;"
    "CREATE TABLE IF NOT EXISTS fact (name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;";

/* Finalizes a statement that lives no longer than a block. */
struct Statement {
    sqlite3_stmt *handle = nullptr;

    Statement(sqlite3 *db, const char *sql) {
        if (sqlite3_prepare_v2(db, sql, -1, &handle, nullptr) != SQLITE_OK) {
            handle = nullptr;
        }
    }
    ~Statement() { sqlite3_finalize(handle); }
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;
};

void bind_key(sqlite3_stmt *statement, const StoreChange &change) {
    sqlite3_bind_text(statement, 1, change.section, -1, SQLITE_STATIC);
    sqlite3_bind_blob(statement, 2,
                      change.key_length == 0 ? "" : static_cast<const void *>(change.key),
                      static_cast<int>(change.key_length), SQLITE_STATIC);
}

Behaviour read_behaviour(sqlite3_stmt *statement, int column) {
    Behaviour behaviour = DEFAULT_BEHAVIOUR;
    const auto length = static_cast<size_t>(sqlite3_column_bytes(statement, column));
    if (length > 0 && length <= sizeof behaviour) {
        memcpy(&behaviour, sqlite3_column_blob(statement, column), length);
    }
    return behaviour;
}

} // namespace

Store::~Store() {
    settle();
    sqlite3_finalize(put_);
    sqlite3_finalize(erase_);
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

/* Returns the code of SQLite, SQLITE_MISMATCH for a database of something else.  What is half open
 * is closed by the next try or the destructor. */
int Store::open_once() {
    constexpr const char *PUT = "INSERT OR REPLACE INTO resource VALUES (?1, ?2, ?3, ?4)";
    constexpr const char *ERASE = "DELETE FROM resource WHERE section = ?1 AND key = ?2";
    sqlite3_close(db_);
    int code =
        sqlite3_open_v2(path_.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    for (const char *sql : {LOCK, SCHEMA}) {
        code = code == SQLITE_OK ? sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) : code;
        code = code == SQLITE_OK && is_foreign() ? SQLITE_MISMATCH : code;
    }
    code = code == SQLITE_OK ? sqlite3_prepare_v2(db_, PUT, -1, &put_, nullptr) : code;
    return code == SQLITE_OK ? sqlite3_prepare_v2(db_, ERASE, -1, &erase_, nullptr) : code;
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
    why = code == SQLITE_MISMATCH ? path + " is a database of something else; move it away, or "
                                           "give another folder with --state"
                                  : unreadable();
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

bool Store::claim() {
    return owner_.empty() || claimed_ || write({});
}

bool Store::apply(const StoreChange &change) {
    const bool marks = change.record == nullptr && keeps_erased_;
    sqlite3_stmt *statement = change.record != nullptr || marks ? put_ : erase_;
    std::vector<NB_UCHAR> mark(2);
    bind_key(statement, change);
    if (marks) {
        mark.insert(mark.end(), change.key, change.key + change.key_length);
        sqlite3_bind_blob(statement, 3, mark.data(), static_cast<int>(mark.size()), SQLITE_STATIC);
    }
    if (change.record != nullptr) {
        sqlite3_bind_blob(statement, 3, change.record, static_cast<int>(change.record_length),
                          SQLITE_STATIC);
        if (change.behaviour != nullptr) {
            sqlite3_bind_blob(statement, 4, change.behaviour, sizeof *change.behaviour,
                              SQLITE_STATIC);
        }
    }
    const bool done = sqlite3_step(statement) == SQLITE_DONE;
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
    return done;
}

bool Store::put_fact(const StoreFact &fact) {
    const Statement put(db_, "INSERT OR REPLACE INTO fact VALUES (?1, ?2)");
    sqlite3_bind_text(put.handle, 1, fact.name.c_str(), -1, SQLITE_STATIC);
    sqlite3_bind_text(put.handle, 2, fact.value.c_str(), -1, SQLITE_STATIC);
    return put.handle != nullptr && sqlite3_step(put.handle) == SQLITE_DONE;
}

/* What a transaction does.  Whose the store is goes with it, and costs one row more. */
bool Store::fill(const std::vector<StoreChange> &changes, const std::vector<StoreFact> &facts) {
    return (!forgets_ || run("DELETE FROM resource; DELETE FROM fact")) &&
           std::all_of(changes.begin(), changes.end(),
                       [this](const StoreChange &change) { return apply(change); }) &&
           std::all_of(facts.begin(), facts.end(),
                       [this](const StoreFact &fact) { return put_fact(fact); }) &&
           (owner_.empty() || claimed_ || put_fact({FACT_OWNER, owner_}));
}

bool Store::commit(const std::vector<StoreChange> &changes, const std::vector<StoreFact> &facts) {
    if (!run("BEGIN IMMEDIATE")) {
        return false;
    }
    const bool filled = fill(changes, facts) || failed("write");
    const bool done = filled && run("COMMIT");
    if (!done && sqlite3_get_autocommit(db_) == 0) {
        run("ROLLBACK");
    }
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

bool Store::read(const std::function<bool(const StoreRow &)> &take) {
    if (forgets_) {
        return true;
    }
    const Statement select(db_, "SELECT section, record, behaviour FROM resource");
    if (select.handle == nullptr) {
        return failed("read");
    }
    int step = SQLITE_DONE;
    while ((step = sqlite3_step(select.handle)) == SQLITE_ROW) {
        const auto *section = reinterpret_cast<const char *>(sqlite3_column_text(select.handle, 0));
        const StoreRow row = {section != nullptr ? section : "",
                              static_cast<const NB_UCHAR *>(sqlite3_column_blob(select.handle, 1)),
                              static_cast<size_t>(sqlite3_column_bytes(select.handle, 1)),
                              read_behaviour(select.handle, 2)};
        if (!take(row)) {
            return false;
        }
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
