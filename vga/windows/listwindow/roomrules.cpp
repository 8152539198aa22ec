#include "roomrules.h"
#include <algorithm>
#include <cstdint>

namespace {

constexpr NB_ULONG frame_room = 28; // pixels for the window manager's title and border
constexpr NB_ULONG panel_room = 44; // and for a panel of the desktop
constexpr NB_ULONG side_room = 24;  // borders at the left and right
constexpr NB_ULONG row_gaps = 48;   // around the panes and between the parts of a title's row

NB_ULONG less(NB_ULONG all, NB_ULONG part) {
    return all > part ? all - part : 1;
}

} // namespace

VGA_LISTW_STEP vga_listw_choose_step(const VGA_LISTW_HEIGHTS &heights) {
    NB_ULONG need =
        heights.fixed + heights.tool_bar + heights.keys + heights.headings + heights.panes;
    const struct {
        VGA_LISTW_STEP step;
        NB_ULONG saves;
    } steps[] = {{VGA_LISTW_STEP_NONE, 0},
                 {VGA_LISTW_STEP_NO_KEYS, heights.keys},
                 {VGA_LISTW_STEP_NO_HEADINGS, heights.headings}};
    for (const auto &row : steps) {
        need -= row.saves;
        if (need <= heights.window) {
            return row.step;
        }
    }
    return VGA_LISTW_STEP_NO_TOOL_BAR;
}

NB_ULONG vga_listw_height_limit(NB_ULONG screen, NB_ULONG need) {
    const NB_ULONG beside_panel = less(screen, frame_room + panel_room);
    return need <= beside_panel ? beside_panel : less(screen, frame_room);
}

NB_ULONG vga_listw_width_limit(NB_ULONG screen) {
    return less(screen, side_room);
}

NB_ULONG vga_listw_row_room(NB_ULONG window, NB_ULONG taken) {
    return window > taken + row_gaps ? window - taken - row_gaps : 0;
}

NB_VOID vga_listw_divide(const NB_ULONG *shares, NB_USHORT count, NB_ULONG total, NB_ULONG minimum,
                         NB_ULONG *heights) {
    NB_ULONG sum = 0;
    for (NB_USHORT pane = 0; pane < count; pane++) {
        sum += shares[pane];
    }
    NB_ULONG floor = std::min(minimum, total / count);
    NB_ULONG left = total;
    for (NB_USHORT pane = 0; pane + 1 < count; pane++) {
        NB_ULONG wanted =
            sum == 0 ? total / count
                     : static_cast<NB_ULONG>(static_cast<uint64_t>(total) * shares[pane] / sum);
        NB_ULONG others = floor * (count - 1 - pane);
        heights[pane] = std::clamp(wanted, floor, left - others);
        left -= heights[pane];
    }
    heights[count - 1] = left;
}
