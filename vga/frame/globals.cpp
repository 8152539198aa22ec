#include "globals.h"

NB_USHORT gvga_supported[VGA_SUPPORTED_COUNT];
VGA_LEAD_DIALOG gvga_lead_dialogs[VGA_LEAD_DIALOG_COUNT] = {
    {1, ".displayLead3270"},        {1, ".displayLead3270Printer"}, {1, ".displayLead3270RJE"},
    {1, ".displayLead3270Display"}, {1, ".displayLeadPool"},        {1, ".displayLeadUser"},
};

NB_USHORT gvga_platform;
NB_USHORT gvga_impl_sdlc, gvga_impl_qllc, gvga_impl_tr, gvga_impl_fddi, gvga_impl_ether,
    gvga_impl_fr, gvga_impl_chnl, gvga_impl_ip, gvga_impl_mpc, gvga_impl_mpc_plus;

NB_ULONG gvga_querybuf_size = 65535;
NB_CHAR gvga_web_browser[201];
NB_CHAR gvga_verb_log_file[201];
NB_CHAR gvga_model_file[201];
NB_USHORT gvga_variant_x, gvga_variant_y;
NB_USHORT gvga_display_names;
NB_USHORT gvga_read_only;
NB_USHORT gvga_look_only;
NB_USHORT gvga_closing;
const NB_UCHAR gvga_null_name[2] = {0, 0};
const NB_CHAR gvga_version[] = QUILADMIN_VERSION;

static const NB_CHAR main_file[] = "../../p/vga/vgamain";

const VGA_EXIT_POINT gvga_exit_bad_indication = {"../../p/vga/vgautil", 385};
const VGA_EXIT_POINT gvga_exit_back_end = {main_file, 451};
const VGA_EXIT_POINT gvga_exit_system_window = {main_file, 243};
const VGA_EXIT_POINT gvga_exit_node_window = {main_file, 253};
const VGA_EXIT_POINT gvga_exit_no_node = {main_file, 668};
const VGA_EXIT_POINT gvga_exit_closed = {main_file, 1983};
const VGA_EXIT_POINT gvga_exit_closed_later = {main_file, 2097};
const VGA_EXIT_POINT gvga_exit_report_read = {main_file, 2317};
const VGA_EXIT_POINT gvga_unhandled_indication = {"vgaindre", 115};

NB_LONG gvga_exit_code;
NB_ULONG gvga_exit_subcode;
const NB_CHAR *gvga_exit_file = main_file;
NB_INT gvga_exit_line = 177;

NB_VOID vga_request_exit(NB_LONG code, NB_ULONG subcode, const NB_CHAR *file, NB_INT line) {
    if (gvga_exit_code != 0) {
        return;
    }
    gvga_exit_code = code;
    gvga_exit_subcode = subcode;
    gvga_exit_file = file;
    gvga_exit_line = line;
}

NB_VOID vga_request_exit_fatal(const NB_CHAR *file, NB_INT line, const NB_CHAR *) {
    vga_request_exit(VGA_EXIT_INTERNAL, 0, file, line);
}
