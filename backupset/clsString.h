// The text helper of the program's paths.
#pragma once

#include <string>

namespace vantrel {

class clsString {
  public:
    // `text` with "\" at its end; "" becomes "\".
    std::string Backslash(const std::string& text);
};

}  // namespace vantrel
