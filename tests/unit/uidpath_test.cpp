#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

#include "nbbase.h"
#include "v0uidpth.h"

namespace {

const char *language_default; /* what the display answers */

/* The display is a text here, so that a test sees that it arrives. */
const NB_CHAR *get_default(NB_VOID *display, const NB_CHAR *program, const NB_CHAR *option) {
    EXPECT_STREQ(static_cast<const char *>(display), "display");
    EXPECT_STREQ(program, "Application");
    EXPECT_STREQ(option, "xnlLang");
    return language_default;
}

void set_or_unset(const char *name, const char *value) {
    if (value != nullptr) {
        setenv(name, value, 1);
    } else {
        unsetenv(name);
    }
}

std::string uidpath_after(const char *directory, V0_GET_DEFAULT asked = get_default) {
    static char display[] = "display";
    v0_set_uidpath(directory, "Class", "Application", display, asked);
    const char *value = std::getenv("UIDPATH");
    return value != nullptr ? value : "(unset)";
}

} // namespace

TEST(UidPath, LanguageAndPresetPath) {
    const std::string plain = "/dir/uid/Class/%U";
    struct Case {
        const char *preset, *lang, *display;
        std::string path;
    };
    const Case cases[] = {
        {nullptr, nullptr, nullptr, plain},
        {nullptr, "de_DE", nullptr, "/dir/de_DE/uid/Class/%U:" + plain},
        {nullptr, nullptr, "fr", "/dir/fr/uid/Class/%U:" + plain},
        {nullptr, "C", "fr", "/dir/C/uid/Class/%U:" + plain},
        {nullptr, "%s%n", nullptr, "/dir/%s%n/uid/Class/%U:" + plain},
        {"/own/%U", "C", "fr", "/own/%U"},
        {"", "C", "fr", ""},
    };
    for (const Case &row : cases) {
        set_or_unset("UIDPATH", row.preset);
        set_or_unset("LANG", row.lang);
        language_default = row.display;
        EXPECT_EQ(uidpath_after("/dir"), row.path);
    }
    unsetenv("UIDPATH");
    unsetenv("LANG");
    EXPECT_EQ(uidpath_after("/dir", nullptr), plain);
}

TEST(UidPath, TooLongIsReportedAndNotSet) {
    const auto log =
        std::filesystem::temp_directory_path() / ("uidpath_test." + std::to_string(getpid()));
    nba_pd_set_log(log.c_str(), NB_PD_ALL);
    language_default = nullptr;
    const std::string rest = "UIDPATH=/uid/Class/%U";
    for (size_t total : {199, 200, 5000}) {
        unsetenv("UIDPATH");
        unsetenv("LANG");
        std::string directory(total - rest.size(), 'd');
        std::string path = uidpath_after(directory.c_str());
        EXPECT_EQ(path, total < V0_MAX_UIDPATH ? directory + "/uid/Class/%U" : "(unset)");
        std::ifstream in(log);
        std::string text(std::istreambuf_iterator<char>(in), {});
        bool reported = text.find("NB_STRLEN(v0_uidpath) < V0_MAX_UIDPATH") != std::string::npos;
        EXPECT_EQ(reported, total >= V0_MAX_UIDPATH) << total;
    }
    nba_pd_set_log(nullptr, NB_PD_EXCEPTION);
    std::filesystem::remove(log);
}
