#include "output.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

constexpr size_t ROWS_FOR_WIDTHS = 200;

} // namespace

Output::Output(Form form, std::vector<Column> columns, size_t names)
    : form_(form), columns_(std::move(columns)), names_(names) {}

Output::~Output() {
    if (form_ == Form::Table) {
        settle();
    } else if (form_ == Form::Json) {
        puts(rows_ == 0 ? "[]" : "\n]");
    }
}

void Output::row(std::vector<std::string> values) {
    if (form_ == Form::Json) {
        print_json(values);
    } else if (form_ == Form::Names) {
        std::string line;
        for (size_t at = 0; at < names_; at++) {
            line += (at == 0 ? "" : " ") + (values[at].empty() ? "-" : values[at]);
        }
        puts(line.c_str());
    } else if (widths_.empty()) {
        waiting_.push_back(std::move(values));
        if (waiting_.size() == ROWS_FOR_WIDTHS) {
            settle();
        }
    } else {
        print(values);
    }
    rows_++;
}

void Output::print_json(const std::vector<std::string> &values) {
    nlohmann::ordered_json object;
    for (size_t at = 0; at < values.size(); at++) {
        if (columns_[at].number) {
            object[columns_[at].title] = strtoll(values[at].c_str(), nullptr, 10);
        } else {
            object[columns_[at].title] = values[at];
        }
    }
    const std::string text =
        object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    fputs(rows_ == 0 ? "[\n" : ",\n", stdout);
    fputs(text.c_str(), stdout);
}

void Output::print(const std::vector<std::string> &values) const {
    std::string line;
    for (size_t at = 0; at < values.size(); at++) {
        const std::string &value = values[at];
        const std::string room(widths_[at] > value.size() ? widths_[at] - value.size() : 0, ' ');
        line += (at == 0 ? "" : "  ") + (columns_[at].number ? room + value : value + room);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    puts(line.c_str());
}

void Output::settle() {
    if (!widths_.empty() || waiting_.empty()) {
        return;
    }
    std::vector<std::string> titles;
    for (size_t at = 0; at < columns_.size(); at++) {
        size_t width = columns_[at].title.size();
        for (const std::vector<std::string> &values : waiting_) {
            width = std::max(width, values[at].size());
        }
        widths_.push_back(width);
        titles.push_back(columns_[at].title);
        std::transform(titles.back().begin(), titles.back().end(), titles.back().begin(),
                       [](unsigned char letter) { return static_cast<char>(toupper(letter)); });
    }
    print(titles);
    for (const std::vector<std::string> &values : waiting_) {
        print(values);
    }
    waiting_.clear();
}

} // namespace cli
