/* Deleting what is selected, with all that goes with it: a plan, the words for it, and a run.
 *
 * A plan says what would be deleted, before anything is.  What refers to a resource goes before it;
 * what is active is stopped first, at once.  A run issues the verbs, a few at a time.  What the
 * node refuses stays, and so does what it depends on; the rest goes on.  The model follows each
 * answer, so that lines go when the node says so.
 *
 * Plans and runs hold handles, keys and names, no pointers to records: what went meanwhile counts
 * as deleted.  Texts are in the locale's characters. */
#ifndef DELETION_H
#define DELETION_H

#include "model.h"
#include "schema.h"
#include "startstop.h"
#include "verbqueue.h"
#include <array>
#include <memory>
#include <string>
#include <vector>

/* What can be deleted, by its record: NAME is VGA_DELETE_NAME, RECORD the type of the record. Those
 * of an upper layer's interest have a line type or a window; the others go with something. */
/* clang-format off */
#define VGA_DELETABLES(ROW) \
    ROW(DLC, VGA_DLC) ROW(PORT, VGA_PORT) ROW(LS, VGA_LS) ROW(CN, VGA_CN) ROW(CN_PORT, VGA_CN_PORT) \
    ROW(PU, VGA_LOCAL_PU) ROW(DOWN_PU, VGA_DOWN_PU) ROW(LU03, VGA_LU03) ROW(DOWN_LU, VGA_DOWN_LU) \
    ROW(LU62, VGA_LU62) ROW(ROUTING, VGA_LS_ROUTING) ROW(PASSWORD, VGA_SLSEC_DEF) \
    ROW(USERID, VGA_CLSEC_DEF) ROW(MODE, VGA_MODE_DEF) ROW(TIMEOUT, VGA_LU62_TIMEOUT) \
    ROW(COS, VGA_COS) ROW(REM_SYS, VGA_REM_SYS) ROW(PLU, VGA_REM_PLU) ROW(DIRECTORY, VGA_DIR) \
    ROW(PLU_DEF, VGA_REM_PLU) ROW(PRIMARY_LINE, VGA_PRIMARY_LINE) ROW(PRIMARY_LU, VGA_PRIMARY_LU0) \
    ROW(TP, VGA_TP_DEF) ROW(TP_LOAD, VGA_TP_LOAD_INFO) ROW(ACCESS_LIST, VGA_ACCESS_LIST) \
    ROW(TN_CLIENT, VGA_TN_CLIENT) ROW(TN_ASSOC, VGA_TN_ASSOC) ROW(TN_REDIRECT, VGA_TN_REDIRECT) \
    ROW(POOL, VGA_SYS_POOL) ROW(NODE_POOL, VGA_POOL) ROW(POOL_LU, VGA_POOL_LU) ROW(USER, VGA_USER) \
    ROW(CPIC, VGA_CPIC) ROW(RJE, VGA_RJE_WKSTN) ROW(TN_SESSION, VGA_TN_SESS) \
    ROW(USER_SESSION, VGA_USER_SESSION) ROW(SESSION, VGA_LU03)
/* clang-format on */

#define VGA_DELETABLE_KIND(name, record) VGA_DELETE_##name,
enum VGA_DELETABLE : NB_USHORT { VGA_DELETABLES(VGA_DELETABLE_KIND) VGA_DELETE_NOTHING };
#undef VGA_DELETABLE_KIND

/* How many of each. */
using VGA_KIND_COUNTS = std::array<NB_ULONG, VGA_DELETE_NOTHING>;

struct VGA_TO_DELETE {
    VGA_DELETABLE kind;
    NB_VOID *record;
};

/* What a line of that viewer type with that record stands for; VGA_DELETE_NOTHING for one that is
 * never deleted. */
VGA_TO_DELETE vga_to_delete(NB_SHORT type, NB_VOID *record);

/* What the selected lines of a list stand for, in the order of the list. */
std::vector<VGA_TO_DELETE> vga_selected_to_delete(const VGA_VIEWER_ROOT *root);

/* Why it cannot be deleted: the number of a message, 0: it can, as far as the model knows. */
NB_USHORT vga_refuses_deletion(const VGA_TO_DELETE &what);

/* One step of a plan: a resource that goes. */
struct VGA_DELETION_ITEM {
    VGA_DELETABLE kind;
    size_t line = 0;         /* the line that it goes with: its index */
    NB_LONG owner = -1;      /* item that can go only behind this one; -1: none */
    NB_LONG stopper = -1;    /* item whose stop this one waits for; -1: none */
    NB_LONG refers = -1;     /* item that it names, and that goes behind it; -1: none */
    NB_LONG after = -1;      /* item that changes the same entry before; -1: none */
    size_t end = 0;          /* items from the next up to this one go with it */
    NB_ULONG node = 0;       /* its handle; 0: it is of the domain */
    NB_USHORT by_itself = 0; /* flag: the node deletes it with its owner */
    NB_USHORT stops = 0;     /* flag: active now, so it is stopped first */
    NB_ULONG sessions = 0;   /* that end with it and with no other item */
    NB_UCHAR entry[NAP_MAX_KEY + 2] = {}; /* the beginning of its list entry: its key */
    std::string part = {}; /* of a part of the entry: what tells it from the others */
    std::string name = {};

    /* Of the run. */
    enum : NB_UCHAR { WAITS, STOPPING, STOPPED, DELETING, GONE, REFUSED, CANCELLED } phase = WAITS;
    size_t below = 0;        /* items that have to go before this one and did not yet */
    std::string reason = {}; /* why it stays; empty: it goes */
};

/* A selected line, which is asked about. */
struct VGA_DELETION_LINE {
    VGA_DELETABLE kind;
    std::string name;
    std::string reason;    /* why it is left alone; empty: it is not */
    size_t item, end;      /* its items: itself, and those that go with it */
    VGA_KIND_COUNTS with;  /* what goes with it */
    VGA_KIND_COUNTS stops; /* what is stopped first, itself too */
    NB_ULONG sessions;     /* that end */
    NB_USHORT wanted;      /* flag: the operator agreed; 1 at first */
};

struct VGA_DELETION {
    std::vector<VGA_DELETION_LINE> lines;
    std::vector<VGA_DELETION_ITEM> items;
    size_t to_do = 0, done = 0; /* items that the run is about; and through */
    NB_ULONG number = 0;        /* of the run: no other has it */
    NB_USHORT cancelled = 0;    /* flag */
};

/* Makes the plan.  Returns 0, or, when nothing of it can be deleted, the message that says why:
 * that of the first. */
NB_USHORT vga_plan_deletion(const std::vector<VGA_TO_DELETE> &what, VGA_DELETION *plan);

/* The lines that can be deleted, by what goes with them: those of a group need but one question.
 * In the order of the lines. */
std::vector<std::vector<size_t>> vga_group_deletion(const VGA_DELETION &plan);

/* Called when something is through, and a last time with `over` when all is; the plan is then freed
 * on return. */
typedef NB_VOID (*VGA_DELETION_TOLD)(NB_ULONG user_data, const VGA_DELETION &deletion,
                                     NB_USHORT over);

/* Deletes what is wanted.  `user_data` is the asker's: a handle.  May call `told` before it
 * returns. */
NB_VOID vga_run_deletion(std::unique_ptr<VGA_DELETION> plan, NB_ULONG user_data,
                         VGA_DELETION_TOLD told);

/* What is under way completes, the rest stays.  Nothing for a run that is over. */
NB_VOID vga_cancel_deletion(NB_ULONG number);

/* The hook: a verb of a run will not be answered, because the node is gone or the program closes.
 */
NB_VOID vga_deletion_verb_purged(NB_USHORT opcode, NB_ULONG user_data);

/* Words. */

/* The question about some lines of a plan: what goes, what goes with it, what is stopped first, and
 * what stays. */
std::string vga_deletion_question(const VGA_DELETION &plan, const std::vector<size_t> &lines);

/* Of a run: "Deleting 1,234 of 4,000", what came of it in a line, and the whole account. */
std::string vga_deletion_progress(const VGA_DELETION &deletion);
std::string vga_deletion_outcome(const VGA_DELETION &deletion);
std::string vga_deletion_account(const VGA_DELETION &deletion);

/* How many of the lines were not deleted though the operator wanted it. */
size_t vga_count_refused(const VGA_DELETION &deletion);

/* For private use of these modules: what there is to know of a kind. */
struct VGA_DELETABLE_ROW {
    VGA_DELETABLE kind;            /* equals the index */
    const records::Schema *schema; /* with the verb; null: what goes with it is all of it */
    NB_USHORT message = 0;         /* "one|many"; 0: it goes under its owner's name */
    NB_SHORT type = -1;            /* of its lines; -1: it has none */
    VGA_OPERABLE operable = VGA_OPERABLE_NONE;
    /* Of a part of an entry: the fields that tell it from the others; and flag: the entry goes with
     * the last one. */
    std::array<const records::FieldRow *, 2> part_key = {};
    NB_USHORT last_takes_all = 0;
    NB_USHORT (*refuses)(const NB_VOID *record) = nullptr; /* null: never */
};
const VGA_DELETABLE_ROW &vga_deletable_row(VGA_DELETABLE kind);

/* Has what names an LU or a pool of the plan go before it.  What is named by something that stays
 * would be refused by the node: its line is left alone. */
NB_VOID vga_order_referrers(VGA_DELETION *plan);

/* The key of a part of an entry; empty for a kind that is none. */
std::string vga_part_key(const VGA_DELETABLE_ROW &row, const NB_VOID *part);

/* "link station" and "3 link stations", and a message with texts as its arguments. */
std::string vga_kind_word(VGA_DELETABLE kind);
std::string vga_count_words(VGA_DELETABLE kind, NB_ULONG count);
std::string vga_deletion_words(NB_USHORT message, const std::string &first,
                               const std::string &second = "", const std::string &third = "");

#endif
