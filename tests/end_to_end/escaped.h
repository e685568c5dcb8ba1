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

}  // namespace vantrel::test
