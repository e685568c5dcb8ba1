#include "zip/deflate/inflate64.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "common/error.h"
#include "tests/support/error_of.h"

namespace vantrel::zip {
namespace {

// Writes a stream bit by bit.
class Bits {
  public:
    // Numbers begin with their lowest bit.
    Bits& Number(unsigned value, int count) {
        for (int i = 0; i < count; ++i) {
            Put((value >> i) & 1);
        }
        return *this;
    }
    // Codes are written as in the tables, "0" and "1" in their order.
    Bits& Code(const std::string& bits) {
        for (const char bit : bits) {
            Put(bit == '1');
        }
        return *this;
    }
    std::string Stream() const { return bytes_; }

  private:
    void Put(unsigned bit) {
        if (count_ % 8 == 0) {
            bytes_ += '\0';
        }
        bytes_.back() =
            static_cast<char>(static_cast<unsigned char>(bytes_.back()) | bit << (count_ % 8));
        ++count_;
    }

    std::string bytes_;
    int count_ = 0;
};

constexpr unsigned kFixed = 1;
constexpr unsigned kDynamic = 2;

Bits LastBlock(unsigned type) { return Bits().Number(1, 1).Number(type, 2); }

// A final dynamic block; `lengths` are those of the codes 16, 17, 18 and 0 for lengths.
Bits DynamicBlock(unsigned literals, const std::string& lengths) {
    Bits bits = LastBlock(kDynamic).Number(literals - 257, 5).Number(0, 5).Number(0, 4);
    for (const char length : lengths) {
        bits.Number(static_cast<unsigned>(length - '0'), 3);
    }
    return bits;
}

std::string Inflated(const std::string& stream) {
    std::string out;
    std::string_view rest = stream;
    Inflate64([&rest] { return std::exchange(rest, {}); },
              [&out](const std::uint8_t* data, std::size_t size) {
                  out.append(reinterpret_cast<const char*>(data), size);
              })
        .Run();
    return out;
}

void ExpectDamaged(const Bits& bits) {
    const Error error = test::RaisedBy([&] { Inflated(bits.Stream()); });
    EXPECT_EQ(error.number(), error_number::kDeviceIo);
    EXPECT_EQ(error.description(), "its data is damaged");
}

const std::string kLetterA = "10010001";
const std::string kLengthThree = "0000001";
const std::string kDistanceOne = "00000";
const std::string kEnd = "0000000";

TEST(Inflate64, FixedCodesWithAMatch) {
    const Bits bits =
        LastBlock(kFixed).Code(kLetterA).Code(kLengthThree).Code(kDistanceOne).Code(kEnd);
    EXPECT_EQ(Inflated(bits.Stream()), "aaaa");
}

TEST(Inflate64, StoredBlock) {
    const Bits bits = LastBlock(0).Number(0, 5).Number(2, 16).Number(0xFFFD, 16);
    EXPECT_EQ(Inflated(bits.Stream() + "ab"), "ab");
}

TEST(Inflate64, StreamThatEndsEarlyIsDamaged) {
    ExpectDamaged(Bits());
    ExpectDamaged(LastBlock(kFixed).Code(kLetterA));
}

TEST(Inflate64, BlockOfTheFourthTypeIsDamaged) { ExpectDamaged(LastBlock(3)); }

TEST(Inflate64, StoredLengthWithoutItsComplementIsDamaged) {
    ExpectDamaged(LastBlock(0).Number(0, 5).Number(2, 16).Number(2, 16));
}

TEST(Inflate64, MatchFromBeforeTheStartIsDamaged) {
    ExpectDamaged(LastBlock(kFixed).Code(kLengthThree).Code(kDistanceOne).Code(kEnd));
}

TEST(Inflate64, LengthCode286IsDamaged) {
    ExpectDamaged(LastBlock(kFixed).Code(kLetterA).Code("11000110"));
}

TEST(Inflate64, MoreLiteralCodesThanExistIsDamaged) { ExpectDamaged(DynamicBlock(288, "1100")); }

TEST(Inflate64, MoreCodewordsThanExistIsDamaged) { ExpectDamaged(DynamicBlock(257, "1110")); }

TEST(Inflate64, CodewordWithoutASymbolIsDamaged) {
    ExpectDamaged(DynamicBlock(257, "2000").Code("11"));
}

TEST(Inflate64, RepeatOfNothingIsDamaged) {
    // Of two codes of one bit, that for 16 ("repeat the last length") is 0.
    ExpectDamaged(DynamicBlock(257, "1100").Code("0").Number(0, 2));
}

TEST(Inflate64, RepeatBeyondTheLastLengthIsDamaged) {
    // 17 is 0, and 18 is 1: 138 lengths of zero, twice, where there are 258.
    ExpectDamaged(DynamicBlock(257, "0110").Code("1").Number(127, 7).Code("1").Number(127, 7));
}

}  // namespace
}  // namespace vantrel::zip
