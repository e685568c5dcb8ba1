#include "zip/deflate/block_store.h"

#include <libdeflate.h>

#include <new>
#include <utility>

#include "common/error.h"
#include "zip/base/bytes.h"
#include "zip/deflate/deflate.h"

namespace vantrel::zip {

namespace {

// Bytes of records that are packed together; more gains nothing, less loses common path prefixes.
constexpr std::size_t kBlockSize = 128 * 1024;
constexpr int kLevel = 2;  // of libdeflate: quick, and most of the gain

const std::uint8_t* AsBytes(const std::string& text) {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

}  // namespace

struct BlockStore::Codec {
    std::unique_ptr<RawCompressor> compressor = MakeCompressor(kLevel);
    std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)> decompressor{
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor};
};

BlockStore::BlockStore() = default;
BlockStore::~BlockStore() = default;
BlockStore::BlockStore(BlockStore&&) noexcept = default;
BlockStore& BlockStore::operator=(BlockStore&&) noexcept = default;

void BlockStore::Append(std::string_view record) {
    Put32(tail_, static_cast<std::uint32_t>(record.size()));
    tail_ += record;
    ++count_;
    bytes_ += record.size();
    if (tail_.size() >= kBlockSize) {
        PackTail();
    }
}

void BlockStore::PackTail() {
    if (!codec_) {
        codec_ = std::make_unique<Codec>();
        if (!codec_->decompressor) {
            throw std::bad_alloc();
        }
    }
    Block block;
    block.raw_size = tail_.size();
    block.crc = Crc32(AsBytes(tail_), tail_.size());
    std::string packed(codec_->compressor->Bound(tail_.size()), '\0');
    packed.resize(codec_->compressor->Compress(AsBytes(tail_), tail_.size(),
                                               reinterpret_cast<std::uint8_t*>(packed.data()),
                                               packed.size()));
    block.packed.assign(packed);  // a copy of the right capacity
    blocks_.push_back(std::move(block));
    tail_.clear();
}

bool BlockStore::OpenNextBlock() {
    current_position_ = 0;
    if (blocks_.empty()) {
        current_ = std::exchange(tail_, {});
        return !current_.empty();
    }
    const Block block = std::move(blocks_.front());
    blocks_.pop_front();
    current_.resize(block.raw_size);
    const auto result = libdeflate_deflate_decompress(codec_->decompressor.get(),
                                                      block.packed.data(), block.packed.size(),
                                                      current_.data(), block.raw_size, nullptr);
    if (result != LIBDEFLATE_SUCCESS || Crc32(AsBytes(current_), current_.size()) != block.crc) {
        RaiseError(error_number::kDeviceIo);
    }
    return true;
}

bool BlockStore::Take(std::string& record) {
    if (current_position_ == current_.size() && !OpenNextBlock()) {
        return false;
    }
    const auto size = GetNumber<std::uint32_t>(current_, current_position_);
    record.assign(current_, current_position_ + 4, size);
    current_position_ += 4 + size;
    return true;
}

}  // namespace vantrel::zip
