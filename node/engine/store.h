/* The store: what is defined, on disk.  One SQLite file a node and one for the domain.
 *
 * It has a row a resource and a settings record: the section, which is the class or the settings,
 * the key as the wire has it, and the text of storedform.h.  Secrets stand in a table of their own.
 * A store of an earlier layout is brought to this one by `migrate`, one of a later is refused.
 *
 * A write is one transaction and is on the disk when `write` returns true, so whatever was answered
 * with success is there after the process was killed.  A write that fails changes nothing. Problems
 * are logged here.
 *
 * An open store is this process's alone: it holds the lock of the file as long as it lives and asks
 * for none in between, so that nobody's lock can fail a write or make it wait. */
#ifndef STORE_H
#define STORE_H

#include "debt.h"
#include "storedform.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
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

/* A row as it was read. */
struct StoreRow {
    std::unique_ptr<NB_UCHAR[]> record; /* an entry as long as a whole one */
    Behaviour behaviour = DEFAULT_BEHAVIOUR;
    bool erased = false; /* the mark of a row that was erased: the record has its key alone */
    bool whole = true;   /* false: it does not fit, and the record has what could be read */
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
        sections_.clear();
    }

    /* Says whose the store is to be, as in "node one of domain pair".  False, with a text for the
     * operator, when it is another's, or that cannot be read.  A new one is told with its first
     * write; one of an earlier version belongs to nobody until
     * `finish_reading`. */
    bool belongs_to(const std::string &owner, std::string &why);

    /* Brings a store of an earlier layout to this one, in one transaction: when nothing else speaks
     * against using it, and before anything is read but facts.  What cannot be brought over is
     * logged and kept.  False leaves it as it was, with a text for the operator in `why`. */
    bool migrate(std::string &why);

    /* What `migrate` does first when there is something to do; false, with a text for the operator,
     * when it must not go on. */
    void before_migration(std::function<bool(Store &, std::string &why)> action) {
        before_migration_ = std::move(action);
    }

    /* For tests of kills: called in each transaction just before it is committed (false) and just
     * behind (true). */
    void when_writing(std::function<void(bool written)> action) {
        when_writing_ = std::move(action);
    }

    /* Everything was read: logs what is in the store and nobody asked for, and writes down what it
     * does not say yet: whose it is, and the values that its rows leave out. */
    bool finish_reading();

    /* For the operator: that it cannot be read, which file it is, and what can be done. */
    std::string unreadable() const;

    /* From now on an erased row is kept as a mark. */
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

    /* Calls `take` for every row of a class, in the order of keys.  What does not fit is not whole,
     * and stays in the store.  False when reading failed. */
    bool read(const ClassRow &row, const std::function<void(StoreRow &&)> &take);

    /* Reads a settings record; `there` says whether it has a row.  One that does not fit is logged,
     * stays in the store and reads as one that is not there. */
    bool read(const Settings &row, NB_UCHAR *image, bool &there);

    /* True when `typed`, an entry, has in this field what the stored entry of its key was given. */
    bool matches_secret(const records::Schema &schema, const FieldRow &field,
                        const NB_UCHAR *typed);

    /* An unknown fact reads as "".  False when that could not be found out. */
    [[nodiscard]] bool fact(const std::string &name, std::string &value);
    bool set_fact(const std::string &name, const std::string &value);

    /* Makes a copy, one file for its owner alone, of what is on the disk now.  It is checked as a
     * database and then takes the place of `path` (with a folder), so that no half copy has that
     * name.  On failure returns false with a text for the operator; `path` is as it was. */
    bool copy_to(const std::string &path, std::string &why);

private:
    friend class StoreCopy;

    struct Section {
        StoredForm form;
        bool base_kept = false; /* the store has the base that `form` has */
        bool used = false;      /* it has rows, as far as they were read or written */
    };

    static bool is_settled(const Section &section) { return section.base_kept || !section.used; }
    int open_once();
    int make_tables();
    bool is_foreign();
    bool read_layout();
    std::string refusal(int code) const;
    Section *section(std::string_view name);
    bool run(const char *sql);
    bool act(int action, const StoreChange &change, const std::string &text);
    bool apply(const StoreChange &change);
    bool read_secrets(const StoreChange &of, std::string &secrets);
    bool write_text(const StoreChange &change, StoredForm &form);
    bool put_fact(const StoreFact &fact);
    bool put_base(const std::string &name, Section &of);
    bool put_bases();
    bool fill(const std::vector<StoreChange> &changes, const std::vector<StoreFact> &facts);
    bool commit(const std::vector<StoreChange> &changes, const std::vector<StoreFact> &facts);
    bool in_transaction(const std::function<bool()> &action);
    bool read_section(std::string_view name, size_t key_length,
                      const std::function<void(StoreRow &&)> &take);
    bool migrate_rows();
    bool migrate_row(sqlite3_stmt *row, bool &fits);
    bool log_unknown_sections();
    bool failed(const char *what);

    bool forgets_ = false;
    bool claimed_ = false; /* it says whose it is */
    bool keeps_erased_ = false;
    int layout_ = 0;
    sqlite3 *db_ = nullptr;
    sqlite3_stmt *statements_[4] = {}; /* of `apply` */
    std::map<std::string, Section, std::less<>> sections_;
    StoredText text_; /* of `apply` */
    std::function<bool(Store &, std::string &)> before_migration_;
    std::function<void(bool)> when_writing_;
    std::string path_;
    std::string owner_;
    Debt debt_;
};

} // namespace node

#endif
