// What the fuzz targets share: how a claim is made, and how one input is cut into several texts.
#pragma once

#include <cstdlib>
#include <string_view>

namespace vantrel::test {

// Ends the process when the claim does not hold; the fuzzer keeps the input.
inline void Demand(bool held) {
    if (!held) {
        std::abort();
    }
}

// The first line without its LF, taken off the front; the rest when it has none.
inline std::string_view TakeLine(std::string_view& input) {
    const std::size_t end = input.find('\n');
    const std::string_view line = input.substr(0, end);
    input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
    return line;
}

}  // namespace vantrel::test
