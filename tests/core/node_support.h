/* For the node software's unit tests: an engine with a clock that the test moves, and short ways to
 * issue verbs and read lists. */
#ifndef NODE_SUPPORT_H
#define NODE_SUPPORT_H

#include "engine.h"
#include "nofverbs.h"

#include <csignal>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace node_test {

using Codes = std::pair<unsigned, unsigned>;

constexpr Codes OK_CODES = {NAP_OK, 0};
inline Codes parameter(unsigned secondary) {
    return {NAP_PARAMETER_CHECK, secondary};
}
inline Codes state(unsigned secondary) {
    return {NAP_STATE_CHECK, secondary};
}

/* A folder of its own, removed at the end. */
class Folder {
public:
    Folder() {
        char name[] = "/tmp/snanode-test-XXXXXX";
        path_ = mkdtemp(name);
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    std::string file(const std::string &name) const { return path_ + "/" + name; }
    const std::string &path() const { return path_; }

private:
    std::string path_;
};

/* While it lives, no file of this process can grow. */
class FullDisk {
public:
    FullDisk() {
        signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit none = {1, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }

private:
    rlimit before_ = {};
};

class Recorder final : public node::EngineListener {
public:
    void indicate(const NB_VOID *block, size_t length) override {
        NAP_VCB header;
        memcpy(&header, block, sizeof header);
        EXPECT_EQ(header.primary_rc, NAP_INDICATION);
        if (header.opcode == NAP_QUERY_NODE) {
            node_changes++;
            return;
        }
        NAP_RESOURCE_INDICATION one;
        ASSERT_EQ(length, sizeof one);
        memcpy(&one, block, sizeof one);
        all.push_back(one);
    }
    void link_changed(const NB_VOID *block, size_t length) override {
        node::LinkNews one;
        ASSERT_EQ(length, sizeof one);
        memcpy(&one, block, sizeof one);
        links.push_back(one);
    }

    /* The states that were reported of one resource, in order. */
    std::vector<int> states(NB_USHORT opcode, const std::string &local_key) const {
        std::vector<int> found;
        for (const NAP_RESOURCE_INDICATION &one : all) {
            if (one.opcode == opcode && node::local_text(one.key, 8) == local_key) {
                found.push_back(one.state);
            }
        }
        return found;
    }

    std::vector<NAP_RESOURCE_INDICATION> all;
    std::vector<node::LinkNews> links;
    int node_changes = 0;
};

struct List {
    Codes codes;
    unsigned count = 0;
    unsigned total = 0;
    std::vector<std::string> entries; /* whole, as bytes */

    /* The 8-byte names at an offset, as local text. */
    std::vector<std::string> names(size_t offset = 2, bool ebcdic = false) const {
        std::vector<std::string> found;
        for (const std::string &entry : entries) {
            const auto *bytes = reinterpret_cast<const NB_UCHAR *>(entry.data()) + offset;
            found.push_back(ebcdic ? node::ebcdic_text(bytes, 8) : node::local_text(bytes, 8));
        }
        return found;
    }
};

class Rig {
public:
    explicit Rig(node::Store *store = nullptr, node::Scope scope = node::Scope::Node)
        : timers(clock), engine(store, timers, clock, heard, scope) {}

    /* Loads the only node of a text and expects it to be good. */
    void load(const std::string &text) {
        node::DomainText domain = node::parse_domain_text("test", text);
        if (domain.errors.empty()) {
            engine.load_text(domain.nodes.at(0), domain);
        }
        for (const std::string &error : domain.errors) {
            ADD_FAILURE() << error;
        }
        engine.begin();
    }

    /* Lets time pass, and everything in it happen in its order. */
    void pass(uint64_t ms) {
        for (; ms > 0; ms--) {
            clock.advance(1);
            timers.run_due();
        }
    }

    template <class Block> Codes issue(Block &block) {
        node::Answer answer;
        engine.execute(&block, sizeof block, answer);
        EXPECT_EQ(answer.block.size(), sizeof block);
        memcpy(&block, answer.block.data(), sizeof block);
        return {block.primary_rc, block.secondary_rc};
    }

    Codes by_key(NB_USHORT opcode, const std::string &key, NB_UCHAR stop_type = 0) {
        NAP_NAME_VERB verb = {};
        verb.opcode = opcode;
        memcpy(verb.key, key.data(), key.size());
        verb.stop_type = stop_type;
        return issue(verb);
    }

    List list(NB_USHORT opcode, NB_UCHAR options = NAP_FIRST_IN_LIST | NAP_DETAIL,
              const std::string &key = "", unsigned owner_length = 0, unsigned count = 0,
              unsigned size = 65536) {
        NAP_QUERY_LIST query = {};
        node::Answer answer;
        List result;
        query.opcode = opcode;
        query.buf_size = size;
        query.num_entries = static_cast<NB_USHORT>(count);
        query.list_options = options;
        query.owner_length = static_cast<NB_USHORT>(owner_length);
        memcpy(query.key, key.data(), key.size());
        engine.execute(&query, sizeof query, answer);
        memcpy(&query, answer.block.data(), sizeof query);
        result.codes = {query.primary_rc, query.secondary_rc};
        result.count = query.num_entries;
        result.total = query.total_num_entries;
        for (size_t at = 0; at < answer.data.size();) {
            NB_USHORT length = 0;
            memcpy(&length, answer.data.data() + at, sizeof length);
            if (length < 4 || length % 4 != 0 || at + length > answer.data.size()) {
                ADD_FAILURE() << "entry length " << length;
                break;
            }
            result.entries.emplace_back(reinterpret_cast<const char *>(answer.data.data()) + at,
                                        length);
            at += length;
        }
        if (result.codes == OK_CODES) {
            EXPECT_EQ(result.count, result.entries.size());
            EXPECT_EQ(query.total_buf_size, answer.data.size());
        }
        return result;
    }

    /* Reads a whole list in buffers of `size` bytes, as a client continues one. */
    List read_all(NB_USHORT opcode, size_t key_size, unsigned size) {
        List all = list(opcode, NAP_FIRST_IN_LIST | NAP_DETAIL, "", 0, 0, size);
        for (List part = all; part.codes == OK_CODES && part.count < part.total;) {
            const std::string last = all.entries.back().substr(2, key_size);
            const unsigned left = part.total - part.count;
            part = list(opcode, NAP_LIST_FROM_NEXT | NAP_DETAIL, last, 0, 0, size);
            EXPECT_EQ(part.total, left);
            if (part.count == 0) {
                break;
            }
            all.entries.insert(all.entries.end(), part.entries.begin(), part.entries.end());
        }
        return all;
    }

    template <class Record> Record entry(node::ClassId id, const std::string &key) {
        Record record = {};
        const node::Resource *found =
            engine.find(id, reinterpret_cast<const NB_UCHAR *>(key.data()));
        if (found == nullptr) {
            ADD_FAILURE() << "there is no " << key;
            return record;
        }
        return node::Engine::get<Record>(*found);
    }

    node::ManualClock clock;
    node::TimerQueue timers;
    Recorder heard;
    node::Engine engine;
};

inline std::string local8(std::string name) {
    name.resize(8, ' ');
    return name;
}

inline std::string ebcdic(const std::string &text, size_t width = 8) {
    std::string name(width, ' ');
    node::put_ebcdic(reinterpret_cast<NB_UCHAR *>(name.data()), width, text);
    return name;
}

template <size_t Size> void put(NB_UCHAR (&field)[Size], const std::string &bytes) {
    memcpy(field, bytes.data(), std::min(Size, bytes.size()));
}

inline NAP_DEFINE_DLC_VERB dlc(const std::string &name) {
    NAP_DEFINE_DLC_VERB verb = {};
    verb.opcode = NAP_DEFINE_DLC;
    put(verb.dlc_name, local8(name));
    verb.def_data.dlc_type = NAP_DLC_ETHERNET;
    return verb;
}

inline NAP_DEFINE_DIR_VERB directory(const std::string &cp, const std::string &name,
                                     NB_USHORT type) {
    NAP_DEFINE_DIR_VERB verb = {};
    verb.opcode = NAP_DEFINE_DIRECTORY_ENTRY;
    put(verb.fqcp_name, ebcdic(cp, 17));
    put(verb.resource_name, ebcdic(name, 17));
    verb.resource_type = type;
    return verb;
}

/* Every list that has entries, by its verb; the log is of one process only. */
using Lists = std::map<NB_USHORT, std::vector<std::string>>;

inline Lists all_lists(Rig &rig) {
    Lists lists;
    for (const node::Schema *schema : records::all_schemas) {
        for (const node::ListRow &row : schema->lists) {
            const List list = row.list != 0 ? rig.list(row.list) : List();
            if (!list.entries.empty() && row.list != NAP_QUERY_NODE_LOG) {
                lists[row.list] = list.entries;
            }
        }
    }
    return lists;
}

constexpr const char *SMALL_NODE = R"(
[domain]
name = small
[node one]
fq_cp_name = NETA.ONE
cp_alias = ONE
[dlc LAN0]
[port ETH0]
dlc_name = LAN0
[port ETH1]
dlc_name = LAN0
initially_active = no
[ls HOST]
port_name = ETH0
adj_cp_type = host
pu_name = HOSTPU
up_ms = 500
[ls NORTH]
port_name = ETH0
adj_cp_type = network_node
adj_cp_name = NETA.NORTH
cp_cp_sess_support = yes
up_ms = 800
[ls DARK]
port_name = ETH0
reachable = no
react_timer = 10
react_retries = 2
up_ms = 100
[pu DLPU]
dlus_name = NETA.HOSTA
[lu03 HOSTPU LU01..LU05]
nau_address = 2
[lu03 HOSTPU LU06]
nau_address = 10
user = maria
application = emulator
[lu03 DLPU DL01..DL03]
[local_lu PAYLU]
lu_alias = Payroll
[local_lu DEPLU]
lu_alias = DEP
pu_name = HOSTPU
nau_address = 50
[partner_lu NETA.LEDGER]
plu_alias = LEDGER
[mode PAYMODE]
cos_name = #INTER
[mode_in_use Payroll PAYMODE NETA.LEDGER]
fq_cp_name = NETA.NORTH
sessions = 3
[directory NETA.NORTH NETA.NORTH network_node]
[directory NETA.NORTH NETA.LEDGER lu]
)";

} // namespace node_test

#endif
