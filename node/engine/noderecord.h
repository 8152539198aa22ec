/* Settings records: the verbs that answer with one record inside their block.  A row names the
 * verb, the section of the domain text that sets it, and its fields; what no text sets has the
 * initial values of the rows.  To add one, add a row in noderecord.cpp. */
#ifndef NODERECORD_H
#define NODERECORD_H

#include "nodefield.h"

#include <map>
#include <vector>

namespace node {

struct RecordRow {
    NB_USHORT opcode;
    NB_USHORT setter; /* the verb that changes it, with the same block; 0: none */
    const char *name; /* section of domain texts, and record in the store */
    size_t block_size;
    bool of_domain; /* asked of the domain, not of a node */
    FieldTable fields;
    size_t mode_offset; /* of the name of a mode that must be defined; 0: none */
};

/* Every row there is. */
struct RecordRows {
    const RecordRow *first;
    const RecordRow *last; /* behind the last */

    const RecordRow *begin() const { return first; }
    const RecordRow *end() const { return last; }
};
RecordRows all_records();

const RecordRow *record_by_verb(NB_USHORT opcode);
const RecordRow *record_by_setter(NB_USHORT opcode);
const RecordRow *record_by_name(std::string_view name);

/* One image of each record: the block as it is answered, return codes 0. */
class RecordSet {
public:
    RecordSet();

    /* The block of a record; its length is row.block_size. */
    NB_UCHAR *image(const RecordRow &row) { return images_.at(row.opcode).data(); }
    const NB_UCHAR *image(const RecordRow &row) const { return images_.at(row.opcode).data(); }

private:
    std::map<NB_USHORT, std::vector<NB_UCHAR>> images_;
};

} // namespace node

#endif
