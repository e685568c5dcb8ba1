#pragma once

#include "common/error.h"

namespace vantrel::test {

// The number of the error that `action` raises; 0 when it raises none.
template <typename Action>
int ErrorOf(Action&& action) {
    try {
        action();
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

}  // namespace vantrel::test
