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
