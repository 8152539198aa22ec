/* The modes and classes of service that the architecture defines and every node has: the node
 * software answers with them, the program has them before it has asked. */
#ifndef SNADEFINED_H
#define SNADEFINED_H

#include "nofrec.h"

#include <array>

namespace records {

constexpr size_t SNA_COS = 7;
constexpr size_t SNA_COS_ROWS = 8; /* of each kind, in each class of service */
constexpr size_t SNA_MODES = 13;

/* List entries, complete but for the overlay size.  Classes of service come before the modes that
 * name them. */
std::array<NAP_COS_DATA, SNA_COS> sna_cos();
std::array<NAP_COS_NODE_ROW_DATA, SNA_COS * SNA_COS_ROWS> sna_cos_node_rows();
std::array<NAP_COS_TG_ROW_DATA, SNA_COS * SNA_COS_ROWS> sna_cos_tg_rows();
std::array<NAP_MODE_DEF_DATA, SNA_MODES> sna_modes();

/* True when the 8-byte EBCDIC name is one of theirs. */
bool is_sna_cos(const NB_UCHAR *name);
bool is_sna_mode(const NB_UCHAR *name);

/* True for the modes between control points, and for the one by which LUs agree on their sessions
 * (SNASVCMG). */
bool is_control_point_mode(const NB_UCHAR *name);
bool is_session_control_mode(const NB_UCHAR *name);

} // namespace records

#endif
