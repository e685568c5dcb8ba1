// File masks by the rules of DOS and Windows, case ignored.
//
// "*" is any number of characters, "?" one. The rules beyond that are those of the directory search
// of Windows (FsRtlIsNameInExpression), because users know masks from there.
#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"

namespace vantrel::zip {

// "*.*" and "*" are every file, dotted or not. "?" is one character, or none before a dot and at
// the end. "*." is every name without a dot. ".*" at the end also matches nothing; in "*.txt" the
// star matches up to the last dot. Usable from any thread.
class DosMask {
  public:
    // `code_page` folds case, and is borrowed.
    DosMask(platform::CodePage& code_page, std::string_view mask);

    // `name` is a bare file name, UTF-8.
    bool Matches(const std::string& name) const;
    bool IsEverything() const { return everything_; }

  private:
    platform::CodePage& code_page_;
    std::u32string pattern_;
    bool everything_ = false;
};

}  // namespace vantrel::zip
