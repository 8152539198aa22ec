#include "nodeclass.h"

#include "nbbase.h"
#include "nofverbs.h"

#include <algorithm>
#include <array>
#include <utility>

namespace node {

namespace {

constexpr KeyPart LOCAL8 = {KeyKind::Local, 8};
constexpr KeyPart SNA8 = {KeyKind::Ebcdic, 8};
constexpr KeyPart SNA17 = {KeyKind::Ebcdic, 17};
constexpr KeyPart NUMBER16 = {KeyKind::Number, 2};

constexpr AliasRow NO_ALIAS = {0, {}, CLASS_COUNT, false, 0};
constexpr LifeRow NO_STATES = {false, false, 0, 0, 0, 0};

/* The part of an entry from one member to the end. */
#define REST(record, member)                                                                       \
    { offsetof(record, member), sizeof(record) - offsetof(record, member) }
#define PART(record, member)                                                                       \
    { offsetof(record, member), sizeof(std::declval<record>().member) }
#define UP_TO(record, from, to)                                                                    \
    { offsetof(record, from), offsetof(record, to) - offsetof(record, from) }

ClassRow dlc_row() {
    return {
        .id = CLASS_DLC,
        .name = "dlc",
        .lists = {{NAP_QUERY_DLC, NAP_DLC_INDICATION, 0, 0}},
        .define = NAP_DEFINE_DLC,
        .remove = NAP_DELETE_DLC,
        .start = NAP_START_DLC,
        .stop = NAP_STOP_DLC,
        .entry_size = sizeof(NAP_DLC_DATA),
        .define_size = sizeof(NAP_DEFINE_DLC_VERB),
        .key = {LOCAL8},
        .def = PART(NAP_DLC_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_DLC_VERB, def_data),
        .det = UP_TO(NAP_DLC_DATA, dlc_sts, def_data),
        .fields = class_fields(CLASS_DLC),
        .refs = {},
        .ref_count = 0,
        .alias = NO_ALIAS,
        .life = {true, true, offsetof(NAP_DLC_DATA, def_data.initially_active), 100, 400, 100},
        .hooks = class_hooks(CLASS_DLC),
    };
}

ClassRow port_row() {
    return {
        .id = CLASS_PORT,
        .name = "port",
        .lists = {{NAP_QUERY_PORT, NAP_PORT_INDICATION, 0, 0}},
        .define = NAP_DEFINE_PORT,
        .remove = NAP_DELETE_PORT,
        .start = NAP_START_PORT,
        .stop = NAP_STOP_PORT,
        .entry_size = sizeof(NAP_PORT_DATA),
        .define_size = sizeof(NAP_DEFINE_PORT_VERB),
        .key = {LOCAL8},
        .def = PART(NAP_PORT_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_PORT_VERB, def_data),
        .det = PART(NAP_PORT_DATA, det_data),
        .fields = class_fields(CLASS_PORT),
        .refs = {{CLASS_DLC, REF_OWNER, offsetof(NAP_PORT_DATA, def_data.dlc_name)}},
        .ref_count = 1,
        .alias = NO_ALIAS,
        .life = {true, true, offsetof(NAP_PORT_DATA, def_data.initially_active), 200, 800, 150},
        .hooks = class_hooks(CLASS_PORT),
    };
}

ClassRow ls_row() {
    return {
        .id = CLASS_LS,
        .name = "ls",
        .lists = {{NAP_QUERY_LS, NAP_LS_INDICATION, 0, 0}},
        .define = NAP_DEFINE_LS,
        .remove = NAP_DELETE_LS,
        .start = NAP_START_LS,
        .stop = NAP_STOP_LS,
        .entry_size = sizeof(NAP_LS_DATA),
        .define_size = sizeof(NAP_DEFINE_LS_VERB),
        .key = {LOCAL8},
        .def = PART(NAP_LS_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_LS_VERB, def_data),
        .det = PART(NAP_LS_DATA, det_data),
        .fields = class_fields(CLASS_LS),
        .refs = {{CLASS_PORT, REF_OWNER, offsetof(NAP_LS_DATA, def_data.port_name)}},
        .ref_count = 1,
        .alias = NO_ALIAS,
        .life = {true, true, offsetof(NAP_LS_DATA, def_data.initially_active), 300, 1500, 200},
        .hooks = class_hooks(CLASS_LS),
    };
}

/* A PU comes with its host link (derived) or is defined by itself, served through a dependent LU
 * server; each kind has its list and its indication. */
ClassRow pu_row() {
    constexpr size_t kind = offsetof(NAP_PU_DATA, host_attachment);
    return {
        .id = CLASS_PU,
        .name = "pu",
        .lists = {{NAP_QUERY_PU, NAP_PU_INDICATION, kind, NAP_DIRECT_ATTACHED},
                  {NAP_QUERY_DLUR_PU, NAP_DLUR_PU_INDICATION, kind, NAP_DLUR_ATTACHED}},
        .define = NAP_DEFINE_INTERNAL_PU,
        .remove = NAP_DELETE_INTERNAL_PU,
        .start = NAP_START_PU,
        .stop = NAP_STOP_PU,
        .entry_size = sizeof(NAP_PU_DATA),
        .define_size = sizeof(NAP_DEFINE_INTERNAL_PU_VERB),
        .key = {SNA8},
        .def = PART(NAP_PU_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_INTERNAL_PU_VERB, def_data),
        .det = UP_TO(NAP_PU_DATA, host_attachment, def_data),
        .fields = class_fields(CLASS_PU),
        .refs = {{CLASS_LS, REF_OWNER | REF_OPTIONAL | REF_CARRIED,
                  offsetof(NAP_PU_DATA, def_data.ls_name)}},
        .ref_count = 1,
        .alias = NO_ALIAS,
        .life = {true, true, offsetof(NAP_PU_DATA, def_data.initially_active), 100, 400, 100},
        .hooks = class_hooks(CLASS_PU),
    };
}

ClassRow lu03_row() {
    return {
        .id = CLASS_LU03,
        .name = "lu03",
        .lists = {{NAP_QUERY_LU_0_TO_3, NAP_LU_0_TO_3_INDICATION, 0, 0}},
        .define = NAP_DEFINE_LU_0_TO_3,
        .remove = NAP_DELETE_LU_0_TO_3,
        .start = 0,
        .stop = 0,
        .entry_size = sizeof(NAP_LU03_DATA),
        .define_size = sizeof(NAP_DEFINE_LU03_VERB),
        .key = {SNA8, SNA8},
        .def = PART(NAP_LU03_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_LU03_VERB, def_data),
        .det = PART(NAP_LU03_DATA, det_data),
        .fields = class_fields(CLASS_LU03),
        .refs = {{CLASS_PU, REF_OWNER, offsetof(NAP_LU03_DATA, pu_name)}},
        .ref_count = 1,
        .alias = {offsetof(NAP_LU03_DATA, lu_name),
                  {SNA8},
                  CLASS_LOCAL_LU,
                  false,
                  offsetof(NAP_LU03_DATA, lu_name)},
        .life = {true, false, 0, 20, 300, 20},
        .hooks = class_hooks(CLASS_LU03),
    };
}

ClassRow local_lu_row() {
    return {
        .id = CLASS_LOCAL_LU,
        .name = "local_lu",
        .lists = {{NAP_QUERY_LOCAL_LU, NAP_LOCAL_LU_INDICATION, 0, 0}},
        .define = NAP_DEFINE_LOCAL_LU,
        .remove = NAP_DELETE_LOCAL_LU,
        .start = 0,
        .stop = 0,
        .entry_size = sizeof(NAP_LOCAL_LU_DATA),
        .define_size = sizeof(NAP_DEFINE_LOCAL_LU_VERB),
        .key = {SNA8},
        .def = PART(NAP_LOCAL_LU_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_LOCAL_LU_VERB, def_data),
        .det = UP_TO(NAP_LOCAL_LU_DATA, lu_sscp_sess_active, def_data),
        .fields = class_fields(CLASS_LOCAL_LU),
        .refs = {{CLASS_PU, REF_OWNER | REF_OPTIONAL,
                  offsetof(NAP_LOCAL_LU_DATA, def_data.pu_name)}},
        .ref_count = 1,
        .alias = {offsetof(NAP_LOCAL_LU_DATA, def_data.lu_alias),
                  {LOCAL8},
                  CLASS_LU03,
                  true,
                  offsetof(NAP_LOCAL_LU_DATA, lu_name)},
        .life = {true, false, 0, 20, 300, 20},
        .hooks = class_hooks(CLASS_LOCAL_LU),
    };
}

ClassRow cos_row() {
    return {
        .id = CLASS_COS,
        .name = "cos",
        .lists = {{NAP_QUERY_COS, 0, 0, 0}},
        .define = NAP_DEFINE_COS,
        .remove = NAP_DELETE_COS,
        .start = 0,
        .stop = 0,
        .entry_size = sizeof(NAP_COS_DATA),
        .define_size = sizeof(NAP_DEFINE_COS_VERB),
        .key = {SNA8},
        .def = PART(NAP_COS_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_COS_VERB, def_data),
        .det = {0, 0},
        .fields = class_fields(CLASS_COS),
        .refs = {},
        .ref_count = 0,
        .alias = NO_ALIAS,
        .life = NO_STATES,
        .hooks = class_hooks(CLASS_COS),
    };
}

ClassRow mode_def_row() {
    return {
        .id = CLASS_MODE_DEF,
        .name = "mode",
        .lists = {{NAP_QUERY_MODE_DEFINITION, 0, 0, 0}},
        .define = NAP_DEFINE_MODE,
        .remove = NAP_DELETE_MODE,
        .start = 0,
        .stop = 0,
        .entry_size = sizeof(NAP_MODE_DEF_DATA),
        .define_size = sizeof(NAP_DEFINE_MODE_VERB),
        .key = {SNA8},
        .def = PART(NAP_MODE_DEF_DATA, mode_chars),
        .def_in_define = offsetof(NAP_DEFINE_MODE_VERB, mode_chars),
        .det = {0, 0},
        .fields = class_fields(CLASS_MODE_DEF),
        .refs = {{CLASS_COS, REF_OPTIONAL, offsetof(NAP_MODE_DEF_DATA, mode_chars.cos_name)}},
        .ref_count = 1,
        .alias = NO_ALIAS,
        .life = NO_STATES,
        .hooks = class_hooks(CLASS_MODE_DEF),
    };
}

ClassRow plu_def_row() {
    return {
        .id = CLASS_PLU_DEF,
        .name = "partner_lu",
        .lists = {{NAP_QUERY_PARTNER_LU_DEFINITION, 0, 0, 0}},
        .define = NAP_DEFINE_PARTNER_LU,
        .remove = NAP_DELETE_PARTNER_LU,
        .start = 0,
        .stop = 0,
        .entry_size = sizeof(NAP_PLU_DEF_DATA),
        .define_size = sizeof(NAP_DEFINE_PLU_VERB),
        .key = {SNA17},
        .def = PART(NAP_PLU_DEF_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_PLU_VERB, def_data),
        .det = {0, 0},
        .fields = class_fields(CLASS_PLU_DEF),
        .refs = {},
        .ref_count = 0,
        .alias = {offsetof(NAP_PLU_DEF_DATA, def_data.plu_alias), {LOCAL8}, CLASS_COUNT, false, 0},
        .life = NO_STATES,
        .hooks = class_hooks(CLASS_PLU_DEF),
    };
}

ClassRow mode_row() {
    return {
        .id = CLASS_MODE,
        .name = "mode_in_use",
        .lists = {{NAP_QUERY_MODE, NAP_MODE_INDICATION, 0, 0}},
        .define = 0,
        .remove = 0,
        .start = 0,
        .stop = 0,
        .entry_size = sizeof(NAP_MODE_DATA),
        .define_size = 0,
        .key = {LOCAL8, SNA8, SNA17},
        .def = {0, 0},
        .def_in_define = 0,
        .det = REST(NAP_MODE_DATA, plu_alias),
        .fields = class_fields(CLASS_MODE),
        .refs = {{CLASS_LOCAL_LU, REF_BY_ALIAS | REF_CARRIED, offsetof(NAP_MODE_DATA, lu_alias)},
                 {CLASS_MODE_DEF, 0, offsetof(NAP_MODE_DATA, mode_name)}},
        .ref_count = 2,
        .alias = NO_ALIAS,
        .life = NO_STATES,
        .hooks = class_hooks(CLASS_MODE),
    };
}

ClassRow plu_row() {
    return {
        .id = CLASS_PLU,
        .name = "partner_in_use",
        .lists = {{NAP_QUERY_PARTNER_LU, NAP_PLU_INDICATION, 0, 0}},
        .define = 0,
        .remove = 0,
        .start = 0,
        .stop = 0,
        .entry_size = sizeof(NAP_PLU_DATA),
        .define_size = 0,
        .key = {LOCAL8, LOCAL8, SNA17},
        .def = {0, 0},
        .def_in_define = 0,
        .det = REST(NAP_PLU_DATA, act_sess_count),
        .fields = class_fields(CLASS_PLU),
        .refs = {{CLASS_LOCAL_LU, REF_BY_ALIAS | REF_CARRIED, offsetof(NAP_PLU_DATA, lu_alias)}},
        .ref_count = 1,
        .alias = NO_ALIAS,
        .life = NO_STATES,
        .hooks = class_hooks(CLASS_PLU),
    };
}

ClassRow directory_row() {
    return {
        .id = CLASS_DIRECTORY,
        .name = "directory",
        .lists = {{NAP_QUERY_DIRECTORY_ENTRY, NAP_DIRECTORY_INDICATION, 0, 0}},
        .define = NAP_DEFINE_DIRECTORY_ENTRY,
        .remove = NAP_DELETE_DIRECTORY_ENTRY,
        .start = 0,
        .stop = 0,
        .entry_size = sizeof(NAP_DIR_DATA),
        .define_size = sizeof(NAP_DEFINE_DIR_VERB),
        .key = {SNA17, SNA17, NUMBER16},
        .def = PART(NAP_DIR_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_DIR_VERB, def_data),
        .det = REST(NAP_DIR_DATA, entry_type),
        .fields = class_fields(CLASS_DIRECTORY),
        .refs = {},
        .ref_count = 0,
        .alias = NO_ALIAS,
        .life = NO_STATES,
        .hooks = class_hooks(CLASS_DIRECTORY),
    };
}

using ClassTable = std::array<ClassRow, CLASS_COUNT>;

const ClassTable &class_table() {
    static const ClassTable table = {
        dlc_row(), port_row(),     ls_row(),      pu_row(),   lu03_row(), local_lu_row(),
        cos_row(), mode_def_row(), plu_def_row(), mode_row(), plu_row(),  directory_row(),
    };
    return table;
}

/* Keys stand where every entry and every block has them, or nothing here works. */
static_assert(offsetof(NAP_DLC_DATA, dlc_name) == KEY_OFFSET);
static_assert(offsetof(NAP_LU03_DATA, pu_name) == KEY_OFFSET);
static_assert(offsetof(NAP_MODE_DATA, lu_alias) == KEY_OFFSET);
static_assert(offsetof(NAP_DIR_DATA, fqcp_name) == KEY_OFFSET);
static_assert(offsetof(NAP_DEFINE_DIR_VERB, fqcp_name) == KEY_IN_BLOCK);
static_assert(offsetof(NAP_DEFINE_LU03_VERB, pu_name) == KEY_IN_BLOCK);
static_assert(offsetof(NAP_DEFINE_PLU_VERB, fqplu_name) == KEY_IN_BLOCK);
static_assert(sizeof(NAP_DEFINE_LS_VERB) % 4 == 0 && sizeof(NAP_RESOURCE_INDICATION) % 4 == 0);

} // namespace

const ClassRow &class_row(ClassId id) {
    const ClassRow &row = class_table()[id];
    NB_ASSERT(row.id == id);
    return row;
}

const ClassRow *class_by_list(NB_USHORT opcode, const ListRow **list) {
    for (const ClassRow &row : class_table()) {
        for (const ListRow &shown : row.lists) {
            if (shown.list == opcode) {
                *list = &shown;
                return &row;
            }
        }
    }
    return nullptr;
}

const ClassRow *class_by_verb(NB_USHORT opcode) {
    for (const ClassRow &row : class_table()) {
        const NB_USHORT verbs[] = {row.define, row.remove, row.start, row.stop};
        if (std::find(std::begin(verbs), std::end(verbs), opcode) != std::end(verbs)) {
            return &row;
        }
    }
    return nullptr;
}

const ClassRow *class_by_name(std::string_view name) {
    for (const ClassRow &row : class_table()) {
        if (name == row.name) {
            return &row;
        }
    }
    return nullptr;
}

const ListRow &shown_by(const ClassRow &row, const NB_UCHAR *entry) {
    for (const ListRow &list : row.lists) {
        if (list.select_offset != 0 && entry[list.select_offset] == list.select_value) {
            return list;
        }
    }
    return row.lists[0];
}

} // namespace node
