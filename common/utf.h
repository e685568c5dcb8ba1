// UTF-8 and UTF-16. Both ways are lenient, because file names on disk are not always well formed:
// a lone surrogate becomes three bytes and comes back as it was; a byte that belongs to no valid
// sequence becomes U+FFFD.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vantrel::utf {

constexpr char32_t kReplacement = 0xFFFD;

// Whether a UTF-16 unit is the first, or the second, of two that stand for one character.
constexpr bool IsHigh(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsLow(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

std::u16string ToUtf16(std::string_view utf8);
std::string ToUtf8(std::u16string_view utf16);

// The code point at `position`, which moves behind it; kReplacement, and one byte further, where no
// valid sequence starts. `position` must lie inside the text.
char32_t Next(std::string_view utf8, std::size_t& position);

// Appends a code point (surrogates too) as UTF-8.
void Append(std::string& utf8, char32_t point);

bool IsAscii(std::string_view text);

// The text in capitals when it holds nothing but ASCII, as most names do; otherwise nothing.
std::optional<std::string> UpperOfAscii(std::string_view text);

// How many UTF-16 units the text takes.
std::size_t Utf16Length(std::string_view utf8);

// Whether the text takes more than `limit` UTF-16 units. Quick where it has no more bytes than
// that.
bool IsLongerThan(std::string_view utf8, std::size_t limit);

// Characters of UTF-8 text, for rules such as "the first 3 characters". A byte that belongs to no
// valid sequence counts with the character before it.

// The first `count` characters, all of a shorter text.
std::string Left(std::string_view text, std::size_t count);
// The character at `index`, from 0, as its bytes; "" at the end and beyond.
std::string At(std::string_view text, std::size_t index);
// How many characters the text has.
std::size_t Length(std::string_view text);

}  // namespace vantrel::utf
