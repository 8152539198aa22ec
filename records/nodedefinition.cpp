#include "nodedefinition.h"

#include "nofverbs.h"

#include <cstring>

namespace records {

namespace {

/* Calls copy(member of the verb, the same of a record) for all that a definition has. */
template <class Verb, class Node, class Limits, class Copy>
void for_members(Verb &verb, Node &node, Limits &limits, Copy copy) {
#define MEMBER(of, place) copy(&verb.of, &node.place, sizeof node.place)
    MEMBER(description, info.description);
    MEMBER(fq_cp_name, info.fq_cp_name);
    MEMBER(cp_alias, info.cp_alias);
    MEMBER(node_type, info.node_type);
    MEMBER(cos_mapping, info.cos_mapping);
    MEMBER(cp_nau_addr, cp_nau_addr);
    MEMBER(dlur_support, dlur_support);
    MEMBER(dspu_support, dspu_support);
    MEMBER(hpr_support, hpr_support);
    MEMBER(node_id, node_id);
    MEMBER(tn3270_support, tn3270_support);
    MEMBER(primary_support, primary_support);
    MEMBER(tamrix_support, tamrix_support);
    MEMBER(directory_register, directory_register);
#undef MEMBER
    copy(&verb.max_lus, &limits.max_lus, sizeof limits.max_lus);
    copy(&verb.max_links, &limits.max_links, sizeof limits.max_links);
    copy(&verb.max_sessions, &limits.max_sessions, sizeof limits.max_sessions);
    copy(&verb.max_users, &limits.max_users, sizeof limits.max_users);
}

} // namespace

NAP_DEFINE_NODE_VERB make_node_definition(const NAP_QUERY_NODE_VERB &node,
                                          const NAP_QUERY_NODE_LIMITS_VERB &limits) {
    NAP_DEFINE_NODE_VERB verb = {};
    verb.opcode = NAP_DEFINE_NODE;
    for_members(verb, node, limits,
                [](void *to, const void *from, size_t size) { memcpy(to, from, size); });
    return verb;
}

void take_node_definition(const NAP_DEFINE_NODE_VERB &verb, NAP_QUERY_NODE_VERB &node,
                          NAP_QUERY_NODE_LIMITS_VERB &limits) {
    for_members(verb, node, limits,
                [](const void *from, void *to, size_t size) { memcpy(to, from, size); });
}

} // namespace records
