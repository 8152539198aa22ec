/* What is around a domain: this node software carries no traffic, so a domain's text says who
 * answers outside of it and what goes on there. */
#ifndef WORLD_H
#define WORLD_H

#include "nodetext.h"

#include <set>
#include <string>

namespace node {

struct World {
    bool open = true;                     /* everybody answers, whoever is named */
    std::set<std::string> control_points; /* A17: who does */
};

/* Who a text names as a partner of its links, or as a server of its PUs, is there. */
World world_of(const DomainText &domain);

} // namespace node

#endif
