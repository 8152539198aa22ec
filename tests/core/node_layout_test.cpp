/* What stores look like inside: stores of earlier layouts, fields that come and go, and secrets. */
#include "node_support.h"

#include "generate.h"
#include "nesteditems.h"
#include "secrethash.h"
#include "storecopy.h"

#include <csignal>
#include <fstream>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace node_test;

namespace {

/* The stores that an earlier version left: of a sample domain, of its node, and of a generated one
 * with three LUs deleted and a DLC added. */
class EarlierStores {
public:
    EarlierStores() {
        const std::string unpack = "tar xzf " EARLIER_STORES " -C " + folder.path();
        EXPECT_EQ(system(unpack.c_str()), 0);
    }
    Folder folder;
    std::string why;
};

/* All that can be asked: the lists and the settings. */
std::pair<Lists, std::vector<std::string>> all_of(Rig &rig) {
    std::vector<std::string> settings;
    for (const node::Settings &row : records::settings) {
        std::vector<NB_UCHAR> block(row.block_size);
        node::Answer answer;
        node::put_number(block.data(), 2, row.query);
        rig.engine.execute(block.data(), block.size(), answer);
        settings.emplace_back(answer.block.begin(), answer.block.end());
    }
    return {all_lists(rig), settings};
}

/* The whole password fields are compared, too: lists do not show them. */
std::string secrets_of(Rig &rig) {
    std::string found;
    for (const node::ClassId id : {node::CLASS_LU_LU_PASSWORD, node::CLASS_CPIC}) {
        const node::ResourceTable &table = rig.engine.table(id);
        for (auto *at = table.first(); at != nullptr; at = node::ResourceTable::next(*at)) {
            found.append(reinterpret_cast<const char *>(at->entry.get()),
                         table.row().schema->overlay_size());
        }
    }
    return found;
}

std::string bytes_of(const std::string &file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void sql(const std::string &file, const char *statements) {
    sqlite3 *db = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &db), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(db, statements, nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(db);
    sqlite3_close(db);
}

unsigned rows(const std::string &file, const std::string &of) {
    sqlite3 *db = nullptr;
    sqlite3_stmt *count = nullptr;
    EXPECT_EQ(sqlite3_open(file.c_str(), &db), SQLITE_OK);
    sqlite3_prepare_v2(db, ("SELECT count(*) FROM " + of).c_str(), -1, &count, nullptr);
    EXPECT_EQ(sqlite3_step(count), SQLITE_ROW);
    const auto found = static_cast<unsigned>(sqlite3_column_int(count, 0));
    sqlite3_finalize(count);
    sqlite3_close(db);
    return found;
}

TEST(NodeLayout, AnEarlierLayoutIsBroughtOver) {
    EarlierStores earlier;
    const std::string text = earlier.folder.file("previous.domain");
    for (const bool of_domain : {true, false}) {
        const node::Scope scope = of_domain ? node::Scope::Domain : node::Scope::Node;
        const std::string file = earlier.folder.file(of_domain ? "domain.db" : "node.db");
        node::DomainText domain = node::read_domain_file(text);
        Rig fresh(nullptr, scope);
        ASSERT_TRUE(fresh.engine.load_text(of_domain ? domain.own : domain.nodes[0], domain));
        sql(file, "INSERT INTO resource VALUES ('dlc', x'414243', x'0500414243', NULL)");
        for (const bool first : {true, false}) {
            unsigned copies = 0;
            node::Store store;
            ASSERT_TRUE(store.open(file, earlier.why)) << earlier.why;
            store.before_migration([&copies](node::Store &from, std::string &why) {
                return from.copy_to("/dev/null/x", why) || ++copies == 0;
            });
            Rig refused(&store, scope);
            EXPECT_EQ(refused.engine.load_store(earlier.why), !first);
            store.before_migration([&copies](node::Store &, std::string &) { return ++copies; });
            if (first) {
                const FullDisk full;
                Rig none(&store, scope);
                EXPECT_FALSE(none.engine.load_store(earlier.why));
                EXPECT_NE(earlier.why.find("as it was"), std::string::npos) << earlier.why;
            }
            Rig rig(&store, scope);
            ASSERT_TRUE(rig.engine.load_store(earlier.why)) << earlier.why;
            EXPECT_TRUE(all_of(rig) == all_of(fresh)) << file;
            EXPECT_TRUE(secrets_of(rig) == secrets_of(fresh)) << file;
            EXPECT_EQ(copies, first ? 3U : 0U);
        }
        EXPECT_EQ(rows(file, "unread"), 1U) << "what does not fit is kept";
    }
}

TEST(NodeLayout, AKillWhileItIsBroughtOverLosesNothing) {
    for (const bool committed : {false, true}) {
        EarlierStores earlier;
        const std::string file = earlier.folder.file("node.db");
        node::DomainText domain = node::read_domain_file(earlier.folder.file("previous.domain"));
        Rig fresh;
        ASSERT_TRUE(fresh.engine.load_text(domain.nodes[0], domain));
        const pid_t process = fork();
        if (process == 0) {
            node::Store store;
            store.when_writing([committed](bool written) {
                if (written == committed) {
                    kill(getpid(), SIGKILL);
                }
            });
            _exit(store.open(file, earlier.why) && store.migrate(earlier.why) ? 0 : 1);
        }
        int status = 0;
        waitpid(process, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << status;
        node::Store store;
        ASSERT_TRUE(store.open(file, earlier.why)) << earlier.why;
        unsigned migrations = 0;
        store.before_migration(
            [&migrations](node::Store &, std::string &) { return ++migrations; });
        Rig rig(&store);
        ASSERT_TRUE(rig.engine.load_store(earlier.why)) << earlier.why;
        EXPECT_EQ(migrations, committed ? 0U : 1U);
        EXPECT_TRUE(all_of(rig) == all_of(fresh));
        EXPECT_TRUE(secrets_of(rig) == secrets_of(fresh));
    }
}

/* In either character set. */
bool in_files(const std::string &file, const std::string &secret) {
    const std::string all = bytes_of(file) + bytes_of(file + "-wal");
    return all.find(secret) != std::string::npos ||
           all.find(ebcdic(secret, secret.size())) != std::string::npos;
}

Codes set_password(Rig &rig, const std::string &user, const std::string &password) {
    NAP_DEFINE_USERID_PASSWORD_VERB verb = {};
    verb.opcode = NAP_DEFINE_USERID_PASSWORD;
    put(verb.user_id, ebcdic(user, sizeof verb.user_id));
    put(verb.def_data.profile, ebcdic("", sizeof verb.def_data.profile));
    put(verb.def_data.password, ebcdic(password, sizeof verb.def_data.password));
    return rig.issue(verb);
}

bool has_password(node::Store &store, const std::string &user, const std::string &password) {
    NAP_USERID_PASSWORD_DATA entry = {};
    put(entry.user_id, ebcdic(user, sizeof entry.user_id));
    put(entry.def_data.password, ebcdic(password, sizeof entry.def_data.password));
    return store.matches_secret(records::userid_password,
                                records::field(records::userid_password, "password"),
                                reinterpret_cast<const NB_UCHAR *>(&entry));
}

/* Those that are only compared are nowhere, the others in their table alone: in a store that was
 * brought over and in one that was made from the text. */
TEST(NodeLayout, PasswordsAreHashedOrApart) {
    EarlierStores earlier;
    const std::string text = earlier.folder.file("previous.domain");
    for (const std::string name : {"node.db", "new.db"}) {
        const std::string file = earlier.folder.file(name);
        for (int start = 0; start < 3; start++) {
            node::Store store;
            Rig rig(&store);
            node::DomainText domain = node::read_domain_file(text);
            ASSERT_TRUE(store.open(file, earlier.why)) << earlier.why;
            ASSERT_TRUE(rig.engine.load_store(earlier.why) ||
                        rig.engine.load_text(domain.nodes[0], domain))
                << earlier.why;
            if (start == 0) {
                EXPECT_EQ(set_password(rig, "NEWUSER", "QTYPED"), OK_CODES);
                EXPECT_EQ(set_password(rig, "TELLER", ""), OK_CODES) << "as it was";
                EXPECT_EQ(set_password(rig, "NOBODY", ""), parameter(NAP_INVALID_VALUE));
            }
            const std::pair<const char *, const char *> users[] = {
                {"BRANCH01", "QC0MPARE"}, {"TELLER", "QC0UNTER"}, {"NEWUSER", "QTYPED"}};
            for (const auto &[user, password] : users) {
                EXPECT_FALSE(in_files(file, password)) << name << " " << user;
                EXPECT_TRUE(has_password(store, user, password)) << name << " " << user;
                EXPECT_FALSE(has_password(store, user, "QOTHER")) << name << " " << user;
            }
            const auto known = rig.entry<NAP_USERID_PASSWORD_DATA>(node::CLASS_USERID_PASSWORD,
                                                                   ebcdic("BRANCH01", 10));
            EXPECT_NE(node::ebcdic_text(known.def_data.password, 10), "QC0MPARE") << "in memory";
        }
        EXPECT_TRUE(in_files(file, "QLDAPSECRET") && in_files(file, "A1B2C3D4E5F60718"));
        sql(file, "DELETE FROM secret");
        EXPECT_FALSE(in_files(file, "QLDAPSECRET") || in_files(file, "A1B2C3D4E5F60718"));
    }
}

TEST(NodeLayout, AnEarlierGeneratedNodeKeepsItsChanges) {
    EarlierStores earlier;
    node::Generated domain;
    ASSERT_TRUE(node::parse_generated("nodes=1,lus=20", domain, earlier.why));
    const std::string file = "generated.db";
    for (int start = 0; start < 2; start++) {
        node::Store store;
        ASSERT_TRUE(store.open(earlier.folder.file(file), earlier.why)) << earlier.why;
        Rig rig(&store);
        const node::DailyCopy copies(store, earlier.folder.path(), file, rig.timers, rig.clock);
        ASSERT_TRUE(rig.engine.load_generated(domain, 0, earlier.why)) << earlier.why;
        EXPECT_EQ(rig.list(NAP_QUERY_LU_0_TO_3).total, 17U);
        EXPECT_EQ(rig.list(NAP_QUERY_DLC).names().at(0), "ADDED");
        const auto folders = node::copy_folders(earlier.folder.path());
        ASSERT_EQ(folders.size(), 1U) << "one copy, of before";
        EXPECT_EQ(folders[0].rfind("before-update-", 0), 0U);
        EXPECT_EQ(rows(earlier.folder.file("copies/" + folders[0] + "/" + file), "resource"), 4U);
    }
}

/* Fields come and go with versions, and so do initial values. */
TEST(NodeLayout, NothingIsLostOrChangedByOtherFields) {
    Folder folder;
    const std::string file = folder.file("node.db");
    std::string why;
    Lists lists;
    {
        node::Store store;
        ASSERT_TRUE(store.open(file, why)) << why;
        Rig rig(&store);
        rig.load(SMALL_NODE);
        lists = all_lists(rig);
    }
    sql(file, "UPDATE resource SET text = 'colour=red' || char(10) || text || '+wheel' || char(10)"
              " WHERE section = 'ls';"
              "UPDATE resource SET text = replace(text, 'name=', 'name=%') WHERE"
              " section = 'directory';"
              "UPDATE initial SET text = replace(text, 'max_rcv_btu_size=', 'gone=')"
              " WHERE section = 'port';"
              "UPDATE initial SET text = replace(text, 'model=display_2', 'model=display_3')"
              " WHERE section = 'lu03';"
              "INSERT INTO resource VALUES ('balloon', x'00', 'name=RED')");
    for (int start = 0; start < 2; start++) {
        node::Store store;
        ASSERT_TRUE(store.open(file, why)) << why;
        Rig rig(&store);
        ASSERT_TRUE(rig.engine.load_store(why)) << why;
        Lists expected = lists;
        EXPECT_EQ(expected.erase(NAP_QUERY_DIRECTORY_ENTRY), 1U) << "what does not fit is left out";
        const Lists found = all_lists(rig);
        EXPECT_EQ(found.at(NAP_QUERY_LS), expected.at(NAP_QUERY_LS)) << "unknown fields are, too";
        EXPECT_EQ(found.at(NAP_QUERY_PORT), expected.at(NAP_QUERY_PORT)) << "new ones are initial";
        EXPECT_EQ(found.size(), expected.size());
        NAP_DEFINE_DLC_VERB verb = dlc("NEW");
        EXPECT_EQ(rig.issue(verb), OK_CODES);
        lists[NAP_QUERY_DLC] = all_lists(rig)[NAP_QUERY_DLC];
        EXPECT_EQ(rig.entry<NAP_LU03_DATA>(node::CLASS_LU03, ebcdic("HOSTPU") + ebcdic("LU01"))
                      .def_data.lu_model,
                  NAP_LU_3270_DISPLAY_MODEL_3)
            << "what is stored keeps the initial values of its time";
    }
    EXPECT_EQ(rows(file, "resource WHERE section IN ('balloon', 'directory')"), 3U)
        << "nothing is lost";
    sql(file, "PRAGMA user_version = 7");
    const std::string before = bytes_of(file);
    node::Store store;
    EXPECT_FALSE(store.open(file, why));
    EXPECT_NE(why.find("layout 7 of a later version"), std::string::npos) << why;
    EXPECT_TRUE(bytes_of(file) == before);
}

/* Fills a record with what its kind of field can hold at most, or with what no text gives back. */
void fill(node::FieldTable fields, NB_UCHAR *record, bool odd) {
    for (const node::FieldRow &field : fields) {
        NB_UCHAR *at = record + field.offset;
        const bool number = field.kind >= node::FieldKind::Number;
        const std::string name = odd ? std::string("\x07\n\xC1") : ebcdic("Q");
        if (number && odd) {
            memset(at, 0xFE, field.width);
        } else if (number) {
            node::put_number(at, field.width, field.words.empty() ? 1 : field.words.back().value);
        } else if (field.kind == node::FieldKind::Text) {
            memcpy(at, odd ? "a \n= " : "+b=c", std::min<size_t>(field.width, 6) - 1);
        } else if (field.kind <= node::FieldKind::NameEbcdic) {
            memcpy(at, name.data(), std::min<size_t>(name.size(), field.width));
        } else {
            memset(at, odd ? 0xFF : 0x01, field.width);
        }
    }
}

TEST(NodeLayout, EveryFieldReadsBack) {
    for (NB_UCHAR id = 0; id < node::CLASS_COUNT; id++) {
        const node::ClassRow &row = node::class_row(static_cast<node::ClassId>(id));
        const node::Schema &schema = *row.schema;
        for (const bool odd : {false, true}) {
            node::StoredForm form(row);
            node::StoredText text;
            std::set<std::string> unknown;
            node::Behaviour behaviour = node::DEFAULT_BEHAVIOUR;
            node::Behaviour read = behaviour;
            std::vector<NB_UCHAR> entry(schema.overlay_size());
            std::vector<NB_UCHAR> back(schema.overlay_size());
            node::put_number(entry.data(), 2, NB_ULONG(entry.size()));
            fill(schema.fields, entry.data(), odd);
            for (const node::FieldRow &field : schema.fields) {
                if (field.has(node::FIELD_COMPARED)) {
                    node::put_mark(field, entry.data() + field.offset); /* no hash is written */
                }
            }
            fill(row.schema->simulated, reinterpret_cast<NB_UCHAR *>(&behaviour), odd);
            for (int item = 0; item < 2 && schema.nested.name != nullptr; item++) {
                fill(schema.nested.fields,
                     records::append_item(schema.nested, entry.data(), nullptr), odd != (item > 0));
            }
            form.write(entry.data(), &behaviour, text);
            EXPECT_TRUE(form.read(text.fields, text.secrets, back.data(), read, unknown))
                << text.fields;
            EXPECT_TRUE(unknown.empty()) << *unknown.begin();
            EXPECT_TRUE(back == entry) << text.fields << text.secrets;
            EXPECT_EQ(memcmp(&read, &behaviour, sizeof read), 0) << text.fields;
        }
    }
}

} // namespace
