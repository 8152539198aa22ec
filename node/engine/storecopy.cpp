/* Copies of a store. */
#include "store.h"
#include "storefiles.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

namespace node {

namespace {

/* True when the database has one row, "ok", to say about itself. */
bool is_sound(sqlite3 *db) {
    std::string said;
    const auto hear = [](void *to, int, char **values, char **) {
        *static_cast<std::string *>(to) += values[0] != nullptr ? values[0] : "";
        return 0;
    };
    return sqlite3_exec(db, "PRAGMA integrity_check(1)", hear, &said, nullptr) == SQLITE_OK &&
           said == "ok";
}

/* The copy is one file: no log of its own stays beside it. */
bool fill_copy(sqlite3 *from, sqlite3 *to, std::string &why) {
    sqlite3_backup *backup = sqlite3_backup_init(to, "main", from, "main");
    if (backup != nullptr) {
        sqlite3_backup_step(backup, -1);
        sqlite3_backup_finish(backup);
    }
    if (sqlite3_errcode(to) != SQLITE_OK ||
        sqlite3_exec(to, "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr) != SQLITE_OK) {
        why = sqlite3_errmsg(to);
        return false;
    }
    if (!is_sound(to)) {
        why = "the copy is damaged";
        return false;
    }
    return true;
}

void sync_folder_of(const std::string &path) {
    const int folder = open(path.substr(0, path.rfind('/') + 1).c_str(), O_RDONLY | O_CLOEXEC);
    if (folder >= 0) {
        fsync(folder);
        close(folder);
    }
}

} // namespace

bool Store::copy_to(const std::string &path, std::string &why) {
    const std::string made = path + ".new";
    sqlite3 *copy = nullptr;
    unlink(made.c_str());
    if (!own_store_files(made, why)) {
        return false;
    }
    bool good = sqlite3_open_v2(made.c_str(), &copy, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                                nullptr) == SQLITE_OK;
    good = good && fill_copy(db_, copy, why);
    sqlite3_close(copy);
    if (good && rename(made.c_str(), path.c_str()) != 0) {
        why = strerror(errno);
        good = false;
    }
    if (!good) {
        unlink(made.c_str());
        why = "no copy of " + path_ + " could be made as " + path + ": " + why;
        return false;
    }
    sync_folder_of(path);
    return true;
}

} // namespace node
