/* The reader of help volumes on any text, and what is made of one that it takes: every topic is
 * laid out and searched. */
#include "fuzzinput.h"

#include "layout.h"
#include "search.h"

namespace {

class Made_Up : public help::Metrics {
public:
    int width(help::Font, std::string_view text) const override {
        return 7 * static_cast<int>(text.size());
    }
    int ascent(help::Font) const override { return 9; }
    int descent(help::Font) const override { return 3; }
};

NB_VOID lay_out_all(const help::Volume &volume, int width) {
    for (const help::Topic &topic : volume.topics) {
        const help::Page page = help::lay_out(topic, width, Made_Up());
        for (const help::Piece &piece : page.pieces) {
            MUST(piece.top >= 0 && piece.top + piece.height <= page.height);
            MUST(piece.link < static_cast<int>(page.links.size()));
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FUZZ_INPUT input(data, size);
    const int width = input.take<uint8_t>() * 4;
    const help::Loaded loaded = help::parse_volume(input.rest());
    MUST((loaded.volume == nullptr) != loaded.fault.empty());
    if (loaded.volume != nullptr) {
        for (const auto *list : {&loaded.volume->contents, &loaded.volume->index}) {
            for (const help::Entry &entry : *list) {
                MUST(loaded.volume->find(entry.topic) != nullptr);
            }
        }
        lay_out_all(*loaded.volume, width);
        const help::Topic &first = loaded.volume->topics.front();
        const bool has_word = !help::query_words(first.id).empty();
        MUST(help::search(*loaded.volume, first.id).empty() != has_word);
    }
    return 0;
}
