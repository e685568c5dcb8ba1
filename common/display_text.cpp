#include "common/display_text.h"

#include <array>
#include <cstdio>

#include "common/utf.h"

namespace vantrel {

namespace {

bool IsControl(char32_t point) { return point < 0x20 || (point >= 0x7F && point <= 0x9F); }

std::string Escape(const char* format, unsigned value) {
    std::array<char, 16> escaped{};
    std::snprintf(escaped.data(), escaped.size(), format, value);
    return escaped.data();
}

}  // namespace

std::string EscapeControls(std::string_view text) {
    std::string visible;
    visible.reserve(text.size());
    for (std::size_t next = 0; next < text.size();) {
        const std::size_t start = next;
        const char32_t point = utf::Next(text, next);
        const std::string_view bytes = text.substr(start, next - start);
        const auto first = static_cast<unsigned char>(bytes[0]);
        const bool is_utf8 = first < 0x80 || bytes.size() > 1;
        if (is_utf8 && !IsControl(point)) {
            visible += bytes;
        } else if (bytes.size() == 1) {
            visible += Escape("\\x%02x", first);
        } else {
            visible += Escape("\\u%04x", static_cast<unsigned>(point));
        }
    }
    return visible;
}

std::string Counted(std::uint64_t count, std::string_view one, std::string_view many) {
    std::string text = std::to_string(count) + " ";
    return text += count == 1 ? one : many;
}

}  // namespace vantrel
