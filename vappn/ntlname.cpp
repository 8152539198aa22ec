#include "ntlname.h"

#include <algorithm>
#include <cstring>

#include "nbbase.h"

namespace {

/* What the check of a fully qualified name found; lengths and start are set for valid names. */
struct FqName {
    NB_USHORT code;
    NB_USHORT network_id_length; /* 0: unqualified */
    NB_USHORT name_start;
    NB_USHORT name_length;
};

/* The position of the period, or the width when there is none. */
NB_USHORT find_period(const NB_UCHAR *fq) {
    return static_cast<NB_USHORT>(std::find(fq, fq + NTL_FQ_NAME_WIDTH, NTL_PERIOD) - fq);
}

/* The code of the first fault in the half in front of the period, or 0. */
NB_USHORT network_id_fault(const NB_UCHAR *fq, NB_USHORT length) {
    if (length > NTL_NAME_WIDTH) {
        return NTL_FQ_LONG_NETWORK_ID;
    }
    if (length == 0) {
        return NTL_FQ_EMPTY_NETWORK_ID;
    }
    return nba_check_ebcdic(NB_EBCDIC_TYPE_A, fq, length) ? 0 : NTL_FQ_BAD_NETWORK_ID;
}

/* The code of the first fault in the name part, which reaches from `name` to `end`, or 0. */
NB_USHORT name_fault(const NB_UCHAR *name, NB_USHORT length, const NB_UCHAR *end) {
    if (length > NTL_NAME_WIDTH) {
        return NTL_FQ_LONG_NAME;
    }
    if (length == 0) {
        return NTL_FQ_EMPTY_NAME;
    }
    if (!nba_check_ebcdic(NB_EBCDIC_TYPE_A, name, length)) {
        return NTL_FQ_BAD_NAME;
    }
    bool padded = std::all_of(name + length, end, [](NB_UCHAR code) { return code == NTL_BLANK; });
    return padded ? 0 : NTL_FQ_TEXT_BEHIND_BLANK;
}

FqName parse_fq_name(const NB_UCHAR *fq) {
    FqName result = {NTL_FQ_UNQUALIFIED, 0, 0, 0};
    NB_USHORT period = find_period(fq);
    if (period < NTL_FQ_NAME_WIDTH) {
        if (NB_USHORT fault = network_id_fault(fq, period)) {
            result.code = fault;
            return result;
        }
        result = {NTL_FQ_QUALIFIED, period, static_cast<NB_USHORT>(period + 1), 0};
    }
    const NB_UCHAR *name = fq + result.name_start;
    result.name_length =
        ntl_name_length(name, static_cast<NB_USHORT>(NTL_FQ_NAME_WIDTH - result.name_start));
    if (NB_USHORT fault = name_fault(name, result.name_length, fq + NTL_FQ_NAME_WIDTH)) {
        result.code = fault;
    }
    return result;
}

NB_VOID copy_padded(const NB_UCHAR *text, NB_USHORT length, NB_UCHAR *name) {
    std::memset(name, NTL_BLANK, NTL_NAME_WIDTH);
    std::memcpy(name, text, length);
}

} // namespace

NB_USHORT ntl_name_length(const NB_UCHAR *name, NB_USHORT width) {
    return static_cast<NB_USHORT>(std::find(name, name + width, NTL_BLANK) - name);
}

NB_USHORT ntl_check_name(NB_USHORT char_class, const NB_UCHAR *name, NB_USHORT length) {
    while (length > 0 && name[length - 1] == NTL_BLANK) {
        length--;
    }
    return length == 0 ? NB_USHORT{1} : nba_check_ebcdic(char_class, name, length);
}

NB_USHORT ntl_check_fq_name(const NB_UCHAR *fq) {
    return parse_fq_name(fq).code;
}

NB_USHORT ntl_split_fq_name(const NB_UCHAR *fq, NB_UCHAR *network_id, NB_UCHAR *name) {
    const FqName parts = parse_fq_name(fq);
    std::memset(network_id, 0, NTL_NAME_WIDTH);
    std::memset(name, 0, NTL_NAME_WIDTH);
    if (parts.code == NTL_FQ_QUALIFIED) {
        copy_padded(fq, parts.network_id_length, network_id);
    }
    if (parts.code == NTL_FQ_QUALIFIED || parts.code == NTL_FQ_UNQUALIFIED) {
        copy_padded(fq + parts.name_start, parts.name_length, name);
    }
    return parts.code;
}

NB_VOID ntl_make_fq_name(const NB_UCHAR *network_id, const NB_UCHAR *name, NB_UCHAR *fq) {
    NB_USHORT length = ntl_name_length(network_id, NTL_NAME_WIDTH);
    std::memset(fq, NTL_BLANK, NTL_FQ_NAME_WIDTH);
    std::memcpy(fq, network_id, NTL_NAME_WIDTH);
    fq[length] = NTL_PERIOD;
    std::memcpy(fq + length + 1, name, NTL_NAME_WIDTH);
}

NB_VOID ntl_change_local_name(const NB_UCHAR *fq, const NB_UCHAR *new_name, NB_UCHAR *out) {
    NB_UCHAR result[NTL_FQ_NAME_WIDTH];
    std::memset(result, NTL_BLANK, sizeof result);
    NB_USHORT period = find_period(fq);
    if (period == NTL_FQ_NAME_WIDTH) {
        std::memcpy(result, new_name, NTL_NAME_WIDTH);
    } else if (period > NTL_NAME_WIDTH) {
        std::memset(result, 0, sizeof result);
    } else {
        std::memcpy(result, fq, period + 1U);
        std::memcpy(result + period + 1, new_name, NTL_NAME_WIDTH);
    }
    std::memcpy(out, result, sizeof result);
}

NB_VOID ntl_make_internal_name(NB_UCHAR *out, NB_USHORT out_width, const NB_UCHAR *in,
                               NB_USHORT in_length) {
    NB_USHORT used = 0;
    for (NB_USHORT position = 0; position < in_length && used < out_width; position++) {
        if (in[position] != NTL_BLANK) {
            out[used++] = in[position];
        }
    }
    std::fill(out + used, out + out_width, NB_UCHAR{NTL_BLANK});
}
