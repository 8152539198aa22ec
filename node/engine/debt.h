/* What a store owes: changes that took place although they could not be written.
 *
 * Stopping, starting and deleting must go on with a full disk, or nobody could make room. Their
 * changes are kept here until the store can be written; a process that is killed before loses
 * them. */
#ifndef DEBT_H
#define DEBT_H

#include "behaviour.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace node {

struct StoreChange;
struct StoreFact;

class Debt {
public:
    /* Copies all; of two changes of one row, or of one fact, the later one counts. */
    void add(const std::vector<StoreChange> &changes, const std::vector<StoreFact> &facts);

    /* To be written; pointers are good until `add` or `clear`. */
    std::vector<StoreChange> changes() const;
    std::vector<StoreFact> facts() const;

    bool empty() const { return rows_.empty() && facts_.empty(); }
    void clear();

private:
    struct Row {
        std::optional<std::string> record; /* none: erased */
        std::optional<records::Behaviour> behaviour;
    };

    std::map<std::pair<std::string, std::string>, Row> rows_; /* by section and key */
    std::map<std::string, std::string> facts_;
};

} // namespace node

#endif
