#include "node_support.h"

#include "domainconfig.h"

#include <set>

using namespace node_test;

namespace {

std::string sample(const char *name) {
    return std::string(SAMPLE_DOMAINS "/") + name;
}

struct BadText {
    const char *text;
    int line;
    const char *says;
};

constexpr const char *HEAD = "[domain]\n[node one]\nfq_cp_name = NETA.ONE\n";

/* Lines count behind the three of HEAD. */
constexpr BadText bad_texts[] = {
    {"[dlc]\n", 4, "the title is [dlc name]"},
    {"[dlc TOOLONGNAME]\n", 4, "up to 8 characters"},
    {"[dlc A\n", 4, "ends with ]"},
    {"[modem A]\n", 4, "unknown section [modem]"},
    {"[dlc A]\ncolour = red\n", 5, "unknown field 'colour'; known are description, dlc_type"},
    {"[dlc A]\ndlc_type = wifi\n", 5, "one of sdlc qllc token_ring"},
    {"[dlc A]\ncard_number = 255\n", 5, "a number from 0 to 254"},
    {"[dlc A]\ncard_number = 99999999999\n", 5, "a number from 0 to 254"},
    {"[dlc A]\ninitially_active = maybe\n", 5, "yes or no"},
    {"[dlc A]\ndescription = 12345678901234567890123456789012\n", 5, "up to 31 characters"},
    {"[dlc A]\ncard_number = 1\ncard_number = 1\n", 6, "twice"},
    {"[dlc A]\nwhat is this\n", 5, "`name = value`"},
    {"[dlc A]\n[dlc a]\n", 5, "used already"},
    {"[port P]\ndlc_name = NONE\n", 4, "this node does not have"},
    {"[port P]\n", 4, "a name that it needs is missing"},
    {"[node one]\n", 4, "a node one already"},
    {"[node no/name]\n", 4, "a node is [node NAME]"},
    {"[central_logging]\n", 4, "before the first node"},
    {"[lu03 PU LU01..LU]\n", 4, "may be a range"},
    {"[lu03 PU AB01..AC02]\n", 4, "may be a range"},
    {"[pu PU]\ndlus_name = NETA.H\n[lu03 PU LU01..LU09]\nnau_address = 250\n", 6, "at most 255"},
    {"[pu PU]\ndlus_name = NETA.H\n[lu03 PU L1]\n[lu03 PU L2]\n", 7, "used twice"},
    {"[local_lu lower]\n", 4, "A-Z, 0-9"},
    {"[directory NETA.X NETA.Y car]\n", 4, "the title is [directory"},
    {"[partner_in_use A B C]\n", 4, "unknown section"},
    {"[mode M]\n", 4, "a name that it needs is missing"},
    {"[mode M]\ncos_name = #INTER\nmin_conwin_src = 9\n", 4, "do not fit together"},
};

/* The errors of a text whose nodes are also loaded. */
std::vector<std::string> errors_of(const std::string &text) {
    node::DomainText domain = node::parse_domain_text("x", text);
    if (domain.errors.empty()) {
        Rig rig;
        rig.engine.load_text(domain.nodes[0], domain);
    }
    return domain.errors;
}

TEST(NodeText, ErrorsNameTheLineAndTheCure) {
    for (const BadText &bad : bad_texts) {
        SCOPED_TRACE(bad.text);
        const std::vector<std::string> errors = errors_of(std::string(HEAD) + bad.text);
        ASSERT_FALSE(errors.empty());
        EXPECT_EQ(errors[0].rfind("x:" + std::to_string(bad.line) + ": ", 0), 0U) << errors[0];
        EXPECT_NE(errors[0].find(bad.says), std::string::npos) << errors[0];
    }
}

TEST(NodeText, ErrorsOfTheWholeText) {
    const auto first = [](const char *text) {
        const std::vector<std::string> errors = errors_of(text);
        return errors.empty() ? std::string("none") : errors[0];
    };
    EXPECT_NE(first("").find("no node"), std::string::npos);
    EXPECT_NE(first("name = x\n").find("begin with [domain]"), std::string::npos);
    EXPECT_NE(first("[domain]\n[node a]\n").find("fq_cp_name"), std::string::npos);
    EXPECT_NE(first("[domain]\n[node a]\n[node b]\n").find("client_server = yes"),
              std::string::npos);
    EXPECT_NE(first("[domain]\nclient_server = yes\n[node a]\n").find("server = master"),
              std::string::npos);
    EXPECT_NE(first("[dlc A]\n").find("behind a [node NAME]"), std::string::npos);
    std::string many = "[domain]\n";
    for (int at = 0; at < 100; at++) {
        many += "nonsense\n";
    }
    EXPECT_EQ(errors_of(many).size(), node::MAX_TEXT_ERRORS);
    EXPECT_EQ(node::read_domain_file("/nowhere/at.all").errors.size(), 1U);
}

/* What a field is written as reads back as the same bytes. */
void expect_read_back(const node::FieldRow &field, const NB_UCHAR *record, size_t size) {
    std::vector<NB_UCHAR> copy(record, record + size);
    std::string why;
    memset(copy.data() + field.offset, 0xEE, field.width);
    const std::string written = format_field(field, record);
    const bool blank = written.empty() && !field.has(records::FIELD_REQUIRED);
    EXPECT_TRUE(set_field(field, written, copy.data(), why) || blank)
        << field.name << " = " << written << ": " << why;
    EXPECT_EQ(memcmp(copy.data(), record, size), 0) << field.name << " = " << written;
}

/* The samples load, every class that a text can hold is in them, and every field reads back. */
TEST(NodeText, SamplesAreGoodAndEveryFieldReadsBack) {
    std::set<std::string> classes;
    for (const char *name : {"single.domain", "branch.domain"}) {
        node::DomainText domain = node::read_domain_file(sample(name));
        std::vector<node::TextNode> all = domain.nodes;
        all.insert(all.begin(), domain.own);
        for (const node::TextNode &text : all) {
            Rig rig(nullptr, &text == &all[0] ? node::Scope::Domain : node::Scope::Node);
            rig.engine.load_text(text, domain);
            EXPECT_FALSE(text.resources.empty());
            for (const node::TextResource &resource : text.resources) {
                SCOPED_TRACE(resource.schema->name);
                std::vector<NB_UCHAR> entry = resource.entry;
                const NB_UCHAR *end = entry.data() + entry.size();
                classes.insert(resource.schema->name);
                records::for_tables(*resource.schema, entry.data(),
                                    [end](node::FieldTable table, const NB_UCHAR *record) {
                                        for (const node::FieldRow &field : table) {
                                            expect_read_back(field, record,
                                                             static_cast<size_t>(end - record));
                                        }
                                    });
            }
        }
        for (const std::string &error : domain.errors) {
            ADD_FAILURE() << error;
        }
    }
    for (NB_UCHAR id = 0; id < node::CLASS_COUNT; id++) {
        const node::ClassRow &row = node::class_row(static_cast<node::ClassId>(id));
        EXPECT_TRUE(row.schema->untold || classes.count(row.schema->name) == 1) << row.schema->name;
    }
}

struct DomainRig {
    node::ManualClock clock;
    node::TimerQueue timers{clock};
    node::Store store;
    node::DomainText text = node::read_domain_file(sample("branch.domain"));
    std::unique_ptr<node::Domain> domain;
    std::string changed;

    explicit DomainRig(const std::string &file) {
        std::string why;
        EXPECT_TRUE(store.open(file, why)) << why;
        domain = std::make_unique<node::Domain>(text, store, timers, clock);
        EXPECT_TRUE(domain->load(why)) << why;
    }

    template <class Block> Codes issue(Block &block) {
        node::Answer answer;
        domain->execute(&block, sizeof block, answer, changed);
        memcpy(&block, answer.block.data(), sizeof block);
        return {block.primary_rc, block.secondary_rc};
    }
    Codes backup(NB_USHORT opcode, const char *name) {
        NAP_NAME_VERB verb = {};
        verb.opcode = opcode;
        memcpy(verb.key, name, strlen(name));
        return issue(verb);
    }
    unsigned count(NB_USHORT opcode) {
        NAP_QUERY_LIST query = {};
        query.opcode = opcode;
        query.buf_size = 65535;
        query.list_options = NAP_FIRST_IN_LIST;
        EXPECT_EQ(issue(query), OK_CODES);
        return query.total_num_entries;
    }
};

TEST(NodeDomain, KeepsTheListOfServers) {
    Folder folder;
    {
        DomainRig rig(folder.file("domain.db"));
        EXPECT_EQ(rig.count(NAP_QUERY_NODE_ALL), 3U);
        EXPECT_EQ(rig.count(NAP_QUERY_SNA_NET), 2U);
        EXPECT_EQ(rig.count(NAP_QUERY_CPIC_SIDE_INFO), 2U);
        EXPECT_EQ(rig.domain->master(), "harbour");
        EXPECT_EQ(rig.backup(NAP_ADD_BACKUP, "nosuch"), parameter(NAP_UNKNOWN_RESOURCE));
        EXPECT_EQ(rig.backup(NAP_ADD_BACKUP, "market"), parameter(NAP_DUPLICATE_NAME));
        EXPECT_EQ(rig.backup(NAP_DELETE_BACKUP, "station"), parameter(NAP_UNKNOWN_RESOURCE));
        EXPECT_EQ(rig.backup(NAP_DELETE_BACKUP, "harbour"), state(NAP_IN_USE));
        EXPECT_EQ(rig.changed, "");
        EXPECT_EQ(rig.backup(NAP_ADD_BACKUP, "STATION"), OK_CODES);
        EXPECT_EQ(rig.changed, "station");
        EXPECT_EQ(rig.backup(NAP_DELETE_BACKUP, "market"), OK_CODES);
        NAP_QUERY_LOGGING_VERB logging = {};
        logging.opcode = NAP_QUERY_CENTRAL_LOGGER;
        EXPECT_EQ(rig.issue(logging), OK_CODES);
        EXPECT_STREQ(reinterpret_cast<const char *>(logging.node_name), "harbour");
    }
    DomainRig rig(folder.file("domain.db"));
    EXPECT_EQ(rig.domain->server_flags("station"), NB_ULONG{NAP_SERVER_MASTER | NAP_SERVER_BACKUP});
    EXPECT_EQ(rig.backup(NAP_DELETE_BACKUP, "station"), OK_CODES);
    EXPECT_EQ(rig.backup(NAP_DELETE_BACKUP, "harbour"), state(NAP_LAST_BACKUP));
}

} // namespace
