// The problem log, assertions and trace control.

#include "nbbase.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

// The trace control is read before main, the size of the log with its first record.
__attribute__((constructor(101))) void set_trace_control() {
    setenv("SNA_TRACE_CONTROL", "01fF00000000000001 5", 1);
    setenv("SNA_LOG_SIZE", "64", 1);
}

class Log : public ::testing::Test {
protected:
    Log() {
        char name[] = "/tmp/qaXXXXXX";
        folder = mkdtemp(name);
        file = folder / "var/log/sna.err";
        nba_pd_set_log(file.c_str(), NB_PD_ALL);
    }
    ~Log() override {
        nba_pd_set_log(nullptr, NB_PD_NONE);
        fs::remove_all(folder);
    }

    std::vector<std::string> lines() const {
        std::vector<std::string> all;
        std::ifstream stream(file);
        for (std::string line; std::getline(stream, line);) {
            all.push_back(line);
        }
        return all;
    }

    // The last line, behind its "detail n: ".
    std::string last() const {
        const auto all = lines();
        const std::string line = all.empty() ? "(none)" : all.back();
        const size_t detail = line.find(" detail ");
        const size_t text = detail == std::string::npos ? detail : line.find(": ", detail);
        return text == std::string::npos ? line : line.substr(text + 2);
    }

    fs::path folder;
    fs::path file;
};

TEST_F(Log, LineHasTimeProcessAndMeaning) {
    errno = EDOM;
    nba_pd_print_problem(0x40020001, 7, "s i", "vgamain", 177);
    EXPECT_EQ(errno, EDOM);
    ASSERT_EQ(lines().size(), 1U) << "the folder is made when it is missing";
    const std::regex form("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d [^ ]+\\[" +
                          std::to_string(getpid()) +
                          "\\] problem 0x40020001 detail 7: .*internal error.*: "
                          "file=\"vgamain\" line=177");
    EXPECT_TRUE(std::regex_match(lines()[0], form)) << lines()[0];
}

TEST_F(Log, NamesVerbsAndReturnCodes) {
    nba_pd_print_exception(0x40020002, 2, "x x lx", 0x4000U, 0x100U, 0x5515U);
    EXPECT_EQ(last(), "registration for indications failed: "
                      "opcode=0x4000 (NAP_REGISTER_INDICATION_SINK) "
                      "primary_rc=0x0100 (NAP_PARAMETER_CHECK) "
                      "secondary_rc=0x00005515 (NAP_BAD_TARGET)");
    nba_pd_print_exception(0x40020002, 0, "x x lx", 0x0BADU, 0x77U, 0xFFFFFFFFU);
    EXPECT_EQ(last(), "verb failed: opcode=0x0BAD primary_rc=0x0077 secondary_rc=0xFFFFFFFF");
    nba_pd_print_problem(0x40020000, 0, "x x s i", 5U, 6U, "vga", -1);
    EXPECT_NE(last().find("code=0x0005 subcode=0x0006 file=\"vga\" line=-1"), std::string::npos);
    nba_pd_print_exception(0x4002000B, 0, "i i s", 3, 20, "BadWindow");
    EXPECT_NE(last().find("error_code=3 request_code=20 text=\"BadWindow\""), std::string::npos);
}

TEST_F(Log, Arrays) {
    const char name[] = "ETH0    ";
    const NB_UCHAR ebcdic[] = {0xD7, 0xE4, 0xF1, 0x40, 0x40, 0x40, 0x40, 0x40};
    const NB_UCHAR binary[] = {'A', 0x00, 0x1B, '"', '\\', 0xFF};
    const NB_UCHAR pair[] = {'n', 'o', 'd', 'e', 0, 'X'};
    const struct {
        const char *format;
        NB_INT width;
        const void *bytes;
        const char *expected;
    } cases[] = {
        {"x ca", 8, name, "name=\"ETH0\""},
        {"x ca", 3, name, "name=\"ETH\""},
        {"x ca", 0, name, "name=\"\""},
        {"x ca", 8, ebcdic, "name=\"PU1\" (EBCDIC)"},
        {"x ca", 6, binary, "name=\"A\\x00\\x1B\\\"\\\\\\xFF\""},
        {"x cs", 6, pair, "name=\"node\""},
        {"x cs", 4, pair, "name=\"node\""},
        {"x ca", -1, name, "name=(bad width -1)"},
        {"x ca", 8, nullptr, "name=(null)"},
        {"x cs", 8, nullptr, "name=(null)"},
    };
    for (const auto &c : cases) {
        nba_pd_print_exception(0x40020004, 0, c.format, 0x2113U, c.width, c.bytes);
        EXPECT_EQ(last(),
                  std::string("unknown resource: opcode=0x2113 (NAP_QUERY_PORT) ") + c.expected);
    }
}

TEST_F(Log, OneRecordIsOneLineWhateverItHolds) {
    nba_pd_print_problem(0x7777, 0, "s s  i", "two\nlines\t", static_cast<char *>(nullptr), 5);
    nba_pd_print_problem(0x7777, 0, "i q i", 1, 2, 3);
    const std::string huge(10000, '\n');
    nba_pd_print_problem(0x7777, 0, "s i", huge.c_str(), 4);
    nba_pd_print_problem(0x7777, 0, "i i i i i i", 1, 2, 3, 4, 5, 6);
    const auto all = lines();
    ASSERT_EQ(all.size(), 4U);
    EXPECT_NE(all[0].find("value1=\"two\\x0Alines\\x09\" value2=(null) value3=5"),
              std::string::npos)
        << all[0];
    EXPECT_NE(all[1].find("value1=1 value2=(unknown format word \"q\")"), std::string::npos);
    EXPECT_EQ(all[1].find("value3"), std::string::npos) << "read on behind an unknown word";
    EXPECT_LT(all[2].size(), 2100U);
    EXPECT_EQ(all[2].substr(all[2].size() - 3), "...");
    EXPECT_NE(all[3].find("value6=6"), std::string::npos);
}

TEST_F(Log, Levels) {
    size_t expected = 0;
    for (NB_USHORT level : {NB_PD_NONE, NB_PD_PROBLEM, NB_PD_EXCEPTION, NB_PD_ALL}) {
        nba_pd_set_log(file.c_str(), level);
        nba_pd_print_problem(1, 0, nullptr);
        nba_pd_print_exception(2, 0, nullptr);
        expected += level == NB_PD_NONE ? 0 : level == NB_PD_PROBLEM ? 1 : 2;
        EXPECT_EQ(lines().size(), expected) << level;
    }
}

TEST_F(Log, RepeatsAreCountedAndAFullFileIsPutAside) {
    for (int times = 0; times < 1000; times++) {
        nba_pd_print_problem(1, 0, "i", 7);
    }
    EXPECT_EQ(lines().size(), 1U);
    nba_pd_print_problem(1, 0, "i", 8);
    ASSERT_EQ(lines().size(), 3U);
    EXPECT_NE(lines()[1].find("999 more times"), std::string::npos) << lines()[1];

    fs::path old = file;
    old += ".old";
    for (int number = 0; !fs::exists(old) && number < 10000; number++) {
        nba_pd_print_problem(1, 0, "i", number);
    }
    EXPECT_EQ(lines().size(), 1U);
    EXPECT_GT(fs::file_size(old), 60U * 1024);
    EXPECT_LE(fs::file_size(old), 64U * 1024);
    // A folder in the way: nothing is lost, and nobody waits.
    fs::remove(old);
    fs::create_directories(old / "taken");
    fs::resize_file(file, 65536);
    nba_pd_print_problem(1, 0, "i", -1);
    EXPECT_GT(fs::file_size(file), 65536U);
}

TEST_F(Log, WhatCannotBeWrittenGoesToStandardError) {
    // A folder stands where the file should be; a file where its folder should be; a pipe that
    // nobody reads.
    fs::create_directories(folder / "taken");
    std::ofstream(folder / "plain") << "x";
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    for (const char *name : {"taken", "plain/sna.err", "pipe"}) {
        nba_pd_set_log((folder / name).c_str(), NB_PD_ALL);
        ::testing::internal::CaptureStderr();
        nba_pd_print_problem(0x40020001, 0, "s i", name, 1);
        const std::string text = ::testing::internal::GetCapturedStderr();
        EXPECT_NE(text.find(name), std::string::npos) << name;
    }
}

const NB_CHAR *fatal_text;

NB_VOID on_fatal(const NB_CHAR *, NB_INT line, const NB_CHAR *text) {
    fatal_text = line == 9 ? text : "wrong line";
}

TEST_F(Log, Assertions) {
    EXPECT_EQ(v0_set_fatal_handler(on_fatal), nullptr);
    v0_assert("vganofbd.cpp", 42, "vcb->opcode == NAP_QUERY_MODE");
    EXPECT_EQ(last(), "assertion failed: expression=\"vcb->opcode == NAP_QUERY_MODE\" "
                      "file=\"vganofbd.cpp\" line=42");
    EXPECT_EQ(fatal_text, nullptr);
    v0_assert_fatal("vgaviewr.cpp", 9, "FALSE");
    EXPECT_STREQ(fatal_text, "FALSE");
    EXPECT_NE(last().find("fatal assertion failed: expression=\"FALSE\""), std::string::npos)
        << last();
    NB_ASSERT(lines().size() == 2);
    EXPECT_EQ(lines().size(), 2U) << "an assertion that holds says nothing";
    EXPECT_EQ(v0_set_fatal_handler(nullptr), on_fatal);
}

TEST(TraceControl, HexadecimalDigitsUntilSomethingElse) {
    EXPECT_EQ(ptrc.flags[0], 0x01);
    EXPECT_EQ(ptrc.flags[1], 0xFF);
    EXPECT_EQ(ptrc.flags[2], 0x00);
    EXPECT_EQ(ptrc.flags[8], 0x01);
    EXPECT_EQ(ptrc.flags[9], 0x00);
}

} // namespace
