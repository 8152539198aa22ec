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

constexpr int first_number = 700;   /* servers begin to look for a free number with 0 */
constexpr size_t head_size = 512;   /* of a message: more than is looked at */
constexpr size_t message_size = 32; /* of events, errors, and replies without more */

enum : uint8_t { error_message = 0, reply_message = 1, generic_event = 35 };

/* The core requests that have a reply and that programs use at start. */
enum : uint8_t { create_window = 1, copy_area = 62 };
enum : uint8_t { intern_atom = 16, list_fonts = 49, alloc_color = 84, query_extension = 98 };

struct NAMED_REQUEST {
    uint8_t opcode;
    const char *name;
};

constexpr NAMED_REQUEST core_requests[] = {
    {3, "GetWindowAttributes"},
    {14, "GetGeometry"},
    {15, "QueryTree"},
    {intern_atom, "InternAtom"},
    {17, "GetAtomName"},
    {20, "GetProperty"},
    {23, "GetSelectionOwner"},
    {26, "GrabPointer"},
    {31, "GrabKeyboard"},
    {38, "QueryPointer"},
    {40, "TranslateCoordinates"},
    {43, "GetInputFocus"},
    {47, "QueryFont"},
    {48, "QueryTextExtents"},
    {list_fonts, "ListFonts"},
    {50, "ListFontsWithInfo"},
    {73, "GetImage"},
    {83, "ListInstalledColormaps"},
    {alloc_color, "AllocColor"},
    {85, "AllocNamedColor"},
    {86, "AllocColorCells"},
    {91, "QueryColors"},
    {92, "LookupColor"},
    {97, "QueryBestSize"},
    {query_extension, "QueryExtension"},
    {99, "ListExtensions"},
    {101, "GetKeyboardMapping"},
    {103, "GetKeyboardControl"},
    {117, "GetPointerMapping"},
    {119, "GetModifierMapping"},
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

int display_socket(int number, sockaddr_un &address) {
    address = {};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "/tmp/.X11-unix/X%d", number);
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

X_COUNTER::X_COUNTER(const std::string &display, int away)
    : real_number_(std::atoi(display.c_str() + 1)), one_way_(away * 500) {
    sockaddr_un address;
    for (int number = first_number; display_.empty() && number < first_number + 100; number++) {
        listener_ = display_socket(number, address);
        if (bind(listener_, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0 &&
            listen(listener_, 1) == 0) {
            display_ = ":" + std::to_string(number);
            path_ = address.sun_path;
        } else {
            close(listener_);
        }
    }
}

X_COUNTER::~X_COUNTER() {
    for (const LINK &link : links_) {
        close(link.program);
        close(link.server);
    }
    close(listener_);
    unlink(path_.c_str());
}

void X_COUNTER::accept_program() {
    sockaddr_un address;
    LINK link{};
    link.program = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    link.server = display_socket(real_number_, address);
    if (connect(link.server, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0) {
        std::perror("the X server");
    }
    links_.push_back(link);
    tally_.connections++;
}

void X_COUNTER::pump(int milliseconds) {
    for (int left = 200; left > 0; left--) {
        std::vector<pollfd> fds = {{listener_, POLLIN, 0}};
        for (const LINK &link : links_) {
            fds.push_back({link.ended ? -1 : link.program, POLLIN, 0});
            fds.push_back({link.ended ? -1 : link.server, POLLIN, 0});
        }
        bool waits = false; /* for its time to be passed on */
        for (LINK &link : links_) {
            link.ended = link.ended || !deliver(link);
            waits = waits || !link.under_way.empty();
        }
        if (poll(fds.data(), fds.size(), waits ? std::min(milliseconds, 1) : milliseconds) <= 0) {
            return;
        }
        for (size_t at = 0; at < links_.size(); at++) {
            LINK &link = links_[at];
            if ((fds[at * 2 + 1].revents != 0 && !pass(link, true)) ||
                (fds[at * 2 + 2].revents != 0 && !pass(link, false))) {
                /* The other side has to see it at once: the program may have held a grab. */
                link.ended = true;
                shutdown(link.server, SHUT_RDWR);
                shutdown(link.program, SHUT_RDWR);
            }
        }
        if (fds[0].revents != 0) {
            accept_program();
        }
    }
}

/* What has been long enough on its way. */
bool X_COUNTER::deliver(LINK &link) {
    for (; !link.under_way.empty() && link.under_way.front().due <= CLOCK::now();
         link.under_way.pop_front()) {
        const PIECE &piece = link.under_way.front();
        if (!send_all(piece.from_program ? link.server : link.program, piece.bytes.data(),
                      piece.bytes.size())) {
            return false;
        }
    }
    return true;
}

std::vector<int> X_COUNTER::descriptors() const {
    std::vector<int> all = {listener_};
    for (const LINK &link : links_) {
        if (!link.ended) {
            all.insert(all.end(), {link.program, link.server});
        }
    }
    return all;
}

/* Passes on what can be read at once, and looks at the messages in it. */
bool X_COUNTER::pass(LINK &link, bool from_program) {
    static char piece[1 << 18];
    std::string &left = from_program ? link.from_program : link.from_server;
    const ssize_t count = recv(from_program ? link.program : link.server, piece, sizeof piece, 0);
    if (count <= 0) {
        return false;
    }
    link.under_way.push_back(
        {CLOCK::now() + one_way_, from_program, {piece, static_cast<size_t>(count)}});
    if (!deliver(link)) {
        return false;
    }
    left.append(piece, static_cast<size_t>(count));
    link.batch += from_program ? 1 : 0;
    size_t at = 0;
    for (size_t size = 1; size != 0; at += size) {
        const std::string head = left.substr(at, head_size);
        size = from_program ? take_request(link, head, left.size() - at)
                            : take_message(link, head, left.size() - at);
    }
    left.erase(0, at);
    return true;
}

/* `bytes` is the head of what is there, `available` the length of all of it.  Returns the length of
 * the first request, or 0 while it is not there whole. */
size_t X_COUNTER::take_request(LINK &link, const std::string &bytes, size_t available) {
    if (!link.program_greeted) {
        const size_t size =
            12 + padded(number_at<uint16_t>(bytes, 6)) + padded(number_at<uint16_t>(bytes, 8));
        link.program_greeted = available >= 12 && available >= size;
        return link.program_greeted ? size : 0;
    }
    if (bytes.size() < 4) {
        return 0;
    }
    size_t size = number_at<uint16_t>(bytes, 2) * size_t{4};
    if (size == 0) {
        size = number_at<uint32_t>(bytes, 4) * size_t{4};
    }
    if (size < 4 || available < size) {
        return 0;
    }
    tally_.requests++;
    const auto opcode = number_at<uint8_t>(bytes, 0);
    if (opcode == create_window) {
        windows_.insert(number_at<uint32_t>(bytes, 4));
    }
    tally_.copies += opcode == copy_area ? windows_.count(number_at<uint32_t>(bytes, 8)) : 0;
    REQUEST request = describe(bytes.substr(0, size));
    request.sequence = ++link.sequence;
    request.batch = link.batch;
    link.asked.push_back(request);
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
size_t X_COUNTER::take_message(LINK &link, const std::string &bytes, size_t available) {
    if (!link.server_greeted) {
        const size_t size = 8 + number_at<uint16_t>(bytes, 6) * size_t{4};
        link.server_greeted = available >= 8 && available >= size;
        return link.server_greeted ? size : 0;
    }
    if (bytes.size() < message_size) {
        return 0;
    }
    const auto type = static_cast<uint8_t>(number_at<uint8_t>(bytes, 0) & 0x7f);
    const bool longer = type == reply_message || type == generic_event;
    const size_t size = message_size + (longer ? number_at<uint32_t>(bytes, 4) * size_t{4} : 0);
    if (available < size) {
        return 0;
    }
    tally_.errors += type == error_message ? 1 : 0;
    if (type == reply_message) {
        take_reply(link, bytes);
    }
    return size;
}

void X_COUNTER::take_reply(LINK &link, const std::string &message) {
    const auto sequence = number_at<uint16_t>(message, 2);
    while (!link.asked.empty() && link.asked.front().sequence != sequence) {
        link.asked.pop_front();
    }
    tally_.replies++;
    if (link.asked.empty()) {
        return;
    }
    const REQUEST &request = link.asked.front();
    if (request.name == "QueryExtension" && number_at<uint8_t>(message, 8) != 0) {
        extensions_[number_at<uint8_t>(message, 9)] = request.subject;
    }
    const bool waited = request.batch != link.last_waited;
    link.last_waited = request.batch;
    tally_.round_trips += waited ? 1 : 0;
    tally_.replies_by_name[request.name]++;
    tally_.waits_by_name[request.name] += waited ? 1 : 0;
    tally_.trace.push_back((waited ? "" : "  ") + request.name + " " + request.subject);
}
