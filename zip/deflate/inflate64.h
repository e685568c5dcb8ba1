// Decompression of method 9, Deflate64: deflate (RFC 1951) with a window of 64 KiB, two more
// distance codes, and a last length code with 16 extra bits (APPNOTE 4.4.5). Windows itself writes
// it for files over 2 GB. Section numbers in the implementation are those of RFC 1951.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace vantrel::zip {

// Decompresses one stream; used once, by one thread. Memory: the window and two code tables.
class Inflate64 {
  public:
    // `more` returns the next bytes of input, valid until its next call; empty at the end.
    // `out` receives the decompressed bytes, at most a window at a time.
    Inflate64(std::function<std::string_view()> more,
              std::function<void(const std::uint8_t*, std::size_t)> out);

    // Decompresses to the end of the stream. Raises 57 when the stream is damaged or ends early,
    // and whatever `more` and `out` throw; some output may have been delivered then.
    void Run();

    // Bytes that `more` has returned and that follow the stream; after Run.
    std::size_t UnusedInput() const {
        return input_.size() + static_cast<std::size_t>(bit_count_ / 8);
    }

  private:
    // A Huffman code as a lookup table: indexed by the next bits of input, entries are symbol * 16
    // + length.
    class Code {
      public:
        void Build(const std::uint8_t* lengths, std::size_t count);
        unsigned Read(Inflate64& in) const;

      private:
        std::vector<std::uint16_t> table_;
        int bits_ = 0;
    };

    std::uint32_t Peek(int count);
    void Drop(int count);
    std::uint32_t Take(int count);
    bool RunBlock();
    void CopyStored();
    void ReadFixedCodes();
    void ReadDynamicCodes();
    void RunCodes();
    void CopyMatch(unsigned symbol);
    void Put(std::uint8_t byte);
    void Flush();

    std::function<std::string_view()> more_;
    std::function<void(const std::uint8_t*, std::size_t)> out_;
    std::string_view input_;
    std::uint64_t bits_ = 0;
    int bit_count_ = 0;
    std::vector<std::uint8_t> window_;
    std::size_t position_ = 0;  // in the window, of the next byte
    bool wrapped_ = false;      // the window is full of earlier output
    Code literals_;
    Code distances_;
};

}  // namespace vantrel::zip
