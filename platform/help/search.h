/* Full-text search of a volume.  Without case for ASCII; no index is kept, since a volume of some
 * hundred topics is read in a millisecond or two. */
#ifndef HELP_SEARCH_H
#define HELP_SEARCH_H

#include "volume.h"

namespace help {

/* The words of a query, in lower case; what is not a letter, a digit, or inside a word one of
 * . _ - separates them. */
std::vector<std::string> query_words(std::string_view query);

/* The topics that have every word of the query, the most telling first: a word in the title or in
 * the name counts more than one in a heading, and that more than one in the text.  Words match from
 * their beginning ("pace" does not find "workspace").  Empty for a query without a word. */
std::vector<const Topic *> search(const Volume &volume, std::string_view query);

} // namespace help

#endif
