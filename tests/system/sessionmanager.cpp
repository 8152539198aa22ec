#include "sessionmanager.h"

#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <poll.h>

namespace sys {

namespace {

SessionManager &of(SmPointer data) {
    return *static_cast<SessionManager *>(data);
}

Bool anybody(char *) {
    return True;
}

Status register_client(SmsConn client, SmPointer, char *previous) {
    char *id = previous != nullptr ? previous : SmsGenerateClientID(client);
    SmsRegisterClientReply(client, id);
    free(id);
    return 1;
}

void set_properties(SmsConn, SmPointer data, int count, SmProp **properties) {
    for (int at = 0; at < count; at++) {
        SmProp *property = properties[at];
        if (std::string(property->name) == SmRestartCommand) {
            of(data).restart_command.clear();
            for (int word = 0; word < property->num_vals; word++) {
                of(data).restart_command.emplace_back(
                    static_cast<char *>(property->vals[word].value),
                    strnlen(static_cast<char *>(property->vals[word].value),
                            static_cast<size_t>(property->vals[word].length)));
            }
        }
        SmFreeProperty(property);
    }
    free(properties);
}

Status new_client(SmsConn client, SmPointer data, unsigned long *mask, SmsCallbacks *calls,
                  char **) {
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
            SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
            SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
    calls->register_client = {register_client, data};
    calls->interact_request = {[](SmsConn asking, SmPointer to, int) {
                                   of(to).asks = true;
                                   SmsInteract(asking);
                               },
                               data};
    calls->interact_done = {[](SmsConn, SmPointer to, Bool cancel) {
                                of(to).answered = true;
                                of(to).refused = cancel != 0;
                            },
                            data};
    calls->save_yourself_request = {[](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {}, data};
    calls->save_yourself_phase2_request = {[](SmsConn, SmPointer) {}, data};
    calls->save_yourself_done = {[](SmsConn, SmPointer to, Bool) { of(to).saved = true; }, data};
    calls->close_connection = {[](SmsConn closing, SmPointer to, int reasons, char **texts) {
                                   of(to).left = true;
                                   SmFreeReasons(reasons, texts);
                                   SmsCleanUp(closing);
                               },
                               data};
    calls->set_properties = {set_properties, data};
    calls->delete_properties = {[](SmsConn, SmPointer, int, char **) {}, data};
    calls->get_properties = {
        [](SmsConn of_whom, SmPointer) { SmsReturnProperties(of_whom, 0, nullptr); }, data};
    of(data).joined = true;
    return of(data).take_client(client);
}

} // namespace

SessionManager::SessionManager() {
    char fault[200];
    signal(SIGPIPE, SIG_IGN); // the program may go while it is written to
    IceSetIOErrorHandler([](IceConn) {});
    if (SmsInitialize("test", "1", new_client, this, anybody, sizeof fault, fault) != 0 &&
        IceListenForConnections(&listeners_, &listening_, sizeof fault, fault) != 0) {
        for (int at = 0; at < listeners_; at++) {
            IceSetHostBasedAuthProc(listening_[at], anybody);
        }
        char *const address = IceComposeNetworkIdList(listeners_, listening_);
        address_ = address;
        free(address);
    }
}

SessionManager::~SessionManager() {
    for (const IceConn connection : connections_) {
        IceSetShutdownNegotiation(connection, False);
        IceCloseConnection(connection);
    }
    IceFreeListenObjs(listeners_, listening_);
}

int SessionManager::take_client(SmsConn client) {
    client_ = client;
    return 1;
}

std::vector<int> SessionManager::descriptors() const {
    std::vector<int> all;
    for (int at = 0; at < listeners_; at++) {
        all.push_back(IceGetListenConnectionNumber(listening_[at]));
    }
    for (const IceConn connection : connections_) {
        all.push_back(IceConnectionNumber(connection));
    }
    return all;
}

void SessionManager::take() {
    const auto readable = [](int descriptor) {
        pollfd ask = {descriptor, POLLIN, 0};
        return poll(&ask, 1, 0) > 0;
    };
    for (int at = 0; at < listeners_; at++) {
        IceAcceptStatus status = IceAcceptSuccess;
        if (readable(IceGetListenConnectionNumber(listening_[at]))) {
            if (const IceConn made = IceAcceptConnection(listening_[at], &status);
                made != nullptr) {
                connections_.push_back(made);
            }
        }
    }
    for (size_t at = 0; at < connections_.size();) {
        const bool news = readable(IceConnectionNumber(connections_[at]));
        const auto status = news ? IceProcessMessages(connections_[at], nullptr, nullptr)
                                 : IceProcessMessagesSuccess;
        if (status == IceProcessMessagesSuccess) {
            at++;
            continue;
        }
        if (status == IceProcessMessagesIOError) {
            IceSetShutdownNegotiation(connections_[at], False);
            IceCloseConnection(connections_[at]);
        }
        connections_.erase(connections_.begin() + static_cast<long>(at));
        client_ = nullptr;
    }
}

void SessionManager::save(bool shutdown) {
    saved = asks = answered = refused = false;
    if (client_ == nullptr) {
        return;
    }
    SmsSaveYourself(client_, shutdown ? SmSaveBoth : SmSaveLocal, shutdown ? True : False,
                    shutdown ? SmInteractStyleAny : SmInteractStyleNone, False);
}

void SessionManager::call_off() {
    SmsShutdownCancelled(client_);
}

void SessionManager::die() {
    SmsDie(client_);
}

} // namespace sys
