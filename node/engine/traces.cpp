#include "traces.h"

#include <algorithm>
#include <cctype>
#include <sys/stat.h>

namespace node {

namespace {

constexpr const char *usual_names[] = {
    "", "dlc.trc", "type.trc", "cs.trc", "back_cs.trc", "tn_server.trc", "slp.trc"};

} // namespace

bool Traces::is_name(const std::string &name) {
    return name.empty() ||
           (name[0] != '.' && std::all_of(name.begin(), name.end(), [](unsigned char c) {
                return isprint(c) != 0 && c != '/';
            }));
}

bool Traces::set(NB_USHORT kind, const std::string &name, bool on, NB_USHORT truncation) {
    open_.erase(kind);
    if (!on || folder_.empty()) {
        return true;
    }
    const std::string used = name.empty() ? usual_names[kind] : name;
    mkdir(folder_.c_str(), 0755);
    Open opened = {
        std::unique_ptr<FILE, Close>(is_name(used) ? fopen(path(used).c_str(), "ae") : nullptr),
        used, truncation};
    if (opened.file == nullptr) {
        return false;
    }
    open_[kind] = std::move(opened);
    known_[{kind, used}] = clock_.wall_seconds();
    write(kind, "trace switched on");
    return true;
}

void Traces::write(NB_USHORT kind, const std::string &line) {
    const auto found = open_.find(kind);
    if (found == open_.end()) {
        return;
    }
    const Open &to = found->second;
    const size_t length = to.truncation != 0 ? to.truncation : line.size();
    FILE *file = to.file.get();
    fprintf(file, "%u %s\n", clock_.wall_seconds(), line.substr(0, length).c_str());
    if (ftell(file) > static_cast<long>(MAX_TRACE_SIZE)) {
        open_[kind].file.reset(freopen(path(to.name).c_str(), "we", open_[kind].file.release()));
    }
    if (to.file == nullptr || fflush(to.file.get()) != 0) {
        open_.erase(found);
    }
}

std::vector<Traces::File> Traces::files() const {
    std::vector<File> all;
    for (const auto &[key, started_at] : known_) {
        struct stat found = {};
        const auto open = open_.find(key.first);
        const bool active = open != open_.end() && open->second.name == key.second;
        if (stat(path(key.second).c_str(), &found) == 0) {
            const auto size = std::min<off_t>(found.st_size, 0xFFFFFFFF);
            all.push_back({key.first, key.second, active, static_cast<NB_ULONG>(size), started_at});
        }
    }
    return all;
}

} // namespace node
