#include "manpage.h"
#include "nbbase.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace help {

namespace {

constexpr size_t max_output = 8U << 20;
constexpr size_t max_name = 100;

bool all_of(std::string_view text, const char *others) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [others](char byte) {
        return std::isalnum(static_cast<unsigned char>(byte)) != 0 ||
               std::string_view(others).find(byte) != std::string_view::npos;
    });
}

/* The process. */

/* Environment and arguments are made before the fork, since only little may be done after it. */
struct Command {
    Command(const Man_Name &name, int columns) {
        words = {"man", "--no-justification", "--no-hyphenation"};
        if (!name.section.empty()) {
            words.push_back(name.section);
        }
        words.push_back(name.page);
        settings = {"MANPATH=" + std::string(nba_prefix()) + "/share/man:",
                    "MANWIDTH=" + std::to_string(columns),
                    "MAN_KEEP_FORMATTING=1",
                    "GROFF_NO_SGR=1",
                    "LC_ALL=C.UTF-8",
                    "PAGER=cat",
                    "MANPAGER=cat"};
        for (const char *kept : {"PATH", "HOME"}) {
            if (const char *value = std::getenv(kept)) {
                settings.push_back(std::string(kept) + "=" + value);
            }
        }
        pointers(words, arguments);
        pointers(settings, environment);
    }

    std::vector<std::string> words, settings;
    std::vector<char *> arguments, environment;

private:
    static void pointers(std::vector<std::string> &texts, std::vector<char *> &out) {
        for (std::string &text : texts) {
            out.push_back(text.data());
        }
        out.push_back(nullptr);
    }
};

[[noreturn]] void run(const Command &command, int output) {
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    const int null = ::open("/dev/null", O_RDWR);
    dup2(null, STDIN_FILENO);
    dup2(null, STDERR_FILENO);
    dup2(output, STDOUT_FILENO);
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    execvpe(command.arguments[0], command.arguments.data(), command.environment.data());
    _exit(127);
}

/* The reading end of a pipe, or -1. */
int start(const Command &command) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return -1;
    }
    const pid_t child = fork();
    if (child == 0) {
        const pid_t grandchild = fork();
        if (grandchild == 0) {
            run(command, ends[1]);
        }
        _exit(grandchild == -1);
    }
    close(ends[1]);
    while (child > 0 && waitpid(child, nullptr, 0) == -1 && errno == EINTR) {
    }
    if (child == -1) {
        close(ends[0]);
        return -1;
    }
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    return ends[0];
}

/* The output. */

/* Bytes of the character at the beginning; 0 for what is none. */
size_t character(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    const size_t size = first < 0x80             ? 1
                        : (first & 0xE0) == 0xC0 ? 2
                        : (first & 0xF0) == 0xE0 ? 3
                        : (first & 0xF8) == 0xF0 ? 4
                                                 : 0;
    if (size > text.size() || (size == 1 && (first < ' ' || first == 0x7F))) {
        return 0;
    }
    for (size_t ii = 1; ii < size; ii++) {
        if ((text[ii] & 0xC0) != 0x80) {
            return 0;
        }
    }
    return size;
}

void add(std::vector<Run> &runs, Style style, std::string_view text) {
    if (!runs.empty() && runs.back().style == style) {
        runs.back().text += text;
    } else {
        runs.push_back({style, "", std::string(text)});
    }
}

/* A character that is printed twice is bold, one over an underscore underlined. */
std::vector<Run> read_line(std::string_view line) {
    std::vector<Run> runs;
    while (!line.empty()) {
        const size_t size = character(line);
        if (size == 0) {
            line.remove_prefix(1);
            continue;
        }
        std::string_view shown = line.substr(0, size);
        line.remove_prefix(size);
        Style style = Style::plain;
        while (line.size() > 1 && line[0] == '\b') {
            const size_t over = character(line.substr(1));
            if (over == 0) {
                break;
            }
            const bool underlined = shown == "_" && line.substr(1, over) != "_";
            style = underlined ? Style::emphasis : Style::strong;
            shown = line.substr(1, over);
            line.remove_prefix(1 + over);
        }
        add(runs, style, shown);
    }
    return runs;
}

} // namespace

Man_Name parse_man_name(std::string_view text) {
    Man_Name name = {std::string(text), ""};
    const size_t bracket = text.find('(');
    if (bracket != std::string_view::npos && text.back() == ')') {
        name.page = text.substr(0, bracket);
        name.section = text.substr(bracket + 1, text.size() - bracket - 2);
    }
    const bool section_good = bracket == std::string_view::npos || all_of(name.section, "");
    if (!all_of(name.page, "._+:@-") || name.page[0] == '-' || name.page.size() > max_name ||
        name.section.size() > max_name || !section_good) {
        return {};
    }
    return name;
}

Topic man_topic(const std::string &name, std::string_view output) {
    Topic topic = {"", name, {}};
    bool was_empty = true;
    while (!output.empty()) {
        const size_t end = std::min(output.find('\n'), output.size());
        Block block = {Kind::fixed, 0, read_line(output.substr(0, end))};
        output.remove_prefix(std::min(end + 1, output.size()));
        const bool is_empty = plain_text(block).find_first_not_of(' ') == std::string::npos;
        if (!is_empty || !was_empty) {
            topic.blocks.push_back(std::move(block));
        }
        was_empty = is_empty;
    }
    if (was_empty && !topic.blocks.empty()) {
        topic.blocks.pop_back();
    }
    return topic;
}

ManReader::ManReader(XtAppContext context, const Man_Name &name, int columns, DONE when_done)
    : done(std::move(when_done)) {
    const Command command(name, columns);
    fd = name.page.empty() ? -1 : start(command);
    if (fd == -1) {
        timer = XtAppAddTimeOut(context, 0, on_nothing, this);
        return;
    }
    input =
        XtAppAddInput(context, fd, reinterpret_cast<XtPointer>(XtInputReadMask), on_input, this);
}

ManReader::~ManReader() {
    close_input();
    if (timer != 0) {
        XtRemoveTimeOut(timer);
    }
}

void ManReader::close_input() {
    if (fd != -1) {
        XtRemoveInput(input);
        close(fd);
        fd = -1;
    }
}

void ManReader::finish() {
    close_input();
    const DONE call = std::move(done); // this may go in the call
    const std::string text = std::move(output);
    call(text);
}

void ManReader::on_nothing(XtPointer reader, XtIntervalId *) {
    static_cast<ManReader *>(reader)->timer = 0;
    static_cast<ManReader *>(reader)->finish();
}

void ManReader::on_input(XtPointer reader, int *, XtInputId *) {
    auto *self = static_cast<ManReader *>(reader);
    std::array<char, 16384> bytes;
    const ssize_t count = read(self->fd, bytes.data(), bytes.size());
    if (count > 0 && self->output.size() < max_output) {
        self->output.append(bytes.data(), static_cast<size_t>(count));
    } else if (count >= 0 || (errno != EAGAIN && errno != EINTR)) {
        self->finish();
    }
}

} // namespace help
