// What is written on each control of a window, and what it says when the pointer rests on it.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "forms/form.h"

namespace vantrel::test {

struct Row {
    std::string name;
    std::string caption{};
    std::string tooltip{};
    bool operator==(const Row&) const = default;
};
inline void PrintTo(const Row& row, std::ostream* out) {
    *out << row.name << " \"" << row.caption << "\" (" << row.tooltip << ")";
}

// In the window's own order.
inline std::vector<Row> RowsOf(const forms::Form& window) {
    std::vector<Row> rows;
    for (const forms::Control* control : window.controls()) {
        rows.push_back({control->name(), control->Caption(), control->Tooltip()});
    }
    return rows;
}

}  // namespace vantrel::test
