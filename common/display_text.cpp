#include "common/display_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
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

std::string NumberText(std::uint64_t number, const NumberFormat& format) {
    const std::string digits = std::to_string(number);
    std::string text;
    std::size_t end = digits.size();
    for (int group = format.last_group; end > 0; group = format.other_groups) {
        const std::size_t size = group > 0 ? static_cast<std::size_t>(group) : end;
        const std::size_t start = end - std::min(end, size);
        text.insert(0, digits.substr(start, end - start) + (text.empty() ? "" : format.group));
        end = start;
    }
    return text;
}

std::string SizeText(std::uint64_t bytes, const NumberFormat& format) {
    constexpr std::array<const char*, 6> kUnits = {"KB", "MB", "GB", "TB", "PB", "EB"};
    constexpr std::uint64_t kKilobyte = 1024;
    constexpr double kStep = 1024;
    if (bytes < kKilobyte) {
        return NumberText(bytes, format) + (bytes == 1 ? " byte" : " bytes");
    }
    double value = static_cast<double>(bytes) / kStep;
    std::size_t unit = 0;
    for (; std::round(value) >= kStep; ++unit) {
        value /= kStep;
    }
    const auto tenths = static_cast<std::uint64_t>(std::llround(value * 10));
    const std::string number =
        tenths < 100
            ? NumberText(tenths / 10, format) + format.decimal + std::to_string(tenths % 10)
            : NumberText(static_cast<std::uint64_t>(std::llround(value)), format);
    return number + " " + kUnits[unit];
}

}  // namespace vantrel
