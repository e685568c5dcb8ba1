#pragma once

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

}  // namespace vantrel::test
