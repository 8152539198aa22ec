#include "nesteditems.h"

#include "fieldtext.h"

#include <algorithm>
#include <cstring>

namespace records {

namespace {

void set_count(const Nested &nested, NB_UCHAR *entry, NB_ULONG count) {
    put_number(entry + nested.count.offset, nested.count.width, count);
}

} // namespace

NB_ULONG item_count(const Nested &nested, const NB_UCHAR *entry) {
    return std::min(get_number(entry + nested.count.offset, nested.count.width), nested.most);
}

const NB_UCHAR *item_at(const Nested &nested, const NB_UCHAR *entry, NB_ULONG number) {
    return number < item_count(nested, entry) ? entry + nested.offset + size_t{number} * nested.size
                                              : nullptr;
}

NB_UCHAR *item_at(const Nested &nested, NB_UCHAR *entry, NB_ULONG number) {
    return const_cast<NB_UCHAR *>(item_at(nested, static_cast<const NB_UCHAR *>(entry), number));
}

NB_UCHAR *append_item(const Nested &nested, NB_UCHAR *entry, const NB_UCHAR *item) {
    const NB_ULONG count = item_count(nested, entry);
    if (count >= nested.most) {
        return nullptr;
    }
    set_count(nested, entry, count + 1);
    NB_UCHAR *added = item_at(nested, entry, count);
    if (item != nullptr) {
        memmove(added, item, nested.size);
    } else {
        memset(added, 0, nested.size);
        set_initial_fields(nested.fields, added);
    }
    return added;
}

bool remove_item(const Nested &nested, NB_UCHAR *entry, NB_ULONG number) {
    NB_UCHAR *item = item_at(nested, entry, number);
    if (item == nullptr) {
        return false;
    }
    const NB_ULONG behind = item_count(nested, entry) - number - 1;
    memmove(item, item + nested.size, size_t{behind} * nested.size);
    memset(item + size_t{behind} * nested.size, 0, nested.size);
    set_count(nested, entry, number + behind);
    return true;
}

std::string item_text(const Nested &nested, const NB_UCHAR *entry, NB_ULONG number,
                      const FieldRow &row) {
    const NB_UCHAR *item = item_at(nested, entry, number);
    return item != nullptr ? format_field(row, item) : "";
}

} // namespace records
