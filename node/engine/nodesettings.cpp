#include "nodesettings.h"

namespace node {

RecordSet::RecordSet() {
    for (const Settings &row : records::settings) {
        std::vector<NB_UCHAR> &image = images_[row.query];
        image.assign(row.block_size, 0);
        put_number(image.data(), 2, row.query);
        set_initial_fields(row.fields, image.data());
    }
}

} // namespace node
