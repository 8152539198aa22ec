#include "world.h"

#include "nofcopy.h"

namespace node {

namespace {

template <size_t Size> void add(World &world, const NB_UCHAR (&name)[Size]) {
    if (!is_blank(KeyKind::Ebcdic, name, Size)) {
        world.control_points.emplace(reinterpret_cast<const char *>(name), Size);
    }
}

} // namespace

World world_of(const DomainText &domain) {
    World world;
    world.open = false;
    for (const TextNode &node : domain.nodes) {
        for (const TextResource &resource : node.resources) {
            if (resource.schema == &records::ls) {
                add(world, nap_copy<NAP_LS_DATA>(resource.entry.data()).def_data.adj_cp_name);
            } else if (resource.schema == &records::pu) {
                const auto pu = nap_copy<NAP_PU_DATA>(resource.entry.data()).def_data;
                add(world, pu.dlus_name);
                add(world, pu.bkup_dlus_name);
            }
        }
    }
    return world;
}

} // namespace node
