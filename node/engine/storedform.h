/* What the store writes down of a resource or a settings record: its fields by name, in the words
 * of domain texts, a line each.
 *
 *   name=LUD01        a value as a domain text has it
 *   tp_name:07C1      bytes, where the value has no text that gives it back
 *   password$HASH     a secret that is only compared (secrethash.h)
 *   +session          an item within the record begins; the lines behind it are its own
 *
 * The order of lines does not matter.  A line that is not there stands for the value in the base:
 * the initial values of the program that first wrote such a record into the store, which keeps
 * them.  So a later program's other initial value changes nothing that is stored, and a field that
 * only the later program knows has that program's initial value.  Secrets are written apart. */
#ifndef STOREDFORM_H
#define STOREDFORM_H

#include "resourceclass.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace node {

struct StoredText {
    std::string fields;
    std::string secrets;

    bool operator==(const StoredText &) const = default;
};

class StoredForm {
public:
    explicit StoredForm(const ClassRow &row);
    explicit StoredForm(const Settings &row);

    size_t record_size() const { return base_.size(); }
    bool has_secrets() const { return has_secrets_; }
    bool has_compared() const { return has_compared_; }

    /* Writes a record; `behaviour` may be null for the default.  `text` loses what it held.  A mark
     * becomes a hash that is missing.  False when something could not be hashed. */
    bool write(const NB_UCHAR *record, const Behaviour *behaviour, StoredText &text);

    /* Takes the hashes that `secrets` misses from what was written of the same record before. False
     * when they are not there. */
    bool keep_hashes(std::string_view before, std::string &secrets) const;

    /* The hash in a text of secrets, "" for none. */
    static std::string hash_in(std::string_view secrets, std::string_view field);

    /* Writes the key alone, as KEY_OFFSET has it in a record. */
    void write_key(const NB_UCHAR *key, size_t length, std::string &text);

    /* Reads what `write` wrote, secrets too, over the base.  `record` has room for record_size.
     * False when a value is none of its field's or there are too many items: both then hold what
     * could be read.  Lines that name nothing are left out, and their names added to `unknown`. */
    bool read(std::string_view fields, std::string_view secrets, NB_UCHAR *record,
              Behaviour &behaviour, std::set<std::string> &unknown) const;

    /* The base as text, and from it.  False when it does not name every field there is. */
    std::string base_text();
    bool take_base(std::string_view text);

private:
    enum Part : NB_UCHAR { RECORD, BEHAVIOUR, ITEM, PARTS };
    struct Line {
        FieldRow row; /* its offset is 0 */
        std::string_view name;
        NB_USHORT offset;
        Part part;
    };
    struct Reading;

    void add(FieldTable fields, Part part);
    void put_line(const Line &line, const NB_UCHAR *at, std::string &text);
    bool put_hash(const Line &line, const NB_UCHAR *at, std::string &text);
    void put_item(const NB_UCHAR *item, std::string &text);
    const NB_UCHAR *base_of(Part part) const;
    const Line *find_line(std::string_view text, const Reading &reading) const;
    bool read_lines(std::string_view text, Reading &reading) const;
    bool read_item(std::string_view name, Reading &reading) const;

    std::vector<Line> lines_; /* those of items are the last */
    size_t own_lines_ = 0;    /* before those of items */
    const Nested *nested_ = nullptr;
    std::vector<NB_UCHAR> base_;
    Behaviour base_behaviour_ = DEFAULT_BEHAVIOUR;
    std::vector<NB_UCHAR> base_item_;
    std::vector<NB_UCHAR> scratch_;
    bool has_secrets_ = false;
    bool has_compared_ = false;
};

} // namespace node

#endif
