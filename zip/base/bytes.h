// Bytes in memory and where they come from: a growing block, the numbers of zip archives (least
// significant byte first), CRC-32, and random access to an archive.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace vantrel::zip {

// A growing block of bytes that, unlike a vector, is not cleared before it is filled: clearing
// touches every page once more.
class Buffer {
  public:
    std::uint8_t* data() { return bytes_.get(); }
    const std::uint8_t* data() const { return bytes_.get(); }
    std::size_t size() const { return size_; }
    std::size_t capacity() const { return capacity_; }
    bool empty() const { return size_ == 0; }
    std::string_view View() const { return {reinterpret_cast<const char*>(bytes_.get()), size_}; }

    void Clear() { size_ = 0; }
    // Sets the size; added bytes are not initialised.
    void Resize(std::size_t size) {
        Reserve(size);
        size_ = size;
    }
    // Grows the capacity; size and content are kept.
    void Reserve(std::size_t capacity) {
        if (capacity <= capacity_) {
            return;
        }
        capacity = std::max(capacity, capacity_ + capacity_ / 2);
        std::unique_ptr<std::uint8_t[]> grown(new std::uint8_t[capacity]);
        if (size_ > 0) {
            std::memcpy(grown.get(), bytes_.get(), size_);
        }
        bytes_ = std::move(grown);
        capacity_ = capacity;
    }
    void Append(const void* data, std::size_t count) {
        if (count == 0) {
            return;
        }
        Reserve(size_ + count);
        std::memcpy(bytes_.get() + size_, data, count);
        size_ += count;
    }
    void Append(std::string_view text) { Append(text.data(), text.size()); }

  private:
    std::unique_ptr<std::uint8_t[]> bytes_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

// Append a number, least significant byte first.
template <typename Number>
void PutNumber(std::string& out, Number value) {
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        out.push_back(static_cast<char>((static_cast<std::uint64_t>(value) >> (8 * i)) & 0xFF));
    }
}
inline void Put16(std::string& out, std::uint16_t value) { PutNumber(out, value); }
inline void Put32(std::string& out, std::uint32_t value) { PutNumber(out, value); }
inline void Put64(std::string& out, std::uint64_t value) { PutNumber(out, value); }

// Reads a number at `offset`; `in` must hold all of its bytes.
template <typename Number>
Number GetNumber(std::string_view in, std::size_t offset) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        value |= static_cast<std::uint64_t>(static_cast<std::uint8_t>(in[offset + i])) << (8 * i);
    }
    return static_cast<Number>(value);
}
// Whether `bytes` begin with this record signature.
inline bool HasSignature(std::string_view bytes, std::uint32_t signature) {
    return bytes.size() >= sizeof signature && GetNumber<std::uint32_t>(bytes, 0) == signature;
}

// CRC-32 (APPNOTE 4.4.7) of a block, and of two blocks joined.
std::uint32_t Crc32(const std::uint8_t* data, std::size_t size);
std::uint32_t Crc32(std::string_view bytes);
std::uint32_t CombineCrc32(std::uint32_t first, std::uint32_t second, std::uint64_t second_size);

// Reads from the file's position until `count` bytes or the end of the file; returns how many.
std::size_t ReadFully(platform::File& file, std::uint8_t* out, std::size_t count);

// The size of a source whose end has not been read yet.
constexpr std::uint64_t kUnknownSize = std::uint64_t{1} << 62;

// Random access to the bytes of an archive. An object belongs to one thread.
class ByteSource {
  public:
    virtual ~ByteSource() = default;
    // Bytes of the source; kUnknownSize for several disks of which not all were in the drive.
    virtual std::uint64_t Size() = 0;
    // Reads up to `count` bytes from `offset`; fewer only at the end of the archive. Raises when
    // the medium fails.
    virtual std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count) = 0;
    // The same for bytes that may not be needed: fewer at the end of a disk, too.
    virtual std::size_t ReadAhead(std::uint64_t offset, void* out, std::size_t count) {
        return ReadAt(offset, out, count);
    }

    // Why bytes between two offsets that were read are not those of the archive, for the user; ""
    // when all are.
    virtual std::string WhyUnreadable(std::uint64_t /*begin*/, std::uint64_t /*end*/) const {
        return "";
    }

    // Bytes from `offset` on that can be read without a change of the disk.
    virtual std::uint64_t Available(std::uint64_t /*offset*/) const { return kUnknownSize; }
    // `count`, reduced to these bytes unless there are none.
    std::size_t OnThisDisk(std::uint64_t offset, std::size_t count) const {
        const std::uint64_t available = Available(offset);
        return available == 0 ? count
                              : static_cast<std::size_t>(std::min<std::uint64_t>(count, available));
    }

    // A source that joins several disks: the offset here of one on a disk, and the reverse, as an
    // offset that holds its disk (records/disk_identity.h).
    virtual std::uint64_t PositionOf(std::uint32_t /*disk*/, std::uint64_t offset) const {
        return offset;
    }
    virtual std::uint64_t AddressOf(std::uint64_t position) const { return position; }

    // The bytes at `offset`: `count`, or as many as there are.
    std::string Bytes(std::uint64_t offset, std::size_t count);
};

}  // namespace vantrel::zip
