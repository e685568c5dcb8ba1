// How the tests' helpers write a word of a line whose words are apart by tabs: with "\" before
// tabs, line ends and itself. window.py and mail_test.py read it.
#pragma once

#include <string>

namespace vantrel::test {

inline std::string Escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
            case '\\':
                result += "\\\\";
                break;
            case '\t':
                result += "\\t";
                break;
            case '\r':
                result += "\\r";
                break;
            case '\n':
                result += "\\n";
                break;
            default:
                result += c;
        }
    }
    return result;
}

// The text that Escaped has made into `line`.
inline std::string Unescaped(const std::string& line) {
    std::string text;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] != '\\' || i + 1 == line.size()) {
            text += line[i];
            continue;
        }
        switch (line[++i]) {
            case 't':
                text += '\t';
                break;
            case 'r':
                text += '\r';
                break;
            case 'n':
                text += '\n';
                break;
            default:
                text += line[i];
        }
    }
    return text;
}

}  // namespace vantrel::test
