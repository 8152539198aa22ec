/* A help volume in memory: topics made of blocks, a table of contents and an index.
 *
 * The file is made at build time (docs/help.md) and read as a whole.  It is text, one record a
 * line, behind a first line with its size and checksum, so that a damaged file is known as such
 * before anything in it is believed.  All text is UTF-8 without control characters. OWNS:
 * everything; a topic that was handed out lives as long as its volume. */
#ifndef HELP_VOLUME_H
#define HELP_VOLUME_H

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace help {

enum class Style : char { plain = 'p', strong = 'b', emphasis = 'i', fixed = 'f', link = 'l' };

/* Text of one style.  A link also has where it leads: the name of a topic, "+topic" for a window of
 * its own, "man:page(section)", or "app:word" for what only the program can do. */
struct Run {
    Style style;
    std::string target;
    std::string text;
};

enum class Kind : char {
    heading = 'H',
    paragraph = 'P',
    bullet = 'B',
    numbered = 'N', // `level` is its number
    term = 'D',
    meaning = 'E',
    fixed = 'F', // one line as it stands
    note = 'W'
};

struct Block {
    Kind kind;
    int level; // of a bullet 0 and up; 0 elsewhere
    std::vector<Run> runs;
};

struct Topic {
    std::string id;
    std::string title;
    std::vector<Block> blocks;
};

/* A line of the contents (depth 0 and up) or of the index (depth 0, sorted). */
struct Entry {
    int depth;
    std::string text;
    std::string topic;
};

struct Volume {
    std::string title;
    std::vector<Topic> topics; // the first is the home topic; never empty
    std::vector<Entry> contents;
    std::vector<Entry> index;

    /* The topic of that name; null when there is none. */
    const Topic *find(std::string_view id) const;
};

/* Either a volume or the reason, in words for the operator, why there is none. */
struct Loaded {
    std::shared_ptr<const Volume> volume;
    std::string fault;
};

/* Reads the records behind the first line. */
Loaded parse_volume(std::string_view body);

/* Reads a file: first line, size, checksum, records. */
Loaded read_volume(const std::string &path);

/* "Help4Quiladmin" in the folder share/help of the installation, or in one below it that is named
 * as LANG says, where there is such a volume; a path stays what it is. */
std::string volume_path(const std::string &name);

/* The text of a block without its styles, for searching and for tests. */
std::string plain_text(const Block &block);

} // namespace help

#endif
