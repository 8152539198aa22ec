#include "xcount.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr size_t message_size = 32; /* of events, errors, and replies without more */

enum : uint8_t { error_message = 0, reply_message = 1, generic_event = 35 };

/* The core requests that have a reply and that programs use at start. */
enum : uint8_t { intern_atom = 16, list_fonts = 49, alloc_color = 84, query_extension = 98 };

struct NAMED_REQUEST {
    uint8_t opcode;
    const char *name;
};

constexpr NAMED_REQUEST core_requests[] = {
    {3, "GetWindowAttributes"},     {14, "GetGeometry"},
    {15, "QueryTree"},              {intern_atom, "InternAtom"},
    {17, "GetAtomName"},            {20, "GetProperty"},
    {23, "GetSelectionOwner"},      {26, "GrabPointer"},
    {31, "GrabKeyboard"},           {38, "QueryPointer"},
    {40, "TranslateCoordinates"},   {43, "GetInputFocus"},
    {47, "QueryFont"},              {48, "QueryTextExtents"},
    {list_fonts, "ListFonts"},      {50, "ListFontsWithInfo"},
    {73, "GetImage"},               {83, "ListInstalledColormaps"},
    {alloc_color, "AllocColor"},    {85, "AllocNamedColor"},
    {86, "AllocColorCells"},        {91, "QueryColors"},
    {92, "LookupColor"},            {97, "QueryBestSize"},
    {query_extension, "QueryExtension"}, {99, "ListExtensions"},
    {101, "GetKeyboardMapping"},    {103, "GetKeyboardControl"},
    {117, "GetPointerMapping"},     {119, "GetModifierMapping"},
};

template <typename NUMBER> NUMBER number_at(const std::string &bytes, size_t at) {
    NUMBER number = 0;
    if (at + sizeof number <= bytes.size()) {
        std::memcpy(&number, bytes.data() + at, sizeof number);
    }
    return number;
}

size_t padded(size_t length) {
    return (length + 3) & ~size_t{3};
}

std::string text_at(const std::string &request, size_t length_at, size_t text_at) {
    return request.substr(std::min(text_at, request.size()),
                          number_at<uint16_t>(request, length_at));
}

int abstract_socket(int number, sockaddr_un &address, socklen_t &length) {
    address = {};
    address.sun_family = AF_UNIX;
    const int size = std::snprintf(address.sun_path + 1, sizeof address.sun_path - 1,
                                   "/tmp/.X11-unix/X%d", number);
    length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + size);
    return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

bool send_all(int to, const char *bytes, size_t length) {
    while (length > 0) {
        const ssize_t sent = send(to, bytes, length, MSG_NOSIGNAL);
        if (sent <= 0) {
            return false;
        }
        bytes += sent;
        length -= static_cast<size_t>(sent);
    }
    return true;
}

} // namespace

X_COUNTER::X_COUNTER(const std::string &display) : real_number_(std::atoi(display.c_str() + 1)) {
    sockaddr_un address;
    socklen_t length;
    for (int number = real_number_ + 1; display_.empty() && number < real_number_ + 100; number++) {
        listener_ = abstract_socket(number, address, length);
        if (bind(listener_, reinterpret_cast<sockaddr *>(&address), length) == 0 &&
            listen(listener_, 1) == 0) {
            display_ = ":" + std::to_string(number);
        } else {
            close(listener_);
        }
    }
}

X_COUNTER::~X_COUNTER() {
    for (int fd : {listener_, program_, server_}) {
        if (fd >= 0) {
            close(fd);
        }
    }
}

void X_COUNTER::pump(int milliseconds) {
    if (program_ < 0) {
        pollfd waiting{listener_, POLLIN, 0};
        if (poll(&waiting, 1, milliseconds) <= 0) {
            return;
        }
        program_ = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        sockaddr_un address;
        socklen_t length;
        server_ = abstract_socket(real_number_, address, length);
        if (connect(server_, reinterpret_cast<sockaddr *>(&address), length) != 0) {
            std::perror("the X server");
        }
        return;
    }
    pollfd both[] = {{program_, POLLIN, 0}, {server_, POLLIN, 0}};
    if (poll(both, 2, milliseconds) > 0) {
        const bool lost = (both[0].revents != 0 && !pass(program_, server_, from_program_, true)) ||
                          (both[1].revents != 0 && !pass(server_, program_, from_server_, false));
        if (lost) {
            usleep(1000); /* the program ended: whoever started it sees that */
        }
    }
}

/* Passes on what can be read at once, and looks at the messages in it. */
bool X_COUNTER::pass(int from, int to, std::string &left, bool from_program) {
    static char piece[1 << 18];
    const ssize_t count = recv(from, piece, sizeof piece, 0);
    if (count <= 0 || !send_all(to, piece, static_cast<size_t>(count))) {
        return false;
    }
    left.append(piece, static_cast<size_t>(count));
    batch_ += from_program ? 1 : 0;
    size_t at = 0;
    for (;;) {
        const std::string rest = left.substr(at, at + 4096 < left.size() ? 4096 : std::string::npos);
        const size_t size = from_program ? take_request(left.substr(at)) : take_message(rest);
        if (size == 0 || at + size > left.size()) {
            break;
        }
        at += size;
    }
    left.erase(0, at);
    return true;
}

/* Returns the length of the first request, or 0 while it is not there whole. */
size_t X_COUNTER::take_request(const std::string &bytes) {
    if (!program_greeted_) {
        const size_t size = 12 + padded(number_at<uint16_t>(bytes, 6)) +
                            padded(number_at<uint16_t>(bytes, 8));
        program_greeted_ = bytes.size() >= 12 && bytes.size() >= size;
        return program_greeted_ ? size : 0;
    }
    if (bytes.size() < 4) {
        return 0;
    }
    size_t size = number_at<uint16_t>(bytes, 2) * size_t{4};
    if (size == 0) {
        size = number_at<uint32_t>(bytes, 4) * size_t{4};
    }
    if (size < 4 || bytes.size() < size) {
        return 0;
    }
    tally_.requests++;
    REQUEST request = describe(bytes.substr(0, std::min<size_t>(size, 512)));
    request.sequence = ++sequence_;
    request.batch = batch_;
    asked_.push_back(request);
    return size;
}

X_COUNTER::REQUEST X_COUNTER::describe(const std::string &request) const {
    const auto opcode = number_at<uint8_t>(request, 0);
    const auto row = std::find_if(std::begin(core_requests), std::end(core_requests),
                                  [opcode](const auto &one) { return one.opcode == opcode; });
    const auto extension = extensions_.find(opcode);
    REQUEST made{};
    if (row != std::end(core_requests)) {
        made.name = row->name;
    } else if (extension != extensions_.end()) {
        made.name = extension->second + " " + std::to_string(number_at<uint8_t>(request, 1));
    } else {
        made.name = "request " + std::to_string(opcode);
    }
    char text[64] = "";
    switch (opcode) {
    case intern_atom:
    case query_extension:
        made.subject = text_at(request, 4, 8);
        break;
    case list_fonts:
        made.subject = text_at(request, 6, 8);
        break;
    case 85:
        made.subject = text_at(request, 8, 12);
        break;
    case alloc_color:
        std::snprintf(text, sizeof text, "#%02x%02x%02x", number_at<uint16_t>(request, 8) >> 8,
                      number_at<uint16_t>(request, 10) >> 8, number_at<uint16_t>(request, 12) >> 8);
        made.subject = text;
        break;
    default:
        std::snprintf(text, sizeof text, "0x%x 0x%x", number_at<uint32_t>(request, 4),
                      number_at<uint32_t>(request, 8));
        made.subject = text;
    }
    return made;
}

/* The same for what the server sends. */
size_t X_COUNTER::take_message(const std::string &bytes) {
    if (!server_greeted_) {
        const size_t size = 8 + number_at<uint16_t>(bytes, 6) * size_t{4};
        server_greeted_ = bytes.size() >= 8 && from_server_.size() >= size;
        return server_greeted_ ? size : 0;
    }
    if (bytes.size() < message_size) {
        return 0;
    }
    const auto type = static_cast<uint8_t>(number_at<uint8_t>(bytes, 0) & 0x7f);
    const bool longer = type == reply_message || type == generic_event;
    const size_t size =
        message_size + (longer ? number_at<uint32_t>(bytes, 4) * size_t{4} : 0);
    if (from_server_.size() < size) {
        return 0;
    }
    tally_.errors += type == error_message ? 1 : 0;
    if (type == reply_message) {
        take_reply(bytes);
    }
    return size;
}

void X_COUNTER::take_reply(const std::string &message) {
    const auto sequence = number_at<uint16_t>(message, 2);
    while (!asked_.empty() && asked_.front().sequence != sequence) {
        asked_.pop_front();
    }
    tally_.replies++;
    if (asked_.empty()) {
        return;
    }
    const REQUEST &request = asked_.front();
    if (request.name == "QueryExtension" && number_at<uint8_t>(message, 8) != 0) {
        extensions_[number_at<uint8_t>(message, 9)] = request.subject;
    }
    const bool waited = request.batch != last_waited_;
    last_waited_ = request.batch;
    tally_.round_trips += waited ? 1 : 0;
    tally_.replies_by_name[request.name]++;
    tally_.waits_by_name[request.name] += waited ? 1 : 0;
    tally_.trace.push_back((waited ? "" : "  ") + request.name + " " + request.subject);
}
