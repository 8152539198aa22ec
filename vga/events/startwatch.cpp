#include "startwatch.h"
#include "messages.h"
#include "outcomes.h"
#include "vgadsutl.h"
#include <list>
#include <unordered_map>

namespace {

constexpr size_t most_watches = 50; /* a start that nothing comes of is forgotten some day */

struct WATCHED {
    VGA_RESOURCE resource; /* good while the handle is */
    NB_ULONG handle;
    bool moved; /* it was seen on its way */
};

struct WATCH {
    VGA_OPERATION operation;
    VGA_OPERABLE kind;
    std::string first, node;
    std::unordered_map<const NB_VOID *, WATCHED> on_their_way;
    NB_ULONG good = 0, failed = 0;
};
std::list<WATCH> watches;

enum class Rest { Good, Failed, Moving, NotBegun };

Rest look_at(const VGA_RESOURCE &resource, VGA_OPERATION operation) {
    const NB_ULONG state = vga_state_of(resource);
    const bool node = resource.kind == VGA_OPERABLE_NODE;
    const NB_ULONG up = node ? NAP_NODE_ACTIVE : NAP_ACTIVE;
    const NB_ULONG down = node ? NAP_NODE_STOPPED : NAP_NOT_ACTIVE;
    if (operation != VGA_START) {
        return state == down ? Rest::Good : state == up ? Rest::NotBegun : Rest::Moving;
    }
    return state == up ? Rest::Good : state == down ? Rest::NotBegun : Rest::Moving;
}

/* Back where it began is where it failed, once it had left. */
Rest look_at(WATCHED &one, VGA_OPERATION operation) {
    const Rest now = look_at(one.resource, operation);
    if (now == Rest::NotBegun && one.moved) {
        return Rest::Failed;
    }
    one.moved = one.moved || now == Rest::Moving;
    return now;
}

/* True when it has come to rest. */
bool settle(WATCH &watch, WATCHED &one) {
    const Rest now = look_at(one, watch.operation);
    watch.good += now == Rest::Good ? 1 : 0;
    watch.failed += now == Rest::Failed ? 1 : 0;
    return now == Rest::Good || now == Rest::Failed;
}

NB_VOID tell(const WATCH &watch) {
    const NB_ULONG total = watch.good + watch.failed;
    const std::string subject = total == 1 ? watch.first : vga_count_in_words(watch.kind, total);
    NB_CHAR text[300];
    if (total == 0 || (total == 1 && watch.failed != 0)) {
        return;
    }
    if (watch.failed == 0) {
        vga_print_msg(text, sizeof(text),
                      watch.operation == VGA_START ? VGA_MSG_OPER_NOW_STARTED
                                                   : VGA_MSG_OPER_NOW_STOPPED,
                      "s", subject.c_str());
    } else {
        vga_print_msg(text, sizeof(text), VGA_MSG_OPER_NOT_ALL_STARTED, "l s l", watch.good,
                      subject.c_str(), watch.failed);
    }
    vga_tell_outcome(watch.node, text); /* each failure was told by itself */
}

bool has_states(VGA_OPERABLE kind) {
    return kind != VGA_OPERABLE_MODE && kind != VGA_OPERABLE_LU62 && kind != VGA_OPERABLE_LU03 &&
           kind != VGA_OPERABLE_NONE;
}

} // namespace

NB_VOID vga_watch_operated(const std::vector<VGA_RESOURCE> &resources, VGA_OPERATION operation) {
    if (resources.empty() || !has_states(resources.front().kind)) {
        return;
    }
    WATCH watch = {.operation = operation,
                   .kind = resources.front().kind,
                   .first = vga_resource_in_words(resources.front()),
                   .node = vga_node_name(vga_node_of(resources.front())),
                   .on_their_way = {}};
    for (const VGA_RESOURCE &resource : resources) {
        WATCHED one = {resource, vga_handle_of(resource), false};
        if (has_states(resource.kind) && !settle(watch, one)) {
            watch.on_their_way[resource.record] = one;
        }
    }
    if (watch.on_their_way.empty()) {
        tell(watch);
        return;
    }
    if (watches.size() == most_watches) {
        watches.pop_front();
    }
    watches.push_back(std::move(watch));
}

NB_VOID vga_watched_follow(const NB_VOID *record, VGA_RECORD_CHANGE what) {
    for (auto at = watches.begin(); at != watches.end();) {
        WATCH &watch = *at;
        const auto found = watch.on_their_way.find(record);
        const bool there = found != watch.on_their_way.end();
        const bool gone = there && (what == VGA_RECORD_GONE ||
                                    nba_validate_handle(found->second.handle) != record);
        if (gone || (there && settle(watch, found->second))) {
            watch.on_their_way.erase(found);
        }
        if (watch.on_their_way.empty()) {
            const WATCH over = std::move(watch);
            at = watches.erase(at);
            tell(over);
        } else {
            at++;
        }
    }
}
