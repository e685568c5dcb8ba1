#include "zip/deflate/inflate64.h"

#include <algorithm>
#include <utility>

#include "common/error.h"

namespace vantrel::zip {

namespace {

constexpr std::size_t kWindow = 65536;  // bytes
constexpr int kMaxCodeLength = 15;      // bits, RFC 1951 section 3.2.2
constexpr std::size_t kLengths = kMaxCodeLength + 1;
constexpr unsigned kEndOfBlock = 256;
constexpr unsigned kFirstLength = 257;
constexpr std::size_t kMaxLiterals = 286;
constexpr std::size_t kMaxDistances = 32;

// Section 3.2.5; in Deflate64 the last length code means 3 plus 16 extra bits.
constexpr std::array<std::uint16_t, 29> kLengthBase = {3,  4,  5,  6,   7,   8,   9,   10,  11, 13,
                                                       15, 17, 19, 23,  27,  31,  35,  43,  51, 59,
                                                       67, 83, 99, 115, 131, 163, 195, 227, 3};
constexpr std::array<std::uint8_t, 29> kLengthBits = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                                      2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 16};

[[noreturn]] void RaiseDamaged() {
    throw Error(error_number::kDeviceIo, "", "its data is damaged");
}

// Codes 0 to 3 have no extra bits; then every second code has one more.
int DistanceBits(unsigned symbol) { return symbol < 4 ? 0 : static_cast<int>(symbol / 2) - 1; }
std::uint32_t DistanceBase(unsigned symbol) {
    return symbol < 4 ? symbol + 1 : ((2 + (symbol & 1)) << DistanceBits(symbol)) + 1;
}

unsigned Reversed(unsigned code, int length) {
    unsigned reversed = 0;
    for (int i = 0; i < length; ++i) {
        reversed |= ((code >> i) & 1) << (length - 1 - i);
    }
    return reversed;
}

}  // namespace

Inflate64::Inflate64(std::function<std::string_view()> more,
                     std::function<void(const std::uint8_t*, std::size_t)> out)
    : more_(std::move(more)), out_(std::move(out)), window_(kWindow) {}

void Inflate64::Code::Build(const std::uint8_t* lengths, std::size_t count) {
    std::array<unsigned, kLengths> counts{};
    for (std::size_t i = 0; i < count; ++i) {
        ++counts[lengths[i]];
    }
    counts[0] = 0;
    bits_ = kMaxCodeLength;
    while (bits_ > 1 && counts[static_cast<std::size_t>(bits_)] == 0) {
        --bits_;
    }
    std::array<unsigned, kLengths + 1> next{};
    for (std::size_t length = 1; length < kLengths; ++length) {
        next[length + 1] = (next[length] + counts[length]) << 1;
        if (next[length] + counts[length] > (1u << length)) {
            RaiseDamaged();  // more codewords of this length than exist
        }
    }
    table_.assign(std::size_t{1} << bits_, 0);
    for (std::size_t symbol = 0; symbol < count; ++symbol) {
        const int length = lengths[symbol];
        if (length == 0) {
            continue;
        }
        const auto entry = static_cast<std::uint16_t>(symbol * 16 + lengths[symbol]);
        const unsigned first = Reversed(next[static_cast<std::size_t>(length)]++, length);
        for (std::size_t i = first; i < table_.size(); i += std::size_t{1} << length) {
            table_[i] = entry;
        }
    }
}

unsigned Inflate64::Code::Read(Inflate64& in) const {
    const std::uint16_t entry = table_[in.Peek(bits_)];
    if (entry == 0) {
        RaiseDamaged();  // a codeword without a symbol
    }
    in.Drop(entry % 16);
    return entry / 16u;
}

// Bits after the end of the input are read as 0; Drop does not accept them.
std::uint32_t Inflate64::Peek(int count) {
    while (bit_count_ < count) {
        if (input_.empty()) {
            input_ = more_();
            if (input_.empty()) {
                break;
            }
        }
        bits_ |= static_cast<std::uint64_t>(static_cast<std::uint8_t>(input_[0])) << bit_count_;
        input_.remove_prefix(1);
        bit_count_ += 8;
    }
    return static_cast<std::uint32_t>(bits_ & ((std::uint64_t{1} << count) - 1));
}

void Inflate64::Drop(int count) {
    if (count > bit_count_) {
        RaiseDamaged();
    }
    bits_ >>= count;
    bit_count_ -= count;
}

std::uint32_t Inflate64::Take(int count) {
    const std::uint32_t value = Peek(count);
    Drop(count);
    return value;
}

void Inflate64::Run() {
    while (RunBlock()) {
    }
    Flush();
}

// Returns false after the last block.
bool Inflate64::RunBlock() {
    const bool last = Take(1) == 1;
    switch (Take(2)) {
        case 0:
            CopyStored();
            break;
        case 1:
            ReadFixedCodes();
            RunCodes();
            break;
        case 2:
            ReadDynamicCodes();
            RunCodes();
            break;
        default:
            RaiseDamaged();
    }
    return !last;
}

void Inflate64::CopyStored() {
    Drop(bit_count_ % 8);
    const std::uint32_t size = Take(16);
    if ((Take(16) ^ size) != 0xFFFF) {
        RaiseDamaged();
    }
    for (std::uint32_t i = 0; i < size; ++i) {
        Put(static_cast<std::uint8_t>(Take(8)));
    }
}

// Section 3.2.6.
void Inflate64::ReadFixedCodes() {
    std::array<std::uint8_t, 288> lengths;
    std::fill(lengths.begin(), lengths.begin() + 144, std::uint8_t{8});
    std::fill(lengths.begin() + 144, lengths.begin() + 256, std::uint8_t{9});
    std::fill(lengths.begin() + 256, lengths.begin() + 280, std::uint8_t{7});
    std::fill(lengths.begin() + 280, lengths.end(), std::uint8_t{8});
    literals_.Build(lengths.data(), lengths.size());
    std::fill(lengths.begin(), lengths.begin() + kMaxDistances, std::uint8_t{5});
    distances_.Build(lengths.data(), kMaxDistances);
}

// Section 3.2.7.
void Inflate64::ReadDynamicCodes() {
    static constexpr std::array<std::uint8_t, 19> kOrder = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                            11, 4,  12, 3, 13, 2, 14, 1, 15};
    const std::size_t literals = Take(5) + kFirstLength;
    const std::size_t distances = Take(5) + 1;
    const std::size_t code_lengths = Take(4) + 4;
    if (literals > kMaxLiterals) {
        RaiseDamaged();
    }
    std::array<std::uint8_t, 19> length_code_lengths{};
    for (std::size_t i = 0; i < code_lengths; ++i) {
        length_code_lengths[kOrder[i]] = static_cast<std::uint8_t>(Take(3));
    }
    Code code;
    code.Build(length_code_lengths.data(), length_code_lengths.size());
    std::array<std::uint8_t, kMaxLiterals + kMaxDistances> lengths{};
    for (std::size_t done = 0; done < literals + distances;) {
        const unsigned symbol = code.Read(*this);
        if (symbol < 16) {
            lengths[done++] = static_cast<std::uint8_t>(symbol);
            continue;
        }
        if (symbol == 16 && done == 0) {
            RaiseDamaged();
        }
        const std::uint8_t value = symbol == 16 ? lengths[done - 1] : std::uint8_t{0};
        const std::size_t repeat = symbol == 16   ? 3 + Take(2)
                                   : symbol == 17 ? 3 + Take(3)
                                                  : 11 + Take(7);
        if (repeat > literals + distances - done) {
            RaiseDamaged();
        }
        std::fill_n(lengths.begin() + static_cast<std::ptrdiff_t>(done), repeat, value);
        done += repeat;
    }
    literals_.Build(lengths.data(), literals);
    distances_.Build(lengths.data() + literals, distances);
}

void Inflate64::RunCodes() {
    for (;;) {
        const unsigned symbol = literals_.Read(*this);
        if (symbol == kEndOfBlock) {
            return;
        }
        if (symbol < kEndOfBlock) {
            Put(static_cast<std::uint8_t>(symbol));
        } else {
            CopyMatch(symbol - kFirstLength);
        }
    }
}

void Inflate64::CopyMatch(unsigned symbol) {
    if (symbol >= kLengthBase.size()) {
        RaiseDamaged();
    }
    const std::size_t length = kLengthBase[symbol] + Take(kLengthBits[symbol]);
    const unsigned distance_symbol = distances_.Read(*this);
    const std::size_t distance =
        DistanceBase(distance_symbol) + Take(DistanceBits(distance_symbol));
    if (distance > kWindow || (!wrapped_ && distance > position_)) {
        RaiseDamaged();
    }
    for (std::size_t i = 0; i < length; ++i) {
        Put(window_[(position_ + kWindow - distance) % kWindow]);
    }
}

void Inflate64::Put(std::uint8_t byte) {
    window_[position_++] = byte;
    if (position_ == kWindow) {
        Flush();
        position_ = 0;
        wrapped_ = true;
    }
}

void Inflate64::Flush() {
    if (position_ > 0) {
        out_(window_.data(), position_);
    }
}

}  // namespace vantrel::zip
