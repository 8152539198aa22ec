// What an administrator does wrong: the page of help that lists it (topic "mistakes") says what the
// node answers, and here it is done.
#include "node_steps.h"

#include <fstream>
#include <sstream>

using namespace node_test;

namespace {

const std::string TEXT = std::string(SMALL_NODE) + R"(
[limits]
max_lus = 14
max_links = 5
[lu_pool HALL -]
[tn3270_access default -]
+ session 23
display_lu_name = HALL
[access_list PAYERS]
+ user maria
[tp PAYRUN]
list_name = PAYERS
)";

/* Steps, a line each: a word (start, stop, delete) and a title, or a section of a domain text that
 * is defined.  All but the last are to be right. */
struct Mistake {
    const char *what; /* as the page has it */
    const char *steps;
};

const Mistake mistakes[] = {
    {"A link station to the node itself", "[ls A] port_name=ETH0 adj_cp_name=NETA.ONE"},
    {"A link station on a port that is not defined", "[ls A] port_name=NOPORT"},
    {"A link to a host without the name of a PU", "[ls A] port_name=ETH0 adj_cp_type=host"},
    {"A link to a host with the PU of another link",
     "[ls A] port_name=ETH0 adj_cp_type=host pu_name=HOSTPU"},
    {"A link to a host with the PU of a dependent LU server",
     "[ls A] port_name=ETH0 adj_cp_type=host pu_name=DLPU"},
    {"A change of a link station that is active", "[ls NORTH] port_name=ETH0"},
    {"Deleting a link station that is active", "delete ls NORTH"},
    {"Deleting a host link whose PU has LUs", "stop ls HOST\ndelete ls HOST"},
    {"Another PU for a host link whose PU has LUs",
     "stop ls HOST\n[ls HOST] port_name=ETH0 adj_cp_type=host pu_name=OTHER"},
    {"Starting a link station whose port is inactive", "[ls A] port_name=ETH1\nstart ls A"},
    {"Starting a link station that is not defined", "start ls A"},
    {"Starting a link when its port has all that it may have",
     "[port P] dlc_name=LAN0 tot_link_act_lim=1\nstart port P\n[ls A] port_name=P\nstart ls A\n"
     "[ls B] port_name=P\nstart ls B"},
    {"A link station more than the node may have",
     "[ls A] port_name=ETH0\n[ls B] port_name=ETH0\n[ls C] port_name=ETH0"},
    {"A port that keeps more places than it has",
     "[port P] dlc_name=LAN0 tot_link_act_lim=3 inb_link_act_lim=2 out_link_act_lim=2"},
    {"A port on a DLC that is not defined", "[port P] dlc_name=NODLC"},
    {"A change of a port that is active", "[port ETH0] dlc_name=LAN0"},
    {"Deleting a port that has link stations", "stop port ETH0\ndelete port ETH0"},
    {"Deleting a DLC that has ports", "stop dlc LAN0\ndelete dlc LAN0"},
    {"Starting a port whose DLC is inactive", "stop dlc LAN0\nstart port ETH0"},
    {"Starting anything while the node is stopped", "stop node\nstart dlc LAN0"},
    {"Starting the node while it is stopping", "stop node now\nstart node"},
    {"A port in a connection network of another medium",
     "[connection_network NETA.CN] dlc_type=ip\n[cn_port NETA.CN ETH0]"},
    {"A port in a connection network that is not defined", "[cn_port NETA.CN ETH0]"},
    {"Another medium for a connection network that has ports",
     "[connection_network NETA.CN]\n[cn_port NETA.CN ETH0]\n"
     "[connection_network NETA.CN] dlc_type=ip"},
    {"A served PU without its dependent LU server", "[pu P]"},
    {"A served PU with the name of a PU that has a link", "[pu HOSTPU] dlus_name=NETA.HOSTA"},
    {"Starting a PU whose link is inactive", "stop ls HOST\nstart pu HOSTPU"},
    {"Deleting a served PU that has LUs", "stop pu DLPU\ndelete pu DLPU"},
    {"Deleting a PU that has a link", "stop ls HOST\ndelete pu HOSTPU"},
    {"A range of a template that ends before it begins",
     "[dspu_template T]\n+ range HALL\nmin_nau=9\nmax_nau=3"},
    {"An LU on a PU that is not defined", "[lu03 NOPU LUX]"},
    {"An LU with the name of an LU of another PU", "[lu03 DLPU LU01] nau_address=9"},
    {"An LU with the name of a local LU", "[lu03 DLPU PAYLU] nau_address=9"},
    {"Two LUs of a PU with one address", "[lu03 HOSTPU LUX] nau_address=2"},
    {"A change of an LU that somebody uses", "[lu03 HOSTPU LU06] nau_address=10"},
    {"Deleting an LU that somebody uses", "delete lu03 HOSTPU LU06"},
    {"An LU more than the node may have",
     "[lu03 DLPU LUA] nau_address=21\n[lu03 DLPU LUB] nau_address=22\n"
     "[lu03 DLPU LUC] nau_address=23\n[lu03 DLPU LUD] nau_address=24"},
    {"An LU that is not defined in a pool", "[lu_pool HALL LUX]"},
    {"Deleting a pool that TN3270 clients use", "delete lu_pool HALL -"},
    {"A local LU with the name of the control point", "[local_lu ONE] lu_alias=X"},
    {"A local LU with the alias of another", "[local_lu LUX] lu_alias=Payroll"},
    {"A dependent local LU without an address", "[local_lu LUX] lu_alias=X pu_name=HOSTPU"},
    {"Deleting a local LU that has sessions", "delete local_lu PAYLU"},
    {"A mode with more sessions than can be negotiated",
     "[mode M] cos_name=#INTER max_neg_sess_lim=8 plu_mode_session_limit=9"},
    {"A mode with more contention winners than sessions",
     "[mode M] cos_name=#INTER plu_mode_session_limit=4 min_conwin_src=5"},
    {"A mode with a class of service that is not defined", "[mode M] cos_name=NOCOS"},
    {"Deleting a mode that comes with SNA", "delete mode #INTER"},
    {"Deleting a mode that is in use", "delete mode PAYMODE"},
    {"Deleting a class of service that comes with SNA", "delete cos #INTER"},
    {"A partner LU with the alias of another", "[partner_lu NETA.OTHER] plu_alias=LEDGER"},
    {"An LU in the directory of a control point that nobody knows",
     "[directory NETA.NOCP NETA.LUX lu]"},
    {"Deleting a control point whose LUs are in the directory",
     "delete directory NETA.NORTH NETA.NORTH network_node"},
    {"A route over a link station that is not defined",
     "[ls_routing PAYLU NETA.LEDGER] ls_name=NOLINK"},
    {"A TN3270 client with an LU that is not defined",
     "[tn3270_access ip 10.1.1.1]\n+ session 23\ndisplay_lu_name=NOLU"},
    {"Two sessions of a TN3270 client on one port",
     "[tn3270_access ip 10.1.1.1]\n+ session 23\n+ session 23"},
    {"A program that lets in by a list, without one", "[tp T] security_access=yes"},
    {"Deleting an access list that a program uses", "delete access_list PAYERS"},
    {"A password without characters", "[userid_password MARIA]"},
};

/* What the page calls the codes: the words of details of a refusal. */
const std::pair<const char *, Codes> words[] = {
    {"a name is not allowed", parameter(NAP_INVALID_NAME)},
    {"a value is not allowed", parameter(NAP_INVALID_VALUE)},
    {"there is no resource of this name", parameter(NAP_UNKNOWN_RESOURCE)},
    {"what it is to belong to is not defined", parameter(NAP_UNKNOWN_OWNER)},
    {"another resource has this name", parameter(NAP_DUPLICATE_NAME)},
    {"the node is busy", state(NAP_NODE_BUSY)},
    {"it is active", state(NAP_RESOURCE_ACTIVE)},
    {"what it belongs to is not active", state(NAP_RESOURCE_INACTIVE)},
    {"other resources refer to it", state(NAP_IN_USE)},
    {"the node is not active", state(NAP_NODE_NOT_ACTIVE)},
    {"its port has as many active links as it may have", state(NAP_PORT_LIMIT)},
    {"the node has as many LUs as it may have", state(NAP_LU_LIMIT)},
    {"the node has as many link stations as it may have", state(NAP_LINK_LIMIT)},
};

/* The page's rows: what was done, and the codes of the words that stand first in the answer. */
std::map<std::string, Codes> page() {
    std::map<std::string, Codes> rows;
    std::ifstream file(SAMPLE_DOMAINS "/../../resources/help/70-messages.hlp");
    bool inside = false;
    for (std::string line; std::getline(file, line);) {
        inside = line.rfind("== ", 0) == 0 ? line.rfind("== mistakes:", 0) == 0 : inside;
        const size_t between = line.find(" :: ");
        if (!inside || line.rfind(": ", 0) != 0 || between == std::string::npos) {
            continue;
        }
        const std::string answer = line.substr(between + 4);
        Codes &codes = rows[line.substr(2, between - 2)];
        for (const auto &[text, means] : words) {
            codes = strncasecmp(answer.c_str(), text, strlen(text)) == 0 ? means : codes;
        }
    }
    return rows;
}

class Administrator {
public:
    Administrator() {
        rig_.load(TEXT);
        rig_.pass(8000);
    }

    /* The codes of the last step. */
    Codes take(const std::string &steps) {
        std::istringstream lines(steps);
        std::string line, section;
        Codes codes = OK_CODES;
        const auto next = [&](const std::string &step) {
            EXPECT_EQ(codes, OK_CODES) << "before " << step;
            codes = step.empty() ? codes : one(step);
        };
        while (std::getline(lines, line)) {
            const bool more = line[0] == '+' || (line[0] != '[' && line.find('=') != line.npos);
            if (!more && !section.empty()) {
                next(std::exchange(section, ""));
            }
            section += (section.empty() ? "" : "\n") + line;
        }
        next(section);
        return codes;
    }

private:
    Codes one(const std::string &step) {
        if (step[0] == '[') {
            const Codes codes = define_text(rig_, step);
            rig_.pass(1500);
            return codes;
        }
        const std::string verb = step.substr(0, step.find(' '));
        const std::string title = step.substr(verb.size() + 1);
        if (title.rfind("node", 0) == 0) {
            const Codes codes = rig_.by_key(verb == "start" ? NAP_INIT_NODE : NAP_STOP_NODE, "");
            rig_.pass(title == "node now" ? 1 : 3000);
            return codes;
        }
        const Codes codes = verb_text(rig_, verb, title);
        rig_.pass(1500);
        return codes;
    }

    Rig rig_;
};

TEST(Mistakes, AreAnsweredAsTheHelpSays) {
    std::map<std::string, Codes> rows = page();
    EXPECT_GE(rows.size(), 50U);
    for (const Mistake &mistake : mistakes) {
        SCOPED_TRACE(mistake.what);
        ASSERT_EQ(rows.count(mistake.what), 1U) << "the page does not have it";
        EXPECT_EQ(Administrator().take(mistake.steps), rows[mistake.what]);
        rows.erase(mistake.what);
    }
    for (const auto &row : rows) {
        ADD_FAILURE() << "the page says more: " << row.first;
    }
}

} // namespace
