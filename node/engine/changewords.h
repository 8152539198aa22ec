/* Changes in words, for those who want to know later what was done: the verb, what it was about,
 * and what it made of what was there.  Secrets are never told. */
#ifndef CHANGEWORDS_H
#define CHANGEWORDS_H

#include "nodesettings.h"
#include "resourceclass.h"

#include <string>
#include <vector>

namespace node {

/* The name of a verb in words, as in "define ls"; of an unknown one its opcode. */
std::string verb_words(NB_USHORT opcode);

/* The class and the name of an entry, as in "ls LINK1"; the parts of a name have a blank between
 * them. */
std::string name_words(const Schema &schema, const NB_UCHAR *entry);

/* What a block is about that check_block found good: "" when it is the node or the domain itself.
 */
std::string subject_words(const std::vector<NB_UCHAR> &block);

/* What is different between two records, either of which may be null for none, as in
 *
 *   description 'old' -> 'new'; max_send_btu_size '265' -> '521'; password changed
 *
 * What is new has nothing on the left, what is deleted nothing on the right; fields of theirs that
 * are blank or 0 are left out. */
std::string differences(const Schema &schema, const NB_UCHAR *before, const NB_UCHAR *after);
std::string differences(const Settings &row, const NB_UCHAR *before, const NB_UCHAR *after);

} // namespace node

#endif
