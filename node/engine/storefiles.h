/* Who may reach what is kept on disk: the user that runs the node software, and nobody else.
 *
 * Each function repairs the rights of what is this user's and refuses what is another's.  On
 * failure it returns false with a text for the operator in `why`. */
#ifndef STOREFILES_H
#define STOREFILES_H

#include <string>

namespace node {

/* Takes an existing folder for stores alone.  One that others may enter is repaired only when it is
 * empty or holds a domain's store: a shared folder is not taken away from the others. */
bool own_folder(const std::string &folder, std::string &why);

/* Makes the database file when it is missing, and closes it and those beside it to others. */
bool own_store_files(const std::string &path, std::string &why);

/* There is no such file, or nothing in it. */
bool is_empty_file(const std::string &path);

/* The process that has a lock on a file, as " by process N", or "" when that is not known.
 * REQUIRES: this process has no lock on it; it would lose it. */
std::string holder_of(const std::string &path);

} // namespace node

#endif
