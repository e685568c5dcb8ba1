#pragma once

#include "common/error.h"

namespace vantrel::test {

// The number of the error that `deed` raises; 0 when it raises none.
template <typename Deed>
int ErrorOf(Deed&& deed) {
    try {
        deed();
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

}  // namespace vantrel::test
