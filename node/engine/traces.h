/* Trace files: what a node does, written down while a trace is switched on.  The files of a node
 * have a folder of their own, which is made when the first is opened.  One that has grown to
 * MAX_TRACE_SIZE begins anew.  OWNS: the open files. */
#ifndef TRACES_H
#define TRACES_H

#include "clock.h"
#include "nofrec.h"

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace node {

constexpr NB_ULONG MAX_TRACE_SIZE = 1024 * 1024;

class Traces {
public:
    /* A file that the node writes to, or did. */
    struct File {
        NB_USHORT kind; /* NAP_TRACE_DLC and the like */
        std::string name;
        bool active;
        NB_ULONG size;
        NB_ULONG started_at; /* seconds since 1970 */
    };

    explicit Traces(const Clock &clock) : clock_(clock) {}

    /* Without a folder nothing is written. */
    void keep_in(const std::string &folder) { folder_ = folder; }

    /* Whether a file may be called so: printable, no /, no leading period; "" for the usual name.
     */
    static bool is_name(const std::string &name);

    /* Switches the trace of a kind on, or with `on` false off.  `name` "" is the usual one;
     * `truncation` is the most bytes of a line, 0: all.  False when the file cannot be opened: the
     * trace is off then. */
    bool set(NB_USHORT kind, const std::string &name, bool on, NB_USHORT truncation);

    bool is_on(NB_USHORT kind) const { return open_.count(kind) != 0; }
    void write(NB_USHORT kind, const std::string &line);

    /* All files of this process, with their sizes of the moment. */
    std::vector<File> files() const;

private:
    struct Close {
        void operator()(FILE *file) const { fclose(file); }
    };
    struct Open {
        std::unique_ptr<FILE, Close> file;
        std::string name;
        NB_USHORT truncation;
    };

    std::string path(const std::string &name) const { return folder_ + "/" + name; }

    const Clock &clock_;
    std::string folder_;
    std::map<NB_USHORT, Open> open_;
    std::map<std::pair<NB_USHORT, std::string>, NB_ULONG> known_; /* and when it was begun */
};

} // namespace node

#endif
