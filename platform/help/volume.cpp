#include "volume.h"
#include "nbbase.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <unistd.h>

namespace help {

namespace {

constexpr std::streamoff max_file = 32 << 20;
constexpr int max_depth = 8;
constexpr char magic[] = "quiladmin-help 1 ";

using Fields = std::vector<std::string_view>;

Fields split(std::string_view line, char separator) {
    Fields fields;
    for (;;) {
        const size_t end = line.find(separator);
        fields.push_back(line.substr(0, end));
        if (end == std::string_view::npos) {
            return fields;
        }
        line.remove_prefix(end + 1);
    }
}

bool read_number(std::string_view text, int base, uint32_t &value) {
    const char *end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, base);
    return !text.empty() && result.ec == std::errc() && result.ptr == end;
}

uint32_t checksum(std::string_view bytes) {
    uint32_t sum = 2166136261U; // FNV-1a
    for (const char byte : bytes) {
        sum = (sum ^ static_cast<unsigned char>(byte)) * 16777619U;
    }
    return sum;
}

bool printable(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char byte) {
        return static_cast<unsigned char>(byte) < ' ' || byte == '\x7f';
    });
}

/* Takes the lines of a volume one by one; each reader returns false for a line that is none. */
class Parser {
public:
    bool line(std::string_view text) {
        const Fields fields = split(text, '\t');
        if (text.empty() || !std::all_of(fields.begin(), fields.end(), printable)) {
            return false;
        }
        switch (fields[0].size() == 1 ? fields[0][0] : '\0') {
        case 'V':
            volume.title = fields.back();
            return fields.size() == 2;
        case 'C':
            return entry(fields, volume.contents);
        case 'X':
            return entry(fields, volume.index);
        case 'T':
            return topic(fields);
        default:
            return block(fields);
        }
    }

    /* Whether everything that an entry or link names is there. */
    bool complete() {
        if (volume.topics.empty()) {
            return false;
        }
        for (const auto *list : {&volume.contents, &volume.index}) {
            for (const Entry &one : *list) {
                if (volume.find(one.topic) == nullptr) {
                    return false;
                }
            }
        }
        return true;
    }

    Volume volume;

private:
    static bool entry(const Fields &fields, std::vector<Entry> &list) {
        uint32_t depth;
        if (fields.size() != 4 || !read_number(fields[1], 10, depth) || depth > max_depth ||
            fields[2].empty()) {
            return false;
        }
        list.push_back({static_cast<int>(depth), std::string(fields[2]), std::string(fields[3])});
        return true;
    }

    bool topic(const Fields &fields) {
        if (fields.size() != 3 || fields[1].empty()) {
            return false;
        }
        volume.topics.push_back({std::string(fields[1]), std::string(fields[2]), {}});
        return true;
    }

    bool block(const Fields &fields) {
        uint32_t level;
        if (fields[0].size() != 1 || std::strchr("HPBNDEFW", fields[0][0]) == nullptr ||
            fields.size() < 2 || !read_number(fields[1], 10, level) || level > 999 ||
            volume.topics.empty()) {
            return false;
        }
        Block made = {static_cast<Kind>(fields[0][0]), static_cast<int>(level), {}};
        if (made.kind == Kind::bullet && level > max_depth) {
            return false;
        }
        for (size_t at = 2; at < fields.size(); at++) {
            if (!run(fields[at], made.runs)) {
                return false;
            }
        }
        volume.topics.back().blocks.push_back(std::move(made));
        return true;
    }

    static bool run(std::string_view text, std::vector<Run> &runs) {
        if (text.empty() || std::strchr("pbifl", text[0]) == nullptr) {
            return false;
        }
        Run made = {static_cast<Style>(text[0]), "", ""};
        text.remove_prefix(1);
        if (made.style == Style::link) {
            const size_t bar = text.find('|');
            if (bar == std::string_view::npos || bar == 0) {
                return false;
            }
            made.target = text.substr(0, bar);
            text.remove_prefix(bar + 1);
        }
        made.text = text;
        runs.push_back(std::move(made));
        return true;
    }
};

/* Empty for what is no file or too long for a volume. */
std::string contents_of(std::ifstream &file) {
    file.seekg(0, std::ios::end);
    const std::streamoff size = file.tellg();
    file.seekg(0);
    if (size <= 0 || size > max_file) {
        return "";
    }
    std::string text(static_cast<size_t>(size), '\0');
    file.read(text.data(), size);
    text.resize(static_cast<size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    return text;
}

Loaded no_volume(const std::string &reason) {
    return {nullptr, reason};
}

} // namespace

const Topic *Volume::find(std::string_view id) const {
    const auto found = std::find_if(topics.begin(), topics.end(),
                                    [id](const Topic &topic) { return topic.id == id; });
    return found == topics.end() ? nullptr : &*found;
}

Loaded parse_volume(std::string_view body) {
    Parser parser;
    size_t number = 2; // the first line is the file's own
    while (!body.empty()) {
        const size_t end = body.find('\n');
        if (end == std::string_view::npos || !parser.line(body.substr(0, end))) {
            return no_volume("Line " + std::to_string(number) + " of the file cannot be read.");
        }
        body.remove_prefix(end + 1);
        number++;
    }
    if (!parser.complete()) {
        return no_volume("Topics are missing from the file.");
    }
    return {std::make_shared<const Volume>(std::move(parser.volume)), ""};
}

Loaded read_volume(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return no_volume("The file " + path + " cannot be opened: " + std::strerror(errno) + ".");
    }
    const std::string text = contents_of(file);
    const std::string damaged = "The file " + path + " is damaged. ";
    const size_t end = text.find('\n');
    if (text.rfind(magic, 0) != 0 || end == std::string::npos) {
        return no_volume("The file " + path + " is not a help volume that this program reads.");
    }
    const size_t start = sizeof(magic) - 1;
    const Fields numbers = split(std::string_view(text).substr(start, end - start), ' ');
    uint32_t size = 0, sum = 0;
    if (numbers.size() != 2 || !read_number(numbers[0], 10, size) ||
        !read_number(numbers[1], 16, sum)) {
        return no_volume(damaged + "Its first line cannot be read.");
    }
    const std::string_view body = std::string_view(text).substr(end + 1);
    if (body.size() != size || checksum(body) != sum) {
        return no_volume(damaged + "Its contents do not match its checksum.");
    }
    Loaded loaded = parse_volume(body);
    if (loaded.volume == nullptr) {
        loaded.fault = damaged + loaded.fault;
    }
    return loaded;
}

std::string volume_path(const std::string &name) {
    if (!name.empty() && name[0] == '/') {
        return name;
    }
    const std::string folder = std::string(nba_prefix()) + "/share/help/";
    const char *const lang = std::getenv("LANG");
    // The value is one folder of the path; it must not lead out of it.
    if (lang && *lang && !std::strchr(lang, '/') && lang[0] != '.') {
        const std::string own = folder + lang + "/" + name + ".qhv";
        if (access(own.c_str(), R_OK) == 0) {
            return own;
        }
    }
    return folder + name + ".qhv";
}

std::string plain_text(const Block &block) {
    std::string text;
    for (const Run &run : block.runs) {
        text += run.text;
    }
    return text;
}

} // namespace help
