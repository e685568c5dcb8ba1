// Random access to the bytes of an archive, wherever they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vantrel::zip {

// Belongs to one thread at a time.
class ByteSource {
  public:
    virtual ~ByteSource() = default;
    virtual std::uint64_t Size() = 0;
    // Reads up to `count` bytes from `offset` on; fewer only where the archive ends. Raises when
    // the medium fails.
    virtual std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count) = 0;

    // The bytes at `offset`: `count` of them, or as many as there are.
    std::string Bytes(std::uint64_t offset, std::size_t count) {
        std::string bytes(count, '\0');
        bytes.resize(ReadAt(offset, bytes.data(), count));
        return bytes;
    }
};

}  // namespace vantrel::zip
