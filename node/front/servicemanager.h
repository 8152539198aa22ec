/* What a service manager wants to know of a service that it started. */
#ifndef NODE_SERVICEMANAGER_H
#define NODE_SERVICEMANAGER_H

namespace node {

/* Sends state, as in "READY=1", to the manager's socket, which NOTIFY_SOCKET in the environment
 * names: a path, or behind '@' a name without a file.  Returns true when it was sent; nothing is
 * sent and nothing said when there is no manager. */
bool tell_service_manager(const char *state);

} // namespace node

#endif
