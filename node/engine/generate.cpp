#include "generate.h"

#include "nodesettings.h"
#include "nofcopy.h"
#include "nofverbs.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace node {

namespace {

constexpr NB_ULONG MOST = 9999999; /* of one kind in a domain: names have seven digits for them */
constexpr NB_ULONG LUS_OF_PU = 255;

struct CountRow {
    const char *name;
    NB_ULONG least;
    NB_ULONG most;
};

constexpr CountRow count_rows[] = {
    {"nodes", 1, 9999},    {"dlcs", 1, 99999}, {"ports", 1, 99999},    {"ls", 1, MOST},
    {"pus", 1, MOST},      {"lus", 0, MOST},   {"local_lus", 0, MOST}, {"modes", 0, MOST},
    {"partners", 0, MOST}, {"pools", 0, MOST}, {"tps", 0, MOST},       {"cpics", 0, MOST},
    {"users", 0, MOST},
};
static_assert(sizeof count_rows / sizeof count_rows[0] == MAKE_COUNT);

constexpr NB_ULONG UNSET = 0xFFFFFFFF;

NB_ULONG share(NB_ULONG of, NB_ULONG each) {
    return std::max<NB_ULONG>(1, (of + each - 1) / each);
}

/* Counts that are not given follow from those that are. */
void complete(Generated &domain) {
    const auto fill = [&domain](Generator what, NB_ULONG count) {
        NB_ULONG &place = domain.counts[what];
        place = place == UNSET ? count : place;
        return place;
    };
    fill(MAKE_NODES, 1);
    const NB_ULONG lus = fill(MAKE_LUS, 1000);
    const NB_ULONG pus = fill(MAKE_PUS, share(lus, 250));
    const NB_ULONG links = fill(MAKE_LS, pus + 1);
    const NB_ULONG ports = fill(MAKE_PORTS, share(links, 250));
    fill(MAKE_DLCS, share(ports, 8));
    fill(MAKE_LOCAL_LUS, 10);
    fill(MAKE_MODES, 10);
    fill(MAKE_PARTNERS, 20);
    fill(MAKE_POOLS, lus / 1000 + (lus > 0 ? 1 : 0));
    fill(MAKE_TPS, 10);
    fill(MAKE_CPICS, 20);
    fill(MAKE_USERS, 50);
}

bool fits(const Generated &domain, std::string &why) {
    const NB_ULONG needed = share(domain[MAKE_LUS], LUS_OF_PU);
    if (domain[MAKE_PUS] < needed) {
        why = std::to_string(domain[MAKE_LUS]) + " LUs need pus=" + std::to_string(needed) +
              " at least, since a PU has at most 255";
        return false;
    }
    for (NB_UCHAR what = MAKE_LS; what < MAKE_COUNT; what++) {
        if (uint64_t{domain.counts[what]} * domain[MAKE_NODES] > MOST) {
            why = std::to_string(domain[MAKE_NODES]) + " nodes with " + count_rows[what].name +
                  "=" + std::to_string(domain.counts[what]) + " are more than " +
                  std::to_string(MOST) + " in all; take less of one of them";
            return false;
        }
    }
    return true;
}

/* PREFIX and a number that counts from 1, at most 8 characters; all `count` of them have one
 * length, so that they sort as they count. */
std::string name_of(const char *prefix, NB_ULONG number, NB_ULONG count) {
    const size_t digits = std::max<size_t>(5, std::to_string(count).size());
    const std::string text = std::to_string(number);
    return std::string(prefix).substr(0, 8 - digits) + std::string(digits - text.size(), '0') +
           text;
}

std::string node_name(NB_ULONG index) {
    const std::string text = std::to_string(index + 1);
    return "node" + std::string(4 - std::min<size_t>(4, text.size()), '0') + text;
}

std::string cp_name(NB_ULONG index) {
    return "NETA." + name_of("NOD", index + 1, 9999);
}

template <size_t Size> void put_text(NB_UCHAR (&field)[Size], const std::string &text) {
    memset(field, 0, Size);
    memcpy(field, text.data(), std::min(text.size(), Size - 1));
}

/* Makes the resources of one node.  Each kind begins with an entry that has the initial values. */
class Maker {
public:
    using Take = std::function<void(const ClassRow &row, const NB_UCHAR *entry)>;

    Maker(const Generated &domain, NB_ULONG index, const Take &take)
        : domain_(domain), index_(index), take_(take) {}

    void run();

private:
    template <class Record, class Fill> void each(ClassId id, Generator what, Fill fill);
    std::string own(const char *prefix, Generator what, NB_ULONG at) const;
    void links();
    void dlur_pus();
    void lus();
    void sessions();

    const Generated &domain_;
    NB_ULONG index_;
    const Take &take_;
};

/* The name of the node's resource `at`, unique in the domain. */
std::string Maker::own(const char *prefix, Generator what, NB_ULONG at) const {
    const NB_ULONG all = domain_[what] * domain_[MAKE_NODES];
    return name_of(prefix, index_ * domain_[what] + at + 1, all);
}

template <class Record> std::vector<NB_UCHAR> initial_entry(ClassId id) {
    const ClassRow &row = class_row(id);
    std::vector<NB_UCHAR> entry(row.schema->overlay_size());
    set_initial_fields(row.schema->fields, entry.data());
    return entry;
}

template <class Record, class Fill> void Maker::each(ClassId id, Generator what, Fill fill) {
    const ClassRow &row = class_row(id);
    std::vector<NB_UCHAR> entry = initial_entry<Record>(id);
    const auto initial = nap_copy<Record>(entry.data());
    for (NB_ULONG at = 0; at < domain_[what]; at++) {
        Record record = initial;
        if (fill(record, at)) {
            memcpy(entry.data(), &record, sizeof record);
            take_(row, entry.data());
        }
    }
}

/* Link stations make PUs of hosts as long as there are PUs; the others lead to end nodes. */
void Maker::links() {
    each<NAP_LS_DATA>(CLASS_LS, MAKE_LS, [this](NAP_LS_DATA &link, NB_ULONG at) {
        const bool host = at < domain_[MAKE_PUS];
        put_local(link.ls_name, sizeof link.ls_name, name_of("LS", at + 1, domain_[MAKE_LS]));
        put_local(link.def_data.port_name, sizeof link.def_data.port_name,
                  name_of("PRT", at % domain_[MAKE_PORTS] + 1, domain_[MAKE_PORTS]));
        put_text(link.def_data.description,
                 (host ? "Host link " : "Branch office ") + std::to_string(at + 1));
        put_text(link.def_data.dest_address, "4000" + name_of("", at + 1, 10000000) + "0/04");
        if (host) {
            link.def_data.adj_cp_type = NAP_ADJ_HOST;
            put_ebcdic(link.def_data.pu_name, sizeof link.def_data.pu_name,
                       own("PU", MAKE_PUS, at));
        } else {
            link.def_data.adj_cp_type = NAP_ADJ_END_NODE;
            put_ebcdic(link.def_data.adj_cp_name, sizeof link.def_data.adj_cp_name,
                       "NETA." + own("EN", MAKE_LS, at));
        }
        return true;
    });
}

void Maker::dlur_pus() {
    each<NAP_PU_DATA>(CLASS_PU, MAKE_PUS, [this](NAP_PU_DATA &pu, NB_ULONG at) {
        put_ebcdic(pu.pu_name, sizeof pu.pu_name, own("PU", MAKE_PUS, at));
        put_ebcdic(pu.def_data.dlus_name, sizeof pu.def_data.dlus_name, "NETA.HOSTA");
        put_text(pu.def_data.description, "Served through HOSTA");
        return at >= domain_[MAKE_LS]; /* the others come with their links */
    });
}

/* LUs fill their PUs evenly, in the order of the list; pools take some of the first. */
void Maker::lus() {
    constexpr NB_ULONG OF_POOL = 10;
    const NB_ULONG of_pu = share(domain_[MAKE_LUS], domain_[MAKE_PUS]);
    each<NAP_LU_POOL_DATA>(CLASS_LU_POOL, MAKE_POOLS, [this](NAP_LU_POOL_DATA &pool, NB_ULONG at) {
        put_ebcdic(pool.pool_name, sizeof pool.pool_name,
                   name_of("PL", at + 1, domain_[MAKE_POOLS]));
        put_text(pool.description, "Department " + std::to_string(at + 1));
        return true;
    });
    each<NAP_LU03_DATA>(CLASS_LU03, MAKE_LUS, [this, of_pu](NAP_LU03_DATA &lu, NB_ULONG at) {
        const std::string name = own("LU", MAKE_LUS, at);
        put_ebcdic(lu.pu_name, sizeof lu.pu_name, own("PU", MAKE_PUS, at / of_pu));
        put_ebcdic(lu.lu_name, sizeof lu.lu_name, name);
        put_text(lu.def_data.description, "Terminal " + std::to_string(at + 1));
        lu.def_data.nau_address = static_cast<NB_UCHAR>(at % of_pu + 1);
        lu.def_data.lu_model = at % 16 == 15
                                   ? NAP_LU_PRINTER
                                   : static_cast<NB_UCHAR>(NAP_LU_3270_DISPLAY_MODEL_2 + at % 4);
        if (at / OF_POOL < domain_[MAKE_POOLS]) {
            put_ebcdic(lu.def_data.pool_name, sizeof lu.def_data.pool_name,
                       name_of("PL", at / OF_POOL + 1, domain_[MAKE_POOLS]));
        }
        return true;
    });
}

void Maker::sessions() {
    each<NAP_LOCAL_LU_DATA>(
        CLASS_LOCAL_LU, MAKE_LOCAL_LUS, [this](NAP_LOCAL_LU_DATA &lu, NB_ULONG at) {
            const std::string name = own("AP", MAKE_LOCAL_LUS, at);
            put_ebcdic(lu.lu_name, sizeof lu.lu_name, name);
            put_local(lu.def_data.lu_alias, sizeof lu.def_data.lu_alias, name);
            put_text(lu.def_data.description, "Application " + std::to_string(at + 1));
            return true;
        });
    each<NAP_MODE_DEF_DATA>(
        CLASS_MODE_DEF, MAKE_MODES, [this](NAP_MODE_DEF_DATA &mode, NB_ULONG at) {
            put_ebcdic(mode.mode_name, sizeof mode.mode_name,
                       name_of("MD", at + 1, domain_[MAKE_MODES]));
            put_ebcdic(mode.mode_chars.cos_name, sizeof mode.mode_chars.cos_name,
                       at % 2 == 0 ? "#INTER" : "#BATCH");
            put_text(mode.mode_chars.description, "Application mode " + std::to_string(at + 1));
            return true;
        });
    each<NAP_PLU_DEF_DATA>(
        CLASS_PLU_DEF, MAKE_PARTNERS, [this](NAP_PLU_DEF_DATA &plu, NB_ULONG at) {
            const std::string name = own("RM", MAKE_PARTNERS, at);
            put_ebcdic(plu.fqplu_name, sizeof plu.fqplu_name, "NETA." + name);
            put_local(plu.def_data.plu_alias, sizeof plu.def_data.plu_alias, name);
            put_text(plu.def_data.description, "Remote application " + std::to_string(at + 1));
            return true;
        });
    each<NAP_TP_DATA>(CLASS_TP_DEF, MAKE_TPS, [this](NAP_TP_DATA &tp, NB_ULONG at) {
        put_ebcdic(tp.tp_name, sizeof tp.tp_name, name_of("TP", at + 1, domain_[MAKE_TPS]));
        put_text(tp.def_data.description, "Program " + std::to_string(at + 1));
        return true;
    });
}

void Maker::run() {
    each<NAP_DLC_DATA>(CLASS_DLC, MAKE_DLCS, [this](NAP_DLC_DATA &dlc, NB_ULONG at) {
        put_local(dlc.dlc_name, sizeof dlc.dlc_name, name_of("DLC", at + 1, domain_[MAKE_DLCS]));
        put_text(dlc.def_data.description, "Adapter " + std::to_string(at + 1));
        dlc.def_data.card_number = static_cast<NB_UCHAR>(at % 255);
        return true;
    });
    each<NAP_PORT_DATA>(CLASS_PORT, MAKE_PORTS, [this](NAP_PORT_DATA &port, NB_ULONG at) {
        put_local(port.port_name, sizeof port.port_name,
                  name_of("PRT", at + 1, domain_[MAKE_PORTS]));
        put_local(port.def_data.dlc_name, sizeof port.def_data.dlc_name,
                  name_of("DLC", at % domain_[MAKE_DLCS] + 1, domain_[MAKE_DLCS]));
        put_text(port.def_data.description, "Segment " + std::to_string(at + 1));
        return true;
    });
    links();
    dlur_pus();
    lus();
    sessions();
}

/* Users and side information of the domain, as a text would have them. */
void add_own(const Generated &domain, TextNode &own) {
    const auto add = [&own](ClassId id, const NB_VOID *record) {
        const ClassRow &row = class_row(id);
        const auto *bytes = static_cast<const NB_UCHAR *>(record);
        own.resources.push_back(
            {row.schema, {bytes, bytes + row.schema->entry_size}, DEFAULT_BEHAVIOUR, 0});
        own.resources.back().entry.resize(row.schema->overlay_size());
    };
    for (NB_ULONG at = 0; at < domain[MAKE_USERS]; at++) {
        auto user = nap_copy<NAP_USER_DATA>(initial_entry<NAP_USER_DATA>(CLASS_USER).data());
        const std::string number = std::to_string(at + 1);
        put_text(user.user_name, "user" + std::string(7 - number.size(), '0') + number);
        put_text(user.def_data.description, "Employee " + number);
        add(CLASS_USER, &user);
    }
    for (NB_ULONG at = 0; at < domain[MAKE_CPICS]; at++) {
        auto info = nap_copy<NAP_CPIC_DATA>(initial_entry<NAP_CPIC_DATA>(CLASS_CPIC).data());
        put_local(info.sym_dest_name, sizeof info.sym_dest_name,
                  name_of("SD", at + 1, domain[MAKE_CPICS]));
        put_ebcdic(info.def_data.partner_lu_name, sizeof info.def_data.partner_lu_name,
                   "NETA." + name_of("RM", at + 1, MOST));
        put_ebcdic(info.def_data.mode_name, sizeof info.def_data.mode_name, "#INTER");
        put_ebcdic(info.def_data.tp_name, sizeof info.def_data.tp_name, "TP00001");
        put_text(info.def_data.description, "Service " + std::to_string(at + 1));
        add(CLASS_CPIC, &info);
    }
}

} // namespace

bool parse_generated(std::string_view text, Generated &domain, std::string &why) {
    domain.counts.fill(UNSET);
    while (!text.empty()) {
        const size_t end = std::min(text.find(','), text.size());
        const std::string_view part = text.substr(0, end);
        const size_t equals = std::min(part.find('='), part.size());
        const auto *row =
            std::find_if(std::begin(count_rows), std::end(count_rows),
                         [&](const CountRow &one) { return part.substr(0, equals) == one.name; });
        if (row == std::end(count_rows) || equals == part.size()) {
            why = "'" + std::string(part) + "' is no number of a generated domain; known are";
            for (const CountRow &known : count_rows) {
                why += std::string(" ") + known.name + "=N";
            }
            return false;
        }
        NB_ULONG &count = domain.counts[static_cast<size_t>(row - count_rows)];
        const char *last = part.data() + part.size();
        const bool again = count != UNSET;
        const auto parsed = std::from_chars(part.data() + equals + 1, last, count);
        if (again || parsed.ec != std::errc() || parsed.ptr != last || count < row->least ||
            count > row->most) {
            why = "'" + std::string(part) + "': " + row->name +
                  " is given once, as a number from " + std::to_string(row->least) + " to " +
                  std::to_string(row->most);
            return false;
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    complete(domain);
    return fits(domain, why);
}

std::string format_generated(const Generated &domain) {
    std::string text;
    for (size_t what = 0; what < MAKE_COUNT; what++) {
        text += std::string(text.empty() ? "" : ",") + count_rows[what].name + "=" +
                std::to_string(domain.counts[what]);
    }
    return text;
}

DomainText generated_domain(const Generated &domain) {
    DomainText text;
    text.file = "generated";
    put_text(text.facts.name, "generated");
    text.facts.client_server = domain[MAKE_NODES] > 1 ? 1 : 0;
    for (NB_ULONG index = 0; index < domain[MAKE_NODES]; index++) {
        TextNode node;
        node.name = node_name(index);
        if (text.facts.client_server != 0 && index < 2) {
            node.facts.server_flags = index == 0 ? NAP_SERVER_MASTER | NAP_SERVER_CONFIG
                                                 : NAP_SERVER_MASTER | NAP_SERVER_BACKUP;
        }
        text.nodes.push_back(std::move(node));
    }
    add_own(domain, text.own);
    return text;
}

std::vector<NB_UCHAR> generated_node(const Generated &domain, NB_ULONG index) {
    const RecordSet initial;
    constexpr const Settings &row = records::setting("node");
    auto record = nap_copy<NAP_QUERY_NODE_VERB>(initial.image(row));
    const std::string name = cp_name(index);
    put_ebcdic(record.info.fq_cp_name, sizeof record.info.fq_cp_name, name);
    put_local(record.info.cp_alias, sizeof record.info.cp_alias, name.substr(5));
    put_text(record.info.description,
             "Node " + std::to_string(index + 1) + " of " + std::to_string(domain[MAKE_NODES]));
    const auto *bytes = reinterpret_cast<const NB_UCHAR *>(&record);
    return {bytes, bytes + sizeof record};
}

NB_ULONG generated_index(const Generated &domain, const std::string &name) {
    NB_ULONG index = 0;
    while (index < domain[MAKE_NODES] && node_name(index) != name) {
        index++;
    }
    return index;
}

void generate_resources(
    const Generated &domain, NB_ULONG index,
    const std::function<void(const ClassRow &row, const NB_UCHAR *entry)> &take) {
    Maker(domain, index, take).run();
}

} // namespace node
