/* Starting and stopping for windows: asks what there is to ask, and says in the window's message
 * line how it goes.  Nothing waits: the verbs go on when the window closes (startstopbatch.h), and
 * what fails is told over the main window then. */
#ifndef OPERATIONS_H
#define OPERATIONS_H

#include "form.h"
#include "startstopbatch.h"

/* The commands Start and Stop.  One link station and one mode have dialogs of their own (strtl,
 * stopl, actsd); a stop of anything else asks only when something active depends on it, and of a
 * node always (stopr).  What cannot be operated is passed over; when nothing can, the window says
 * why. */
NB_VOID vga_start_resources(VGA_DIALOG *window, const std::vector<VGA_RESOURCE> &resources);
NB_VOID vga_stop_resources(VGA_DIALOG *window, const std::vector<VGA_RESOURCE> &resources);

/* The same, when all is asked: what such a dialog over the window calls. */
NB_VOID vga_operate_over(VGA_DIALOG *window, const std::vector<VGA_RESOURCE> &resources,
                         VGA_OPERATION operation);

/* What the stop that is being asked about over the window is about: those that are still there. */
std::vector<VGA_RESOURCE> vga_asked_to_stop(const VGA_DIALOG *window);

/* It is not about the record any more, or about nothing: it was answered. */
NB_VOID vga_asked_no_more(const VGA_DIALOG *window, const NB_VOID *record);
NB_VOID vga_asked_no_more(const VGA_DIALOG *window);

/* For the texts of these dialogs. */

/* "ETH0", "2 ports: ETH0, ETH1", "60 LUs: LU01, LU02, ..." where not all fit, "nothing" for none.
 */
std::string vga_join_names(VGA_OPERABLE kind, const std::vector<std::string> &names);

/* Names of the PU and of the LUs on a link station: all, or those that are active. */
std::vector<std::string> vga_pus_on(const VGA_LS &ls, bool active);
std::vector<std::string> vga_lus_on(const VGA_LS &ls, bool active);

/* Puts a text into one of the texts of records::Operation, cut at its end. */
template <size_t Size> NB_VOID vga_put_text(NB_UCHAR (&field)[Size], const std::string &text) {
    v0_mb_strncpy(reinterpret_cast<NB_CHAR *>(field), text.c_str(), Size);
}

/* Return says Cancel while sessions would end. */
NB_VOID vga_make_careful(const VGA_FORM *form, NB_ULONG ending);

#endif
