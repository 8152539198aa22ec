/* Resources in the words of a shell: classes, names, fields and values are those of domain texts.
 */
#ifndef CLI_WORDS_H
#define CLI_WORDS_H

#include "session.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace cli {

/* How the program ends. */
enum Status : int {
    DONE = 0,
    REFUSED = 1,     /* by the node software; or, of diff, there are differences */
    BAD_USAGE = 2,   /* unknown command, class, field or value */
    UNREACHABLE = 3, /* the node software or a node */
    NOT_THERE = 4,   /* no such resource */
    NO_RIGHT = 5     /* you may look but not change */
};

/* Ends a command: what to print, and the exit status. */
class Failure : public std::runtime_error {
public:
    Failure(Status how, const std::string &text, NB_ULONG code = 0)
        : std::runtime_error(text), status(how), secondary(code) {}
    Status status;
    NB_ULONG secondary; /* return code of the verb; 0: none */
};

/* What a verb's codes mean, as a failure of `what`, as in "define ls LINK1". */
Failure failure_of(const std::string &what, NB_USHORT opcode, Codes codes);

/* Fails unless the codes are good. */
inline void expect(const std::string &what, NB_USHORT opcode, Codes codes) {
    if (!codes.ok()) {
        throw failure_of(what, opcode, codes);
    }
}

/* Every class that can be listed in a node or the domain. */
std::vector<const records::Schema *> classes();

/* The class of that name; a failure that says what there is. */
const records::Schema &class_named(const std::string &name);

bool is_of_domain(const records::Schema &schema);
bool is_tp_load(const records::Schema &schema);

/* An entry with the initial values of its class. */
Bytes new_entry(const records::Schema &schema);

/* Puts a name, a word for each part of the key, into an entry; "-" is a blank part.  A failure says
 * what the parts are. */
void set_key(const records::Schema &schema, const std::vector<std::string> &words, Bytes &entry);

/* The words of an entry's name, with blanks between them. */
std::string key_words(const records::Schema &schema, const NB_UCHAR *entry);

/* Sets fields of an entry from words like "description=Head office".  A failure says what is
 * allowed. */
void set_fields(records::FieldTable fields, const std::string &of,
                const std::vector<std::string> &words, NB_UCHAR *record);

/* The text of a field for people: times of day are written as such. */
std::string shown(const records::FieldRow &field, const NB_UCHAR *record);

/* The field of the status that says whether a resource is up; null: it has no states. */
const records::FieldRow *state_field(const records::Schema &schema);

/* A state as texts have it, as in "active". */
std::string state_word(NB_ULONG state);

/* An entry as a section of a domain text: what it says of itself, without what has its initial
 * value, and status as comments when `with_status`. */
std::string section_of(const records::Schema &schema, const NB_UCHAR *entry, bool with_status);
std::string section_of(const records::Settings &row, const NB_UCHAR *block, bool with_status);

} // namespace cli

#endif
