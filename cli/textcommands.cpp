/* Commands with domain texts: export, diff and apply. */
#include "plan.h"

#include "fieldtext.h"
#include "nofverbs.h"

#include <algorithm>
#include <cstdio>

namespace cli {

using records::Schema;
using records::Scope;
using records::Settings;

namespace {

bool is_wanted(const std::vector<std::string> &of, const char *name) {
    return of.empty() || std::find(of.begin(), of.end(), name) != of.end();
}

/* The settings that a text may have, and resources, each class behind those that it refers to. */
void export_home(const Request &request, const std::string &node,
                 const std::vector<std::string> &of) {
    const bool of_domain = node.empty();
    const Request in = {request.session, node, request.form};
    const Home home = home_of(in, of_domain ? records::user : records::ls);
    for (const Settings &row : records::settings) {
        if (row.of_domain != of_domain || !is_wanted(of, row.name)) {
            continue;
        }
        Bytes block(row.block_size);
        records::put_number(block.data(), 2, row.query);
        const Codes codes = request.session.issue(home.target, block);
        if (codes.primary == NAP_NOT_SUPPORTED) {
            continue;
        }
        expect(std::string("show ") + row.name, row.query, codes);
        const std::string section = section_of(row, block.data(), false);
        const std::string fields = section.substr(section.find('\n') + 1);
        if (std::string(row.name) == "node") {
            fputs(fields.c_str(), stdout); /* they stand behind [node NAME] */
        } else if (!fields.empty()) {
            printf("\n%s", section.c_str());
        }
    }
    for (const Schema *schema : classes()) {
        if ((schema->scope == Scope::Domain) != of_domain || schema->define == 0 ||
            schema->untold || !is_wanted(of, schema->name)) {
            continue;
        }
        const Home kept = home_of(in, *schema);
        for_entries(in, kept, *schema, {}, [schema](const NB_UCHAR *entry) {
            if (is_defined(*schema, entry)) {
                printf("\n%s", section_of(*schema, entry, false).c_str());
            }
        });
    }
}

const char *server_word(NB_ULONG flags) {
    for (const records::FieldWord &word : records::server_words) {
        if (word.value == flags) {
            return word.text;
        }
    }
    return "none";
}

} // namespace

int export_text(const Request &request, const std::vector<std::string> &of) {
    std::vector<NAP_NODE_ALL_DATA> nodes;
    for (const std::string &name : of) {
        if (records::settings_by_name(name) == nullptr) {
            class_named(name);
        }
    }
    expect("the nodes of the domain", NAP_QUERY_NODE_ALL, request.session.nodes(nodes));
    std::erase_if(nodes, [&request](const NAP_NODE_ALL_DATA &node) {
        return !request.node.empty() &&
               records::local_text(node.node_name, sizeof node.node_name) != request.node;
    });
    if (nodes.empty()) {
        throw Failure(NOT_THERE, "there is no node " + request.node);
    }
    printf(
        "# Passwords are not shown: what is there keeps its own.\n[domain]\nclient_server = %s\n",
        nodes.size() > 1 ? "yes" : "no");
    Home home;
    if (request.node.empty() && request.session.reach("", false, home).ok()) {
        export_home(request, "", of);
    }
    for (const NAP_NODE_ALL_DATA &node : nodes) {
        const std::string name = records::local_text(node.node_name, sizeof node.node_name);
        printf("\n[node %s]\nserver = %s\n", name.c_str(), server_word(node.info.server_flags));
        export_home(request, name, of);
    }
    return DONE;
}

namespace {

void print_plan(const std::vector<Step> &steps) {
    for (const Step &step : steps) {
        const std::string state = state_of(step);
        printf("%s%s\n%s", words_of(step).c_str(),
               state.empty() ? ""
                             : (", which is " + state + " and has to be stopped first").c_str(),
               lines_of(step).c_str());
    }
}

} // namespace

int diff(const Request &request, const std::string &file, bool deletes) {
    const std::vector<Step> steps = plan_of(request, read_text(file), {deletes, false});
    print_plan(steps);
    return steps.empty() ? DONE : REFUSED;
}

/* A refusal holds up nobody else: what depends on it is refused, too, and all of it is told.  What
 * was done is not done again the next time, since it is as the text says then. */
int apply(const Request &request, const std::string &file, Applying how) {
    const std::vector<Step> steps = plan_of(request, read_text(file), {how.deletes, how.passwords});
    size_t done = 0;
    int worst = DONE;
    if (steps.empty()) {
        puts("nothing to do");
        return DONE;
    }
    if (how.dry_run) {
        size_t counts[5] = {};
        for (const Step &step : steps) {
            counts[step.kind]++;
        }
        print_plan(steps);
        printf("%zu to define, %zu to change, %zu to delete\n", counts[Step::Make],
               counts[Step::Change] + counts[Step::Set] + counts[Step::Serve],
               counts[Step::Delete]);
        return DONE;
    }
    for (const Step &step : steps) {
        try {
            carry_out(request, step, how.stops);
            done++;
        } catch (const Failure &failure) {
            fprintf(stderr, "quilctl: %s\n", failure.what());
            worst = worst == DONE ? failure.status : worst;
            if (failure.status == UNREACHABLE) {
                break;
            }
        }
    }
    printf("%zu of %zu done", done, steps.size());
    puts(done == steps.size() ? ""
                              : "; mend what was refused and apply the text again: what is done "
                                "already is left alone");
    return worst;
}

} // namespace cli
