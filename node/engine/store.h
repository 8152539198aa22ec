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
#include "debt.h"
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

/* A small fact about a store as a whole. */
struct StoreFact {
    std::string name;
    std::string value;
};

/* Facts of every store; "1" or "0". */
inline constexpr const char *FACT_LOADED = "loaded";         /* it holds a whole node */
inline constexpr const char *FACT_WANTED = "wanted";         /* the node is to run */
inline constexpr const char *FACT_BACK_LEVEL = "back_level"; /* its software is too old */

/* What it is the store of, in words; earlier versions had only the numbers of a generated domain,
 * and these in the domain's store alone. */
inline constexpr const char *FACT_OWNER = "owner";
inline constexpr const char *FACT_GENERATED = "generated";

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

    /* Opens or makes the file, for its owner alone.  A file that another process holds, that
     * another user owns or that is no store is refused and not written to.  On failure returns
     * false with a text for the operator in `why`. */
    bool open(const std::string &path, std::string &why);

    /* All that is in it is to go: it reads as empty from now on, and the next write begins with
     * erasing it, in the same transaction. */
    void forget() {
        forgets_ = true;
        claimed_ = false;
    }

    /* Says whose the store is to be, as in "node one of domain pair".  False, with a text for the
     * operator, when it is another's, or that cannot be read.  A new one is told with its first
     * write; one of an earlier version belongs to nobody until `claim`. */
    bool belongs_to(const std::string &owner, std::string &why);

    /* Writes down whose it is when it did not say so yet: for a store that was read whole. */
    bool claim();

    /* For the operator: that it cannot be read, which file it is, and what can be done. */
    std::string unreadable() const;

    /* From now on an erased row is kept as a mark: its record is that of `is_erased`. */
    void keep_erased() { keeps_erased_ = true; }

    /* Writes all, or nothing and returns false.  What is owed is written first. */
    bool write(const std::vector<StoreChange> &changes, const std::vector<StoreFact> &facts = {});

    /* For what must take place even when it cannot be written: then it is owed, which is true from
     * now on until `settle` or another write wrote it.  True when nothing is owed. */
    bool write_or_owe(const std::vector<StoreChange> &changes,
                      const std::vector<StoreFact> &facts = {});

    /* Writes what is owed; true when nothing is any more. */
    bool settle();
    bool owes() const { return !debt_.empty(); }

    /* Calls `take` for every row; its pointers are good for that call.  False when reading failed
     * or `take` returned false. */
    bool read(const std::function<bool(const StoreRow &)> &take);

    /* An unknown fact reads as "".  False when that could not be found out. */
    [[nodiscard]] bool fact(const std::string &name, std::string &value);
    bool set_fact(const std::string &name, const std::string &value);

    /* Makes a copy, one file for its owner alone, of what is on the disk now.  It is checked as a
     * database and then takes the place of `path` (with a folder), so that no half copy has that
     * name.  On failure returns false with a text for the operator; `path` is as it was. */
    bool copy_to(const std::string &path, std::string &why);

private:
    friend class StoreCopy;

    int open_once();
    bool is_foreign();
    bool run(const char *sql);
    bool apply(const StoreChange &change);
    bool put_fact(const StoreFact &fact);
    bool fill(const std::vector<StoreChange> &changes, const std::vector<StoreFact> &facts);
    bool commit(const std::vector<StoreChange> &changes, const std::vector<StoreFact> &facts);
    bool failed(const char *what);

    bool forgets_ = false;
    bool claimed_ = false; /* it says whose it is */
    bool keeps_erased_ = false;
    sqlite3 *db_ = nullptr;
    sqlite3_stmt *put_ = nullptr;
    sqlite3_stmt *erase_ = nullptr;
    std::string path_;
    std::string owner_;
    Debt debt_;
};

} // namespace node

#endif
