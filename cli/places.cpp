/* Finding nodes, classes in them, and entries. */
#include "commands.h"

#include "fieldtext.h"
#include "nofcopy.h"

#include <algorithm>
#include <cstdio>

namespace cli {

using records::Schema;

std::vector<Home> homes_of(const Request &request, const Schema &schema) {
    std::vector<NAP_NODE_ALL_DATA> nodes;
    std::vector<Home> homes;
    if (&schema == &records::domain_node) {
        return {{0, ""}};
    }
    if (is_of_domain(schema)) {
        Home home;
        expect("the domain's configuration", NAP_OPEN_FILE, request.session.reach("", false, home));
        return {home};
    }
    if (!request.node.empty()) {
        Home home;
        expect("node " + request.node, NAP_CONNECT_NODE,
               request.session.reach(request.node, is_tp_load(schema), home));
        return {home};
    }
    expect("the nodes of the domain", NAP_QUERY_NODE_ALL, request.session.nodes(nodes));
    Codes last;
    for (const NAP_NODE_ALL_DATA &node : nodes) {
        const std::string name = records::local_text(node.node_name, sizeof node.node_name);
        Home home;
        last = request.session.reach(name, is_tp_load(schema), home);
        if (last.ok()) {
            homes.push_back(home);
        } else {
            fprintf(stderr, "quilctl: %s\n",
                    failure_of("node " + name, NAP_CONNECT_NODE, last).what());
        }
    }
    if (homes.empty()) {
        throw Failure(UNREACHABLE, "no node of the domain can be reached");
    }
    return homes;
}

Home home_of(const Request &request, const Schema &schema) {
    const std::vector<Home> homes = homes_of(request, schema);
    if (homes.size() > 1) {
        std::string names;
        for (const Home &home : homes) {
            names += (names.empty() ? "" : ", ") + home.node;
        }
        throw Failure(BAD_USAGE, "say which node with --node; there are " + names);
    }
    return homes[0];
}

bool find_entry(const Request &request, const Home &home, const Schema &schema, Bytes &entry) {
    const Bytes key(entry.begin() + records::KEY_OFFSET,
                    entry.begin() + static_cast<long>(records::KEY_OFFSET + schema.key_size()));
    bool found = false;
    for (const records::ListRow &row : schema.lists) {
        if (row.list == 0 || found) {
            continue;
        }
        const Codes codes = request.session.list(
            home.target, row.list, key,
            [&](const NB_UCHAR *bytes, size_t length) {
                std::copy(bytes, bytes + std::min(length, entry.size()), entry.begin());
                found = true;
                return false;
            },
            schema.key_size());
        if (!codes.ok() && codes.secondary != NAP_UNKNOWN_RESOURCE) {
            throw failure_of(std::string("list ") + schema.name, row.list, codes);
        }
    }
    return found;
}

void for_entries(const Request &request, const Home &home, const Schema &schema,
                 const std::vector<std::string> &owner,
                 const std::function<void(const NB_UCHAR *entry)> &take) {
    Bytes leading;
    if (!owner.empty()) {
        Bytes entry = new_entry(schema);
        const records::FieldRow &first = schema.fields[0];
        std::string why;
        if (schema.owner_size() == 0 || owner.size() != 1) {
            throw Failure(BAD_USAGE, std::string("resources of ") + schema.name +
                                         " are not kept under an owner");
        }
        if (!records::set_field(first, owner[0], entry.data(), why)) {
            throw Failure(BAD_USAGE, std::string(first.name) + " is " + why);
        }
        leading.assign(entry.begin() + records::KEY_OFFSET,
                       entry.begin() +
                           static_cast<long>(records::KEY_OFFSET + schema.owner_size()));
    }
    Bytes whole(schema.overlay_size());
    for (const records::ListRow &row : schema.lists) {
        if (row.list == 0) {
            continue;
        }
        const Codes codes = request.session.list(
            home.target, row.list, leading,
            [&](const NB_UCHAR *bytes, size_t length) {
                const size_t known = std::min(length, whole.size());
                std::copy(bytes, bytes + known, whole.begin());
                std::fill(whole.begin() + static_cast<long>(known), whole.end(), NB_UCHAR{0});
                take(whole.data());
                return true;
            },
            schema.key_size());
        if (codes.primary != NAP_NOT_SUPPORTED) {
            expect(std::string("list ") + schema.name, row.list, codes);
        }
    }
}

} // namespace cli
