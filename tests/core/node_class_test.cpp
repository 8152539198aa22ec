/* Every class of the table by one walk, then what is peculiar to some. */
#include "defineblock.h"
#include "node_support.h"

#include <optional>

using namespace node_test;
using node::ClassRow;
using node::Engine;
using node::FieldRow;
using node::Resource;
using node::Schema;
using records::FieldKind;

namespace {

std::string domain_file(const char *name) {
    return std::string(SAMPLE_DOMAINS "/") + name;
}

bool of_domain(const ClassRow &row) {
    return row.schema->scope == node::Scope::Domain;
}

/* The engine of a sample's first node, or of its domain; nothing in it is started. */
struct Sample {
    Rig rig;

    explicit Sample(const char *file, bool domain_itself, node::Store *store = nullptr)
        : rig(store, domain_itself ? node::Scope::Domain : node::Scope::Node) {
        node::DomainText domain = node::read_domain_file(domain_file(file));
        EXPECT_TRUE(rig.engine.load_text(
            node::TextNode(domain_itself ? domain.own : domain.nodes.at(0)), domain));
    }

    /* The block that defines what the entry is. */
    static std::vector<NB_UCHAR> block_of(const ClassRow &row, const NB_UCHAR *entry) {
        std::vector<NB_UCHAR> block(row.schema->define_size);
        make_define_block(*row.schema, entry, block.data());
        return block;
    }

    Codes issue(std::vector<NB_UCHAR> &block) {
        node::Answer answer;
        NAP_VCB header;
        rig.engine.execute(block.data(), block.size(), answer);
        block = answer.block;
        memcpy(&header, block.data(), sizeof header);
        return {header.primary_rc, header.secondary_rc};
    }

    /* Some resource of the class that a verb made and a verb can delete. */
    Resource *any(const ClassRow &row) {
        Resource *found = nullptr;
        for (Resource *at = rig.engine.table(row.id).first(); at != nullptr;
             at = node::ResourceTable::next(*at)) {
            const bool own =
                row.hooks.removable != nullptr && !row.hooks.removable(rig.engine, *at).ok();
            found = !at->derived && !own ? at : found;
        }
        return found;
    }

    std::vector<std::string> entries(const ClassRow &row) { return entries_of(rig, row); }

    static std::vector<std::string> entries_of(Rig &rig, const ClassRow &row) {
        std::vector<std::string> all;
        for (const node::ListRow &list : row.schema->lists) {
            const std::vector<std::string> some =
                list.list != 0 ? rig.list(list.list).entries : std::vector<std::string>();
            all.insert(all.end(), some.begin(), some.end());
        }
        return all;
    }
};

/* A value that the field does not take; none for a field that takes all. */
std::optional<std::string> bad_value(const FieldRow &field) {
    std::string value(field.width, '\x7F');
    const uint64_t all = field.width < 4 ? (1U << (8 * field.width)) - 1 : 0xFFFFFFFFU;
    switch (field.kind) {
    case FieldKind::Flag:
    case FieldKind::Word:
        node::put_number(reinterpret_cast<NB_UCHAR *>(value.data()), field.width, 0xEE);
        return value;
    case FieldKind::Number:
        node::put_number(reinterpret_cast<NB_UCHAR *>(value.data()), field.width, field.high + 1);
        return field.high < all ? std::optional(value) : std::nullopt;
    case FieldKind::NameEbcdic:
        value[0] = '\x40';
        return value;
    case FieldKind::Hex:
    case FieldKind::Bytes:
        return std::nullopt;
    default:
        return value;
    }
}

void refuses_bad_fields(Sample &sample, const ClassRow &row, const Resource &resource) {
    const Schema &schema = *row.schema;
    const std::vector<NB_UCHAR> good = Sample::block_of(row, resource.entry.get());
    const std::vector<std::string> before = sample.entries(row);
    for (const FieldRow &field : schema.fields) {
        const bool defined = field.offset >= schema.def.offset &&
                             size_t{field.offset} + field.width <= schema.def.end();
        const auto value = defined ? bad_value(field) : std::nullopt;
        if (value) {
            std::vector<NB_UCHAR> bad = good;
            memcpy(bad.data() + schema.def_in_define + field.offset - schema.def.offset,
                   value->data(), field.width);
            EXPECT_EQ(sample.issue(bad).first, unsigned{NAP_PARAMETER_CHECK}) << field.name;
        }
    }
    EXPECT_EQ(sample.entries(row), before);
}

/* Changes the description, where there is one, and finds it in the list. */
void changes_in_place(Sample &sample, const ClassRow &row, const Resource &resource) {
    const FieldRow *text = find_field(row.schema->fields, "description");
    std::vector<NB_UCHAR> block = Sample::block_of(row, resource.entry.get());
    const size_t count = sample.entries(row).size();
    if (text != nullptr) {
        NB_UCHAR *at =
            block.data() + row.schema->def_in_define + text->offset - row.schema->def.offset;
        memset(at, 0, text->width);
        memcpy(at, "changed", 7);
    }
    const std::vector<NB_UCHAR> asked = block;
    const std::vector<NB_UCHAR> before(resource.entry.get(),
                                       resource.entry.get() + row.schema->overlay_size());
    ASSERT_EQ(sample.issue(block), OK_CODES);
    const std::vector<std::string> after = sample.entries(row);
    EXPECT_EQ(after.size(), count);
    if (text != nullptr) {
        EXPECT_TRUE(std::any_of(after.begin(), after.end(), [text](const std::string &entry) {
            return entry.compare(text->offset, 8, "changed\0", 8) == 0;
        }));
    }
    for (const FieldRow &field : row.schema->fields) {
        if (field.has(node::FIELD_SECRET)) {
            const size_t at = row.schema->def_in_define + field.offset - row.schema->def.offset;
            const bool had_one = !is_empty_field(field, before.data());
            EXPECT_EQ(memcmp(asked.data() + at, block.data() + at, field.width) != 0, had_one);
        }
    }
}

void goes_and_comes_back(Sample &sample, const ClassRow &row, const Resource &resource) {
    const std::string key(reinterpret_cast<const char *>(resource.entry.get()) + node::KEY_OFFSET,
                          row.schema->key_size());
    std::vector<NB_UCHAR> block = Sample::block_of(row, resource.entry.get());
    for (const FieldRow &field : row.schema->fields) {
        if (field.has(node::FIELD_COMPARED)) { /* nobody knows what it was */
            const size_t at = row.schema->def_in_define + field.offset - row.schema->def.offset;
            node::put_ebcdic(block.data() + at, field.width, "AGAIN");
        }
    }
    const size_t count = sample.entries(row).size();
    const Codes gone = sample.rig.by_key(row.schema->remove, key);
    if (gone == state(NAP_IN_USE)) {
        return;
    }
    ASSERT_EQ(gone, OK_CODES);
    EXPECT_LT(sample.entries(row).size(), count);
    EXPECT_EQ(sample.rig.by_key(row.schema->remove, key), parameter(NAP_UNKNOWN_RESOURCE));
    ASSERT_EQ(sample.issue(block), OK_CODES);
    EXPECT_EQ(sample.entries(row).size(), count);
}

/* Defined, listed, refused, changed, deleted, defined again, stored and loaded: every class. */
TEST(NodeClassWalk, EveryClassThatCanBeDefined) {
    for (NB_UCHAR id = 0; id < node::CLASS_COUNT; id++) {
        const ClassRow &row = node::class_row(static_cast<node::ClassId>(id));
        SCOPED_TRACE(row.schema->name);
        if (row.schema->define == 0) {
            continue;
        }
        Folder folder;
        std::string why;
        std::vector<std::string> kept;
        for (const char *file : {"single.domain", "branch.domain"}) {
            node::Store store;
            ASSERT_TRUE(store.open(folder.file(std::string(file) + ".db"), why)) << why;
            Sample sample(file, of_domain(row), &store);
            const Resource *one = sample.any(row);
            if (one == nullptr) {
                EXPECT_STREQ(file, "single.domain") << "the samples have none";
                continue;
            }
            refuses_bad_fields(sample, row, *one);
            changes_in_place(sample, row, *sample.any(row));
            goes_and_comes_back(sample, row, *sample.any(row));
            kept = sample.entries(row);
            Rig again(&store, of_domain(row) ? node::Scope::Domain : node::Scope::Node);
            ASSERT_TRUE(again.engine.load_store(why)) << why;
            EXPECT_EQ(Sample::entries_of(again, row), kept);
            break;
        }
    }
}

/* What is told of every other class shows in a program beside its list; of the directory, too, it
 * hears by copies, which not everyone asks for. */
TEST(NodeIndications, OfTheDirectoryComeWithItsChanges) {
    Rig rig;
    rig.load(SMALL_NODE);
    NAP_DEFINE_DIR_VERB verb = {};
    verb.opcode = NAP_DEFINE_DIRECTORY_ENTRY;
    put(verb.fqcp_name, ebcdic("NETA.NORTH", 17));
    put(verb.resource_name, ebcdic("NETA.NEW", 17));
    verb.resource_type = NAP_DIR_LU;
    EXPECT_EQ(rig.issue(verb), OK_CODES);
    EXPECT_EQ(rig.issue(verb), OK_CODES) << "a change";
    const std::string type = {static_cast<char>(NAP_DIR_LU), 0};
    EXPECT_EQ(rig.by_key(NAP_DELETE_DIRECTORY_ENTRY,
                         ebcdic("NETA.NORTH", 17) + ebcdic("NETA.NEW", 17) + type),
              OK_CODES);
    std::vector<int> gone;
    for (const NAP_RESOURCE_INDICATION &one : rig.heard.all) {
        if (one.opcode == NAP_DIRECTORY_INDICATION) {
            gone.push_back(one.deactivated);
        }
    }
    EXPECT_EQ(gone, (std::vector<int>{0, 0, 1}));
}

NAP_DEFINE_USER_VERB user(const std::string &name, NB_USHORT sessions) {
    NAP_DEFINE_USER_VERB verb = {};
    verb.opcode = NAP_DEFINE_EMULATOR_USER;
    memcpy(verb.user_name, name.data(), name.size());
    verb.def_data.num_sessions = sessions;
    for (NB_USHORT at = 0; at < std::min<NB_USHORT>(sessions, NAP_MAX_USER_SESSIONS); at++) {
        NAP_USER_SESSION session = {};
        put(session.session_name, local8("S" + std::to_string(at)));
        session.session_class = NAP_USER_SESSION_3270;
        put(session.lu_name, ebcdic("POOL"));
        verb.def_data.sessions[at] = session;
    }
    return verb;
}

TEST(NodeItems, EntriesEndBehindTheLastItem) {
    Rig rig(nullptr, node::Scope::Domain);
    for (NB_USHORT at = 0; at < 200; at++) {
        NAP_DEFINE_USER_VERB verb = user("u" + std::to_string(1000 + at), at % 11);
        ASSERT_EQ(rig.issue(verb), OK_CODES);
    }
    NAP_DEFINE_USER_VERB bad = user("many", NAP_MAX_USER_SESSIONS + 1);
    EXPECT_EQ(rig.issue(bad), parameter(NAP_INVALID_VALUE));
    bad = user("same", 2);
    bad.def_data.sessions[1] = bad.def_data.sessions[0];
    EXPECT_EQ(rig.issue(bad), parameter(NAP_DUPLICATE_NAME));
    bad = user("U1003", 0);
    EXPECT_EQ(rig.issue(bad), parameter(NAP_DUPLICATE_NAME)) << "another spelling";
    NAP_DEFINE_USER_VERB shorter = user("u1010", 1);
    shorter.def_data.sessions[5] = user("x", 10).def_data.sessions[5];
    EXPECT_EQ(rig.issue(shorter), OK_CODES);
    const List all = rig.read_all(NAP_QUERY_EMULATOR_USER_DEF, 32, 65535);
    ASSERT_EQ(all.entries.size(), 200U);
    for (size_t at = 0; at < all.entries.size(); at++) {
        const size_t sessions = at == 10 ? 1 : at % 11;
        const size_t end =
            offsetof(NAP_USER_DATA, def_data.sessions) + sessions * sizeof(NAP_USER_SESSION);
        EXPECT_EQ(all.entries[at].size(), (end + 3) & ~size_t{3});
    }
    EXPECT_EQ(rig.list(NAP_QUERY_EMULATOR_USER_DEF, NAP_FIRST_IN_LIST, "", 0, 0, 76).count, 1U);
    EXPECT_EQ(rig.list(NAP_QUERY_EMULATOR_USER_DEF, NAP_FIRST_IN_LIST, "", 0, 0, 72).codes,
              parameter(NAP_BAD_LENGTH));
}

NAP_DEFINE_LU_POOL_VERB pool(const std::string &name, const std::string &lu = "") {
    NAP_DEFINE_LU_POOL_VERB verb = {};
    verb.opcode = NAP_DEFINE_LU_POOL;
    put(verb.pool_name, ebcdic(name));
    put(verb.lu_name, ebcdic(lu));
    return verb;
}

std::string pool_of(Rig &rig, const std::string &pu, const std::string &lu) {
    const auto entry = rig.entry<NAP_LU03_DATA>(node::CLASS_LU03, ebcdic(pu) + ebcdic(lu));
    return node::ebcdic_text(entry.def_data.pool_name, 8);
}

TEST(NodePools, BothViewsAgree) {
    Rig rig;
    rig.load(SMALL_NODE);
    const auto lus = [&rig] { return rig.list(NAP_QUERY_LU_POOL).names(10, true); };
    using Names = std::vector<std::string>;
    for (const char *lu : {"LU02", "LU01"}) {
        NAP_DEFINE_LU_POOL_VERB verb = pool("P", lu);
        EXPECT_EQ(rig.issue(verb), OK_CODES);
    }
    EXPECT_EQ(lus(), (Names{"", "LU01", "LU02"}));
    EXPECT_EQ(pool_of(rig, "HOSTPU", "LU01"), "P");
    NAP_DEFINE_LU_POOL_VERB other = pool("Q", "LU01");
    EXPECT_EQ(rig.issue(other), OK_CODES);
    EXPECT_EQ(lus(), (Names{"", "LU02", "", "LU01"})) << "an LU is in one pool";
    NAP_DEFINE_LU_POOL_VERB unknown = pool("Q", "NOLU");
    EXPECT_EQ(rig.issue(unknown), parameter(NAP_UNKNOWN_OWNER));
    rig.pass(3000);
    EXPECT_EQ(rig.by_key(NAP_DELETE_LU_POOL, ebcdic("P") + ebcdic("LU02")), OK_CODES);
    EXPECT_EQ(pool_of(rig, "HOSTPU", "LU02"), "");
    EXPECT_EQ(lus(), (Names{"", "", "LU01"})) << "a pool that was defined stays";
    EXPECT_EQ(rig.by_key(NAP_DELETE_LU_0_TO_3, ebcdic("HOSTPU") + ebcdic("LU01")), OK_CODES);
    EXPECT_EQ(lus(), (Names{"", ""}));
    NAP_DEFINE_LU_POOL_VERB in_use = pool("Q", "LU06");
    EXPECT_EQ(rig.issue(in_use), state(NAP_RESOURCE_ACTIVE)) << "somebody works with it";
}

constexpr const char *GATEWAY = R"(
[domain]
[node one]
fq_cp_name = NETA.ONE
cp_alias = ONE
tamrix_support = yes
[tamrix]
local_ip_address = 10.1.2.3
[dlc IP0]
dlc_type = ip
[port P0]
dlc_name = IP0
[ls HOST]
port_name = P0
adj_cp_type = host
pu_name = HOSTPU
[ls BELOW]
port_name = P0
adj_cp_type = downstream
pu_name = DOWNPU
[ls NORTH]
port_name = P0
adj_cp_type = network_node
adj_cp_name = NETA.NORTH
cp_cp_sess_support = yes
hpr_supported = yes
dest_address = 10.9.9.9
[connection_network NETA.NET]
dlc_type = ip
[cn_port NETA.NET P0]
[lu03 HOSTPU LU01..LU02]
pool_name = POOL
[downstream_lu DOWNPU DL01]
host_lu_name = POOL
host_application = CICS
[local_lu APPL]
lu_alias = APPL
[mode_in_use APPL #INTER NETA.FAR]
fq_cp_name = NETA.NORTH
sessions = 3
)";

TEST(NodeGateway, DownstreamPusComeWithTheirLinks) {
    Rig rig;
    rig.load(GATEWAY);
    rig.pass(5000);
    EXPECT_EQ(rig.list(NAP_QUERY_PU).names(2, true), std::vector<std::string>{"HOSTPU"});
    const auto pu = rig.entry<NAP_DOWN_PU_DATA>(node::CLASS_DOWN_PU, ebcdic("DOWNPU"));
    EXPECT_EQ(pu.pu_sscp_sess_active, NAP_ACTIVE);
    EXPECT_EQ(pu.active_lus, 1U);
    const auto lu =
        rig.entry<NAP_DOWN_LU_DATA>(node::CLASS_DOWN_LU, ebcdic("DOWNPU") + ebcdic("DL01"));
    EXPECT_EQ(node::ebcdic_text(lu.det_data.plu_name, 8), "CICS");
    EXPECT_EQ(node::ebcdic_text(lu.det_data.used_lu_name, 8), "LU01");
    EXPECT_EQ(rig.by_key(NAP_DELETE_LU_POOL, ebcdic("POOL") + ebcdic("")), state(NAP_IN_USE));
    const std::string port = ebcdic("NETA.NET", 17) + local8("P0");
    EXPECT_EQ(rig.entry<NAP_CN_DATA>(node::CLASS_CN, ebcdic("NETA.NET", 17)).num_act_ports, 1);
    EXPECT_EQ(rig.by_key(NAP_DELETE_CN_PORT, port), state(NAP_RESOURCE_ACTIVE));
    EXPECT_EQ(rig.by_key(NAP_STOP_PORT, local8("P0")), OK_CODES);
    rig.pass(2000);
    EXPECT_EQ(rig.by_key(NAP_DELETE_CN_PORT, port), OK_CODES);
    EXPECT_EQ(rig.by_key(NAP_DELETE_LS, local8("BELOW")), state(NAP_IN_USE)) << "an LU hangs on it";
    EXPECT_EQ(rig.by_key(NAP_DELETE_DOWNSTREAM_LU, ebcdic("DOWNPU") + ebcdic("DL01")), OK_CODES);
    EXPECT_EQ(rig.by_key(NAP_DELETE_LS, local8("BELOW")), OK_CODES);
    EXPECT_EQ(rig.list(NAP_QUERY_DOWNSTREAM_PU).total, 0U);
}

TEST(NodeGateway, RoutesAndIpSessionsFollowTheSessions) {
    Rig rig;
    rig.load(GATEWAY);
    rig.pass(5000);
    const List routes = rig.list(NAP_QUERY_RTP_CONNECTION);
    ASSERT_EQ(routes.total, 3U) << "two between the control points, one for #INTER";
    const List sessions = rig.list(NAP_QUERY_TAMRIX_APPCIP);
    ASSERT_EQ(sessions.total, 3U);
    NAP_TAMRIX_SESSION_DATA one;
    memcpy(&one, sessions.entries[0].data(), sizeof one);
    EXPECT_EQ(one.session_number, 1);
    EXPECT_EQ(one.remote_ip_address.octets[1], 9);
    EXPECT_EQ(rig.by_key(NAP_STOP_LS, local8("NORTH")), OK_CODES);
    rig.pass(2000);
    EXPECT_EQ(rig.list(NAP_QUERY_RTP_CONNECTION).total, 0U);
    EXPECT_EQ(rig.list(NAP_QUERY_TAMRIX_APPCIP).total, 0U);
    unsigned gone = 0;
    for (const NAP_RESOURCE_INDICATION &heard : rig.heard.all) {
        gone += heard.opcode == NAP_TAMRIX_INDICATION ? heard.deactivated : 0;
    }
    EXPECT_EQ(gone, 3U);
    EXPECT_EQ(rig.by_key(NAP_START_LS, local8("NORTH")), OK_CODES);
    rig.pass(3000);
    EXPECT_EQ(rig.list(NAP_QUERY_RTP_CONNECTION).total, 3U);
    EXPECT_NE(rig.list(NAP_QUERY_RTP_CONNECTION).entries, routes.entries) << "a name is used once";
}

TEST(NodeSecrets, AreKeptAndNeverAnswered) {
    Rig rig;
    rig.load(SMALL_NODE);
    NAP_DEFINE_USERID_PASSWORD_VERB verb = {};
    verb.opcode = NAP_DEFINE_USERID_PASSWORD;
    put(verb.user_id, ebcdic("CLERK", 10));
    EXPECT_EQ(rig.issue(verb), parameter(NAP_INVALID_VALUE)) << "no password";
    put(verb.def_data.password, ebcdic("SECRET", 10));
    EXPECT_EQ(rig.issue(verb), OK_CODES);
    EXPECT_EQ(node::ebcdic_text(verb.def_data.password, 10), "");
    EXPECT_EQ(rig.issue(verb), OK_CODES) << "what was read is written back";
    const auto kept =
        rig.entry<NAP_USERID_PASSWORD_DATA>(node::CLASS_USERID_PASSWORD, ebcdic("CLERK", 10));
    EXPECT_EQ(node::ebcdic_text(kept.def_data.password, 10), "SECRET");
    const std::string answered = rig.list(NAP_QUERY_USERID_PASSWORD).entries.at(0);
    EXPECT_EQ(answered.find(ebcdic("SECRET", 6)), std::string::npos);
}

TEST(NodeNames, AnAliasMayHaveTheByteOfAPeriod) {
    Rig rig(nullptr, node::Scope::Domain);
    NAP_DEFINE_CPIC_VERB verb = {};
    verb.opcode = NAP_DEFINE_CPIC_SIDE_INFO;
    put(verb.sym_dest_name, local8("DESK"));
    put(verb.def_data.partner_lu_name, std::string("BACKUP") + std::string(11, ' '));
    verb.def_data.partner_is_alias = 1;
    put(verb.def_data.tp_name, ebcdic("DESKTP", 64));
    EXPECT_EQ(rig.issue(verb), OK_CODES);
    verb.def_data.partner_is_alias = 0;
    EXPECT_EQ(rig.issue(verb), parameter(NAP_INVALID_NAME));
}

TEST(NodeSettings, AreSetByTheBlockOfTheirQuery) {
    Folder folder;
    std::string why;
    node::Store store;
    ASSERT_TRUE(store.open(folder.file("n.db"), why)) << why;
    Rig rig(&store);
    rig.load(SMALL_NODE);
    NAP_QUERY_DEFAULTS_VERB defaults = {};
    defaults.opcode = NAP_DEFINE_DEFAULTS;
    put(defaults.def_data.mode_name, ebcdic("NOMODE"));
    EXPECT_EQ(rig.issue(defaults), parameter(NAP_UNKNOWN_OWNER));
    put(defaults.def_data.mode_name, ebcdic("PAYMODE"));
    defaults.def_data.implicit_plu_forbidden = 2;
    EXPECT_EQ(rig.issue(defaults), parameter(NAP_INVALID_VALUE));
    defaults.def_data.implicit_plu_forbidden = 1;
    EXPECT_EQ(rig.issue(defaults), OK_CODES);
    NAP_TN3270_SSL_LDAP_VERB ldap = {};
    ldap.opcode = NAP_DEFINE_TN3270_SSL_LDAP;
    ldap.port = 636;
    strcpy(reinterpret_cast<char *>(ldap.password), "hidden");
    EXPECT_EQ(rig.issue(ldap), OK_CODES);
    EXPECT_EQ(ldap.password[0], 0);
    NAP_TAMRIX_DEFAULTS_VERB tamrix = {};
    tamrix.opcode = NAP_DEFINE_TAMRIX_APPCIP_DEFAULTS;
    tamrix.port = 999;
    tamrix.connect_retry = tamrix.connect_timeout = 1;
    EXPECT_EQ(rig.issue(tamrix), OK_CODES);
    tamrix.opcode = NAP_DELETE_TAMRIX_APPCIP_DEFAULTS;
    EXPECT_EQ(rig.issue(tamrix), OK_CODES);
    EXPECT_EQ(tamrix.port, 397) << "the answer is what is set then";
    Rig again(&store);
    ASSERT_TRUE(again.engine.load_store(why)) << why;
    NAP_QUERY_DEFAULTS_VERB query = {};
    query.opcode = NAP_QUERY_DEFAULTS;
    EXPECT_EQ(again.issue(query), OK_CODES);
    EXPECT_EQ(query.def_data.implicit_plu_forbidden, 1);
    EXPECT_EQ(
        again.engine.settings<NAP_TN3270_SSL_LDAP_VERB>(NAP_QUERY_TN3270_SSL_LDAP).password[0],
        'h');
}

/* Some resources, or all: with the last name goes the trace. */
TEST(NodeSettings, TheDlcTraceEndsByName) {
    Rig rig;
    rig.load(SMALL_NODE);
    const auto trace = [&rig](NB_USHORT opcode, std::initializer_list<const char *> names,
                              NAP_QUERY_TRACE_VERB &verb) {
        verb = {};
        verb.opcode = opcode;
        verb.trace_flags = 3;
        for (size_t at = 0; at < names.size(); at++) {
            memcpy(verb.names[at], local8(names.begin()[at]).data(), 8);
        }
        return rig.issue(verb);
    };
    NAP_QUERY_TRACE_VERB verb;
    EXPECT_EQ(trace(NAP_SET_DLC_TRACE, {"ETH0", "NOSUCH"}, verb), parameter(NAP_UNKNOWN_OWNER));
    EXPECT_EQ(trace(NAP_SET_DLC_TRACE, {"eth0", "HOST"}, verb), OK_CODES);
    EXPECT_EQ(node::local_text(verb.names[0], 8), "ETH0") << "as it is spelled";
    EXPECT_EQ(trace(NAP_REMOVE_DLC_TRACE, {"HOST", "LAN0"}, verb), parameter(NAP_UNKNOWN_RESOURCE));
    EXPECT_EQ(trace(NAP_REMOVE_DLC_TRACE, {"HOST"}, verb), OK_CODES);
    EXPECT_EQ(verb.trace_flags, 3U);
    EXPECT_EQ(node::local_text(verb.names[0], 8), "ETH0");
    EXPECT_EQ(trace(NAP_REMOVE_DLC_TRACE, {"ETH0"}, verb), OK_CODES);
    EXPECT_EQ(verb.trace_flags, 0U);
}

TEST(NodeTraces, AreFilesThatAreListed) {
    Folder folder;
    Rig rig;
    rig.engine.keep_traces_in(folder.file("traces"));
    rig.load(SMALL_NODE);
    EXPECT_EQ(rig.list(NAP_QUERY_TRACE_FILE).count, 0U);
    const auto set = [&rig](NB_USHORT opcode, const char *file, NB_ULONG flags) {
        NAP_QUERY_TRACE_VERB verb = {};
        verb.opcode = opcode;
        verb.trace_flags = flags;
        verb.truncation = 30;
        strcpy(reinterpret_cast<char *>(verb.trace_file), file);
        return rig.issue(verb);
    };
    for (const char *bad : {"../mine", ".hidden", "a/b"}) {
        EXPECT_EQ(set(NAP_SET_DLC_TRACE, bad, 1), parameter(NAP_INVALID_VALUE)) << bad;
    }
    EXPECT_EQ(set(NAP_SET_DLC_TRACE, "", 1), OK_CODES);
    EXPECT_EQ(set(NAP_SET_TRACE_TYPE, "verbs", 1), OK_CODES);
    rig.pass(8000);
    const auto file = [&rig](size_t at) {
        NAP_TRACE_FILE_DATA entry;
        const List files = rig.list(NAP_QUERY_TRACE_FILE);
        EXPECT_EQ(files.entries.size(), 2U);
        memcpy(&entry, files.entries.at(at).data(), sizeof entry);
        return entry;
    };
    const NAP_TRACE_FILE_DATA dlc = file(0);
    EXPECT_EQ(dlc.trace_kind, NAP_TRACE_DLC);
    EXPECT_EQ(dlc.active, 1);
    EXPECT_EQ(dlc.size, std::filesystem::file_size(folder.file("traces/dlc.trc")));
    EXPECT_GT(dlc.size, 100U) << "links came up";
    EXPECT_STREQ(reinterpret_cast<const char *>(file(1).file_name), "verbs");
    EXPECT_EQ(set(NAP_SET_DLC_TRACE, "", 0), OK_CODES);
    EXPECT_EQ(file(0).active, 0) << "it is still to be had";
    for (int times = 0; times < 40000; times++) {
        rig.list(NAP_QUERY_DLC);
    }
    EXPECT_LE(file(1).size, node::MAX_TRACE_SIZE);
}

TEST(NodeCosRows, TheClassOfServiceCountsThem) {
    Rig rig;
    rig.load("[domain]\n[node one]\nfq_cp_name = NETA.ONE\n[cos MINE]\n[cos_tg_row MINE 1..3]\n");
    const auto mine = rig.entry<NAP_COS_DATA>(node::CLASS_COS, ebcdic("MINE"));
    const auto sna = rig.entry<NAP_COS_DATA>(node::CLASS_COS, ebcdic("#BATCHSC"));
    EXPECT_EQ(mine.def_data.num_of_tg_rows, 3);
    EXPECT_EQ(mine.def_data.num_of_node_rows, 0);
    EXPECT_EQ(sna.def_data.num_of_tg_rows + sna.def_data.num_of_node_rows, 16);
    const std::string second = {2, 0};
    EXPECT_EQ(rig.by_key(NAP_DELETE_COS_TG_ROW, ebcdic("MINE") + second), OK_CODES);
    EXPECT_EQ(rig.entry<NAP_COS_DATA>(node::CLASS_COS, ebcdic("MINE")).def_data.num_of_tg_rows, 2);
    EXPECT_EQ(rig.by_key(NAP_DELETE_COS, ebcdic("MINE")), OK_CODES);
    EXPECT_EQ(rig.list(NAP_QUERY_COS_TG_ROW, NAP_FIRST_IN_LIST, ebcdic("MINE"), 8).total, 0U);
}

} // namespace
