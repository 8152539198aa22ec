#include "vgadsutl.h"
#include "nbbase.h"
#include "recordpattern.h"
#include <array>
#include <bit>
#include <cctype>
#include <cstring>
#include <span>
#include <string_view>

namespace {

using CODE_TABLE = std::array<NB_UCHAR, 256>;

constexpr size_t word_size = sizeof(uint64_t);

/* How many leading bytes of two words are the same. */
size_t same_bytes(const NB_UCHAR *a, const NB_UCHAR *b) {
    uint64_t first;
    uint64_t second;
    memcpy(&first, a, word_size);
    memcpy(&second, b, word_size);
    const uint64_t difference = first ^ second;
    const int bits = std::endian::native == std::endian::little ? std::countr_zero(difference)
                                                                : std::countl_zero(difference);
    return static_cast<size_t>(bits) / 8;
}

/* The order of names: byte by byte behind a table, over the whole width.  Names that follow each
 * other share their beginning, so equal bytes are skipped a word at a time. */
template <size_t Width>
NB_INT compare_mapped(const CODE_TABLE &table, const NB_VOID *a, const NB_VOID *b) {
    const auto *first = static_cast<const NB_UCHAR *>(a);
    const auto *second = static_cast<const NB_UCHAR *>(b);
    for (size_t at = 0; at < Width;) {
        const size_t same = at + word_size <= Width ? same_bytes(first + at, second + at) : 0;
        at += same;
        if (same == word_size) {
            continue;
        }
        const NB_INT difference = table[first[at]] - table[second[at]];
        if (difference != 0) {
            return difference < 0 ? -1 : 1;
        }
        at++;
    }
    return 0;
}

const CODE_TABLE &upper_case(NB_VOID) {
    static const CODE_TABLE table = [] {
        CODE_TABLE codes;
        for (size_t code = 0; code < codes.size(); code++) {
            codes[code] = code < 128 ? static_cast<NB_UCHAR>(toupper(static_cast<int>(code)))
                                     : static_cast<NB_UCHAR>(code);
        }
        return codes;
    }();
    return table;
}

const CODE_TABLE &local_text(NB_VOID) {
    static const CODE_TABLE table = [] {
        CODE_TABLE codes;
        for (size_t code = 0; code < codes.size(); code++) {
            codes[code] = static_cast<NB_UCHAR>(code);
        }
        nba_ebcdic_to_local(codes.data(), static_cast<NB_USHORT>(codes.size()));
        return codes;
    }();
    return table;
}

template <size_t Width> NB_INT compare_asc(const NB_VOID *a, const NB_VOID *b) {
    return compare_mapped<Width>(upper_case(), a, b);
}

template <size_t Width> NB_INT compare_ebc(const NB_VOID *a, const NB_VOID *b) {
    return compare_mapped<Width>(local_text(), a, b);
}

template <class Number> NB_INT compare_number(const NB_VOID *a, const NB_VOID *b) {
    Number first;
    Number second;
    memcpy(&first, a, sizeof(first));
    memcpy(&second, b, sizeof(second));
    return first < second ? -1 : first > second;
}

/* One field of a composite key. */
struct KEY_FIELD {
    size_t offset;
    AVL_COMPARE compare;
};

NB_INT compare_fields(std::span<const KEY_FIELD> fields, const NB_VOID *a, const NB_VOID *b) {
    for (const KEY_FIELD &field : fields) {
        NB_INT result = field.compare(static_cast<const NB_UCHAR *>(a) + field.offset,
                                      static_cast<const NB_UCHAR *>(b) + field.offset);
        if (result != 0) {
            return result;
        }
    }
    return 0;
}

NB_INT compare_octets(const NB_VOID *a, const NB_VOID *b) {
    return memcmp(a, b, sizeof(NB_IP_ADDRESS::octets));
}

template <class Record> Record *find(const AVL_TREE &tree, const NB_VOID *key) {
    return static_cast<Record *>(ntl_avl_find(&tree, key));
}

} // namespace

NB_INT vga_compare_asc4(const NB_VOID *a, const NB_VOID *b) {
    return compare_asc<4>(a, b);
}
NB_INT vga_compare_asc8(const NB_VOID *a, const NB_VOID *b) {
    return compare_asc<8>(a, b);
}
NB_INT vga_compare_asc10(const NB_VOID *a, const NB_VOID *b) {
    return compare_asc<10>(a, b);
}
NB_INT vga_compare_asc14(const NB_VOID *a, const NB_VOID *b) {
    return compare_asc<14>(a, b);
}
NB_INT vga_compare_asc16(const NB_VOID *a, const NB_VOID *b) {
    return compare_asc<16>(a, b);
}
NB_INT vga_compare_node_name(const NB_VOID *a, const NB_VOID *b) {
    return compare_asc<128>(a, b);
}
NB_INT vga_compare_user_name(const NB_VOID *a, const NB_VOID *b) {
    return compare_asc<sizeof(VGA_USER::name)>(a, b);
}
NB_INT vga_compare_ebc8(const NB_VOID *a, const NB_VOID *b) {
    return compare_ebc<8>(a, b);
}
NB_INT vga_compare_ebc10(const NB_VOID *a, const NB_VOID *b) {
    return compare_ebc<10>(a, b);
}
NB_INT vga_compare_ebc17(const NB_VOID *a, const NB_VOID *b) {
    return compare_ebc<17>(a, b);
}

NB_INT vga_compare_lu(const NB_VOID *a, const NB_VOID *b) {
    const NB_VOID *first;
    const NB_VOID *second;
    memcpy(&first, a, sizeof(first));
    memcpy(&second, b, sizeof(second));
    return vga_compare_ebc8(first, second);
}

NB_INT vga_compare_byte(const NB_VOID *a, const NB_VOID *b) {
    return compare_number<NB_UCHAR>(a, b);
}
NB_INT vga_compare_ushort(const NB_VOID *a, const NB_VOID *b) {
    return compare_number<NB_USHORT>(a, b);
}
NB_INT vga_compare_ulong(const NB_VOID *a, const NB_VOID *b) {
    return compare_number<NB_ULONG>(a, b);
}

/* The comparator of a composite key, from its fields in order. */
#define VGA_COMPOSITE(name, ...)                                                                   \
    NB_INT name(const NB_VOID *a, const NB_VOID *b) {                                              \
        static constexpr KEY_FIELD fields[] = {__VA_ARGS__};                                       \
        return compare_fields(fields, a, b);                                                       \
    }

VGA_COMPOSITE(vga_compare_mode, {offsetof(VGA_MODE_KEY, mode_name), vga_compare_ebc8},
              {offsetof(VGA_MODE_KEY, fqplu_name), vga_compare_ebc17})

VGA_COMPOSITE(vga_compare_plu, {offsetof(VGA_PLU_KEY, plu_alias), vga_compare_asc8},
              {offsetof(VGA_PLU_KEY, fqplu_name), vga_compare_ebc17})

VGA_COMPOSITE(vga_compare_directory_entries, {offsetof(VGA_DIR_KEY, fqcp_name), vga_compare_ebc17},
              {offsetof(VGA_DIR_KEY, resource_name), vga_compare_ebc17},
              {offsetof(VGA_DIR_KEY, resource_type), vga_compare_ushort})

VGA_COMPOSITE(vga_compare_rem_plu, {offsetof(VGA_REM_PLU_KEY, fqplu_name), vga_compare_ebc17},
              {offsetof(VGA_REM_PLU_KEY, type), vga_compare_ushort})

VGA_COMPOSITE(vga_compare_rem_sess, {offsetof(VGA_REM_SESS_KEY, lu_alias), vga_compare_asc8},
              {offsetof(VGA_REM_SESS_KEY, mode_name), vga_compare_ebc8})

VGA_COMPOSITE(vga_compare_lu62_timeouts,
              {offsetof(VGA_LU62_TIMEOUT_KEY, resource_type), vga_compare_ushort},
              {offsetof(VGA_LU62_TIMEOUT_KEY, resource_name), vga_compare_ebc17})

NB_INT vga_compare_tp_names(const NB_VOID *a, const NB_VOID *b) {
    return compare_ebc<sizeof(VGA_TP_DEF::tp_name)>(a, b);
}

NB_INT vga_compare_rtp_conn(const NB_VOID *a, const NB_VOID *b) {
    return vga_compare_ebc8(a, b);
}

VGA_COMPOSITE(vga_compare_tp_load_info, {offsetof(VGA_TP_LOAD_KEY, tp_name), vga_compare_tp_names},
              {offsetof(VGA_TP_LOAD_KEY, lu_alias), vga_compare_asc8})

VGA_COMPOSITE(vga_compare_sl_sec, {offsetof(VGA_SL_SEC_KEY, lu_alias), vga_compare_asc8},
              {offsetof(VGA_SL_SEC_KEY, fqplu_name), vga_compare_ebc17})

VGA_COMPOSITE(vga_compare_client_address, {offsetof(VGA_CLIENT_ADDRESS, type), vga_compare_ushort},
              {offsetof(VGA_CLIENT_ADDRESS, address),
               compare_asc<sizeof(VGA_CLIENT_ADDRESS::address)>})

VGA_COMPOSITE(vga_compare_tn_session,
              {offsetof(VGA_TN_SESS_KEY, client), vga_compare_client_address},
              {offsetof(VGA_TN_SESS_KEY, port), vga_compare_ushort},
              {offsetof(VGA_TN_SESS_KEY, listen_local_address),
               compare_asc<sizeof(VGA_TN_SESS_KEY::listen_local_address)>})

VGA_COMPOSITE(vga_compare_tn_redirect,
              {offsetof(VGA_TN_REDIRECT_KEY, client), vga_compare_client_address},
              {offsetof(VGA_TN_REDIRECT_KEY, port), vga_compare_ushort})

VGA_COMPOSITE(vga_compare_tamrix_appcip_sess,
              {offsetof(VGA_TAMRIX_SESS_KEY, lu_name), vga_compare_ebc8},
              {offsetof(VGA_TAMRIX_SESS_KEY, fqplu_name), vga_compare_ebc17},
              {offsetof(VGA_TAMRIX_SESS_KEY, mode_name), vga_compare_ebc8},
              {offsetof(VGA_TAMRIX_SESS_KEY, number), vga_compare_ushort})

VGA_COMPOSITE(vga_compare_pool_lu, {offsetof(VGA_SYS_POOL_LU_KEY, lu_name), vga_compare_ebc8},
              {offsetof(VGA_SYS_POOL_LU_KEY, node_name), vga_compare_node_name})

VGA_COMPOSITE(vga_compare_dslu_template,
              {offsetof(VGA_DSLU_TEMPLATE_KEY, template_name), vga_compare_asc8},
              {offsetof(VGA_DSLU_TEMPLATE_KEY, min_nau), vga_compare_byte},
              {offsetof(VGA_DSLU_TEMPLATE_KEY, max_nau), vga_compare_byte})

VGA_COMPOSITE(vga_compare_user_status,
              {offsetof(VGA_USER_STATUS_KEY, user_name), vga_compare_user_name},
              {offsetof(VGA_USER_STATUS_KEY, session_name), vga_compare_asc8},
              {offsetof(VGA_USER_STATUS_KEY, node_name), vga_compare_node_name})

VGA_COMPOSITE(vga_compare_ip_address, {offsetof(NB_IP_ADDRESS, family), vga_compare_byte},
              {offsetof(NB_IP_ADDRESS, octets), compare_octets})

#undef VGA_COMPOSITE

std::string vga_node_name(const VGA_NODE *node) {
    return node != nullptr ? std::string(node->name, strnlen(node->name, sizeof(node->name))) : "";
}

NB_VOID vga_server_follows(const VGA_NODE *node) {
    auto *server =
        static_cast<VGA_SNA_NET_NODE *>(ntl_avl_find(&gvga_system->net_nodes, node->name));
    if (server != nullptr) {
        NB_ULONG flags = server->vcb->info.server_flags;
        server->vcb->info = node->vcb->info;
        server->vcb->info.server_flags = flags;
    }
}

VGA_NODE *vga_find_node_of_target(NB_ULONG target) {
    VGA_NODE *found = nullptr;
    vga_for_each(gvga_system->nodes, &VGA_NODE::links, [&found, target](VGA_NODE &node) {
        if (target != 0 && (node.target == target || node.tp_target == target)) {
            found = &node;
        }
    });
    return found;
}

VGA_DLC *vga_find_dlc(const VGA_NODE *node, const NB_UCHAR *name) {
    return find<VGA_DLC>(node->dlcs, name);
}

VGA_PORT *vga_find_port(const VGA_NODE *node, const NB_UCHAR *name) {
    return find<VGA_PORT>(node->ports, name);
}

VGA_LS *vga_find_ls(const VGA_NODE *node, const NB_UCHAR *name) {
    return find<VGA_LS>(node->link_stations, name);
}

VGA_LOCAL_PU *vga_find_local_pu(const VGA_NODE *node, const NB_UCHAR *name) {
    return find<VGA_LOCAL_PU>(node->local_pus, name);
}

VGA_DOWN_PU *vga_find_down_pu(const VGA_NODE *node, const NB_UCHAR *name) {
    return find<VGA_DOWN_PU>(node->down_pus, name);
}

VGA_LU03 *vga_find_lu03(const VGA_NODE *node, const NB_UCHAR *pu_name, const NB_UCHAR *lu_name) {
    VGA_LOCAL_PU *pu = vga_find_local_pu(node, pu_name);
    return pu != nullptr ? find<VGA_LU03>(pu->lus, lu_name) : nullptr;
}

VGA_PRIMARY_LINE *vga_find_primary_line(const VGA_NODE *node, const NB_UCHAR *name) {
    return find<VGA_PRIMARY_LINE>(node->primary_lines, name);
}

VGA_CN *vga_find_cn(const VGA_NODE *node, const NB_UCHAR *name) {
    return find<VGA_CN>(node->connection_networks, name);
}

VGA_COS *vga_find_cos(const VGA_NODE *node, const NB_UCHAR *name) {
    return find<VGA_COS>(node->classes_of_service, name);
}

VGA_MODE_DEF *vga_find_mode_def(const VGA_NODE *node, const NB_UCHAR *name) {
    return find<VGA_MODE_DEF>(node->mode_defs, name);
}

VGA_LU62_TIMEOUT *vga_find_mode_timeout(const VGA_NODE *node, const NB_UCHAR *mode_name) {
    VGA_LU62_TIMEOUT_KEY key = {};
    key.resource_type = NAP_TIMEOUT_MODE;
    memset(key.resource_name, 0x40, sizeof(key.resource_name));
    memcpy(key.resource_name, mode_name, sizeof(VGA_MODE_DEF::name));
    return find<VGA_LU62_TIMEOUT>(node->lu62_timeouts, &key);
}

NB_ULONG vga_count_mode_uses(const VGA_MODE_DEF *mode) {
    NB_ULONG uses = 0;
    vga_for_each(mode->parent->lus, &VGA_LU62::name_links, [mode, &uses](VGA_LU62 &lu) {
        vga_for_each(lu.modes, &VGA_MODE::links, [mode, &uses](VGA_MODE &one) {
            uses += vga_compare_ebc8(one.key.mode_name, mode->name) == 0 ? 1 : 0;
        });
    });
    return uses;
}

VGA_POOL *vga_find_pool(const VGA_NODE *node, const NB_UCHAR *name) {
    return find<VGA_POOL>(node->pools, name);
}

VGA_POOL_LU *vga_find_pool_lu(const VGA_NODE *node, const NB_UCHAR *pool_name,
                              const NB_UCHAR *lu_name) {
    VGA_POOL *pool = vga_find_pool(node, pool_name);
    return pool != nullptr ? find<VGA_POOL_LU>(pool->lu_tree, lu_name) : nullptr;
}

VGA_SYS_POOL *vga_find_sys_pool(const NB_UCHAR *name) {
    return find<VGA_SYS_POOL>(gvga_system->pools, name);
}

VGA_LU62 *vga_find_lu62(const VGA_NODE *node, const NB_UCHAR *name) {
    return find<VGA_LU62>(node->lus, name);
}

VGA_LU62 *vga_find_lu62_by_alias(const VGA_NODE *node, const NB_UCHAR *alias) {
    return find<VGA_LU62>(node->lu_aliases, alias);
}

VGA_REM_SYS *vga_find_rem_sys(const VGA_NODE *node, const NB_UCHAR *fqcp_name) {
    return find<VGA_REM_SYS>(node->remote_systems, fqcp_name);
}

VGA_REM_PLU *vga_find_rem_plu(const VGA_NODE *node, const NB_UCHAR *fqplu_name, NB_USHORT type) {
    VGA_REM_PLU_KEY key = {};
    memcpy(key.fqplu_name, fqplu_name, sizeof(key.fqplu_name));
    key.type = type;
    return find<VGA_REM_PLU>(node->remote_plus, &key);
}

NB_USHORT vga_blank_name(const NB_UCHAR *name, NB_USHORT width) {
    constexpr std::string_view blanks("\x40\x00", 2);
    std::string_view text(reinterpret_cast<const NB_CHAR *>(name), width);
    return text.find_first_not_of(blanks) == std::string_view::npos;
}
