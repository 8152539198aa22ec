/* What the sources of the store share of SQLite. */
#ifndef STORESQL_H
#define STORESQL_H

#include <sqlite3.h>
#include <string>
#include <string_view>

namespace node {

/* The layout that this program writes; `PRAGMA user_version` has that of a store.  0: rows were
 * records as they lie in memory. */
constexpr int STORE_LAYOUT = 1;

constexpr const char *DROP_TABLES =
    "DROP TABLE IF EXISTS resource; DROP TABLE IF EXISTS secret; DROP TABLE IF EXISTS initial;"
    "DROP TABLE IF EXISTS unread; DROP TABLE IF EXISTS fact;";

/* Makes the tables that are missing and says that the layout is this one. */
inline std::string make_tables_sql() {
    return "CREATE TABLE resource (section TEXT NOT NULL, key BLOB NOT NULL, text TEXT NOT NULL,"
           " PRIMARY KEY (section, key)) WITHOUT ROWID;"
           "CREATE TABLE secret (section TEXT NOT NULL, key BLOB NOT NULL, text TEXT NOT NULL,"
           " PRIMARY KEY (section, key)) WITHOUT ROWID;"
           "CREATE TABLE initial (section TEXT PRIMARY KEY, text TEXT NOT NULL) WITHOUT ROWID;"
           "CREATE TABLE IF NOT EXISTS fact (name TEXT PRIMARY KEY, value TEXT NOT NULL)"
           " WITHOUT ROWID;"
           "PRAGMA user_version=" +
           std::to_string(STORE_LAYOUT);
}

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

/* The bytes of a column, good until the next step. */
inline std::string_view column(sqlite3_stmt *statement, int number) {
    const auto *bytes = static_cast<const char *>(sqlite3_column_blob(statement, number));
    return {bytes != nullptr ? bytes : "",
            static_cast<size_t>(sqlite3_column_bytes(statement, number))};
}

} // namespace node

#endif
