/* The tables that the build makes of the windows' descriptions (resources/windows). */
#include "dialogids.h"
#include "globals.h"
#include "listwindow.h"
#include "messages.h"
#include "windows.h"
#include "windows.inc"
