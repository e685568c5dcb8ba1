// How a trapped run-time error reaches the user.
#pragma once

#include "common/error.h"
#include "forms/program.h"

namespace vantrel {

// A box with the description, the critical icon and the title "Error"; with nobody there an undated
// log line instead. A log that cannot be written is no further error: then the exit code must
// speak.
void ShowError(forms::Program& program, const Error& error);

}  // namespace vantrel
