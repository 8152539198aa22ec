#include "snadefined.h"

#include "fieldtext.h"
#include "moderules.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace records {

namespace {

/* What a route through a node may be like at worst, best row first. */
struct NodeRow {
    NB_UCHAR congestion; /* flag */
    NB_UCHAR resistance;
    NB_UCHAR weight;
};

constexpr NodeRow node_rows[SNA_COS_ROWS] = {
    {0, 31, 5},   {0, 63, 10},  {0, 95, 20},   {0, 127, 40},
    {0, 159, 60}, {0, 191, 80}, {1, 223, 120}, {1, 255, 160},
};

/* What a link of a route may be like at worst.  Weights are 30 more from row to row. */
struct TgRow {
    NB_UCHAR capacity; /* the least */
    NB_UCHAR connect_cost;
    NB_UCHAR byte_cost;
    NB_UCHAR delay;
};

constexpr NB_UCHAR KBPS_9_6 = 0x30, KBPS_19_2 = 0x38, KBPS_56 = 0x43, MBPS_4 = 0x75;

constexpr TgRow connect_rows[SNA_COS_ROWS] = {
    {MBPS_4, 0, 0, NAP_DELAY_LAN},           {KBPS_56, 0, 0, NAP_DELAY_TELEPHONE},
    {KBPS_19_2, 0, 0, NAP_DELAY_TELEPHONE},  {KBPS_9_6, 0, 0, NAP_DELAY_TELEPHONE},
    {KBPS_19_2, 0, 0, NAP_DELAY_PACKET},     {KBPS_9_6, 128, 128, NAP_DELAY_PACKET},
    {KBPS_9_6, 196, 196, NAP_DELAY_MAXIMUM}, {0, 255, 255, NAP_DELAY_MAXIMUM},
};

constexpr TgRow interactive_rows[SNA_COS_ROWS] = {
    {MBPS_4, 0, 0, NAP_DELAY_LAN},
    {KBPS_56, 0, 0, NAP_DELAY_TELEPHONE},
    {KBPS_56, 128, 128, NAP_DELAY_TELEPHONE},
    {KBPS_19_2, 0, 0, NAP_DELAY_TELEPHONE},
    {KBPS_19_2, 128, 128, NAP_DELAY_PACKET},
    {KBPS_9_6, 0, 0, NAP_DELAY_PACKET},
    {KBPS_9_6, 196, 196, NAP_DELAY_PACKET},
    {0, 255, 255, NAP_DELAY_MAXIMUM},
};

constexpr TgRow batch_rows[SNA_COS_ROWS] = {
    {KBPS_56, 0, 0, NAP_DELAY_MAXIMUM},      {KBPS_19_2, 0, 0, NAP_DELAY_MAXIMUM},
    {KBPS_9_6, 0, 0, NAP_DELAY_MAXIMUM},     {KBPS_19_2, 64, 64, NAP_DELAY_MAXIMUM},
    {KBPS_9_6, 64, 64, NAP_DELAY_MAXIMUM},   {KBPS_9_6, 128, 128, NAP_DELAY_MAXIMUM},
    {KBPS_9_6, 196, 196, NAP_DELAY_MAXIMUM}, {0, 255, 255, NAP_DELAY_MAXIMUM},
};

struct CosRow {
    const char *name;
    NB_UCHAR priority; /* transmission priority: 0 low to 3 network */
    NB_UCHAR security; /* the least of its links */
    const TgRow *links;
};

constexpr CosRow cos_rows[SNA_COS] = {
    {"#CONNECT", 1, NAP_SEC_NONSECURE, connect_rows},
    {"CPSVCMG", 3, NAP_SEC_NONSECURE, connect_rows},
    {"SNASVCMG", 3, NAP_SEC_NONSECURE, connect_rows},
    {"#INTER", 2, NAP_SEC_NONSECURE, interactive_rows},
    {"#INTERSC", 2, NAP_SEC_PUBLIC_SWITCHED, interactive_rows},
    {"#BATCH", 0, NAP_SEC_NONSECURE, batch_rows},
    {"#BATCHSC", 0, NAP_SEC_PUBLIC_SWITCHED, batch_rows},
};

struct ModeRow {
    const char *name;
    const char *cos;
    NB_USHORT limit;   /* sessions: most that are negotiated, and most at first */
    NB_USHORT winners; /* least contention winners */
    NB_UCHAR window;   /* receive pacing */
    bool compressed;
    bool control_point;
};

constexpr ModeRow mode_rows[SNA_MODES] = {
    {"CPSVCMG", "CPSVCMG", 2, 1, 7, false, true},
    {"SNASVCMG", "SNASVCMG", 2, 1, 7, false, false},
    {"", "#CONNECT", 8, 4, 3, false, false},
    {"#INTER", "#INTER", 8, 4, 7, false, false},
    {"#INTERSC", "#INTERSC", 8, 4, 7, false, false},
    {"#BATCH", "#BATCH", 8, 4, 3, false, false},
    {"#BATCHSC", "#BATCHSC", 8, 4, 3, false, false},
    {"#INTERC", "#INTER", 8, 4, 7, true, false},
    {"#INTERCS", "#INTERSC", 8, 4, 7, true, false},
    {"#BATCHC", "#BATCH", 8, 4, 3, true, false},
    {"#BATCHCS", "#BATCHSC", 8, 4, 3, true, false},
    {"CPSVRMGR", "SNASVCMG", 2, 1, 7, false, true},
    {"QPCSUPP", "#CONNECT", 64, 32, 7, false, false},
};

template <size_t Size> void put_text(NB_UCHAR (&field)[Size], const char *text) {
    memcpy(field, text, std::min(strlen(text), Size - 1));
}

template <class Row, size_t Count>
const Row *row_of(const Row (&rows)[Count], const NB_UCHAR *name) {
    const std::string text = ebcdic_text(name, 8);
    const Row *found = std::find_if(std::begin(rows), std::end(rows),
                                    [&text](const Row &row) { return text == row.name; });
    return found == std::end(rows) ? nullptr : found;
}

} // namespace

std::array<NAP_COS_DATA, SNA_COS> sna_cos() {
    std::array<NAP_COS_DATA, SNA_COS> all;
    auto next = all.begin();
    for (const CosRow &row : cos_rows) {
        NAP_COS_DATA entry = {};
        put_ebcdic(entry.cos_name, sizeof entry.cos_name, row.name);
        put_text(entry.def_data.description, "SNA-defined class of service");
        entry.record_type = NAP_COS_SNA_DEFINED;
        entry.def_data.transmission_priority = row.priority;
        entry.def_data.sna_defined = 1;
        *next++ = entry;
    }
    return all;
}

std::array<NAP_COS_NODE_ROW_DATA, SNA_COS * SNA_COS_ROWS> sna_cos_node_rows() {
    std::array<NAP_COS_NODE_ROW_DATA, SNA_COS * SNA_COS_ROWS> all;
    auto next = all.begin();
    for (const CosRow &cos : cos_rows) {
        NAP_COS_NODE_ROW_DATA entry = {};
        put_ebcdic(entry.cos_name, sizeof entry.cos_name, cos.name);
        for (const NodeRow &row : node_rows) {
            entry.row_number++;
            entry.def_data.max_congestion = row.congestion;
            entry.def_data.max_resistance = row.resistance;
            entry.def_data.weight = row.weight;
            *next++ = entry;
        }
    }
    return all;
}

std::array<NAP_COS_TG_ROW_DATA, SNA_COS * SNA_COS_ROWS> sna_cos_tg_rows() {
    constexpr NB_UCHAR STEP = 30;
    constexpr NAP_TG_LIMITS any = {255, 255, 255, NAP_SEC_MAXIMUM, 255, {255, 255, 255}};
    std::array<NAP_COS_TG_ROW_DATA, SNA_COS * SNA_COS_ROWS> all;
    auto next = all.begin();
    for (const CosRow &cos : cos_rows) {
        NAP_COS_TG_ROW_DATA entry = {};
        put_ebcdic(entry.cos_name, sizeof entry.cos_name, cos.name);
        for (const TgRow *row = cos.links; row != cos.links + SNA_COS_ROWS; row++) {
            entry.row_number++;
            entry.def_data.min.capacity = row->capacity;
            entry.def_data.min.security = cos.security;
            entry.def_data.max = any;
            entry.def_data.max.connect_cost = row->connect_cost;
            entry.def_data.max.byte_cost = row->byte_cost;
            entry.def_data.max.propagation_delay = row->delay;
            entry.def_data.weight = static_cast<NB_UCHAR>(STEP * entry.row_number);
            *next++ = entry;
        }
    }
    return all;
}

std::array<NAP_MODE_DEF_DATA, SNA_MODES> sna_modes() {
    constexpr NB_USHORT USUAL_RU_SIZE = 4096;
    std::array<NAP_MODE_DEF_DATA, SNA_MODES> all;
    auto next = all.begin();
    for (const ModeRow &row : mode_rows) {
        NAP_MODE_DEF_DATA entry = {};
        NAP_MODE_CHARS &chars = entry.mode_chars;
        put_ebcdic(entry.mode_name, sizeof entry.mode_name, row.name);
        put_ebcdic(chars.cos_name, sizeof chars.cos_name, row.cos);
        put_text(chars.description, "SNA-defined mode");
        chars.default_ru_size = 1;
        chars.max_ru_size_upp = USUAL_RU_SIZE; /* for whoever sets default_ru_size back */
        chars.max_ru_size_low = LEAST_RU_SIZE;
        chars.receive_pacing_win = row.window;
        chars.max_neg_sess_lim = row.limit;
        chars.plu_mode_session_limit = row.limit;
        chars.min_conwin_src = row.winners;
        chars.compression = row.compressed ? 1 : 0;
        chars.max_compress_lvl = row.compressed ? NAP_COMPRESSION_LZ9 : NAP_COMPRESSION_NONE;
        chars.max_decompress_lvl = chars.max_compress_lvl;
        chars.mode_flags = row.control_point ? NAP_MODE_CONTROL_POINT : 0;
        chars.sna_defined = 1;
        *next++ = entry;
    }
    return all;
}

bool is_sna_cos(const NB_UCHAR *name) {
    return row_of(cos_rows, name) != nullptr;
}

bool is_sna_mode(const NB_UCHAR *name) {
    return row_of(mode_rows, name) != nullptr;
}

bool is_control_point_mode(const NB_UCHAR *name) {
    const ModeRow *row = row_of(mode_rows, name);
    return row != nullptr && row->control_point;
}

bool is_session_control_mode(const NB_UCHAR *name) {
    return ebcdic_text(name, 8) == "SNASVCMG";
}

} // namespace records
