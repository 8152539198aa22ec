// The scheduler hook.

#include "pollloop.h"

#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

using pollloop::inputs;

size_t round_of_loop() {
    return pollloop::round_of_loop(0, inputs.size());
}

// An input on an eventfd, whose reaction a test can choose.
struct Source {
    explicit Source(std::function<void()> action = {}) : reaction(std::move(action)) {
        fd = eventfd(0, EFD_NONBLOCK);
        input = vpm_add_input(fd, 0, ready, this);
        EXPECT_NE(input, 0U);
    }
    ~Source() {
        vpm_remove_input(input);
        close(fd);
    }
    static NB_VOID ready(NB_VOID *data) {
        Source &source = *static_cast<Source *>(data);
        eventfd_t count;
        eventfd_read(source.fd, &count);
        source.calls++;
        if (source.reaction) {
            source.reaction();
        }
    }
    void fire() const { eventfd_write(fd, 1); }

    int fd;
    NB_ULONG input;
    int calls = 0;
    std::function<void()> reaction;
};

class Scheduler : public ::testing::Test {
protected:
    static void begin() {
        vpm_asm_use_xt_sched(nullptr, pollloop::add_input, pollloop::remove_input);
    }
    ~Scheduler() override {
        vpm_asm_use_xt_sched(nullptr, nullptr, nullptr);
        EXPECT_TRUE(inputs.empty());
    }
};

TEST_F(Scheduler, InputsWaitForAScheduler) {
    Source early;
    early.fire();
    EXPECT_EQ(round_of_loop(), 0U);
    begin();
    Source late;
    late.fire();
    EXPECT_EQ(round_of_loop(), 2U);
    EXPECT_EQ(early.calls, 1);
    EXPECT_EQ(late.calls, 1);
}

TEST_F(Scheduler, RemovalFromInsideACallback) {
    begin();
    Source first;
    Source second;
    first.reaction = [&] {
        vpm_remove_input(first.input);
        vpm_remove_input(second.input);
        vpm_remove_input(second.input);
        vpm_remove_input(0);
    };
    first.fire();
    second.fire();
    round_of_loop();
    EXPECT_EQ(first.calls, 1);
    EXPECT_EQ(second.calls, 0) << "it was collected before it was removed";
    EXPECT_TRUE(inputs.empty());
}

TEST_F(Scheduler, ReadingAndWritingOfOneDescriptor) {
    begin();
    Source source;
    int writable = 0;
    const NB_ULONG input = vpm_add_input(
        source.fd, 1, [](NB_VOID *data) { ++*static_cast<int *>(data); }, &writable);
    round_of_loop();
    EXPECT_EQ(writable, 1);
    EXPECT_EQ(source.calls, 0);
    vpm_remove_input(input);
    source.fire();
    round_of_loop();
    EXPECT_EQ(writable, 1);
    EXPECT_EQ(source.calls, 1);
}

} // namespace
