#include "zip/deflate/deflate.h"

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "common/error.h"
#include "zip/deflate/libdeflate/tuned_level.h"
#include "zip/deflate/thorough_choice.h"

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
                         std::size_t room) override {
        return libdeflate_deflate_compress(handle_.get(), in, size, out, room);
    }
    std::size_t CompressAfter(std::size_t history, const std::uint8_t* in, std::size_t size,
                              std::uint8_t* out, std::size_t room) override {
        return is_tuned_ ? vantrel_compress_after(handle_.get(), history, in, size, out, room)
                         : Compress(in, size, out, room);
    }
    std::size_t Bound(std::size_t size) override {
        return libdeflate_deflate_compress_bound(handle_.get(), size);
    }

  private:
    bool is_tuned_;
    std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> handle_;
};

[[noreturn]] void RaiseProofFailed() {
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

}  // namespace

std::unique_ptr<RawCompressor> MakeCompressor(int level) {
    return std::make_unique<LibdeflateCompressor>(level);
}

// The two decompressors that prove a piece, and the memory they need.
struct Deflater::Proof {
    std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)> whole{
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor};
    z_stream stream{};
    Buffer output;

    Proof() {
        if (!whole || inflateInit2(&stream, -MAX_WBITS) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~Proof() { inflateEnd(&stream); }
    Proof(const Proof&) = delete;
    Proof& operator=(const Proof&) = delete;

    void ProveWhole(const std::uint8_t* in, std::size_t size, const std::uint8_t* packed,
                    std::size_t packed_size) {
        output.Resize(size);
        std::size_t used = 0;
        std::size_t made = 0;
        const auto result = libdeflate_deflate_decompress_ex(whole.get(), packed, packed_size,
                                                             output.data(), size, &used, &made);
        if (result != LIBDEFLATE_SUCCESS || used != packed_size || made != size ||
            std::memcmp(output.data(), in, size) != 0) {
            RaiseProofFailed();
        }
    }

    // Decompresses block by block: zlib stops after each, and says how many bits of the last byte
    // it has not used and whether that block was the final one (zlib.h, inflate, Z_BLOCK).
    LastBlock ProveBlocks(std::size_t history, const std::uint8_t* in, std::size_t size,
                          const std::uint8_t* packed, std::size_t packed_size) {
        // One byte more than needed, so that too much output shows.
        output.Resize(size + 1);
        inflateReset(&stream);
        if (history > 0 &&
            inflateSetDictionary(&stream, in - history, static_cast<uInt>(history)) != Z_OK) {
            RaiseProofFailed();
        }
        stream.next_in = const_cast<Bytef*>(packed);
        stream.avail_in = static_cast<uInt>(packed_size);
        stream.next_out = output.data();
        stream.avail_out = static_cast<uInt>(size + 1);
        LastBlock last;
        for (bool final_block = false; !final_block;) {
            if (inflate(&stream, Z_BLOCK) != Z_OK || (stream.data_type & 128) == 0) {
                RaiseProofFailed();
            }
            final_block = (stream.data_type & 64) != 0;
            const std::size_t position = (packed_size - stream.avail_in) * 8 -
                                         static_cast<std::size_t>(stream.data_type & 7);
            (final_block ? last.end_bit : last.header_bit) = position;
        }
        const bool ended = inflate(&stream, Z_BLOCK) == Z_STREAM_END;
        if (!ended || stream.avail_in != 0 || stream.avail_out != 1 ||
            (size > 0 && std::memcmp(output.data(), in, size) != 0) ||
            !BitAt(packed, last.header_bit)) {
            RaiseProofFailed();
        }
        for (std::size_t bit = last.end_bit; bit < packed_size * 8; ++bit) {
            if (BitAt(packed, bit)) {
                RaiseProofFailed();
            }
        }
        return last;
    }
};

Deflater::Deflater(std::unique_ptr<RawCompressor> compressor, bool thorough)
    : compressor_(std::move(compressor)),
      thorough_(thorough ? std::make_unique<ThoroughChoice>() : nullptr),
      proof_(std::make_unique<Proof>()) {}

Deflater::~Deflater() = default;

RawCompressor& Deflater::CompressorFor(const std::uint8_t* in, std::size_t size) {
    return thorough_ ? thorough_->For(in, size, *compressor_) : *compressor_;
}

bool Deflater::Whole(const std::uint8_t* in, std::size_t size, Buffer& out) {
    if (size < 2) {
        return false;
    }
    const std::size_t start = out.size();
    out.Reserve(start + size);
    const std::size_t packed =
        CompressorFor(in, size).Compress(in, size, out.data() + start, size - 1);
    if (packed == 0) {
        return false;
    }
    proof_->ProveWhole(in, size, out.data() + start, packed);
    out.Resize(start + packed);
    return true;
}

void Deflater::Part(const std::uint8_t* in, std::size_t size, bool last, Buffer& out,
                    std::size_t history) {
    const std::size_t start = out.size();
    RawCompressor& compressor = CompressorFor(in, size);
    const std::size_t room = compressor.Bound(size);
    out.Reserve(start + room + 5);
    std::uint8_t* packed = out.data() + start;
    const std::size_t packed_size = compressor.CompressAfter(history, in, size, packed, room);
    if (packed_size == 0) {
        RaiseProofFailed();
    }
    const LastBlock block = proof_->ProveBlocks(history, in, size, packed, packed_size);
    out.Resize(start + packed_size);
    if (last) {
        return;
    }
    packed[block.header_bit / 8] &= static_cast<std::uint8_t>(~(1u << (block.header_bit % 8)));
    // An empty stored block leads to the next byte boundary: three zero bits, which may lie in the
    // padding of the last byte, then length 0 and its complement.
    constexpr std::uint8_t kEmptyStored[] = {0, 0, 0, 0xFF, 0xFF};
    const std::size_t padding = packed_size * 8 - block.end_bit;
    const std::size_t skip = padding >= 3 ? 1 : 0;
    out.Append(kEmptyStored + skip, sizeof(kEmptyStored) - skip);
}

void StorePart(const std::uint8_t* in, std::size_t size, bool last, Buffer& out) {
    // RFC 1951 section 3.2.4: the final bit and type 0, then to the byte boundary, where every part
    // begins; the length and its complement.
    constexpr std::size_t kLongestBlock = 0xFFFF;
    std::size_t done = 0;
    do {
        const std::size_t length = std::min(size - done, kLongestBlock);
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

}  // namespace vantrel::zip
