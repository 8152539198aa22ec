/* Generated domains: as many nodes and resources as numbers say, without a text.  The same numbers
 * make the same domain.  Resources have names that count (LU00001), descriptions, and owners: the
 * LUs of a node are spread over its PUs, those over its link stations, and so on up.  Names of LUs,
 * PUs and partners are unique in the domain. */
#ifndef GENERATE_H
#define GENERATE_H

#include "nodetext.h"

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace node {

enum Generator : NB_UCHAR {
    MAKE_NODES,
    MAKE_DLCS,
    MAKE_PORTS,
    MAKE_LS,
    MAKE_PUS,
    MAKE_LUS,
    MAKE_LOCAL_LUS,
    MAKE_MODES,
    MAKE_PARTNERS,
    MAKE_POOLS,
    MAKE_TPS,
    MAKE_CPICS,
    MAKE_USERS,
    MAKE_COUNT
};

/* How many of each: users and CPI-C side information in the domain, the others in each node. */
struct Generated {
    std::array<NB_ULONG, MAKE_COUNT> counts = {};

    NB_ULONG operator[](Generator what) const { return counts[what]; }
};

/* Reads "lus=100000,ports=4".  What is not named gets a number that fits the others.  False, with
 * what is wrong and what would be right in `why`, for anything else. */
bool parse_generated(std::string_view text, Generated &domain, std::string &why);

/* All numbers, in one order: the same for the same domain. */
std::string format_generated(const Generated &domain);

/* The domain with its nodes' names and facts and its own resources; the nodes' resources are left
 * out. */
DomainText generated_domain(const Generated &domain);

/* The settings record of a node, by its index from 0: NAP_QUERY_NODE_VERB. */
std::vector<NB_UCHAR> generated_node(const Generated &domain, NB_ULONG index);

/* The index of a node of that name; one behind the last for a name that is none. */
NB_ULONG generated_index(const Generated &domain, const std::string &name);

/* Calls `take` with the list entry (row.schema->entry_size bytes) of every resource of a node that
 * is not made by another, owners first, each class in the order of its list. */
void generate_resources(
    const Generated &domain, NB_ULONG index,
    const std::function<void(const ClassRow &row, const NB_UCHAR *entry)> &take);

} // namespace node

#endif
