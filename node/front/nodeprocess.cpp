#include "nodeprocess.h"

#include "engine.h"
#include "generate.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "peer.h"
#include "storecopy.h"
#include "storefiles.h"

#include <cstdio>
#include <cstring>
#include <set>
#include <vector>

namespace node {

namespace {

constexpr size_t FULL = 1024 * 1024; /* bytes that wait for the front process */

/* Sends what the engine reports. */
class FrontLink final : public EngineListener {
public:
    FrontLink(Loop &loop, int fd, std::function<void()> ready)
        : peer_(loop, fd, std::move(ready)) {}

    /* Nobody hears what nobody registered for. */
    void indicate(const NB_VOID *block, size_t length) override {
        auto header = nap_copy<NAP_VCB>(block);
        if (header.opcode != NAP_QUERY_NODE && wanted_.count(header.opcode) == 0) {
            return;
        }
        std::vector<NB_UCHAR> frame = make_frame(NOF_FRAME_INDICATION, 0, 0, block, length);
        if (holding_ && header.opcode != NAP_QUERY_NODE) {
            held_.push_back(std::move(frame));
        } else {
            peer_.out().answer(std::move(frame));
        }
        flush_soon_ = true;
    }

    /* A verb is carried out: what becomes of resources is told behind its answer, so that who
     * hears of a new one hears first what it is. */
    void hold() { holding_ = true; }
    void answer(std::vector<NB_UCHAR> frame) {
        peer_.out().answer(std::move(frame));
        for (std::vector<NB_UCHAR> &one : held_) {
            peer_.out().answer(std::move(one));
        }
        held_.clear();
        holding_ = false;
        flush_soon_ = true;
    }

    void link_changed(const NB_VOID *block, size_t length) override {
        peer_.out().answer(make_frame(NOF_FRAME_INDICATION, FOR_OTHER_NODES, 0, block, length));
        flush_soon_ = true;
    }

    /* The front process takes what is sent more slowly than it comes. */
    bool is_full() { return peer_.out().bytes() > FULL; }

    Peer &peer() { return peer_; }
    void want(NB_USHORT indication) { wanted_.insert(indication); }

    void flush() {
        if (flush_soon_) {
            flush_soon_ = false;
            peer_.flush();
        }
    }

private:
    Peer peer_;
    std::set<NB_USHORT> wanted_;
    std::vector<std::vector<NB_UCHAR>> held_;
    bool holding_ = false;
    bool flush_soon_ = false;
};

class NodeProcess {
public:
    explicit NodeProcess(const ServeOptions &options)
        : options_(options), timers_(clock_), loop_(timers_),
          copy_(store_, options.state_folder, NODE_STORE + options.node + ".db", timers_, clock_),
          link_(loop_, options.fd, [this] { handle(); }), engine_(&store_, timers_, clock_, link_) {
    }

    bool load();
    int run();

private:
    bool open_store(std::string &why);
    bool load_kept(std::string &why);
    bool load_first(std::string &why);
    bool generate(std::string &why);
    void handle();
    void handle_frame(const Frame &frame);
    void handle_news(const Frame &frame);

    ServeOptions options_;
    SystemClock clock_;
    TimerQueue timers_;
    Loop loop_;
    Store store_;
    DailyCopy copy_;
    FrontLink link_;
    Engine engine_;
};

/* A store that was lost must not look like a first start: the node would have what its text says,
 * and what administrators changed would be gone without a word. */
bool NodeProcess::open_store(std::string &why) {
    const std::string file = store_file(options_.state_folder, options_.node);
    const auto is_lost = [this, &file, &why](bool lost) {
        lost = lost && options_.known && !options_.fresh;
        if (lost) {
            why = file + " is missing or empty, but the node was loaded before; take one back "
                         "with --restore, or start with --fresh to begin the domain anew";
        }
        return lost;
    };
    std::string loaded;
    if (is_lost(is_empty_file(file)) || !store_.open(file, why)) {
        return false;
    }
    if (options_.fresh) {
        store_.forget();
    }
    if (!store_.belongs_to("node " + options_.node + " of " + options_.domain, why)) {
        return false;
    }
    if (!store_.fact(FACT_LOADED, loaded)) {
        why = store_.unreadable();
        return false;
    }
    return !is_lost(loaded != "1");
}

/* What is around the node is not kept. */
bool NodeProcess::load_kept(std::string &why) {
    const bool loaded = engine_.load_store(why);
    if (loaded) {
        engine_.live_in(world_of(read_domain_file(options_.domain_file), options_.node));
    }
    return loaded;
}

bool NodeProcess::load_first(std::string &why) {
    DomainText domain = read_domain_file(options_.domain_file);
    const TextNode *text = domain.find(options_.node);
    if (domain.errors.empty() && text == nullptr) {
        why = options_.domain_file + " has no such node any more";
    }
    if (domain.errors.empty() && text != nullptr && engine_.load_text(*text, domain)) {
        return true;
    }
    for (const std::string &error : domain.errors) {
        why += (why.empty() ? "" : "\nsnanode: ") + error;
    }
    return false;
}

bool NodeProcess::load() {
    std::string why;
    const bool loaded =
        open_store(why) &&
        (!options_.generate.empty() ? generate(why)
                                    : load_kept(why) || (why.empty() && load_first(why)));
    if (!loaded) {
        fprintf(stderr, "snanode: node %s: %s\n", options_.node.c_str(), why.c_str());
    }
    return loaded;
}

bool NodeProcess::generate(std::string &why) {
    Generated domain;
    return parse_generated(options_.generate, domain, why) &&
           engine_.load_generated(domain, generated_index(domain, options_.node), why);
}

int NodeProcess::run() {
    if (options_.still) {
        engine_.keep_still();
    }
    engine_.keep_traces_in(options_.state_folder + "/traces-" + options_.node);
    engine_.announce();
    engine_.begin();
    copy_.begin();
    loop_.each_round([this] { link_.flush(); });
    loop_.hold_timers_while([this] { return link_.is_full(); });
    return loop_.run();
}

void NodeProcess::handle_news(const Frame &frame) {
    const NB_USHORT opcode = block_opcode(frame.block);
    if (opcode == NAP_SERVER_INDICATION &&
        frame.block.size() == sizeof(NAP_SERVER_INDICATION_VERB)) {
        auto news = nap_copy<NAP_SERVER_INDICATION_VERB>(frame.block.data());
        engine_.set_server_flags(news.server_flags);
    } else if (opcode == NAP_LS_INDICATION && frame.block.size() == sizeof(LinkNews)) {
        auto news = nap_copy<LinkNews>(frame.block.data());
        engine_.link_news(news);
    } else if (opcode == NAP_REGISTER_INDICATION_SINK &&
               frame.block.size() == sizeof(NAP_REGISTER_SINK_VERB)) {
        auto news = nap_copy<NAP_REGISTER_SINK_VERB>(frame.block.data());
        link_.want(news.indication);
    } else if (opcode == NAP_QUERY_NODE && frame.block.size() == sizeof(NAP_QUERY_NODE_VERB)) {
        auto other = nap_copy<NAP_QUERY_NODE_VERB>(frame.block.data());
        const NB_ULONG state = other.info.node_state; /* a node that stops ends its links itself */
        engine_.partner_node(other.info.fq_cp_name,
                             state == NAP_NODE_ACTIVE || state == NAP_NODE_STOPPING);
    }
}

void NodeProcess::handle_frame(const Frame &frame) {
    if (frame.header.kind == NOF_FRAME_INDICATION && frame.header.correlator == SIGN_OF_LIFE) {
        link_.answer(make_frame(NOF_FRAME_INDICATION, SIGN_OF_LIFE, 0, frame.block.data(),
                                frame.block.size()));
        return;
    }
    if (frame.header.kind == NOF_FRAME_INDICATION) {
        handle_news(frame);
        return;
    }
    Answer answer;
    link_.hold();
    engine_.execute(frame.block.data(), frame.block.size(), answer);
    if (nap_find_verb(block_opcode(frame.block))->changes != 0) {
        answer.data.assign(answer.changes.begin(), answer.changes.end());
        answer.data.resize((answer.data.size() + 3) / 4 * 4); /* as frames have it */
    }
    link_.answer(make_frame(NOF_FRAME_ANSWER, frame.header.correlator,
                            answer.changed_nothing ? CHANGED_NOTHING : 0, answer.block.data(),
                            answer.block.size(), answer.data.data(), answer.data.size()));
}

void NodeProcess::handle() {
    Frame frame;
    FrameState state = FrameState::None;
    while ((state = link_.peer().next(frame)) == FrameState::Ready) {
        handle_frame(frame);
    }
    if (state == FrameState::Garbage || link_.peer().gone()) {
        loop_.stop(0);
    }
}

} // namespace

std::string store_file(const std::string &state_folder, const std::string &node) {
    return state_folder + "/" + NODE_STORE + node + ".db";
}

int serve_node(const ServeOptions &options) {
    NodeProcess process(options);
    return process.load() ? process.run() : 1;
}

} // namespace node
