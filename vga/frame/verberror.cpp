#include "verberror.h"
#include "globals.h"
#include "messages.h"
#include "nofrec.h"
#include "nofverbs.h"
#include "verbqueue.h"
#include <cstdlib>

namespace {

constexpr NB_ULONG any_primary = 0x10000;
constexpr NB_USHORT any_opcode = 0;

/* The first row that fits gives the text. */
struct VERB_ERROR {
    NB_USHORT opcode;
    NB_ULONG primary_rc;
    NB_ULONG secondary_rc;
    const NB_USHORT *only_when; /* null, or a flag that must be set */
    NB_USHORT message;
    const NB_CHAR *help_key;
};

const VERB_ERROR verb_errors[] = {
    {any_opcode, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE, &gvga_variant_x,
     VGA_MSG_LOCAL_NODE_NOT_ACTIVE, "verbfailed"},
    {any_opcode, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE, nullptr, VGA_MSG_NODE_NOT_ACTIVE,
     "verbfailed"},
    {any_opcode, NAP_COMM_FAILURE, NAP_NODE_GONE, nullptr, VGA_MSG_CONNECTION_LOST, "verbfailed"},
    {any_opcode, NAP_PARAMETER_CHECK, NAP_NO_PERMISSION, &gvga_read_only, VGA_MSG_UNAVAILABLE,
     "readonly"},
    {any_opcode, NAP_PARAMETER_CHECK, NAP_NO_HPR_CONNECTION, nullptr, VGA_MSG_NO_RTP_CONNECTION,
     "nohprconn"},
    {NAP_DELETE_BACKUP, any_primary, NAP_LAST_BACKUP, nullptr, VGA_MSG_LAST_SERVER, "verbfailed"},
};

NB_USHORT fits(const VERB_ERROR &row, NB_USHORT opcode, NB_USHORT primary_rc,
               NB_ULONG secondary_rc) {
    return (row.opcode == any_opcode || row.opcode == opcode) &&
           (row.primary_rc == any_primary || row.primary_rc == primary_rc) &&
           row.secondary_rc == secondary_rc && (row.only_when == nullptr || *row.only_when != 0);
}

} // namespace

NB_CHAR *vga_get_verb_error_message(NB_USHORT opcode, NB_USHORT primary_rc, NB_ULONG secondary_rc,
                                    const NB_CHAR **help_key) {
    *help_key = "verbfailed";
    auto *text = static_cast<NB_CHAR *>(malloc(VGA_VERB_ERROR_SIZE));
    if (text == nullptr) {
        VGA_EXIT(VGA_EXIT_INTERNAL, 0);
        return nullptr;
    }
    for (const VERB_ERROR &row : verb_errors) {
        if (fits(row, opcode, primary_rc, secondary_rc) != 0) {
            *help_key = row.help_key;
            /* One of them names the node software; the others take no argument and skip it. */
            vga_print_msg(text, VGA_VERB_ERROR_SIZE, row.message, "s", "sna");
            return text;
        }
    }
    vga_print_msg(text, VGA_VERB_ERROR_SIZE, VGA_MSG_VERB_REFUSED, "x x lx",
                  static_cast<NB_ULONG>(opcode), static_cast<NB_ULONG>(primary_rc), secondary_rc);
    return text;
}

NAP_VCB vga_purged_answer(NB_USHORT opcode) {
    NAP_VCB vcb = {};
    vcb.opcode = opcode;
    vcb.primary_rc = NAP_COMM_FAILURE;
    vcb.secondary_rc = NAP_NODE_GONE;
    return vcb;
}
