#include "boxplace.h"
#include <algorithm>

namespace {

/* What window managers draw around a window, amply. */
constexpr NB_INT edge = 8, title = 26;

VGA_AREA with_frame(const VGA_AREA &window) {
    return {window.x - edge, window.y - title, window.width + 2 * edge,
            window.height + title + edge};
}

bool overlap(const VGA_AREA &one, const VGA_AREA &other) {
    return one.x < other.x + other.width && other.x < one.x + one.width &&
           one.y < other.y + other.height && other.y < one.y + one.height;
}

NB_INT inside(NB_INT at, NB_INT length, NB_INT room) {
    return std::max(std::min(at, room - length), 0);
}

VGA_AREA on_screen(VGA_AREA area, const VGA_AREA &screen) {
    area.x = inside(area.x, area.width, screen.width);
    area.y = inside(area.y, area.height, screen.height);
    return area;
}

} // namespace

VGA_AREA vga_place_beside(VGA_AREA box, const VGA_AREA &dialog, const VGA_AREA &field,
                          const VGA_AREA &screen) {
    const VGA_AREA around = with_frame(dialog), outer = with_frame(box);
    const NB_INT middle = field.y + (field.height - outer.height) / 2;
    const NB_INT right = around.x + around.width, below = around.y + around.height;
    const VGA_AREA places[] = {
        {right, middle, outer.width, outer.height},
        {around.x - outer.width, middle, outer.width, outer.height},
        {around.x, below, outer.width, outer.height},
        {around.x, around.y - outer.height, outer.width, outer.height},
        {field.x + field.width, middle, outer.width, outer.height},
        {around.x, field.y + field.height, outer.width, outer.height},
        {around.x, field.y - outer.height, outer.width, outer.height},
    };
    VGA_AREA found = on_screen(places[0], screen);
    const auto clear_of = [&](const VGA_AREA &taken) {
        for (const VGA_AREA &place : places) {
            const VGA_AREA moved = on_screen(place, screen);
            if (!overlap(moved, taken)) {
                found = moved;
                return true;
            }
        }
        return false;
    };
    if (!clear_of(around)) {
        clear_of(field);
    }
    box.x = found.x + edge;
    box.y = found.y + title;
    return box;
}
