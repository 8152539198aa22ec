/* Domain texts: a domain of nodes, written down.
 *
 * A line is a comment (#...), a section title or `name = value`.  `[domain]` comes first, every
 * `[node NAME]` starts a node, and the sections behind it, named after schemas and settings, belong
 * to it: `[port ETH0]`, `[lu03 HOSTPU LUD01..LUD24]` (a range, counting the digits at the end of
 * the name), `[directory NETA.CP NETA.LU1 lu]`, `[mode -]` (- is the blank name).  Sections of the
 * domain's classes and settings stand before the first node.  A section's lines are the fields of
 * its table; what it leaves out has the table's initial value.  A line
 * `+ ITEM [NAME]` begins an item within a resource, as a session of a user; the lines behind it are
 * the item's.
 *
 * Reading checks each value by itself; whether resources fit together is the engine's to check when
 * they are loaded. */
#ifndef DOMAINTEXT_H
#define DOMAINTEXT_H

#include "behaviour.h"
#include "schemas.h"
#include "visitor.h"

#include <string>
#include <vector>

namespace records {

struct TextResource {
    const Schema *schema;
    std::vector<NB_UCHAR> entry; /* as long as a whole entry, overlay size in place */
    Behaviour behaviour;
    int line;
};

struct TextRecord {
    const Settings *row;
    std::vector<NB_UCHAR> image;
    int line;
};

struct NodeFacts {
    NB_ULONG server_flags = 0; /* NAP_SERVER_MASTER and the like */
    NB_UCHAR start = 1;        /* flag: started with the node software */
    NB_UCHAR configured = 1;   /* flag: 0 makes an unconfigured node */
    NB_UCHAR back_level = 0;   /* flag: its software is too old to be administered */
    NB_UCHAR reserved = 0;
};

struct TextNode {
    std::string name; /* letters, digits, '-', '_' and '.', at most MAX_NODE_NAME */
    int line = 0;
    NodeFacts facts;
    std::vector<TextRecord> records;
    std::vector<TextResource> resources;
    std::vector<Visitor> visitors = {}; /* `[visitor NAME]` */
};

constexpr size_t MAX_NODE_NAME = 63;

struct DomainFacts {
    NB_UCHAR name[64] = {};
    NB_UCHAR client_server = 0; /* flag */
    NB_UCHAR domain_config = 1; /* flag: 0 makes a domain without a configuration file */
    NB_UCHAR reserved[2] = {};
};

struct DomainText {
    std::string file;
    DomainFacts facts;
    TextNode own; /* settings and resources of the domain itself */
    std::vector<TextNode> nodes;
    std::vector<std::string> errors; /* "FILE:LINE: what is wrong and what would be right" */

    void error(int line, const std::string &what);
    const TextNode *find(const std::string &node) const;
};

/* Adds to `names` the word, or all from FIRST..LAST, which differ in the digits at their ends only;
 * false when the two do not go together, or when these are more than 100,000. */
bool expand_range(const std::string &word, std::vector<std::string> &names);

/* Adds `count` to the numbers of an entry that have to differ in a range, as an LU's address has.
 * False when one would be too large, and `why` says which. */
bool count_on(FieldTable fields, NB_UCHAR *entry, NB_ULONG count, std::string &why);

/* Reads a text.  The result is good when it has no errors; at most MAX_TEXT_ERRORS are kept. */
constexpr size_t MAX_TEXT_ERRORS = 20;
DomainText parse_domain_text(const std::string &file_name, std::string_view text);

/* Reads a file; one that cannot be read is an error of the result. */
DomainText read_domain_file(const std::string &file_name);

} // namespace records

#endif
