// The box in which the component's questions are asked.
#pragma once

#include <string>

#include "forms/desktop.h"

namespace vantrel {

// Whether the user answers with Retry; Cancel is the other button.
bool AskedToRetry(forms::Desktop& desktop, const std::string& text, const std::string& title);

}  // namespace vantrel
