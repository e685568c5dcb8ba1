// File masks by the rules of DOS and Windows, case ignored.
#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"

namespace vantrel::zip {

// "*.*" and "*" are every file, dotted or not. "?" is one character, or none before a dot and at
// the end. "*." is every name without a dot. ".*" at the end may be missing from the name
// altogether; in "*.txt" the star reaches up to the last dot.
class DosMask {
  public:
    DosMask(platform::CodePage& code_page, std::string_view mask);

    bool Matches(const std::string& name) const;
    bool IsEverything() const { return everything_; }

  private:
    platform::CodePage& code_page_;
    std::u32string pattern_;
    bool everything_ = false;
};

}  // namespace vantrel::zip
