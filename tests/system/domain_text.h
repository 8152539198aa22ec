/* A sample domain as its text says it, for what the windows must show. */
#ifndef SYSTEM_DOMAIN_TEXT_H
#define SYSTEM_DOMAIN_TEXT_H

#include <map>
#include <string>
#include <vector>

namespace sys {

struct Section {
    std::vector<std::string> title; /* [port ETH0] is {"port", "ETH0"} */
    std::map<std::string, std::string> values;
};

using DomainText = std::vector<Section>;

/* REQUIRES: no ranges in what is asked for later. */
DomainText read_domain(const std::string &name);

/* Names in the order of the program's lists: without regard to case. */
std::vector<std::string> in_order(std::vector<std::string> names);

/* In order: ports, link stations of a port, aliases of local LUs with the control point's, and
 * remote systems. */
std::vector<std::string> ports(const DomainText &domain);
std::vector<std::string> link_stations(const DomainText &domain, const std::string &port);
std::vector<std::string> local_lus(const DomainText &domain);
std::vector<std::string> remote_systems(const DomainText &domain);

/* The first words of lines, of those among `wanted` only if that is given. */
std::vector<std::string> first_words(const std::vector<std::string> &lines,
                                     const std::vector<std::string> *wanted = nullptr);

} // namespace sys

#endif
