#include "restore.h"

#include "storecopy.h"
#include "storefiles.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <sqlite3.h>
#include <sys/file.h>
#include <unistd.h>
#include <vector>

namespace node {

namespace {

namespace fs = std::filesystem;

constexpr const char *NEW = ".new";

/* The stores in a folder, by file name. */
std::vector<std::string> stores_in(const std::string &folder) {
    std::vector<std::string> found;
    std::error_code error;
    for (const auto &entry : fs::directory_iterator(folder, error)) {
        if (entry.path().extension() == ".db") {
            found.push_back(entry.path().filename());
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

class Restore {
public:
    Restore(const std::string &state, const std::string &from) : state_(state), from_(from) {}
    ~Restore() {
        for (const std::string &store : stores_) {
            for (const char *beside : {"", "-wal", "-journal"}) {
                unlink((state_ + "/" + store + NEW + beside).c_str());
            }
        }
        if (lock_ >= 0) {
            close(lock_);
        }
    }
    Restore(const Restore &) = delete;
    Restore &operator=(const Restore &) = delete;

    bool run() {
        stores_ = stores_in(from_);
        if (stores_.empty()) {
            why_ = from_ + " holds no store";
        }
        return why_.empty() && hold() && bring_in() && set_aside() && put_in_place();
    }
    const std::string &why() const { return why_; }
    const std::string &aside() const { return aside_; }
    const std::vector<std::string> &stores() const { return stores_; }

private:
    bool failed(const std::string &what) {
        why_ = what + ": " + strerror(errno);
        return false;
    }

    bool hold() {
        const std::string path = state_ + "/lock";
        lock_ = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (lock_ < 0) {
            return failed(path);
        }
        if (flock(lock_, LOCK_EX | LOCK_NB) != 0) {
            why_ = state_ + " is in use by a running snanode; end that first";
        }
        return why_.empty();
    }

    /* All are checked and on this disk before anything is moved. */
    bool bring_in() {
        return std::all_of(stores_.begin(), stores_.end(), [this](const std::string &store) {
            const std::string copy = state_ + "/" + store + NEW;
            std::string fault;
            if (!take(from_ + "/" + store, copy) || !own_store_files(copy, why_)) {
                return false;
            }
            if (!fold_in(copy, fault) || !check_store_file(copy, fault)) {
                why_ = from_ + "/" + store + " is damaged (" + fault + "); take another copy";
                return false;
            }
            return sync(copy);
        });
    }

    bool take(const std::string &file, const std::string &copy) {
        for (const char *beside : {"", "-wal"}) {
            std::error_code error;
            if (*beside != '\0' && !fs::exists(file + beside, error)) {
                continue;
            }
            fs::copy_file(file + beside, copy + beside, fs::copy_options::overwrite_existing,
                          error);
            if (error) {
                why_ = copy + ": " + error.message();
                return false;
            }
        }
        return true;
    }

    /* One that was set aside may have its last changes in a log of its own. */
    bool fold_in(const std::string &copy, std::string &fault) {
        sqlite3 *db = nullptr;
        const bool done =
            sqlite3_open_v2(copy.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK &&
            sqlite3_exec(db, "PRAGMA locking_mode=EXCLUSIVE; PRAGMA journal_mode=DELETE", nullptr,
                         nullptr, nullptr) == SQLITE_OK;
        if (!done) {
            fault = sqlite3_errmsg(db);
        }
        sqlite3_close(db);
        return done;
    }

    /* The database first: without it a start is refused, without its log it would be an older
     * one. */
    bool set_aside() {
        char stamp[32];
        const time_t now = time(nullptr);
        struct tm fields = {};
        localtime_r(&now, &fields);
        strftime(stamp, sizeof stamp, "%Y-%m-%d-%H%M%S", &fields);
        aside_ = std::string("before-restore-") + stamp;
        if (!make_copy_folder(state_, aside_, why_)) {
            return false;
        }
        const std::string to = copies_folder(state_) + "/" + aside_ + "/";
        for (const std::string &store : stores_) {
            for (const char *beside : {"", "-wal", "-journal", "-shm"}) {
                const std::string file = store + beside;
                if (rename((state_ + "/" + file).c_str(), (to + file).c_str()) != 0 &&
                    errno != ENOENT) {
                    return failed(file);
                }
            }
        }
        return sync(to) && sync(state_);
    }

    bool put_in_place() {
        for (const std::string &store : stores_) {
            const std::string path = state_ + "/" + store;
            if (rename((path + NEW).c_str(), path.c_str()) != 0) {
                return failed(path);
            }
        }
        return sync(state_);
    }

    bool sync(const std::string &path) {
        const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        const bool done = fd >= 0 && fsync(fd) == 0;
        const bool good = done || failed(path);
        if (fd >= 0) {
            close(fd);
        }
        return good;
    }

    std::string state_;
    std::string from_;
    std::string aside_;
    std::vector<std::string> stores_;
    std::string why_;
    int lock_ = -1;
};

} // namespace

int print_copies(const std::string &state_folder) {
    const std::vector<std::string> folders = copy_folders(state_folder);
    for (const std::string &folder : folders) {
        printf("%s\n", folder.c_str());
        const std::string path = copies_folder(state_folder) + "/" + folder;
        for (const std::string &store : stores_in(path)) {
            std::error_code error;
            printf("  %s, %ju KB\n", store.c_str(),
                   static_cast<uintmax_t>(fs::file_size(path + "/" + store, error) / 1024));
        }
    }
    if (folders.empty()) {
        printf("There are no copies in %s yet.\n", copies_folder(state_folder).c_str());
    }
    return 0;
}

int restore_copy(const std::string &state_folder, const std::string &name) {
    const std::vector<std::string> folders = copy_folders(state_folder);
    const bool has_day = !folders.empty() && isdigit(folders.front().front()) != 0;
    const std::string chosen = name == "last" && has_day ? folders.front() : name;
    if (std::find(folders.begin(), folders.end(), chosen) == folders.end()) {
        fprintf(stderr, "snanode: there is no copy '%s'; --copies shows those that there are\n",
                name.c_str());
        return 1;
    }
    Restore restore(state_folder, copies_folder(state_folder) + "/" + chosen);
    if (!restore.run()) {
        fprintf(stderr, "snanode: %s\n", restore.why().c_str());
        return 1;
    }
    for (const std::string &store : stores_in(state_folder)) {
        const auto &taken = restore.stores();
        const bool has = std::find(taken.begin(), taken.end(), store) != taken.end();
        printf(has ? "%s is that of %s\n" : "%s has no copy of %s and stays\n", store.c_str(),
               chosen.c_str());
    }
    printf("What was there before is in %s: --restore takes it back.\n", restore.aside().c_str());
    return 0;
}

} // namespace node
