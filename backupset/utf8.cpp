#include "backupset/utf8.h"

namespace vantrel::utf8 {

namespace {

bool Continues(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// Where the character that starts at `from` ends.
std::size_t Next(std::string_view text, std::size_t from) {
    if (from >= text.size()) return text.size();
    std::size_t end = from + 1;
    while (end < text.size() && Continues(text[end])) ++end;
    return end;
}

std::size_t Start(std::string_view text, std::size_t index) {
    std::size_t at = 0;
    while (index > 0 && at < text.size()) {
        at = Next(text, at);
        --index;
    }
    return at;
}

}  // namespace

std::string Left(std::string_view text, std::size_t count) {
    return std::string(text.substr(0, Start(text, count)));
}

std::string At(std::string_view text, std::size_t index) {
    const std::size_t start = Start(text, index);
    return std::string(text.substr(start, Next(text, start) - start));
}

std::size_t Length(std::string_view text) {
    std::size_t length = 0;
    for (std::size_t at = 0; at < text.size(); at = Next(text, at)) ++length;
    return length;
}

}  // namespace vantrel::utf8
