/* What is defined, on disk. */
#include "node_support.h"

#include "storefiles.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>

using namespace node_test;

namespace {

/* Another process that reads the file through SQLite and asks for every lock that it can get. */
class Reader {
public:
    explicit Reader(const std::string &file) {
        int told[2];
        char byte = 0;
        EXPECT_EQ(pipe(told), 0);
        process_ = fork();
        if (process_ == 0) {
            sqlite3 *db = nullptr;
            sqlite3_open(file.c_str(), &db);
            sqlite3_exec(db, "BEGIN; SELECT count(*) FROM fact", nullptr, nullptr, nullptr);
            for (const char *beside : {"", "-wal", "-shm"}) {
                const int fd = ::open((file + beside).c_str(), O_RDONLY);
                struct flock lock = {};
                lock.l_type = F_RDLCK;
                lock.l_len = 1 << 30; /* up to the bytes that SQLite locks */
                fcntl(fd, F_SETLK, &lock);
                flock(fd, LOCK_SH);
            }
            EXPECT_EQ(write(told[1], &byte, 1), 1);
            pause();
        }
        EXPECT_EQ(read(told[0], &byte, 1), 1);
        close(told[0]);
        close(told[1]);
    }
    ~Reader() {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    pid_t process() const { return process_; }

private:
    pid_t process_ = 0;
};

TEST(NodeStore, KeepsWhatWasAcknowledged) {
    Folder folder;
    std::string why;
    Lists lists;
    {
        node::Store store;
        ASSERT_TRUE(store.open(folder.file("node.db"), why)) << why;
        Rig rig(&store);
        EXPECT_FALSE(rig.engine.load_store(why));
        rig.load(SMALL_NODE);
        NAP_DEFINE_DIR_VERB first = directory("NETB.Z", "NETB.Z", NAP_DIR_END_NODE);
        NAP_DEFINE_DIR_VERB below = directory("NETB.Z", "NETB.A", NAP_DIR_LU);
        EXPECT_EQ(rig.issue(first), OK_CODES);
        EXPECT_EQ(rig.issue(below), OK_CODES);
        EXPECT_EQ(rig.by_key(NAP_STOP_NODE, ""), OK_CODES);
        rig.pass(1000);
        lists = all_lists(rig);
    }
    node::Store store;
    ASSERT_TRUE(store.open(folder.file("node.db"), why)) << why;
    Rig rig(&store);
    ASSERT_TRUE(rig.engine.load_store(why)) << why;
    rig.engine.begin();
    rig.pass(1000);
    EXPECT_EQ(rig.engine.node_state(), NB_ULONG{NAP_NODE_STOPPED})
        << "a stopped node stays stopped";
    EXPECT_EQ(all_lists(rig), lists);
}

TEST(NodeStore, CopiesAreWholeOrNotThere) {
    Folder folder;
    std::string why;
    Lists lists;
    const std::string copy = folder.file("copy.db");
    {
        node::Store store;
        ASSERT_TRUE(store.open(folder.file("node.db"), why)) << why;
        Rig rig(&store);
        rig.load(SMALL_NODE);
        ASSERT_TRUE(store.copy_to(copy, why)) << why;
        lists = all_lists(rig);
        NAP_DEFINE_DLC_VERB verb = dlc("NEW");
        EXPECT_EQ(rig.issue(verb), OK_CODES);
        const FullDisk full;
        EXPECT_FALSE(store.copy_to(copy, why));
        EXPECT_NE(why.find(copy), std::string::npos) << why;
    }
    unsigned files = 0;
    for (const auto &one : std::filesystem::directory_iterator(folder.path())) {
        EXPECT_EQ(one.status().permissions(), std::filesystem::perms(0600)) << one.path();
        files++;
    }
    EXPECT_EQ(files, 2U) << "the store and its copy";
    node::Store store;
    ASSERT_TRUE(store.open(copy, why)) << why;
    Rig rig(&store);
    ASSERT_TRUE(rig.engine.load_store(why)) << why;
    EXPECT_EQ(all_lists(rig), lists) << "the first copy outlives the one that failed";
}

TEST(NodeStore, IsItsOwnersAlone) {
    Folder folder;
    std::string why;
    const std::string file = folder.file("node.db");
    const auto expect_closed = [&folder](const std::string &when) {
        unsigned files = 0;
        for (const auto &one : std::filesystem::directory_iterator(folder.path())) {
            EXPECT_EQ(one.status().permissions(), std::filesystem::perms(0600))
                << one.path() << " " << when;
            files++;
        }
        EXPECT_EQ(files, 2U) << "the database and its log " << when;
    };
    const mode_t mask = umask(0);
    {
        node::Store store;
        ASSERT_TRUE(store.open(file, why)) << why;
        Rig rig(&store);
        rig.load(SMALL_NODE);
        expect_closed("when made");
        const Reader reader(file);
        NAP_DEFINE_DLC_VERB verb = dlc("NEW");
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(rig.issue(verb), OK_CODES) << "whatever others lock";
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    }
    EXPECT_EQ(chmod(file.c_str(), 0666), 0);
    std::ofstream(file + "-shm") << "of an earlier version";
    {
        node::Store store;
        EXPECT_TRUE(store.open(file, why)) << why;
        EXPECT_TRUE(store.set_fact(node::FACT_WANTED, "1"));
        expect_closed("when repaired");
    }
    umask(mask);
    {
        const Reader reader(file);
        node::Store store;
        EXPECT_FALSE(store.open(file, why));
        EXPECT_NE(why.find("held by process " + std::to_string(reader.process())),
                  std::string::npos)
            << why;
    }
    node::Store store;
    EXPECT_TRUE(store.open(file, why)) << "when the reader has gone: " << why;
}

TEST(NodeStore, OfAnotherUserIsRefused) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "needs root to give files away";
    }
    constexpr uid_t NOBODY = 65534;
    Folder folder;
    std::string why;
    EXPECT_EQ(chmod(folder.path().c_str(), 0755), 0);
    EXPECT_TRUE(node::own_folder(folder.path(), why)) << "repaired while it is empty: " << why;
    const std::string foreign = folder.file("n.db-wal");
    std::ofstream(foreign) << "x";
    EXPECT_EQ(chmod(folder.path().c_str(), 0755), 0);
    EXPECT_FALSE(node::own_folder(folder.path(), why)) << "never taken away from others";
    EXPECT_EQ(std::filesystem::status(folder.path()).permissions(), std::filesystem::perms(0755));
    for (const std::string &given : {foreign, folder.path()}) {
        ASSERT_EQ(chown(given.c_str(), NOBODY, NOBODY), 0);
        node::Store store;
        EXPECT_FALSE(given == foreign ? store.open(folder.file("n.db"), why)
                                      : node::own_folder(given, why));
        EXPECT_NE(why.find(given + " belongs to user 65534"), std::string::npos) << why;
    }
    EXPECT_FALSE(std::filesystem::exists(folder.file("n.db")));
}

/* With a full disk. */
TEST(NodeStore, WhatCannotBeWrittenIsRefusedOrOwed) {
    Folder folder;
    std::string why;
    {
        node::Store store;
        ASSERT_TRUE(store.open(folder.file("node.db"), why)) << why;
        Rig rig(&store);
        rig.load(SMALL_NODE);
        NAP_DEFINE_DLC_VERB made = dlc("NEW");
        std::optional<FullDisk> full(std::in_place);
        EXPECT_EQ(rig.issue(made), state(NAP_STORE_FAILED));
        EXPECT_EQ(rig.list(NAP_QUERY_DLC).total, 1U);
        const Codes owed = {NAP_OK, NAP_NOT_STORED};
        EXPECT_EQ(rig.by_key(NAP_DELETE_LOCAL_LU, ebcdic("DEPLU")), owed);
        EXPECT_EQ(rig.list(NAP_QUERY_LOCAL_LU).total, 1U) << "room can be made";
        EXPECT_EQ(rig.by_key(NAP_STOP_NODE, "", NAP_IMMEDIATE_STOP), owed);
        rig.pass(20000);
        EXPECT_EQ(rig.engine.node_state(), NB_ULONG{NAP_NODE_STOPPED});
        EXPECT_EQ(rig.issue(made), state(NAP_STORE_FAILED));
        full.reset();
        EXPECT_EQ(rig.issue(made), OK_CODES) << "what is owed goes with it";
        EXPECT_FALSE(store.owes());
        full.emplace();
        EXPECT_EQ(rig.by_key(NAP_INIT_NODE, ""), owed);
    }
    node::Store store;
    ASSERT_TRUE(store.open(folder.file("node.db"), why)) << why;
    Rig rig(&store);
    ASSERT_TRUE(rig.engine.load_store(why)) << why;
    EXPECT_EQ(rig.list(NAP_QUERY_DLC).total, 2U);
    EXPECT_EQ(rig.list(NAP_QUERY_LOCAL_LU).total, 1U);
    std::string wanted;
    EXPECT_TRUE(store.fact(node::FACT_WANTED, wanted));
    EXPECT_EQ(wanted, "1") << "an orderly end writes what is owed";
}

} // namespace
