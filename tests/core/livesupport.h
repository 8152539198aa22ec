/* The model's tests against the node software itself, run inside the test: a domain whose nodes
 * answer the program's verbs, with answers that a test may spoil. */
#ifndef LIVESUPPORT_H
#define LIVESUPPORT_H

#include <gtest/gtest.h>

/* Before the toolkit's headers, whose macros spoil names of the node software. */
#include "domainconfig.h"
#include "node_support.h"

#include "checkedmodel.h"
#include "globals.h"
#include "hooks.h"
#include "scriptednof.h"
#include "vgadsadd.h"
#include "vgadsbld.h"
#include "vgadsdel.h"
#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

constexpr NB_ULONG file_targets = 100; /* and the file's number */
constexpr NB_ULONG node_targets = 200; /* and the node's place in the domain's text */
constexpr NB_ULONG load_targets = 300;
constexpr NB_ULONG next_targets = 1000; /* no target is given out twice */

/* A domain of the node software without its processes: time stands still. */
class LIVE_DOMAIN {
public:
    explicit LIVE_DOMAIN(const std::string &text_file)
        : text_(node::read_domain_file(text_file)), timers_(clock_) {
        EXPECT_TRUE(text_.errors.empty());
        std::string why;
        EXPECT_TRUE(store_.open(folder_.file("domain.db"), why)) << why;
        domain_ = std::make_unique<node::Domain>(text_, store_, timers_, clock_);
        EXPECT_TRUE(domain_->load(why)) << why;
        for (const node::TextNode &node : text_.nodes) {
            nodes_.push_back(std::make_unique<NODE>(*this, node));
        }
        pass(5000);
    }

    /* Completes a verb's block as its target would. */
    NB_VOID answer(const ISSUED_VERB &verb) {
        NAP_VCB &vcb = *verb.vcb;
        switch (vcb.opcode) {
        case NAP_OPEN_FILE: {
            auto &open = reinterpret_cast<NAP_OPEN_FILE_VERB &>(vcb);
            open.target_handle =
                next_targets * ++opened_ + (open.file == NAP_TP_LOAD_FILE
                                                ? load_targets + find(open.node_name)
                                                : file_targets + open.file);
            break;
        }
        case NAP_CONNECT_NODE: {
            auto &connect = reinterpret_cast<NAP_CONNECT_NODE_VERB &>(vcb);
            connect.target_handle =
                next_targets * ++opened_ + node_targets + find(connect.node_name);
            break;
        }
        case NAP_REGISTER_INDICATION_SINK:
        case NAP_SET_PROCESSING_MODE:
        case NAP_DISCONNECT_NODE:
        case NAP_CLOSE_FILE:
            break;
        default:
            execute(verb);
        }
    }

    /* Carries out another administrator's verb; the block comes back completed. */
    NB_VOID execute(NB_ULONG target, std::vector<NB_UCHAR> &block) {
        node::Answer answer;
        std::string changed;
        if (target % next_targets < node_targets) {
            domain_->execute(block.data(), block.size(), answer, changed);
        } else {
            nodes_.at(target % 100)->engine.execute(block.data(), block.size(), answer);
        }
        block = answer.block;
    }

    /* Calls visit(name of the node, indication) for what the nodes have said since the last call.
     */
    template <class Visit> NB_VOID take_indications(Visit visit) {
        for (const auto &node : nodes_) {
            for (const NAP_RESOURCE_INDICATION &one : std::exchange(node->heard.all, {})) {
                visit(node->name, one);
            }
        }
    }

    NB_VOID pass(NB_ULONG ms) {
        for (; ms > 0; ms--) {
            clock_.advance(1);
            timers_.run_due();
        }
        tell_domain();
    }

    const std::string &name_of(size_t node) const { return nodes_.at(node)->name; }
    size_t count_nodes() const { return nodes_.size(); }

    /* Calls `visit` for every row that the stores of domain and nodes hold of a class. */
    template <class Visit> NB_VOID for_each_stored(Visit visit) {
        const auto visit_all = [&visit](node::Store &store, const node::Engine *fills) {
            for (NB_UCHAR id = 0; id < node::CLASS_COUNT; id++) {
                const node::ClassRow &row = node::class_row(static_cast<node::ClassId>(id));
                EXPECT_TRUE(store.read(row, [&](node::StoreRow &&stored) {
                    if (fills != nullptr && row.hooks.fill != nullptr) {
                        row.hooks.fill(*fills, stored.record.get());
                    }
                    visit(row, stored.record.get());
                }));
            }
        };
        visit_all(store_, nullptr);
        for (const auto &node : nodes_) {
            visit_all(node->store, &node->engine);
        }
    }

private:
    /* What the nodes are in, as they say whenever it changes. */
    NB_VOID tell_domain() {
        for (const auto &node : nodes_) {
            domain_->update(node->name, node->engine.node_record().info);
        }
    }

    struct NODE {
        NODE(LIVE_DOMAIN &domain, const node::TextNode &text)
            : name(text.name), engine(&store, domain.timers_, domain.clock_, heard) {
            std::string why;
            EXPECT_TRUE(store.open(domain.folder_.file(name + ".db"), why)) << why;
            EXPECT_TRUE(engine.load_text(text, domain.text_));
            engine.begin();
        }
        std::string name;
        node::Store store;
        node_test::Recorder heard;
        node::Engine engine;
    };

    NB_ULONG find(const NB_UCHAR *name) const {
        const std::string text(reinterpret_cast<const NB_CHAR *>(name));
        const auto found = std::find_if(nodes_.begin(), nodes_.end(),
                                        [&text](const auto &node) { return node->name == text; });
        EXPECT_NE(found, nodes_.end()) << text;
        return static_cast<NB_ULONG>(found - nodes_.begin());
    }

    NB_VOID execute(const ISSUED_VERB &verb) {
        const NAP_VERB &row = *nap_find_verb(verb.vcb->opcode);
        node::Answer answer;
        std::string changed;
        if (verb.target % next_targets < node_targets) {
            domain_->execute(verb.vcb, row.block_size, answer, changed);
        } else {
            nodes_.at(verb.target % 100)->engine.execute(verb.vcb, row.block_size, answer);
            tell_domain();
        }
        NB_VOID *buffer = row.kind == NAP_KIND_LIST ? vga_buf_ptr(verb.vcb) : nullptr;
        memcpy(verb.vcb, answer.block.data(), answer.block.size());
        if (buffer != nullptr) {
            vga_set_buf_ptr(verb.vcb, buffer);
            std::copy(answer.data.begin(), answer.data.end(), static_cast<NB_UCHAR *>(buffer));
        }
    }

    node::DomainText text_;
    node_test::Folder folder_;
    node::ManualClock clock_;
    node::TimerQueue timers_;
    node::Store store_;
    std::unique_ptr<node::Domain> domain_;
    std::vector<std::unique_ptr<NODE>> nodes_;
    NB_ULONG opened_ = 0;
};

/* A model that is built from a sample domain. */
class LIVE_MODEL {
protected:
    NB_VOID open(const std::string &sample) {
        scripted_nof.reset();
        gvga_exit_code = 0;
        gvga_read_only = 0;
        gvga_hooks = {};
        gvga_querybuf_size = 32768;
        nba_pd_set_log(nullptr, NB_PD_NONE);
        domain = std::make_unique<LIVE_DOMAIN>(
            sample.starts_with("/") ? sample : SAMPLE_DOMAINS "/" + sample + ".domain");
        begin();
    }
    static NB_VOID close() {
        end();
        gvga_querybuf_size = 32768;
        gvga_exit_code = 0;
    }
    static NB_VOID begin() {
        vga_init_verb_queues();
        gvga_system = vga_init_vga_system();
    }
    static NB_VOID end() {
        check_model();
        vga_empty_verb_queues();
        vga_destroy_data_structures();
    }

    NB_VOID answer(size_t index) {
        const ISSUED_VERB verb = scripted_nof.in_flight[index];
        domain->answer(verb);
        asked.push_back(verb.vcb->opcode);
        if (spoil) {
            spoil(verb);
        }
        scripted_nof.complete(index, verb.vcb->primary_rc, verb.vcb->secondary_rc);
    }

    /* Completes what is in flight, and what follows from it, in an order that the seed decides. */
    NB_VOID answer_all(unsigned seed) {
        std::mt19937 random(seed);
        while (!scripted_nof.in_flight.empty() && gvga_exit_code == 0) {
            answer(random() % scripted_nof.in_flight.size());
        }
    }
    NB_VOID run(unsigned seed) {
        answer_all(seed);
        EXPECT_EQ(gvga_exit_code, 0);
    }
    NB_VOID build(unsigned seed = 1) {
        vga_start_build_system();
        run(seed);
        EXPECT_TRUE(vga_check_system_startup(nullptr));
        check_model();
    }

    std::unique_ptr<LIVE_DOMAIN> domain;
    std::function<NB_VOID(const ISSUED_VERB &)> spoil; /* changes an answer */
    std::vector<NB_USHORT> asked;                      /* opcodes, as they were answered */
};

#endif
