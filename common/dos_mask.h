// File masks by the rules of DOS and Windows.
//
// "*" is any number of characters, "?" one. The rules beyond that are those of the directory search
// of Windows (FsRtlIsNameInExpression), because users know masks from there.
#pragma once

#include <string>
#include <string_view>

namespace vantrel {

// "*.*" and "*" are every file, dotted or not. "?" is one character, or none before a dot and at
// the end. "*." is every name without a dot. ".*" at the end also matches nothing; in "*.txt" the
// star matches up to the last dot. Usable from any thread.
class DosMask {
  public:
    // Mask and names are UTF-8. Case counts: pass both as CodePage::Fold returns them.
    explicit DosMask(std::string_view folded_mask);

    // `folded_name` is a bare file name.
    bool Matches(std::string_view folded_name) const;
    bool IsEverything() const { return everything_; }

  private:
    std::u32string pattern_;
    bool everything_ = false;
};

}  // namespace vantrel
