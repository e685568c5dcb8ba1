// Which data is compressed harder than usual.
#include "zip/deflate/thorough_choice.h"

#include "tests/zip/writer_fixture.h"

namespace vantrel::test {
namespace {

const std::uint8_t* Bytes(const std::string& text) {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

// Lines as in a table of character codes: rising numbers, and others that belong to them. After
// more of them than matches reach back over it begins anew.
std::string Table(std::size_t size) {
    constexpr std::size_t kLines = 8000;
    std::string text;
    const std::string noise = Noise(size, 3);
    for (std::size_t line = 0; text.size() < size; ++line) {
        char words[64];
        std::snprintf(words, sizeof words, "%04zX %05u\n", 0x4E00 + line % kLines,
                      8000u + static_cast<unsigned char>(noise[line]) * 3u);
        text += words;
    }
    text.resize(size);
    return text;
}

class Thorough : public ::testing::Test {
  protected:
    bool IsChosenFor(const std::string& data) {
        return &choice.For(Bytes(data), data.size(), *usual) != usual.get();
    }
    std::unique_ptr<zip::RawCompressor> usual = zip::MakeCompressor(7);
    zip::ThoroughChoice choice;
};

TEST_F(Thorough, ForATableOfNumbers) { EXPECT_TRUE(IsChosenFor(Table(100'000))); }
TEST_F(Thorough, NotForProse) { EXPECT_FALSE(IsChosenFor(Prose(100'000))); }
TEST_F(Thorough, NotForNoise) { EXPECT_FALSE(IsChosenFor(Noise(100'000))); }
TEST_F(Thorough, NotForDigitsThatGainNothing) {
    std::string digits = Noise(100'000);
    for (char& digit : digits) {
        digit = static_cast<char>('0' + static_cast<unsigned char>(digit) % 10);
    }
    EXPECT_FALSE(IsChosenFor(digits));
}
TEST_F(Thorough, NotForWhatIsTooShortForASample) { EXPECT_FALSE(IsChosenFor(Table(8191))); }

TEST_F(Thorough, MakesATableSmallerAndStaysJoinable) {
    const std::string table = Table(zip::kChunkSize);
    zip::Buffer plain;
    zip::Deflater(zip::MakeCompressor(7)).Part(Bytes(table), table.size(), true, plain);
    zip::Buffer hard;
    zip::Deflater deflater(zip::MakeCompressor(7), true);
    deflater.Part(Bytes(table), table.size(), false, hard);
    EXPECT_LT(hard.size(), plain.size() - plain.size() / 20);
    deflater.Part(Bytes(table), table.size(), true, hard);
    EXPECT_TRUE(InflateAll(std::string(hard.View())) == table + table);
}

}  // namespace
}  // namespace vantrel::test
