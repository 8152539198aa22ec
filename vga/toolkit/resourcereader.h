/* Readers of the program's own X resources.  A name is looked up as "Quiladmin" followed by the
 * name given, as name and as class, in gvga_resource_database; without a database nothing is found.
 */
#ifndef RESOURCEREADER_H
#define RESOURCEREADER_H

#include "nbtypes.h"

/* Copies the resource into `buffer`, which has max + 1 bytes.  Returns 1 when it was found and its
 * size, as the database counts it, is at most `max`.  Else 0, with at most `max` bytes of the
 * default copied: with its terminator when nothing was found, without one when the value was too
 * long (the byte behind is then a NUL of this function's).  Names of 31 characters or more are not
 * looked up. */
NB_USHORT vga_get_resource_string(const NB_CHAR *name, const NB_CHAR *default_value,
                                  NB_CHAR *buffer, NB_USHORT max);

/* 1 when the value holds a "Y" of either case, 0 when it does not, the default when there is none.
 */
NB_USHORT vga_get_resource_bool(const NB_CHAR *name, NB_USHORT default_value);

/* A number in C notation (0x, leading 0); blanks around it, which a resource file keeps, are
 * allowed.  The default when there is none, when it cannot be read
 * and, where `min` differs from `max`, when it is outside [min, max]. */
NB_ULONG vga_get_resource_ulong(const NB_CHAR *name, NB_ULONG default_value, NB_ULONG min,
                                NB_ULONG max);

/* Reads every option into the globals of globals.h. */
NB_VOID vga_get_options(NB_VOID);

/* Has the toolkit convert every colour that the resource database names for the program, so that it
 * warns of those that do not exist: when windows are fetched, its warnings are discarded.  A colour
 * that was converted costs nothing when a widget asks for it. */
NB_VOID vga_warn_of_colours(NB_VOID);

/* Reads gvga_web_browser again. */
NB_VOID vga_get_web_browser_path(NB_VOID);

#endif
