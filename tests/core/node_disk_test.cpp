/* The node software on a disk without room, and the copies that it keeps. */
#include "runningnode.h"

#include "storecopy.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace node_test;

namespace {

/* A small disk of this process's own, mounted over a folder while it lives. */
class SmallDisk {
public:
    explicit SmallDisk(const std::string &folder) : folder_(folder) {
        mounted_ = unshare(CLONE_NEWNS) == 0 &&
                   mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                   mount("none", folder.c_str(), "tmpfs", 0, "size=2m,mode=0700") == 0;
    }
    ~SmallDisk() {
        if (mounted_) {
            umount2(folder_.c_str(), MNT_DETACH);
        }
    }
    bool is_mounted() const { return mounted_; }

    void fill() {
        const std::vector<char> block(4096, 'x');
        const int file = open(filler().c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
        while (::write(file, block.data(), block.size()) > 0) {
        }
        EXPECT_EQ(errno, ENOSPC);
        close(file);
    }
    void make_room() { unlink(filler().c_str()); }

private:
    std::string filler() const { return folder_ + "/filler"; }

    std::string folder_;
    bool mounted_ = false;
};

NAP_NAME_VERB named(NB_USHORT opcode, const std::string &key = "") {
    NAP_NAME_VERB verb = {};
    verb.opcode = opcode;
    memcpy(verb.key, key.data(), key.size());
    verb.stop_type = NAP_IMMEDIATE_STOP;
    return verb;
}

NB_ULONG state_of(Client &client, NB_ULONG target) {
    NAP_QUERY_NODE_VERB verb = {};
    verb.opcode = NAP_QUERY_NODE;
    EXPECT_EQ(client.issue(target, verb), OK_CODES);
    return verb.info.node_state;
}

void wait_for_state(Client &client, NB_ULONG target, NB_ULONG state) {
    constexpr int TRIES = 500;
    for (int at = 0; at < TRIES && state_of(client, target) != state; at++) {
        usleep(20000);
    }
    EXPECT_EQ(state_of(client, target), state);
}

/* Defines until that is refused; returns how many were taken. */
size_t define_until_full(Client &client, NB_ULONG target) {
    constexpr size_t ENOUGH = 20000;
    size_t taken = 0;
    Codes codes = OK_CODES;
    while (codes == OK_CODES && taken < ENOUGH) {
        codes = client.define_dlc(target, ("D" + std::to_string(taken)).c_str());
        taken += codes == OK_CODES ? 1 : 0;
    }
    EXPECT_EQ(codes, (Codes{NAP_STATE_CHECK, NAP_STORE_FAILED}));
    return taken;
}

TEST(FullDisk, StopsStartsAndDeletesGoOnAndAllIsRightWithRoom) {
    Running node;
    node.stop();
    SmallDisk disk(node.folder.file("var/domain/pair"));
    if (!disk.is_mounted()) {
        GTEST_SKIP() << "needs root to mount a disk";
    }
    node.start();
    ASSERT_EQ(node.printed, "snanode: domain pair ready\n");
    size_t kept = 0;
    {
        Client client(node.socket());
        const NB_ULONG target = client.join("one");
        wait_for_state(client, target, NAP_NODE_ACTIVE);
        ASSERT_EQ(client.define_dlc(target, "GONE1"), OK_CODES);
        ASSERT_EQ(client.define_dlc(target, "GONE2"), OK_CODES);
        disk.fill();
        kept = 1 + define_until_full(client, target);
        NAP_NAME_VERB stop = named(NAP_STOP_NODE), start = named(NAP_INIT_NODE);
        NAP_NAME_VERB remove = named(NAP_DELETE_DLC, local8("GONE1"));
        const Codes owed = {NAP_OK, NAP_NOT_STORED};
        EXPECT_EQ(client.issue(target, stop), owed);
        wait_for_state(client, target, NAP_NODE_STOPPED);
        EXPECT_EQ(client.issue(target, remove), owed);
        EXPECT_EQ(client.issue(target, start), owed);
        wait_for_state(client, target, NAP_NODE_ACTIVE);
        EXPECT_EQ(client.define_dlc(target, "NEVER"), (Codes{NAP_STATE_CHECK, NAP_STORE_FAILED}));

        Client other(node.socket());
        ASSERT_EQ(other.listen_to(0, NAP_SERVER_INDICATION), OK_CODES);
        kill(node.nodes().at(0), SIGKILL); /* comes back without room, as it was written last */
        other.wait_for_server("one", 0);
        other.wait_for_server("one", 1);
        const NB_ULONG again = other.join("one");
        wait_for_state(other, again, NAP_NODE_ACTIVE);
        EXPECT_EQ(other.query(again, NAP_QUERY_DLC), OK_CODES);
        EXPECT_EQ(other.total, kept + 2);
        EXPECT_EQ(other.issue(again, remove = named(NAP_DELETE_DLC, local8("GONE1"))), owed);
    }
    node.stop(SIGKILL);
    node.start();
    EXPECT_EQ(node.printed, "snanode: domain pair ready\n") << "without room, too";
    {
        Client client(node.socket());
        const NB_ULONG target = client.join("one");
        disk.make_room();
        EXPECT_EQ(client.define_dlc(target, "NEW"), OK_CODES);
        for (const char *name : {"GONE1", "GONE2"}) {
            NAP_NAME_VERB remove = named(NAP_DELETE_DLC, local8(name));
            EXPECT_EQ(client.issue(target, remove), OK_CODES) << name;
        }
    }
    node.stop(SIGKILL);
    node.start();
    Client client(node.socket());
    EXPECT_EQ(client.query(client.join("one"), NAP_QUERY_DLC), OK_CODES);
    EXPECT_EQ(client.total, kept + 1);
}

/* Makes today's copy of a store that nobody has open; it is changed meanwhile. */
void copy_store(const std::string &state, const std::string &file) {
    constexpr int TRIES = 2000;
    node::ManualClock clock;
    node::TimerQueue timers(clock);
    node::Store store;
    std::string why;
    bool made = false;
    ASSERT_TRUE(store.open(state + "/" + file, why)) << why;
    node::DailyCopy copy(store, state, file, timers, clock, [&made] { made = true; });
    copy.begin();
    for (int at = 0; at < TRIES && !made; at++) {
        usleep(1000);
        clock.advance(1000);
        timers.run_due();
        store.set_fact("changed", std::to_string(at));
    }
    EXPECT_TRUE(made) << file;
}

std::string bytes_of(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

size_t dlcs_of_one(Running &node) {
    Client client(node.socket());
    EXPECT_EQ(client.query(client.join("one"), NAP_QUERY_DLC), OK_CODES);
    return client.total;
}

TEST(Copies, AreTakenBackAndGivenBack) {
    Running node;
    const std::string state = node.folder.file("var/domain/pair");
    const size_t before = dlcs_of_one(node);
    node.stop();
    for (const char *file : {"domain.db", "node-one.db", "node-two.db"}) {
        copy_store(state, file);
    }
    node.start();
    {
        Client client(node.socket());
        EXPECT_EQ(client.define_dlc(client.join("one"), "LATER"), OK_CODES);
    }
    const pid_t running = node.pid;
    const auto restore = [&node](const std::string &copy) {
        node.start({"--restore", copy});
        const int status = node.stop(0);
        return WEXITSTATUS(status);
    };
    EXPECT_EQ(restore("last"), 1);
    EXPECT_NE(node.printed.find("in use by a running snanode"), std::string::npos) << node.printed;
    node.pid = running;
    node.stop(SIGKILL);

    const std::string day = node::day_of(node::ManualClock().wall_seconds());
    const std::string copied = node::copies_folder(state) + "/" + day + "/node-one.db";
    const std::string whole = bytes_of(copied);
    for (const std::string &bad : {std::string(), whole.substr(0, whole.size() / 2)}) {
        std::ofstream(copied, std::ios::binary | std::ios::trunc) << bad;
        EXPECT_EQ(restore(day), 1);
        EXPECT_NE(node.printed.find("node-one.db is damaged"), std::string::npos) << node.printed;
    }
    std::ofstream(copied, std::ios::binary | std::ios::trunc) << whole;
    EXPECT_EQ(restore("yesterday"), 1);
    node.start();
    EXPECT_EQ(dlcs_of_one(node), before + 1) << "nothing was moved yet";
    node.stop(SIGKILL);

    EXPECT_EQ(restore("last"), 0) << node.printed;
    node.start();
    EXPECT_EQ(dlcs_of_one(node), before);
    node.stop(SIGKILL);
    const std::string aside = node::copy_folders(state).back();
    ASSERT_EQ(aside.rfind("before-restore-", 0), 0U) << aside;
    EXPECT_EQ(restore(aside), 0) << node.printed;
    node.start();
    EXPECT_EQ(dlcs_of_one(node), before + 1) << "with what was in its log only";
}

TEST(Copies, TheOldestGo) {
    Folder folder;
    std::string why;
    for (int day = 10; day < 20; day++) {
        const std::string name = "2026-11-" + std::to_string(day);
        EXPECT_TRUE(node::make_copy_folder(folder.path(), name, why)) << why;
        EXPECT_TRUE(node::make_copy_folder(folder.path(), "before-restore-" + name, why)) << why;
    }
    node::prune_copies(folder.path());
    const std::vector<std::string> kept = node::copy_folders(folder.path());
    ASSERT_EQ(kept.size(), node::DAYS_KEPT + node::OTHERS_KEPT);
    EXPECT_EQ(kept.front(), "2026-11-19");
    EXPECT_EQ(kept[node::DAYS_KEPT - 1], "2026-11-13");
    EXPECT_EQ(kept.back(), "before-restore-2026-11-17");
}

} // namespace

int main(int argc, char **argv) {
    return node_test::run_tests_or_node(argc, argv);
}
