// What depends on where the software is installed: the prefix, the toolkit's search path, the
// message catalogue and the domain file.  The prefix is read once, so the whole test has one.

#include "nbbase.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

namespace {

namespace fs = std::filesystem;

fs::path prefix;

class Installed : public ::testing::Environment {
public:
    void SetUp() override {
        char name[] = "/tmp/qaXXXXXX";
        ASSERT_NE(mkdtemp(name), nullptr);
        prefix = fs::path(name) / "p:x%";
        fs::create_directories(prefix);
        setenv("SNA_PREFIX", (prefix.string() + "//").c_str(), 1);
    }
    void TearDown() override { fs::remove_all(prefix.parent_path()); }
};

const auto *const installed = ::testing::AddGlobalTestEnvironment(new Installed);

void make_catalog(const std::string &locale, const std::string &text) {
    const fs::path folder = prefix / "lib/nls/msg" / locale;
    fs::create_directories(folder);
    const fs::path source = folder / "sna.msg";
    std::ofstream(source) << "$set 2\n1 " << text << "\n3 third\n";
    const std::string command =
        "gencat '" + (folder / "sna.cat").string() + "' '" + source.string() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
}

std::string first_message() {
    NB_INT catalog = -7;
    if (!v0_initialise_message_catalog(&catalog)) {
        EXPECT_EQ(catalog, -1);
        return "(none)";
    }
    const NB_CHAR *text = v0_get_message(catalog, 2, 1);
    const std::string copy = text ? text : "(null)";
    v0_close_message_catalog(&catalog);
    EXPECT_EQ(catalog, -1);
    return copy;
}

TEST(Prefix, ComesFromTheEnvironmentOnce) {
    EXPECT_EQ(nba_prefix(), prefix.string());
    setenv("SNA_PREFIX", "/elsewhere", 1);
    EXPECT_EQ(nba_prefix(), prefix.string());
}

TEST(Prefix, OneThatIsSetAndCannotBeUsedIsRefused) {
    std::ofstream(prefix / "file") << "";
    const struct {
        std::string value, why; // empty: it can be used
    } cases[] = {
        {prefix.string() + "//", ""},
        {"", ""},
        {"/", ""},
        {"relative/path", "does not begin with a slash"},
        {(prefix / "missing").string(), "No such file"},
        {(prefix / "file").string(), "not a folder"},
        {(prefix / "file/below").string(), "Not a directory"},
        {"/" + std::string(NB_MAX_PREFIX, 'x'), "more than 60"},
    };
    const std::string before = getenv("SNA_PREFIX");
    for (const auto &c : cases) {
        setenv("SNA_PREFIX", c.value.c_str(), 1);
        testing::internal::CaptureStderr();
        EXPECT_EQ(nba_check_prefix("program"), c.why.empty()) << c.value;
        const std::string err = testing::internal::GetCapturedStderr();
        EXPECT_EQ(err.empty(), c.why.empty()) << err;
        EXPECT_NE(err.find(c.why), std::string::npos) << err;
        EXPECT_EQ(err.find("program: SNA_PREFIX") == 0, !c.why.empty()) << err;
    }
    setenv("SNA_PREFIX", before.c_str(), 1);
}

// The files that the log would go to, and does, while the common one cannot be made.
TEST(LogFile, IsTheUsersOwnWhenTheCommonOneCannotBeWritten) {
    const fs::path state = prefix / "state", own = state / "quiladmin/sna.err";
    const fs::path common = prefix / "var/log/sna.err";
    unsetenv("SNA_LOG");
    setenv("XDG_STATE_HOME", state.c_str(), 1);
    EXPECT_EQ(nba_pd_log_file(), common.string());
    EXPECT_FALSE(fs::exists(prefix / "var")) << "asking makes no folder";
    std::ofstream(prefix / "var") << "no folder";
    EXPECT_EQ(nba_pd_log_file(), own.string());
    nba_pd_print_problem(0x7777, 0, nullptr);
    EXPECT_TRUE(fs::exists(own));
    EXPECT_EQ(nba_pd_log_file(), own.string());
    fs::remove_all(state);
    std::ofstream(state.string()) << "no folder either";
    EXPECT_EQ(nba_pd_log_file(), nullptr);
    testing::internal::CaptureStderr();
    nba_pd_print_problem(0x7778, 0, nullptr);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("0x00007778"), std::string::npos);
    fs::remove(prefix / "var");
    nba_pd_print_problem(0x7779, 0, nullptr);
    EXPECT_TRUE(fs::exists(common));
    nba_pd_set_log(nullptr, NB_PD_ALL);
    EXPECT_EQ(nba_pd_log_file(), nullptr);
}

TEST(Prefix, SearchPathKeepsWhatWasThere) {
    // ':' and '%' of the folder's own name are escaped.
    const std::string folder = prefix.parent_path().string() + "/p%:x%%/lib/X11";
    unsetenv("XFILESEARCHPATH");
    nba_set_app_defaults_path();
    const std::string fresh = getenv("XFILESEARCHPATH");
    EXPECT_EQ(fresh.rfind("%D:" + folder, 0), 0U) << fresh;
    EXPECT_NE(fresh.find(":" + folder + "/%T/%N%S"), std::string::npos) << fresh;
    nba_set_app_defaults_path();
    EXPECT_EQ(getenv("XFILESEARCHPATH"), fresh);

    setenv("XFILESEARCHPATH", "/site/%T/%N", 1);
    nba_set_app_defaults_path();
    EXPECT_EQ(std::string(getenv("XFILESEARCHPATH")).rfind("/site/%T/%N:" + folder, 0), 0U);
}

TEST(Catalog, FallsBackToC) {
    setenv("LANG", "de_DE", 1);
    EXPECT_EQ(first_message(), "(none)");
    make_catalog("C", "common");
    EXPECT_EQ(first_message(), "common");
    make_catalog("de_DE", "eigen");
    EXPECT_EQ(first_message(), "eigen");
    unsetenv("LANG");
    EXPECT_EQ(first_message(), "common");
    setenv("LANG", "", 1);
    EXPECT_EQ(first_message(), "common");
    // A value that would lead out of the folder is no locale.
    setenv("LANG", "../msg/de_DE", 1);
    EXPECT_EQ(first_message(), "common");
    // Neither is a catalogue that is none.
    fs::create_directories(prefix / "lib/nls/msg/broken");
    std::ofstream(prefix / "lib/nls/msg/broken/sna.cat") << "no catalogue";
    setenv("LANG", "broken", 1);
    EXPECT_EQ(first_message(), "common");
}

TEST(Domain, SaysWhatTheFileSays) {
    const fs::path file = prefix / "etc/domain";
    EXPECT_EQ(vsm_is_client_server(), 0);
    fs::create_directories(file.parent_path());
    const struct {
        const char *text;
        NB_USHORT expected;
    } cases[] = {
        {"client_server = yes\n", 1},
        {"client_server=yes", 1},
        {"# client_server = no\ndomain = sample\n\tclient_server  =  yes  \n", 1},
        {"client_server = no\n", 0},
        {"client_server = yesterday\n", 0},
        {"client_server\n", 0},
        {"client_servers = yes\n", 0},
        {"# client_server = yes\n", 0},
        {"", 0},
    };
    for (const auto &c : cases) {
        std::ofstream(file) << c.text;
        EXPECT_EQ(vsm_is_client_server(), c.expected) << c.text;
    }
}

} // namespace
