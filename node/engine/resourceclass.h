/* Resource classes: what the one engine needs to know of each kind of resource beside its schema
 * (schema.h), which says the verbs, the key, the layout and the fields.
 *
 * To add a class: give it a ClassId (behind the classes that it refers to: resources are loaded in
 * this order) and a row in the source of its family (node/classes).  The row says whom it belongs
 * to and how its states move.  Lists, paging, defining, deleting, the store, the domain text,
 * starting, stopping, cascades, indications and copies then work.  Only what is peculiar to the
 * class is code: its hooks, any of which may be null. tests/core/node_class_test.cpp walks the
 * table. */
#ifndef RESOURCECLASS_H
#define RESOURCECLASS_H

#include "entry.h"
#include "nofcopy.h"
#include "ntlavl.h"
#include "schemas.h"
#include "sense.h"
#include "sortkey.h"
#include "states.h"
#include "timers.h"

#include <cstring>
#include <memory>
#include <vector>

namespace node {

/* Names of schemas and fields that stand everywhere in the node. */
using records::Behaviour;
using records::check_fields;
using records::DEFAULT_BEHAVIOUR;
using records::ebcdic_text;
using records::FIELD_COMPARED;
using records::FIELD_COUNTS;
using records::FIELD_KEY;
using records::FIELD_SECRET;
using records::FieldKind;
using records::FieldRow;
using records::FieldTable;
using records::get_number;
using records::is_blank;
using records::KEY_IN_BLOCK;
using records::KEY_OFFSET;
using records::KeyKind;
using records::KeyParts;
using records::ListRow;
using records::local_text;
using records::Nested;
using records::put_ebcdic;
using records::put_local;
using records::put_number;
using records::Schema;
using records::Scope;
using records::Settings;

class Engine;

/* CLASS_DLC and the like: the schemas in their order. */
#define CLASS_ID(name, schema) CLASS_##name,
enum ClassId : NB_UCHAR { SCHEMAS(CLASS_ID) CLASS_COUNT };
#undef CLASS_ID

/* The result of a verb. */
struct Result {
    NB_USHORT primary = NAP_OK;
    NB_ULONG secondary = 0;

    bool ok() const { return primary == NAP_OK; }
};

constexpr Result GOOD = {NAP_OK, 0};
constexpr Result bad_parameter(NB_ULONG secondary) {
    return {NAP_PARAMETER_CHECK, secondary};
}
constexpr Result bad_state(NB_ULONG secondary) {
    return {NAP_STATE_CHECK, secondary};
}

struct ClassRow;

/* One resource.  OWNS: its list entry, which is what a list query copies out. */
struct Resource {
    AVL_NODE by_key = {};
    AVL_NODE by_alias = {}; /* linked when the class has an alias and this one is not blank */
    const ClassRow *row = nullptr;
    std::unique_ptr<uint64_t[]> key;
    std::unique_ptr<uint64_t[]> alias;
    std::unique_ptr<NB_UCHAR[]> entry;
    Behaviour behaviour = DEFAULT_BEHAVIOUR;
    TimerId timer = 0;
    NB_UCHAR state = NAP_NOT_ACTIVE; /* to NAP_PENDING_INACTIVE */
    bool derived = false;            /* made by another resource, not kept in the store */
    NB_USHORT tries = 0;             /* failed starts in a row */
    NB_ULONG below = 0;              /* dependants that are not inactive, LU 6.2 sessions carried */
    int32_t extra = 0; /* sessions that administrators added to those of the behaviour, or ended */
    bool going_down = false; /* it is to be stopped, behind what hangs on it */
};

constexpr size_t MAX_REFS = 2;

constexpr NB_UCHAR REF_OWNER = 1;    /* states follow: needs the owner active, stops with it */
constexpr NB_UCHAR REF_OPTIONAL = 2; /* may be blank */
constexpr NB_UCHAR REF_BY_ALIAS = 4; /* names the other's alias, not its key */
constexpr NB_UCHAR REF_CARRIED = 8;  /* is deleted with the owner instead of holding it */

/* A field that names a resource of another class, which must exist, and which cannot be deleted
 * while it is named. */
struct RefRow {
    ClassId to = CLASS_COUNT; /* CLASS_COUNT: no reference */
    NB_UCHAR flags = 0;
    const FieldRow *by = nullptr;
};

/* A field by which others may name the resource, beside its key. */
struct AliasRow {
    const FieldRow *name = nullptr; /* null: no alias */
    ClassId rival = CLASS_COUNT;    /* class whose key or alias shares the name space */
    bool rival_by_alias = false;
    const FieldRow *rival_name = nullptr; /* the name that is looked up there */

    KeyParts parts() const { return {key_part(*name)}; }
};

struct LifeRow {
    bool has_states() const { return !states.empty(); }

    States states = {};                    /* of states.h; empty: it has none */
    std::span<const NB_ULONG> causes = {}; /* sense codes of starts that fail, and of losses */
    bool shows_pending = false;            /* the two pending states are reported */
    const FieldRow *initially = nullptr;   /* flag: comes up with its owner; null: always does */
    NB_ULONG up_low_ms = 0;                /* time to come up: within these two, by name */
    NB_ULONG up_high_ms = 0;
    NB_ULONG down_ms = 0;
};

struct ClassHooks {
    /* Checks what is peculiar about a new or changed entry; `old` is null for a new one. */
    Result (*check)(const Engine &engine, const NB_UCHAR *entry, const Resource *old) = nullptr;
    /* Says what, beside the references of other resources, keeps a resource from being deleted. */
    Result (*removable)(const Engine &engine, const Resource &resource) = nullptr;
    /* Fills the answer fields from what is defined elsewhere. */
    void (*fill)(const Engine &engine, NB_UCHAR *entry) = nullptr;
    /* True when a change or a deletion has to wait; null: in any state but NAP_NOT_ACTIVE. */
    bool (*busy)(const Engine &engine, const Resource &resource) = nullptr;
    /* Brings derived resources in line with a resource that was added, or else changed. */
    void (*defined)(Engine &engine, Resource &resource, bool added) = nullptr;
    /* Takes back what `defined` made, before the resource is deleted or gets other contents. */
    void (*leaving)(Engine &engine, Resource &resource) = nullptr;
    /* Brings others in line after a resource was deleted; `entry` is what it was. */
    void (*left)(Engine &engine, const NB_UCHAR *entry) = nullptr;
    /* Writes the state into the entry. */
    void (*show)(const Engine &engine, Resource &resource) = nullptr;
    /* Shows the state in other resources, after it changed. */
    void (*moved)(Engine &engine, const Resource &resource) = nullptr;
    /* So many more resources like `which`, and active ones, belong to this owner. */
    void (*counted)(Resource &owner, const Resource &which, int resources, int active) = nullptr;
    /* The state that an indication reports; null: the resource's own. */
    NB_UCHAR (*report)(const Resource &resource) = nullptr;
    /* Carry out the class's verbs in place of the engine. */
    Result (*define)(Engine &engine, std::vector<NB_UCHAR> &block) = nullptr;
    Result (*remove)(Engine &engine, const NB_UCHAR *block) = nullptr;
};

struct ClassRow {
    ClassId id = CLASS_COUNT;
    const Schema *schema = nullptr; /* its name is that of the class in the store, too */
    RefRow refs[MAX_REFS] = {};
    AliasRow alias = {};
    LifeRow life = {};
    ClassHooks hooks = {};
};

/* The row of a class; the table is in the order of ClassId. */
const ClassRow &class_row(ClassId id);

/* Look-ups by the verbs that serve a class; null: no class has it.  `list` gets the list row. */
const ClassRow *class_by_list(NB_USHORT opcode, const ListRow **list);
const ClassRow *class_by_verb(NB_USHORT opcode);
const ClassRow *class_by_name(std::string_view name);

/* The list row that shows an entry. */
const ListRow &shown_by(const ClassRow &row, const NB_UCHAR *entry);

/* What no indication tells of moves at once: whoever reads its state could not learn of the next.
 */
inline bool is_heard_of(const Resource &resource) {
    return resource.row->schema->lists[0].indication != 0;
}

/* A number that is the same for the same name. */
NB_ULONG name_hash(const Resource &resource);

/* The families of the table, each in its source. */
std::span<const ClassRow> connectivity_classes();
std::span<const ClassRow> lu_classes();
std::span<const ClassRow> pool_classes();
std::span<const ClassRow> session_classes();
std::span<const ClassRow> service_classes();
std::span<const ClassRow> domain_classes();

} // namespace node

#endif
