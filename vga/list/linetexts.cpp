#include "linetexts.h"
#include "linelayout.h"
#include "linepattern.h"
#include <cstring>

namespace {

/* A text stands behind its length in a block.  A line names its text by the number of steps from
 * the beginning of all blocks, plus 1. */
using LENGTH = NB_USHORT;

constexpr size_t step = 8;
constexpr size_t block_steps = 1 << 17;

} // namespace

NB_ULONG VGA_LINE_TEXTS::keep(std::string_view text) {
    const size_t size = (sizeof(LENGTH) + text.size() + step - 1) / step;
    if (blocks.empty() || used + size > block_steps) {
        blocks.push_back(std::make_unique<NB_CHAR[]>(block_steps * step));
        used = 0;
    }
    NB_CHAR *place = blocks.back().get() + used * step;
    const auto length = static_cast<LENGTH>(text.size());
    memcpy(place, &length, sizeof(length));
    memcpy(place + sizeof(length), text.data(), text.size());
    const size_t at = (blocks.size() - 1) * block_steps + used;
    used += size;
    return static_cast<NB_ULONG>(at + 1);
}

std::string_view VGA_LINE_TEXTS::of(VGA_VIEWER_ITEM *item) {
    if (item->text_at == 0) {
        NB_CHAR line[VGA_VIEWER_TEXT_BUFFER + 1];
        write(item, line);
        item->text_at = keep(vga_fold_line(line));
    }
    const size_t at = item->text_at - 1;
    const NB_CHAR *place = blocks[at / block_steps].get() + at % block_steps * step;
    LENGTH length;
    memcpy(&length, place, sizeof(length));
    return {place + sizeof(length), length};
}

NB_VOID VGA_LINE_TEXTS::drop(VGA_VIEWER_ROOT *root) {
    if (blocks.empty()) {
        return;
    }
    vga_viewer_sweep(
        root, [](VGA_VIEWER_ITEM *item, NB_VOID *) { item->text_at = 0; }, nullptr);
    blocks.clear();
}
