/* The tables that the build makes of the dialogs' descriptions (resources/dialogs). */
#include "forms.inc"
