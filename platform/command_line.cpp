#include "platform/command_line.h"

namespace vantrel::platform {

namespace {

std::size_t EndOfName(std::string_view line) {
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"') quoted = !quoted;
        if (!quoted && (line[i] == ' ' || line[i] == '\t')) return i;
    }
    return line.size();
}

}  // namespace

std::string ParameterText(std::string_view whole_line) {
    const std::string_view text = whole_line.substr(EndOfName(whole_line));
    const std::size_t first = text.find_first_not_of(' ');
    if (first != std::string_view::npos) return std::string(text.substr(first));
    return std::string(text.empty() ? 0 : text.size() - 1, ' ');
}

}  // namespace vantrel::platform
