// Any bytes as a profile. The first three lines of the input are a section, a key and a value, the
// rest is the file. A reader that goes line by line says what must be found, before the value is
// set and after it.
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backupset/profile_text.h"
#include "tests/backupset/lost_bytes.h"
#include "tests/fuzz/fuzz_input.h"

namespace {

using vantrel::test::Demand;
using vantrel::test::LostBytes;
namespace profile = vantrel::profile;

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool second_of_pair = i > 0 && text[i - 1] == '\r' && text[i] == '\n';
        if (second_of_pair) {
            continue;
        }
        if (text[i] == '\r' || text[i] == '\n') {
            lines.emplace_back();
        } else {
            lines.back() += text[i];
        }
    }
    return lines;
}

std::string Trimmed(std::string text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        text.erase(0, 1);
    }
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) {
        text.pop_back();
    }
    return text;
}

std::string Lowered(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c + ('a' - 'A'));
        }
    }
    return text;
}

// A value as it stands behind "=", as its reader gets it.
std::string ReadValue(const std::string& written) {
    std::string value = Trimmed(written);
    for (const char quote : {'"', '\''}) {
        if (value.size() > 1 && value.front() == quote && value.back() == quote) {
            value = value.substr(1, value.size() - 2);
            break;
        }
    }
    return value.substr(0, value.find('\0'));
}

// By section and key in small letters. Of two sections of one name the first counts, even where it
// is empty; of two keys the first.
using Values = std::map<std::pair<std::string, std::string>, std::string>;

Values ReadAll(const std::string& text) {
    Values values;
    std::map<std::string, bool> seen;
    std::optional<std::string> section;
    for (const std::string& raw : Lines(text)) {
        const std::string line = Trimmed(raw);
        const std::size_t close = line.find(']');
        if (line.starts_with('[') && close != std::string::npos) {
            section = Lowered(Trimmed(line.substr(1, close - 1)));
            if (std::exchange(seen[*section], true)) {
                section.reset();
            }
            continue;
        }
        const std::size_t equals = line.find('=');
        if (!section || equals == std::string::npos || line.starts_with(';')) {
            continue;
        }
        values.emplace(std::pair(*section, Lowered(Trimmed(line.substr(0, equals)))),
                       ReadValue(line.substr(equals + 1)));
    }
    return values;
}

// Whether a line of this section or key reads as what it was written for.
bool IsName(const std::string& name, const char* forbidden) {
    return Trimmed(name) == name && profile::CanHold(name) &&
           name.find_first_of(forbidden) == std::string::npos;
}

// Everything but one stretch within a line is as it was; nothing is gone when the key is new.
void CheckKeptBytes(const std::string& before, const std::string& after, bool is_new) {
    const std::string lost = LostBytes(before, after);
    Demand(is_new ? lost.empty() : lost.find_first_of("\r\n") == std::string::npos);
}

void CheckSetting(const std::string& before, const std::string& section, const std::string& key,
                  const std::string& value) {
    const std::string after = profile::SetValue(before, section, key, value);
    if (!profile::CanHold(value) || !IsName(section, "]") || !IsName(key, "=;[")) {
        return;
    }
    Values expected = ReadAll(before);
    const auto place = std::pair(Lowered(section), Lowered(key));
    CheckKeptBytes(before, after, !expected.contains(place));
    expected[place] = ReadValue(value);
    Demand(ReadAll(after) == expected);
    Demand(profile::FindValue(after, section, key) == ReadValue(value));
    Demand(profile::SetValue(after, section, key, Trimmed(value)).size() <= after.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string section(vantrel::test::TakeLine(input));
    const std::string key(vantrel::test::TakeLine(input));
    const std::string value(vantrel::test::TakeLine(input));
    const std::string text(input);

    const Values values = ReadAll(text);
    for (const auto& [place, found] : values) {
        Demand(profile::FindValue(text, place.first, place.second) == found);
    }
    const auto there = values.find({Lowered(section), Lowered(key)});
    const auto found = profile::FindValue(text, section, key);
    Demand(found.has_value() == (there != values.end()));
    if (found) {
        Demand(*found == there->second);
    }
    CheckSetting(text, section, key, value);
    return 0;
}
