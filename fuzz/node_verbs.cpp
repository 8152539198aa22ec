/* What administrators ask of a node, against all of it but the processes: verbs of every kind, most
 * of them almost right, on a node that has a bit of everything, while its time passes. */
#include "defineblock.h"
#include "engine.h"
#include "frames.h"
#include "fuzzinput.h"
#include "nofverbs.h"

#include <vector>

namespace {

class Deaf final : public node::EngineListener {
    void indicate(const NB_VOID *, size_t) override {}
};

const node::DomainText &sample() {
    static const node::DomainText text = node::read_domain_file(SAMPLE_DOMAIN);
    MUST(text.errors.empty());
    return text;
}

class Target {
public:
    Target() : timers_(clock_), engine_(nullptr, timers_, clock_, deaf_) {
        node::DomainText text = sample();
        MUST(engine_.load_text(text.nodes.at(0), text));
        engine_.begin();
    }

    void pass(uint64_t ms) {
        for (uint64_t left = ms; left > 0;) {
            const int next = timers_.next_ms();
            const uint64_t step =
                next < 0 ? left
                         : std::min(left, std::max<uint64_t>(1, static_cast<uint64_t>(next)));
            clock_.advance(step);
            timers_.run_due();
            left -= step;
        }
    }

    void act(FUZZ_INPUT &input) {
        const NAP_VERB &verb = gnap_verbs[input.take<NB_USHORT>() % NAP_VERB_COUNT];
        std::vector<NB_UCHAR> block(verb.block_size);
        fill(verb, input, block);
        const FUZZ_BLOCK exact(block.data(), block.size());
        node::Answer answer;
        engine_.execute(exact.get(), block.size(), answer);
        MUST(answer.block.size() == block.size());
        MUST(node::block_opcode(answer.block) == verb.opcode);
    }

    /* Every list can be walked to its end. */
    void list_all() {
        for (const NAP_VERB &verb : gnap_verbs) {
            if (verb.kind != NAP_KIND_LIST) {
                continue;
            }
            NAP_QUERY_LIST query = {};
            query.opcode = verb.opcode;
            query.buf_size = NOF_MAX_DATA;
            query.list_options = NAP_FIRST_IN_LIST | NAP_DETAIL;
            std::vector<NB_UCHAR> block(verb.block_size);
            memcpy(block.data(), &query, std::min(sizeof query, block.size()));
            node::Answer answer;
            engine_.execute(block.data(), block.size(), answer);
            size_t at = 0;
            while (at < answer.data.size()) {
                NB_USHORT length = 0;
                MUST(at + sizeof length <= answer.data.size());
                memcpy(&length, answer.data.data() + at, sizeof length);
                MUST(length >= sizeof length && at + length <= answer.data.size());
                at += length;
            }
        }
    }

private:
    /* A resource of some class, as the list has it, or null. */
    const node::Resource *some_resource(const node::ClassRow &row, unsigned number) const {
        const node::Resource *at = engine_.table(row.id).first();
        for (number %= 8; at != nullptr && number > 0; number--) {
            const node::Resource *next = node::ResourceTable::next(*at);
            at = next != nullptr ? next : at;
        }
        return at;
    }

    /* The verb as it would be right for a resource that is there, and then some bytes of it. */
    void fill(const NAP_VERB &verb, FUZZ_INPUT &input, std::vector<NB_UCHAR> &block) const {
        const node::ClassRow *row = node::class_by_verb(verb.opcode);
        const auto number = input.take<uint8_t>();
        const node::ClassRow &named =
            row != nullptr
                ? *row
                : node::class_row(static_cast<node::ClassId>(number % node::CLASS_COUNT));
        const node::Resource *like = some_resource(named, number);
        if (like != nullptr && verb.opcode == named.schema->define) {
            records::make_define_block(*named.schema, like->entry.get(), block.data());
        } else if (like != nullptr && block.size() >= sizeof(NAP_NAME_VERB)) {
            memcpy(block.data() + records::KEY_IN_BLOCK, like->entry.get() + records::KEY_OFFSET,
                   std::min(named.schema->key_size(), block.size() - records::KEY_IN_BLOCK));
        }
        for (auto left = input.take<uint8_t>() % 6; left > 0; left--) {
            const size_t at = sizeof(NAP_VCB) + input.take<NB_USHORT>() % block.size();
            const auto value = input.take<NB_UCHAR>();
            if (at < block.size()) {
                block[at] = value;
            }
        }
        NAP_VCB header = {};
        header.opcode = verb.opcode;
        memcpy(block.data(), &header, sizeof header);
    }

    node::ManualClock clock_;
    node::TimerQueue timers_;
    Deaf deaf_;
    node::Engine engine_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FUZZ_INPUT input(data, size);
    Target target;
    for (auto left = 1 + input.take<uint8_t>() % 32; left > 0; left--) {
        target.pass(input.take<uint8_t>() * 20u);
        target.act(input);
    }
    target.pass(60000);
    target.list_all();
    return 0;
}
