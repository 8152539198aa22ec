/* Desktop manners: what today's window managers and desktops want to know of a window beyond what
 * the toolkit tells them, which is name, transient parent, class, machine and the close protocol in
 * the forms of old.
 *
 * Every shell of the display that a window manager sees is dealt with, whoever makes it and sets
 * its title: the toolkit tells when a shell gets its window and when its resources change.  So the
 * hints are there before the window is mapped, and a title is set as ever, with XmNtitle or
 * XmNdialogTitle.
 *
 *   _NET_WM_NAME, _NET_WM_ICON_NAME   the titles in UTF-8
 *   _NET_WM_PID, WM_CLIENT_MACHINE    so that a hung program can be found
 *   _NET_WM_PING                      answered, so that one that does not hang is left alone
 *   _NET_WM_ICON                      gvga_window_icon, made at build time from window.svg
 *   _NET_WM_STATE_DEMANDS_ATTENTION   and the urgency flag of old, for a window that is urgent
 *   _NET_WM_WINDOW_TYPE               DIALOG for shells that are transient, else NORMAL
 *
 * One round trip in all, for the atoms. */
#ifndef DESKTOPHINTS_H
#define DESKTOPHINTS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>
#include <string>

/* Begins with that for gvga_display; the second call for a display, and one without a display, do
 * nothing.  Shells that have their windows already are left as they are. */
NB_VOID vga_watch_shells(NB_VOID);

/* Has the window manager point the window of a shell out to the operator, or no longer.  Nothing
 * for a shell without a window. */
NB_VOID vga_set_urgent(Widget shell, NB_USHORT on);

/* The text, which is in the character set of the current locale, in UTF-8.  A byte that is no
 * character there becomes U+FFFD. */
std::string vga_utf8_from_locale(const NB_CHAR *text);

#endif
