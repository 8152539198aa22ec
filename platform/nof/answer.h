/* What of a received block reaches the program's memory.  The library's own record of the verb says
 * where and how much; a block that does not fit it is garbage and changes nothing. */
#ifndef NOF_ANSWER_H
#define NOF_ANSWER_H

#include "flights.h"
#include "framereader.h"

namespace nof {

/* Writes the return codes into a block. */
void set_return_codes(NB_UCHAR *vcb, NB_USHORT primary_rc, NB_ULONG secondary_rc);

/* Completes the verb's block, and the buffer of a list, from an answer.  Opcode, attributes,
 * format, buffer address and size, and what a list was asked for stay as they were issued. Returns
 * false for garbage; the block and its buffer are then as they were. */
bool fill_answer(const Verb &verb, const Frame &frame);

/* Makes a block of its own from an indication or a copy of another administrator's verb.  `vcb` has
 * room for NOF_MAX_VCB bytes.  Returns false for garbage. */
bool copy_indication(const Frame &frame, NB_UCHAR *vcb);

} // namespace nof

#endif
