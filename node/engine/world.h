/* What is around a node: this node software carries no traffic, so a domain's text says who answers
 * outside of the domain, and who comes and goes. */
#ifndef WORLD_H
#define WORLD_H

#include "nodetext.h"

#include <set>
#include <string>
#include <vector>

namespace node {

using records::Visitor;

struct World {
    bool open = true;                     /* everybody answers, whoever is named */
    std::set<std::string> control_points; /* A17: who does */
    std::vector<Visitor> visitors;        /* of one node */
};

/* Who a text names as a partner of its links, as a server of its PUs, or as where a partner LU is,
 * is there.  The visitors are those of that node. */
World world_of(const DomainText &domain, const std::string &node);

} // namespace node

#endif
