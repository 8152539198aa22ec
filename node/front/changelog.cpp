#include "changelog.h"

#include "changewords.h"
#include "nbproblem.h"
#include "nofverbs.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <iterator>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace node {

namespace {

constexpr NB_ULONG NO_LINE = 0xFFFFFFFF;
constexpr NB_ULONG MOST_MISSING = 100000; /* a number further on than this is damaged itself */
constexpr size_t PARTS = 11;
constexpr size_t BLOCK = 65536; /* bytes read at a time */

std::string escaped(std::string_view text) {
    std::string line;
    for (const char letter : text) {
        const auto code = static_cast<unsigned char>(letter);
        if (code < ' ' || code == 0x7F || letter == '\\') {
            char digits[8];
            snprintf(digits, sizeof digits, "\\x%02X", code);
            line += digits;
        } else {
            line += letter;
        }
    }
    return line;
}

std::string unescaped(std::string_view line) {
    std::string text;
    for (size_t at = 0; at < line.size(); at++) {
        NB_UCHAR code = 0;
        if (line[at] == '\\' && at + 3 < line.size() && line[at + 1] == 'x' &&
            records::read_bytes(line.substr(at + 2, 2), &code, 1) == 1) {
            text += static_cast<char>(code);
            at += 3;
        } else {
            text += line[at];
        }
    }
    return text;
}

template <class Number> bool take(std::string_view text, Number &number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

std::string user_name(uid_t user) {
    const passwd *found = getpwuid(user);
    return found != nullptr ? found->pw_name : std::to_string(user);
}

std::string result_words(Result result) {
    const char *primary = nap_primary_name(result.primary);
    const char *secondary = nap_secondary_name(result.secondary);
    return (primary != nullptr ? primary : std::to_string(result.primary)) +
           std::string(secondary != nullptr ? " " : "") + (secondary != nullptr ? secondary : "");
}

} // namespace

std::string line_of(const ChangeRecord &record) {
    std::string line;
    for (const uint64_t number : {uint64_t{record.number}, record.time_ms, uint64_t{record.user},
                                  static_cast<uint64_t>(record.process)}) {
        line += std::to_string(number) + '\t';
    }
    line += escaped(record.program) + '\t' + escaped(record.node) + '\t';
    for (const NB_ULONG number :
         {NB_ULONG{record.opcode}, NB_ULONG{record.result.primary}, record.result.secondary}) {
        line += std::to_string(number) + '\t';
    }
    return line + escaped(record.subject) + '\t' + escaped(record.words);
}

bool parse_line(std::string_view line, ChangeRecord &record) {
    std::string_view parts[PARTS];
    for (size_t at = 0; at < PARTS; at++) {
        const size_t end = std::min(line.find('\t'), line.size());
        parts[at] = line.substr(0, end);
        if ((at + 1 == PARTS) != (end == line.size())) {
            return false;
        }
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    record.program = unescaped(parts[4]);
    record.node = unescaped(parts[5]);
    record.subject = unescaped(parts[9]);
    record.words = unescaped(parts[10]);
    return take(parts[0], record.number) && take(parts[1], record.time_ms) &&
           take(parts[2], record.user) && take(parts[3], record.process) &&
           take(parts[6], record.opcode) && take(parts[7], record.result.primary) &&
           take(parts[8], record.result.secondary);
}

ChangeLog::ChangeLog(std::string folder, size_t file_size, unsigned old_files)
    : folder_(std::move(folder)), file_size_(file_size), old_files_(old_files) {}

ChangeLog::~ChangeLog() {
    for (const File &file : files_) {
        close(file.fd);
    }
}

std::string ChangeLog::path(unsigned age) const {
    return folder_ + "/changes" + (age == 0 ? "" : "." + std::to_string(age));
}

/* Notes where each line begins, by its number. */
void ChangeLog::index(File &file) {
    std::string text;
    std::vector<char> block(BLOCK);
    uint64_t begin = 0; /* of `text` in the file */
    for (;;) {
        const ssize_t got =
            pread(file.fd, block.data(), block.size(), static_cast<off_t>(begin + text.size()));
        if (got <= 0) {
            break;
        }
        text.append(block.data(), static_cast<size_t>(got));
        size_t used = 0;
        for (size_t end = 0; (end = text.find('\n', used)) != text.npos; used = end + 1) {
            NB_ULONG number = 0;
            const std::string_view line = std::string_view(text).substr(used, end - used);
            const NB_ULONG next = last_ + 1;
            if (!take(line.substr(0, line.find('\t')), number) || number < next ||
                (last_ != 0 && number - next > MOST_MISSING)) {
                continue;
            }
            if (file.offsets.empty()) {
                file.first = number;
            }
            file.offsets.resize(number - file.first, NO_LINE);
            file.offsets.push_back(static_cast<NB_ULONG>(begin + used));
            last_ = number;
        }
        text.erase(0, used);
        begin += used;
    }
    file.size = begin + text.size();
}

bool ChangeLog::take_up(unsigned age, bool to_write, std::string &why) {
    const std::string name = path(age);
    const bool first = age == 0 && to_write;
    const int flags = O_CLOEXEC | O_NOFOLLOW | (first ? O_RDWR | O_APPEND | O_CREAT : O_RDONLY);
    File file;
    file.fd = ::open(name.c_str(), flags, S_IRUSR | S_IWUSR);
    struct stat found = {};
    if (file.fd < 0 && errno == ENOENT) {
        return true;
    }
    if (file.fd < 0 || fstat(file.fd, &found) != 0 ||
        (to_write && fchmod(file.fd, S_IRUSR | S_IWUSR) != 0)) {
        why = name + ": " + strerror(errno);
    } else if (!S_ISREG(found.st_mode)) {
        why = name + " is not a regular file; move it away";
    }
    if (!why.empty()) {
        if (file.fd >= 0) {
            close(file.fd);
        }
        return false;
    }
    file.first = last_ + 1;
    index(file);
    files_.push_back(std::move(file));
    return true;
}

bool ChangeLog::open(bool to_write, std::string &why) {
    for (unsigned age = old_files_ + 1; age-- > 0;) {
        if (!take_up(age, to_write, why)) {
            return false;
        }
    }
    char last = '\n';
    const File *file = files_.empty() ? nullptr : &files_.back();
    if (to_write && file->size > 0 &&
        pread(file->fd, &last, 1, static_cast<off_t>(file->size - 1)) == 1 && last != '\n') {
        return append("\n", why); /* the process was killed in the middle of a line */
    }
    return true;
}

/* Lines are read from the file they stand in, whatever it is called by then.  Nothing is moved
 * before there is a new one. */
bool ChangeLog::rotate(std::string &why) {
    const std::string made = path(0) + ".new";
    File file;
    file.first = last_ + 1;
    file.fd = ::open(made.c_str(), O_RDWR | O_APPEND | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW,
                     S_IRUSR | S_IWUSR);
    if (file.fd < 0) {
        why = made + ": " + strerror(errno);
        return false;
    }
    for (unsigned age = old_files_; age-- > 0;) {
        rename(path(age).c_str(), path(age + 1).c_str());
    }
    rename(made.c_str(), path(0).c_str());
    files_.push_back(std::move(file));
    while (files_.size() > size_t{old_files_} + 1) {
        close(files_.front().fd);
        files_.pop_front();
    }
    return true;
}

/* All of the line or nothing. */
bool ChangeLog::append(const std::string &line, std::string &why) {
    File &file = files_.back();
    const ssize_t put = ::write(file.fd, line.data(), line.size());
    if (put != static_cast<ssize_t>(line.size())) {
        why = path(0) + ": " + strerror(put < 0 ? errno : ENOSPC);
        if (put > 0 && ftruncate(file.fd, static_cast<off_t>(file.size)) != 0) {
            file.size += static_cast<uint64_t>(put);
        }
        return false;
    }
    file.size += line.size();
    return true;
}

void ChangeLog::problem(const std::string &why) {
    nba_pd_print_problem(NB_PD_CHANGES, 1, "s", why.c_str());
}

void ChangeLog::write(ChangeRecord &record) {
    std::string why;
    record.number = last_ + 1;
    const std::string line = line_of(record) + '\n';
    const bool full = files_.back().size > 0 && files_.back().size + line.size() > file_size_;
    if (full && !rotate(why)) {
        problem(why); /* the file grows, then */
    }
    const uint64_t at = files_.back().size;
    if (!append(line, why)) {
        problem(why);
        return;
    }
    last_ = record.number;
    files_.back().offsets.push_back(static_cast<NB_ULONG>(at));
}

bool ChangeLog::read(NB_ULONG number, ChangeRecord &record) const {
    const auto file = std::find_if(files_.rbegin(), files_.rend(), [number](const File &one) {
        return number >= one.first && number - one.first < one.offsets.size();
    });
    if (file == files_.rend() || file->offsets[number - file->first] == NO_LINE) {
        return false;
    }
    const uint64_t begin = file->offsets[number - file->first];
    std::string line;
    size_t end = 0;
    for (char block[1024]; (end = line.find('\n')) == line.npos;) {
        const ssize_t got =
            pread(file->fd, block, sizeof block, static_cast<off_t>(begin + line.size()));
        if (got <= 0) {
            return false;
        }
        line.append(block, static_cast<size_t>(got));
    }
    return parse_line(std::string_view(line).substr(0, end), record) && record.number == number;
}

int print_changes(const std::string &state_folder) {
    ChangeLog log(state_folder);
    std::string why;
    if (!log.open(false, why)) {
        fprintf(stderr, "snanode: %s\n", why.c_str());
        return 1;
    }
    if (log.newest() < log.oldest()) {
        fprintf(stderr, "snanode: %s holds no changes\n", state_folder.c_str());
    }
    for (NB_ULONG number = log.oldest(); number <= log.newest(); number++) {
        ChangeRecord record;
        if (!log.read(number, record)) {
            continue;
        }
        char time[32];
        const auto seconds = static_cast<time_t>(record.time_ms / 1000);
        strftime(time, sizeof time, "%Y-%m-%d %H:%M:%S", localtime(&seconds));
        printf("%s %s %s[%d] %s: %s%s%s: %s%s%s\n", time, user_name(record.user).c_str(),
               escaped(record.program).c_str(), static_cast<int>(record.process),
               record.node.empty() ? "domain" : escaped(record.node).c_str(),
               verb_words(record.opcode).c_str(), record.subject.empty() ? "" : ", ",
               escaped(record.subject).c_str(), result_words(record.result).c_str(),
               record.words.empty() ? "" : "; ", escaped(record.words).c_str());
    }
    return 0;
}

} // namespace node
