#include "zip/base/bytes.h"

#include <libdeflate.h>
#include <zlib.h>

namespace vantrel::zip {

std::uint32_t Crc32(const std::uint8_t* data, std::size_t size) {
    // libdeflate takes a null pointer, which an empty block may have, for the initial value.
    return size == 0 ? 0 : libdeflate_crc32(0, data, size);
}

std::uint32_t Crc32(std::string_view bytes) {
    return Crc32(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

std::uint32_t CombineCrc32(std::uint32_t first, std::uint32_t second, std::uint64_t second_size) {
    return static_cast<std::uint32_t>(
        crc32_combine(first, second, static_cast<z_off_t>(second_size)));
}

std::size_t ReadFully(platform::File& file, std::uint8_t* out, std::size_t count) {
    std::size_t total = 0;
    while (total < count) {
        const std::size_t read = file.Read(out + total, count - total);
        if (read == 0) {
            break;
        }
        total += read;
    }
    return total;
}

std::string ByteSource::Bytes(std::uint64_t offset, std::size_t count) {
    std::string bytes(count, '\0');
    bytes.resize(ReadAt(offset, bytes.data(), count));
    return bytes;
}

}  // namespace vantrel::zip
