#include "nof.h"

#include "answer.h"
#include "interface.h"

#include <new>

namespace {

constexpr NB_ULONG hello_wait_ms = 30000;

// Never destroyed: the process ends without calling anybody.
nof::Interface &interface() {
    alignas(nof::Interface) static unsigned char room[sizeof(nof::Interface)];
    static nof::Interface *const it = new (room) nof::Interface(hello_wait_ms);
    return *it;
}

} // namespace

NB_USHORT nof_async_version(NB_USHORT version, NB_ULONG target, NB_VOID *vcb, NOF_CALLBACK callback,
                            NB_ULONG user_data) {
    NB_ASSERT(vcb && callback);
    if (!vcb) {
        return NOF_COMPLETED_SYNC;
    }
    NB_UCHAR *const bytes = static_cast<NB_UCHAR *>(vcb);
    if (version != NOF_VERSION || !callback) {
        nof::set_return_codes(bytes, NAP_NOT_SUPPORTED, 0);
        return NOF_COMPLETED_SYNC;
    }
    return interface().issue(target, bytes, callback, user_data);
}

NOF_FAILURE nof_last_failure(NB_VOID) {
    return interface().failure();
}

NB_VOID nof_terminate(NB_VOID) {
    interface().terminate();
}
