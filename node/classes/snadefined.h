/* The modes and classes of service that the architecture defines and every node has. */
#ifndef SNADEFINED_H
#define SNADEFINED_H

#include "nofrec.h"

#include <vector>

namespace node {

/* List entries, complete but for the overlay size.  Classes of service come before the modes that
 * name them. */
std::vector<NAP_COS_DATA> sna_cos();
std::vector<NAP_COS_NODE_ROW_DATA> sna_cos_node_rows();
std::vector<NAP_COS_TG_ROW_DATA> sna_cos_tg_rows();
std::vector<NAP_MODE_DEF_DATA> sna_modes();

/* True when the 8-byte EBCDIC name is one of theirs. */
bool is_sna_cos(const NB_UCHAR *name);
bool is_sna_mode(const NB_UCHAR *name);

/* True for the modes between control points. */
bool is_control_point_mode(const NB_UCHAR *name);

} // namespace node

#endif
