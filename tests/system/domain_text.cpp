#include "domain_text.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <strings.h>

namespace sys {

namespace {

std::vector<std::string> words(const std::string &text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

/* `pick` returns the name that a section stands for, or "". */
template <class Pick> std::vector<std::string> collect(const DomainText &domain, Pick pick) {
    std::vector<std::string> names;
    for (const Section &section : domain) {
        if (const std::string name = pick(section); !name.empty()) {
            names.push_back(name);
        }
    }
    return in_order(names);
}

std::string value(const Section &section, const std::string &name) {
    const auto found = section.values.find(name);
    return found != section.values.end() ? found->second : "";
}

} // namespace

DomainText read_domain(const std::string &name) {
    std::ifstream file(SYSTEM_DOMAINS "/" + name + ".domain");
    DomainText domain;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        if (line[0] == '[') {
            domain.push_back({words(line.substr(1, line.find(']') - 1)), {}});
        } else if (const size_t equals = line.find(" = "); equals != std::string::npos) {
            domain.back().values[line.substr(0, equals)] = line.substr(equals + 3);
        }
    }
    return domain;
}

std::vector<std::string> in_order(std::vector<std::string> names) {
    std::sort(names.begin(), names.end(), [](const std::string &a, const std::string &b) {
        return strcasecmp(a.c_str(), b.c_str()) < 0;
    });
    return names;
}

std::vector<std::string> ports(const DomainText &domain) {
    return collect(domain, [](const Section &section) {
        return section.title[0] == "port" ? section.title[1] : "";
    });
}

std::vector<std::string> link_stations(const DomainText &domain, const std::string &port) {
    return collect(domain, [&port](const Section &section) {
        const bool of_port = section.title[0] == "ls" && value(section, "port_name") == port;
        return of_port ? section.title[1] : "";
    });
}

std::vector<std::string> local_lus(const DomainText &domain) {
    return collect(domain, [](const Section &section) {
        return section.title[0] == "node"       ? value(section, "cp_alias")
               : section.title[0] == "local_lu" ? value(section, "lu_alias")
                                                : "";
    });
}

std::vector<std::string> remote_systems(const DomainText &domain) {
    return collect(domain, [](const Section &section) {
        const bool system = section.title[0] == "directory" && section.title[1] == section.title[2];
        return system ? section.title[1] : "";
    });
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
