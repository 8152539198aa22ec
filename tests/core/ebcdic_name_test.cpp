/* Type-A names made from free text, and ignored signals. */
#include <cerrno>
#include <csignal>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "nbbase.h"
#include "v0toebcd.h"

namespace {

/* The name in the local code page, with all that stands behind it in a larger buffer. */
std::string name_of(const std::string &text, NB_SHORT length) {
    std::vector<NB_UCHAR> out(static_cast<size_t>(length > 0 ? length : 0) + 1, 0x7B); /* # */
    EXPECT_EQ(v0_generate_ebcdic_a_name(text.c_str(), length, out.data()), 1);
    nba_ebcdic_to_local(out.data(), static_cast<NB_USHORT>(out.size()));
    return std::string(out.begin(), out.end());
}

} // namespace

TEST(EbcdicName, FromText) {
    struct Case {
        const char *text;
        NB_SHORT length;
        const char *name; /* and the first byte behind it, which stays "#" */
    };
    for (const Case &row : std::vector<Case>{
             {"ls-01", 8, "LS01    #"},
             {"abc", 8, "ABC     #"},
             {"a b.c_d-e", 8, "ABCD    #"},  /* eight characters are read */
             {"--------ab", 8, "TTTTTTTT#"}, /* so what stands behind them does not count */
             {"@#$x", 8, "@#$X    #"},
             {"abcdefghij", 8, "ABCDEFGH#"},
             {"abcdefghij", 17, "ABCDEFGHIJ       #"},
             {"123", 8, "A123    #"},
             {"12345678", 8, "A1234567#"},
             {"1-2", 8, "A12     #"},
             {"-1", 8, "1       #"},
             {"1", 1, "A#"},
             {"b", 1, "B#"},
             {"12", 2, "A1#"},
             {"", 8, "        #"},
             {"-_-", 8, "TRT     #"},
             {"- -", 8, "T       #"},
             {" --", 8, "        #"},
             {" a", 8, "A       #"},
             {"\xE9\xFF", 8, "ZV      #"}, /* 233 and 255 */
             {"abc", 0, "#"},
             {"1", 0, "#"},
             {"1", -1, "#"},
         }) {
        EXPECT_EQ(name_of(row.text, row.length), row.name) << row.text << " in " << row.length;
    }
}

TEST(Signals, Ignore) {
    struct sigaction before, now;
    ASSERT_EQ(sigaction(SIGHUP, nullptr, &before), 0);
    EXPECT_EQ(vsvig_signal_ignore(SIGHUP), 0);
    EXPECT_EQ(raise(SIGHUP), 0) << "and the program goes on";
    ASSERT_EQ(sigaction(SIGHUP, &before, &now), 0);
    EXPECT_EQ(now.sa_handler, SIG_IGN);
    EXPECT_EQ(now.sa_flags & (SA_SIGINFO | SA_RESTART | SA_NODEFER), 0);
    EXPECT_EQ(vsvig_signal_ignore(SIGKILL), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(vsvig_signal_ignore(-1), -1);
}
