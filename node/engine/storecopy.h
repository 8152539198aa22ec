/* Copies of stores: made while the store is in use, checked, and kept for some days.
 *
 * They lie in `STATE/copies`, a folder for each day with a file for each store, under its own name;
 * folders whose name begins otherwise were made before something that replaces stores.  A file that
 * is there under its name is whole and was checked.  Everything is for its owner alone. */
#ifndef STORECOPY_H
#define STORECOPY_H

#include "timers.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

struct sqlite3;
struct sqlite3_backup;

namespace node {

class Store;

constexpr size_t DAYS_KEPT = 7;
constexpr size_t OTHERS_KEPT = 3; /* folders that are not of a day */

/* "2026-11-24", of the machine's time zone. */
std::string day_of(uint32_t wall_seconds);

/* STATE/copies, and the folders in it, newest first; days before the others. */
std::string copies_folder(const std::string &state_folder);
std::vector<std::string> copy_folders(const std::string &state_folder);

/* Removes the oldest above DAYS_KEPT and OTHERS_KEPT. */
void prune_copies(const std::string &state_folder);

/* Makes a folder in STATE/copies; on failure false, with a text for the operator. */
bool make_copy_folder(const std::string &state_folder, const std::string &name, std::string &why);

/* One that nobody changes is whole and holds a store: false, with a text for the operator, when it
 * does not.  Reads all of it; ends early, as a failure, when `given_up` becomes true. */
bool check_store_file(const std::string &path, std::string &why,
                      const std::atomic<bool> *given_up = nullptr);

/* One copy of an open store, made while it is in use: what the store's owner changes meanwhile goes
 * into it, too.  Until it was checked and is on the disk it has another name; given up before, it
 * leaves nothing, and the file that had the name before is as it was. */
class StoreCopy {
public:
    StoreCopy(Store &store, std::string path);
    ~StoreCopy();
    StoreCopy(const StoreCopy &) = delete;
    StoreCopy &operator=(const StoreCopy &) = delete;

    /* Does some of the work and returns true when there is no more; then `why` says for the
     * operator what is wrong, or nothing. */
    bool go_on();

    /* The rest is done beside the caller, who looks from time to time. */
    bool is_copied() const { return backup_ == nullptr; }
    const std::string &why() const { return why_; }

private:
    bool failed(const std::string &what);
    void copy_some();
    void check();

    std::string path_;
    std::string part_;
    std::string why_;
    sqlite3 *to_ = nullptr;
    sqlite3_backup *backup_ = nullptr;
    std::thread checker_;
    std::string fault_; /* the checker's until it is done */
    std::atomic<bool> checked_ = false;
    std::atomic<bool> given_up_ = false;
};

/* Makes a copy before the store is brought to another layout, and each day, the first a little
 * after the start.  The loop goes on meanwhile: a slice of it at a time, and the check beside the
 * loop.  One that fails is logged and tried again within the hour. */
class DailyCopy {
public:
    /* `store` is open, of that folder, and outlives this; `made` is called behind each copy. */
    DailyCopy(Store &store, const std::string &state_folder, const std::string &file_name,
              TimerQueue &timers, const Clock &clock, std::function<void()> made = {});
    ~DailyCopy(); /* gives a copy up that is being made */
    DailyCopy(const DailyCopy &) = delete;
    DailyCopy &operator=(const DailyCopy &) = delete;

    void begin();

private:
    void look();
    void slice();
    void end(const std::string &why);

    Store &store_;
    std::string state_folder_;
    std::string file_name_;
    TimerQueue &timers_;
    const Clock &clock_;
    std::function<void()> made_;
    TimerId timer_ = 0;
    std::unique_ptr<StoreCopy> copy_;
};

} // namespace node

#endif
