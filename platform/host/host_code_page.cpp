#include "platform/host/host_code_page.h"

#include <wctype.h>

#include <algorithm>
#include <array>
#include <utility>

#include "common/utf.h"

namespace vantrel::platform {

namespace {

// Code points of bytes 80 to 9F in Windows-1252; the five bytes without a character stand for the
// control characters of the same number.
constexpr std::array<char16_t, 32> kAnsi = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// Code points of bytes 80 to FF in code page 437.
constexpr std::array<char16_t, 128> kOem = {
    0x00C7, 0x00FC, 0x00E9, 0x00E2, 0x00E4, 0x00E0, 0x00E5, 0x00E7, 0x00EA, 0x00EB, 0x00E8, 0x00EF,
    0x00EE, 0x00EC, 0x00C4, 0x00C5, 0x00C9, 0x00E6, 0x00C6, 0x00F4, 0x00F6, 0x00F2, 0x00FB, 0x00F9,
    0x00FF, 0x00D6, 0x00DC, 0x00A2, 0x00A3, 0x00A5, 0x20A7, 0x0192, 0x00E1, 0x00ED, 0x00F3, 0x00FA,
    0x00F1, 0x00D1, 0x00AA, 0x00BA, 0x00BF, 0x2310, 0x00AC, 0x00BD, 0x00BC, 0x00A1, 0x00AB, 0x00BB,
    0x2591, 0x2592, 0x2593, 0x2502, 0x2524, 0x2561, 0x2562, 0x2556, 0x2555, 0x2563, 0x2551, 0x2557,
    0x255D, 0x255C, 0x255B, 0x2510, 0x2514, 0x2534, 0x252C, 0x251C, 0x2500, 0x253C, 0x255E, 0x255F,
    0x255A, 0x2554, 0x2569, 0x2566, 0x2560, 0x2550, 0x256C, 0x2567, 0x2568, 0x2564, 0x2565, 0x2559,
    0x2558, 0x2552, 0x2553, 0x256B, 0x256A, 0x2518, 0x250C, 0x2588, 0x2584, 0x258C, 0x2590, 0x2580,
    0x03B1, 0x00DF, 0x0393, 0x03C0, 0x03A3, 0x03C3, 0x00B5, 0x03C4, 0x03A6, 0x0398, 0x03A9, 0x03B4,
    0x221E, 0x03C6, 0x03B5, 0x2229, 0x2261, 0x00B1, 0x2265, 0x2264, 0x2320, 0x2321, 0x00F7, 0x2248,
    0x00B0, 0x2219, 0x00B7, 0x221A, 0x207F, 0x00B2, 0x25A0, 0x00A0};

// The byte of a code point in Windows-1252, -1 when it has none.
int AnsiByte(char32_t point) {
    if (point < 0x80 || (point >= 0xA0 && point <= 0xFF)) {
        return static_cast<int>(point);
    }
    const auto found = std::find(kAnsi.begin(), kAnsi.end(), point);
    return found == kAnsi.end() ? -1 : static_cast<int>(0x80 + (found - kAnsi.begin()));
}

char32_t Capital(char32_t point) {
    // Never freed: it serves until the process ends.
    static const locale_t kUnicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (point > 0xFFFF || kUnicode == nullptr) {
        return point;
    }
    return static_cast<char32_t>(towupper_l(static_cast<wint_t>(point), kUnicode));
}

template <typename Map>
std::string MapPoints(const std::string& utf8, Map map) {
    std::string mapped;
    mapped.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        const std::size_t start = i;
        const char32_t point = utf::Next(utf8, i);
        const char32_t target = map(point);
        if (target == point) {
            mapped.append(utf8, start, i - start);
        } else {
            utf::Append(mapped, target);
        }
    }
    return mapped;
}

template <typename Upper>
std::string DecodeWith(const std::string& bytes, Upper upper) {
    std::string utf8;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        utf::Append(utf8, value < 0x80 ? value : upper(value));
    }
    return utf8;
}

}  // namespace

std::optional<std::string> HostCodePage::Encode(const std::string& utf8) {
    std::string bytes;
    for (std::size_t i = 0; i < utf8.size();) {
        const int byte = AnsiByte(utf::Next(utf8, i));
        if (byte < 0) {
            return std::nullopt;
        }
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

std::string HostCodePage::EncodeLossy(const std::string& utf8) {
    std::string bytes;
    for (std::size_t i = 0; i < utf8.size();) {
        const int byte = AnsiByte(utf::Next(utf8, i));
        bytes += byte < 0 ? '?' : static_cast<char>(byte);
    }
    return bytes;
}

std::string HostCodePage::Decode(const std::string& bytes) {
    return DecodeWith(bytes, [](unsigned char value) -> char32_t {
        return value < 0xA0 ? kAnsi[value - 0x80u] : value;
    });
}

std::string HostCodePage::DecodeOem(const std::string& bytes) {
    return DecodeWith(bytes, [](unsigned char value) -> char32_t { return kOem[value - 0x80u]; });
}

std::string HostCodePage::Upper(const std::string& utf8) {
    if (auto ascii = utf::UpperOfAscii(utf8)) {
        return std::move(*ascii);
    }
    return MapPoints(utf8, [](char32_t point) {
        const char32_t capital = Capital(point);
        return AnsiByte(capital) < 0 ? point : capital;
    });
}

std::string HostFold(const std::string& utf8) {
    if (auto ascii = utf::UpperOfAscii(utf8)) {
        return std::move(*ascii);
    }
    return MapPoints(utf8, Capital);
}

}  // namespace vantrel::platform
