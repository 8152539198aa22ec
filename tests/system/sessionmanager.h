/* A desktop's session with one program in it. */
#ifndef SYSTEM_SESSIONMANAGER_H
#define SYSTEM_SESSIONMANAGER_H

#include "poll.h"

#include <string>
#include <vector>

/* As the protocol's library has them; its header has macros that others stumble over. */
struct _SmsConn;
struct _IceConn;
struct _IceListenObj;

namespace sys {

class SessionManager : public Source {
public:
    SessionManager();
    ~SessionManager() override;

    std::vector<int> descriptors() const override;
    void take() override;

    /* For SESSION_MANAGER in the program's environment. */
    const std::string &address() const { return address_; }

    /* What the protocol asks of the program, and what it answered. */
    void save(bool shutdown);
    void call_off();
    void die();
    bool joined = false, saved = false, asks = false, answered = false, refused = false;
    bool left = false; /* it said so; a connection that breaks is none */
    std::vector<std::string> restart_command;

    int take_client(_SmsConn *client); /* of the protocol's library */

private:
    int listeners_ = 0;
    _IceListenObj **listening_ = nullptr;
    std::vector<_IceConn *> connections_;
    _SmsConn *client_ = nullptr;
    std::string address_;
};

} // namespace sys

#endif
