/* What commands print: a table for people, JSON or names for programs. */
#ifndef CLI_OUTPUT_H
#define CLI_OUTPUT_H

#include "words.h"

#include <string>
#include <vector>

namespace cli {

enum class Form { Table, Json, Names };

/* One value of a row. */
struct Column {
    std::string title;
    bool number = false; /* to the right in a table, without quotes in JSON */
};

/* Prints rows as they come, to standard output.  The widths of a table follow from its first rows;
 * names are the first columns that are part of the name. */
class Output {
public:
    Output(Form form, std::vector<Column> columns, size_t names);
    ~Output();
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    void row(std::vector<std::string> values);

private:
    void print(const std::vector<std::string> &values) const;
    void print_json(const std::vector<std::string> &values);
    void settle();

    Form form_;
    std::vector<Column> columns_;
    size_t names_;
    std::vector<size_t> widths_; /* empty: rows are waited for */
    std::vector<std::vector<std::string>> waiting_;
    size_t rows_ = 0;
};

} // namespace cli

#endif
