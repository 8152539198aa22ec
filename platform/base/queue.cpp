#include "nbbase.h"

NB_VOID nba_add_to_q_tail(NB_LQE *head, NB_LQE *entry) {
    entry->next = head;
    entry->previous = head->previous;
    head->previous->next = entry;
    head->previous = entry;
}

NB_LQE *nba_get_q_head(const NB_LQE *head) {
    return head->next == head ? nullptr : head->next;
}

NB_VOID nba_remove_from_q(NB_LQE *entry) {
    entry->previous->next = entry->next;
    entry->next->previous = entry->previous;
    entry->next = entry->previous = entry;
}
