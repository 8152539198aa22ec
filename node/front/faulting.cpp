/* Doing what the fault script says. */
#include "front.h"

#include "nbbase.h"
#include "nbproblem.h"
#include "nofwire.h"

#include <csignal>
#include <cstdio>
#include <cstring>

namespace node {

void Front::read_faults() {
    std::string why;
    if (!options_.fault_file.empty() && !faults_.read(options_.fault_file, why)) {
        fprintf(stderr, "snanode: %s\n", why.c_str());
        nba_pd_print_problem(NB_PD_FAULTS, 1, "s", why.c_str());
        return;
    }
    begin_faults();
    for (const auto &client : clients_) {
        const NOF_FAULT none = {};
        if (client.second->leaving) {
            continue;
        }
        client.second->peer->out().answer(make_frame(NOF_FRAME_FAULT, 0, 0, &none, sizeof none));
        send_faults(*client.second);
    }
}

/* What a script does to nodes as soon as it is read. */
void Front::begin_faults() {
    faults_.for_now([this](const FaultRule &rule) {
        for (const auto &node : nodes_) {
            if (strcasecmp(node->name.c_str(), rule.node.c_str()) != 0 || node->process <= 0) {
                continue;
            }
            if (rule.kind == FaultKind::Die) {
                kill(node->process, SIGKILL);
            } else {
                hang_node(*node, rule.number);
            }
        }
    });
}

/* It goes on after that time, unless it is another process by then. */
void Front::hang_node(NodeProcess &node, NB_ULONG ms) {
    const pid_t process = node.process;
    NodeProcess *hung = &node;
    kill(process, SIGSTOP);
    if (ms != 0) {
        timers_.after(ms, [hung, process] {
            if (hung->process == process) {
                kill(process, SIGCONT);
            }
        });
    }
}

/* What the script wants of the library at the other end. */
void Front::send_faults(Client &client) {
    faults_.for_libraries([&client](const FaultRule &rule) {
        NOF_FAULT fault = {};
        fault.opcode = rule.opcode;
        fault.primary_rc = rule.result.primary;
        fault.secondary_rc = rule.result.secondary;
        fault.times = rule.times < 0 ? 0xFFFFFFFF : static_cast<NB_ULONG>(rule.times);
        client.peer->out().answer(make_frame(NOF_FRAME_FAULT, 0, 0, &fault, sizeof fault));
    });
}

void Front::handle_verb(Client &client, const Frame &frame) {
    const auto found = client.targets.find(frame.header.target);
    const NodeProcess *node = found == client.targets.end() ? nullptr : found->second.node;
    const Faults::Verdict verdict =
        faults_.judge(block_opcode(frame.block), node != nullptr ? node->name : "");
    client.in_flight++;
    if (verdict.delay_ms == 0) {
        apply_verdict(client, frame, verdict);
        return;
    }
    const uint64_t number = client.number;
    timers_.after(verdict.delay_ms, [this, number, frame, verdict] {
        Client *late = find_client(number);
        if (late != nullptr) {
            apply_verdict(*late, frame, verdict);
        }
    });
}

void Front::apply_verdict(Client &client, const Frame &frame, const Faults::Verdict &verdict) {
    const auto found = client.targets.find(frame.header.target);
    NodeProcess *node = found == client.targets.end() ? nullptr : found->second.node;
    if (verdict.stop) {
        shut_down();
    } else if (verdict.drop) {
        end_client(client, "the fault script says so");
    } else if (verdict.garbage) {
        std::vector<NB_UCHAR> bytes = make_frame(NOF_FRAME_ANSWER, frame.header.correlator, 0,
                                                 frame.block.data(), frame.block.size());
        put_number(bytes.data(), 4, 7);
        client.peer->out().answer(std::move(bytes));
    } else if (verdict.failure) {
        refuse(client, frame, *verdict.failure);
    } else if (!verdict.hang) {
        carry_out(client, frame);
        if (verdict.die && node != nullptr && node->peer != nullptr) {
            node->peer->flush();
            kill(node->process, SIGKILL);
        }
    }
}

} // namespace node
