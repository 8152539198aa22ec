/* An input that the library makes ready itself: what it completes without the node reaches the
 * program through the main loop, like everything else. */
#ifndef NOF_WAKEUP_H
#define NOF_WAKEUP_H

#include "input.h"

#include <sys/eventfd.h>

namespace nof {

class Wakeup {
public:
    /* Registers the input unless it is there.  Returns false when there are no resources. */
    bool start(NB_READY_PROC ready, NB_VOID *data) {
        if (event_.fd() < 0) {
            event_.reset(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC));
        }
        return event_.fd() >= 0 && input_.add(event_.fd(), false, ready, data);
    }

    void stop() {
        input_.remove();
        event_.reset(-1);
        armed_ = false;
    }

    /* `ready` will be called, once. */
    void arm() {
        if (!armed_) {
            armed_ = eventfd_write(event_.fd(), 1) == 0;
        }
    }

    void clear() {
        eventfd_t count;
        if (armed_) {
            eventfd_read(event_.fd(), &count);
            armed_ = false;
        }
    }

private:
    bool armed_ = false;
    Descriptor event_;
    Input input_;
};

} // namespace nof

#endif
