#include "rights.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <grp.h>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

namespace node {

namespace {

constexpr gid_t NO_GROUP = static_cast<gid_t>(-1);
constexpr std::chrono::minutes FRESH{1};

using SteadyTime = std::chrono::steady_clock::time_point;

gid_t find_group(const char *name) {
    group found;
    group *result = nullptr;
    std::vector<char> room(1024);
    int error;
    while ((error = getgrnam_r(name, &found, room.data(), room.size(), &result)) ==
           ERANGE) { /* a group has any number of members */
        room.resize(room.size() * 2);
    }
    return result != nullptr ? found.gr_gid : NO_GROUP;
}

/* The groups of the process at the other end, when it connected. */
std::vector<gid_t> groups_of(int fd) {
    std::vector<gid_t> groups(64);
    socklen_t length = 0;
    int result;
    do {
        length = static_cast<socklen_t>(groups.size() * sizeof groups[0]);
        result = getsockopt(fd, SOL_SOCKET, SO_PEERGROUPS, groups.data(), &length);
        if (result != 0 && errno == ERANGE) {
            groups.resize(groups.size() * 2);
        }
    } while (result != 0 && errno == ERANGE);
    groups.resize(result == 0 ? length / sizeof groups[0] : 0);
    return groups;
}

std::string name_of(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

} // namespace

struct Rights::Group {
    explicit Group(const char *of) : name(of) {}

    const char *name;
    std::atomic<gid_t> id{find_group(name)};
    std::atomic<bool> asking{false};
    std::atomic<SteadyTime> asked{std::chrono::steady_clock::now()};
};

Rights::Rights(const char *group) : group_(std::make_shared<Group>(group)) {}

/* The group may come from a directory server that answers late, or never. */
void Rights::look_up_again() {
    const std::shared_ptr<Group> group = group_;
    if (std::chrono::steady_clock::now() - group->asked.load() < FRESH ||
        group->asking.exchange(true)) {
        return;
    }
    sigset_t all, before;
    sigfillset(&all); /* signals are for the loop */
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
        std::thread([group] {
            group->id = find_group(group->name);
            group->asked = std::chrono::steady_clock::now();
            group->asking = false;
        }).detach();
    } catch (const std::system_error &) {
        group->asking = false; /* the next connection tries again */
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

PeerUser Rights::of(int fd) {
    ucred peer = {};
    socklen_t length = sizeof peer;
    if (getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &length) != 0) {
        return {};
    }
    PeerUser user = {peer.uid, peer.pid, peer.uid == 0 || peer.uid == geteuid(), name_of(peer.pid)};
    if (!user.may_change) {
        look_up_again();
        const gid_t administrators = group_->id;
        const std::vector<gid_t> groups = groups_of(fd);
        user.may_change = administrators != NO_GROUP &&
                          (peer.gid == administrators ||
                           std::find(groups.begin(), groups.end(), administrators) != groups.end());
    }
    return user;
}

} // namespace node
