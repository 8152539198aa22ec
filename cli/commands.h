/* The commands of quilctl.  Each returns the exit status or throws a Failure. */
#ifndef CLI_COMMANDS_H
#define CLI_COMMANDS_H

#include "output.h"

namespace cli {

/* What every command is given. */
struct Request {
    Session &session;
    std::string node; /* the one that was named; "": none was */
    Form form = Form::Table;
};

/* Where a class is kept: in the domain, in the node that was named, or in every node that can be
 * reached.  Nodes that cannot are told on standard error. */
std::vector<Home> homes_of(const Request &request, const records::Schema &schema);

/* The one of them; a failure asks which when there are several. */
Home home_of(const Request &request, const records::Schema &schema);

/* The entry of that name; false when there is none. */
bool find_entry(const Request &request, const Home &home, const records::Schema &schema,
                Bytes &entry);

/* Calls `take` for every entry of a class. */
void for_entries(const Request &request, const Home &home, const records::Schema &schema,
                 const std::vector<std::string> &owner,
                 const std::function<void(const NB_UCHAR *entry)> &take);

/* looking (lookcommands.cpp) */
int list_classes(const Request &request, const std::string &of);
int list(const Request &request, const std::string &of, const std::vector<std::string> &owner,
         const std::vector<std::string> &fields);
int show(const Request &request, const std::string &of, const std::vector<std::string> &name);
int history(const Request &request, unsigned most);

/* changing (changecommands.cpp); `names` of "-" alone are read from standard input, one a line */
int define(const Request &request, const std::string &of, const std::vector<std::string> &words);
int change(const Request &request, const std::string &of, const std::vector<std::string> &words);
int remove(const Request &request, const std::string &of, const std::vector<std::string> &name);
int start(const Request &request, const std::string &of, const std::vector<std::string> &name);
int stop(const Request &request, const std::string &of, const std::vector<std::string> &name,
         bool immediately);

/* The verb that defines what an entry says, checked before; `what` is for failures. */
void issue_define(const Request &request, const Home &home, const records::Schema &schema,
                  Bytes &entry, const std::string &what);

/* texts (textcommands.cpp); `of` names classes and settings, none for all */
int export_text(const Request &request, const std::vector<std::string> &of);
int diff(const Request &request, const std::string &file, bool deletes);
struct Applying {
    bool deletes;   /* what the text does not have */
    bool stops;     /* what is in the way */
    bool dry_run;   /* the plan is shown, and no more */
    bool passwords; /* that the text says are set, whether anything else is changed or not */
};
int apply(const Request &request, const std::string &file, Applying how);

/* watching over (healthcommands.cpp) */
int status(const Request &request);
int limits(const Request &request);
int check(const Request &request);
int metrics(const Request &request);
int watch(const Request &request, unsigned most);

/* Prints what may stand in place of the last of the words that were typed behind `quilctl`
 * (completion.cpp).  `commands` are those that there are. */
int complete(const Request &request, const std::vector<std::string> &commands,
             const std::vector<std::string> &typed);

/* The whole program: reads the arguments and carries out the command. */
int run(int argc, char **argv);

} // namespace cli

#endif
