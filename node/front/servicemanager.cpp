#include "servicemanager.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace node {

bool tell_service_manager(const char *state) {
    const char *const path = std::getenv("NOTIFY_SOCKET");
    sockaddr_un address = {};
    if (path == nullptr || std::strlen(path) >= sizeof address.sun_path) {
        return false;
    }
    const size_t length = std::strlen(path);
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path, length);
    if (path[0] == '@') {
        address.sun_path[0] = '\0';
    }
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const size_t size = std::strlen(state);
    const bool sent =
        fd >= 0 && sendto(fd, state, size, MSG_NOSIGNAL, reinterpret_cast<sockaddr *>(&address),
                          static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length)) ==
                       static_cast<ssize_t>(size);
    if (fd >= 0) {
        close(fd);
    }
    return sent;
}

} // namespace node
