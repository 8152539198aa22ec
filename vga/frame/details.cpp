#include "details.h"
#include "fieldtext.h"
#include "messages.h"
#include "nbbase.h"
#include "nofverbs.h"
#include "schemas.h"
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <unistd.h>
#include <vector>

namespace {

struct WORDS {
    NB_ULONG code;
    NB_USHORT message;
};

constexpr WORDS primary_words[] = {
    {NAP_PARAMETER_CHECK, VGA_MSG_CODE_PARAMETER_CHECK},
    {NAP_STATE_CHECK, VGA_MSG_CODE_STATE_CHECK},
    {NAP_COMM_FAILURE, VGA_MSG_CODE_COMM_FAILURE},
    {NAP_NOT_SUPPORTED, VGA_MSG_CODE_NOT_SUPPORTED},
};

constexpr WORDS secondary_words[] = {
    {NAP_NO_PERMISSION, VGA_MSG_CODE_NO_PERMISSION},
    {NAP_BAD_TARGET, VGA_MSG_CODE_BAD_TARGET},
    {NAP_BAD_LENGTH, VGA_MSG_CODE_BAD_LENGTH},
    {NAP_INVALID_NAME, VGA_MSG_CODE_INVALID_NAME},
    {NAP_INVALID_VALUE, VGA_MSG_CODE_INVALID_VALUE},
    {NAP_INVALID_LIST_OPTION, VGA_MSG_CODE_INVALID_LIST_OPTION},
    {NAP_UNKNOWN_RESOURCE, VGA_MSG_CODE_UNKNOWN_RESOURCE},
    {NAP_UNKNOWN_OWNER, VGA_MSG_CODE_UNKNOWN_OWNER},
    {NAP_DUPLICATE_NAME, VGA_MSG_CODE_DUPLICATE_NAME},
    {NAP_NO_DOMAIN_CONFIG, VGA_MSG_CODE_NO_DOMAIN_CONFIG},
    {NAP_NODE_GONE, VGA_MSG_CODE_NODE_GONE},
    {NAP_NODE_BUSY, VGA_MSG_CODE_NODE_BUSY},
    {NAP_RESOURCE_ACTIVE, VGA_MSG_CODE_RESOURCE_ACTIVE},
    {NAP_RESOURCE_INACTIVE, VGA_MSG_CODE_RESOURCE_INACTIVE},
    {NAP_IN_USE, VGA_MSG_CODE_IN_USE},
    {NAP_LIMIT_REACHED, VGA_MSG_CODE_LIMIT_REACHED},
    {NAP_PORT_LIMIT, VGA_MSG_CODE_PORT_LIMIT},
    {NAP_LU_LIMIT, VGA_MSG_CODE_LU_LIMIT},
    {NAP_LINK_LIMIT, VGA_MSG_CODE_LINK_LIMIT},
    {NAP_SESSION_LIMIT, VGA_MSG_CODE_SESSION_LIMIT},
    {NAP_PARTNER_UNREACHABLE, VGA_MSG_CODE_PARTNER_UNREACHABLE},
    {NAP_NODE_NOT_ACTIVE, VGA_MSG_CODE_NODE_NOT_ACTIVE},
    {NAP_LAST_BACKUP, VGA_MSG_CODE_LAST_BACKUP},
    {NAP_STORE_FAILED, VGA_MSG_CODE_STORE_FAILED},
    {NAP_NO_HPR_CONNECTION, VGA_MSG_CODE_NO_HPR_CONNECTION},
};

constexpr WORDS system_words[] = {
    {ENOENT, VGA_MSG_NO_SOCKET},
    {ECONNREFUSED, VGA_MSG_NOBODY_LISTENS},
    {EACCES, VGA_MSG_NO_RIGHT_TO_CONNECT},
    {EPERM, VGA_MSG_NO_RIGHT_TO_CONNECT},
};

constexpr WORDS refusal_words[] = {
    {NAP_NODE_BUSY, VGA_MSG_ALL_CONNECTIONS_TAKEN},
    {NAP_LIMIT_REACHED, VGA_MSG_OWN_CONNECTIONS_TAKEN},
};

/* Empty for a code without words. */
template <size_t Size> std::string words_of(const WORDS (&table)[Size], NB_ULONG code) {
    const auto *found = std::find_if(std::begin(table), std::end(table),
                                     [code](const WORDS &row) { return row.code == code; });
    return found != std::end(table) ? vga_message(found->message) : "";
}

template <class... Arguments>
std::string filled(NB_USHORT message, const NB_CHAR *types, Arguments... arguments) {
    NB_CHAR text[2048];
    vga_print_msg(text, sizeof(text), message, types, arguments...);
    return text;
}

/* "0x0100 (something in the request is not right)". */
std::string with_words(const NB_CHAR *format, NB_ULONG code, const std::string &words) {
    NB_CHAR number[16];
    snprintf(number, sizeof(number), format, code);
    return words.empty() ? number : number + (" (" + words + ")");
}

std::string codes_of(const NAP_VCB &vcb) {
    const NB_ULONG primary = vcb.primary_rc, secondary = vcb.secondary_rc;
    return with_words("0x%04X", primary, words_of(primary_words, primary)) + ", " +
           with_words("0x%08X", secondary, words_of(secondary_words, secondary));
}

std::string name_of(const NAP_VCB &vcb) {
    const NAP_VERB *verb = nap_find_verb(vcb.opcode);
    return with_words("0x%04X", vcb.opcode, verb != nullptr ? verb->name : "");
}

/* The node software runs, but has no place for the program. */
std::string refused(NB_USHORT message, const NOF_FAILURE &failure) {
    const std::string words = words_of(refusal_words, failure.refusal);
    return filled(message, "s s", failure.socket, words.empty() ? failure.reason : words.c_str());
}

std::string reason_of(const NOF_FAILURE &failure) {
    const std::string words = words_of(system_words, static_cast<NB_ULONG>(failure.system_error));
    return words.empty() ? failure.reason : words;
}

/* A machine that runs it as a service shall start it as one. */
std::string start_command() {
    const std::string prefix = nba_prefix();
    const bool service =
        prefix == NB_DEFAULT_PREFIX && access("/lib/systemd/system/snanode.service", F_OK) == 0;
    return service ? "systemctl start snanode" : prefix + "/bin/snanode --domain NAME";
}

std::string unreachable(NB_USHORT message, const NOF_FAILURE &failure) {
    return filled(message, "s s s", failure.socket, reason_of(failure).c_str(),
                  start_command().c_str());
}

} // namespace

std::string vga_verb_resource(const NAP_VCB *vcb) {
    const NB_USHORT opcode = vcb->opcode;
    const records::Schema *schema = records::schema_by_verb(opcode);
    const NAP_VERB *verb = nap_find_verb(opcode);
    const bool keyed = schema != nullptr && verb != nullptr && opcode != 0 &&
                       (opcode == schema->define || opcode == schema->remove ||
                        opcode == schema->start || opcode == schema->stop) &&
                       verb->block_size >= records::KEY_IN_BLOCK + schema->key_size();
    if (!keyed) {
        return {};
    }
    std::vector<NB_UCHAR> entry(schema->entry_size);
    memcpy(entry.data() + records::KEY_OFFSET,
           reinterpret_cast<const NB_UCHAR *>(vcb) + records::KEY_IN_BLOCK, schema->key_size());
    std::string name;
    for (const records::FieldRow &row : schema->fields) {
        if (row.has(records::FIELD_KEY)) {
            name += (name.empty() ? "" : ", ") + records::format_field(row, entry.data());
        }
    }
    return name;
}

std::string vga_verb_details(const NAP_VCB &header, const std::string &resource,
                             const std::string &node) {
    std::string text =
        filled(VGA_MSG_VERB_DETAILS, "s s", name_of(header).c_str(), codes_of(header).c_str());
    if (!resource.empty()) {
        text += "\n" + filled(VGA_MSG_DETAILS_RESOURCE, "s", resource.c_str());
    }
    return node.empty() ? text : text + "\n" + filled(VGA_MSG_DETAILS_NODE, "s", node.c_str());
}

std::string vga_unreachable_details(const NOF_FAILURE &failure) {
    return failure.refusal != 0 ? refused(VGA_MSG_REFUSED_DETAILS, failure)
                                : unreachable(VGA_MSG_UNREACHABLE_DETAILS, failure);
}

std::string vga_unreachable_line(const NOF_FAILURE &failure) {
    return failure.refusal != 0 ? refused(VGA_MSG_REFUSED_LINE, failure)
                                : unreachable(VGA_MSG_UNREACHABLE_LINE, failure);
}

std::string vga_place_details(const NB_CHAR *file, NB_INT line) {
    return filled(VGA_MSG_DETAILS_PLACE, "s i s", file, line, vga_log_name().c_str());
}

std::string vga_log_name(NB_VOID) {
    const NB_CHAR *file = nba_pd_log_file();
    return file != nullptr ? file : vga_message(VGA_MSG_STANDARD_ERROR);
}
