#include "operations.h"
#include "dialogids.h"
#include "fieldtext.h"
#include "globals.h"
#include "listwindow.h"
#include "longwork.h"
#include "messages.h"
#include "newresources.h"
#include "outcomes.h"
#include "receipt.h"
#include "recordtypes.h"
#include "schemas.h"
#include "startstopeffects.h"
#include <Xm/MessageB.h>
#include <map>

namespace {

NB_VOID say(VGA_DIALOG *window, const std::string &text) {
    if (VGA_LIST_WINDOW *list = vga_listw_of(window)) {
        vga_listw_message_text(list, text.c_str());
    }
}

/* News of a batch. */

/* So many failures stand in a box; more have a window that can be scrolled. */
constexpr size_t failures_in_box = 20;

/* "40 link stations", or "port ETH0". */
std::string subject_of(const VGA_OPERATION_ACCOUNT &account) {
    return account.asked == 1 ? account.first : vga_count_in_words(account.kind, account.asked);
}

std::string progress_in_words(const VGA_OPERATION_ACCOUNT &account) {
    NB_CHAR text[300];
    const bool start = account.operation == VGA_START;
    const std::string subject = subject_of(account);
    if (account.asked == 1) {
        vga_print_msg(text, sizeof(text),
                      start ? VGA_MSG_OPER_STARTING_ONE : VGA_MSG_OPER_STOPPING_ONE, "s",
                      subject.c_str());
    } else {
        vga_print_msg(text, sizeof(text), start ? VGA_MSG_OPER_STARTING : VGA_MSG_OPER_STOPPING,
                      "l s", account.settled(), subject.c_str());
    }
    return text;
}

std::string outcome_in_words(const VGA_OPERATION_ACCOUNT &account) {
    NB_CHAR text[300];
    const bool start = account.operation == VGA_START;
    const std::string subject = subject_of(account);
    if (account.done == account.asked) {
        vga_print_msg(text, sizeof(text), start ? VGA_MSG_OPER_STARTED : VGA_MSG_OPER_STOPPED, "s",
                      subject.c_str());
    } else {
        vga_print_msg(text, sizeof(text),
                      start ? VGA_MSG_OPER_STARTED_SOME : VGA_MSG_OPER_STOPPED_SOME, "l s l l l",
                      account.done, subject.c_str(), account.passed,
                      static_cast<NB_ULONG>(account.failures.size()), account.gone);
    }
    std::string outcome = text;
    if (account.cancelled != 0) {
        vga_print_msg(text, sizeof(text), VGA_MSG_CANCELLED, "s",
                      vga_count_in_words(account.kind, account.cancelled).c_str());
        outcome += std::string(" ") + text;
    }
    return outcome;
}

/* Those with the same reason stand together; many fail for one. */
std::string failures_in_words(const std::vector<VGA_OPERATION_FAILURE> &failures) {
    std::map<std::string, std::string> by_reason;
    for (const VGA_OPERATION_FAILURE &one : failures) {
        std::string &names = by_reason[one.reason];
        names += (names.empty() ? "" : ", ") + one.resource;
    }
    std::string text;
    for (const auto &[reason, names] : by_reason) {
        text += (text.empty() ? "" : "\n\n") + names + ": " + reason;
    }
    return text;
}

NB_VOID show_in_receipt(VGA_DIALOG *window, const VGA_OPERATION_ACCOUNT &account) {
    NB_CHAR head[300];
    vga_print_msg(head, sizeof(head), VGA_MSG_OPER_FAILED_SOME, "l s s",
                  static_cast<NB_ULONG>(account.failures.size()), subject_of(account).c_str(), "");
    vga_show_receipt(window, vga_message(VGA_MSG_OPER_FAILURES),
                     (head + failures_in_words(account.failures)).c_str(), "verbfailed");
}

/* The window may be closed by now. */
NB_VOID show_failures(VGA_DIALOG *window, const VGA_OPERATION_ACCOUNT &account) {
    const auto &failures = account.failures;
    window = window != nullptr ? window : gvga_main_dialog;
    if (failures.size() == 1) {
        if (!failures.front().details.empty()) {
            vga_box_details(window, failures.front().details.c_str());
        }
        vga_display_error_dialog(window, VGA_MSG_OPER_FAILED, failures.front().help_key, nullptr, 0,
                                 "s s", failures.front().resource.c_str(),
                                 failures.front().reason.c_str());
    } else if (failures.size() > failures_in_box && window != nullptr) {
        show_in_receipt(window, account);
    } else if (!failures.empty()) {
        vga_display_error_dialog(window, VGA_MSG_OPER_FAILED_SOME, nullptr, nullptr, 0, "l s s",
                                 static_cast<NB_ULONG>(failures.size()),
                                 subject_of(account).c_str(), failures_in_words(failures).c_str());
    }
}

NB_VOID tell_outcome(const VGA_OPERATION_ACCOUNT &account) {
    std::string text = outcome_in_words(account);
    if (!account.failures.empty() && account.failures.size() <= failures_in_box) {
        text += "\n" + failures_in_words(account.failures);
    }
    vga_tell_outcome(account.node, text, static_cast<NB_ULONG>(account.failures.size()));
}

NB_VOID tell(NB_ULONG handle, const VGA_OPERATION_ACCOUNT &account) {
    const VGA_WORK work = {vga_cancel_operations, account.number};
    auto *window = static_cast<VGA_DIALOG *>(nba_validate_handle(handle));
    VGA_LIST_WINDOW *list = vga_listw_of(window);
    if (list != nullptr && account.over()) {
        vga_listw_work_over(list, work);
    } else if (list != nullptr) {
        vga_listw_work_goes_on(list, work, progress_in_words(account));
    }
    if (account.over()) {
        tell_outcome(account);
        show_failures(window, account);
    }
}

/* What a stop is asked about, by handle, until it is answered. */

struct TARGET {
    VGA_OPERABLE kind;
    NB_ULONG handle;
};

std::map<const VGA_DIALOG *, std::vector<TARGET>> asked;

NB_VOID ask_to_stop(VGA_DIALOG *window, const std::vector<VGA_RESOURCE> &resources) {
    std::vector<TARGET> &targets = asked[window];
    targets.clear();
    for (const VGA_RESOURCE &one : resources) {
        targets.push_back({one.kind, vga_handle_of(one)});
    }
    vga_form_open(vga_find_row_named("stopr")->dialog_id, window, resources.front().record, nullptr,
                  VGA_FORM_CHANGE);
}

/* Those that can be; when none can, says why. */
std::vector<VGA_RESOURCE> that_can(VGA_DIALOG *window, const std::vector<VGA_RESOURCE> &resources,
                                   VGA_OPERATION operation) {
    std::vector<VGA_RESOURCE> some;
    NB_USHORT reason = VGA_MSG_NODEW_SELECT_FIRST;
    for (const VGA_RESOURCE &one : resources) {
        const NB_USHORT refusal = vga_refuses_operation(one, operation);
        if (refusal == 0) {
            some.push_back(one);
        }
        reason = &one == &resources.front() ? refusal : reason;
    }
    if (some.empty()) {
        say(window, vga_message(reason));
    }
    return some;
}

/* Of the sessions on a link the node tells when it is asked; the dialog follows. */
NB_VOID open_link_stop(VGA_DIALOG *window, VGA_LS *ls) {
    vga_form_open(VGA_UID_STOP_LS_DIALOG, window, ls, nullptr, VGA_FORM_CHANGE);
    vga_read_resource(ls->parent->node, NAP_QUERY_LS, ls->name);
}

} // namespace

NB_VOID vga_operate_over(VGA_DIALOG *window, const std::vector<VGA_RESOURCE> &resources,
                         VGA_OPERATION operation) {
    const NB_USHORT reason = vga_operate_all(resources, operation, window->handle, tell);
    if (reason != 0) {
        say(window, vga_message(reason));
    }
}

NB_VOID vga_start_resources(VGA_DIALOG *window, const std::vector<VGA_RESOURCE> &resources) {
    const std::vector<VGA_RESOURCE> some = that_can(window, resources, VGA_START);
    if (some.empty()) {
        return;
    }
    const VGA_OPERABLE kind = some.front().kind;
    if (resources.size() == 1 && (kind == VGA_OPERABLE_LS || kind == VGA_OPERABLE_MODE)) {
        vga_form_open(kind == VGA_OPERABLE_LS ? VGA_UID_START_LS_DIALOG
                                              : VGA_UID_ACTIVATE_SESS_DIALOG,
                      window, some.front().record, nullptr, VGA_FORM_CHANGE);
    } else {
        vga_operate_over(window, resources, VGA_START);
    }
}

/* Those that end orderly already can be hurried when there are no others. */
NB_VOID vga_stop_resources(VGA_DIALOG *window, const std::vector<VGA_RESOURCE> &resources) {
    const std::vector<VGA_RESOURCE> some = that_can(window, resources, VGA_STOP_IMMEDIATE);
    if (some.empty()) {
        return;
    }
    if (resources.size() == 1 && some.front().kind == VGA_OPERABLE_LS) {
        open_link_stop(window, static_cast<VGA_LS *>(some.front().record));
        return;
    }
    const VGA_EFFECTS effects = vga_effects_of_stop(some);
    if (some.front().kind == VGA_OPERABLE_NODE || effects.sessions != 0 ||
        !vga_effects_in_words(effects).empty()) {
        ask_to_stop(window, some);
        return;
    }
    const bool orderly = std::any_of(some.begin(), some.end(), [](const VGA_RESOURCE &one) {
        return vga_refuses_operation(one, VGA_STOP_ORDERLY) == 0;
    });
    vga_operate_over(window, resources, orderly ? VGA_STOP_ORDERLY : VGA_STOP_IMMEDIATE);
}

std::vector<VGA_RESOURCE> vga_asked_to_stop(const VGA_DIALOG *window) {
    std::vector<VGA_RESOURCE> resources;
    const auto found = asked.find(window);
    if (found == asked.end()) {
        return resources;
    }
    for (const TARGET &target : found->second) {
        if (NB_VOID *record = nba_validate_handle(target.handle)) {
            resources.push_back({target.kind, record});
        }
    }
    return resources;
}

NB_VOID vga_asked_no_more(const VGA_DIALOG *window, const NB_VOID *record) {
    std::erase_if(asked[window], [record](const TARGET &target) {
        return nba_validate_handle(target.handle) == record;
    });
}

NB_VOID vga_asked_no_more(const VGA_DIALOG *window) {
    asked.erase(window);
}

/* Texts. */

std::string vga_join_names(VGA_OPERABLE kind, const std::vector<std::string> &names) {
    constexpr size_t room = 24; /* characters, on a low screen in large letters */
    if (names.size() <= 1) {
        return names.empty() ? vga_message(VGA_MSG_OPER_NOTHING) : names.front();
    }
    std::string text;
    for (const std::string &name : names) {
        if (text.size() + name.size() > room) {
            text += ", ...";
            break;
        }
        text += (text.empty() ? "" : ", ") + name;
    }
    return vga_count_in_words(kind, static_cast<NB_ULONG>(names.size())) + ": " + text;
}

namespace {

template <class Pu>
NB_VOID add_pu(std::vector<std::string> &names, VGA_OPERABLE kind, Pu *pu, bool active) {
    if (pu != nullptr && (!active || pu->vcb->pu_sscp_sess_active != NAP_NOT_ACTIVE)) {
        names.push_back(vga_name_of({kind, pu}));
    }
}

template <class Lu>
NB_VOID add_lus(std::vector<std::string> &names, const AVL_TREE &lus, const records::Schema &schema,
                bool active) {
    const records::FieldRow &name = *records::find_field(schema.fields, "name");
    vga_for_each(lus, &Lu::links, [&](const Lu &lu) {
        const auto &now = lu.vcb->det_data;
        if (!active || now.lu_sscp_sess_active != 0 || now.plu_sess_active != 0) {
            names.push_back(
                records::format_field(name, reinterpret_cast<const NB_UCHAR *>(lu.vcb)));
        }
    });
}

} // namespace

std::vector<std::string> vga_pus_on(const VGA_LS &ls, bool active) {
    std::vector<std::string> names;
    add_pu(names, VGA_OPERABLE_LOCAL_PU, ls.local_pu, active);
    add_pu(names, VGA_OPERABLE_DOWN_PU, ls.down_pu, active);
    return names;
}

std::vector<std::string> vga_lus_on(const VGA_LS &ls, bool active) {
    std::vector<std::string> names;
    if (ls.local_pu != nullptr) {
        add_lus<VGA_LU03>(names, ls.local_pu->lus, records::lu03, active);
    }
    if (ls.down_pu != nullptr) {
        add_lus<VGA_DOWN_LU>(names, ls.down_pu->lus, records::down_lu, active);
    }
    return names;
}

NB_VOID vga_make_careful(const VGA_FORM *form, NB_ULONG ending) {
    XtVaSetValues(form->common.widget, XmNdefaultButtonType,
                  ending != 0 ? XmDIALOG_CANCEL_BUTTON : XmDIALOG_OK_BUTTON, nullptr);
}
