#include "storecopy.h"

#include "nbbase.h"
#include "nbproblem.h"
#include "store.h"
#include "storefiles.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <sqlite3.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace node {

namespace {

constexpr uint32_t FIRST_LOOK_MS = 30000;
constexpr uint32_t LOOK_MS = 3600000;
constexpr uint32_t PAUSE_MS = 5; /* between slices */
constexpr uint32_t CHECK_MS = 50;
constexpr int SLICE_PAGES = 256;

bool is_day(const std::string &name) {
    constexpr const char *form = "dddd-dd-dd";
    return name.size() == strlen(form) &&
           std::equal(name.begin(), name.end(), form, [](char one, char wanted) {
               return wanted == 'd' ? isdigit(static_cast<unsigned char>(one)) != 0 : one == wanted;
           });
}

/* What is wrong with the content of an open database; "" for nothing. */
std::string fault_in(sqlite3 *db) {
    std::string fault;
    const auto take = [](void *to, int count, char **values, char **) {
        auto &text = *static_cast<std::string *>(to);
        if (count == 1 && values[0] != nullptr && text.empty() && strcmp(values[0], "ok") != 0) {
            text = values[0];
        }
        return 0;
    };
    for (const char *sql :
         {"PRAGMA integrity_check(1)", "SELECT CASE WHEN count(*) = 2 THEN 'ok' ELSE 'no store' END"
                                       " FROM sqlite_master WHERE type = 'table'"
                                       " AND name IN ('resource', 'fact')"}) {
        if (sqlite3_exec(db, sql, take, &fault, nullptr) != SQLITE_OK && fault.empty()) {
            fault = sqlite3_errmsg(db);
        }
    }
    return fault;
}

bool sync_file(const std::string &path) {
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const bool done = fd >= 0 && fsync(fd) == 0;
    if (fd >= 0) {
        close(fd);
    }
    return done;
}

} // namespace

std::string day_of(uint32_t wall_seconds) {
    const time_t at = wall_seconds;
    struct tm fields = {};
    char text[16] = "";
    localtime_r(&at, &fields);
    strftime(text, sizeof text, "%Y-%m-%d", &fields);
    return text;
}

std::string copies_folder(const std::string &state_folder) {
    return state_folder + "/copies";
}

std::vector<std::string> copy_folders(const std::string &state_folder) {
    std::vector<std::string> found;
    std::error_code error;
    for (const auto &entry :
         std::filesystem::directory_iterator(copies_folder(state_folder), error)) {
        if (entry.is_directory(error)) {
            found.push_back(entry.path().filename());
        }
    }
    /* The others end with their time. */
    std::sort(found.begin(), found.end(), [](const std::string &left, const std::string &right) {
        const auto stamp = [](const std::string &name) {
            return name.substr(std::min(name.find_first_of("0123456789"), name.size()));
        };
        return is_day(left) != is_day(right) ? is_day(left) : stamp(left) > stamp(right);
    });
    return found;
}

void prune_copies(const std::string &state_folder) {
    size_t days = 0;
    size_t others = 0;
    for (const std::string &name : copy_folders(state_folder)) {
        const bool kept = is_day(name) ? ++days <= DAYS_KEPT : ++others <= OTHERS_KEPT;
        std::error_code error;
        if (!kept) {
            std::filesystem::remove_all(copies_folder(state_folder) + "/" + name, error);
        }
    }
}

bool make_copy_folder(const std::string &state_folder, const std::string &name, std::string &why) {
    for (const std::string &folder :
         {copies_folder(state_folder), copies_folder(state_folder) + "/" + name}) {
        if (mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
            why = folder + ": " + strerror(errno);
            return false;
        }
    }
    return true;
}

bool check_store_file(const std::string &path, std::string &why,
                      const std::atomic<bool> *given_up) {
    constexpr int STEPS = 10000; /* between looks at `given_up`: well under a millisecond */
    sqlite3 *db = nullptr;
    const std::string uri = "file:" + path + "?immutable=1";
    const bool opened = sqlite3_open_v2(uri.c_str(), &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI,
                                        nullptr) == SQLITE_OK;
    const auto ends = [](void *flag) {
        return static_cast<const std::atomic<bool> *>(flag)->load() ? 1 : 0;
    };
    if (opened && given_up != nullptr) {
        sqlite3_progress_handler(db, STEPS, ends, const_cast<std::atomic<bool> *>(given_up));
    }
    why = opened ? fault_in(db) : sqlite3_errmsg(db);
    sqlite3_close(db);
    if (!why.empty()) {
        why = path + ": " + why;
    }
    return why.empty();
}

StoreCopy::StoreCopy(Store &store, std::string path)
    : path_(std::move(path)), part_(path_ + ".part") {
    unlink(part_.c_str());
    if (!own_store_files(part_, why_)) {
        return;
    }
    if (sqlite3_open_v2(part_.c_str(), &to_, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK ||
        sqlite3_exec(to_, "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF", nullptr, nullptr,
                     nullptr) != SQLITE_OK ||
        (backup_ = sqlite3_backup_init(to_, "main", store.db_, "main")) == nullptr) {
        failed(sqlite3_errmsg(to_));
    }
}

StoreCopy::~StoreCopy() {
    given_up_ = true;
    if (checker_.joinable()) {
        checker_.join();
    }
    sqlite3_backup_finish(backup_);
    sqlite3_close(to_);
    unlink(part_.c_str()); /* gone when the copy was made */
}

bool StoreCopy::failed(const std::string &what) {
    why_ = "no copy could be made as " + path_ + ": " + what;
    return false;
}

bool StoreCopy::go_on() {
    if (!why_.empty()) {
        return true;
    }
    if (backup_ != nullptr) {
        copy_some();
        return !why_.empty();
    }
    if (!checked_) {
        return false;
    }
    checker_.join();
    if (!fault_.empty()) {
        failed(fault_);
    } else if (rename(part_.c_str(), path_.c_str()) != 0) {
        failed(strerror(errno));
    } else {
        sync_file(path_.substr(0, path_.rfind('/') + 1));
    }
    return true;
}

void StoreCopy::copy_some() {
    const int code = sqlite3_backup_step(backup_, SLICE_PAGES);
    if (code == SQLITE_OK) {
        return;
    }
    sqlite3_backup_finish(backup_);
    backup_ = nullptr;
    if (code != SQLITE_DONE) {
        failed(sqlite3_errstr(code));
        return;
    }
    sqlite3_close(to_);
    to_ = nullptr;
    checker_ = std::thread([this] { check(); });
}

/* Beside the loop: it reads all of the copy and waits for the disk. */
void StoreCopy::check() {
    if (check_store_file(part_, fault_, &given_up_) && !sync_file(part_)) {
        fault_ = strerror(errno);
    }
    checked_ = true;
}

bool Store::copy_to(const std::string &path, std::string &why) {
    StoreCopy copy(*this, path);
    while (!copy.go_on()) {
        if (copy.is_copied()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    why = copy.why();
    return why.empty();
}

DailyCopy::DailyCopy(Store &store, const std::string &state_folder, const std::string &file_name,
                     TimerQueue &timers, const Clock &clock, std::function<void()> made)
    : store_(store), state_folder_(state_folder), file_name_(file_name), timers_(timers),
      clock_(clock), made_(std::move(made)) {
    store.before_migration([this](Store &from, std::string &why) {
        const std::string folder = "before-update-" + day_of(clock_.wall_seconds());
        return make_copy_folder(state_folder_, folder, why) &&
               from.copy_to(copies_folder(state_folder_) + "/" + folder + "/" + file_name_, why);
    });
}

DailyCopy::~DailyCopy() {
    timers_.cancel(timer_);
}

void DailyCopy::begin() {
    timer_ = timers_.after(FIRST_LOOK_MS, [this] { look(); });
}

void DailyCopy::look() {
    const std::string day = day_of(clock_.wall_seconds());
    const std::string path = copies_folder(state_folder_) + "/" + day + "/" + file_name_;
    std::string why;
    if (!is_empty_file(path)) {
        timer_ = timers_.after(LOOK_MS, [this] { look(); });
    } else if (!make_copy_folder(state_folder_, day, why)) {
        end(why);
    } else {
        copy_ = std::make_unique<StoreCopy>(store_, path);
        slice();
    }
}

void DailyCopy::slice() {
    if (copy_->go_on()) {
        const std::string why = copy_->why();
        copy_.reset();
        end(why);
        return;
    }
    timer_ = timers_.after(copy_->is_copied() ? CHECK_MS : PAUSE_MS, [this] { slice(); });
}

void DailyCopy::end(const std::string &why) {
    if (!why.empty()) {
        nba_pd_print_problem(NB_PD_STORE, 1, "s s s", "copy", file_name_.c_str(), why.c_str());
    } else if (made_) {
        made_();
    }
    timer_ = timers_.after(LOOK_MS, [this] { look(); });
}

} // namespace node
