#include "zip/writer/record_list.h"

#include <libdeflate.h>

#include <utility>

#include "common/error.h"
#include "zip/base/bytes.h"

namespace vantrel::zip {

namespace {

// Bytes of records that are compressed together. Larger blocks gain nothing; smaller ones share
// fewer path prefixes and become larger.
constexpr std::size_t kBlockSize = 128 * 1024;
constexpr int kLevel = 2;  // of libdeflate: a quick one that finds most of the gain

const std::uint8_t* AsBytes(const std::string& text) {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

}  // namespace

void RecordList::Append(std::string_view record) {
    Put32(tail_, static_cast<std::uint32_t>(record.size()));
    tail_ += record;
    ++count_;
    if (tail_.size() >= kBlockSize) {
        PackTail();
    }
}

void RecordList::PackTail() {
    if (!decompressor_) {
        compressor_ = MakeCompressor(kLevel);
        decompressor_ = MakeDecompressor();
    }
    Block block;
    block.raw_size = tail_.size();
    block.crc = Crc32(AsBytes(tail_), tail_.size());
    std::string packed(compressor_->Bound(tail_.size()), '\0');
    packed.resize(compressor_->Compress(AsBytes(tail_), tail_.size(),
                                        reinterpret_cast<std::uint8_t*>(packed.data()),
                                        packed.size()));
    block.packed.assign(packed);  // a copy of the right capacity
    blocks_.push_back(std::move(block));
    tail_.clear();
}

bool RecordList::OpenNextBlock() {
    current_position_ = 0;
    if (blocks_.empty()) {
        current_ = std::exchange(tail_, {});
        return !current_.empty();
    }
    const Block block = std::move(blocks_.front());
    blocks_.pop_front();
    current_.resize(block.raw_size);
    const auto result =
        libdeflate_deflate_decompress(decompressor_.get(), block.packed.data(), block.packed.size(),
                                      current_.data(), block.raw_size, nullptr);
    if (result != LIBDEFLATE_SUCCESS || Crc32(AsBytes(current_), current_.size()) != block.crc) {
        RaiseError(error_number::kDeviceIo);
    }
    return true;
}

std::optional<std::string> RecordList::Take() {
    if (current_position_ == current_.size() && !OpenNextBlock()) {
        return std::nullopt;
    }
    const auto size = GetNumber<std::uint32_t>(current_, current_position_);
    const std::size_t begin = current_position_ + sizeof(size);
    current_position_ = begin + size;
    return current_.substr(begin, size);
}

}  // namespace vantrel::zip
