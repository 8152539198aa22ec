#include "world.h"

#include "nofcopy.h"

namespace node {

namespace {

template <size_t Size> void add(World &world, const NB_UCHAR (&name)[Size]) {
    if (!is_blank(KeyKind::Ebcdic, name, Size)) {
        world.control_points.emplace(reinterpret_cast<const char *>(name), Size);
    }
}

void add_named(World &world, const TextResource &resource) {
    const NB_UCHAR *entry = resource.entry.data();
    if (resource.schema == &records::ls) {
        add(world, nap_copy<NAP_LS_DATA>(entry).def_data.adj_cp_name);
    } else if (resource.schema == &records::pu) {
        const auto pu = nap_copy<NAP_PU_DATA>(entry).def_data;
        add(world, pu.dlus_name);
        add(world, pu.bkup_dlus_name);
    } else if (resource.schema == &records::mode) {
        add(world, nap_copy<NAP_MODE_DATA>(entry).fq_cp_name);
    } else if (resource.schema == &records::directory) {
        add(world, nap_copy<NAP_DIR_DATA>(entry).fqcp_name);
    }
}

} // namespace

World world_of(const DomainText &domain, const std::string &node) {
    World world;
    world.open = false;
    for (const TextNode &one : domain.nodes) {
        for (const TextResource &resource : one.resources) {
            add_named(world, resource);
        }
        for (const Visitor &visitor : one.visitors) {
            add(world, visitor.fq_cp_name);
        }
    }
    if (const TextNode *text = domain.find(node); text != nullptr) {
        world.visitors = text->visitors;
    }
    return world;
}

} // namespace node
