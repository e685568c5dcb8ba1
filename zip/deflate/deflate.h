// Compression of data in memory, verified: all output has been decompressed and compared with the
// input. Compression and decompression are libdeflate's and zlib's; the level that the product uses
// most is tuned (zip/deflate/libdeflate). An object of these classes is used by one thread at a
// time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "zip/base/bytes.h"

struct libdeflate_decompressor;

namespace vantrel::zip {

// The library's decompressor for complete streams.
struct FreeDecompressor {
    void operator()(libdeflate_decompressor* decompressor) const;
};
using Decompressor = std::unique_ptr<libdeflate_decompressor, FreeDecompressor>;
// Throws std::bad_alloc.
Decompressor MakeDecompressor();

// Bytes of a big file that are compressed at a time. 4 MiB would save 0.13 % and take four times
// the memory on every thread (docs/performance.md). The tuned level's window has the same size.
constexpr std::size_t kChunkSize = std::size_t{1} << 20;

// Deflate window in bytes: how far back a match may refer (RFC 1951 section 2).
constexpr std::size_t kHistory = std::size_t{1} << 15;

// Compresses bytes into one deflate stream whose last block is marked final. Replaced in tests
// only.
class RawCompressor {
  public:
    virtual ~RawCompressor() = default;
    // Compresses into at most `capacity` bytes. Returns the compressed size, 0 when it does not
    // fit.
    virtual std::size_t Compress(const std::uint8_t* in, std::size_t size, std::uint8_t* out,
                                 std::size_t capacity) = 0;
    // The same, but matches may refer to the `history` bytes before `in`, at most kHistory. A
    // compressor need not use them.
    virtual std::size_t CompressAfter([[maybe_unused]] std::size_t history, const std::uint8_t* in,
                                      std::size_t size, std::uint8_t* out, std::size_t capacity) {
        return Compress(in, size, out, capacity);
    }
    // Capacity that always suffices for `size` bytes.
    virtual std::size_t Bound(std::size_t size) = 0;
    // At least `size` bytes that the compressor itself uses only while it compresses; null when it
    // has none. They save each thread memory for a complete chunk.
    virtual std::uint8_t* Scratch(std::size_t /*size*/) { return nullptr; }
};

// The tuned level, in place of the library's level 7: a little slower, and 0.7 % smaller; small
// files 1.1 %. Without the library's sources it is the library's level 7.
constexpr int kTunedLevel = 7;

// `level` 1 (fast) to 12 (small): the library's own levels, except kTunedLevel. Throws
// std::bad_alloc.
std::unique_ptr<RawCompressor> MakeCompressor(int level);

// The library's version and the level behind kTunedLevel: "libdeflate 1.14, tuned level", or
// "libdeflate 1.14, level 7" where the build has no tuned level.
std::string CompressorDescription();

// Archives of one generation, level and CompressorDescription() hold the same bytes for the same
// data, so that a later run may copy them. Raise the number with every change of this module or of
// zip/writer that can change the compressed bytes of any data at any level: the compressors, the
// Sampler's decisions, the division into chunks (a test compares outputs with those of this
// number).
constexpr std::uint16_t kCompressorGeneration = 1;

// Compresses, verifies, and joins chunks to one stream.
class Deflater {
  public:
    explicit Deflater(std::unique_ptr<RawCompressor> compressor);
    ~Deflater();
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    // Appends a complete deflate stream of `in` to `out` and returns true when it is smaller than
    // `size`; otherwise appends nothing. At most kChunkSize bytes. Raises 57 when the verification
    // fails.
    bool Compress(const std::uint8_t* in, std::size_t size, Buffer& out);

    // Appends a part of a deflate stream that decompresses to `in`. Chunks appended in order, the
    // last one with `last` set, are one valid stream: the final bit of the others is cleared, and
    // an empty stored block leads to the next byte boundary (RFC 1951 sections 3.2.3 and 3.2.4).
    // Matches may refer to the `history` bytes before `in`, at most kHistory, which the chunks
    // before must yield. Raises 57 when the verification fails; `out` is then unchanged.
    void CompressChunk(const std::uint8_t* in, std::size_t size, bool last, Buffer& out,
                       std::size_t history = 0);

    // Whether `packed` is a complete deflate stream of `in` without any further byte.
    bool Matches(const std::uint8_t* in, std::size_t size, const std::uint8_t* packed,
                 std::size_t packed_size);
    // The number of bytes at the start of `packed` that are a chunk of `in`, as CompressChunk or
    // StoreChunk appends it after `history` bytes; with `last` all of `packed`. 0: they are none.
    std::size_t MatchChunk(const std::uint8_t* in, std::size_t size, bool last,
                           const std::uint8_t* packed, std::size_t packed_size,
                           std::size_t history);

  private:
    struct Verifier;

    std::unique_ptr<RawCompressor> compressor_;
    std::unique_ptr<Verifier> verifier_;
};

// Appends a chunk as stored blocks, which take five bytes for each 65,535. Can be joined with
// chunks of Deflater::CompressChunk.
void StoreChunk(const std::uint8_t* in, std::size_t size, bool last, Buffer& out);

// Recognizes data that is compressed already, before time is spent on it, by compressing samples at
// the fastest level.
class Sampler {
  public:
    static constexpr std::size_t kSampleSize = 16 * 1024;  // bytes

    Sampler() : compressor_(MakeCompressor(1)) {}

    // Whether compression saves less than one part in 1024 of this sample.
    bool GainsNothing(const std::uint8_t* sample, std::size_t size);
    // Whether every one of some samples, spread over the data, gains nothing. False for less than
    // four samples' worth of data, where asking costs more than it saves.
    bool LooksIncompressible(const std::uint8_t* data, std::size_t size);
    // The same for `count` samples (two or more) of data of `size` bytes (more than one sample).
    // `read` returns the kSampleSize bytes at an offset, or null when they cannot be read: false.
    template <typename Read>
    bool SamplesGainNothing(std::uint64_t size, std::uint64_t count, Read&& read) {
        for (std::uint64_t i = 0; i < count; ++i) {
            const std::uint8_t* const sample = read((size - kSampleSize) / (count - 1) * i);
            if (sample == nullptr || !GainsNothing(sample, kSampleSize)) {
                return false;
            }
        }
        return true;
    }

  private:
    std::unique_ptr<RawCompressor> compressor_;
    Buffer packed_;
};

}  // namespace vantrel::zip
