/* The verb log: what it tells of each way that a verb can go, and that it never gets in the way. */
#include <gtest/gtest.h>

#include "globals.h"
#include "hooks.h"
#include "nofverbs.h"
#include "scriptednof.h"
#include "verblog.h"
#include "verbqueue.h"
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <regex>
#include <vector>

SCRIPTED_NOF_ENTRY

namespace {

class VerbLog : public testing::Test {
protected:
    void SetUp() override {
        char name[] = "/tmp/verblogXXXXXX";
        folder = mkdtemp(name);
        nba_pd_set_log((folder / "errors").c_str(), NB_PD_ALL);
        scripted_nof.reset();
        gvga_hooks.indication = nullptr;
        vga_init_verb_queues();
    }
    void TearDown() override {
        vga_empty_verb_queues();
        gvga_verb_log_file[0] = '\0';
        nba_pd_set_log(nullptr, NB_PD_NONE);
        std::filesystem::remove_all(folder);
    }

    /* As start-up does it with the option set. */
    void start(const std::string &file) {
        snprintf(gvga_verb_log_file, sizeof(gvga_verb_log_file), "%s", file.c_str());
        vga_init_verb_queues();
    }
    void start() { start(file()); }
    std::string file() const { return (folder / "verbs").string(); }

    static std::vector<std::string> lines(const std::filesystem::path &path) {
        std::vector<std::string> result;
        std::ifstream in(path);
        for (std::string line; std::getline(in, line);) {
            result.push_back(line);
        }
        return result;
    }

    /* Line by line, behind the time of day. */
    void expect_lines(const std::vector<std::string> &wanted) const {
        const std::vector<std::string> found = lines(file());
        ASSERT_EQ(found.size(), wanted.size());
        for (size_t at = 0; at < wanted.size(); at++) {
            const std::regex pattern("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} " +
                                     wanted[at]);
            EXPECT_TRUE(std::regex_match(found[at], pattern))
                << "found  " << found[at] << "\nwanted " << wanted[at];
        }
    }

    std::filesystem::path folder;
};

NB_VOID set_text(NB_UCHAR *field, const char *text) {
    memcpy(field, text, strlen(text) + 1);
}

NB_VOID queue_delete(NB_ULONG target, NB_USHORT opcode, const char *name) {
    auto verb = vga_new_verb<NAP_NAME_VERB>(opcode);
    set_text(verb->key, name);
    vga_issue_verb(target, std::move(verb), 0, vga_no_completion);
}

NAP_VCB *queue_list(NB_ULONG target) {
    auto query = vga_new_verb<NAP_QUERY_LIST>(NAP_QUERY_PORT);
    query->list_options = NAP_DETAIL | NAP_LIST_FROM_NEXT;
    const NB_UCHAR ebcdic_name[] = {0xC5, 0xE3, 0xC8, 0xF0, 0x40, 0x40, 0x40, 0x40};
    memcpy(query->key, ebcdic_name, sizeof(ebcdic_name));
    auto *vcb = reinterpret_cast<NAP_VCB *>(query.get());
    vga_issue_verb(target, std::move(query), 0, vga_no_completion);
    return vcb;
}

TEST_F(VerbLog, TellsRequestAndAnswer) {
    start();
    auto *query = reinterpret_cast<NAP_QUERY_LIST *>(queue_list(3));
    query->num_entries = 7;
    query->total_num_entries = 19;
    query->total_buf_size = 700;
    auto open = vga_new_verb<NAP_OPEN_FILE_VERB>(NAP_OPEN_FILE);
    open->file = NAP_SYSTEM_FILE;
    auto *opened = open.get();
    vga_issue_verb(0, std::move(open), 0, vga_no_completion);
    set_text(opened->node_name, "alpha\n");
    opened->target_handle = 12;
    queue_delete(3, NAP_DELETE_LS, "ls \"1\"");
    scripted_nof.complete(1);
    scripted_nof.complete(1, NAP_PARAMETER_CHECK, NAP_NO_PERMISSION);
    scripted_nof.complete(0);
    queue_delete(3, NAP_STOP_PU, "");
    scripted_nof.complete(0, 0x1234, 0x98765432);
    const std::string time = "  \\d+\\.\\d{3} ms";
    expect_lines({
        "issued             target 3  QUERY_PORT 0x2113  from behind  \"ETH0\"",
        "issued             target 0  OPEN_FILE 0xF004  system file \"\"",
        "issued             target 3  DELETE_LS 0x2045  \"ls \"1\"\"",
        "completed          target 0  OPEN_FILE 0xF004  OK 0x0000 - 0x00000000" + time +
            "  system file \"alpha\\?\" is target 12",
        "completed          target 3  DELETE_LS 0x2045  PARAMETER_CHECK 0x0100 NO_PERMISSION "
        "0x00005514" +
            time,
        "completed          target 3  QUERY_PORT 0x2113  OK 0x0000 - 0x00000000" + time +
            "  7 of 19 entries, 700 bytes",
        "issued             target 3  STOP_PU 0x6003",
        "completed          target 3  STOP_PU 0x6003  \\? 0x1234 \\? 0x98765432" + time,
    });
}

TEST_F(VerbLog, TellsWhatWaitsWhatIsPurgedAndWhatWasKnownAtOnce) {
    start();
    queue_delete(1, NAP_DELETE_PORT, "first");
    vga_purge_verb_queue(1, 0, nullptr, 0, nullptr);
    queue_delete(1, NAP_DELETE_MODE, "second");
    queue_delete(1, NAP_DELETE_MODE, "third");
    vga_purge_verb_queue(0, 0, scripted_nof.in_flight[0].vcb, 0, nullptr); /* again: no line */
    vga_purge_verb_queue(0, 0, reinterpret_cast<VGA_QUEUE_ENTRY *>(gvga_nof_queue.previous)->vcb, 0,
                         nullptr);
    scripted_nof.completes_at_once = [](const ISSUED_VERB &verb) {
        verb.vcb->primary_rc = NAP_NOT_SUPPORTED;
        return NB_USHORT{1};
    };
    scripted_nof.complete(0);
    queue_delete(1, NAP_DELETE_LS, "fourth");
    vga_drain_immediate_queue();
    const std::string time = "\\d+\\.\\d{3} ms";
    expect_lines({
        "issued             target 1  DELETE_PORT 0x2043  \"first\"",
        "purged             target 1  DELETE_PORT 0x2043  " + time,
        "waiting            target 1  DELETE_MODE 0x003F  \"second\"",
        "waiting            target 1  DELETE_MODE 0x003F  \"third\"",
        "purged             target 1  DELETE_MODE 0x003F  waited " + time,
        "completed          target 1  DELETE_PORT 0x2043  OK 0x0000 - 0x00000000  " + time +
            "  \"first\"  \\(purged\\)",
        "issued             target 1  DELETE_MODE 0x003F  waited " + time + "  \"second\"",
        "completed at once  target 1  DELETE_MODE 0x003F  NOT_SUPPORTED 0x0F20 - 0x00000000  " +
            time,
        "issued             target 1  DELETE_LS 0x2045  \"fourth\"",
        "completed at once  target 1  DELETE_LS 0x2045  NOT_SUPPORTED 0x0F20 - 0x00000000  " + time,
    });
}

/* Blocks of exactly the table's length, filled with anything, as a broken node might. */
TEST_F(VerbLog, ReadsNoBlockBeyondItsLength) {
    start();
    const auto seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (const NAP_VERB &verb : gnap_verbs) {
        std::unique_ptr<NB_UCHAR[]> block(new NB_UCHAR[verb.block_size]);
        auto *vcb = reinterpret_cast<NAP_VCB *>(block.get());
        for (VGA_VERB_EVENT event :
             {VGA_VERB_ISSUED, VGA_VERB_COMPLETED, VGA_VERB_UNSOLICITED, VGA_VERB_PURGED}) {
            for (NB_ULONG at = 0; at < verb.block_size; at++) {
                block[at] = static_cast<NB_UCHAR>(random() | 1);
            }
            vcb->opcode = verb.opcode;
            vcb->primary_rc = NAP_OK;
            vga_log_verb(event, 1, vcb);
        }
    }
    const std::vector<std::string> found = lines(file());
    ASSERT_EQ(found.size(), NAP_VERB_COUNT * 4);
    for (size_t at = 0; at < found.size(); at++) {
        EXPECT_NE(found[at].find(std::string("  ") + (gnap_verbs[at / 4].name + 4) + " 0x"),
                  std::string::npos)
            << found[at];
        EXPECT_EQ(std::count_if(found[at].begin(), found[at].end(),
                                [](char byte) { return byte < ' ' || byte > '~'; }),
                  0)
            << found[at];
    }
}

TEST_F(VerbLog, AFileThatCannotBeWrittenEndsTheLogOnly) {
    for (const std::string &name :
         {folder.string(), folder.string() + "/none/verbs", std::string("/dev/full")}) {
        start(name);
        queue_delete(1, NAP_DELETE_PORT, "eth0");
        EXPECT_EQ(gvga_verb_log, nullptr) << name;
        scripted_nof.complete();
    }
    const std::vector<std::string> errors = lines(folder / "errors");
    ASSERT_EQ(errors.size(), 3U);
    EXPECT_NE(errors[0].find("0x4002000C detail 0"), std::string::npos) << errors[0];
    EXPECT_NE(errors[1].find("No such file"), std::string::npos) << errors[1];
    EXPECT_NE(errors[2].find("0x4002000C detail 1"), std::string::npos) << errors[2];
}

} // namespace
