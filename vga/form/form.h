/* Forms: the one pattern of dialogs that show records in fields and change them by verbs.
 *
 * A dialog is described in resources/dialogs; the build makes its window description, its table of
 * fields and its plan.  What is here fills the fields, switches between editing and looking, checks
 * in order, collects, asks, waits for the answer, shows what went wrong, and follows the record
 * while the dialog is open.  docs/how-to-add-a-dialog.md walks through one.
 *
 * The descriptor holds the dialog's data three times: `shown` is what the fields were filled with,
 * `working` the same with what child forms and lists have changed, `wanted` what was collected for
 * the verb.  A field that still reads as in `shown` is untouched and follows the record.
 * REQUIRES: the top widget is an XmMessageBox. */
#ifndef FORM_H
#define FORM_H

#include "chooser.h"
#include "formfields.h"
#include "settings.h"
#include "verbqueue.h"
#include "vgadgutl.h"
#include <ctime>

#define VGA_FORM_MAX_FIELDS 64

struct VGA_FORM;

/* What a form is for. */
enum VGA_FORM_KIND : NB_UCHAR {
    VGA_FORM_EDIT,
    VGA_FORM_STATUS, /* only shows; asks the node anew, also by itself */
    VGA_FORM_CHILD,  /* edits a part of its parent's working data, and accepts without a verb */
    VGA_FORM_GUIDED, /* leads through its pages one after the other */
};

/* A widget that the descriptor keeps. */
struct VGA_FORM_WIDGET {
    NB_USHORT member; /* where in the descriptor */
    const NB_CHAR *name;
};

/* A button that opens a child form. */
struct VGA_FORM_OPENER {
    NB_USHORT member;
    const NB_CHAR *dialog; /* the name of its row */
};

/* A list of the items within the first record of the data. */
struct VGA_FORM_COLUMN {
    const records::FieldRow *field;
    const NB_CHAR *title; /* a literal of the description */
    NB_USHORT width;      /* characters */
};
struct VGA_FORM_LIST {
    NB_USHORT member; /* the manager that it is put into */
    const records::Nested *items;
    std::span<const VGA_FORM_COLUMN> columns;
    const NB_CHAR *editor; /* name of the child form that edits one item */
};

/* What a form has to know of the type of the records that it edits (formrecords.h). */
struct VGA_FORM_TYPE {
    NB_USHORT entry_size;
    NB_USHORT of_domain; /* flag: not of a node */
    const NB_VOID *(*entry)(const NB_VOID *record);
    NB_VOID *(*owner)(const NB_VOID *record);
    /* The record of that owner with the key that the entry has; null: none. */
    NB_VOID *(*find)(NB_VOID *owner, const NB_VOID *entry);
    /* The record's pointer to its dialog, and that of its owner, null where it has none. */
    VGA_DIALOG **(*slot)(NB_VOID *record);
    VGA_DIALOG **(*owner_slot)(NB_VOID *owner);
    /* Where verbs about the owner's records go, and the name of the node that answers there. */
    NB_ULONG (*target)(const NB_VOID *owner);
    NB_ULONG (*owner_handle)(const NB_VOID *owner); /* good while the owner lives */
    std::string (*answerer)(const NB_VOID *owner);
};

/* Settings of a node or of the domain, which the form's record is then.  They are read by a verb of
 * their own and changed by another with the same block. */
struct VGA_FORM_SETTINGS {
    const records::Settings *row;
    NB_USHORT base; /* in the data: where their block begins */
    /* What the model has of them: the answer to their query; all zeroes before it came. */
    const NB_VOID *(*kept)(const NB_VOID *record);
};

/* What comes behind the answer to a form's verb. */
enum VGA_FORM_STEP : NB_USHORT {
    VGA_FORM_DONE,
    VGA_FORM_MORE, /* another verb is under way */
    VGA_FORM_TOLD, /* it failed, the operator was told, and what was entered stays */
};

/* What a dialog declares.  All but the tables and sizes may be null.
 *
 * Functions get a form without a record or owner when those are gone; only `may_edit`, `refuses`,
 * `question`, `issue` and `act` are not called then.  Those of the fields and `arranged` are called
 * at every change of a field: they have no effect but their result. */
struct VGA_FORM_PLAN {
    VGA_FORM_KIND kind = VGA_FORM_EDIT;
    std::span<const VGA_FIELD> fields = {};
    std::span<const VGA_FORM_WIDGET> widgets = {};
    std::span<const VGA_FORM_OPENER> children = {};
    std::span<const VGA_FORM_LIST> lists = {};
    NB_USHORT pages = 1;
    NB_USHORT shown = 0, working = 0, wanted = 0, data_size = 0; /* in the descriptor */
    const VGA_FORM_TYPE *type = nullptr;     /* null: the dialog loads and issues by itself */
    const records::Schema *schema = nullptr; /* of the first record of the data */
    std::span<const VGA_FORM_SETTINGS> settings = {}; /* instead: what the data consist of */

    /* The record's last breath makes the dialog one that defines it anew; without the flag nothing
     * can be changed any more then. */
    NB_UCHAR defines = 0;
    NB_USHORT gone = 0;            /* message: what happened to the record; 0: the common one */
    const NB_CHAR *help = nullptr; /* key of messages about fields; null: the dialog's name */

    /* Sets what the data have besides the first record, which is there already: the record's entry,
     * or what a new one begins with. */
    NB_VOID (*load)(const VGA_FORM *form, NB_VOID *data) = nullptr;

    /* 0: the record can be looked at only.  An operator without rights never can do more. */
    NB_USHORT (*may_edit)(const VGA_FORM *form) = nullptr;

    /* The same where the operator can do something about it: the message, without arguments, that
     * says why, in the message line and over what is off; 0: it can be changed. */
    NB_USHORT (*refuses)(const VGA_FORM *form) = nullptr;

    /* What the fields one by one cannot know; may put the data in order, too. */
    VGA_FAULT (*check)(const VGA_FORM *form, NB_VOID *wanted) = nullptr;

    /* What to ask before the verb goes out, when all is checked and something was changed. */
    VGA_FAULT (*question)(const VGA_FORM *form) = nullptr;

    /* 1 for another record, `item`, of which the dialog shows something: it is loaded again when
     * that one changes, too. */
    NB_USHORT (*shows_too)(const VGA_FORM *form, const NB_VOID *item) = nullptr;

    /* Of a form about several records, whose record goes: another one to go on with; null: none. */
    NB_VOID *(*other)(const VGA_FORM *form) = nullptr;

    /* What the title calls the record; without it, the first field's text, and of settings whose
     * they are. */
    std::string (*subject)(const VGA_FORM *form) = nullptr;

    /* Issues the first verb about vga_form_wanted, with vga_form_handle as user data; 0 when it
     * could not be queued.  Without it nothing can be changed. */
    NB_USHORT (*issue)(VGA_FORM *form) = nullptr;

    /* In place of `issue`, of a form that asks how something is to be done: has it done as
     * vga_form_wanted says, also when nothing was changed.  The form closes then. */
    NB_VOID (*act)(VGA_FORM *form) = nullptr;

    /* Who gets the answer to the question; null: vga_form_answered. */
    VGA_MODAL_CB answered = nullptr;

    /* A verb succeeded: what comes next.  Without it, nothing. */
    VGA_FORM_STEP (*next)(VGA_FORM *form, const VGA_PROCESS_STATE *work) = nullptr;

    /* A verb failed.  After VGA_FORM_DONE, and without it, the operator is told why. */
    VGA_FORM_STEP (*failed)(VGA_FORM *form, const VGA_PROCESS_STATE *work) = nullptr;

    /* Of a status form: asks the node anew, as `issue` does; vga_form_verb_done ends it. */
    NB_USHORT (*refresh)(VGA_FORM *form) = nullptr;

    /* The fields were filled, or what is of use changed: for the dialog's peculiar widgets. */
    NB_VOID (*arranged)(VGA_FORM *form) = nullptr;
};

/* What is marked at a field. */
enum VGA_FORM_MARK : NB_UCHAR {
    VGA_MARK_NONE,
    VGA_MARK_WRONG, /* it was refused */
    VGA_MARK_OTHER, /* another administrator changed it meanwhile */
};

struct VGA_FORM {
    VGA_DIALOG common;
    const VGA_FORM_PLAN *plan;
    NB_USHORT read_only; /* nothing can be edited now */
    NB_USHORT refusal;   /* message: why, where the dialog itself says so; or 0 */
    NB_USHORT adding;    /* a new record; more of them follow when `repeat` is set */
    NB_USHORT repeat;
    NB_USHORT pending;   /* a verb is under way */
    NB_USHORT leaving;   /* OK was pressed: close when all is done */
    NB_USHORT confirmed; /* the question was answered with OK */
    NB_USHORT overwrite; /* so was the one about another administrator's changes */
    NB_USHORT filling;   /* the program is writing the fields */
    NB_USHORT page;      /* of a guided form, from 0; the summary is behind the last one */
    NB_USHORT gone;      /* the record went; the title says so */
    NB_USHORT renaming;  /* the form's own verbs take the record away, and bring it back renamed */
    Widget apply_button, reset_button, back_button, refresh_button, period;
    Widget message_line;
    XtIntervalId timer;        /* of a status form that asks by itself */
    time_t as_of;              /* when what it shows was so */
    const VGA_FORM_LIST *list; /* of the parent, whose item a child form edits; null: no item */
    NB_LONG item;              /* its number; as many as there are: a new one */
    Widget before;             /* had the keyboard when the verb went out */
    NB_CHAR title[64];         /* as the description has it */
    NB_UCHAR marks[VGA_FORM_MAX_FIELDS];
    NB_USHORT contested; /* flag: so did what a child form or a list has changed */
    NB_ULONG owner_handle;
};

/* For the table of windows: what is made of a dialog's description. */
struct VGA_FORM_ROW {
    const NB_CHAR *name;
    NB_USHORT desc_size;
    decltype(VGA_UID_DESC::get_widgets) get_widgets;
    decltype(VGA_UID_DESC::close_proc) close_proc;
};

/* How a form is opened. */
enum VGA_FORM_MODE : NB_USHORT {
    VGA_FORM_CHANGE, /* the record's properties or status */
    VGA_FORM_ADD,    /* one new record */
    VGA_FORM_REPEAT, /* new records, one after the other, until the operator has enough */
};

/* Slots of a row of gvga_uid_desc.  The build makes a get_widgets and a close_proc of each dialog's
 * own that call the first two. */
NB_USHORT vga_form_get_widgets(VGA_DIALOG *desc, const VGA_FORM_PLAN *plan);
NB_VOID vga_form_close_proc(VGA_DIALOG *desc);
NB_VOID vga_form_record_changed(VGA_DIALOG *desc, NB_VOID *item, VGA_RECORD_CHANGE what);
/* Asks before more than three changes go. */
NB_USHORT vga_form_may_close(VGA_DIALOG *desc);

/* Opens a form over `parent` and shows it; raises the one of that row that is open on the record
 * already, or on another new one of the same owner.  `record` is what it shows, null for a new one;
 * `owner` is what a new one will belong to (a node, a port, a PU, the domain), null with a record.
 * Returns the form; null when there is none to be had (the reason was shown). */
VGA_FORM *vga_form_open(NB_USHORT dialog_id, VGA_DIALOG *parent, NB_VOID *record, NB_VOID *owner,
                        VGA_FORM_MODE mode);

/* Opens a form of a new record that has what `record` has, but for its key, which stays to be
 * entered.  REQUIRES: a form whose plan has a type and a schema. */
VGA_FORM *vga_form_open_copy(NB_USHORT dialog_id, VGA_DIALOG *parent, const NB_VOID *record);

/* Opens a child form over the form whose working data it edits, or one item of which it edits. */
VGA_FORM *vga_form_open_child(VGA_FORM *parent, NB_USHORT dialog_id);
VGA_FORM *vga_form_open_item(VGA_FORM *parent, const VGA_FORM_LIST *list, NB_LONG item);

/* The form itself, or the one whose data a child form edits in the end. */
const VGA_FORM *vga_form_root(const VGA_FORM *form);

/* The record of that form, or null for a new one or when it is gone; what it belongs to, or null
 * when that is gone. */
NB_VOID *vga_form_record(const VGA_FORM *form);
NB_VOID *vga_form_owner(const VGA_FORM *form);

/* The user data of a form's verbs. */
inline NB_ULONG vga_form_handle(const VGA_FORM *form) {
    return form->common.handle;
}

/* The dialog half of a completion: the completion routine calls it behind the model half.  Nothing
 * when the form was closed meanwhile.  After success issues the next verb, or closes, clears for
 * the next entry, or shows what is so now; after a failure shows message 167 with the reason, and
 * the operator can try again. */
NB_VOID vga_form_verb_done(const VGA_PROCESS_STATE *work);

/* The answer to a form's question: the callback of the box, or what a plan's `answered` calls. */
NB_VOID vga_form_answered(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG handle);

/* The hook of that name: the form that waits for the verb, if any does, says that the node is gone,
 * and the operator can try again. */
NB_VOID vga_form_verb_purged(NB_USHORT opcode, NB_ULONG user_data);

/* The dialog's data. */
inline NB_VOID *vga_form_data(const VGA_FORM *form, NB_USHORT member) {
    return const_cast<NB_UCHAR *>(reinterpret_cast<const NB_UCHAR *>(form)) + member;
}
inline NB_VOID *vga_form_shown(const VGA_FORM *form) {
    return vga_form_data(form, form->plan->shown);
}
inline NB_VOID *vga_form_working(const VGA_FORM *form) {
    return vga_form_data(form, form->plan->working);
}
inline NB_VOID *vga_form_wanted(const VGA_FORM *form) {
    return vga_form_data(form, form->plan->wanted);
}

/* How many fields no longer read as they were filled, and parts that child forms and lists changed.
 */
NB_USHORT vga_form_changes(const VGA_FORM *form);

/* The label of a field, without its colon. */
std::string vga_form_label(const VGA_FORM *form, NB_USHORT field);

/* What a field would show of the data, as the operator reads it. */
std::string vga_form_text_of(const VGA_FORM *form, NB_USHORT field, const NB_VOID *data);

/* Shows a fault over the form, goes to its field and marks it.  Always 0. */
NB_USHORT vga_form_refuse(VGA_FORM *form, const VGA_FAULT &fault);

/* For what changes the working data by itself (a list of rows): shows what follows. */
NB_VOID vga_form_working_changed(VGA_FORM *form);

#endif
