/* What has to be done so that the domain is as a text says, in an order that works: owners are made
 * before what refers to them, and deleted behind it. */
#ifndef CLI_PLAN_H
#define CLI_PLAN_H

#include "commands.h"
#include "domaintext.h"

#include <string>
#include <vector>

namespace cli {

struct Step {
    enum Kind { Set, Make, Change, Delete, Serve };

    Kind kind;
    const records::Schema *schema;     /* null: settings */
    const records::Settings *settings; /* null: a resource */
    std::string node;                  /* "": the domain; of Serve, the server */
    Bytes wanted;                      /* the entry, or the block of the settings */
    Bytes known;                       /* as it is */
    Bytes limits = {};                 /* of settings "node": the other block that goes with it */
    Bytes known_limits = {};
    bool serves = false; /* of Serve: the node is to become a backup server */
};

/* Reads a text from a file, or from standard input for "-".  A failure has all that is wrong. */
records::DomainText read_text(const std::string &file);

/* What the text says that is not so.  With `deletes`, also what is there and not in the text, of
 * the classes that the text has sections of in that node, and servers that it says are none. */
struct Wishes {
    bool deletes;
    bool passwords; /* those that the text says are set, as nobody can compare them */
};
std::vector<Step> plan_of(const Request &request, const records::DomainText &text, Wishes wishes);

/* True for what an administrator defined: the node has not made it by itself. */
bool is_defined(const records::Schema &schema, const NB_UCHAR *entry);

/* One line, as in "define lu03 HOSTPU LUD01 of harbour". */
std::string words_of(const Step &step);

/* The lines of its section that go ("- ") and come ("+ "), each with its end. */
std::string lines_of(const Step &step);

/* "" or, of what is active and would have to be stopped first, that it is. */
std::string state_of(const Step &step);

/* Carries it out; a failure says why not.  With `stops`, what is active is stopped first, orderly,
 * and what was changed is started again. */
void carry_out(const Request &request, const Step &step, bool stops);

} // namespace cli

#endif
