/* The program's messages: the table that start-up fills from the catalogue, their names in the
 * code, and the formatter.  Texts are in the locale's character set. */
#ifndef MESSAGES_H
#define MESSAGES_H

#include "nbtypes.h"

#define VGA_MESSAGE_SET   2
#define VGA_MESSAGE_COUNT 1483

extern NB_INT gvga_catalog; /* -1: closed */
extern NB_INT gvga_setid;   /* -1 until the catalogue is open, then VGA_MESSAGE_SET */

/* Entry 0 is unused; all are null until vga_load_messages.  The texts lie in gvga_message_memory.
 */
extern const NB_CHAR *gvga_messages[VGA_MESSAGE_COUNT + 1];
extern NB_CHAR *gvga_message_memory;

enum VGA_MESSAGE : NB_USHORT {
    VGA_MSG_VERB_FAILED = 167,
    VGA_MSG_CONFIRM_TITLE = 185,
    VGA_MSG_NO_BUTTON = 190,
    VGA_MSG_HELP_CLOSE = 204,
    VGA_MSG_CONFIRM_EXIT = 205,
    VGA_MSG_HELP_CONTENTS = 206,
    VGA_MSG_LAST_SERVER = 207,
    VGA_MSG_DIALOG_FAILED = 208,
    VGA_MSG_ERROR_TITLE = 210,
    VGA_MSG_NODE_NOT_ACTIVE = 211,
    VGA_MSG_HELP_TITLE = 212,
    VGA_MSG_INFO_TITLE = 213,
    VGA_MSG_NO_MASTER = 217,
    VGA_MSG_OK_TO_ALL_BUTTON = 221,
    VGA_MSG_CONNECTION_LOST = 223,
    VGA_MSG_FATAL_VERB = 226,
    VGA_MSG_VERB_REFUSED = 227,
    VGA_MSG_WEB_PAGE = 228,
    VGA_MSG_WEB_SUPPORT_PAGE = 229,
    VGA_MSG_CP_LU_DESCRIPTION = 230,
    VGA_MSG_SNA_MODE_DESCRIPTION = 234,
    VGA_MSG_NODE_DEAD = 300,
    VGA_MSG_SYSTEM_SHUTDOWN = 301,
    VGA_MSG_BAD_ARGUMENT = 599,
    VGA_MSG_BIG_FONT = 600,
    VGA_MSG_BIG_SUFFIX = 601,
    VGA_MSG_FATAL_UNEXPECTED = 602,
    VGA_MSG_START_UP_FAILED = 603,
    VGA_MSG_FATAL_INTERNAL = 604,
    VGA_MSG_UNAVAILABLE = 605,
    VGA_MSG_READ_ONLY = 606,
    VGA_MSG_SMALL_FONT = 607,
    VGA_MSG_FATAL_OPEN_FILE = 608,
    VGA_MSG_USAGE = 609,
    VGA_MSG_NO_BIG_ICONS = 610,
    VGA_MSG_BAD_SIZE = 611,
    VGA_MSG_SMALL_SCREEN_FONT = 612,
    VGA_MSG_NO_RTP_CONNECTION = 692,
    VGA_MSG_FORM_RECORD_GONE = 750,
    VGA_MSG_FORM_RECORD_GONE_DEFINE = 751,
    VGA_MSG_FORM_TITLE_GONE = 752,
    VGA_MSG_MDSLS_LIMIT_EMPTY = 760,
    VGA_MSG_MDSLS_LIMIT_BAD = 761,
    VGA_MSG_MDSLS_WINNERS_EMPTY = 762,
    VGA_MSG_MDSLS_WINNERS_BAD = 763,
    VGA_MSG_MDSLS_LOSERS_EMPTY = 764,
    VGA_MSG_MDSLS_LOSERS_BAD = 765,
    VGA_MSG_MDSLS_LIMIT_HINT = 766,
    VGA_MSG_MDSLS_WINNERS_HINT = 767,
    VGA_MSG_MDSLS_LOSERS_HINT = 768,
    VGA_MSG_MDSLS_RESET = 769,
    VGA_MSG_MDSLS_GONE = 770,
    VGA_MSG_DEFINE_NODE_FIRST = 885,
    VGA_MSG_NODE_ACTIVE = 1216,
    VGA_MSG_NODE_STARTING = 1217,
    VGA_MSG_NODE_STOPPED = 1218,
    VGA_MSG_NODE_STOPPING = 1219,
    VGA_MSG_NODE_UNCONFIGURED = 1220,
    VGA_MSG_BACKUP_ROLE = 1223,
    VGA_MSG_NODE_BACK_LEVEL = 1224,
    VGA_MSG_MASTER_ROLE = 1225,
    VGA_MSG_NO_ROLE = 1226,
    VGA_MSG_READING = 1240,
    VGA_MSG_READ = 1241,
    VGA_MSG_THE_DOMAIN = 1242,
    VGA_MSG_THE_NODE = 1243,
    VGA_MSG_NODEW_READY = 1244,
    VGA_MSG_NODE_REFUSES = 1246,
    VGA_MSG_NODEW_NOT_CONNECTED = 1247,
    VGA_MSG_DEFINED = 1256,
    VGA_MSG_UNKNOWN_STATUS = 1259,
    VGA_MSG_LABEL_OF_SESSIONS = 1265,
    VGA_MSG_DLUR_TITLE = 1269,
    VGA_MSG_PRIMARY_LINES_TITLE = 1270,
    VGA_MSG_ANY_PEER = 1285,
    VGA_MSG_UNKNOWN_NODE_TYPE = 1296,
    VGA_MSG_ANY_PARTNER = 1297,
    VGA_MSG_NETWORK_TITLE = 1299,
    VGA_MSG_NODEW_TITLE = 1300,
    VGA_MSG_NODEW_EMPTY_TITLE = 1301,
    VGA_MSG_NODEW_CONNECTIVITY = 1302,
    VGA_MSG_NODEW_LOCAL_LUS = 1303,
    VGA_MSG_NODEW_REM_SYS = 1304,
    VGA_MSG_NODEW_HELP_START = 1305,
    VGA_MSG_NODEW_HELP_STOP = 1306,
    VGA_MSG_NODEW_HELP_ADD = 1307,
    VGA_MSG_NODEW_HELP_DELETE = 1308,
    VGA_MSG_NODEW_HELP_ZOOM = 1309,
    VGA_MSG_NODEW_HELP_STATUS = 1310,
    VGA_MSG_NODEW_HELP_COPY = 1311,
    VGA_MSG_NODEW_SELECT_FIRST = 1312,
    VGA_MSG_NODEW_NOT_FOR_THIS = 1313,
    VGA_MSG_NODEW_LOOK_ONLY = 1314,
    VGA_MSG_NODEW_NO_NODE = 1315,
    VGA_MSG_NODEW_STOPPED = 1316, /* and the other states of a node, up to 1321 */
    VGA_MSG_NODEW_NODE_LINE = 1322,
    VGA_MSG_NODEW_NODE_LOST = 1323,
    VGA_MSG_NODEW_ACTIVE_ALREADY = 1325,
    VGA_MSG_NODEW_NOT_ACTIVE = 1326,
    VGA_MSG_NODEW_NOT_STARTABLE = 1327,
    VGA_MSG_NODEW_NODE_NOT_ACTIVE = 1328,
    VGA_MSG_NODEW_ONE_ONLY = 1329,
    VGA_MSG_HEAD_CONNECTION = 1330,
    VGA_MSG_HEAD_STATUS = 1331,
    VGA_MSG_HEAD_REMOTE_NODE = 1332,
    VGA_MSG_HEAD_LINK_STATION = 1333,
    VGA_MSG_HEAD_COS = 1334,
    VGA_MSG_HEAD_SESSIONS = 1335,
    VGA_MSG_HEAD_ROUTE = 1336,
    VGA_MSG_HEAD_ROUTING = 1337,
    VGA_MSG_HEAD_DESCRIPTION = 1338,
    VGA_MSG_HEAD_LOCAL_LU = 1339,
    VGA_MSG_HEAD_PARTNER_LU = 1340,
    VGA_MSG_HEAD_VERIFICATION = 1341,
    VGA_MSG_HEAD_CLIENT = 1342,
    VGA_MSG_HEAD_PORT = 1343,
    VGA_MSG_HEAD_DISPLAY_LU = 1344,
    VGA_MSG_HEAD_PRINTER_LU = 1345,
    VGA_MSG_HEAD_PROTOCOL = 1346,
    VGA_MSG_HEAD_SSL = 1347,
    VGA_MSG_HEAD_HOST = 1348,
    VGA_MSG_HEAD_HOST_PORT = 1349,
    VGA_MSG_HEAD_CLIENT_SSL = 1350,
    VGA_MSG_HEAD_HOST_SSL = 1351,
    VGA_MSG_HEAD_NUMBER = 1352,
    VGA_MSG_HEAD_MODE = 1353,
    VGA_MSG_HEAD_REMOTE_ADDRESS = 1354,
    VGA_MSG_HEAD_SET_UP_BY = 1355,
    VGA_MSG_HEAD_USER = 1356,
    VGA_MSG_HEAD_SESSION = 1357,
    VGA_MSG_HEAD_LU = 1358,
    VGA_MSG_HEAD_NODE = 1359,
    VGA_MSG_ANY_PROGRAM = 1367,
    VGA_MSG_OPEN = 1368,
    VGA_MSG_TIMES_OUT = 1369,
    VGA_MSG_HELD = 1370,
    VGA_MSG_DELAYED_LOGON = 1371,
    VGA_MSG_BLANK_NAME = 1372,
    VGA_MSG_DEFAULT_RU = 1373,
    VGA_MSG_ENABLED = 1374,
    VGA_MSG_DISABLED = 1375,
    VGA_MSG_PASSWORD = 1376,
    VGA_MSG_NO_SECURITY = 1377,
    VGA_MSG_ANY_LU = 1378,
    VGA_MSG_ONE_USER = 1384,
    VGA_MSG_GROUP = 1385,
    VGA_MSG_NO_LIMIT = 1386,
    VGA_MSG_DISPLAY_5250 = 1387,
    VGA_MSG_PRINTER_5250 = 1388,
    VGA_MSG_AVAILABLE = 1389,
    VGA_MSG_LU_MISSING = 1390,
    VGA_MSG_ANY_NODE = 1391,
    VGA_MSG_DEFAULT = 1392,
    VGA_MSG_TN3270 = 1393,
    VGA_MSG_TN3270E = 1394,
    VGA_MSG_PARTNER = 1398,
    VGA_MSG_THIS_NODE = 1399,
    VGA_MSG_LABEL_NAU = 1400,
    VGA_MSG_LABEL_STATION_NAU = 1401,
    VGA_MSG_LABEL_NAU_RANGE = 1402,
    VGA_MSG_LABEL_COS_NAME = 1403,
    VGA_MSG_LABEL_SESSIONS = 1404,
    VGA_MSG_LABEL_RU_RANGE = 1405,
    VGA_MSG_LABEL_LIST = 1406,
    VGA_MSG_LABEL_PROFILE = 1407,
    VGA_MSG_LABEL_USERS = 1408,
    VGA_MSG_LABEL_LUS = 1409,
    VGA_MSG_LABEL_NODES = 1410,
    VGA_MSG_LABEL_AT_MOST = 1411,
    VGA_MSG_NODEW_NOT_DEFINED = 1412,
    VGA_MSG_NODEW_NOT_SUPPORTED = 1413,
    VGA_MSG_NODEW_NOT_INSTALLED = 1414,
    VGA_MSG_NODEW_WRONG_STATE = 1415,
    VGA_MSG_NODEW_MARK_FIRST = 1416,
    VGA_MSG_NODEW_LATER = 1417,
    VGA_MSG_NOT_CONNECTED_SINCE = 1418,
    VGA_MSG_NOT_CONNECTED = 1419,
    VGA_MSG_NOT_CONNECTED_NOT_RUNNING = 1420,
    VGA_MSG_NOT_CONNECTED_REFUSED = 1421,
    VGA_MSG_CONNECTING = 1422,
    VGA_MSG_NODEW_NODE_NOT_CONNECTED = 1423,
    VGA_MSG_CLOSING = 1424,
    VGA_MSG_NODEW_CLOSING = 1425,
    VGA_MSG_FONT_NOT_FOUND = 1439,
    VGA_MSG_LOCAL_NODE_NOT_ACTIVE = 1441,
    VGA_MSG_FONT_PARTIAL = 1442,
    VGA_MSG_FONT_DEFAULT_PARTIAL = 1443,
    VGA_MSG_FONT_NONE = 1444,
    VGA_MSG_HEX_TP_NAME = 1445,
    VGA_MSG_IP_ADDRESS = 1446,
    VGA_MSG_IP_ADDRESS_PORT = 1447,
    VGA_MSG_CHOOSER_NOTHING = 1456,
    VGA_MSG_CHOOSER_COUNT = 1457,
    VGA_MSG_CHOOSER_NO_MATCH = 1458,
    VGA_MSG_CHOOSER_HINT = 1459,
    VGA_MSG_ROW_LIST_FULL = 1460,
    VGA_MSG_ROW_LIST_EMPTY = 1461,
    VGA_MSG_NO_NODE = 1482,
};

/* Opens the catalogue and loads every message.  Returns 1, or 0 with the exit request made
 * (start-up failure) and a problem record written; nothing is kept open then. */
NB_USHORT vga_load_messages(NB_VOID);

/* Closes the catalogue and frees the texts; the table is empty again. */
NB_VOID vga_unload_messages(NB_VOID);

/* The text of a message, never null: an empty text for a number outside 1..VGA_MESSAGE_COUNT or
 * before the messages were loaded. */
const NB_CHAR *vga_message(NB_USHORT message);

/* The help topic of a message that stands in a box (a literal); null: it has none. */
const NB_CHAR *vga_message_help(NB_USHORT message);

/* Formats a message into `buffer` of `size` bytes, terminated, cut between characters where it does
 * not fit.  Returns the length written.
 *
 * In the text %1 to %9 stand for the arguments, whose types `types` lists, separated by blanks:
 *   s text | i, l decimal | x, lx hexadecimal with 4 and 8 digits (NB_LONG or NB_ULONG)
 *   ca NB_INT width, then an array padded with blanks or NULs, shown without the padding
 *   cs NB_INT width, then an array that ends at its first NUL
 * "%%" is a per cent sign; anything else behind "%" (a column stop) is passed through.  An argument
 * that the text does not use is skipped; one that it lacks shows as nothing. */
NB_USHORT vga_print_msg(NB_CHAR *buffer, NB_USHORT size, NB_USHORT message, const NB_CHAR *types,
                        ...);

/* As vga_print_msg, for a text that is not in the table yet (or a va_list at hand). */
NB_USHORT vga_format_text(NB_CHAR *buffer, NB_USHORT size, const NB_CHAR *text,
                          const NB_CHAR *types, __builtin_va_list arguments);

#endif
