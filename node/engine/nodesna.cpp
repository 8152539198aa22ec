#include "nodesna.h"

#include "nodefield.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace node {

namespace {

struct CosRow {
    const char *name;
    NB_UCHAR priority; /* transmission priority: 0 low to 3 network */
};

constexpr CosRow cos_rows[] = {
    {"#CONNECT", 1}, {"CPSVCMG", 3}, {"SNASVCMG", 3}, {"#INTER", 2},
    {"#INTERSC", 2}, {"#BATCH", 0},  {"#BATCHSC", 0},
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

constexpr ModeRow mode_rows[] = {
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

std::vector<NAP_COS_DATA> sna_cos() {
    std::vector<NAP_COS_DATA> all;
    for (const CosRow &row : cos_rows) {
        NAP_COS_DATA entry = {};
        put_ebcdic(entry.cos_name, sizeof entry.cos_name, row.name);
        put_text(entry.def_data.description, "SNA-defined class of service");
        entry.record_type = NAP_COS_SNA_DEFINED;
        entry.def_data.transmission_priority = row.priority;
        entry.def_data.num_of_node_rows = 8;
        entry.def_data.num_of_tg_rows = 8;
        entry.def_data.sna_defined = 1;
        all.push_back(entry);
    }
    return all;
}

std::vector<NAP_MODE_DEF_DATA> sna_modes() {
    std::vector<NAP_MODE_DEF_DATA> all;
    for (const ModeRow &row : mode_rows) {
        NAP_MODE_DEF_DATA entry = {};
        NAP_MODE_CHARS &chars = entry.mode_chars;
        put_ebcdic(entry.mode_name, sizeof entry.mode_name, row.name);
        put_ebcdic(chars.cos_name, sizeof chars.cos_name, row.cos);
        put_text(chars.description, "SNA-defined mode");
        chars.default_ru_size = 1;
        chars.receive_pacing_win = row.window;
        chars.max_neg_sess_lim = row.limit;
        chars.plu_mode_session_limit = row.limit;
        chars.min_conwin_src = row.winners;
        chars.compression = row.compressed ? 1 : 0;
        chars.max_compress_lvl = row.compressed ? NAP_COMPRESSION_LZ9 : NAP_COMPRESSION_NONE;
        chars.max_decompress_lvl = chars.max_compress_lvl;
        chars.mode_flags = row.control_point ? NAP_MODE_CONTROL_POINT : 0;
        chars.sna_defined = 1;
        all.push_back(entry);
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

} // namespace node
