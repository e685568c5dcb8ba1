// A growing block of bytes that, unlike a vector, is not cleared before it is filled.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

namespace vantrel::zip {

class Buffer {
  public:
    std::uint8_t* data() { return bytes_.get(); }
    const std::uint8_t* data() const { return bytes_.get(); }
    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    std::string_view View() const { return {reinterpret_cast<const char*>(bytes_.get()), size_}; }

    void Clear() { size_ = 0; }
    // Sets the size; what is new is not initialised.
    void Resize(std::size_t size) {
        Reserve(size);
        size_ = size;
    }
    // Makes room without changing the size; the content is kept.
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

}  // namespace vantrel::zip
