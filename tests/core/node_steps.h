/* Verbs by the words of a domain text, for tests of what the node answers. */
#ifndef NODE_STEPS_H
#define NODE_STEPS_H

#include "node_support.h"

#include "defineblock.h"

#include <algorithm>

namespace node_test {

/* A section, its fields in the line of its title or behind it.  What is no resource fails. */
inline node::TextResource read_section(std::string section) {
    const size_t line = std::min(section.find('\n'), section.size());
    std::replace(section.begin() + ssize_t(section.find(']')), section.begin() + ssize_t(line), ' ',
                 '\n');
    const node::DomainText text =
        node::parse_domain_text("step", "[domain]\n[node n]\n" + section + "\n");
    for (const std::string &error : text.errors) {
        ADD_FAILURE() << section << ": " << error;
    }
    return text.nodes.at(0).resources.at(0);
}

inline Codes define_text(Rig &rig, const std::string &section) {
    const node::TextResource resource = read_section(section);
    std::vector<NB_UCHAR> block(resource.schema->define_size);
    node::Answer answer;
    NAP_VCB header;
    records::make_define_block(*resource.schema, resource.entry.data(), block.data());
    rig.engine.execute(block.data(), block.size(), answer);
    memcpy(&header, answer.block.data(), sizeof header);
    return {header.primary_rc, header.secondary_rc};
}

/* start, stop or delete; the title without its brackets. */
inline Codes verb_text(Rig &rig, const std::string &verb, const std::string &title,
                       NB_UCHAR stop_type = 0) {
    const node::TextResource resource = read_section("[" + title + "]");
    const node::Schema &schema = *resource.schema;
    const NB_USHORT opcode = verb == "start"  ? schema.start
                             : verb == "stop" ? schema.stop
                                              : schema.remove;
    NAP_NAME_VERB block = records::make_name_block(schema, opcode, resource.entry.data());
    block.stop_type = stop_type;
    return rig.issue(block);
}

} // namespace node_test

#endif
