// The command line on a running domain: what it prints and how it ends.
#include "system_test.h"

namespace sys {

class Quilctl : public SystemTest {
protected:
    struct Run {
        int status;
        std::string out, err;
    };

    /* As typed in a shell; `quilctl` is the built one. */
    Run shell(const std::string &line, uid_t user = 0) {
        const std::string command =
            "quilctl() { " + place.path("bin/quilctl") + " \"$@\"; }; " + line;
        Command words = {{"sh", "-c", command}, place.environment(), user};
        Process process(words);
        EXPECT_TRUE(process.wait_end()) << line;
        return {process.status(), process.out(), process.err()};
    }

    struct Row {
        const char *line;
        int status;
        const char *out; /* in it; "": nothing at all */
        const char *err;
    };

    void expect_rows(const std::vector<Row> &rows, uid_t user = 0) {
        for (const Row &row : rows) {
            const Run run = shell(row.line, user);
            EXPECT_EQ(run.status, row.status) << row.line << "\n" << run.err;
            for (const auto &[found, wanted] :
                 {std::pair{run.out, row.out}, std::pair{run.err, row.err}}) {
                EXPECT_TRUE(*wanted == '\0' ? found.empty()
                                            : flat(found).find(wanted) != std::string::npos)
                    << row.line << "\nprinted " << found << "\nwanted  " << wanted;
            }
        }
    }
};

TEST_F(Quilctl, LooksAndChangesAndSaysWhyNot) {
    start_node("branch");
    expect_rows({
        {"until quilctl list ls | grep 'HOSTCH *active'; do sleep 0.1; done", 0, "HOSTCH", ""},
        {"quilctl status", 0, "harbour active master", ""},
        {"quilctl --json list dlc --node harbour", 0, R"("name":"LAN0")", ""},
        {"quilctl --names --node market list port", 0, "ETH0 FRPORT IPPORT", ""},
        {"quilctl list lu03 CHANPU --node harbour --fields name,pu_name", 0, "NAME PU_NAME", ""},
        {"quilctl classes dlc", 0, "card_number definition 0 0..254", ""},
        {"quilctl --node harbour define dlc NEW dlc_type=token_ring 'description=A new one'", 0, "",
         ""},
        {"quilctl show dlc NEW", 0, "[dlc NEW] description = A new one dlc_type = token_ring", ""},
        {"quilctl --node harbour define dlc NEW", 1, "", "use change"},
        {"quilctl --node harbour change dlc NEW card_number=300", 2, "", "a number from 0 to 254"},
        {"quilctl --node harbour change dlc NEW nothing=3", 2, "", "there are description"},
        {"quilctl --node harbour change dlc OTHER card_number=3", 4, "", "use define"},
        {"quilctl --node harbour change dlc NEW card_number=3", 0, "", ""},
        {"quilctl --node harbour change defaults nothing=x", 2, "", "there is no field"},
        {"quilctl define dlc X", 2, "", "harbour, market, station"},
        {"quilctl --node harbour delete port ETH0", 1, "", "it is active; stop it first"},
        {"quilctl --node harbour stop dlc NEW", 0, "", ""},
        {"printf 'NEW\\nNONE\\n' | quilctl --node harbour delete dlc -", 4, "", "dlc NONE"},
        {"quilctl show dlc NEW", 4, "", "there is no dlc NEW"},
        {"quilctl history --count 1", 0, "DELETE_DLC dlc NONE UNKNOWN_RESOURCE", ""},
        {"quilctl --node market define dlc LANA1..LANA3; quilctl --names --node market list dlc", 0,
         "LANA1 LANA2 LANA3", ""},
        {"quilctl --node market define dlc LANA3..LANA4", 1, "", "dlc LANA3: it is there already"},
        {"quilctl show dlc LANA4 --node market", 0, "[dlc LANA4]", ""},
        {"quilctl --node market define dlc LANA9..LANA2", 2, "", "is no range of names"},
        {"quilctl check", 1, "link KIOSK2 of harbour is not active", ""},
        {"quilctl stop node station; quilctl check", 2, "node station is stop", ""},
        {"quilctl metrics", 0, "sna_used{node=\"harbour\",limit=\"lus\"} 80", ""},
        {"quilctl list unknown", 2, "", "there is no class"},
        {"quilctl", 2, "", "subcommand"},
        {"quilctl complete -- --node harbour change ls HOST", 0, "HOSTCH HOSTETH", ""},
        {"quilctl complete -- change ls HOSTCH ls_role=p", 0, "ls_role=primary", ""},
        {"quilctl complete -- show nothing x", 0, "", ""},
        {"quilctl --node market watch >$SNA_PREFIX/seen & sleep 0.5; quilctl --node market define "
         "dlc SEEN;"
         "sleep 0.3; kill $!; cat $SNA_PREFIX/seen",
         0, "market DEFINE_DLC", ""},
    });
    stop_node();
    expect_rows({{"quilctl status", 3, "", "quilctl: the nodes of the domain"}});
}

TEST_F(Quilctl, WhatIsExportedIsApplied) {
    start_node("branch");
    expect_rows({
        {"quilctl export | quilctl apply --delete --dry-run -", 0, "nothing to do", ""},
        {"quilctl apply --delete --dry-run $SNA_PREFIX/share/domains/branch.domain", 0,
         "nothing to do", ""},
        {"quilctl export | sed 's/^server = none/server = backup/' | quilctl apply -", 0,
         "1 of 1 done", ""},
        {"quilctl status | grep station | grep -c backup", 0, "1", ""},
        {"quilctl export ls | sed 's/^server = backup/server = none/' | quilctl apply --delete "
         "--dry-run -",
         0, "delete backup server market delete backup server station", ""},
        {"quilctl apply --passwords --dry-run $SNA_PREFIX/share/domains/branch.domain", 0,
         "= (not shown, and not compared)", ""},
        {"printf '[domain]\n[node market]\n[limits]\nmax_lus = 99\n' | quilctl diff -", 1,
         "+ max_lus = 99", ""},
        {"quilctl export nothing", 2, "", "there is no class"},
        {"echo garbage | quilctl apply -", 2, "", "standard input:1: expected a section"},
        {"quilctl diff /none", 2, "", "cannot be read"},
    });
}

/* Two hundred LUs are changed with an editor; three mistakes are in the text. */
TEST_F(Quilctl, AnEveningInAShell) {
    const std::string text =
        place.write("lus.domain", "[domain]\nname = lus\n[node one]\nfq_cp_name = "
                                  "NETA.ONE\ncp_alias = ONE\n[dlc LAN0]\n[port "
                                  "ETH0]\ndlc_name = LAN0\n[ls HOST]\nport_name = "
                                  "ETH0\nadj_cp_type = host\npu_name = "
                                  "HOSTPU\n[lu03 HOSTPU LU001..LU200]\n");
    start_node(text);
    expect_rows({
        {"quilctl export > $SNA_PREFIX/now; sed 's/^.lu03.*/&\\ndescription = Claims/' "
         "$SNA_PREFIX/now > $SNA_PREFIX/new",
         0, "", ""},
        {"for n in 1 2 3; do printf '[port BAD%s]\\ndlc_name = NONE\\n' $n; done >> "
         "$SNA_PREFIX/new",
         0, "", ""},
        {"quilctl apply --dry-run $SNA_PREFIX/new | tail -1", 0,
         "3 to define, 200 to change, 0 to delete", ""},
        {"quilctl apply $SNA_PREFIX/new", 1, "200 of 203 done",
         "define port BAD3 of one: a resource"},
        {"quilctl diff $SNA_PREFIX/new", 1, "define port BAD1 of one", ""},
        {"sed -i 's/NONE/LAN0/' $SNA_PREFIX/new; quilctl apply $SNA_PREFIX/new", 0, "3 of 3 done",
         ""},
        {"quilctl diff --delete $SNA_PREFIX/new", 0, "", ""},
        {"until quilctl list dlc | grep 'LAN0 *active'; do sleep 0.1; done", 0, "LAN0", ""},
        {"for n in 1 2 3; do echo BAD$n; done | quilctl start port -", 0, "", ""},
        {"until [ $(quilctl list port | grep -c 'BAD. *active') = 3 ]; do sleep 0.1; done", 0, "",
         ""},
        {"quilctl apply --delete --dry-run $SNA_PREFIX/now", 0, "which is active and has to be",
         ""},
        {"quilctl apply --delete $SNA_PREFIX/now", 1, "200 of 203 done",
         "it is active; stop it first"},
        {"quilctl apply --delete --stop $SNA_PREFIX/now", 0, "3 of 3 done", ""},
        {"quilctl diff --delete $SNA_PREFIX/now", 0, "", ""},
        {"quilctl history --count 1", 0, "DELETE_PORT port BAD1 OK", ""},
    });
}

TEST_F(Quilctl, LetsOthersLook) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "needs root to be somebody else";
    }
    start_node();
    constexpr uid_t NOBODY = 65534;
    expect_rows({{"quilctl status", 0, "corvid1", ""},
                 {"quilctl delete dlc LAN0", 5, "", "you may look but not change"},
                 {"quilctl history", 5, "", "you may look but not change"}},
                NOBODY);
}

} // namespace sys
