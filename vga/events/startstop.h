/* Starting and stopping, for windows: the right verb for what a line stands for and the state that
 * it is in.
 *
 * A line of a host or downstream link stands for the link station and for the PU that is on it: a
 * start of an active link starts the PU.  A DLC has no line; it starts with a port that needs it.
 * Sessions of modes are activated by number and deactivated all together; of an LU its sessions can
 * be ended.  The states that follow come as indications.  Several at once, with an account of what
 * became of each: startstopbatch.h.  What stops with something: startstopeffects.h. */
#ifndef STARTSTOP_H
#define STARTSTOP_H

#include "model.h"
#include "verbqueue.h"
#include <string>
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
    NB_USHORT sessions = 1; /* of a mode: so many more are activated by a start */
};

/* What a line (null: none) stands for; VGA_OPERABLE_NONE for one that cannot be operated. */
VGA_RESOURCE vga_resource_of_line(const VGA_VIEWER_ITEM *item);

/* What the selected lines of a list stand for, in the order of the list; of the first `most`. */
std::vector<VGA_RESOURCE> vga_selected_resources(const VGA_VIEWER_ROOT *root,
                                                 NB_LONG most = INT32_MAX);

/* 0 when the operation can be asked for now; else the number of the message that says why not.  Of
 * several reasons the first that holds: the kind never can, no connection, no right to change, the
 * node is not active, the state.  Cheap enough to be called for every selected line.  What can be
 * stopped at all can be stopped immediately: that is what a command Stop asks about. */
NB_USHORT vga_refuses_operation(const VGA_RESOURCE &resource, VGA_OPERATION operation);

/* 0 when there is a connection to the node, else the message that says that there is none. */
NB_USHORT vga_refuses_unconnected(const VGA_NODE &node);

/* What has to be active before the start can succeed, and is not: the DLC of a port, the port of a
 * link station, the link station of a PU.  VGA_OPERABLE_NONE: nothing. */
VGA_RESOURCE vga_needed_first(const VGA_RESOURCE &resource);

/* Issues the verb.  Returns 0, or the message number as above with nothing issued; requests an exit
 * when the verb cannot be queued.  The completion routine calls vga_verb_completed (completions.h).
 */
NB_USHORT vga_operate(const VGA_RESOURCE &resource, VGA_OPERATION operation, NB_ULONG user_data,
                      VGA_COMPLETION completion);

/* The handle of the record, the node that it belongs to, and its state: NAP_NOT_ACTIVE and the
 * like, of a node NAP_NODE_STOPPED and the like. */
NB_ULONG vga_handle_of(const VGA_RESOURCE &resource);
VGA_NODE *vga_node_of(const VGA_RESOURCE &resource);
NB_ULONG vga_state_of(const VGA_RESOURCE &resource);

/* In words, in the locale's characters: its name ("ETH0"; of a mode "#INTER, CLAIMS to
 * NETA.NORTH"), its kind and name ("port ETH0"), and so many of its kind ("3 ports"). */
std::string vga_name_of(const VGA_RESOURCE &resource);
std::string vga_resource_in_words(const VGA_RESOURCE &resource);
std::string vga_count_in_words(VGA_OPERABLE kind, NB_ULONG count); /* NONE: sessions */

#endif
