/* How often the program waits for its X server: what makes it slow on a display that is far away.
 * The budgets are of a display on which some toolkit program ran before.
 *
 * QUILADMIN_AWAY=50 in the environment puts the display so many milliseconds away, and what each
 * thing took is printed. */
#include "system_test.h"
#include "xcount.h"

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace sys {

namespace {

int away() {
    const char *const wish = getenv("QUILADMIN_AWAY");
    return wish != nullptr ? std::atoi(wish) : 0;
}

/* Passes on by itself: the program keeps others from the display for moments, the test too, which
 * could not wait for its own windows then. */
class Distance {
public:
    explicit Distance(const std::string &display) : counter_(display, away()) {
        passing_ = std::thread([this] {
            while (!stop_) {
                {
                    const std::lock_guard<std::mutex> lock(mutex_);
                    counter_.pump(1);
                }
                std::this_thread::yield();
            }
        });
    }
    ~Distance() {
        stop_ = true;
        passing_.join();
    }
    Distance(const Distance &) = delete;
    Distance &operator=(const Distance &) = delete;

    const std::string &display() const { return counter_.display(); }
    X_TALLY tally() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return counter_.tally();
    }

private:
    X_COUNTER counter_;
    std::mutex mutex_;
    std::atomic<bool> stop_ = false;
    std::thread passing_;
};

} // namespace

class Distant : public SystemTest {
protected:
    /* Does it, waits for its end and for the rest that comes behind it; at most `budget` waits. */
    void expect_waits(const char *what, unsigned budget, const std::function<void()> &act,
                      const std::function<bool()> &done) {
        const unsigned before = far_->tally().round_trips;
        const size_t told = far_->tally().trace.size();
        const auto begin = Clock::now();
        act();
        EXPECT_TRUE(wait_for(done)) << what;
        const auto took =
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
        unsigned requests = 0;
        for (int left = 10; left > 0 && requests != far_->tally().requests; left--) {
            requests = far_->tally().requests;
            wait_for([] { return false; }, 200 + 4 * away());
        }
        const X_TALLY tally = far_->tally();
        const unsigned waits = tally.round_trips - before;
        std::string asked;
        for (size_t at = told; at < tally.trace.size(); at++) {
            asked += "  " + tally.trace[at] + "\n";
        }
        EXPECT_LE(waits, budget) << what << " asks the display:\n" << asked;
        printf("%-34s %4u round trips of %2u   %6ld ms at %d ms\n", what, waits, budget,
               static_cast<long>(took.count()), away());
        fflush(stdout);
    }

    WindowId dialog_with(const std::string &text) {
        for (const WindowId each : screen().windows()) {
            if (each != window_ && screen().text(each).find(text) != std::string::npos) {
                return each;
            }
        }
        return 0;
    }

    std::unique_ptr<Distance> far_;
    WindowId window_ = 0;
};

TEST_F(Distant, WhatAnOperatorDoesKeepsItsBudget) {
    start_node("branch", "", {});
    Process &earlier = start_program();
    close_window(domain_window());
    expect_end(earlier, 0);

    far_ = std::make_unique<Distance>(screen().name());
    Process *program = nullptr;
    WindowId domain = 0;
    expect_waits(
        "start", 60,
        [&] {
            program = &start_program({"-size", "small"}, {{"DISPLAY", far_->display()}});
        },
        [&] {
            domain = screen().find(message(992));
            return domain != 0 && screen().window_with(domain, "harbour") != 0;
        });
    expect_waits(
        "a node's window", 60,
        [&] {
            screen().raise(domain);
            ASSERT_TRUE(screen().click(domain, "harbour"));
            screen().focus(domain);
            screen().key("Return");
        },
        [&] {
            window_ = screen().find(message(1300, {"harbour"}));
            return window_ != 0 && screen().window_with(window_, "CHPORT") != 0;
        });
    const WindowId links = screen().window_with(window_, "CHPORT");
    screen().raise(window_);
    screen().focus(window_);
    wait_for([] { return false; }, 300 + 6 * away());
    ASSERT_TRUE(screen().click(links, "CHPORT"));
    wait_for([] { return false; }, 300 + 6 * away());
    screen().key("Down"); /* the first key in a window asks who has the keyboard */
    wait_for([] { return false; }, 300 + 6 * away());
    const unsigned copies = far_->tally().copies;
    expect_waits(
        "a page step", 0, [&] { screen().key("Page_Down"); },
        [&] { return far_->tally().copies > copies; });
    expect_waits(
        "a line of an indication", 0,
        [&] {
            Process define({{place.path("bin/quilctl"), "--node", "harbour", "define", "local_lu",
                             "AARDVARK", "lu_alias=AARDVARK"},
                            place.environment()});
            EXPECT_TRUE(define.wait_end());
            EXPECT_EQ(define.status(), 0) << define.err();
        },
        [&] { return screen().window_with(window_, "AARDVARK") != 0; });
    const WindowId lus = screen().window_with(window_, "LEDGER");
    WindowId limits = 0;
    const auto open_limits = [&] {
        ASSERT_TRUE(screen().click(lus, "LEDGMODE"));
        screen().key("Return");
    };
    const auto is_there = [&] { return (limits = dialog_with("LEDGMODE")) != 0; };
    expect_waits("a dialog for the first time", 10, open_limits, is_there);
    expect_waits(
        "its end", 0, [&] { screen().ask_to_close(limits); },
        [&] { return dialog_with("LEDGMODE") == 0; });
    screen().focus(window_);
    expect_waits("the dialog again", 5, open_limits, is_there);
    close_window(domain);
    expect_end(*program, 0);
}

} // namespace sys
