#include "backupset/profile_text.h"

#include <algorithm>
#include <cstddef>

namespace vantrel::profile {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::size_t kNone = std::string_view::npos;

// A stretch of the text, in bytes from its start.
struct Span {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string_view In(std::string_view text) const { return text.substr(begin, end - begin); }
};

struct Line {
    Span content;          // without its line end
    std::size_t next = 0;  // where the following line begins
    bool Ended() const { return next > content.end; }
};

Line LineAt(std::string_view text, std::size_t begin) {
    const std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
    const std::size_t next =
        text.substr(end, 2) == "\r\n" ? end + 2 : std::min(end + 1, text.size());
    return {{begin, end}, next};
}

Span Trim(std::string_view text, Span span) {
    while (span.begin < span.end && kBlanks.find(text[span.begin]) != kNone) {
        ++span.begin;
    }
    while (span.begin < span.end && kBlanks.find(text[span.end - 1]) != kNone) {
        --span.end;
    }
    return span;
}

char Lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

// Every name that the program addresses is ASCII: other letters need no folding.
bool SameName(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char a, char b) { return Lower(a) == Lower(b); });
}

// The name in a section line, nothing for any other line.
std::optional<std::string_view> SectionName(std::string_view text, const Line& line) {
    const Span span = Trim(text, line.content);
    const std::string_view content = span.In(text);
    const std::size_t close = content.find(']');
    if (content.empty() || content.front() != '[' || close == kNone) {
        return std::nullopt;
    }
    return Trim(text, {span.begin + 1, span.begin + close}).In(text);
}

// The range of the value when this is the line of `key`, without the spaces around it.
std::optional<Span> ValueOf(std::string_view text, const Line& line, std::string_view key) {
    const Span span = Trim(text, line.content);
    const std::string_view content = span.In(text);
    const std::size_t equals = content.find('=');
    if (equals == kNone || content.front() == ';') {
        return std::nullopt;
    }
    const Span name = Trim(text, {span.begin, span.begin + equals});
    if (!SameName(name.In(text), key)) {
        return std::nullopt;
    }
    return Trim(text, {span.begin + equals + 1, line.content.end});
}

// What the search for a key has found.
struct KeyLocation {
    std::optional<Span> value;
    std::optional<Line> last_line;  // last line of the section that is not blank
};

KeyLocation FindKey(std::string_view text, std::string_view section, std::string_view key) {
    KeyLocation location;
    for (std::size_t at = 0; at < text.size();) {
        const Line line = LineAt(text, at);
        at = line.next;
        const auto name = SectionName(text, line);
        if (name && location.last_line) {
            break;
        }
        if (name && SameName(*name, section)) {
            location.last_line = line;
        }
        if (name || !location.last_line) {
            continue;
        }
        location.value = ValueOf(text, line, key);
        if (location.value) {
            break;
        }
        if (!Trim(text, line.content).In(text).empty()) {
            location.last_line = line;
        }
    }
    return location;
}

std::string_view WithoutQuotes(std::string_view value) {
    const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                        (value.front() == '"' || value.front() == '\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

std::string_view LineEndOf(std::string_view text, const Line& line) {
    return text.substr(line.content.end, line.next - line.content.end);
}

// Inserts a line after `before`, whose missing line end is added first.
std::string InsertBehind(std::string_view text, const Line& before, const std::string& new_line) {
    const Line first = LineAt(text, 0);
    std::string line_end = "\r\n";
    if (first.Ended()) {
        line_end = LineEndOf(text, first);
    }
    if (before.Ended()) {
        line_end = LineEndOf(text, before);
    }
    std::string result(text.substr(0, before.next));
    if (!before.Ended() && before.next > 0) {
        result += line_end;
    }
    result += new_line + line_end;
    return result.append(text.substr(before.next));
}

Line LastLine(std::string_view text) {
    Line last;
    while (last.next < text.size()) {
        last = LineAt(text, last.next);
    }
    return last;
}

}  // namespace

std::optional<std::string> FindValue(std::string_view text, std::string_view section,
                                     std::string_view key) {
    const auto value = FindKey(text, section, key).value;
    if (!value) {
        return std::nullopt;
    }
    const std::string_view bytes = WithoutQuotes(value->In(text));
    return std::string(bytes.substr(0, bytes.find('\0')));
}

std::string SetValue(std::string_view text, std::string_view section, std::string_view key,
                     std::string_view value) {
    const KeyLocation location = FindKey(text, section, key);
    if (location.value) {
        std::string result(text.substr(0, location.value->begin));
        return result.append(value).append(text.substr(location.value->end));
    }
    const std::string entry = std::string(key) + "=" + std::string(value);
    if (location.last_line) {
        return InsertBehind(text, *location.last_line, entry);
    }
    const std::string with_section =
        InsertBehind(text, LastLine(text), "[" + std::string(section) + "]");
    return InsertBehind(with_section, LastLine(with_section), entry);
}

bool CanHold(std::string_view value) {
    return value.find_first_of(std::string_view("\r\n\0", 3)) == kNone;
}

}  // namespace vantrel::profile
