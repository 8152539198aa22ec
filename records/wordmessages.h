/* The messages that windows show for the words of fields: numbers of the catalogue's texts.  The
 * program's other messages are named in messages.h. */
#ifndef WORDMESSAGES_H
#define WORDMESSAGES_H

#include "nbtypes.h"

namespace records {

enum WordMessage : NB_USHORT {
    MSG_BRANCH_NETWORK_NODE = 813,
    MSG_ACTIVE = 1250,
    MSG_INACTIVE = 1251,
    MSG_STARTING = 1252,
    MSG_STOPPING = 1253,
    MSG_RESETTING = 1255,
    MSG_IN_USE = 1257,
    MSG_SSCP = 1258,
    MSG_SDLC = 1271,
    MSG_QLLC = 1272,
    MSG_TOKEN_RING = 1273,
    MSG_FDDI = 1274,
    MSG_ETHERNET = 1275,
    MSG_FRAME_RELAY = 1276,
    MSG_CHANNEL = 1277,
    MSG_IP = 1278,
    MSG_MPC = 1279,
    MSG_MPC_PLUS = 1280,
    MSG_HOST = 1281,
    MSG_DOWNSTREAM = 1282,
    MSG_PEER_NN = 1283,
    MSG_PEER_EN = 1284,
    MSG_DISPLAY_3270_2 = 1286,
    MSG_DISPLAY_3270_3 = 1287,
    MSG_DISPLAY_3270_4 = 1288,
    MSG_DISPLAY_3270_5 = 1289,
    MSG_PRINTER_3270 = 1290,
    MSG_SCS_PRINTER = 1291,
    MSG_UNRESTRICTED = 1292,
    MSG_NETWORK_NODE = 1293,
    MSG_END_NODE = 1294,
    MSG_LEN_NODE = 1295,
    MSG_PEER_LEN = 1298,
    MSG_RTP_LISTENING = 1360,
    MSG_RTP_CALLING = 1361,
    MSG_RTP_CONNECTED = 1362,
    MSG_RTP_SWITCHING = 1363,
    MSG_RTP_ENDING = 1364,
    MSG_LEASED = 1365,
    MSG_SWITCHED = 1366,
    MSG_QUEUED = 1379,
    MSG_QUEUED_BROADCAST = 1380,
    MSG_NOT_QUEUED = 1381,
    MSG_BASIC = 1382,
    MSG_ENHANCED = 1383,
    MSG_NO = 1395,
    MSG_YES = 1396,
    MSG_CERTIFICATE = 1397,
};

} // namespace records

#endif
