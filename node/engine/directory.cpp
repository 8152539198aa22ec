/* What the directory has beside definitions: names that were found, which stay while they are used,
 * and names that end nodes register with their network node server. */
#include "engine.h"
#include "keybytes.h"

#include "nofverbs.h"

#include <cstring>

namespace node {

namespace {

constexpr size_t CP_WIDTH = 17;

/* An LU has the network of its control point. */
std::string qualified(const NB_UCHAR *fq_cp_name, const NB_UCHAR *lu_name) {
    const std::string cp = ebcdic_text(fq_cp_name, CP_WIDTH);
    std::string name(CP_WIDTH, ' ');
    put_ebcdic(reinterpret_cast<NB_UCHAR *>(name.data()), CP_WIDTH,
               cp.substr(0, cp.find('.') + 1) + ebcdic_text(lu_name, 8));
    return name;
}

NAP_DIR_DATA entry_for(const NB_UCHAR *fq_cp_name, const NB_UCHAR *name) {
    NAP_DIR_DATA entry = {};
    memcpy(entry.fqcp_name, fq_cp_name, sizeof entry.fqcp_name);
    memcpy(entry.resource_name, name, sizeof entry.resource_name);
    entry.resource_type = memcmp(fq_cp_name, name, CP_WIDTH) == 0 ? NAP_DIR_END_NODE : NAP_DIR_LU;
    return entry;
}

} // namespace

/* What is known already stays as it is. */
void Engine::learn(const NB_UCHAR *fq_cp_name, const NB_UCHAR *name, NB_UCHAR entry_type) {
    NAP_DIR_DATA entry = entry_for(fq_cp_name, name);
    entry.entry_type = entry_type;
    const auto *key = reinterpret_cast<const NB_UCHAR *>(&entry) + KEY_OFFSET;
    NAP_DIR_DATA server = entry_for(fq_cp_name, fq_cp_name);
    server.resource_type = NAP_DIR_NETWORK_NODE;
    if (find(CLASS_DIRECTORY, key) != nullptr ||
        (entry.resource_type == NAP_DIR_END_NODE &&
         find(CLASS_DIRECTORY, reinterpret_cast<const NB_UCHAR *>(&server) + KEY_OFFSET) !=
             nullptr)) {
        return;
    }
    telling_ = true;
    add_derived(CLASS_DIRECTORY, &entry, sizeof entry);
    telling_ = false;
    if (entry_type == NAP_DIR_CACHE) {
        forget_later(CLASS_DIRECTORY, {reinterpret_cast<const char *>(key),
                                       class_row(CLASS_DIRECTORY).schema->key_size()});
    }
}

void Engine::learn_found(const NB_UCHAR *fq_cp_name, const NB_UCHAR *fqlu_name) {
    learn(fq_cp_name, fq_cp_name, NAP_DIR_CACHE);
    learn(fq_cp_name, fqlu_name, NAP_DIR_CACHE);
}

void Engine::learn_registered(const NB_UCHAR *fq_cp_name, const NB_UCHAR *lu_name) {
    learn(fq_cp_name, fq_cp_name, NAP_DIR_REGISTER);
    if (!is_blank(KeyKind::Ebcdic, lu_name, 8)) {
        learn(fq_cp_name, key_of(qualified(fq_cp_name, lu_name)), NAP_DIR_REGISTER);
    }
}

/* Takes away what a control point registered: an LU, or all, unless it can still be talked to. Most
 * links that go down have registered nothing, so that is asked first. */
void Engine::unlearn(const NB_UCHAR *fq_cp_name, const NB_UCHAR *lu_name) {
    const std::string lu = lu_name != nullptr ? qualified(fq_cp_name, lu_name) : "";
    std::vector<Resource *> gone;
    for (Resource *at = tables_[CLASS_DIRECTORY]->first_with(fq_cp_name, CP_WIDTH); at != nullptr;
         at = ResourceTable::next_with(*at, CP_WIDTH)) {
        const auto entry = get<NAP_DIR_DATA>(*at);
        if (at->derived && entry.entry_type == NAP_DIR_REGISTER &&
            (lu.empty() || bytes_of(entry.resource_name) == lu)) {
            gone.push_back(at);
        }
    }
    if (gone.empty() || (lu_name == nullptr && talks_to(fq_cp_name))) {
        return;
    }
    for (Resource *entry : gone) {
        forget(*entry);
    }
}

/* Whether a link to that control point is active, on which control points talk. */
bool Engine::talks_to(const NB_UCHAR *fq_cp_name) const {
    const ResourceTable &links = *tables_[CLASS_LS];
    for (const Resource *at = links.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto link = get<NAP_LS_DATA>(*at);
        if (at->state == NAP_ACTIVE && link.def_data.cp_cp_sess_support != 0 &&
            memcmp(link.det_data.adj_cp_name, fq_cp_name, CP_WIDTH) == 0) {
            return true;
        }
    }
    return false;
}

/* Whether LUs of a control point are known beside itself. */
bool Engine::knows_lus(const Resource &resource) const {
    const auto entry = get<NAP_DIR_DATA>(resource);
    const Resource *first = tables_[CLASS_DIRECTORY]->first_with(entry.fqcp_name, CP_WIDTH);
    return entry.resource_type == NAP_DIR_END_NODE &&
           (first != &resource || ResourceTable::next_with(*first, CP_WIDTH) != nullptr);
}

/* An end node tells its server of its local LUs, as soon as control points talk. */
void Engine::register_lus(const Resource &link) {
    const LinkEnd *end = link_end(link);
    const NAP_QUERY_NODE_VERB own = node_record();
    if (end == nullptr || end->cp.empty() || end->node_type != NAP_NETWORK_NODE ||
        own.info.node_type != NAP_END_NODE || own.directory_register == 0 ||
        get<NAP_LS_DATA>(link).def_data.cp_cp_sess_support == 0) {
        return;
    }
    const ResourceTable &lus = *tables_[CLASS_LOCAL_LU];
    for (const Resource *at = lus.first(); at != nullptr; at = ResourceTable::next(*at)) {
        send_registration(LINK_REGISTER, end->cp, at->entry.get() + KEY_OFFSET);
    }
}

void Engine::register_lu(const NB_UCHAR *lu_name, bool there) {
    for (const auto &[name, end] : link_ends_) {
        const Resource *link = find(CLASS_LS, key_of(name));
        if (link != nullptr && link->state == NAP_ACTIVE && !end.cp.empty() &&
            end.node_type == NAP_NETWORK_NODE && node_record().info.node_type == NAP_END_NODE) {
            send_registration(there ? LINK_REGISTER : LINK_UNREGISTER, end.cp, lu_name);
        }
    }
}

void Engine::send_registration(NB_UCHAR kind, const std::string &cp, const NB_UCHAR *lu_name) {
    LinkNews news = {};
    news.opcode = NAP_LS_INDICATION;
    news.primary_rc = NAP_INDICATION;
    news.kind = kind;
    memcpy(news.from_cp, node_record().info.fq_cp_name, CP_WIDTH);
    memcpy(news.to_cp, cp.data(), CP_WIDTH);
    memcpy(news.from_ls, lu_name, sizeof news.from_ls);
    listener_.link_changed(&news, sizeof news);
}

} // namespace node
