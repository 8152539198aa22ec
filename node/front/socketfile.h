/* The file by which administrators reach the node software. */
#ifndef SOCKETFILE_H
#define SOCKETFILE_H

#include <string>
#include <sys/types.h>

namespace node {

/* A listening local socket that everybody may connect to.  Takes the place of a socket that nobody
 * answers on, left over from a process that was killed, and of nothing else.
 * OWNS: the descriptor and, as long as it is this one's, the file. */
class SocketFile {
public:
    SocketFile() = default;
    ~SocketFile();
    SocketFile(const SocketFile &) = delete;
    SocketFile &operator=(const SocketFile &) = delete;

    /* False, with a sentence in `why` and nothing changed: the path is too long, somebody answers
     * on it, it is a file of another kind, or the system refuses. */
    bool listen(const std::string &path, std::string &why);

    /* Non-blocking; -1 before listen(). */
    int fd() const { return fd_; }

private:
    int fd_ = -1;
    std::string path_;
    dev_t device_ = 0;
    ino_t inode_ = 0;
};

} // namespace node

#endif
