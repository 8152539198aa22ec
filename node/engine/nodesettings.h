/* The settings records of a node or of the domain as they are now: one image of each, the block as
 * it is answered.  What they hold is said in settings.h. */
#ifndef NODESETTINGS_H
#define NODESETTINGS_H

#include "resourceclass.h"

#include <map>

namespace node {

/* The settings that a verb asks for or sets; null: none. */
using records::settings_by_verb;

class RecordSet {
public:
    /* Every record with its initial values, return codes 0. */
    RecordSet();

    /* The block of a record; its length is row.block_size. */
    NB_UCHAR *image(const Settings &row) { return images_.at(row.query).data(); }
    const NB_UCHAR *image(const Settings &row) const { return images_.at(row.query).data(); }

private:
    std::map<NB_USHORT, std::vector<NB_UCHAR>> images_;
};

} // namespace node

#endif
