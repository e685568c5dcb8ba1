// Counting characters in UTF-8 text, where the rules speak of "the first 3 characters". A byte that
// belongs to no valid sequence counts with the character before it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vantrel::utf8 {

// The first `count` characters, all of a shorter text.
std::string Left(std::string_view text, std::size_t count);

// The character at `index`, from 0, as its bytes; "" behind the end.
std::string At(std::string_view text, std::size_t index);

// How many characters the text has.
std::size_t Length(std::string_view text);

}  // namespace vantrel::utf8
