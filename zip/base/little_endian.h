// Numbers as zip archives hold them: least significant byte first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vantrel::zip {

template <typename Number>
void PutNumber(std::string& out, Number value) {
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        out.push_back(static_cast<char>((static_cast<std::uint64_t>(value) >> (8 * i)) & 0xFF));
    }
}
inline void Put16(std::string& out, std::uint16_t value) { PutNumber(out, value); }
inline void Put32(std::string& out, std::uint32_t value) { PutNumber(out, value); }
inline void Put64(std::string& out, std::uint64_t value) { PutNumber(out, value); }

// Reads a number at `offset`, which must leave room for it.
template <typename Number>
Number GetNumber(std::string_view in, std::size_t offset) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        value |= static_cast<std::uint64_t>(static_cast<std::uint8_t>(in[offset + i])) << (8 * i);
    }
    return static_cast<Number>(value);
}

}  // namespace vantrel::zip
