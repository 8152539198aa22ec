/* An installation of the test's own in a folder below /tmp: the programs and files of the build
 * tree by symbolic links, its own etc and var, and a home folder whose resources name the file
 * for what the program knew.  Gone with the object. */
#ifndef SYSTEM_INSTALLATION_H
#define SYSTEM_INSTALLATION_H

#include "process.h"

#include <string>
#include <vector>

namespace sys {

class Installation {
public:
    Installation();
    ~Installation();
    Installation(const Installation &) = delete;
    Installation &operator=(const Installation &) = delete;

    /* The place of a file by its name below the prefix, as in "lib/X11/uid/Quiladmin/icons.uid". */
    const std::string &prefix() const { return prefix_; }
    std::string path(const std::string &name) const { return prefix_ + "/" + name; }
    void remove(const std::string &name) const;
    std::string write(const std::string &name, const std::string &text) const; /* its path */
    std::string read(const std::string &name) const; /* "" if there is none */

    /* What both programs find in their environment; nothing of the test's own but how the
     * sanitizers report. */
    Environment environment() const;

    /* The lines of the error log that one of the programs ("quiladmin") wrote. */
    std::vector<std::string> log(const std::string &program) const;

private:
    void link_tree(const std::string &name) const;

    std::string prefix_;
};

/* Single blanks for whatever separates words, none at the ends. */
std::string flat(const std::string &text);

/* The text of a message with its arguments filled in, flat. */
std::string message(int number, const std::vector<std::string> &arguments = {});

std::vector<std::string> split_lines(const std::string &text);

/* The first words of lines, of those among `wanted` only if that is given. */
std::vector<std::string> first_words(const std::vector<std::string> &lines,
                                     const std::vector<std::string> *wanted = nullptr);

} // namespace sys

#endif
