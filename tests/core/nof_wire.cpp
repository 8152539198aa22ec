// The parts of the verb interface library that need no socket: taking frames apart, correlators,
// and the verb table.

#include "../../platform/nof/answer.h"
#include "../../platform/nof/flights.h"
#include "../../platform/nof/framereader.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <vector>

namespace {

using Bytes = std::vector<NB_UCHAR>;

// A header alone is enough to refuse it: nothing waits for gigabytes.
TEST(FrameReader, RefusesBadLengthsAtOnce) {
    const struct {
        NB_ULONG length, vcb_length, data_length;
    } cases[] = {
        {0, 0, 0},
        {23, 12, 0},
        {24, 0, 0},
        {32, 8, 0},
        {36, 12, 4},
        {40, 12, 0},
        {38, 14, 0},
        {38, 12, 2},
        {0xFFFFFFFF, 12, 0xFFFFFFFF - 36},
        {32, 12, 0xFFFFFFFC},
        {24 + NOF_MAX_VCB + 4, NOF_MAX_VCB + 4, 0},
        {24 + 12 + NOF_MAX_DATA + 4, 12, NOF_MAX_DATA + 4},
        {24 + 12, 0x80000000, 0x8000000C},
    };
    for (const auto &c : cases) {
        nof::FrameReader reader;
        ASSERT_TRUE(reader.start());
        NOF_FRAME header{};
        header.length = c.length;
        header.kind = NOF_FRAME_ANSWER;
        header.vcb_length = c.vcb_length;
        header.data_length = c.data_length;
        size_t room = 0;
        std::memcpy(reader.space(room), &header, sizeof(header));
        reader.received(sizeof(header));
        nof::Frame frame;
        EXPECT_EQ(reader.next(frame), nof::Read::garbage) << c.length << " " << c.vcb_length;
        EXPECT_EQ(reader.next(frame), nof::Read::garbage);
    }
}

NB_VOID no_callback(NB_ULONG, NB_VOID *, NB_ULONG) {}

nof::Verb verb_numbered(NB_ULONG number, NB_USHORT opcode) {
    return {1, nullptr, no_callback, number, nap_find_verb(opcode), nullptr, 0};
}

// A frame around a block and data, as the reader would hand it out.
nof::Frame frame_of(const Bytes &block, const Bytes &data) {
    NOF_FRAME header{};
    header.vcb_length = static_cast<NB_ULONG>(block.size());
    header.data_length = static_cast<NB_ULONG>(data.size());
    return {header, block.data(), data.data()};
}

template <typename Record> Bytes to_bytes(const Record &record) {
    const NB_UCHAR *first = reinterpret_cast<const NB_UCHAR *>(&record);
    return Bytes(first, first + sizeof(record));
}

TEST(Answer, ListsMustAddUp) {
    const struct {
        const char *name;
        Bytes data;
        NB_USHORT num_entries;
        NB_ULONG total;
        NB_USHORT primary_rc;
        bool sound;
    } cases[] = {
        {"two entries", {4, 0, 1, 1, 8, 0, 1, 1, 1, 1, 1, 1}, 2, 12, 0, true},
        {"none", {}, 0, 0, 0, true},
        {"refused, with the request's count", {}, 9, 77, NAP_STATE_CHECK, true},
        {"a full buffer", Bytes{16, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, 1, 16, 0, true},
        {"more than the buffer",
         {4, 0, 1, 1, 16, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1},
         2,
         20,
         0,
         false},
        {"too many entries", {4, 0, 1, 1, 4, 0, 1, 1}, 3, 8, 0, false},
        {"too few entries", {4, 0, 1, 1, 4, 0, 1, 1}, 1, 8, 0, false},
        {"entries without data", {}, 1, 0, 0, false},
        {"another total", {4, 0, 1, 1}, 1, 8, 0, false},
        {"no length", {0, 0, 0, 0, 0, 0, 0, 0}, 1, 8, 0, false},
        {"a length below the smallest", {2, 0, 2, 0}, 2, 4, 0, false},
        {"an odd length", {6, 0, 1, 1, 1, 1, 2, 0}, 1, 8, 0, false},
        {"an entry over the end", {4, 0, 1, 1, 8, 0, 1, 1}, 2, 8, 0, false},
        {"a length of 64 K", {0xFC, 0xFF, 1, 1}, 1, 4, 0, false},
        {"refused, with data", {4, 0, 1, 1}, 1, 4, NAP_STATE_CHECK, false},
        {"the code of indications", {}, 0, 0, NAP_INDICATION, false},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        Bytes buffer(16, 0xEE);
        const Bytes untouched = buffer;
        NAP_QUERY_LIST block{};
        block.opcode = NAP_QUERY_LS;
        block.num_entries = 5;
        const Bytes issued = to_bytes(block);
        nof::Verb verb = verb_numbered(1, NAP_QUERY_LS);
        verb.vcb = reinterpret_cast<NB_UCHAR *>(&block);
        verb.buffer = buffer.data();
        verb.buffer_size = static_cast<NB_ULONG>(buffer.size());
        NAP_QUERY_LIST answer = block;
        answer.num_entries = c.num_entries;
        answer.total_buf_size = c.total;
        answer.primary_rc = c.primary_rc;
        const Bytes bytes = to_bytes(answer);
        ASSERT_EQ(nof::fill_answer(verb, frame_of(bytes, c.data)), c.sound);
        if (!c.sound) {
            EXPECT_EQ(to_bytes(block), issued);
            EXPECT_EQ(buffer, untouched);
            continue;
        }
        EXPECT_EQ(block.primary_rc, c.primary_rc);
        EXPECT_EQ(block.num_entries, c.primary_rc ? 0 : c.num_entries);
        EXPECT_EQ(block.total_buf_size, c.data.size());
        EXPECT_TRUE(std::equal(c.data.begin(), c.data.end(), buffer.begin()));
    }
}

TEST(Answer, BlocksMustBeTheVerbs) {
    NAP_QUERY_NODE_VERB block{};
    block.opcode = NAP_QUERY_NODE;
    nof::Verb verb = verb_numbered(1, NAP_QUERY_NODE);
    verb.vcb = reinterpret_cast<NB_UCHAR *>(&block);
    NAP_QUERY_NODE_VERB answer = block;
    answer.format = answer.attributes = 3;
    answer.node_id = 0x05D12345;
    const Bytes good = to_bytes(answer);
    EXPECT_FALSE(nof::fill_answer(verb, frame_of(good, Bytes(4)))) << "data for no buffer";
    EXPECT_FALSE(nof::fill_answer(verb, frame_of(Bytes(good.begin(), good.end() - 4), {})));
    Bytes longer = good;
    longer.resize(good.size() + 4);
    EXPECT_FALSE(nof::fill_answer(verb, frame_of(longer, {})));
    Bytes other = good;
    other[0] ^= 1;
    EXPECT_FALSE(nof::fill_answer(verb, frame_of(other, {})));
    EXPECT_EQ(block.node_id, 0U);
    EXPECT_TRUE(nof::fill_answer(verb, frame_of(good, {})));
    EXPECT_EQ(block.node_id, 0x05D12345U);
    EXPECT_EQ(block.format, 0);
    EXPECT_EQ(block.attributes, 0);
}

// Every verb of the table as an indication: only indications, and copies of what changes something.
TEST(Answer, WhatMayBeIndicated) {
    for (const NAP_VERB &row : gnap_verbs) {
        SCOPED_TRACE(row.name);
        NAP_VCB header{};
        header.opcode = row.opcode;
        header.primary_rc = NAP_INDICATION;
        Bytes block(row.block_size, 7);
        std::memcpy(block.data(), &header, sizeof(header));
        NB_UCHAR copy[NOF_MAX_VCB];
        const bool told = NAP_KIND_COPIED(row.kind) || row.kind == NAP_KIND_INDICATION;
        EXPECT_EQ(nof::copy_indication(frame_of(block, {}), copy), told);
        EXPECT_FALSE(nof::copy_indication(frame_of(block, Bytes(4)), copy));
        Bytes longer = block;
        longer.resize(block.size() + 4);
        EXPECT_FALSE(nof::copy_indication(frame_of(longer, {}), copy));
        block[offsetof(NAP_VCB, primary_rc)] = 0;
        EXPECT_FALSE(nof::copy_indication(frame_of(block, {}), copy));
    }
}

TEST(Flights, CorrelatorsSkipZeroAndWhatIsLive) {
    nof::Flights flights(0xFFFFFFFF);
    const nof::Verb *last = flights.add(verb_numbered(1, NAP_START_LS));
    ASSERT_EQ(last->correlator, 0xFFFFFFFFU);
    nof::Verb *sink = flights.add(verb_numbered(2, NAP_REGISTER_INDICATION_SINK));
    ASSERT_EQ(sink->correlator, 1U);
    flights.now_sent(*sink);
    flights.now_sink(*sink);
    EXPECT_EQ(flights.find(1, nof::Place::sent), nullptr);
    EXPECT_EQ(flights.find(1, nof::Place::sink)->user_data, 2U);
    EXPECT_EQ(flights.first_sink()->user_data, 2U);
    flights.clear();
    EXPECT_EQ(flights.add(verb_numbered(3, NAP_START_LS))->correlator, 2U);
}

TEST(VerbTable, DescribesEveryVerbAndNoOther) {
    std::map<unsigned, const NAP_VERB *> rows;
    for (const NAP_VERB &verb : gnap_verbs) {
        EXPECT_TRUE(rows.emplace(verb.opcode, &verb).second) << verb.name << ": opcode used twice";
    }
    for (unsigned opcode = 0; opcode <= 0xFFFF; opcode++) {
        const NB_UCHAR *entry = vnv_verb_search(static_cast<NB_USHORT>(opcode), 0, 0);
        ASSERT_EQ(entry != nullptr, rows.count(opcode) == 1) << opcode;
        if (entry != nullptr) {
            EXPECT_EQ((entry[VNV_BUFFER_BYTE] & VNV_HAS_BUFFER) != 0,
                      rows[opcode]->kind == NAP_KIND_LIST);
            EXPECT_EQ(vnv_verb_search(static_cast<NB_USHORT>(opcode), 1, 0), nullptr);
        }
    }
}

} // namespace
