/* Who may change the domain: root, the user the node software runs as, and members of a group.
 * Others may look. */
#ifndef RIGHTS_H
#define RIGHTS_H

#include <memory>
#include <string>
#include <sys/types.h>

namespace node {

struct PeerUser {
    uid_t user = static_cast<uid_t>(-1);
    pid_t process = 0;
    bool may_change = false;
    std::string program = {}; /* what the process called itself; "": it is gone */
};

class Rights {
public:
    /* Looks the group up, and waits for the answer.  `group`: a literal. */
    explicit Rights(const char *group = "sna");

    /* Whose the other end of a connected local socket is; nobody's, who may look, when the system
     * does not say.  Never waits: a group that was made or renumbered is known a minute later, when
     * the look-up that a connection begins has ended beside the loop. */
    PeerUser of(int fd);

private:
    struct Group;

    void look_up_again();

    std::shared_ptr<Group> group_; /* a look-up that hangs may outlive this */
};

} // namespace node

#endif
