#include "vgadsutl.h"
#include "nbbase.h"
#include <array>
#include <cctype>
#include <cstring>
#include <string_view>

namespace {

using CODE_TABLE = std::array<NB_UCHAR, 256>;

/* The order of names: byte by byte behind a table, over the whole width. */
template <size_t Width>
NB_INT compare_mapped(const CODE_TABLE &table, const NB_VOID *a, const NB_VOID *b) {
    const auto *first = static_cast<const NB_UCHAR *>(a);
    const auto *second = static_cast<const NB_UCHAR *>(b);
    for (size_t at = 0; at < Width; at++) {
        NB_INT difference = table[first[at]] - table[second[at]];
        if (difference != 0) {
            return difference < 0 ? -1 : 1;
        }
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
    return memcmp(a, b, Width) == 0 ? 0 : compare_mapped<Width>(local_text(), a, b);
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

template <size_t Count>
NB_INT compare_fields(const std::array<KEY_FIELD, Count> &fields, const NB_VOID *a,
                      const NB_VOID *b) {
    for (const KEY_FIELD &field : fields) {
        NB_INT result = field.compare(static_cast<const NB_UCHAR *>(a) + field.offset,
                                      static_cast<const NB_UCHAR *>(b) + field.offset);
        if (result != 0) {
            return result;
        }
    }
    return 0;
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

NB_INT vga_compare_mode(const NB_VOID *a, const NB_VOID *b) {
    static constexpr std::array<KEY_FIELD, 2> fields = {{
        {offsetof(VGA_MODE_KEY, mode_name), vga_compare_ebc8},
        {offsetof(VGA_MODE_KEY, fqplu_name), vga_compare_ebc17},
    }};
    return compare_fields(fields, a, b);
}

NB_INT vga_compare_plu(const NB_VOID *a, const NB_VOID *b) {
    static constexpr std::array<KEY_FIELD, 2> fields = {{
        {offsetof(VGA_PLU_KEY, plu_alias), vga_compare_asc8},
        {offsetof(VGA_PLU_KEY, fqplu_name), vga_compare_ebc17},
    }};
    return compare_fields(fields, a, b);
}

NB_INT vga_compare_directory_entries(const NB_VOID *a, const NB_VOID *b) {
    static constexpr std::array<KEY_FIELD, 3> fields = {{
        {offsetof(VGA_DIR_KEY, fqcp_name), vga_compare_ebc17},
        {offsetof(VGA_DIR_KEY, resource_name), vga_compare_ebc17},
        {offsetof(VGA_DIR_KEY, resource_type), vga_compare_ushort},
    }};
    return compare_fields(fields, a, b);
}

NB_INT vga_compare_rem_plu(const NB_VOID *a, const NB_VOID *b) {
    static constexpr std::array<KEY_FIELD, 2> fields = {{
        {offsetof(VGA_REM_PLU_KEY, fqplu_name), vga_compare_ebc17},
        {offsetof(VGA_REM_PLU_KEY, type), vga_compare_ushort},
    }};
    return compare_fields(fields, a, b);
}

NB_INT vga_compare_rem_sess(const NB_VOID *a, const NB_VOID *b) {
    static constexpr std::array<KEY_FIELD, 2> fields = {{
        {offsetof(VGA_REM_SESS_KEY, lu_alias), vga_compare_asc8},
        {offsetof(VGA_REM_SESS_KEY, mode_name), vga_compare_ebc8},
    }};
    return compare_fields(fields, a, b);
}

VGA_NODE *vga_find_node(const NB_CHAR *name) {
    NB_CHAR key[sizeof(VGA_NODE::name)] = {};
    memcpy(key, name, strnlen(name, sizeof(key)));
    return find<VGA_NODE>(gvga_system->nodes, key);
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
