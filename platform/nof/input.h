/* Holders for what the library registers with the main loop. */
#ifndef NOF_INPUT_H
#define NOF_INPUT_H

#include "nbbase.h"

#include <unistd.h>

namespace nof {

/* OWNS: a file descriptor; -1: none. */
class Descriptor {
public:
    Descriptor() = default;
    ~Descriptor() { reset(-1); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int fd() const { return fd_; }
    void reset(int fd) {
        if (fd_ >= 0) {
            ::close(fd_);
        }
        fd_ = fd;
    }

private:
    int fd_ = -1;
};

/* OWNS: an input of the base library.  To be removed before its descriptor is closed. */
class Input {
public:
    Input() = default;
    ~Input() { remove(); }
    Input(const Input &) = delete;
    Input &operator=(const Input &) = delete;

    bool is_set() const { return id_ != 0; }

    /* Returns false when there is no memory.  One that is set stays as it is. */
    bool add(int fd, bool writable, NB_READY_PROC proc, NB_VOID *data) {
        if (id_ == 0) {
            id_ = vpm_add_input(fd, writable, proc, data);
        }
        return id_ != 0;
    }
    void remove() {
        if (id_ != 0) {
            vpm_remove_input(id_);
        }
        id_ = 0;
    }

private:
    NB_ULONG id_ = 0;
};

} // namespace nof

#endif
