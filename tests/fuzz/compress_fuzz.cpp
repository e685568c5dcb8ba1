// Any bytes as data to compress at the usual level, whose parser is ours. The first line of the
// input says how: its first character how often what follows is repeated, its second how much room
// is taken away from what always suffices, its third how much of it the decompressor has already.
// What comes out must decompress to the rest.
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tests/fuzz/fuzz_input.h"
#include "zip/deflate/deflate.h"

namespace {

using vantrel::test::Demand;

// Repetitions: enough for more than one window of the parser from a few thousand bytes.
constexpr std::size_t kMaxRepetitions = 300;

struct Plan {
    std::size_t repetitions = 1;
    std::size_t less_room = 0;  // of 256 parts
    std::size_t history = 0;    // bytes, as far as there are so many
};

Plan PlanOf(std::string_view line) {
    Plan plan;
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(line[i]); };
    if (!line.empty()) {
        plan.repetitions = 1 + at(0) * kMaxRepetitions / 256;
    }
    if (line.size() > 1) {
        plan.less_room = at(1);
    }
    if (line.size() > 2) {
        plan.history = (at(2) + 1) * vantrel::zip::kHistory / 256;
    }
    return plan;
}

// What is repeated changes a byte each time, so that there is something to choose.
std::string Repeated(std::string_view input, std::size_t times) {
    std::string data;
    for (std::size_t i = 0; i < times && !input.empty(); ++i) {
        data += input;
        data[data.size() - 1 - (i * 7919) % input.size()] = static_cast<char>(i);
    }
    return data;
}

std::string Decompressed(std::string_view history, const std::string& packed, std::size_t size) {
    std::string data(size, '\0');
    z_stream stream{};
    Demand(inflateInit2(&stream, -MAX_WBITS) == Z_OK);
    Demand(inflateSetDictionary(&stream, reinterpret_cast<const Bytef*>(history.data()),
                                static_cast<uInt>(history.size())) == Z_OK);
    std::string in = packed;
    stream.next_in = reinterpret_cast<Bytef*>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    char nothing = 0;
    stream.next_out = reinterpret_cast<Bytef*>(size == 0 ? &nothing : data.data());
    stream.avail_out = static_cast<uInt>(size);
    Demand(inflate(&stream, Z_FINISH) == Z_STREAM_END);
    Demand(stream.avail_in == 0 && stream.avail_out == 0);
    inflateEnd(&stream);
    return data;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const auto compressor = vantrel::zip::MakeCompressor(vantrel::zip::kTunedLevel);
    std::string_view input(reinterpret_cast<const char*>(bytes), size);
    const Plan plan = PlanOf(vantrel::test::TakeLine(input));
    const std::string data = Repeated(input, plan.repetitions);
    const std::size_t history = std::min(plan.history, data.size());
    const std::string_view rest = std::string_view(data).substr(history);
    const std::size_t bound = compressor->Bound(rest.size());
    const std::size_t room = bound - bound * plan.less_room / 256;
    // Exactly as large as it is said to be, so that a byte too many shows.
    const auto out = std::make_unique<std::uint8_t[]>(room);
    const std::size_t packed = compressor->CompressAfter(
        history, reinterpret_cast<const std::uint8_t*>(rest.data()), rest.size(), out.get(), room);
    Demand(packed <= room);
    Demand(packed != 0 || plan.less_room != 0);
    if (packed != 0) {
        const std::string stream(reinterpret_cast<const char*>(out.get()), packed);
        Demand(Decompressed(data.substr(0, history), stream, rest.size()) == rest);
    }
    return 0;
}
