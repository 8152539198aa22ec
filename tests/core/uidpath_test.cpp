#include <cstdlib>

#include <gtest/gtest.h>

#include "reports.h"
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
    REPORTS reports;
    language_default = nullptr;
    const std::string rest = "UIDPATH=/uid/Class/%U";
    for (size_t total : {199, 200, 5000}) {
        unsetenv("UIDPATH");
        unsetenv("LANG");
        const std::string directory(total - rest.size(), 'd');
        const bool fits = total < V0_MAX_UIDPATH;
        EXPECT_EQ(uidpath_after(directory.c_str()), fits ? directory + "/uid/Class/%U" : "(unset)");
        const bool said =
            reports.take().find("NB_STRLEN(v0_uidpath) < V0_MAX_UIDPATH") != std::string::npos;
        EXPECT_EQ(said, !fits) << total;
    }
}
