// Compression of one piece of data at a time, each piece proven: what comes out has been
// decompressed and compared with what went in. An object belongs to one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "zip/base/bytes.h"

namespace vantrel::zip {

// Bytes of a big file that are compressed at a time. Larger pieces gain almost nothing, and cost
// memory on every thread; for smaller ones more of the time would go into what stands before them.
constexpr std::size_t kChunkSize = std::size_t{1} << 20;

// Bytes before a place that what is said there may refer to (RFC 1951 section 2).
constexpr std::size_t kHistory = std::size_t{1} << 15;

// Turns bytes into one deflate stream whose last block is marked final. Exchanged in tests only.
class RawCompressor {
  public:
    virtual ~RawCompressor() = default;
    // Compresses into at most `room` bytes; returns how many, 0 when it does not fit.
    virtual std::size_t Compress(const std::uint8_t* in, std::size_t size, std::uint8_t* out,
                                 std::size_t room) = 0;
    // The same, but what comes out may refer to the `history` bytes before `in`, at most kHistory.
    virtual std::size_t CompressAfter([[maybe_unused]] std::size_t history, const std::uint8_t* in,
                                      std::size_t size, std::uint8_t* out, std::size_t room) {
        return Compress(in, size, out, room);
    }
    // Room that always suffices for `size` bytes.
    virtual std::size_t Bound(std::size_t size) = 0;
};

// In place of the library's level 7: a little slower, and 0.7 % smaller; small files 1.1 %.
constexpr int kTunedLevel = 7;

// `level` 1 (fast) to 12 (small), the library's own numbers but for kTunedLevel.
std::unique_ptr<RawCompressor> MakeCompressor(int level);

class ThoroughChoice;

class Deflater {
  public:
    // `thorough`: data that gains much by it is compressed harder.
    explicit Deflater(std::unique_ptr<RawCompressor> compressor, bool thorough = false);
    ~Deflater();
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    // Appends a complete deflate stream of `in` to `out` when it is smaller than `size`, otherwise
    // appends nothing and returns false. At most kChunkSize bytes. Raises 57 when the proof fails.
    bool Whole(const std::uint8_t* in, std::size_t size, Buffer& out);

    // Appends the part of a deflate stream that yields `in`; parts joined in order, the last one
    // with `last` set, are one valid stream (RFC 1951 section 3.2.3). It may refer to the `history`
    // bytes before `in`, at most kHistory, which the parts before it must yield. Raises 57 when the
    // proof fails; `out` is then as before.
    void Part(const std::uint8_t* in, std::size_t size, bool last, Buffer& out,
              std::size_t history = 0);

  private:
    struct Proof;
    RawCompressor& CompressorFor(const std::uint8_t* in, std::size_t size);

    std::unique_ptr<RawCompressor> compressor_;
    std::unique_ptr<ThoroughChoice> thorough_;
    std::unique_ptr<Proof> proof_;
};

// Appends a part that yields `in` by stored blocks, five bytes for each 65,535; joins with others
// as Deflater::Part says.
void StorePart(const std::uint8_t* in, std::size_t size, bool last, Buffer& out);

}  // namespace vantrel::zip
