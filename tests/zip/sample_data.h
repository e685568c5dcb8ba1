// Data that is the same on every machine and in every run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vantrel::test {

// Random bytes, the same ones for the same seed.
inline std::string Noise(std::size_t size, std::uint64_t seed = 1) {
    std::string bytes(size, '\0');
    std::uint64_t state = seed * 0x9E3779B97F4A7C15ull + 1;
    for (char& byte : bytes) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        byte = static_cast<char>(state >> 32);
    }
    return bytes;
}

// Words in random order: compressible, but not to almost nothing.
inline std::string Prose(std::size_t size, std::uint64_t seed = 1) {
    static const char* const kWords[] = {"archive ", "folder ", "of ",   "the ",  "disk ",
                                         "weekly ",  "and ",    "file ", "copy ", "again\r\n"};
    const std::string noise = Noise(size / 2 + 1, seed);
    std::string text;
    for (std::size_t i = 0; text.size() < size; ++i) {
        text += kWords[static_cast<unsigned char>(noise[i % noise.size()]) % 10];
    }
    text.resize(size);
    return text;
}

}  // namespace vantrel::test
