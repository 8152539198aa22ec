/* Forms: the one pattern of dialogs that show a record in fields and change it by verbs.
 *
 * A dialog declares its fields (formfields.h) and a plan; what is here fills them, switches between
 * editing and looking, checks in order, collects, asks, waits for the answer, shows what went
 * wrong, and follows the record while the dialog is open.  docs/how-to-add-a-dialog.md walks
 * through one.
 *
 * The descriptor begins with VGA_FORM and holds the dialog's data twice: `shown` is what the fields
 * were filled with, `edited` what was collected last.  A field that still reads as in `shown` is
 * untouched, and follows the record.  REQUIRES: the top widget is an XmMessageBox. */
#ifndef FORM_H
#define FORM_H

#include "formfields.h"
#include "verbqueue.h"
#include "vgadgutl.h"

#define VGA_FORM_MAX_FIELDS 64

struct VGA_FORM;

/* What a dialog's own check found: a message without arguments, and the field to go to. */
struct VGA_FORM_FAULT {
    NB_USHORT message = 0; /* 0: all is well */
    NB_USHORT field = 0;   /* its place in the table */
};

/* What a dialog declares.  Functions may be null unless said otherwise. */
struct VGA_FORM_PLAN {
    const VGA_FIELD *fields = nullptr;
    NB_USHORT field_count = 0;
    NB_USHORT shown = 0, edited = 0, data_size = 0; /* VGA_FORM_DATA() gives all three */

    /* The record's last breath makes the dialog one that defines it anew; without the flag nothing
     * can be changed any more then. */
    NB_UCHAR defines = 0;
    NB_USHORT gone = 0; /* message: what has happened to the record; 0: the common one */

    /* Required.  Sets the zeroed data from the record (form->common.parent_item), or to what a new
     * one begins with when that is null. */
    NB_VOID (*load)(const VGA_FORM *form, NB_VOID *data) = nullptr;

    /* 0: the record can be looked at only.  An operator without rights never can do more. */
    NB_USHORT (*may_edit)(const VGA_FORM *form) = nullptr;

    /* What the fields one by one cannot know; may put the data in order, too. */
    VGA_FORM_FAULT (*check)(const VGA_FORM *form, NB_VOID *edited) = nullptr;

    /* What to ask before the verb goes out, when all is checked and something was changed: a
     * message without arguments, or 0. */
    NB_USHORT (*question)(const VGA_FORM *form) = nullptr;

    /* 1 for another record, `item`, of which the dialog shows something: it is loaded again when
     * that one changes, too. */
    NB_USHORT (*shows_too)(const VGA_FORM *form, const NB_VOID *item) = nullptr;

    /* Required where anything can be edited.  Issues the first verb, with vga_form_handle(form) as
     * user data; returns 0 when it could not be queued. */
    NB_USHORT (*issue)(VGA_FORM *form) = nullptr;

    /* A verb succeeded: returns 1 when it issued another one, 0 when all is done. */
    NB_USHORT (*next)(VGA_FORM *form, const VGA_PROCESS_STATE *work) = nullptr;

    /* The fields were filled, or what is of use changed: for the dialog's peculiar widgets. */
    NB_VOID (*arranged)(VGA_FORM *form) = nullptr;
};

/* Members of VGA_FORM_PLAN: `desc` is the descriptor's type, with the members `shown` and `edited`
 * of one type behind its VGA_FORM. */
#define VGA_FORM_DATA(desc)                                                                        \
    .shown = offsetof(desc, shown), .edited = offsetof(desc, edited),                              \
    .data_size = sizeof((static_cast<desc *>(nullptr))->shown)

struct VGA_FORM {
    VGA_DIALOG common;
    const VGA_FORM_PLAN *plan;
    VGA_DIALOG **slot;   /* the record's pointer to its dialog; only good while parent_item is */
    NB_USHORT read_only; /* nothing can be edited now */
    NB_USHORT adding;    /* a new record; more of them follow when `repeat` is set */
    NB_USHORT repeat;
    NB_USHORT pending;   /* a verb is under way */
    NB_USHORT leaving;   /* OK was pressed: close when all is done */
    NB_USHORT confirmed; /* the question was answered with OK */
    NB_USHORT filling;   /* the program is writing the fields */
    NB_CHAR title[128];  /* what the title says while the record is there; empty: it is */
    Widget apply, reset; /* null: the dialog has no such button */
    Widget widgets[VGA_FORM_MAX_FIELDS];
};

/* How a form is opened. */
enum VGA_FORM_MODE : NB_USHORT {
    VGA_FORM_CHANGE, /* the record's properties */
    VGA_FORM_ADD,    /* one new record */
    VGA_FORM_REPEAT, /* new records, one after the other, until the operator has enough */
};

/* For the row in gvga_uid_desc: get_widgets is a function of the dialog's own that calls the first;
 * the other two stand in the row as they are.
 *
 * Looks up every field, and the optional "*<name>ApplyButton", "*<name>ResetButton" and
 * "*<name>MessageLine", by the name of the row.  0 when a field is missing. */
NB_USHORT vga_form_get_widgets(VGA_DIALOG *desc, const VGA_FORM_PLAN *plan);
NB_VOID vga_form_close_proc(VGA_DIALOG *desc);
NB_VOID vga_form_record_changed(VGA_DIALOG *desc, NB_VOID *item, VGA_RECORD_CHANGE what);

/* Opens a form over `parent` and shows it; raises the one that is open on the record already.
 * `record` is what it shows, null with the other two modes; `slot` is the record's pointer to its
 * dialog (gui_data.dialog), which the form keeps; null where there is none.
 * Returns the form; null when there is none to be had (the reason was shown). */
VGA_FORM *vga_form_open(NB_USHORT dialog_id, VGA_DIALOG *parent, NB_VOID *record, VGA_DIALOG **slot,
                        VGA_FORM_MODE mode);

/* The user data of a form's verbs. */
inline NB_ULONG vga_form_handle(const VGA_FORM *form) {
    return form->common.handle;
}

/* The dialog half of a completion: the completion routine calls it behind the model half.  Nothing
 * when the form was closed meanwhile.  After success issues the next verb, or closes, clears for
 * the next entry, or stays; after a failure shows message 167 with the reason, and the operator can
 * try again. */
NB_VOID vga_form_verb_done(const VGA_PROCESS_STATE *work);

/* The hook of that name: the form that waits for the verb, if any does, says that the node is gone,
 * and the operator can try again. */
NB_VOID vga_form_verb_purged(NB_USHORT opcode, NB_ULONG user_data);

/* The dialog's data. */
inline NB_VOID *vga_form_shown(const VGA_FORM *form) {
    return const_cast<NB_UCHAR *>(reinterpret_cast<const NB_UCHAR *>(form)) + form->plan->shown;
}
inline NB_VOID *vga_form_edited(const VGA_FORM *form) {
    return const_cast<NB_UCHAR *>(reinterpret_cast<const NB_UCHAR *>(form)) + form->plan->edited;
}

/* 1 when a field no longer reads as it was filled. */
NB_USHORT vga_form_dirty(const VGA_FORM *form);

/* The buttons, for UID files: OK and Apply check, collect and issue; Reset fills the fields with
 * what the record says.  The form attaches OK by itself. */
NB_VOID vga_form_ok_cb(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_form_apply_cb(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_form_reset_cb(Widget widget, XtPointer client_data, XtPointer call_data);

#endif
