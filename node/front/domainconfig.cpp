#include "domainconfig.h"

#include "frames.h"
#include "nbbase.h"
#include "nbproblem.h"
#include "nodeprocess.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "storefiles.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <filesystem>

namespace node {

namespace {

constexpr const ListRow &all_nodes = records::domain_node.lists[0];
constexpr const ListRow &network_nodes = records::domain_server.lists[0];
constexpr ClassRow node_row = {.schema = &records::domain_node};
constexpr size_t node_size = records::domain_node.overlay_size();

constexpr NB_ULONG MASTER = NAP_SERVER_MASTER | NAP_SERVER_CONFIG;
constexpr NB_ULONG BACKUP = NAP_SERVER_MASTER | NAP_SERVER_BACKUP;

std::unique_ptr<NB_UCHAR[]> entry_of(const NAP_NODE_ALL_DATA &record) {
    auto bytes = std::make_unique<NB_UCHAR[]>(node_size);
    memcpy(bytes.get(), &record, sizeof record);
    return bytes;
}

std::string fact_of(const std::string &node) {
    return "server_flags " + node;
}

std::string known_fact_of(const std::string &node) {
    return "loaded node " + node;
}

std::string name_of(const NAP_NODE_ALL_DATA &record) {
    return local_text(record.node_name, sizeof record.node_name);
}

/* The store of a node, "" when there is none in the folder. */
std::string any_node_store(const std::string &folder) {
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename();
        if (name.rfind(NODE_STORE, 0) == 0 && entry.path().extension() == ".db" &&
            !is_empty_file(entry.path())) {
            return name;
        }
    }
    return "";
}

} // namespace

bool open_domain_store(Store &store, const std::string &folder, const std::string &name, bool fresh,
                       std::string &why) {
    const std::string file = folder + "/" + DOMAIN_STORE;
    const std::string of_node = fresh ? "" : any_node_store(folder);
    if (!of_node.empty() && is_empty_file(file)) {
        why = file + " is missing or empty, but " + of_node +
              " is there; take one back with --restore, "
              "or start with --fresh to begin the domain anew";
        return false;
    }
    if (!store.open(file, why)) {
        return false;
    }
    if (fresh) {
        store.forget();
    }
    return store.belongs_to(name, why);
}

Domain::Domain(const DomainText &text, Store &store, TimerQueue &timers, const Clock &clock)
    : text_(text), store_(store), clock_(clock), nodes_(node_row),
      engine_(&store, timers, clock, nobody_, Scope::Domain) {
    for (const TextNode &node : text_.nodes) {
        NAP_NODE_ALL_DATA record = {};
        record.overlay_size = NB_USHORT{node_size};
        memcpy(record.node_name, node.name.data(), node.name.size());
        record.info.server_flags = node.facts.server_flags | flags_of_single_node();
        nodes_.insert(entry_of(record), DEFAULT_BEHAVIOUR);
    }
    show_servers();
}

/* A single node with a domain's configuration is its own server. */
NB_ULONG Domain::flags_of_single_node() const {
    const bool single = text_.facts.client_server == 0 && text_.facts.domain_config != 0;
    return single ? MASTER : 0;
}

bool Domain::load(std::string &why) {
    if (engine_.load_store(why)) {
        return read_facts(why);
    }
    if (!why.empty() || engine_.load_text(text_.own, text_)) {
        return why.empty();
    }
    why = text_.errors.empty() ? "the domain could not be loaded" : text_.errors.front();
    return false;
}

/* What was changed about the nodes since the text was read. */
bool Domain::read_facts(std::string &why) {
    for (Resource *at = nodes_.first(); at != nullptr; at = ResourceTable::next(*at)) {
        auto record = Engine::get<NAP_NODE_ALL_DATA>(*at);
        const std::string name = name_of(record);
        std::string flags;
        std::string known;
        if (!store_.fact(fact_of(name), flags) || !store_.fact(known_fact_of(name), known)) {
            why = store_.unreadable();
            return false;
        }
        NB_ULONG stored = record.info.server_flags;
        std::from_chars(flags.data(), flags.data() + flags.size(), stored);
        record.info.server_flags = stored | flags_of_single_node();
        Engine::put(*at, record);
        if (known == "1") {
            known_.insert(name);
        }
    }
    show_servers();
    keep_one_master();
    return true;
}

void Domain::came_up(const std::string &node) {
    if (!is_known(node) && store_.set_fact(known_fact_of(node), "1")) {
        known_.insert(node);
    }
}

Resource *Domain::find(const std::string &node) const {
    NB_UCHAR key[NAP_MAX_KEY] = {};
    memcpy(key, node.data(), std::min(node.size(), sizeof key));
    return nodes_.find(key);
}

NAP_NODE_INFO Domain::info(const std::string &node) const {
    const Resource *resource = find(node);
    return resource != nullptr ? Engine::get<NAP_NODE_ALL_DATA>(*resource).info : NAP_NODE_INFO{};
}

NB_ULONG Domain::server_flags(const std::string &node) const {
    return info(node).server_flags;
}

std::string Domain::master() const {
    for (Resource *at = nodes_.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto record = Engine::get<NAP_NODE_ALL_DATA>(*at);
        if ((record.info.server_flags & NAP_SERVER_CONFIG) != 0) {
            return name_of(record);
        }
    }
    return "";
}

void Domain::update(const std::string &node, const NAP_NODE_INFO &info) {
    Resource *resource = find(node);
    if (resource == nullptr) {
        return;
    }
    auto record = Engine::get<NAP_NODE_ALL_DATA>(*resource);
    const NB_ULONG flags = record.info.server_flags;
    record.info = info;
    record.info.server_flags = flags;
    up_since_ms_[node] = clock_.now_ms() - uint64_t{info.up_time} * 10;
    Engine::put(*resource, record);
    show_servers();
}

void Domain::lost(const std::string &node) {
    NAP_NODE_INFO gone = info(node);
    gone.node_state = NAP_NODE_STOPPED;
    gone.up_time = 0;
    update(node, gone);
}

/* The network file's list is the part of the nodes that are servers. */
void Domain::show_servers() {
    servers_ = std::make_unique<ResourceTable>(node_row);
    for (Resource *at = nodes_.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto record = Engine::get<NAP_NODE_ALL_DATA>(*at);
        if (record.info.server_flags != 0) {
            servers_->insert(entry_of(record), DEFAULT_BEHAVIOUR);
        }
    }
}

void Domain::refresh_up_times() {
    for (Resource *at = nodes_.first(); at != nullptr; at = ResourceTable::next(*at)) {
        auto record = Engine::get<NAP_NODE_ALL_DATA>(*at);
        if (record.info.node_state == NAP_NODE_ACTIVE) {
            const uint64_t since = up_since_ms_[name_of(record)];
            record.info.up_time = static_cast<NB_ULONG>((clock_.now_ms() - since) / 10);
            Engine::put(*at, record);
        }
    }
}

Result Domain::query(Answer &answer) {
    auto query = nap_copy<NAP_QUERY_LIST>(answer.block.data());
    Result result;
    if (query.opcode == NAP_QUERY_NODE_ALL) {
        refresh_up_times();
        result = nodes_.list(all_nodes, query, answer.data);
    } else {
        result = servers_->list(network_nodes, query, answer.data);
    }
    memcpy(answer.block.data(), &query, sizeof query);
    return result;
}

Result Domain::change_backup(const Answer &answer, bool add, std::string &changed) {
    auto verb = nap_copy<NAP_NAME_VERB>(answer.block.data());
    Resource *resource = nodes_.find(verb.key);
    if (resource == nullptr) {
        return bad_parameter(NAP_UNKNOWN_RESOURCE);
    }
    auto record = Engine::get<NAP_NODE_ALL_DATA>(*resource);
    const NB_ULONG flags = record.info.server_flags;
    if (add == (flags != 0)) {
        return bad_parameter(add ? NAP_DUPLICATE_NAME : NAP_UNKNOWN_RESOURCE);
    }
    if (!add && servers_->count() == 1) {
        return bad_state(NAP_LAST_BACKUP);
    }
    if (!add && (flags & NAP_SERVER_CONFIG) != 0) {
        return bad_state(NAP_IN_USE);
    }
    const Result result = set_roles({{resource, add ? BACKUP : 0}}, Engine::IfFull::Refuse);
    changed = result.ok() ? name_of(record) : "";
    return result;
}

/* All of them, or none: a domain has one master at any time. */
Result Domain::set_roles(const Roles &roles, Engine::IfFull if_full) {
    std::vector<StoreFact> facts;
    for (const auto &[node, flags] : roles) {
        facts.push_back(
            {fact_of(name_of(Engine::get<NAP_NODE_ALL_DATA>(*node))), std::to_string(flags)});
    }
    const Result result = engine_.remember({}, facts, if_full);
    if (!result.ok()) {
        return result;
    }
    for (const auto &[node, flags] : roles) {
        auto record = Engine::get<NAP_NODE_ALL_DATA>(*node);
        record.info.server_flags = flags;
        Engine::put(*node, record);
    }
    show_servers();
    return result;
}

std::string Domain::take_over(const std::string &gone,
                              const std::function<bool(const std::string &)> &runs) {
    Resource *old = find(gone);
    if (old == nullptr || (server_flags(gone) & NAP_SERVER_CONFIG) == 0) {
        return "";
    }
    for (Resource *at = nodes_.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto record = Engine::get<NAP_NODE_ALL_DATA>(*at);
        const bool backup = (record.info.server_flags & NAP_SERVER_BACKUP) != 0;
        if (at != old && backup && runs(name_of(record))) {
            set_roles({{at, MASTER}, {old, BACKUP}}, Engine::IfFull::Owe);
            return name_of(record);
        }
    }
    return "";
}

/* An earlier version wrote the two halves of a takeover one after the other. */
void Domain::keep_one_master() {
    std::vector<Resource *> masters;
    Resource *heir = nullptr;
    for (Resource *at = nodes_.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const NB_ULONG flags = Engine::get<NAP_NODE_ALL_DATA>(*at).info.server_flags;
        if ((flags & NAP_SERVER_CONFIG) != 0) {
            masters.push_back(at);
        } else if ((flags & NAP_SERVER_BACKUP) != 0 && heir == nullptr) {
            heir = at;
        }
    }
    if (text_.facts.client_server == 0 || text_.facts.domain_config == 0 || masters.size() == 1) {
        return;
    }
    heir = !masters.empty() ? masters.front() : heir;
    if (heir == nullptr) {
        return; /* a domain that never had a server */
    }
    Roles roles = {{heir, MASTER}};
    for (Resource *other : masters) {
        if (other != heir) {
            roles.push_back({other, BACKUP});
        }
    }
    nba_pd_print_problem(NB_PD_ROLES, 1, "l s", static_cast<NB_ULONG>(masters.size()),
                         name_of(Engine::get<NAP_NODE_ALL_DATA>(*heir)).c_str());
    set_roles(roles, Engine::IfFull::Owe);
}

/* The central logger is a node of the domain, or none. */
bool Domain::is_known_logger(const Answer &answer) const {
    auto verb = nap_copy<NAP_QUERY_LOGGING_VERB>(answer.block.data());
    const std::string name = local_text(verb.node_name, sizeof verb.node_name);
    return name.empty() || find(name) != nullptr;
}

Result Domain::dispatch(Answer &answer, std::string &changed) {
    const NB_USHORT opcode = block_opcode(answer.block);
    if (opcode == NAP_QUERY_NODE_ALL || opcode == NAP_QUERY_SNA_NET) {
        return query(answer);
    }
    if (opcode == NAP_ADD_BACKUP || opcode == NAP_DELETE_BACKUP) {
        return change_backup(answer, opcode == NAP_ADD_BACKUP, changed);
    }
    if (opcode == NAP_SET_CENTRAL_LOGGER && !is_known_logger(answer)) {
        return bad_parameter(NAP_UNKNOWN_RESOURCE);
    }
    const std::vector<NB_UCHAR> block = answer.block;
    engine_.execute(block.data(), block.size(), answer);
    auto header = nap_copy<NAP_VCB>(answer.block.data());
    return {header.primary_rc, header.secondary_rc};
}

void Domain::execute(const NB_VOID *block, size_t length, Answer &answer, std::string &changed) {
    const auto *bytes = static_cast<const NB_UCHAR *>(block);
    answer.block.assign(bytes, bytes + length);
    answer.data.clear();
    answer.changes.clear();
    changed.clear();
    Result result = check_block(bytes, length);
    if (result.ok()) {
        result = dispatch(answer, changed);
    }
    set_result(answer.block, result);
    if (!result.ok()) {
        answer.data.clear();
    }
}

} // namespace node
