/* The store: what is defined, on disk.  One SQLite file a node and one for the domain.
 *
 * A write is one transaction and is on the disk when `write` returns true, so whatever was answered
 * with success is there after the process was killed.  A write that fails changes nothing. Problems
 * are logged here.
 *
 * An open store is this process's alone: it holds the lock of the file as long as it lives and asks
 * for none in between, so that nobody's lock can fail a write or make it wait. */
#ifndef STORE_H
#define STORE_H

#include "behaviour.h"
#include "schema.h"

#include <functional>
#include <string>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace node {

/* One row to write, or to erase when `record` is null.  Pointers are only read by `write`. */
struct StoreChange {
    const char *section; /* class or settings record */
    const NB_UCHAR *key;
    size_t key_length;
    const NB_UCHAR *record;
    size_t record_length;
    const Behaviour *behaviour; /* null: the default */
};

/* A resource that is kept by its list entry, and one that is erased. */
inline StoreChange kept(const records::Schema &schema, const NB_UCHAR *entry,
                        const Behaviour &behaviour) {
    return {schema.name, entry + records::KEY_OFFSET, schema.key_size(),
            entry,       schema.overlay_size(),       &behaviour};
}
inline StoreChange erased(const records::Schema &schema, const NB_UCHAR *entry) {
    return {schema.name, entry + records::KEY_OFFSET, schema.key_size(), nullptr, 0, nullptr};
}

struct StoreRow {
    std::string section;
    const NB_UCHAR *record;
    size_t record_length;
    Behaviour behaviour;
};

/* Facts about a node's store; "1" or "0". */
inline constexpr const char *FACT_LOADED = "loaded";         /* it holds a whole node */
inline constexpr const char *FACT_WANTED = "wanted";         /* the node is to run */
inline constexpr const char *FACT_BACK_LEVEL = "back_level"; /* its software is too old */

inline constexpr const char *FACT_GENERATED = "generated"; /* the numbers it was made with */

/* True for the mark of a row that was erased: two zeroes where a record has its length, and the
 * key. */
inline bool is_erased(const NB_UCHAR *record, size_t length) {
    return length >= 2 && record[0] == 0 && record[1] == 0;
}

class Store {
public:
    Store() = default;
    ~Store();
    Store(const Store &) = delete;
    Store &operator=(const Store &) = delete;

    /* Opens or makes the file, for its owner alone; with `fresh`, an old one's contents go.  A file
     * that another process holds, or another user owns, is refused.  On failure returns false with
     * a text for the operator in `why`. */
    bool open(const std::string &path, bool fresh, std::string &why);

    /* From now on an erased row is kept as a mark: its record is that of `is_erased`. */
    void keep_erased() { keeps_erased_ = true; }

    bool write(const std::vector<StoreChange> &changes);

    /* Calls `take` for every row; its pointers are good for that call.  False when reading failed
     * or `take` returned false. */
    bool read(const std::function<bool(const StoreRow &)> &take);

    /* Small facts about the store as a whole.  An unknown one reads as "". */
    std::string fact(const char *name);
    bool set_fact(const char *name, const std::string &value);

private:
    int open_once(bool fresh);
    bool run(const char *sql);
    bool apply(const StoreChange &change);
    bool failed(const char *what);

    bool keeps_erased_ = false;
    sqlite3 *db_ = nullptr;
    sqlite3_stmt *put_ = nullptr;
    sqlite3_stmt *erase_ = nullptr;
    std::string path_;
};

} // namespace node

#endif
