#include "storefiles.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace node {

namespace {

constexpr mode_t OTHERS = S_IRWXG | S_IRWXO;

std::string system_error(const std::string &what) {
    return what + ": " + strerror(errno);
}

bool is_own(const std::string &path, const struct stat &found, std::string &why) {
    if (found.st_uid != geteuid()) {
        why = path + " belongs to user " + std::to_string(found.st_uid) + ", not to user " +
              std::to_string(geteuid()) +
              " who runs this; run it as that user, or change its owner with chown";
        return false;
    }
    return true;
}

/* The umask takes part in no mode that is set here. */
bool set_mode(const std::string &path, const struct stat &found, mode_t mode, std::string &why) {
    if ((found.st_mode & 07777) != mode && chmod(path.c_str(), mode) != 0) {
        why = system_error(path);
        return false;
    }
    return true;
}

bool is_for_stores(const std::string &folder, const struct stat &found) {
    std::error_code error;
    return (found.st_mode & S_ISVTX) == 0 && (std::filesystem::is_empty(folder, error) ||
                                              std::filesystem::exists(folder + "/domain.db"));
}

bool own_file(const std::string &path, std::string &why) {
    struct stat found = {};
    if (lstat(path.c_str(), &found) != 0) {
        why = errno == ENOENT ? "" : system_error(path);
        return why.empty();
    }
    if (!S_ISREG(found.st_mode)) {
        why = path + " is not a regular file; move it away";
        return false;
    }
    return is_own(path, found, why) && set_mode(path, found, S_IRUSR | S_IWUSR, why);
}

} // namespace

bool own_folder(const std::string &folder, std::string &why) {
    struct stat found = {};
    if (stat(folder.c_str(), &found) != 0) {
        why = system_error(folder);
        return false;
    }
    if (!is_own(folder, found, why)) {
        return false;
    }
    if ((found.st_mode & OTHERS) != 0 && !is_for_stores(folder, found)) {
        why = folder + " is open to other users and holds other things than a domain; give a "
                       "folder of its own with --state";
        return false;
    }
    return set_mode(folder, found, S_IRWXU, why);
}

bool own_store_files(const std::string &path, std::string &why) {
    for (const char *beside : {"", "-wal", "-shm", "-journal"}) {
        if (!own_file(path + beside, why)) {
            return false;
        }
    }
    const int made = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (made < 0 && errno != EEXIST) {
        why = system_error(path);
        return false;
    }
    if (made >= 0) {
        close(made);
        return own_file(path, why);
    }
    return true;
}

bool is_empty_file(const std::string &path) {
    struct stat found = {};
    return stat(path.c_str(), &found) != 0 || found.st_size == 0;
}

std::string holder_of(const std::string &path) {
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    const int fd = open(path.c_str(), O_RDWR | O_CLOEXEC);
    const bool known = fd >= 0 && fcntl(fd, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
    if (fd >= 0) {
        close(fd);
    }
    return known ? " by process " + std::to_string(lock.l_pid) : "";
}

} // namespace node
