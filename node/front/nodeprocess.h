/* The process of one node: an engine behind a socket to the front process.
 *
 * Up the socket go answers (with the correlator of their verb; the data of one to a verb that
 * changes something says what it changed, in the words of changewords.h, padded with NULs) and
 * indications: for administrators with correlator 0, for the domain's other nodes with
 * FOR_OTHER_NODES. NAP_QUERY_NODE says how the node itself is, and the first one that it is there;
 * the others are told, too.  Down it come verbs and news of the domain: NAP_SERVER_INDICATION with
 * this node's server flags, what other nodes said for it, and NAP_REGISTER_INDICATION_SINK for an
 * indication that somebody registered for: the others are not sent.  The end of the socket is the
 * end of the process. */
#ifndef NODEPROCESS_H
#define NODEPROCESS_H

#include "nbtypes.h"

#include <string>

namespace node {

constexpr NB_ULONG FOR_OTHER_NODES = 1; /* correlator */
constexpr NB_ULONG CHANGED_NOTHING = 1; /* target of an answer: nobody needs a copy of the verb */
constexpr NB_ULONG SIGN_OF_LIFE = 2;    /* another: asked for by the front, and given */

struct ServeOptions {
    std::string node;   /* its name in the domain text */
    std::string domain; /* whose node it is, as in "domain pair" */
    std::string domain_file;
    std::string generate; /* all numbers of a generated domain; "": there is a text */
    std::string state_folder;
    bool fresh = false;
    bool known = false; /* it was loaded before: without its store it must not start */
    bool still = false; /* no visitors, no failures of links */
    int fd = -1;        /* the socket to the front process */
};

/* Runs until the front process ends the socket.  Returns the exit status. */
int serve_node(const ServeOptions &options);

/* The files of the nodes' stores begin so; the whole name is that of one. */
constexpr const char *NODE_STORE = "node-";
std::string store_file(const std::string &state_folder, const std::string &node);

} // namespace node

#endif
