#include "modeldump.h"
#include "fieldtext.h"
#include "modelwalk.h"
#include "schemas.h"
#include <algorithm>

namespace {

/* The schema of an entry, and of the items within one; null for a record without an entry. */
template <class Data> const records::Schema *schema_of(NB_VOID) {
    if constexpr (std::is_same_v<Data, NAP_NODE_ALL_DATA>) {
        return &records::domain_node;
    }
    const records::Schema *found = nullptr;
#define ROW(name, row)                                                                             \
    if constexpr (std::is_same_v<Data, records::rows::row::Entry>) {                               \
        found = &records::row;                                                                     \
    }
    SCHEMAS(ROW)
#undef ROW
    return found;
}

template <class Record> using DATA_OF = std::remove_pointer_t<decltype(Record::vcb)>;

size_t depth(const VGA_SYSTEM *) {
    return 0;
}
template <class Record> size_t depth(const Record *record) {
    return depth(record->parent) + 1;
}

/* Neither does a time that has gone on since it was read. */
NB_USHORT says_nothing(const records::FieldRow &row, const NB_UCHAR *data) {
    const NB_UCHAR *at = data + row.offset;
    return row.unit == records::Unit::Hundredths || records::is_empty_field(row, data) ||
           std::all_of(at, at + row.width, [](NB_UCHAR byte) { return byte == 0; });
}

NB_VOID add_fields(std::string &text, records::FieldTable table, const NB_UCHAR *data) {
    for (const records::FieldRow &row : table) {
        if (!row.has(records::FIELD_SECRET) && !says_nothing(row, data)) {
            text += std::string(" ") + row.name + '=' + records::format_field(row, data);
        }
    }
}

template <class Record, class Owner>
NB_VOID add_entry(std::string &text, const Record &record, const Owner *) {
    const auto *data = reinterpret_cast<const NB_UCHAR *>(record.vcb);
    if constexpr (VGA_RECORD_TYPE<Record>::nested) {
        add_fields(text, schema_of<DATA_OF<Owner>>()->nested.fields, data);
    } else if (data != nullptr) {
        const records::Schema *schema = schema_of<DATA_OF<Record>>();
        add_fields(text, schema->fields, data);
        add_fields(text, schema->status, data);
    }
}

/* What the program itself knows of a record. */

NB_VOID add_fact(std::string &text, const NB_CHAR *name, NB_ULONG value) {
    text += std::string(" ") + name + ':' + std::to_string(value);
}

template <class Record> NB_VOID add_facts(std::string &, const Record &) {}

/* A line for the answer of a settings verb, if there was one. */
template <class Block> NB_VOID add_settings(std::string &text, const Block &block) {
    if (const records::Settings *row = records::settings_by_verb(block.opcode)) {
        text += std::string("\n  SETTINGS ") + row->name;
        add_fields(text, row->fields, reinterpret_cast<const NB_UCHAR *>(&block));
    }
}
template <class... Blocks> NB_VOID add_all_settings(std::string &text, const Blocks &...blocks) {
    (add_settings(text, blocks), ...);
}

NB_VOID add_facts(std::string &text, const VGA_NODE &node) {
    const VGA_NODE_TRACE &trace = node.tracing;
    add_fact(text, "state", node.node_state);
    add_fact(text, "connection", node.connection);
    add_fact(text, "role", node.role);
    add_all_settings(text, node.node_data, node.limits, node.defaults, node.tamrix, trace.dlc,
                     trace.type, trace.cs, trace.back_cs, trace.tn_server, trace.slp,
                     node.tn.defaults, node.tn.ssl, node.tn.slp, node.tn.express_logon);
}

NB_VOID add_facts(std::string &text, const VGA_LS &ls) {
    add_fact(text, "state", ls.state);
    text += ls.local_pu != nullptr ? " has a PU" : "";
    text += ls.down_pu != nullptr ? " has a downstream PU" : "";
}

NB_VOID add_facts(std::string &text, const VGA_REM_SYS &system) {
    add_fact(text, "defined", system.defined);
}

NB_VOID add_facts(std::string &text, const VGA_REM_PLU &plu) {
    add_fact(text, "defined", plu.defined);
    add_fact(text, "in_directory", plu.in_directory);
}

} // namespace

std::string vga_dump_model(NB_VOID) {
    const VGA_LOGGING_SETTINGS &logging = gvga_system->logging;
    std::string text = "DOMAIN";
    add_all_settings(text, logging.central_logging, logging.global_log_type);
    if (logging.central_logging.enabled) {
        add_settings(text, logging.central_logger);
    }
    text += '\n';
    vga_walk_model([&text](auto &record, const NB_CHAR *type, auto *owner) {
        text.append(2 * depth(owner), ' ');
        text += type;
        add_entry(text, record, owner);
        add_facts(text, record);
        text += '\n';
    });
    return text;
}
