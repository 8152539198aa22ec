/* What a list window can be asked for: one row a command, made from its line in the window's
 * description (resources/windows), and the rules by which it is on or off.
 *
 * What can be done follows from a situation and the rows alone, so that it can be tried without a
 * display.  Of several reasons against a command the one wins that stands whatever the operator
 * does: not in this release, not for this kind of thing, no right; only then what he can change. */
#ifndef COMMANDS_H
#define COMMANDS_H

#include "model.h"

struct VGA_LIST_WINDOW;

/* What a window is in, as far as its commands depend on it. */
struct VGA_SITUATION {
    NB_USHORT of_domain = 0;                /* flag: it shows the domain, not one node */
    const VGA_NODE *node = nullptr;         /* that it shows; null: none */
    NB_USHORT read_only = 0;                /* flag: the operator may look but not change */
    NB_USHORT list_current = 0;             /* flag: a list is current */
    NB_SHORT type = VGA_VIEWER_SELECT_NONE; /* viewer type of the selected lines */
    NB_LONG count = 0;                      /* of them */
    const NB_VOID *record = nullptr;        /* of the line that stands for the selection */
    NB_USHORT start_refusal = 0;            /* message: why what is selected, or without a */
    NB_USHORT stop_refusal = 0;             /* selection the node, cannot be; 0: it can */
};

/* What a command is for. */
enum VGA_SCOPE : NB_UCHAR {
    VGA_FOR_WINDOW,    /* the node or the domain, whatever is selected */
    VGA_FOR_LIST,      /* the current list: on exactly while there is one */
    VGA_FOR_SELECTION, /* the selected lines */
};

/* Sets of states of a node. */
#define VGA_STATE_SET(state) static_cast<NB_UCHAR>(1U << (state))
#define VGA_READABLE_STATES                                                                        \
    (VGA_STATE_SET(NAP_NODE_STOPPED) | VGA_STATE_SET(NAP_NODE_STARTING) |                          \
     VGA_STATE_SET(NAP_NODE_STOPPING) | VGA_STATE_SET(NAP_NODE_ACTIVE))
#define VGA_REACHABLE_STATES (VGA_READABLE_STATES | VGA_STATE_SET(NAP_NODE_UNCONFIGURED))
#define VGA_ANY_STATE        0xFF

#define VGA_NO_DIALOG 0xFFFF

struct VGA_COMMAND_ROW {
    NB_USHORT command;   /* equals the index */
    const NB_CHAR *item; /* its menu item, and its entry in the lists' menu; null: none */
    const NB_CHAR *popup;
    VGA_SCOPE scope = VGA_FOR_WINDOW;
    NB_UCHAR changes = 0; /* flag: off for someone who may only look */
    NB_UCHAR told = 0;    /* flag: on for such a one, who is told when he asks for it */
    NB_UCHAR states = VGA_READABLE_STATES;               /* of the node; for VGA_FOR_WINDOW */
    NB_UCHAR NAP_QUERY_NODE_VERB::*capability = nullptr; /* what the node must support */
    const NB_USHORT *offered =
        nullptr;                     /* option of the program; while 0 the command is not shown */
    NB_USHORT opens = VGA_NO_DIALOG; /* the window that it is about, and that it opens */
    /* What else stands in the way: a message, or 0. */
    NB_USHORT (*refuses)(const VGA_SITUATION &situation) = nullptr;
    NB_VOID (*action)(VGA_LIST_WINDOW *window) = nullptr; /* instead of opening */
};

/* The message that says why a command cannot be carried out now; 0: it can. */
NB_USHORT vga_refusal(const VGA_SITUATION &situation, const VGA_COMMAND_ROW &row);

/* For `refuses`: what most windows have.  They ask the line's type (linerules.h), or the state. */
NB_USHORT vga_refuses_start(const VGA_SITUATION &situation);
NB_USHORT vga_refuses_stop(const VGA_SITUATION &situation);
NB_USHORT vga_refuses_zoom(const VGA_SITUATION &situation);
NB_USHORT vga_refuses_status(const VGA_SITUATION &situation);
NB_USHORT vga_refuses_copy(const VGA_SITUATION &situation);
NB_USHORT vga_refuses_delete(const VGA_SITUATION &situation);

#endif
