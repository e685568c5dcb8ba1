// The two text-file viewers of the file helper class. They are here because they fill controls.
#pragma once

#include <string>

#include "forms/controls.h"
#include "forms/program.h"

namespace vantrel {

// Fills `box` with a file of the application folder, line by line: lines are joined by CR LF, with
// none after the last. The caption of `contents` becomes that of the file, unless it is the log. A
// file that is not there, and one without any line, is an empty text; a NUL is shown as a space.
// Runs pending events once before it reads. Errors: "clsFiles:Show_INI Method".
void Show_INI(forms::Program& program, const std::string& name, forms::TextBox& box,
              forms::Label& contents);

// The same with the whole file as it stands, in one read, and no caption. Errors:
// "clsFiles:Show_INIQuick Method".
void Show_INIQuick(forms::Program& program, const std::string& name, forms::TextBox& box);

}  // namespace vantrel
