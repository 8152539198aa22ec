#include "linetable.h"
#include "lineevents.h"
#include "linestates.h"
#include "nodewindowlines.h"
#include "vgasysw.h"
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
constexpr PLACE top_aligned = {0, 0, 0};

using TEXT_PROC = decltype(VGA_VIEWER_DESC::create_text);
using ICON_PROC = decltype(VGA_VIEWER_DESC::choose_icon);
using BUTTON_PROC = decltype(VGA_VIEWER_DESC::arm_cb);
using DRAG_PROC = decltype(VGA_VIEWER_DESC::drag_cb);
using DECOR_PROC = decltype(VGA_VIEWER_DESC::decor_cb);

/* A title, or a line that nothing can be done with: the keyboard passes it. */
constexpr VGA_VIEWER_DESC shown(PLACE place, TEXT_PROC text, TEXT_PROC headings, ICON_PROC icon) {
    VGA_VIEWER_DESC desc = {};
    desc.create_text = text;
    desc.create_headings = headings;
    desc.choose_icon = icon;
    desc.show_icon = 1;
    desc.expandable = place.expandable;
    desc.level = place.level;
    desc.flat = place.flat;
    return desc;
}

/* A line that can be selected and opened. */
constexpr VGA_VIEWER_DESC live(PLACE place, TEXT_PROC text, TEXT_PROC headings, ICON_PROC icon,
                               BUTTON_PROC arm, BUTTON_PROC act, DRAG_PROC drag) {
    VGA_VIEWER_DESC desc = shown(place, text, headings, icon);
    desc.arm_cb = arm;
    desc.disarm_cb = vga_listw_line_disarm;
    desc.activate_cb = act;
    desc.drag_cb = drag;
    desc.set_button_states = vga_listw_set_button_states;
    return desc;
}

constexpr VGA_VIEWER_DESC decorated(VGA_VIEWER_DESC desc, DECOR_PROC decor) {
    desc.decor_cb = decor;
    return desc;
}

/* A line with the headings of those under it; an icon as wide as theirs keeps them in line. */
constexpr VGA_VIEWER_DESC title(PLACE place, TEXT_PROC text) {
    return decorated(shown(place, text, text, nullptr), vga_viewer_add_underline);
}

constexpr VGA_VIEWER_DESC without_icon(VGA_VIEWER_DESC desc) {
    desc.show_icon = 0;
    return desc;
}

/* An open line is the title of what it holds. */
template <class Record>
NB_VOID underline_open(NB_VOID *data, Widget widget, Drawable drawable, NB_INT x, NB_INT y, GC gc) {
    const VGA_VIEWER_ITEM &line = static_cast<Record *>(data)->gui_data.viewer;
    if (line.expanded && line.children.count != 0) {
        vga_viewer_add_underline(data, widget, drawable, x, y, gc);
    }
}

#define VGA_LIVE_ROW(place, line, record)                                                          \
    live(place, vga_create_##line##_viewer_text, vga_create_##line##_headings,                     \
         vga_choose_##line##_viewer_icon, vga_listw_arm<record>, vga_listw_act<record>,            \
         vga_listw_drag<record>)

#define VGA_NODEW_ROW(place, line, callbacks)                                                      \
    live(place, vga_create_##line##_viewer_text, vga_create_##line##_headings,                     \
         vga_choose_##line##_viewer_icon, vga_nodew_##callbacks##_arm_cb,                          \
         vga_nodew_##callbacks##_act_cb, vga_nodew_##callbacks##_drag_cb)

/* A line of the system window. */
constexpr VGA_VIEWER_DESC node_of_domain(NB_VOID) {
    VGA_VIEWER_DESC desc = live(top_flat, vga_create_node_viewer_text, vga_create_node_headings,
                                vga_choose_node_viewer_icon, vga_sysw_node_arm_cb,
                                vga_sysw_node_act_cb, vga_sysw_node_drag_cb);
    desc.disarm_cb = [](Widget widget) { vga_sysw_disarm(widget, nullptr, nullptr); };
    desc.set_button_states = vga_sysw_set_button_states;
    return desc;
}

constexpr ROW rows[] = {
    {VGA_VIEWER_LU62, decorated(VGA_NODEW_ROW(top_open, lu62, lu62), underline_open<VGA_LU62>)},
    {VGA_VIEWER_MODE, VGA_NODEW_ROW(second, mode, mode)},
    {VGA_VIEWER_PORT, VGA_NODEW_ROW(top_open, port, port)},
    {VGA_VIEWER_LS, VGA_NODEW_ROW(second_open, ls, ls)},
    {VGA_VIEWER_LOCAL_PU, VGA_NODEW_ROW(second_open, local_pu, local_pu)},
    {VGA_VIEWER_DEPLU, VGA_NODEW_ROW(third, deplu, deplu)},
    {VGA_VIEWER_DOWN_LU, VGA_NODEW_ROW(third, down_lu, down_lu)},
    {VGA_VIEWER_USER, VGA_LIVE_ROW(top_open, user, VGA_USER)},
    {VGA_VIEWER_POOL,
     decorated(VGA_LIVE_ROW(top_open, pool, VGA_SYS_POOL), underline_open<VGA_SYS_POOL>)},
    {VGA_VIEWER_CPIC, VGA_LIVE_ROW(top_flat, cpic, VGA_CPIC)},
    {VGA_VIEWER_MODE_DEF, VGA_LIVE_ROW(top_flat, mode_def, VGA_MODE_DEF)},
    {VGA_VIEWER_NODE, node_of_domain()},
    {VGA_VIEWER_RJE, VGA_LIVE_ROW(top_flat, rje, VGA_RJE_WKSTN)},
    {VGA_VIEWER_LS_LEAF, VGA_NODEW_ROW(second, ls, ls)},
    {VGA_VIEWER_REM_SYS, VGA_NODEW_ROW(top_open, rem_sys, rem_sys)},
    {VGA_VIEWER_REM_PLU,
     decorated(VGA_NODEW_ROW(second_open, rem_plu, rem_plu), underline_open<VGA_REM_PLU>)},
    {VGA_VIEWER_REM_SESS, VGA_NODEW_ROW(third, rem_sess, rem_sess)},
    {VGA_VIEWER_REM_PLU_LEAF,
     decorated(VGA_NODEW_ROW(second, rem_plu, rem_plu), underline_open<VGA_REM_PLU>)},
    {VGA_VIEWER_USER_SESS, VGA_LIVE_ROW(second, user_sess, VGA_USER_SESSION)},
    {VGA_VIEWER_USTAD, without_icon(shown(top_aligned, vga_create_ustad_viewer_text,
                                          vga_create_ustad_title_viewer_text, nullptr))},
    {VGA_VIEWER_USTAD_TITLE, without_icon(title(top_aligned, vga_create_ustad_title_viewer_text))},
    {VGA_VIEWER_TN_SESS, VGA_LIVE_ROW(top_flat, tn_sess, VGA_TN_SESS)},
    {VGA_VIEWER_TN_SESS_TITLE, title(top_flat, vga_tnw_create_sess_title_viewer_text)},
    {VGA_VIEWER_POOL_LU, VGA_LIVE_ROW(second, pool_lu, VGA_POOL_LU)},
    {VGA_VIEWER_CL_SECURITY, VGA_LIVE_ROW(top_flat, cl_security, VGA_CLSEC_DEF)},
    {VGA_VIEWER_SL_SEC_TITLE, title(top_flat, vga_slscw_create_sl_sec_title_viewer_text)},
    {VGA_VIEWER_SL_SECURITY, VGA_LIVE_ROW(top_flat, sl_security, VGA_SLSEC_DEF)},
    {VGA_VIEWER_TN_ASSOC, VGA_LIVE_ROW(top_flat, tn_assoc, VGA_TN_ASSOC)},
    {VGA_VIEWER_TN_ASSOC_TITLE, title(top_flat, vga_tnw_create_assoc_title_viewer_text)},
    {VGA_VIEWER_RTP_CONN, VGA_LIVE_ROW(top_flat, rtp_conn, VGA_RTP_CONN)},
    {VGA_VIEWER_RTP_CONN_TITLE, title(top_flat, vga_hprw_create_rtp_conn_title_viewer_text)},
    {VGA_VIEWER_LS_R_TITLE,
     decorated(live(second_open, vga_nodew_create_ls_r_title_viewer_text,
                    vga_nodew_create_ls_r_title_viewer_text,
                    vga_nodew_choose_ls_r_title_viewer_icon, vga_nodew_ls_r_title_arm_cb, nullptr,
                    vga_listw_no_drag_cb),
               vga_viewer_add_underline)},
    {VGA_VIEWER_LS_R, VGA_NODEW_ROW(third, ls_r, ls_r)},
    {VGA_VIEWER_APPCIP_SESS_TITLE, title(top_flat, vga_anyw_create_appcip_sess_title_viewer_text)},
    {VGA_VIEWER_APPCIP_SESS, VGA_LIVE_ROW(top_flat, appcip_sess, VGA_TAMRIX_APPCIP_SESS)},
    {VGA_VIEWER_DSLU_TEMPLATE, VGA_LIVE_ROW(top_flat, dslu_template, VGA_DSLU_TEMPLATE)},
    {VGA_VIEWER_PRIMARY_LINE, VGA_NODEW_ROW(second_open, primary_line, primary_line)},
    {VGA_VIEWER_PRIMARY_LU0, VGA_NODEW_ROW(third, primary_lu0, primary_lu0)},
    {VGA_VIEWER_ACCESS_LIST, VGA_LIVE_ROW(top_flat, access_list, VGA_ACCESS_LIST)},
    {VGA_VIEWER_TP_DEF, VGA_LIVE_ROW(top_flat, tp_def, VGA_TP_DEF)},
    {VGA_VIEWER_TP_LOAD_INFO, VGA_LIVE_ROW(top_flat, tp_load_info, VGA_TP_LOAD_INFO)},
    {VGA_VIEWER_TN_REDIRECT, VGA_LIVE_ROW(top_flat, tn_redirect, VGA_TN_REDIRECT)},
    {VGA_VIEWER_TN_REDIRECT_TITLE, title(top_flat, vga_tnw_create_redirect_title_viewer_text)},
};

#undef VGA_NODEW_ROW
#undef VGA_LIVE_ROW

constexpr NB_USHORT in_order(NB_VOID) {
    for (size_t row = 0; row < std::size(rows); row++) {
        if (rows[row].type != row) {
            return 0;
        }
    }
    return std::size(rows) == VGA_VIEWER_TYPE_COUNT;
}

static_assert(in_order());

constexpr VGA_VIEWER_DESC with_state(const ROW &row) {
    VGA_VIEWER_DESC desc = row.desc;
    for (const VGA_STATE_OF_LINE &line : gvga_line_states) {
        desc.choose_state = line.type == row.type ? line.state : desc.choose_state;
    }
    return desc;
}

template <size_t... Row>
constexpr std::array<VGA_VIEWER_DESC, sizeof...(Row)> types(std::index_sequence<Row...>) {
    return {with_state(rows[Row])...};
}

} // namespace

const std::array<VGA_VIEWER_DESC, VGA_VIEWER_TYPE_COUNT> gvga_viewer_types =
    types(std::make_index_sequence<VGA_VIEWER_TYPE_COUNT>());
