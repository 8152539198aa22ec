#include "installation.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nl_types.h>
#include <sstream>

namespace sys {

namespace fs = std::filesystem;

namespace {

const std::string build_tree = SYSTEM_BUILD_TREE;

} // namespace

Installation::Installation() {
    char folder[] = "/tmp/sna.XXXXXX";
    prefix_ = mkdtemp(folder) != nullptr ? folder : "/tmp/sna.none";
    // Another user may run the program, too, and tell what it knew.
    fs::permissions(prefix_, fs::perms(0755));
    for (const char *part : {"bin", "share"}) {
        fs::create_directory_symlink(build_tree + "/" + part, path(part));
    }
    for (const char *part : {"etc", "var", "home"}) {
        fs::create_directory(path(part));
        fs::permissions(path(part), fs::perms(0777));
    }
    link_tree("lib/nls");
    link_tree("lib/X11");
    write("home/.quilrc", "Quiladmin.modelFile: " + path("var/model") + "\n");
}

Installation::~Installation() {
    std::error_code error;
    fs::remove_all(prefix_, error);
}

/* File by file, so that a test can take one away. */
void Installation::link_tree(const std::string &name) const {
    for (const auto &entry : fs::recursive_directory_iterator(build_tree + "/" + name)) {
        if (entry.is_regular_file()) {
            const fs::path place = path(fs::relative(entry.path(), build_tree).string());
            fs::create_directories(place.parent_path());
            fs::create_symlink(entry.path(), place);
        }
    }
}

void Installation::remove(const std::string &name) const {
    fs::remove(path(name));
}

std::string Installation::write(const std::string &name, const std::string &text) const {
    fs::create_directories(fs::path(path(name)).parent_path());
    std::ofstream(path(name)) << text;
    return path(name);
}

std::string Installation::read(const std::string &name) const {
    std::ostringstream text;
    text << std::ifstream(path(name)).rdbuf();
    return text.str();
}

Environment Installation::environment() const {
    Environment all = {{"LANG", "C.UTF-8"}, {"HOME", path("home")}, {"SNA_PREFIX", prefix_}};
    for (const char *name : {"PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        if (const char *value = getenv(name)) {
            all[name] = value;
        }
    }
    return all;
}

std::vector<std::string> Installation::log(const std::string &program) const {
    std::vector<std::string> found;
    for (const std::string &line : split_lines(read("var/log/sna.err"))) {
        if (line.find(" " + program + "[") != std::string::npos) {
            found.push_back(line);
        }
    }
    return found;
}

std::string flat(const std::string &text) {
    std::istringstream stream(text);
    std::string all;
    for (std::string word; stream >> word;) {
        all += (all.empty() ? "" : " ") + word;
    }
    return all;
}

std::string message(int number, const std::vector<std::string> &arguments) {
    static const nl_catd catalogue = catopen((build_tree + "/lib/nls/msg/C/sna.cat").c_str(), 0);
    const std::string text = catgets(catalogue, 2, number, "no such message");
    std::string filled;
    for (size_t at = 0; at < text.size(); at++) {
        const size_t argument = text[at] == '%' && at + 1 < text.size()
                                    ? static_cast<size_t>(text[at + 1] - '1')
                                    : arguments.size();
        if (argument < arguments.size()) {
            filled += arguments[argument];
            at++;
        } else {
            filled += text[at];
        }
    }
    return flat(filled);
}

std::vector<std::string> split_lines(const std::string &text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> first_words(const std::vector<std::string> &lines,
                                     const std::vector<std::string> *wanted) {
    std::vector<std::string> found;
    for (const std::string &line : lines) {
        const std::string word = line.substr(0, line.find(' '));
        if (wanted == nullptr || std::count(wanted->begin(), wanted->end(), word) != 0) {
            found.push_back(word);
        }
    }
    return found;
}

} // namespace sys
