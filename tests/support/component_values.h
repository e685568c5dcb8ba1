// Values of the zip components' properties as text.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "zip/pkzip.h"

namespace vantrel::test {

inline std::string Text(const zip::Value& value) {
    if (const auto* flag = std::get_if<bool>(&value)) {
        return *flag ? "True" : "False";
    }
    if (const auto* text = std::get_if<std::string>(&value)) {
        return *text;
    }
    if (const auto* small = std::get_if<std::int16_t>(&value)) {
        return std::to_string(*small);
    }
    return std::to_string(std::get<std::int32_t>(value));
}

}  // namespace vantrel::test
