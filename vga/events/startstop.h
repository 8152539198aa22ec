/* Starting and stopping, for windows: the right verb for what a line stands for and the state that
 * it is in.
 *
 * A line of a host or downstream link stands for the link station and for the PU that is on it: a
 * start of an active link starts the PU.  Sessions of modes are activated one by one and
 * deactivated all together; of an LU its sessions can be ended.  The states that follow come as
 * indications.
 *
 * The window gives the completion routine: it calls vga_verb_completed (completions.h), and shows a
 * failure in the verb's words. */
#ifndef STARTSTOP_H
#define STARTSTOP_H

#include "model.h"
#include "verbqueue.h"
#include <vector>

enum VGA_OPERATION : NB_USHORT {
    VGA_START,
    VGA_STOP_ORDERLY,   /* waits for sessions to end */
    VGA_STOP_IMMEDIATE, /* ends them */
};

/* What can be started or stopped, and its record. */
enum VGA_OPERABLE : NB_USHORT {
    VGA_OPERABLE_NONE,
    VGA_OPERABLE_NODE,     /* VGA_NODE */
    VGA_OPERABLE_DLC,      /* VGA_DLC */
    VGA_OPERABLE_PORT,     /* VGA_PORT */
    VGA_OPERABLE_LS,       /* VGA_LS */
    VGA_OPERABLE_LOCAL_PU, /* VGA_LOCAL_PU */
    VGA_OPERABLE_DOWN_PU,  /* VGA_DOWN_PU */
    VGA_OPERABLE_MODE,     /* VGA_MODE */
    VGA_OPERABLE_LU62,     /* VGA_LU62: stop only */
    VGA_OPERABLE_LU03,     /* VGA_LU03: stop only */
};
struct VGA_RESOURCE {
    VGA_OPERABLE kind;
    NB_VOID *record;
};

/* What a line (null: none) stands for; VGA_OPERABLE_NONE for one that cannot be operated. */
VGA_RESOURCE vga_resource_of_line(const VGA_VIEWER_ITEM *item);

/* What the selected lines of a list stand for, in the order of the list. */
std::vector<VGA_RESOURCE> vga_selected_resources(const VGA_VIEWER_ROOT *root);

/* 0 when the operation can be asked for now; else the number of the message that says why not
 * (no connection, no right to change, wrong kind, wrong state). */
NB_USHORT vga_refuses_operation(const VGA_RESOURCE &resource, VGA_OPERATION operation);

/* Issues the verb.  Returns 0, or the message number as above with nothing issued; requests an exit
 * when the verb cannot be queued. */
NB_USHORT vga_operate(const VGA_RESOURCE &resource, VGA_OPERATION operation, NB_ULONG user_data,
                      VGA_COMPLETION completion);

/* The same for each that can be; the others are passed over.  Returns 0 when a verb was issued,
 * else why the first could not be: VGA_MSG_NODEW_SELECT_FIRST when there is none. */
NB_USHORT vga_operate_all(const std::vector<VGA_RESOURCE> &resources, VGA_OPERATION operation,
                          NB_ULONG user_data, VGA_COMPLETION completion);

#endif
