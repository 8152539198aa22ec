/* Start-up without memory or without a message.  The linker sends requests for memory here, where
 * they fail when they are told to. */
#include <gtest/gtest.h>

#include "globals.h"
#include "messages.h"
#include "nbbase.h"
#include <Xm/Xm.h>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr int never = -1;
int allocations_left = never; /* until one fails; the ones behind it fail, too */

bool may_allocate() {
    return allocations_left == never || (allocations_left > 0 && allocations_left-- > 0);
}

} // namespace

extern "C" {
void *__real_calloc(size_t count, size_t size);
void *__real_realloc(void *block, size_t size);
void *__wrap_calloc(size_t count, size_t size) {
    return may_allocate() ? __real_calloc(count, size) : nullptr;
}
void *__wrap_realloc(void *block, size_t size) {
    return may_allocate() ? __real_realloc(block, size) : nullptr;
}
}

namespace {

fs::path prefix;

/* The prefix is read once, so the whole test has one. */
class Folder : public testing::Environment {
public:
    void SetUp() override {
        NB_CHAR name[] = "/tmp/qaXXXXXX";
        ASSERT_NE(mkdtemp(name), nullptr);
        prefix = name;
        setenv("SNA_PREFIX", name, 1);
        setenv("LANG", "C", 1);
    }
    void TearDown() override { fs::remove_all(prefix); }
};

const auto *const folder = testing::AddGlobalTestEnvironment(new Folder);

class NoMemory : public testing::Test {
protected:
    void SetUp() override {
        gvga_exit_code = 0;
        nba_pd_set_log((prefix / "log").c_str(), NB_PD_ALL);
    }
    void TearDown() override {
        allocations_left = never;
        vga_unload_messages();
        gvga_exit_code = 0;
        fs::remove(prefix / "log");
    }

    /* All messages but one, or all. */
    static void make_catalogue(NB_USHORT but = 0) {
        const fs::path place = prefix / "lib/nls/msg/C";
        fs::create_directories(place);
        std::ofstream source(place / "sna.msg");
        source << "$set 2\n";
        for (NB_USHORT number = 1; number <= VGA_MESSAGE_COUNT; number++) {
            if (number != but) {
                source << number << " " << std::string(number % 100, 'm') << number << "\n";
            }
        }
        source.close();
        fs::remove(place / "sna.cat");
        const std::string command =
            "gencat '" + (place / "sna.cat").string() + "' '" + (place / "sna.msg").string() + "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
    }

    static std::string log() {
        std::ifstream stream(prefix / "log");
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static void expect_no_start() {
        EXPECT_EQ(vga_load_messages(), 0);
        EXPECT_EQ(gvga_exit_code, VGA_EXIT_START_UP);
        EXPECT_EQ(gvga_catalog, -1);
        EXPECT_STREQ(vga_message(VGA_MSG_START_UP_FAILED), "");
        EXPECT_NE(log().find(" 0x40020005 detail 4:"), std::string::npos) << log();
    }
};

TEST_F(NoMemory, MessagesNeedAllTheirBlocks) {
    make_catalogue();
    EXPECT_EQ(vga_load_messages(), 1);
    EXPECT_EQ(std::string_view(vga_message(VGA_MESSAGE_COUNT)),
              std::string(VGA_MESSAGE_COUNT % 100, 'm') + std::to_string(VGA_MESSAGE_COUNT));
    for (const int blocks : {0, 1, 7}) {
        vga_unload_messages();
        gvga_exit_code = 0;
        allocations_left = blocks;
        expect_no_start();
    }
}

TEST_F(NoMemory, NoMessageMayBeMissing) {
    for (const NB_USHORT missing : {NB_USHORT{1}, NB_USHORT{700}, NB_USHORT{VGA_MESSAGE_COUNT}}) {
        SCOPED_TRACE(missing);
        gvga_exit_code = 0;
        make_catalogue(missing);
        expect_no_start();
    }
}

} // namespace
