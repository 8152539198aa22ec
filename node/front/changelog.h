/* Who changed what: a line for every verb that changes something, in files that only their owner
 * may read.
 *
 * `changes` is written to; when it has its size it becomes `changes.1`, that `changes.2` and so on,
 * and the oldest is gone.  A line has the parts of a ChangeRecord with tabs between them, in the
 * order that they have there, numbers in decimal; a control character is written as \x and two
 * digits, and so is a backslash.  Lines are numbered from 1 on, over all files.
 *
 * OWNS: descriptors of the files, and where each line begins. */
#ifndef CHANGELOG_H
#define CHANGELOG_H

#include "resourceclass.h"

#include <deque>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace node {

struct ChangeRecord {
    NB_ULONG number = 0;
    uint64_t time_ms = 0; /* since 1970 */
    uid_t user = 0;
    pid_t process = 0;
    std::string program; /* what the process calls itself */
    std::string node;    /* "": the domain */
    NB_USHORT opcode = 0;
    Result result;
    std::string subject; /* what it was about, as in "ls LINK1" */
    std::string words;   /* old and new values (changewords.h) */
};

class ChangeLog {
public:
    /* `folder` is where the files are; sizes are bytes. */
    explicit ChangeLog(std::string folder, size_t file_size = 16 * 1024 * 1024,
                       unsigned old_files = 3);
    ~ChangeLog();
    ChangeLog(const ChangeLog &) = delete;
    ChangeLog &operator=(const ChangeLog &) = delete;

    /* Takes up the files that are there, and to write, makes the first.  Lines that are damaged are
     * left out.  False with a text for the operator. */
    bool open(bool to_write, std::string &why);

    /* Adds a line, and its number to the record.  What cannot be written is a problem that is
     * logged; the change has taken place all the same. */
    void write(ChangeRecord &record);

    /* Numbers of the lines there are; newest < oldest when there are none. */
    NB_ULONG oldest() const { return files_.empty() ? 1 : files_.front().first; }
    NB_ULONG newest() const { return last_; }

    /* False: there is no such line, or it is damaged. */
    bool read(NB_ULONG number, ChangeRecord &record) const;

private:
    struct File {
        int fd = -1;
        NB_ULONG first = 1; /* number of its first line */
        uint64_t size = 0;
        std::vector<NB_ULONG> offsets = {}; /* of its lines; NO_LINE: damaged */
    };

    std::string path(unsigned age) const;
    bool take_up(unsigned age, bool to_write, std::string &why);
    void index(File &file);
    bool rotate(std::string &why);
    bool append(const std::string &line, std::string &why);
    void problem(const std::string &why);

    std::string folder_;
    size_t file_size_;
    unsigned old_files_;
    std::deque<File> files_; /* the oldest first */
    NB_ULONG last_ = 0;
};

/* A record as its line, without the end, and from it; false when it is none. */
std::string line_of(const ChangeRecord &record);
bool parse_line(std::string_view line, ChangeRecord &record);

/* Prints what is in the files of a state folder, oldest first, for people.  Returns the exit
 * status. */
int print_changes(const std::string &state_folder);

} // namespace node

#endif
