// The scheduler hook, with a main loop made of poll().

#include "nbbase.h"

#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <vector>

namespace {

struct Loop {
    struct Watched {
        NB_INT fd;
        short events;
        NB_INPUT_PROC proc;
        NB_VOID *data;
    };
    std::map<unsigned long, Watched> inputs;
    unsigned long next = 1;

    static unsigned long add(NB_VOID *context, NB_INT fd, NB_VOID *condition, NB_INPUT_PROC proc,
                             NB_VOID *data) {
        Loop &loop = *static_cast<Loop *>(context);
        const auto bits = reinterpret_cast<uintptr_t>(condition);
        EXPECT_TRUE(bits == 1 || bits == 2);
        loop.inputs[loop.next] = {fd, static_cast<short>(bits == 1 ? POLLIN : POLLOUT), proc, data};
        last_used = &loop;
        return loop.next++;
    }
    static NB_VOID remove(unsigned long id) { EXPECT_EQ(last_used->inputs.erase(id), 1U); }

    // Calls every input that was ready at the beginning, even one that was removed meanwhile, as a
    // loop with a list of its own may.
    size_t round() {
        std::vector<pollfd> fds;
        std::vector<std::pair<unsigned long, Watched>> watched(inputs.begin(), inputs.end());
        for (const auto &[id, input] : watched) {
            fds.push_back({input.fd, input.events, 0});
        }
        poll(fds.data(), fds.size(), 0);
        size_t called = 0;
        for (size_t at = 0; at < fds.size(); at++) {
            if (fds[at].revents != 0) {
                unsigned long id = watched[at].first;
                watched[at].second.proc(watched[at].second.data, &fds[at].fd, &id);
                called++;
            }
        }
        return called;
    }

    static Loop *last_used;
};

Loop *Loop::last_used;

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
    ~Scheduler() override { vpm_asm_use_xt_sched(nullptr, nullptr, nullptr); }
    Loop loop;
};

TEST_F(Scheduler, InputsWaitForAScheduler) {
    Source early;
    early.fire();
    EXPECT_EQ(loop.round(), 0U);
    vpm_asm_use_xt_sched(&loop, Loop::add, Loop::remove);
    Source late;
    late.fire();
    EXPECT_EQ(loop.round(), 2U);
    EXPECT_EQ(early.calls, 1);
    EXPECT_EQ(late.calls, 1);
}

TEST_F(Scheduler, MovesToAnotherAndAway) {
    Loop other;
    Source source;
    vpm_asm_use_xt_sched(&loop, Loop::add, Loop::remove);
    vpm_asm_use_xt_sched(&other, Loop::add, Loop::remove);
    EXPECT_TRUE(loop.inputs.empty());
    source.fire();
    EXPECT_EQ(other.round(), 1U);
    vpm_asm_use_xt_sched(nullptr, nullptr, nullptr);
    EXPECT_TRUE(other.inputs.empty());
    EXPECT_EQ(source.calls, 1);
}

TEST_F(Scheduler, RemovalFromInsideACallback) {
    vpm_asm_use_xt_sched(&loop, Loop::add, Loop::remove);
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
    loop.round();
    EXPECT_EQ(first.calls, 1);
    EXPECT_EQ(second.calls, 0) << "it was collected before it was removed";
    EXPECT_TRUE(loop.inputs.empty());
}

TEST_F(Scheduler, ReadingAndWritingOfOneDescriptor) {
    vpm_asm_use_xt_sched(&loop, Loop::add, Loop::remove);
    Source source;
    int writable = 0;
    const NB_ULONG input = vpm_add_input(
        source.fd, 1, [](NB_VOID *data) { ++*static_cast<int *>(data); }, &writable);
    loop.round();
    EXPECT_EQ(writable, 1);
    EXPECT_EQ(source.calls, 0);
    vpm_remove_input(input);
    source.fire();
    loop.round();
    EXPECT_EQ(writable, 1);
    EXPECT_EQ(source.calls, 1);
}

TEST(IoLimit, IgnoresWhatIsOutOfRange) {
    EXPECT_EQ(vpm_get_io_limit(), 10);
    for (NB_USHORT wrong : {0, 1001, 65535}) {
        vpm_set_io_limit(wrong);
        EXPECT_EQ(vpm_get_io_limit(), 10);
    }
    vpm_set_io_limit(1000);
    EXPECT_EQ(vpm_get_io_limit(), 1000);
    vpm_set_io_limit(10);
}

} // namespace
