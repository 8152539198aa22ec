/* Generated domains. */
#include "node_support.h"

#include "generate.h"

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
    constexpr std::pair<const char *, const char *> cases[] = {
        {"cars=3", "known are nodes=N"},
        {"lus=3x", "from 0 to"},
        {"lus=1,lus=2", "once"},
        {"ports=0", "from 1 to"},
        {"lus=1000,pus=3", "pus=4 at least"},
        {"nodes=11,lus=1000000", "in all"},
    };
    for (const auto &[text, says] : cases) {
        Generated domain;
        std::string why;
        EXPECT_FALSE(node::parse_generated(text, domain, why)) << text;
        EXPECT_NE(why.find(says), std::string::npos) << why;
    }
    const std::string text = node::format_generated(numbers("lus=5000,nodes=3"));
    EXPECT_EQ(node::format_generated(numbers(text.c_str())), text);
    const node::DomainText domain = node::generated_domain(numbers("nodes=2,lus=30"));
    EXPECT_EQ(domain.errors, std::vector<std::string>{});
    EXPECT_EQ(domain.nodes.size(), 2U);
}

TEST(NodeMake, OnlyChangesAreStored) {
    const Generated domain = numbers("lus=300");
    Folder folder;
    std::string why;
    std::vector<std::string> lus;
    const std::string third = ebcdic("PU00001") + ebcdic("LU00003");
    {
        node::Store store;
        ASSERT_TRUE(store.open(folder.file("n.db"), why)) << why;
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
        for (NB_UCHAR id = 0; id < node::CLASS_COUNT; id++) {
            EXPECT_TRUE(store.read(node::class_row(static_cast<node::ClassId>(id)),
                                   [&rows](node::StoreRow &&) { rows++; }));
        }
        EXPECT_EQ(rows, 3U);
        lus = rig.list(NAP_QUERY_LU_0_TO_3).entries;
    }
    node::Store store;
    ASSERT_TRUE(store.open(folder.file("n.db"), why)) << why;
    Rig rig(&store);
    ASSERT_TRUE(rig.engine.load_generated(domain, 0, why)) << why;
    EXPECT_EQ(rig.list(NAP_QUERY_LU_0_TO_3).entries, lus);
    EXPECT_EQ(rig.by_key(NAP_DELETE_LU_0_TO_3, third), parameter(NAP_UNKNOWN_RESOURCE));
}

} // namespace
