#include "system_test.h"

#include <csignal>
#include <fstream>
#include <iostream>

namespace sys {

Screen &SystemTest::screen() {
    if (!screen_) {
        screen_ = std::make_unique<Screen>();
        EXPECT_FALSE(screen_->name().empty()) << "no X server (Xvfb) could be started";
    }
    return *screen_;
}

Process &SystemTest::start_node(const std::string &domain, const std::string &faults,
                                const std::vector<std::string> &arguments) {
    Command command = {{place.path("bin/snanode"), "--domain", domain}, place.environment()};
    if (domain.find('/') == std::string::npos) {
        command.words.emplace_back("--still");
    }
    command.words.insert(command.words.end(), arguments.begin(), arguments.end());
    if (!faults.empty()) {
        command.words.insert(command.words.end(), {"--fault", place.write("faults", faults)});
    }
    node_.reset(); /* one that runs has the folder */
    node_ = std::make_unique<Process>(command);
    EXPECT_TRUE(wait_for([this] { return node_->out().find(" ready\n") != std::string::npos; }))
        << node_->err();
    return *node_;
}

void SystemTest::stop_node() {
    if (node_ && node_->running()) {
        node_->send(SIGTERM);
        expect_end(*node_, 0);
    }
}

Process &SystemTest::start_program(const std::vector<std::string> &arguments,
                                   const Environment &with, uid_t user) {
    Command command = {{place.path("bin/quiladmin")}, with, user};
    command.words.insert(command.words.end(), arguments.begin(), arguments.end());
    command.environment.merge(place.environment());
    command.environment.insert({"DISPLAY", screen().name()});
    programs_.push_back(std::make_unique<Process>(command));
    return *programs_.back();
}

WindowId SystemTest::loaded_window(const std::string &node) {
    WindowId found = 0;
    wait_for([&] { return (found = screen().find(message(1300, {node}))) != 0; });
    return found;
}

WindowId SystemTest::domain_window() {
    WindowId found = 0;
    wait_for([&] { return (found = screen().find(message(992))) != 0; });
    return found;
}

WindowId SystemTest::open_node(const std::string &node) {
    const WindowId domain = domain_window();
    screen().raise(domain);
    EXPECT_TRUE(domain != 0 && wait_for([&] { return screen().click(domain, node); }))
        << "no line of " << node;
    screen().focus(domain);
    screen().key("Return");
    return loaded_window(node);
}

void SystemTest::kill_node(const Process &front, const std::string &name) {
    const std::string pid = std::to_string(front.pid());
    std::ifstream children("/proc/" + pid + "/task/" + pid + "/children");
    for (pid_t process = 0; children >> process;) {
        std::ifstream command("/proc/" + std::to_string(process) + "/cmdline");
        std::string words;
        std::getline(command, words);
        if (words.find(std::string("--serve\0", 8) + name + '\0') != std::string::npos) {
            kill(process, SIGKILL);
            return;
        }
    }
    ADD_FAILURE() << "no process of the node " << name;
}

bool SystemTest::shows(WindowId window, const std::string &text, int milliseconds) {
    return wait_for([&] { return screen().text(window).find(text) != std::string::npos; },
                    milliseconds);
}

WindowId SystemTest::box(const std::string &title, const std::string &text) {
    WindowId found = 0;
    wait_for([&] {
        for (const WindowId window : screen().windows()) {
            const bool shown = screen().title(window) == title &&
                               screen().text(window).find(text) != std::string::npos;
            found = shown ? window : found;
        }
        return found != 0;
    });
    return found;
}

void SystemTest::press(const std::string &box_title, const std::string &button) {
    press(screen().find(box_title), button);
}

void SystemTest::press(WindowId box, const std::string &button) {
    screen().raise(box);
    EXPECT_TRUE(box != 0 && wait_for([&] { return screen().click(box, button); }))
        << "no button \"" << button << "\" in the box \"" << screen().title(box) << "\"";
}

void SystemTest::read_box(const std::string &title, const std::string &text) {
    const WindowId found = box(title, text);
    ASSERT_NE(found, 0u) << "no box \"" << title << "\" with the text: " << text;
    press(found, "OK");
}

void SystemTest::close_window(WindowId window) {
    screen().ask_to_close(window);
    read_box(message(185), message(205));
}

void SystemTest::expect_end(Process &process, int status) {
    ASSERT_TRUE(process.wait_end()) << "it goes on";
    EXPECT_EQ(process.status(), status) << process.err();
}

/* The node software must survive whatever a test does to the program, and end in order. */
void SystemTest::TearDown() {
    for (const std::string &line : known()) {
        EXPECT_NE(line.rfind("wrong: ", 0), 0u) << line;
    }
    for (const auto &program : programs_) {
        program->take();
        EXPECT_FALSE(program->complains()) << program->err();
    }
    if (HasFailure()) {
        explain();
    }
    programs_.clear();
    stop_node();
}

void SystemTest::explain() const {
    std::cout << "error log:\n" << place.read("var/log/sna.err");
    if (node_) {
        std::cout << "snanode:\n" << node_->out() << node_->err();
    }
    for (const auto &program : programs_) {
        std::cout << "quiladmin" << (program->running() ? " (still runs)" : "") << ":\n"
                  << program->out() << program->err();
    }
    if (screen_ && !screen_->name().empty()) {
        for (const WindowId window : screen_->windows()) {
            std::cout << "window \"" << screen_->title(window) << "\":\n";
            for (const std::string &line : screen_->lines(window)) {
                std::cout << "    " << line << "\n";
            }
        }
    }
}

} // namespace sys
