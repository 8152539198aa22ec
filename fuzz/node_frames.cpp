/* What an administrator sends, against the node's frame reader and the checks of a block.  However
 * the stream is cut, the frames are the same, and a frame that was read is written back the same.
 */
#include "frames.h"
#include "fuzzinput.h"

namespace {

/* The frames of a stream that comes in pieces, as text; garbage ends it with an 'x'. */
std::string frames_of(const FUZZ_BLOCK &stream, size_t size, size_t piece) {
    node::FrameReader reader;
    std::string all;
    for (size_t at = 0; at < size; at += piece) {
        const FUZZ_BLOCK bytes(stream.get() + at, std::min(piece, size - at));
        reader.add(bytes.get(), std::min(piece, size - at));
        node::Frame frame;
        node::FrameState state;
        while ((state = reader.next(frame)) == node::FrameState::Ready) {
            MUST(frame.block.size() == frame.header.vcb_length);
            MUST(frame.data.size() == frame.header.data_length);
            const NOF_FRAME &header = frame.header;
            const auto written =
                node::make_frame(header.kind, header.correlator, header.target, frame.block.data(),
                                 frame.block.size(), frame.data.data(), frame.data.size());
            MUST(written.size() == header.length);
            all.append(written.begin(), written.end());
            node::check_block(frame.block.data(), frame.block.size());
            node::set_result(frame.block, {NAP_OK, 0});
        }
        if (state == node::FrameState::Garbage) {
            MUST(reader.next(frame) == node::FrameState::Garbage);
            return all + 'x';
        }
    }
    return all;
}

/* Random bytes are hardly ever a header: the lengths are made to fit, mostly. */
std::string make_stream(FUZZ_INPUT &input) {
    std::string stream;
    for (auto left = input.take<uint8_t>() % 8; left > 0; left--) {
        const auto block = input.take<uint8_t>(), data = input.take<uint8_t>();
        NOF_FRAME header{};
        header.kind = input.take<uint8_t>();
        header.correlator = input.take<NB_USHORT>();
        header.vcb_length = data % 16 == 15 ? input.take<NB_ULONG>() : block * 4u;
        header.data_length = data % 16 == 14 ? input.take<NB_ULONG>() : data % 8 * 4u;
        header.length = static_cast<NB_ULONG>(sizeof header + header.vcb_length) +
                        header.data_length + (data % 16 == 13 ? input.take<NB_ULONG>() : 0);
        stream.append(reinterpret_cast<NB_CHAR *>(&header), sizeof header);
        NAP_VCB vcb{};
        vcb.opcode = input.take<NB_USHORT>();
        stream.append(reinterpret_cast<NB_CHAR *>(&vcb), sizeof vcb);
        stream.resize(stream.size() - sizeof vcb +
                      std::min<size_t>(header.vcb_length, NOF_MAX_VCB) +
                      std::min<size_t>(header.data_length, NOF_MAX_DATA));
    }
    return stream + input.rest();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FUZZ_INPUT input(data, size);
    const size_t piece = input.take<uint8_t>() + 1u;
    const std::string bytes = make_stream(input);
    const FUZZ_BLOCK stream(bytes);
    const std::string whole = frames_of(stream, bytes.size(), std::max<size_t>(bytes.size(), 1));
    MUST(frames_of(stream, bytes.size(), piece) == whole);
    return 0;
}
