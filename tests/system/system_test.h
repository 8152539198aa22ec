/* What every test of the whole system starts from: an installation, a screen, and the two programs
 * as processes.  When a test fails, its end says what they wrote and what the screen shows. */
#ifndef SYSTEM_TEST_H
#define SYSTEM_TEST_H

#include <gtest/gtest.h>

#include "installation.h"
#include "screen.h"

#include <memory>
#include <string>
#include <vector>

namespace sys {

class SystemTest : public testing::Test {
protected:
    void TearDown() override;

    /* The node software, once it is ready.  `domain` is a sample domain, which stands still, or the
     * path of a text, `faults` a fault script. */
    Process &start_node(const std::string &domain = "single", const std::string &faults = "",
                        const std::vector<std::string> &arguments = {});

    /* Ends the node software in order. */
    void stop_node();

    /* The administration program with these arguments; `with` is added to its environment.  It must
     * write nothing on standard error, unless the test looks at that itself. */
    Process &start_program(const std::vector<std::string> &arguments = {},
                           const Environment &with = {}, uid_t user = 0);

    Screen &screen();

    /* The window of a node, once the node's name is in its title; 0 after a while without. */
    WindowId loaded_window(const std::string &node = "corvid1");

    /* The window of a domain's nodes, once it shows them; 0 as above. */
    WindowId domain_window();

    /* Opens the window of a node from that of the domain, and waits for it as above. */
    WindowId open_node(const std::string &node);

    /* Kills the process of a node, which is one of the node software's. */
    static void kill_node(const Process &front, const std::string &name);

    /* Whether the window shows the text, words and columns with single blanks between them. */
    bool shows(WindowId window, const std::string &text, int milliseconds = 20000);

    /* The message box of that title that shows the text, once it is there; 0 as above. */
    WindowId box(const std::string &title, const std::string &text);

    /* Presses a button of the box that is shown; the test fails if it does not have it. */
    void press(const std::string &box_title, const std::string &button);
    void press(WindowId box, const std::string &button);

    /* As `press` with OK, for a box that must come with this text. */
    void read_box(const std::string &title, const std::string &text);

    /* Closes the window as an operator does, who says OK to the question that comes. */
    void close_window(WindowId window);

    /* Fails the test unless the process ends in time with this status. */
    void expect_end(Process &process, int status);

    /* What the last program that was closed knew and showed. */
    std::vector<std::string> known() const { return split_lines(place.read("var/model")); }

    Installation place;

private:
    void explain() const;

    std::unique_ptr<Screen> screen_;
    std::unique_ptr<Process> node_;
    std::vector<std::unique_ptr<Process>> programs_;
};

} // namespace sys

#endif
