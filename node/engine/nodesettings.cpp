#include "nodesettings.h"

#include "entry.h"

namespace node {

RecordSet::RecordSet() {
    for (const Settings &row : records::settings) {
        images_[row.query] = records::initial_block(row);
    }
}

} // namespace node
