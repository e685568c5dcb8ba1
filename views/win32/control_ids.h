// From a control's given name to its number in resource.h.
#pragma once

#include <string>

namespace vantrel::views {

// The number of a control of the window `form`; 0 when resource.h has none.
int ControlId(const std::string& form, const std::string& control);

}  // namespace vantrel::views
