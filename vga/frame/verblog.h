/* The verb log: a line for each verb on its way to the node software, for each answer, for each
 * block that comes unasked, and for each chain of the build that is done.  Off unless the resource
 * ".verbLog" names a file; while it is off, a call costs one test.  Lines are appended and flushed
 * one by one:
 *
 *   date time | what happened | target | verb, opcode [| codes [| elapsed]] [| what it is about]
 *
 * Verbs and codes stand there by the names they have in the code, codes in hexadecimal too.  The
 * time is that from issuing to the answer.  Of a block's contents only names, states and counts are
 * shown, never what could be a password.
 * OWNS: the file.  Blocks are only read, during the call. */
#ifndef VERBLOG_H
#define VERBLOG_H

#include "nbtypes.h"
#include "nofrec.h"
#include <cstdio>

enum VGA_VERB_EVENT : NB_USHORT {
    VGA_VERB_WAITING, /* queued, held back behind a purged verb */
    VGA_VERB_ISSUED,
    VGA_VERB_COMPLETED,
    VGA_VERB_COMPLETED_AT_ONCE, /* when it becomes known; its later handling makes no line */
    VGA_VERB_PURGED,            /* forgotten: one in flight still completes, for nobody */
    VGA_VERB_UNSOLICITED,       /* an indication, or a copy of a verb issued elsewhere */
};

extern FILE *gvga_verb_log; /* null: off */

/* Reads the resource (a path of at most 200 bytes) and opens the file, to append; a log that is
 * open is closed first.  When the file cannot be opened an exception record says why, and the log
 * is off. */
NB_VOID vga_open_verb_log(NB_VOID);

/* Closes the file.  Nothing when the log is off. */
NB_VOID vga_close_verb_log(NB_VOID);

/* Writes the line of an event.
 * REQUIRES: the log is on; the block has the length that the verb table states.  A block whose verb
 * is not in the table is shown by its header alone.  A file that can no longer be written ends the
 * log with an exception record. */
NB_VOID vga_write_verb_log(VGA_VERB_EVENT event, NB_ULONG target, const NAP_VCB *vcb);

/* Writes how far a build is: `name` (null: the domain's) is the node's, text of at most 128 bytes;
 * `flags` are the start-up flags, "1" for each chain that is outstanding and "0" for each that is
 * done.  Nothing when the log is off. */
NB_VOID vga_log_startup(const NB_CHAR *name, const NB_CHAR *flags);

inline NB_VOID vga_log_verb(VGA_VERB_EVENT event, NB_ULONG target, const NAP_VCB *vcb) {
    if (gvga_verb_log != nullptr) {
        vga_write_verb_log(event, target, vcb);
    }
}

#endif
