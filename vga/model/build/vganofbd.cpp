#include "vganofbd.h"
#include <cstring>

NB_USHORT vga_issue_open_file(NB_USHORT file, const NB_CHAR *node_name, NB_ULONG user_data,
                              VGA_COMPLETION completion) {
    auto verb = vga_new_verb<NAP_OPEN_FILE_VERB>(NAP_OPEN_FILE);
    if (verb) {
        verb->file = file;
        if (node_name != nullptr) {
            memcpy(verb->node_name, node_name, strnlen(node_name, sizeof(verb->node_name)));
        }
    }
    return vga_issue_verb(0, std::move(verb), user_data, completion);
}

NB_USHORT vga_issue_close_file(NB_ULONG target, NB_ULONG user_data, VGA_COMPLETION completion) {
    return vga_issue_verb(target, vga_new_verb<NAP_VCB>(NAP_CLOSE_FILE), user_data, completion);
}

NB_USHORT vga_issue_connect_node(const NB_CHAR *node_name, NB_ULONG user_data,
                                 VGA_COMPLETION completion) {
    auto verb = vga_new_verb<NAP_CONNECT_NODE_VERB>(NAP_CONNECT_NODE);
    if (verb) {
        memcpy(verb->node_name, node_name, sizeof(verb->node_name));
    }
    return vga_issue_verb(0, std::move(verb), user_data, completion);
}

NB_USHORT vga_issue_disconnect_node(NB_ULONG target, NB_ULONG user_data,
                                    VGA_COMPLETION completion) {
    return vga_issue_verb(target, vga_new_verb<NAP_VCB>(NAP_DISCONNECT_NODE), user_data,
                          completion);
}

NB_USHORT vga_issue_register_sink(NB_ULONG target, NB_USHORT indication, NB_ULONG user_data,
                                  VGA_COMPLETION completion) {
    auto verb = vga_new_verb<NAP_REGISTER_SINK_VERB>(NAP_REGISTER_INDICATION_SINK);
    if (verb) {
        verb->indication = indication;
    }
    return vga_issue_verb(target, std::move(verb), user_data, completion);
}

NB_USHORT vga_issue_set_proc_mode(NB_ULONG target, NB_ULONG user_data, VGA_COMPLETION completion) {
    auto verb = vga_new_verb<NAP_SET_PROCESSING_MODE_VERB>(NAP_SET_PROCESSING_MODE);
    if (verb) {
        verb->mode = NAP_MODE_ADMINISTER;
    }
    return vga_issue_verb(target, std::move(verb), user_data, completion);
}

NB_USHORT vga_issue_query_record(NB_ULONG target, NB_USHORT opcode, NB_ULONG user_data,
                                 VGA_COMPLETION completion) {
    const NAP_VERB *row = nap_find_verb(opcode);
    NB_ASSERT(row != nullptr && row->kind == NAP_KIND_RECORD);
    if (row == nullptr) {
        return 0;
    }
    VGA_OWNED<NAP_VCB> verb(static_cast<NAP_VCB *>(calloc(1, row->block_size)));
    if (verb) {
        verb->opcode = opcode;
    }
    return vga_issue_verb(target, std::move(verb), user_data, completion);
}
