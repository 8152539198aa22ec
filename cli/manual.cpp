/* The manual page, made of what the commands and the schemas say. */
#include "manual.h"

#include "words.h"

#include <cstdio>

namespace cli {

using records::FieldRow;
using records::Schema;

namespace {

/* Text as the formatter wants it. */
std::string roff(const std::string &text) {
    std::string line;
    for (const char letter : text) {
        line += letter == '-' ? "\\-" : letter == '\\' ? "\\e" : std::string(1, letter);
    }
    return line.compare(0, 1, ".") == 0 || line.compare(0, 1, "'") == 0 ? "\\&" + line : line;
}

void print_options(const CLI::App &app) {
    for (const CLI::Option *option : app.get_options()) {
        const std::string name = option->get_name(false, true);
        const bool says_nothing = option->get_description().empty() || name == "-h,--help";
        if (says_nothing && app.get_parent() != nullptr) {
            continue;
        }
        printf(".TP\n\\fB%s\\fR\n%s\n", roff(name).c_str(),
               roff(option->get_description()).c_str());
    }
}

std::string values_of(const FieldRow &field) {
    std::string values;
    for (const records::FieldWord &word : field.words) {
        values += (values.empty() ? "" : ", ") + std::string(word.text);
    }
    return field.kind == records::FieldKind::Flag ? "yes, no"
           : field.kind == records::FieldKind::Number
               ? std::to_string(field.low) + " to " + std::to_string(field.high)
               : values;
}

void print_class(const Schema &schema) {
    std::string name;
    std::string fields;
    for (const FieldRow &field : schema.fields) {
        if (field.has(records::FIELD_KEY)) {
            name += std::string(" ") + field.name;
            continue;
        }
        const std::string values = values_of(field);
        fields += (fields.empty() ? "" : "; ") + std::string(field.name) +
                  (values.empty() ? "" : " (" + values + ")");
    }
    printf(".TP\n\\fB%s\\fI%s\\fR\n%s\n", schema.name, roff(name).c_str(),
           fields.empty() ? "(nothing but its name)" : roff(fields).c_str());
}

} // namespace

int print_manual(const CLI::App &app) {
    puts(".TH QUILCTL 1\n.SH NAME\nquilctl \\- administer SNA nodes from a shell\n.SH SYNOPSIS\n"
         ".B quilctl\n[\\fB\\-\\-node\\fR \\fINODE\\fR] [\\fB\\-\\-json\\fR|\\fB\\-\\-names\\fR] "
         "\\fICOMMAND\\fR [\\fIARGUMENT\\fR ...]\n.SH DESCRIPTION\n"
         "Does for scripts what the windows of\n.BR quiladmin (1)\ndo, on the node software that "
         "runs "
         "on this machine.  Classes, names, fields and values are those of domain texts; a blank "
         "part "
         "of a name is \\-.\n.SH OPTIONS");
    print_options(app);
    puts(".SH COMMANDS");
    for (const CLI::App *command : app.get_subcommands({})) {
        if (command->get_group().empty()) {
            continue;
        }
        printf(".SS %s\n%s.\n", command->get_name().c_str(),
               roff(command->get_description()).c_str());
        print_options(*command);
    }
    puts(".SH CLASSES\nWith the parts of a name, and the fields that can be defined.");
    for (const Schema *schema : classes()) {
        print_class(*schema);
    }
    puts(".SH \"EXIT STATUS\"\n0 done; 1 refused, or \\fBdiff\\fR found something; 2 wrong "
         "arguments; 3 the "
         "node software or a node cannot be reached; 4 no such resource; 5 no right to change.  "
         "\\fBcheck\\fR ends as monitoring wants it: 0 well, 1 warning, 2 critical, 3 unknown.\n"
         ".SH TEXTS\n.B export\nshows no passwords, and applying a text without them leaves those "
         "that there are. "
         "Those that a text says are set with a new resource, with one that is changed, and with\n"
         ".BR \\-\\-passwords .\n"
         "Nobody can compare them.\nWho is a server of the domain is said by\n.B server\n"
         "of a node; which of them is the master is not for a text to say.\n"
         ".SH ENVIRONMENT\n.TP\n.B SNA_PREFIX\nwhere the node software is installed, in place of "
         "/opt/corvid/sna.\n.TP\n.B SNA_SOCKET\nits socket, in place of var/sna.sock there.\n"
         ".SH EXAMPLES\n.nf\n"
         "quilctl \\-\\-names list lu03 HOSTPU | quilctl delete lu03 \\-\n"
         "quilctl export > all; vi all; quilctl apply \\-\\-dry\\-run all\n.fi\n"
         ".SH \"SEE ALSO\"\n.BR quiladmin (1),\n.BR snanode (8)");
    return DONE;
}

} // namespace cli
