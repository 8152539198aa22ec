/* Resource classes: what the one engine needs to know of each kind of resource.
 *
 * To add a class: give it a ClassId (behind the classes that it refers to: resources are loaded in
 * this order), a field table and a row in the room where it belongs (noderowc.cpp connectivity,
 * noderowl.cpp LUs, noderows.cpp sessions and routes, noderowt.cpp TN3270 and IP, noderowd.cpp
 * programs, security and the domain).  The row says which verbs serve it, what its list entry looks
 * like, what its key is, whom it belongs to and how its states move.  Lists, paging, defining,
 * deleting, the store, the domain text, starting, stopping, cascades, indications and copies then
 * work.  Only what is peculiar to the class is code: its hooks (nodehook*.cpp), any of which may be
 * null.  tests/unit/node_class_test.cpp walks the table. */
#ifndef NODECLASS_H
#define NODECLASS_H

#include "nodefield.h"
#include "nodekey.h"
#include "nodetimer.h"
#include "ntlavl.h"

#include <memory>
#include <vector>

namespace node {

class Engine;

enum ClassId : NB_UCHAR {
    CLASS_DLC,
    CLASS_PORT,
    CLASS_LS,
    CLASS_CN,
    CLASS_CN_PORT,
    CLASS_DSPU_TEMPLATE,
    CLASS_PU,
    CLASS_DOWN_PU,
    CLASS_LU_POOL,
    CLASS_LU03,
    CLASS_DOWN_LU,
    CLASS_EXTRA_DATA,
    CLASS_LOCAL_LU,
    CLASS_COS,
    CLASS_COS_NODE_ROW,
    CLASS_COS_TG_ROW,
    CLASS_MODE_DEF,
    CLASS_PLU_DEF,
    CLASS_MODE,
    CLASS_PLU,
    CLASS_DIRECTORY,
    CLASS_LS_ROUTING,
    CLASS_LU62_TIMEOUT,
    CLASS_RTP_CONN,
    CLASS_PRIMARY_LINE,
    CLASS_PRIMARY_LU0,
    CLASS_ACCESS_LIST,
    CLASS_TP_DEF,
    CLASS_TP_LOAD,
    CLASS_LU_LU_PASSWORD,
    CLASS_USERID_PASSWORD,
    CLASS_TN_ACCESS,
    CLASS_TN_ASSOC,
    CLASS_TN_REDIRECT,
    CLASS_TAMRIX_SESSION,
    CLASS_USER,
    CLASS_CPIC,
    CLASS_RJE,
    CLASS_COUNT
};

/* Which engine keeps a class, and which target its verbs go to. */
enum class Scope : NB_UCHAR {
    Node,   /* a node */
    TpLoad, /* a node, reached through its TP load file */
    Domain, /* the domain, reached through its configuration file */
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
    NB_USHORT list = 0;
    NB_USHORT indication = 0;
    size_t select_offset = 0;
    NB_UCHAR select_value = 0;
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
    NB_UCHAR to = 0; /* ClassId */
    NB_UCHAR flags = 0;
    size_t offset = 0; /* in the entry; the width is that of the other's key or alias */
};

struct AliasRow {
    size_t offset = 0; /* in the entry; 0: no alias */
    KeyPart parts[MAX_KEY_PARTS] = {};
    NB_UCHAR rival = CLASS_COUNT; /* class whose key or alias shares the name space */
    bool rival_by_alias = false;
    size_t rival_offset = 0; /* of the name that is looked up there */
};

struct Span {
    size_t offset = 0;
    size_t length = 0;
};

struct LifeRow {
    bool has_states = false;
    bool shows_pending = false; /* the two pending states are reported */
    size_t auto_offset = 0;     /* flag in the entry: comes up with its owner; 0: always does */
    NB_ULONG up_low_ms = 0;     /* time to come up: within these two, by name */
    NB_ULONG up_high_ms = 0;
    NB_ULONG down_ms = 0;
};

/* Items that stand one behind the other within an entry. */
struct NestedRow {
    const char *name = nullptr; /* in domain texts; null: the class has none */
    size_t count_offset = 0;    /* of their number in the entry, 1 or 2 bytes */
    size_t count_width = 0;
    size_t offset = 0; /* of the first */
    size_t size = 0;   /* of one */
    NB_ULONG least = 0;
    NB_ULONG most = 0;
    bool cuts = false; /* the entry of a list ends behind the last one */
    FieldTable fields; /* offsets within an item; the first is its name */
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
    const char *name = nullptr; /* the section of domain texts, and the class in the store */
    Scope scope = Scope::Node;
    bool untold = false; /* made by the node itself: no section of domain texts */
    ListRow lists[MAX_LISTS] = {};
    NB_USHORT define = 0, remove = 0, start = 0, stop = 0; /* opcodes, 0: none */
    size_t entry_size = 0;
    size_t define_size = 0;
    KeyPart key[MAX_KEY_PARTS] = {}; /* from KEY_OFFSET of the entry, KEY_IN_BLOCK of the block */
    Span def = {};                   /* in the entry */
    size_t def_in_define = 0;
    Span det = {}; /* in the entry: what indications carry, and what the store leaves out */
    FieldTable fields = {};
    NestedRow nested = {};
    RefRow refs[MAX_REFS] = {};
    size_t ref_count = 0;
    AliasRow alias = {};
    LifeRow life = {};
    ClassHooks hooks = {};

    size_t key_size() const { return key_length(key); }
    /* What the longest entry takes in a list: a multiple of 4. */
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

/* Calls action(field table, start of its record) for the entry and for each of its items. */
template <class Action> void for_tables(const ClassRow &row, NB_UCHAR *entry, Action action) {
    action(row.fields, entry);
    if (row.nested.name != nullptr) {
        const NestedRow &nested = row.nested;
        const NB_ULONG count = get_number(entry + nested.count_offset, nested.count_width);
        for (NB_ULONG at = 0; at < count && at < nested.most; at++) {
            action(nested.fields, entry + nested.offset + at * nested.size);
        }
    }
}

/* Writes the length that the entry has in a list into its first two bytes, and clears what stands
 * behind its last item.  REQUIRES: no more items than there may be. */
void set_entry_length(const ClassRow &row, NB_UCHAR *entry);

/* The rooms of the table, each in its file. */
void add_connectivity_rows(ClassRow *table);
void add_lu_rows(ClassRow *table);
void add_session_rows(ClassRow *table);
void add_service_rows(ClassRow *table);
void add_domain_rows(ClassRow *table);

} // namespace node

#endif
