/* Prints every field of every schema, for the scripts of the build: they cannot read C++.  A line a
 * field, its columns separated by tabs:
 *
 *   schema  field  kind  width  low  high  unit  secret  words
 *
 * Schema and field are called as in C++; an item's field stands under "schema.item", one of the
 * settings under "settings.name"; kind and unit, too, have the names of C++.  `words` are
 * WORD:MESSAGE, separated by commas, where MESSAGE is the number of the catalogue's text or 0. */
#include "schemas.h"

#include <cstdio>
#include <string>

namespace {

using records::FieldKind;
using records::FieldRow;
using records::FieldTable;
using records::Schema;

constexpr const char *kinds[] = {
    "NameA", "NameFq",  "NameAny", "NamePartner", "NameLocal", "NameEbcdic", "Text",
    "Bytes", "Address", "Number",  "Flag",        "Word",      "Hex",
};
static_assert(std::size(kinds) == static_cast<size_t>(FieldKind::Hex) + 1);

const char *name_of(records::Unit unit) {
    switch (unit) {
#define NAME(unit)                                                                                 \
    case records::Unit::unit:                                                                      \
        return #unit;
        NAME(Plain)
        NAME(Seconds)
        NAME(Milliseconds)
        NAME(Hundredths)
        NAME(Time)
        NAME(Bytes)
        NAME(Frames)
        NAME(Messages)
        NAME(BitsPerSecond)
        NAME(KilobitsPerSecond)
        NAME(Sessions)
        NAME(Links)
        NAME(Ports)
        NAME(Lus)
        NAME(Users)
#undef NAME
    }
    return "";
}

void list_table(const char *schema, FieldTable table) {
    for (const FieldRow &row : table) {
        printf("%s\t%s\t%s\t%u\t%u\t%u\t%s\t%u\t", schema, row.name,
               kinds[static_cast<size_t>(row.kind)], unsigned{row.width}, row.low, row.high,
               name_of(row.unit), row.has(records::FIELD_SECRET) ? 1U : 0U);
        const char *separator = "";
        for (const records::FieldWord &word : row.words) {
            printf("%s%s:%u", separator, word.text, unsigned{word.message});
            separator = ",";
        }
        printf("\n");
    }
}

void list(const char *name, const Schema &schema) {
    list_table(name, schema.fields);
    list_table(name, schema.status);
    list_table((std::string(name) + ".item").c_str(), schema.nested.fields);
}

} // namespace

int main() {
#define LIST(identifier, schema) list(#schema, records::schema);
    SCHEMAS(LIST)
    list("operation", records::operation); /* of windows only */
    for (const records::Settings &settings : records::settings) {
        const std::string name = std::string("settings.") + settings.name;
        list_table(name.c_str(), settings.fields);
        list_table(name.c_str(), settings.status);
    }
    return ferror(stdout) != 0 ? 1 : 0;
}
