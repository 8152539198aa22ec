#include "nbbase.h"

#include <memory>
#include <new>

namespace {

// An input as its owner registered it.  Kept in a list of its own, so that inputs can be made
// before a scheduler is known and moved from one scheduler to another.
struct Input {
    NB_ULONG id;
    NB_INT fd;
    bool writable;
    NB_READY_PROC proc;
    NB_VOID *data;
    bool scheduled = false;
    unsigned long scheduler_id = 0;
    Input *next = nullptr;
};

struct Scheduler {
    NB_VOID *context = nullptr;
    NB_ADD_INPUT add = nullptr;
    NB_REMOVE_INPUT remove = nullptr;
};

constexpr NB_USHORT most_frames = 1000;

Scheduler scheduler;
Input *inputs = nullptr;
NB_ULONG last_id = 0;
NB_USHORT io_limit = 10;

// Returns the link that points at the input, or at null when there is none of this number.
Input **find(NB_ULONG id) {
    Input **link = &inputs;
    while (*link && (*link)->id != id) {
        link = &(*link)->next;
    }
    return link;
}

// The scheduler holds the input's number, not its address: an event that it had collected before
// the input was removed then finds nothing.
NB_VOID input_ready(NB_VOID *data, NB_INT *, unsigned long *) {
    const Input *input = *find(static_cast<NB_ULONG>(reinterpret_cast<uintptr_t>(data)));
    if (input) {
        input->proc(input->data);
    }
}

void schedule(Input &input) {
    if (!scheduler.add) {
        return;
    }
    // The toolkit's conditions: bit 0 is reading, bit 1 writing.
    const uintptr_t condition = input.writable ? 2 : 1;
    input.scheduler_id =
        scheduler.add(scheduler.context, input.fd, reinterpret_cast<NB_VOID *>(condition),
                      input_ready, reinterpret_cast<NB_VOID *>(static_cast<uintptr_t>(input.id)));
    input.scheduled = true;
}

void unschedule(Input &input) {
    if (input.scheduled && scheduler.remove) {
        scheduler.remove(input.scheduler_id);
    }
    input.scheduled = false;
}

} // namespace

NB_VOID vpm_asm_use_xt_sched(NB_VOID *context, NB_ADD_INPUT add, NB_REMOVE_INPUT remove) {
    for (Input *input = inputs; input; input = input->next) {
        unschedule(*input);
    }
    scheduler = {context, add, remove};
    for (Input *input = inputs; input; input = input->next) {
        schedule(*input);
    }
}

NB_VOID vpm_set_io_limit(NB_USHORT frames) {
    if (frames >= 1 && frames <= most_frames) {
        io_limit = frames;
    }
}

NB_USHORT vpm_get_io_limit(NB_VOID) {
    return io_limit;
}

NB_ULONG vpm_add_input(NB_INT fd, NB_USHORT writable, NB_READY_PROC proc, NB_VOID *data) {
    do {
        last_id++;
    } while (last_id == 0 || *find(last_id));
    Input *input = new (std::nothrow) Input{last_id, fd, writable != 0, proc, data};
    if (!input) {
        return 0;
    }
    input->next = inputs;
    inputs = input;
    schedule(*input);
    return input->id;
}

NB_VOID vpm_remove_input(NB_ULONG id) {
    Input **link = find(id);
    if (!*link) {
        return;
    }
    const std::unique_ptr<Input> input(*link);
    *link = input->next;
    unschedule(*input);
}
