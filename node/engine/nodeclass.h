/* Resource classes: what the one engine needs to know of each kind of resource.
 *
 * To add a class: give it a ClassId (behind the classes that it refers to: resources are loaded in
 * this order), a field table in nodeclsf.cpp and a row in nodeclass.cpp.  The row says which verbs
 * serve it, what its list entry looks like, what its key is, whom it belongs to and how its states
 * move.  Lists, paging, defining, deleting, the store, the domain text, starting, stopping,
 * cascades, indications and copies then work.  Only what is peculiar to the class is code: its
 * hooks (nodehook.cpp), any of which may be null.  tests/unit/node_engine_test.cpp walks the table.
 */
#ifndef NODECLASS_H
#define NODECLASS_H

#include "nodefield.h"
#include "nodekey.h"
#include "nodetimer.h"
#include "ntlavl.h"

#include <memory>

namespace node {

class Engine;

enum ClassId : NB_UCHAR {
    CLASS_DLC,
    CLASS_PORT,
    CLASS_LS,
    CLASS_PU,
    CLASS_LU03,
    CLASS_LOCAL_LU,
    CLASS_COS,
    CLASS_MODE_DEF,
    CLASS_PLU_DEF,
    CLASS_MODE,
    CLASS_PLU,
    CLASS_DIRECTORY,
    CLASS_COUNT
};

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
    SortKey key = {};
    SortKey alias = {};
    std::unique_ptr<NB_UCHAR[]> entry;
    Behaviour behaviour = DEFAULT_BEHAVIOUR;
    TimerId timer = 0;
    NB_UCHAR state = NAP_NOT_ACTIVE; /* to NAP_PENDING_INACTIVE */
    bool derived = false;            /* made by another resource, not kept in the store */
    NB_USHORT tries = 0;             /* failed starts in a row */
};

/* A list verb that shows the class, or the part of it whose entry has `value` at `select_offset`
 * (0: all of it), and the indication that reports its changes (0: none). */
struct ListRow {
    NB_USHORT list;
    NB_USHORT indication;
    size_t select_offset;
    NB_UCHAR select_value;
};

constexpr size_t MAX_LISTS = 2;
constexpr size_t MAX_REFS = 2;

constexpr NB_UCHAR REF_OWNER = 1;    /* states follow: needs the owner active, stops with it */
constexpr NB_UCHAR REF_OPTIONAL = 2; /* may be blank */
constexpr NB_UCHAR REF_BY_ALIAS = 4; /* names the other's alias, not its key */
constexpr NB_UCHAR REF_CARRIED = 8;  /* is deleted with the owner instead of holding it */

/* A field that names a resource of another class, which must exist, and which cannot be deleted
 * while it is named. */
struct RefRow {
    NB_UCHAR to; /* ClassId */
    NB_UCHAR flags;
    size_t offset; /* in the entry; the width is that of the other's key or alias */
};

struct AliasRow {
    size_t offset; /* in the entry; 0: no alias */
    KeyPart parts[MAX_KEY_PARTS];
    NB_UCHAR rival; /* class whose key or alias shares the name space; CLASS_COUNT: none */
    bool rival_by_alias;
    size_t rival_offset; /* of the name that is looked up there */
};

struct Span {
    size_t offset;
    size_t length;
};

struct LifeRow {
    bool has_states;
    bool shows_pending; /* the two pending states are reported */
    size_t auto_offset; /* flag in the entry: comes up with its owner; 0: always does */
    NB_ULONG up_low_ms; /* time to come up: within these two, by name */
    NB_ULONG up_high_ms;
    NB_ULONG down_ms;
};

struct ClassHooks {
    /* Checks what is peculiar about a new or changed entry; `old` is null for a new one. */
    Result (*check)(const Engine &engine, const NB_UCHAR *entry, const Resource *old);
    /* Says what, beside the references of other resources, keeps a resource from being deleted. */
    Result (*removable)(const Engine &engine, const Resource &resource);
    /* Fills the answer fields from what is defined elsewhere. */
    void (*fill)(const Engine &engine, NB_UCHAR *entry);
    /* True when a change or a deletion has to wait; null: in any state but NAP_NOT_ACTIVE. */
    bool (*busy)(const Resource &resource);
    /* Brings derived resources in line with a resource that was added, or else changed. */
    void (*defined)(Engine &engine, Resource &resource, bool added);
    /* Writes the state into the entry. */
    void (*show)(const Engine &engine, Resource &resource);
    /* So many more resources, and active ones, belong to this owner. */
    void (*counted)(Resource &owner, int resources, int active);
    /* The state that an indication reports; null: the resource's own. */
    NB_UCHAR (*report)(const Resource &resource);
};

struct ClassRow {
    ClassId id;
    const char *name; /* the section of domain texts, and the class in the store */
    ListRow lists[MAX_LISTS];
    NB_USHORT define, remove, start, stop; /* opcodes, 0: none */
    size_t entry_size;
    size_t define_size;
    KeyPart key[MAX_KEY_PARTS]; /* from offset 2 of the entry, offset 12 of the define block */
    Span def;                   /* in the entry */
    size_t def_in_define;
    Span det; /* in the entry: what indications carry, and what the store leaves out */
    FieldTable fields;
    RefRow refs[MAX_REFS];
    size_t ref_count;
    AliasRow alias;
    LifeRow life;
    ClassHooks hooks;

    size_t key_size() const { return key_length(key); }
    /* What the entry takes in a list: a multiple of 4. */
    size_t overlay_size() const { return (entry_size + 3) & ~size_t{3}; }
};

constexpr size_t KEY_OFFSET = 2;    /* of the key in every list entry */
constexpr size_t KEY_IN_BLOCK = 12; /* of the key in every define and name block */

/* The row of a class; the table is in the order of ClassId. */
const ClassRow &class_row(ClassId id);

/* Look-ups by the verbs that serve a class; null: no class has it.  `list` gets the list row. */
const ClassRow *class_by_list(NB_USHORT opcode, const ListRow **list);
const ClassRow *class_by_verb(NB_USHORT opcode);
const ClassRow *class_by_name(std::string_view name);

/* The list row that shows an entry. */
const ListRow &shown_by(const ClassRow &row, const NB_UCHAR *entry);

/* The field tables, by ClassId (nodeclsf.cpp). */
FieldTable class_fields(ClassId id);

/* The hooks, by ClassId (nodehook.cpp). */
ClassHooks class_hooks(ClassId id);

} // namespace node

#endif
