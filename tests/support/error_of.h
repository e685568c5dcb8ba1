#pragma once

#include <gtest/gtest.h>

#include <string>

#include "common/error.h"

namespace vantrel::test {

// The error that `action` raises; with number 0 when it raises none.
template <typename Action>
Error RaisedBy(Action&& action) {
    try {
        action();
    } catch (const Error& error) {
        return error;
    }
    return {0, "", "no error was raised"};
}

// Its number; 0 when there is none.
template <typename Action>
int ErrorOf(Action&& action) {
    return RaisedBy(action).number();
}

// `action` raises an error that the shared reporter has passed on under `label`.
template <typename Action>
void ExpectReported(Action&& action, const std::string& label, const std::string& description) {
    const Error error = RaisedBy(action);
    EXPECT_EQ(error.number(), -2147211505);
    EXPECT_EQ(error.source(), label);
    EXPECT_EQ(error.description(), description);
}

}  // namespace vantrel::test
