/* Node base library: the services that the administration program takes from the node software's
 * base.  A site can link its own library with this interface instead of the one in platform/base.
 *
 * Plain C, one thread.  Unless a function says otherwise it keeps no pointer that it is given.
 * EBCDIC is code page 037; "local" is ISO 8859-1 for its invariant part. */
#ifndef NBBASE_H
#define NBBASE_H

#include "nbtypes.h"

NB_EXTERN_C_BEGIN

/* Where things are installed. */

#define NB_DEFAULT_PREFIX "/opt/corvid/sna"
#define NB_MAX_PREFIX     60

/* The installation prefix without a trailing slash: the environment's SNA_PREFIX when it is set, is
 * absolute and has at most NB_MAX_PREFIX characters, else NB_DEFAULT_PREFIX.  Read once, at the
 * first call.  The text belongs to the library and never changes. */
const NB_CHAR *nba_prefix(NB_VOID);

/* Returns 1 when SNA_PREFIX is not set, is empty, or names a folder that can be read and that fits.
 * Else 0, with a line on standard error that begins with `program` and says what is wrong: a
 * program then ends, since it would work on another installation than the one that was meant. */
NB_USHORT nba_check_prefix(const NB_CHAR *program);

/* Adds the prefix's application-defaults folder to the end of the environment's XFILESEARCHPATH
 * (of the toolkit's own default when there is none).  To be called before the toolkit starts. */
NB_VOID nba_set_app_defaults_path(NB_VOID);

/* Handles. */

/* A handle is a 32-bit value that stands for a pointer across asynchronous calls.  A destroyed
 * handle never validates again: 2^32 others are given out before its value comes back. */

/* Makes the handle manager ready; any handle given out before is forgotten.
 * Returns 1, or 0 when there is no memory. */
NB_USHORT nba_hm_initialise(NB_VOID);

/* Returns a new handle for the pointer (not null), never 0; 0 when none is to be had.  Works
 * without nba_hm_initialise, too. */
NB_ULONG nba_create_handle(NB_VOID *object);

/* Returns the pointer that the handle stands for, or null for 0 and for any handle that was never
 * given out or has been destroyed. */
NB_VOID *nba_validate_handle(NB_ULONG handle);

/* Ends a handle.  0 and stale handles are ignored. */
NB_VOID nba_destroy_handle(NB_ULONG handle);

/* Queues. */

/* A circular doubly linked list.  The head and every entry hold an NB_LQE; an empty list is a head
 * that points at itself.  OWNS: nothing, the entries are the caller's. */
typedef struct nb_lqe {
    struct nb_lqe *next;
    struct nb_lqe *previous;
} NB_LQE;

#define NB_INIT_LIST(head)  ((head).next = (head).previous = &(head))
#define NB_EMPTY_LIST(head) ((head).next == &(head))

/* Puts an entry that is in no list at the tail. */
NB_VOID nba_add_to_q_tail(NB_LQE *head, NB_LQE *entry);

/* Returns the first entry and leaves it in the list; null for an empty list. */
NB_LQE *nba_get_q_head(const NB_LQE *head);

/* Takes an entry out of the list that it is in and makes it point at itself. */
NB_VOID nba_remove_from_q(NB_LQE *entry);

/* Code page. */

/* Convert `length` bytes in place.  A character without a counterpart becomes a NUL. */
NB_VOID nba_ebcdic_to_local(NB_UCHAR *text, NB_USHORT length);
NB_VOID nba_local_to_ebcdic(NB_UCHAR *text, NB_USHORT length);

#define NB_EBCDIC_TYPE_AE 4 /* letters of both cases, digits, @ # $ and the period */
#define NB_EBCDIC_TYPE_A  8 /* A-Z, 0-9, @ # $, no digit first */

/* Returns 1 when every one of the `length` EBCDIC bytes belongs to the character set `type` (one of
 * the two above), else 0.  An empty name is valid; an unknown type never is. */
NB_USHORT nba_check_ebcdic(NB_USHORT type, const NB_UCHAR *text, NB_USHORT length);

/* Message catalogue. */

#define V0_CATALOG_TEMPLATE "/lib/nls/msg/%L/sna.cat" /* behind the prefix */

/* Opens the message catalogue of the locale that LANG names, else the one of the locale "C".
 * Returns 1 and a catalogue number of 0 or more, or 0 and -1. */
NB_USHORT v0_initialise_message_catalog(NB_INT *catalog);

/* Returns the text of a message (it stays the library's, until the catalogue is closed), or null
 * when the catalogue has no such message. */
const NB_CHAR *v0_get_message(NB_INT catalog, NB_INT set, NB_INT message);

/* Closes the catalogue and sets the number to -1; -1 is ignored. */
NB_VOID v0_close_message_catalog(NB_INT *catalog);

/* Copies at most `size` - 1 bytes of the text, never half a character of the current locale, and
 * always a terminator (nothing when `size` is 0).  Returns the number of bytes copied. */
NB_USHORT v0_mb_strncpy(NB_CHAR *out, const NB_CHAR *text, NB_USHORT size);

/* Problem log. */

/* One line a record: time, process, identifier, what it means, detail, and the values with their
 * names where the identifier has any.  The file is SNA_LOG in the environment, else
 * "<prefix>/var/log/sna.err".  What cannot be written there goes to the user's own
 * "quiladmin/sna.err" in the folder XDG_STATE_HOME, else in "$HOME/.local/state", and what cannot
 * be written there either to standard error.  A record that is the same but for its time is counted
 * for a minute in place of being written; the count follows before the next one, and at the end.  A
 * file that would grow beyond SNA_LOG_SIZE kilobytes (16384) is renamed to "<file>.old", in place
 * of one there, and a new one begun.  The level is SNA_LOG_LEVEL: "none", "problem", "exception"
 * (the default) or "all".
 *
 * `format` holds one word a value, separated by blanks:
 *   s text | i, l decimal | x, lx hexadecimal (NB_INT or NB_ULONG, passed as 32 bits)
 *   ca NB_INT width, then a blank- or NUL-padded array | cs NB_INT width, then an array cut at its
 * NUL A null format means no values.  An unknown word ends the line with a note; it never reads on.
 */
NB_VOID nba_pd_print_problem(NB_ULONG identifier, NB_USHORT detail, const NB_CHAR *format, ...);
NB_VOID nba_pd_print_exception(NB_ULONG identifier, NB_USHORT detail, const NB_CHAR *format, ...);

/* The file that a record would go to now; null: standard error.  Makes neither file nor folder.
 * The text is the library's and good until the next call. */
const NB_CHAR *nba_pd_log_file(NB_VOID);

/* Sets the log's file (null: standard error) and level for the rest of the process; there is no
 * other file then. */
#define NB_PD_NONE      0
#define NB_PD_PROBLEM   1
#define NB_PD_EXCEPTION 2
#define NB_PD_ALL       3
NB_VOID nba_pd_set_log(const NB_CHAR *file, NB_USHORT level);

/* Assertions. */

/* Writes a problem record that names the file, the line and the broken expression, and returns. */
NB_VOID v0_assert(const NB_CHAR *file, NB_INT line, const NB_CHAR *text);

/* As above, then calls the fatal handler with the same arguments: `abort` unless one was set.  The
 * caller returns a safe value at once behind it. */
typedef NB_VOID (*NB_FATAL_HANDLER)(const NB_CHAR *file, NB_INT line, const NB_CHAR *text);
NB_VOID v0_assert_fatal(const NB_CHAR *file, NB_INT line, const NB_CHAR *text);

/* Returns the handler that was set before; null means `abort`. */
NB_FATAL_HANDLER v0_set_fatal_handler(NB_FATAL_HANDLER handler);

/* For a function that goes on only if the expression holds: 1, or 0 with the assertion reported.
 * `file` is the module's name in the report. */
#define NB_HOLDS(file, expression)                                                                 \
    ((expression) ? 1 : (v0_assert((file), __LINE__, #expression), 0))
#define NB_HOLDS_FATAL(file, expression)                                                           \
    ((expression) ? 1 : (v0_assert_fatal((file), __LINE__, #expression), 0))

#define NB_ASSERT(expression)                                                                      \
    ((expression) ? (NB_VOID)0 : v0_assert(__FILE__, __LINE__, #expression))
#define NB_ASSERT_FATAL(expression)                                                                \
    ((expression) ? (NB_VOID)0 : v0_assert_fatal(__FILE__, __LINE__, #expression))

/* Trace control. */

/* Byte 0, bit 0 suppresses the X error records; byte 8, bit 0 the exception records of the model
 * build.  All bytes are 0 unless SNA_TRACE_CONTROL holds hexadecimal digits for them. */
typedef struct nb_trace_control {
    NB_UCHAR flags[16];
} NB_TRACE_CONTROL;

extern NB_TRACE_CONTROL ptrc;

/* Scheduler hook. */

/* The library's inputs are file descriptors that its owner's main loop watches.  The two functions
 * have the shapes of XtAppAddInput and XtRemoveInput; `context` is handed to the first. */
typedef NB_VOID (*NB_INPUT_PROC)(NB_VOID *data, NB_INT *fd, unsigned long *input_id);
typedef unsigned long (*NB_ADD_INPUT)(NB_VOID *context, NB_INT fd, NB_VOID *condition,
                                      NB_INPUT_PROC proc, NB_VOID *data);
typedef NB_VOID (*NB_REMOVE_INPUT)(unsigned long input_id);

/* Tells the library which loop schedules it.  Inputs that were waiting for a scheduler are
 * registered at once; a null `add` unregisters all. */
NB_VOID vpm_asm_use_xt_sched(NB_VOID *context, NB_ADD_INPUT add, NB_REMOVE_INPUT remove);

/* At most this many frames are handled in one round of the loop (1 to 1000; others are ignored);
 * what is left over is handled in the next.  The limit at start is 10. */
NB_VOID vpm_set_io_limit(NB_USHORT frames);
NB_USHORT vpm_get_io_limit(NB_VOID);

/* For libraries on top of this one: watch a descriptor for reading (or, with `writable`, for
 * writing).  `proc` gets `data`.  Returns an identifier for vpm_remove_input, never 0, or 0 when
 * there is no memory. */
typedef NB_VOID (*NB_READY_PROC)(NB_VOID *data);
NB_ULONG vpm_add_input(NB_INT fd, NB_USHORT writable, NB_READY_PROC proc, NB_VOID *data);
NB_VOID vpm_remove_input(NB_ULONG input);

/* Domain. */

/* 1 when this machine belongs to a client/server domain: the file "<prefix>/etc/domain" that the
 * node software keeps says "client_server = yes".  0 when it says no, or there is no such file. */
NB_USHORT vsm_is_client_server(NB_VOID);

NB_EXTERN_C_END

#endif
