#include "zip/deflate/deflate.h"

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <optional>
#include <utility>

#include "common/error.h"
#include "zip/deflate/libdeflate/tuned_level.h"

namespace vantrel::zip {

namespace {

class LibdeflateCompressor : public RawCompressor {
  public:
    explicit LibdeflateCompressor(int level)
        : is_tuned_(level == kTunedLevel),
          handle_(is_tuned_ ? vantrel_alloc_tuned_compressor() : libdeflate_alloc_compressor(level),
                  libdeflate_free_compressor) {
        if (!handle_) {
            throw std::bad_alloc();
        }
    }
    std::size_t Compress(const std::uint8_t* in, std::size_t size, std::uint8_t* out,
                         std::size_t capacity) override {
        return libdeflate_deflate_compress(handle_.get(), in, size, out, capacity);
    }
    std::size_t CompressAfter(std::size_t history, const std::uint8_t* in, std::size_t size,
                              std::uint8_t* out, std::size_t capacity) override {
        return is_tuned_ ? vantrel_compress_after(handle_.get(), history, in, size, out, capacity)
                         : Compress(in, size, out, capacity);
    }
    std::size_t Bound(std::size_t size) override {
        return libdeflate_deflate_compress_bound(handle_.get(), size);
    }
    std::uint8_t* Scratch(std::size_t size) override {
        return is_tuned_ ? static_cast<std::uint8_t*>(vantrel_scratch(handle_.get(), size))
                         : nullptr;
    }

  private:
    bool is_tuned_;
    std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> handle_;
};

[[noreturn]] void RaiseCheckFailed() {
    throw Error(error_number::kDeviceIo, "Deflater", "Compressed data failed its check");
}

// Where the last block's header begins and where the data ends, in bits from the start.
struct LastBlock {
    std::size_t header_bit = 0;
    std::size_t end_bit = 0;
};

bool BitAt(const std::uint8_t* data, std::size_t bit) {
    return ((data[bit / 8] >> (bit % 8)) & 1) != 0;
}

// Whether some byte values are so much more frequent than others that no trial is needed: the sum
// of the squares of their counts is twice the average of random data.
bool LooksUneven(const std::uint8_t* data, std::size_t size) {
    std::array<std::uint64_t, 256> counts{};
    for (std::size_t i = 0; i < size; ++i) {
        ++counts[data[i]];
    }
    std::uint64_t squares = 0;
    for (const std::uint64_t count : counts) {
        squares += count * count;
    }
    return squares > 2 * (size + size * size / counts.size());
}

// An empty stored block, with the byte that its first three bits take when the one before has no
// space for them.
constexpr std::uint8_t kEmptyStored[] = {0, 0, 0, 0xFF, 0xFF};

// Where a chunk ends whose last block with data ends at `block`: behind the empty stored block that
// CompressChunk appends, or there, at a byte boundary (StoreChunk). 0: neither.
std::size_t EndOfOpenChunk(const LastBlock& block, const std::uint8_t* packed,
                           std::size_t packed_size) {
    const std::size_t boundary = (block.end_bit + 7) / 8;
    const std::size_t padding = boundary * 8 - block.end_bit;
    if (padding > 0 && packed[boundary - 1] >> (8 - padding) != 0) {
        return 0;
    }
    const std::size_t skip = padding >= 3 ? 1 : 0;
    const std::size_t length = sizeof(kEmptyStored) - skip;
    if (packed_size - boundary >= length &&
        std::memcmp(packed + boundary, kEmptyStored + skip, length) == 0) {
        return boundary + length;
    }
    return padding == 0 ? boundary : 0;
}

}  // namespace

std::unique_ptr<RawCompressor> MakeCompressor(int level) {
    return std::make_unique<LibdeflateCompressor>(level);
}

void FreeDecompressor::operator()(libdeflate_decompressor* decompressor) const {
    libdeflate_free_decompressor(decompressor);
}

Decompressor MakeDecompressor() {
    Decompressor made(libdeflate_alloc_decompressor());
    if (!made) {
        throw std::bad_alloc();
    }
    return made;
}

std::string CompressorDescription() {
    return "libdeflate " LIBDEFLATE_VERSION_STRING ", " VANTREL_TUNED_LEVEL_NAME;
}

// Decompresses and compares: complete streams by libdeflate, which is faster, chunks by zlib, which
// can stop at block boundaries.
struct Deflater::Verifier {
    Decompressor decompressor = MakeDecompressor();
    z_stream stream{};
    RawCompressor& compressor;
    Buffer own_output;  // for a compressor without scratch memory
    std::uint8_t* output = nullptr;

    explicit Verifier(RawCompressor& for_output) : compressor(for_output) {
        if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~Verifier() { inflateEnd(&stream); }
    Verifier(const Verifier&) = delete;
    Verifier& operator=(const Verifier&) = delete;

    bool IsStreamOf(const std::uint8_t* in, std::size_t size, const std::uint8_t* packed,
                    std::size_t packed_size) {
        SetOutput(size);
        std::size_t used = 0;
        std::size_t made = 0;
        const auto result = libdeflate_deflate_decompress_ex(
            decompressor.get(), packed, packed_size, output, size, &used, &made);
        return result == LIBDEFLATE_SUCCESS && used == packed_size && made == size &&
               std::memcmp(output, in, size) == 0;
    }

    // Decompresses block by block: zlib stops after each block and states how many bits of the last
    // byte are unused and whether the block was the final one (zlib.h, inflate, Z_BLOCK). With
    // `is_last` up to the final block, whose position CompressChunk changes; otherwise until all of
    // `in` is there, where no block may be final. Nothing when that does not yield `in`.
    std::optional<LastBlock> Inflate(std::size_t history, const std::uint8_t* in, std::size_t size,
                                     bool is_last, const std::uint8_t* packed,
                                     std::size_t packed_size) {
        Prepare(size, packed, packed_size);
        if (history > 0 &&
            inflateSetDictionary(&stream, in - history, static_cast<uInt>(history)) != Z_OK) {
            return std::nullopt;
        }
        LastBlock last;
        std::size_t compared = 0;
        for (bool ended = false; !ended;) {
            if (inflate(&stream, Z_BLOCK) != Z_OK || (stream.data_type & 128) == 0) {
                return std::nullopt;
            }
            const std::size_t made = size + 1 - stream.avail_out;
            if (made > size || (made > compared && std::memcmp(output + compared, in + compared,
                                                               made - compared) != 0)) {
                return std::nullopt;
            }
            compared = made;
            const bool final_block = (stream.data_type & 64) != 0;
            if (final_block && !is_last) {
                return std::nullopt;
            }
            ended = is_last ? final_block : made == size;
            const std::size_t position = (packed_size - stream.avail_in) * 8 -
                                         static_cast<std::size_t>(stream.data_type & 7);
            (ended ? last.end_bit : last.header_bit) = position;
        }
        return compared == size ? std::optional(last) : std::nullopt;
    }

    // Whether the blocks that Inflate has decompressed are followed by zero bits up to the end of
    // the last byte, and by nothing else.
    bool IsAtEnd(const LastBlock& last, const std::uint8_t* packed, std::size_t packed_size) {
        if (inflate(&stream, Z_BLOCK) != Z_STREAM_END || stream.avail_in != 0) {
            return false;
        }
        for (std::size_t bit = last.end_bit; bit < packed_size * 8; ++bit) {
            if (BitAt(packed, bit)) {
                return false;
            }
        }
        return true;
    }

  private:
    void SetOutput(std::size_t size) {
        output = compressor.Scratch(size);
        if (output == nullptr) {
            own_output.Resize(size);
            output = own_output.data();
        }
    }

    void Prepare(std::size_t size, const std::uint8_t* packed, std::size_t packed_size) {
        // One byte more than needed, to detect too much output.
        SetOutput(size + 1);
        inflateReset(&stream);
        stream.next_in = const_cast<Bytef*>(packed);
        stream.avail_in = static_cast<uInt>(packed_size);
        stream.next_out = output;
        stream.avail_out = static_cast<uInt>(size + 1);
    }
};

Deflater::Deflater(std::unique_ptr<RawCompressor> compressor)
    : compressor_(std::move(compressor)), verifier_(std::make_unique<Verifier>(*compressor_)) {}

Deflater::~Deflater() = default;

bool Deflater::Compress(const std::uint8_t* in, std::size_t size, Buffer& out) {
    if (size < 2) {
        return false;
    }
    const std::size_t start = out.size();
    out.Reserve(start + size);
    const std::size_t packed = compressor_->Compress(in, size, out.data() + start, size - 1);
    if (packed == 0) {
        return false;
    }
    if (!verifier_->IsStreamOf(in, size, out.data() + start, packed)) {
        RaiseCheckFailed();
    }
    out.Resize(start + packed);
    return true;
}

void Deflater::CompressChunk(const std::uint8_t* in, std::size_t size, bool last, Buffer& out,
                             std::size_t history) {
    const std::size_t start = out.size();
    const std::size_t capacity = compressor_->Bound(size);
    out.Reserve(start + capacity + 5);
    std::uint8_t* packed = out.data() + start;
    const std::size_t packed_size = compressor_->CompressAfter(history, in, size, packed, capacity);
    if (packed_size == 0) {
        RaiseCheckFailed();
    }
    const auto block = verifier_->Inflate(history, in, size, true, packed, packed_size);
    if (!block || !verifier_->IsAtEnd(*block, packed, packed_size) ||
        !BitAt(packed, block->header_bit)) {
        RaiseCheckFailed();
    }
    out.Resize(start + packed_size);
    if (last) {
        return;
    }
    packed[block->header_bit / 8] &= static_cast<std::uint8_t>(~(1u << (block->header_bit % 8)));
    // It leads to the next byte boundary: three zero bits, which may be in the padding of the last
    // byte, then length 0 and its complement.
    const std::size_t padding = packed_size * 8 - block->end_bit;
    const std::size_t skip = padding >= 3 ? 1 : 0;
    out.Append(kEmptyStored + skip, sizeof(kEmptyStored) - skip);
}

bool Deflater::Matches(const std::uint8_t* in, std::size_t size, const std::uint8_t* packed,
                       std::size_t packed_size) {
    return verifier_->IsStreamOf(in, size, packed, packed_size);
}

std::size_t Deflater::MatchChunk(const std::uint8_t* in, std::size_t size, bool last,
                                 const std::uint8_t* packed, std::size_t packed_size,
                                 std::size_t history) {
    const auto block = verifier_->Inflate(history, in, size, last, packed, packed_size);
    if (!block) {
        return 0;
    }
    if (last) {
        return verifier_->IsAtEnd(*block, packed, packed_size) ? packed_size : 0;
    }
    return EndOfOpenChunk(*block, packed, packed_size);
}

void StoreChunk(const std::uint8_t* in, std::size_t size, bool last, Buffer& out) {
    // RFC 1951 section 3.2.4: final bit and type 0, padding to the byte boundary (every chunk
    // begins at one), the length and its complement.
    constexpr std::size_t kMaxStoredBlock = 0xFFFF;
    std::size_t done = 0;
    do {
        const std::size_t length = std::min(size - done, kMaxStoredBlock);
        const bool final_block = last && done + length == size;
        const auto low = static_cast<std::uint8_t>(length);
        const auto high = static_cast<std::uint8_t>(length >> 8);
        const std::uint8_t header[] = {final_block, low, high, static_cast<std::uint8_t>(~low),
                                       static_cast<std::uint8_t>(~high)};
        out.Append(header, sizeof(header));
        out.Append(in + done, length);
        done += length;
    } while (done < size);
}

bool Sampler::GainsNothing(const std::uint8_t* sample, std::size_t size) {
    // Bytes whose frequencies are counted before the sample is compressed.
    constexpr std::size_t kCounted = 4096;
    if (LooksUneven(sample, std::min(size, kCounted))) {
        return false;
    }
    packed_.Resize(size);
    // A smaller gain is not worth its time. In data that is compressed already the fastest level
    // finds nearly all that the others would find.
    return compressor_->Compress(sample, size, packed_.data(), size - size / 1024) == 0;
}

bool Sampler::LooksIncompressible(const std::uint8_t* data, std::size_t size) {
    // Bytes. For less data the samples would cost as much as they save.
    constexpr std::size_t kMinSize = 4 * kSampleSize;
    // Bytes from one sample to the next. At 128 KB the archive of compressed files was larger than
    // that of `zip -9`; at 64 KB it took a fifth longer.
    constexpr std::size_t kSpacing = 96 * 1024;
    if (size < kMinSize) {
        return false;
    }
    return SamplesGainNothing(size, 2 + size / kSpacing,
                              [data](std::uint64_t offset) { return data + offset; });
}

}  // namespace vantrel::zip
