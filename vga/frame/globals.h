/* What every module of the program may read: the options and the exit request.
 * Set by start-up (vgamain, startup) and the option reader; nobody else writes them, but for the
 * exit request, which is made through vga_request_exit. */
#ifndef GLOBALS_H
#define GLOBALS_H

#include "nbbase.h"
#include "nbtypes.h"

/* Options. */

#define VGA_SUPPORTED_CPIC          0
#define VGA_SUPPORTED_RJE           1
#define VGA_SUPPORTED_CLIENT_SERVER 2
#define VGA_SUPPORTED_DIRECTORY     3
#define VGA_SUPPORTED_APPLY         4
#define VGA_SUPPORTED_COUNT         5
extern NB_USHORT gvga_supported[VGA_SUPPORTED_COUNT];

#define VGA_LEAD_DIALOG_COUNT 6
struct VGA_LEAD_DIALOG {
    NB_USHORT offered;
    NB_CHAR resource[62];
};
extern VGA_LEAD_DIALOG gvga_lead_dialogs[VGA_LEAD_DIALOG_COUNT];

/* DLC implementation number of each link type on this platform; 0: the type is not offered. */
extern NB_USHORT gvga_platform;
extern NB_USHORT gvga_impl_sdlc, gvga_impl_qllc, gvga_impl_tr, gvga_impl_fddi, gvga_impl_ether,
    gvga_impl_fr, gvga_impl_chnl, gvga_impl_ip, gvga_impl_mpc, gvga_impl_mpc_plus;

extern NB_ULONG gvga_querybuf_size; /* bytes, 2048..65535 */
extern NB_CHAR gvga_web_browser[201];
extern NB_CHAR gvga_verb_log_file[201]; /* empty: verbs are not logged */
extern NB_CHAR gvga_model_file[201];    /* as windows/modelfile.h says; empty: none */
extern NB_USHORT gvga_variant_x, gvga_variant_y;
extern NB_USHORT gvga_display_names; /* titles carry the dialog's UID name */
extern NB_USHORT gvga_read_only;     /* the operator may look but not change */
extern NB_USHORT gvga_look_only;     /* he asked for that himself: no verb that changes goes out */
extern NB_USHORT gvga_closing;       /* the orderly close is under way */
extern const NB_UCHAR gvga_null_name[2];
extern const NB_CHAR gvga_version[]; /* of the program */

/* Exit request. */

#define VGA_EXIT_NORMAL        (-1)
#define VGA_EXIT_INTERNAL      1
#define VGA_EXIT_USAGE         33
#define VGA_EXIT_VERB_FAILED   164
#define VGA_EXIT_START_UP      165
#define VGA_EXIT_NO_NODE       166
#define VGA_EXIT_SHUTTING_DOWN 167
#define VGA_EXIT_UNAVAILABLE   169

extern NB_LONG gvga_exit_code; /* 0: keep running */
extern NB_ULONG gvga_exit_subcode;
extern const NB_CHAR *gvga_exit_file;
extern NB_INT gvga_exit_line;

/* Asks the program to stop after the current round of the main loop.  A request that is already
 * there stays: the first reason is the one that is reported.  `file` must outlive the process. */
NB_VOID vga_request_exit(NB_LONG code, NB_ULONG subcode, const NB_CHAR *file, NB_INT line);

/* For the fatal handler of assertions: internal error at that place. */
NB_VOID vga_request_exit_fatal(const NB_CHAR *file, NB_INT line, const NB_CHAR *text);

#define VGA_EXIT(code, subcode) vga_request_exit((code), (subcode), __FILE__, __LINE__)

/* The exit points whose place is named the same in every release, wherever the code stands today:
 * support staff look them up by it. */
struct VGA_EXIT_POINT {
    const NB_CHAR *file;
    NB_INT line;
};
extern const VGA_EXIT_POINT gvga_exit_bad_indication, gvga_exit_back_end, gvga_exit_system_window,
    gvga_exit_node_window, gvga_exit_no_node, gvga_exit_closed, gvga_exit_closed_later,
    gvga_exit_report_read;

/* Likewise, the place of the assertion about an indication that nothing handles. */
extern const VGA_EXIT_POINT gvga_unhandled_indication;

#define VGA_EXIT_AT(code, subcode, point)                                                          \
    vga_request_exit((code), (subcode), (point).file, (point).line)

#endif
