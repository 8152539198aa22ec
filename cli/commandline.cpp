/* The arguments of quilctl. */
#include "commands.h"

#include "globals.h"
#include "manual.h"
#include "messages.h"

#include <CLI/CLI.hpp>
#include <climits>
#include <clocale>
#include <cstdio>
#include <optional>

namespace cli {

namespace {

struct Arguments {
    std::string node;
    bool json = false;
    bool names = false;
    std::string of;
    std::vector<std::string> words;
    std::vector<std::string> fields;
    unsigned most = UINT_MAX;
    bool immediately = false;
    bool deletes = false;
    bool stops = false;
    bool dry_run = false;
    bool passwords = false;
};

using Action = std::function<int(const Request &request, const Arguments &given)>;

/* Words begin where the class is named: a field's value may look like an option there. */
CLI::App *add(CLI::App &app, const char *name, const char *text, std::optional<Action> &chosen,
              Action action) {
    CLI::App *command = app.add_subcommand(name, text);
    command->callback([&chosen, action = std::move(action)] { chosen = action; });
    command->fallthrough();
    return command;
}

void add_commands(CLI::App &app, Arguments &given, std::optional<Action> &chosen) {
    constexpr const char *NAME = "the parts of its name, as `quilctl classes` has them";
    constexpr const char *NAMES = "the parts of its name; - reads names from standard input";
    constexpr const char *FIELDS = "its name, then FIELD=VALUE; without a name: settings";

    CLI::App *command = add(
        app, "classes", "the classes there are, or the fields of one", chosen,
        [](const Request &request, const Arguments &all) { return list_classes(request, all.of); });
    command->add_option("class", given.of, "whose fields are shown");

    command = add(app, "list", "the resources of a class", chosen,
                  [](const Request &request, const Arguments &all) {
                      return list(request, all.of, all.words, all.fields);
                  });
    command->add_option("class", given.of)->required();
    command->add_option("owner", given.words, "of which owner, where they have some");
    command->add_option("--fields", given.fields, "which ones, with commas")->delimiter(',');

    command = add(app, "show", "a resource, or settings, as a domain text has it", chosen,
                  [](const Request &request, const Arguments &all) {
                      return show(request, all.of, all.words);
                  });
    command->add_option("class", given.of)->required();
    command->add_option("name", given.words, NAME);

    const struct {
        const char *name, *text, *words;
        Action action;
    } changing[] = {
        {"define", "make a resource", FIELDS,
         [](const Request &request, const Arguments &all) {
             return define(request, all.of, all.words);
         }},
        {"change", "change fields of a resource, or settings", FIELDS,
         [](const Request &request, const Arguments &all) {
             return change(request, all.of, all.words);
         }},
        {"delete", "delete resources", NAMES,
         [](const Request &request, const Arguments &all) {
             return remove(request, all.of, all.words);
         }},
        {"start", "start resources, or a node", NAMES,
         [](const Request &request, const Arguments &all) {
             return start(request, all.of, all.words);
         }},
        {"stop", "stop resources, or a node", NAMES,
         [](const Request &request, const Arguments &all) {
             return stop(request, all.of, all.words, all.immediately);
         }},
    };
    for (const auto &one : changing) {
        command = add(app, one.name, one.text, chosen, one.action);
        command->add_option("class", given.of)->required();
        command->add_option("words", given.words, one.words);
    }
    command->add_flag("--immediate", given.immediately, "end its sessions at once");

    command = add(app, "export", "the domain, or some classes of it, as a text", chosen,
                  [](const Request &request, const Arguments &all) {
                      return export_text(request, all.words);
                  });
    command->add_option("classes", given.words, "classes and settings; none for all");
    command =
        add(app, "diff", "what a text says that is not so; ends with 1 when there is something",
            chosen, [](const Request &request, const Arguments &all) {
                return diff(request, all.of, all.deletes);
            });
    command->add_option("file", given.of, "- for standard input")->required();
    command->add_flag("--delete", given.deletes, "what the text does not have is to go");
    command =
        add(app, "apply", "make the domain as a text says", chosen,
            [](const Request &request, const Arguments &all) {
                return apply(request, all.of, {all.deletes, all.stops, all.dry_run, all.passwords});
            });
    command->add_option("file", given.of, "- for standard input")->required();
    command->add_flag("--delete", given.deletes,
                      "delete what the text does not have, of the classes that it has sections of");
    command->add_flag("--stop", given.stops,
                      "stop what is active and in the way, and start again what was changed");
    command->add_flag("--passwords", given.passwords,
                      "set the passwords that the text says, which cannot be compared");
    command->add_flag("--dry-run", given.dry_run, "show what would be done, and do nothing");

    add(app, "status", "the nodes and their states", chosen,
        [](const Request &request, const Arguments &) { return status(request); });
    add(app, "limits", "what nodes may have, and what is used", chosen,
        [](const Request &request, const Arguments &) { return limits(request); });
    add(app, "check", "one line for monitoring; ends with 0 well, 1 warning, 2 critical, 3 unknown",
        chosen, [](const Request &request, const Arguments &) { return check(request); });
    add(app, "metrics", "numbers as OpenMetrics text", chosen,
        [](const Request &request, const Arguments &) { return metrics(request); });
    command =
        add(app, "watch", "what happens, as it happens", chosen,
            [](const Request &request, const Arguments &all) { return watch(request, all.most); });
    command->add_option("--count", given.most, "end after so many lines");
    command = add(
        app, "history", "who changed what, newest first", chosen,
        [](const Request &request, const Arguments &all) { return history(request, all.most); });
    command->add_option("--count", given.most, "so many")->check(CLI::PositiveNumber);
}

} // namespace

int run(int argc, char **argv) {
    Arguments given;
    std::optional<Action> chosen;
    CLI::App app("Administers SNA nodes from a shell.", "quilctl");
    setlocale(LC_ALL, "");
    app.add_option("--node", given.node, "which node; without it all are listed");
    app.add_flag("--json", given.json, "print JSON");
    app.add_flag("--names", given.names, "print names alone, one a line");
    app.set_version_flag("--version", gvga_version);
    app.require_subcommand(1);
    app.footer(
        "Ends with 0 done, 1 refused, 2 wrong arguments, 3 not reached, 4 no such resource, 5 no "
        "right to change.");
    add_commands(app, given, chosen);
    add(app, "manual", "the manual page, for the formatter", chosen,
        [&app](const Request &, const Arguments &) { return print_manual(app); })
        ->group("");
    add(app, "complete", "what may follow what was typed, for shells", chosen,
        [&app](const Request &request, const Arguments &all) {
            std::vector<std::string> commands;
            for (const CLI::App *one : app.get_subcommands({})) {
                if (!one->get_group().empty()) {
                    commands.push_back(one->get_name());
                }
            }
            return complete(request, commands, all.words);
        })
        ->group("")
        ->add_option("words", given.words);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? DONE : BAD_USAGE;
    }
    if (vga_load_messages() == 0) {
        gvga_exit_code = 0; /* reasons are told by their codes, then */
    }
    int result = DONE;
    try {
        Session session;
        const Form form = given.json ? Form::Json : given.names ? Form::Names : Form::Table;
        result = (*chosen)({session, given.node, form}, given);
    } catch (const Failure &failure) {
        fflush(stdout);
        fprintf(stderr, "quilctl: %s\n", failure.what());
        result = failure.status;
    }
    vga_unload_messages();
    return result;
}

} // namespace cli
