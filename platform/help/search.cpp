#include "search.h"

#include <algorithm>
#include <cctype>

namespace help {

namespace {

enum Score { in_text = 1, in_heading = 5, in_title = 30 };
constexpr int most_of_one_text = 12; // a long topic is not a better one

bool word_char(char byte) {
    return std::isalnum(static_cast<unsigned char>(byte)) != 0 || (byte & 0x80) != 0;
}

std::string lower(std::string_view text) {
    std::string out(text);
    for (char &byte : out) {
        byte = static_cast<char>(std::tolower(static_cast<unsigned char>(byte)));
    }
    return out;
}

int count(const std::string &text, const std::string &word) {
    int found = 0;
    for (size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
        found += at == 0 || !word_char(text[at - 1]) ? 1 : 0;
    }
    return found;
}

struct Text {
    std::string title, headings, rest;
};

Text text_of(const Topic &topic) {
    Text out;
    out.title = lower(topic.title + " " + topic.id);
    for (const Block &block : topic.blocks) {
        const bool heading = block.kind == Kind::heading || block.kind == Kind::term;
        (heading ? out.headings : out.rest) += " " + lower(plain_text(block));
    }
    return out;
}

/* 0 when a word is missing. */
int score(const Text &text, const std::vector<std::string> &words) {
    int total = 0;
    for (const std::string &word : words) {
        const int points = in_title * std::min(count(text.title, word), 1) +
                           in_heading * std::min(count(text.headings, word), 3) +
                           in_text * std::min(count(text.rest, word), most_of_one_text);
        if (points == 0) {
            return 0;
        }
        total += points;
    }
    return total;
}

} // namespace

std::vector<std::string> query_words(std::string_view query) {
    std::vector<std::string> words;
    std::string word;
    const std::string text = lower(query) + " ";
    for (const char byte : text) {
        const bool inner = !word.empty() && (byte == '.' || byte == '_' || byte == '-');
        if (word_char(byte) || inner) {
            word += byte;
        } else if (!word.empty()) {
            while (!word_char(word.back())) {
                word.pop_back();
            }
            words.push_back(word);
            word.clear();
        }
    }
    return words;
}

std::vector<const Topic *> search(const Volume &volume, std::string_view query) {
    const std::vector<std::string> words = query_words(query);
    std::vector<std::pair<int, const Topic *>> found;
    if (!words.empty()) {
        for (const Topic &topic : volume.topics) {
            if (const int points = score(text_of(topic), words)) {
                found.emplace_back(points, &topic);
            }
        }
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto &left, const auto &right) { return left.first > right.first; });
    std::vector<const Topic *> topics;
    for (const auto &[points, topic] : found) {
        topics.push_back(topic);
    }
    return topics;
}

} // namespace help
