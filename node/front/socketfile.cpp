#include "socketfile.h"

#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace node {

namespace {

bool make_address(const std::string &path, sockaddr_un &address, std::string &why) {
    address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        why = path + ": the path of a socket has at most " +
              std::to_string(sizeof address.sun_path - 1) + " characters; give a shorter one";
        return false;
    }
    memcpy(address.sun_path, path.data(), path.size());
    return true;
}

bool answers(const sockaddr_un &address) {
    const int probe = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    /* With a full backlog somebody is there, too. */
    const bool there =
        connect(probe, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 ||
        errno == EAGAIN;
    close(probe);
    return there;
}

/* Removes what a process that was killed left behind. */
bool make_way(const std::string &path, const sockaddr_un &address, std::string &why) {
    struct stat found = {};
    if (lstat(path.c_str(), &found) != 0) {
        return true; /* bind says what else is wrong */
    }
    if (!S_ISSOCK(found.st_mode)) {
        why = path + " is there and is not a socket; nothing was changed. Move it away, or give "
                     "another path with --socket";
        return false;
    }
    if (answers(address)) {
        why = "another snanode answers on " + path + "; end that first, or give another socket";
        return false;
    }
    if (unlink(path.c_str()) != 0 && errno != ENOENT) {
        why = path + ": " + strerror(errno);
        return false;
    }
    return true;
}

} // namespace

SocketFile::~SocketFile() {
    if (fd_ < 0) {
        return;
    }
    struct stat found = {};
    if (lstat(path_.c_str(), &found) == 0 && found.st_dev == device_ && found.st_ino == inode_) {
        unlink(path_.c_str());
    }
    close(fd_);
}

bool SocketFile::listen(const std::string &path, std::string &why) {
    sockaddr_un address;
    if (!make_address(path, address, why) || !make_way(path, address, why)) {
        return false;
    }
    const int made = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const mode_t mask = umask(0111);
    const bool bound =
        bind(made, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    umask(mask);
    struct stat found = {};
    if (!bound || ::listen(made, SOMAXCONN) != 0 || lstat(path.c_str(), &found) != 0) {
        why = path + ": " + strerror(errno);
        close(made);
        return false;
    }
    fd_ = made;
    path_ = path;
    device_ = found.st_dev;
    inode_ = found.st_ino;
    return true;
}

} // namespace node
