/* Web help: what the browser gets, whose child it is, and that the program goes on whatever happens
 * to its children and signals meanwhile. */
#include <gtest/gtest.h>

#include "childprocess.h"
#include "messages.h"
#include "nbbase.h"
#include "toolkit.h"
#include "webhelp.h"
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

/* Writes what it was called with and what it inherited, line by line, and then stays for a while,
 * as browsers do. */
constexpr char browser_text[] =
    "#!/bin/sh\n"
    "{ echo \"arguments $*\"; echo \"count $#\"; echo \"parent $PPID\"\n"
    "  echo \"process $$\"\n"
    /* By the shell itself, which blocks signals while it starts another program. */
    "  while IFS=: read -r name value; do echo $name $value; done </proc/$$/status; } >$0.new\n"
    "mv $0.new $0.seen\n"
    "exec sleep 60\n";

bool until(const std::function<bool()> &condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

bool no_child_left() {
    return waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD;
}

class WebHelp : public testing::Test {
protected:
    void SetUp() override {
        char name[] = "/tmp/webhelpXXXXXX";
        folder = mkdtemp(name);
        browser = folder / "browser";
        std::ofstream(browser) << browser_text;
        chmod(browser.c_str(), 0755);
        nba_pd_set_log((folder / "errors").c_str(), NB_PD_ALL);
        XrmInitialize();
        set_browser(browser);
        gvga_messages[228] = "file:///help/index.html";
        gvga_messages[229] = "file:///help/support.html";
        signal(SIGCHLD, vga_signal_catcher);
        signal(SIGTERM, vga_signal_catcher);
    }
    void TearDown() override {
        for (pid_t process : started) {
            kill(process, SIGKILL);
        }
        signal(SIGCHLD, SIG_DFL);
        signal(SIGTERM, SIG_DFL);
        XrmDestroyDatabase(gvga_resource_database);
        gvga_resource_database = nullptr;
        gvga_messages[228] = gvga_messages[229] = nullptr;
        nba_pd_set_log(nullptr, NB_PD_NONE);
        std::filesystem::remove_all(folder);
    }

    static void set_browser(const std::string &command) {
        XrmPutStringResource(&gvga_resource_database, "Quiladmin*webBrowser", command.c_str());
    }

    /* Chooses the entry of the help menu; what the browser saw, by the first word of the line. */
    std::map<std::string, std::string> choose(const char *entry) {
        const std::filesystem::path seen = browser.string() + ".seen";
        std::filesystem::remove(seen);
        vga_menu_help_web(nullptr, const_cast<char *>(entry), nullptr);
        EXPECT_EQ(gvga_web_temp_pid, 0);
        EXPECT_TRUE(until([&] { return std::filesystem::exists(seen); }));
        std::map<std::string, std::string> facts;
        std::ifstream file(seen);
        for (std::string line; std::getline(file, line);) {
            const size_t end = line.find_first_of(" \t");
            facts[line.substr(0, end)] = end != std::string::npos ? line.substr(end + 1) : "";
        }
        started.push_back(std::stoi(facts.at("process")));
        return facts;
    }

    static bool has_signal(const std::string &mask, int number) {
        return (std::stoull(mask, nullptr, 16) >> (number - 1) & 1) != 0;
    }

    std::filesystem::path folder, browser;
    std::vector<pid_t> started;
};

TEST_F(WebHelp, BrowserGetsTheAddressAndIsNobodysChild) {
    auto facts = choose("1");
    EXPECT_EQ(facts["arguments"], "file:///help/index.html");
    EXPECT_NE(std::stoi(facts["parent"]), getpid());
    EXPECT_TRUE(no_child_left());
    EXPECT_TRUE(has_signal(facts["SigIgn"], SIGHUP));
    for (int number : {SIGCHLD, SIGTERM}) {
        EXPECT_FALSE(has_signal(facts["SigIgn"], number)) << number;
        EXPECT_FALSE(has_signal(facts["SigBlk"], number)) << number;
    }
    facts = choose("2");
    EXPECT_EQ(facts["arguments"], "file:///help/support.html");

    sigset_t mask;
    sigprocmask(SIG_BLOCK, nullptr, &mask);
    EXPECT_EQ(sigismember(&mask, SIGCHLD), 0);
}

TEST_F(WebHelp, CommandGoesThroughTheShellAndIsCut) {
    set_browser(browser.string() + " --new 'a window'");
    const std::string address(300, 'a');
    gvga_messages[228] = address.c_str();
    auto facts = choose("1");
    EXPECT_EQ(facts["arguments"], "--new a window " + address.substr(0, 200));
    EXPECT_EQ(facts["count"], "3");
}

TEST_F(WebHelp, OtherChildrenAreLeftAlone) {
    const pid_t other = fork();
    if (other == 0) {
        pause();
        _exit(7);
    }
    choose("1");
    EXPECT_EQ(waitpid(other, nullptr, WNOHANG), 0);
    gvga_web_temp_pid = other; /* as if it were still starting a browser */
    vga_signal_catcher(SIGCHLD);
    EXPECT_EQ(gvga_web_temp_pid, other);
    kill(other, SIGKILL);
    EXPECT_TRUE(until([] { return gvga_web_temp_pid == 0; }));
    EXPECT_TRUE(no_child_left());
    gvga_web_temp_pid = other; /* gone already */
    vga_signal_catcher(SIGCHLD);
    EXPECT_EQ(gvga_web_temp_pid, 0);
}

TEST_F(WebHelp, WhatCannotBeStartedIsNoHarm) {
    set_browser((folder / "none").string() + " 2>/dev/null");
    vga_menu_help_web(nullptr, const_cast<char *>("1"), nullptr);
    EXPECT_TRUE(no_child_left());
    EXPECT_FALSE(std::filesystem::exists(folder / "errors"));
    for (const char *entry : {"", "3", static_cast<const char *>(nullptr)}) {
        vga_menu_help_web(nullptr, const_cast<char *>(entry), nullptr);
    }
    std::ifstream errors(folder / "errors");
    int lines = 0;
    for (std::string line; std::getline(errors, line);) {
        EXPECT_NE(line.find("FALSE"), std::string::npos) << line;
        lines++;
    }
    EXPECT_EQ(lines, 1) << "the other two are counted";
    EXPECT_FALSE(std::filesystem::exists(browser.string() + ".seen"));
}

} // namespace
