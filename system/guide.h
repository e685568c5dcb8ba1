// The user's guide: a page that stands in the application folder and that the user's browser shows.
#pragma once

#include "forms/form.h"
#include "forms/program.h"

namespace vantrel {

// Opens the guide for the user, who has asked for it in `window`. When it is missing or does not
// open, a box says so; but not while a handler of `window` is running, since that is a backup, a
// restore or another question, and a box would hold it up. In an unattended run it does nothing.
// Raises nothing of its own.
void ShowGuide(forms::Program& program, forms::Form& window);

}  // namespace vantrel
