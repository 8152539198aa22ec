/* Generated domains. */
#include "node_support.h"

#include "generate.h"

#include <set>

using namespace node_test;
using node::Generated;

namespace {

Generated numbers(const char *text) {
    Generated domain;
    std::string why;
    EXPECT_TRUE(node::parse_generated(text, domain, why)) << why;
    return domain;
}

TEST(NodeMake, NumbersThatDoNotFitAreRefused) {
    constexpr struct {
        const char *text;
        const char *says;
    } cases[] = {
        {"lus", "known are nodes=N"},
        {"cars=3", "known are nodes=N"},
        {"lus=", "from 0 to"},
        {"lus=-1", "from 0 to"},
        {"lus=3x", "from 0 to"},
        {"lus=99999999", "from 0 to 9999999"},
        {"lus=1,lus=2", "once"},
        {"ports=0", "from 1 to"},
        {"lus=1000,pus=3", "pus=4 at least"},
        {"nodes=11,lus=1000000", "in all"},
    };
    for (const auto &one : cases) {
        Generated domain;
        std::string why;
        EXPECT_FALSE(node::parse_generated(one.text, domain, why)) << one.text;
        EXPECT_NE(why.find(one.says), std::string::npos) << why;
    }
    const Generated domain = numbers("lus=5000,nodes=3");
    EXPECT_EQ(node::format_generated(numbers(node::format_generated(domain).c_str())),
              node::format_generated(domain));
}

/* What is generated passes every check that a text has to pass, and is the same each time. */
TEST(NodeMake, ResourcesAreGoodAndAlwaysTheSame) {
    const Generated domain = numbers("nodes=2,lus=1200,ls=4,pus=6,pools=3,modes=12,partners=40");
    std::set<std::string> names;
    for (NB_ULONG index = 0; index < 2; index++) {
        node::DomainText text = node::generated_domain(domain);
        node::TextNode node = text.nodes.at(index);
        node.records.push_back({&records::setting("node"), node::generated_node(domain, index), 0});
        std::vector<std::string> first;
        const auto take = [&](const node::ClassRow &row, const NB_UCHAR *entry) {
            std::vector<NB_UCHAR> bytes(entry, entry + row.schema->entry_size);
            first.emplace_back(bytes.begin(), bytes.end());
            bytes.resize(row.schema->overlay_size());
            node.resources.push_back({&row, bytes, node::DEFAULT_BEHAVIOUR, 0});
            if (row.id == node::CLASS_LU03) {
                EXPECT_TRUE(names.insert(first.back().substr(10, 8)).second) << "twice";
            }
        };
        node::generate_resources(domain, index, take);
        size_t again = 0;
        node::generate_resources(
            domain, index, [&](const node::ClassRow &row, const NB_UCHAR *entry) {
                EXPECT_EQ(memcmp(first.at(again++).data(), entry, row.schema->entry_size), 0);
            });
        EXPECT_EQ(again, first.size());
        Rig checked;
        EXPECT_TRUE(checked.engine.load_text(node, text));
        EXPECT_EQ(text.errors, std::vector<std::string>{});
        Rig direct;
        std::string why;
        ASSERT_TRUE(direct.engine.load_generated(domain, index, why)) << why;
        for (const NB_USHORT list :
             {NAP_QUERY_DLC, NAP_QUERY_LS, NAP_QUERY_PU, NAP_QUERY_DLUR_PU, NAP_QUERY_LU_POOL,
              NAP_QUERY_LU_0_TO_3, NAP_QUERY_LOCAL_LU, NAP_QUERY_MODE_DEFINITION}) {
            EXPECT_EQ(direct.list(list).entries, checked.list(list).entries);
            EXPECT_GT(direct.list(list).total, 0U);
        }
    }
    EXPECT_EQ(names.size(), 2400U);
}

TEST(NodeMake, OnlyChangesAreStored) {
    const Generated domain = numbers("lus=300");
    Folder folder;
    std::string why;
    std::vector<std::string> lus;
    const std::string third = ebcdic("PU00001") + ebcdic("LU00003");
    {
        node::Store store;
        ASSERT_TRUE(store.open(folder.file("n.db"), false, why)) << why;
        Rig rig(&store);
        ASSERT_TRUE(rig.engine.load_generated(domain, 0, why)) << why;
        EXPECT_EQ(rig.list(NAP_QUERY_LU_0_TO_3).total, 300U);
        EXPECT_EQ(rig.by_key(NAP_DELETE_LU_0_TO_3, third), OK_CODES);
        NAP_DEFINE_LU03_VERB verb = {};
        verb.opcode = NAP_DEFINE_LU_0_TO_3;
        put(verb.pu_name, ebcdic("PU00001"));
        put(verb.lu_name, ebcdic("LU00005"));
        verb.def_data.nau_address = 5;
        verb.def_data.lu_model = NAP_LU_PRINTER;
        EXPECT_EQ(rig.issue(verb), OK_CODES) << "changed";
        put(verb.lu_name, ebcdic("MINE"));
        verb.def_data.nau_address = 3;
        EXPECT_EQ(rig.issue(verb), OK_CODES) << "new";
        unsigned rows = 0;
        EXPECT_TRUE(store.read([&rows](const node::StoreRow &) { return ++rows > 0; }));
        EXPECT_EQ(rows, 3U);
        lus = rig.list(NAP_QUERY_LU_0_TO_3).entries;
    }
    node::Store store;
    ASSERT_TRUE(store.open(folder.file("n.db"), false, why)) << why;
    Rig rig(&store);
    ASSERT_TRUE(rig.engine.load_generated(domain, 0, why)) << why;
    EXPECT_EQ(rig.list(NAP_QUERY_LU_0_TO_3).entries, lus);
    EXPECT_EQ(rig.by_key(NAP_DELETE_LU_0_TO_3, third), parameter(NAP_UNKNOWN_RESOURCE));
}

} // namespace
