#include "vgawtype.h"
#include "vgalines.h"
#include "vganodws.h"
#include <array>

namespace {

struct ROW {
    VGA_VIEWER_TYPE type; /* equals the index */
    VGA_VIEWER_DESC desc;
};

/* Where a line stands: expandable, level, flat. */
struct PLACE {
    NB_USHORT expandable, level, flat;
};

constexpr PLACE top_open = {1, 0, 1};
constexpr PLACE top_flat = {0, 0, 1};
constexpr PLACE second = {0, 1, 0};
constexpr PLACE second_open = {1, 1, 0};
constexpr PLACE third = {0, 2, 0};

/* A line without functions: its window is not in this release. */
constexpr VGA_VIEWER_DESC later(PLACE place) {
    VGA_VIEWER_DESC desc = {};
    desc.show_icon = 1;
    desc.expandable = place.expandable;
    desc.level = place.level;
    desc.flat = place.flat;
    return desc;
}

using TEXT_PROC = decltype(VGA_VIEWER_DESC::create_text);
using ICON_PROC = decltype(VGA_VIEWER_DESC::choose_icon);
using BUTTON_PROC = decltype(VGA_VIEWER_DESC::arm_cb);
using DRAG_PROC = decltype(VGA_VIEWER_DESC::drag_cb);

/* A line of the node window. */
constexpr VGA_VIEWER_DESC nodew(PLACE place, TEXT_PROC text, ICON_PROC icon, BUTTON_PROC arm,
                                BUTTON_PROC act, DRAG_PROC drag) {
    VGA_VIEWER_DESC desc = later(place);
    desc.create_text = text;
    desc.choose_icon = icon;
    desc.arm_cb = arm;
    desc.disarm_cb = vga_nodew_line_disarm;
    desc.activate_cb = act;
    desc.drag_cb = drag;
    desc.set_button_states = vga_nodew_set_button_states;
    return desc;
}

constexpr VGA_VIEWER_DESC no_icon(PLACE place) {
    VGA_VIEWER_DESC desc = later(place);
    desc.show_icon = 0;
    return desc;
}

constexpr VGA_VIEWER_DESC node_line(NB_VOID) {
    VGA_VIEWER_DESC desc = later(top_flat);
    desc.create_text = vga_create_node_viewer_text;
    desc.choose_icon = vga_choose_node_viewer_icon;
    return desc;
}

#define VGA_NODEW_ROW(place, line, callbacks)                                                      \
    nodew(place, vga_create_##line##_viewer_text, vga_choose_##line##_viewer_icon,                 \
          vga_nodew_##callbacks##_arm_cb, vga_nodew_##callbacks##_act_cb,                          \
          vga_nodew_##callbacks##_drag_cb)

constexpr ROW rows[] = {
    {VGA_VIEWER_LU62, VGA_NODEW_ROW(top_open, lu62, lu62)},
    {VGA_VIEWER_MODE, VGA_NODEW_ROW(second, mode, mode)},
    {VGA_VIEWER_PORT, VGA_NODEW_ROW(top_open, port, port)},
    {VGA_VIEWER_LS, VGA_NODEW_ROW(second_open, ls, ls)},
    {VGA_VIEWER_LOCAL_PU, VGA_NODEW_ROW(second_open, local_pu, local_pu)},
    {VGA_VIEWER_DEPLU, VGA_NODEW_ROW(third, deplu, deplu)},
    {VGA_VIEWER_DOWN_LU, later(third)},
    {VGA_VIEWER_USER, later(top_open)},
    {VGA_VIEWER_POOL, later(top_open)},
    {VGA_VIEWER_CPIC, later(top_flat)},
    {VGA_VIEWER_MODE_DEF, later(top_flat)},
    {VGA_VIEWER_NODE, node_line()},
    {VGA_VIEWER_RJE, later(top_flat)},
    {VGA_VIEWER_LS_LEAF, VGA_NODEW_ROW(second, ls, ls)},
    {VGA_VIEWER_REM_SYS, VGA_NODEW_ROW(top_open, rem_sys, rem_sys)},
    {VGA_VIEWER_REM_PLU, VGA_NODEW_ROW(second_open, rem_plu, rem_plu)},
    {VGA_VIEWER_REM_SESS, VGA_NODEW_ROW(third, rem_sess, rem_sess)},
    {VGA_VIEWER_REM_PLU_LEAF, VGA_NODEW_ROW(second, rem_plu, rem_plu)},
    {VGA_VIEWER_USER_SESS, later(second)},
    {VGA_VIEWER_USTAD, no_icon({0, 0, 0})},
    {VGA_VIEWER_USTAD_TITLE, no_icon({0, 0, 0})},
    {VGA_VIEWER_TN_SESS, later(top_flat)},
    {VGA_VIEWER_TN_SESS_TITLE, later(top_flat)},
    {VGA_VIEWER_POOL_LU, later(second)},
    {VGA_VIEWER_CL_SECURITY, later(top_flat)},
    {VGA_VIEWER_SL_SEC_TITLE, later(top_flat)},
    {VGA_VIEWER_SL_SECURITY, later(top_flat)},
    {VGA_VIEWER_TN_ASSOC, later(top_flat)},
    {VGA_VIEWER_TN_ASSOC_TITLE, later(top_flat)},
    {VGA_VIEWER_RTP_CONN, later(top_flat)},
    {VGA_VIEWER_RTP_CONN_TITLE, later(top_flat)},
    {VGA_VIEWER_LS_R_TITLE, later(second_open)},
    {VGA_VIEWER_LS_R, later(third)},
    {VGA_VIEWER_APPCIP_SESS_TITLE, later(top_flat)},
    {VGA_VIEWER_APPCIP_SESS, later(top_flat)},
    {VGA_VIEWER_DSLU_TEMPLATE, later(top_flat)},
    {VGA_VIEWER_PRIMARY_LINE, later(second_open)},
    {VGA_VIEWER_PRIMARY_LU0, later(third)},
    {VGA_VIEWER_ACCESS_LIST, later(top_flat)},
    {VGA_VIEWER_TP_DEF, later(top_flat)},
    {VGA_VIEWER_TP_LOAD_INFO, later(top_flat)},
    {VGA_VIEWER_TN_REDIRECT, later(top_flat)},
    {VGA_VIEWER_TN_REDIRECT_TITLE, later(top_flat)},
};

#undef VGA_NODEW_ROW

constexpr NB_USHORT in_order(NB_VOID) {
    for (size_t row = 0; row < std::size(rows); row++) {
        if (rows[row].type != row) {
            return 0;
        }
    }
    return std::size(rows) == VGA_VIEWER_TYPE_COUNT;
}

static_assert(in_order());

template <size_t... Row>
constexpr std::array<VGA_VIEWER_DESC, sizeof...(Row)> types(std::index_sequence<Row...>) {
    return {rows[Row].desc...};
}

} // namespace

const std::array<VGA_VIEWER_DESC, VGA_VIEWER_TYPE_COUNT> gvga_viewer_types =
    types(std::make_index_sequence<VGA_VIEWER_TYPE_COUNT>());
