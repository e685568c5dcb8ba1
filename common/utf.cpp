#include "common/utf.h"

#include <algorithm>

namespace vantrel::utf {

namespace {

constexpr char32_t kFirstAstral = 0x10000;
constexpr char32_t kLast = 0x10FFFF;

// How many bytes follow a lead byte, -1 when it leads nothing.
int Followers(unsigned char lead) {
    if (lead < 0x80) {
        return 0;
    }
    if (lead < 0xC2) {
        return -1;
    }
    if (lead < 0xE0) {
        return 1;
    }
    if (lead < 0xF0) {
        return 2;
    }
    return lead < 0xF5 ? 3 : -1;
}

// The smallest code point that needs so many following bytes.
char32_t Smallest(int followers) {
    constexpr char32_t kSmallest[] = {0, 0x80, 0x800, kFirstAstral};
    return kSmallest[followers];
}

bool Continues(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// Where the character that starts at `from` ends.
std::size_t EndOfCharacter(std::string_view text, std::size_t from) {
    if (from >= text.size()) {
        return text.size();
    }
    std::size_t end = from + 1;
    while (end < text.size() && Continues(text[end])) {
        ++end;
    }
    return end;
}

std::size_t Start(std::string_view text, std::size_t index) {
    std::size_t at = 0;
    while (index > 0 && at < text.size()) {
        at = EndOfCharacter(text, at);
        --index;
    }
    return at;
}

}  // namespace

char32_t Next(std::string_view utf8, std::size_t& position) {
    const std::size_t start = position++;
    const auto lead = static_cast<unsigned char>(utf8[start]);
    const int followers = Followers(lead);
    if (followers == 0) {
        return lead;
    }
    if (followers < 0) {
        return kReplacement;
    }
    const auto count = static_cast<std::size_t>(followers);
    if (utf8.size() - position < count) {
        return kReplacement;
    }
    char32_t point = lead & (0x3Fu >> followers);
    for (std::size_t i = 0; i < count; ++i) {
        const auto byte = static_cast<unsigned char>(utf8[position + i]);
        if ((byte & 0xC0) != 0x80) {
            return kReplacement;
        }
        point = (point << 6) | (byte & 0x3Fu);
    }
    if (point < Smallest(followers) || point > kLast) {
        return kReplacement;
    }
    position += count;
    return point;
}

void Append(std::string& utf8, char32_t point) {
    const auto put = [&](char32_t bits) { utf8 += static_cast<char>(bits); };
    if (point < 0x80) {
        put(point);
    } else if (point < 0x800) {
        put(0xC0 | (point >> 6));
        put(0x80 | (point & 0x3F));
    } else if (point < kFirstAstral) {
        put(0xE0 | (point >> 12));
        put(0x80 | ((point >> 6) & 0x3F));
        put(0x80 | (point & 0x3F));
    } else {
        put(0xF0 | (point >> 18));
        put(0x80 | ((point >> 12) & 0x3F));
        put(0x80 | ((point >> 6) & 0x3F));
        put(0x80 | (point & 0x3F));
    }
}

std::u16string ToUtf16(std::string_view utf8) {
    std::u16string utf16;
    utf16.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        const char32_t point = Next(utf8, i);
        if (point < kFirstAstral) {
            utf16 += static_cast<char16_t>(point);
        } else {
            utf16 += static_cast<char16_t>(0xD800 + ((point - kFirstAstral) >> 10));
            utf16 += static_cast<char16_t>(0xDC00 + ((point - kFirstAstral) & 0x3FF));
        }
    }
    return utf16;
}

std::string ToUtf8(std::u16string_view utf16) {
    std::string utf8;
    utf8.reserve(utf16.size());
    for (std::size_t i = 0; i < utf16.size(); ++i) {
        const char32_t unit = utf16[i];
        if (IsHigh(unit) && i + 1 < utf16.size() && IsLow(utf16[i + 1])) {
            Append(utf8, kFirstAstral + ((unit - 0xD800) << 10) + (utf16[++i] - 0xDC00u));
        } else {
            Append(utf8, unit);
        }
    }
    return utf8;
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::optional<std::string> UpperOfAscii(std::string_view text) {
    std::string upper(text);
    unsigned char all = 0;
    for (char& c : upper) {
        all |= static_cast<unsigned char>(c);
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - ('a' - 'A'));
        }
    }
    if (all >= 0x80) {
        return std::nullopt;
    }
    return upper;
}

std::size_t Utf16Length(std::string_view utf8) {
    std::size_t units = 0;
    for (std::size_t i = 0; i < utf8.size();) {
        units += Next(utf8, i) < kFirstAstral ? 1 : 2;
    }
    return units;
}

bool IsLongerThan(std::string_view utf8, std::size_t limit) {
    return utf8.size() > limit && Utf16Length(utf8) > limit;
}

std::string Left(std::string_view text, std::size_t count) {
    return std::string(text.substr(0, Start(text, count)));
}

std::string At(std::string_view text, std::size_t index) {
    const std::size_t start = Start(text, index);
    return std::string(text.substr(start, EndOfCharacter(text, start) - start));
}

std::size_t Length(std::string_view text) {
    std::size_t length = 0;
    for (std::size_t at = 0; at < text.size(); at = EndOfCharacter(text, at)) {
        ++length;
    }
    return length;
}

}  // namespace vantrel::utf
