/* The steps of the build: for private use of vgadsbld (the engine) and buildsteps (the tables).
 *
 * A step names its verb, the start-up flag that it clears and the steps that follow it.  To read
 * one more list or setting: add a step, name it as the successor of another, and give it a flag. */
#ifndef BUILDSTEPS_H
#define BUILDSTEPS_H

#include "globals.h"
#include "model.h"
#include "nofcopy.h"
#include "verbqueue.h"
#include <cstring>
#include <span>

/* Asks for the program's end from the build.  Reports carry one name for all its files, and of a
 * step that failed the line of its row. */
inline constexpr NB_CHAR gvga_build_module[] = "vgadsbld";
#define VGA_BUILD_EXIT()        VGA_BUILD_EXIT_AT(__LINE__)
#define VGA_BUILD_EXIT_AT(line) vga_request_exit(VGA_EXIT_INTERNAL, 0, gvga_build_module, line)

#define VGA_NO_CHAIN 0xFFFF
#define VGA_NO_STEP  0

enum class VGA_STEP_KIND : NB_UCHAR {
    OPEN,       /* a file; `detail` says which */
    CONNECT,    /* to the node */
    SET_MODE,   /* ask for the right to change */
    REGISTER,   /* for indications; `detail` is their opcode */
    LIST,       /* to its end */
    OWNED_LIST, /* to its end, for one owner after the other, of the node that is built */
    RECORD      /* one answer inside the block */
};

inline NB_ULONG vga_node_target(const VGA_NODE *node) {
    return node->target;
}

/* One whose list is read: by what the cursor of the step remembers it, which never changes, and by
 * what its list is asked for.  Both null: none is left. */
struct VGA_LIST_OWNER {
    const NB_UCHAR *name;
    size_t name_length;
    const NB_UCHAR *asked_by;
};

struct VGA_BUILD_STEP {
    NB_USHORT id = VGA_NO_STEP;
    NB_INT line = 0; /* of the row: what reports say */
    VGA_STEP_KIND kind = VGA_STEP_KIND::LIST;
    NB_USHORT opcode = 0;
    NB_USHORT detail = 0;
    NB_USHORT chain = VGA_NO_CHAIN; /* flag that is cleared when the step is done */
    NB_USHORT next[4] = {};
    /* Null: always.  A step that is not wanted counts as done at once. */
    NB_USHORT (*wanted)(const VGA_NODE *node) = nullptr;
    NB_ULONG (*target)(const VGA_NODE *node) = vga_node_target;
    /* OPEN, CONNECT and RECORD: keeps the answer.  OPEN and CONNECT get failures, too. */
    NB_VOID (*store)(VGA_NODE *node, const NAP_VCB *vcb) = nullptr;
    /* OWNED_LIST: the owner behind the one of that name (null: the first). */
    VGA_LIST_OWNER (*next_owner)(const VGA_NODE *node, const NB_UCHAR *name) = nullptr;
};

/* Numbers of the steps: the entry points of the two tables, and what follows what. */
/* clang-format off */
enum VGA_SYSTEM_STEP : NB_USHORT {
    S_OPEN_SYSTEM = 1, S_SYSTEM_MODE, S_REG_SERVER, S_NODE_ALL, S_REG_CONFIG, S_USERS, S_CPIC,
    S_RJE, S_OPEN_NET, S_NET_MODE, S_REG_NET, S_NET, S_CENTRAL_LOGGING, S_LOG_TYPE,
    S_CENTRAL_LOGGER, S_END
};

enum VGA_NODE_STEP : NB_USHORT {
    N_CONNECT = 1, N_REG_CONFIG, N_OPEN_TP, N_TP_LOAD, N_MODE, N_LIMITS, N_NODE, N_DEFAULTS,
    N_REG_DLC, N_DLC, N_DSPU_TEMPLATE, N_REG_PORT, N_PORT, N_CN, N_CN_PORT, N_REG_LS, N_REG_PU,
    N_REG_DOWN_PU, N_LS, N_PU, N_DOWN_PU, N_REG_DOWN_LU, N_DOWN_LU, N_REG_DLUR_PU, N_DLUR_PU,
    N_REG_LOCAL_LU, N_REG_LU03, N_LU03, N_EXTRA_DATA, N_LU62, N_LS_ROUTING, N_REG_PLU, N_REG_MODE,
    N_LU_MODES, N_LU_PARTNERS, N_LU_PASSWORDS, N_MODE_DEF, N_REG_DIR, N_DIR, N_PLU_DEF,
    N_LU62_TIMEOUT, N_COS, N_COS_NODE_ROW, N_COS_TG_ROW, N_TP_DEF, N_PRIMARY_LINE, N_PRIMARY_LU0,
    N_LU_POOL, N_TN_DEFAULTS, N_TN_SSL, N_TN_SLP, N_TN_EXL, N_TN_ACCESS, N_TN_ASSOC, N_TN_REDIRECT,
    N_USERID_PASSWORD, N_ACCESS_LIST, N_TAMRIX_DEFAULTS, N_REG_TAMRIX, N_TAMRIX_SESS, N_DLC_TRACE, N_TRACE_TYPE,
    N_CS_TRACE, N_BACK_CS_TRACE, N_TN_TRACE, N_SLP_TRACE, N_END
};
/* clang-format on */

/* The tables, in no particular order.  The domain's steps run with a null node. */
std::span<const VGA_BUILD_STEP> vga_system_steps(NB_VOID);
std::span<const VGA_BUILD_STEP> vga_node_steps(NB_VOID);

/* Keeps the target that a completed connect has brought; none after a failed one. */
NB_VOID vga_keep_node_target(VGA_NODE *node, const NAP_VCB *vcb);

/* A registration was answered.  One that failed is reported and requests the exit, 164 with the
 * verb's opcode: without indications the model would not be true for long. */
NB_VOID vga_process_register_sink(const NAP_VCB *vcb, NB_INT line);

#endif
