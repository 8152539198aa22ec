/* The integer types that every layer shares: the same widths on every machine, so that a control
 * block has one layout wherever it is read.  Plain C.  A flag is an NB_USHORT that is 0 or 1. */
#ifndef NBTYPES_H
#define NBTYPES_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define NB_EXTERN_C_BEGIN            extern "C" {
#define NB_EXTERN_C_END              }
#define NB_STATIC_ASSERT(expression) static_assert(expression, #expression)
#else
#define NB_EXTERN_C_BEGIN
#define NB_EXTERN_C_END
#define NB_STATIC_ASSERT(expression) _Static_assert(expression, #expression)
#endif

typedef uint8_t NB_UCHAR;
typedef uint16_t NB_USHORT;
typedef int16_t NB_SHORT;
typedef uint32_t NB_ULONG;
typedef int32_t NB_LONG;
typedef char NB_CHAR;
typedef int NB_INT;
typedef void NB_VOID;

/* The IPv4 address record; the family is 0 (NAP_IPV4_ADDRESS), the octets stand in network order
 * and everything behind them is zero. */
#define NAP_IPV4_ADDRESS 0

typedef struct nb_ip_address {
    NB_UCHAR family;
    NB_UCHAR octets[4];
    NB_UCHAR reserved[19];
} NB_IP_ADDRESS;

NB_STATIC_ASSERT(sizeof(NB_IP_ADDRESS) == 24);

#endif
