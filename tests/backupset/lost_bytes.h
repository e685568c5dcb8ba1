#pragma once

#include <cstddef>
#include <string>

namespace vantrel::test {

// What is gone of `before` when `after` has taken its place, where one stretch of bytes was
// exchanged for another: "" when bytes were only put in.
inline std::string LostBytes(const std::string& before, const std::string& after) {
    std::size_t head = 0;
    while (head < before.size() && head < after.size() && before[head] == after[head]) {
        ++head;
    }
    std::size_t tail = 0;
    while (tail < before.size() - head && tail < after.size() - head &&
           before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) {
        ++tail;
    }
    return before.substr(head, before.size() - head - tail);
}

}  // namespace vantrel::test
