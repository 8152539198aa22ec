#include "deleting.h"
#include "deletion.h"
#include "globals.h"
#include "holders.h"
#include "listwindow.h"
#include "longwork.h"
#include "messages.h"
#include "outcomes.h"
#include "receipt.h"
#include "vgadsutl.h"
#include "wraptext.h"
#include <unordered_map>

namespace {

constexpr NB_USHORT text_columns = 60;
constexpr size_t most_in_detail = 20; /* lines, in the history */
constexpr size_t few = 5;             /* lines whose end the message line can tell */

/* What a window asks about: a question for each group of lines.  By the window's handle. */
struct ASKED {
    std::unique_ptr<VGA_DELETION> plan;
    std::vector<std::vector<size_t>> groups;
    size_t next;
};
std::unordered_map<NB_ULONG, ASKED> asked;

NB_VOID tell_outcome(const VGA_DELETION &deletion) {
    const size_t refused = vga_count_refused(deletion);
    const bool in_detail = refused != 0 && deletion.lines.size() <= most_in_detail;
    const auto *node = static_cast<const VGA_NODE *>(
        nba_validate_handle(!deletion.items.empty() ? deletion.items.front().node : 0));
    vga_tell_outcome(vga_node_name(node),
                     in_detail ? vga_deletion_account(deletion) : vga_deletion_outcome(deletion),
                     static_cast<NB_ULONG>(refused));
}

/* Of a window that was closed meanwhile, what was refused is told over the main window. */
NB_VOID told(NB_ULONG handle, const VGA_DELETION &deletion, NB_USHORT over) {
    if (gvga_closing != 0 || deletion.to_do == 0) {
        return;
    }
    VGA_LIST_WINDOW *window = vga_listw_of(static_cast<VGA_DIALOG *>(nba_validate_handle(handle)));
    const VGA_WORK work = {vga_cancel_deletion, deletion.number};
    if (window != nullptr && over != 0) {
        vga_listw_work_over(window, work);
    } else if (window != nullptr) {
        vga_listw_work_goes_on(window, work, vga_deletion_progress(deletion));
    }
    if (over != 0) {
        tell_outcome(deletion);
    }
    const bool is_long = window != nullptr && deletion.lines.size() > few;
    VGA_DIALOG *shows = window != nullptr ? &window->common : gvga_main_dialog;
    if (over != 0 && shows != nullptr && (is_long || vga_count_refused(deletion) != 0)) {
        vga_show_receipt(shows, vga_message(VGA_MSG_DELETE_ACCOUNT),
                         vga_deletion_account(deletion).c_str(), "deletereceipt");
    }
}

NB_VOID answered(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG handle);

NB_VOID ask(VGA_DIALOG *desc, const ASKED &of) {
    const std::string text = vga_deletion_question(*of.plan, of.groups[of.next]);
    const VGA_OWNED<NB_CHAR> lines(vga_wrap_text(text.c_str(), text_columns));
    if (!lines) {
        return;
    }
    const NB_USHORT several = of.groups.size() > 1;
    const NB_USHORT more = of.next + 1 < of.groups.size();
    vga_question_loses(desc);
    vga_display_modal_dialog(
        VGA_MODAL_CONFIRM, desc,
        XmStringCreateLtoR(lines.get(), const_cast<NB_CHAR *>(XmFONTLIST_DEFAULT_TAG)),
        "confirmdelete", answered, desc->handle, more, several);
}

/* Nothing is deleted before the last question is answered. */
NB_VOID answered(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG handle) {
    const auto found = asked.find(handle);
    if (found == asked.end() || handle != desc->handle) {
        return;
    }
    ASKED &of = found->second;
    if (answer == VGA_ANSWER_NO) {
        for (const size_t line : of.groups[of.next]) {
            of.plan->lines[line].wanted = 0;
        }
    }
    of.next = answer == VGA_ANSWER_OK_TO_ALL ? of.groups.size() : of.next + 1;
    if (answer != VGA_ANSWER_CANCEL && of.next < of.groups.size()) {
        ask(desc, of);
        return;
    }
    std::unique_ptr<VGA_DELETION> plan = std::move(of.plan);
    asked.erase(found);
    if (answer != VGA_ANSWER_CANCEL) {
        vga_run_deletion(std::move(plan), handle, told);
    }
}

/* Windows are closed without an answer, too. */
NB_VOID forget_closed(NB_VOID) {
    std::erase_if(asked, [](const auto &of) { return nba_validate_handle(of.first) == nullptr; });
}

} // namespace

NB_VOID vga_listw_delete(VGA_LIST_WINDOW *window) {
    const VGA_VIEWER_ROOT *root = vga_listw_current_root(window);
    auto plan = std::make_unique<VGA_DELETION>();
    const NB_USHORT reason = vga_plan_deletion(
        root != nullptr ? vga_selected_to_delete(root) : std::vector<VGA_TO_DELETE>(), plan.get());
    forget_closed();
    if (reason != 0) {
        const bool told_of_line = !plan->lines.empty();
        vga_listw_message_text(window, told_of_line ? plan->lines.front().reason.c_str()
                                                    : vga_message(reason));
        return;
    }
    auto groups = vga_group_deletion(*plan);
    ASKED &of = asked[window->common.handle];
    of = {std::move(plan), std::move(groups), 0};
    ask(&window->common, of);
}
