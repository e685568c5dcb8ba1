// Texts of our own for controls, where no caption or tool tip is given: what the pointer shows, and
// what a screen reader reads.
#pragma once

#include <string>

namespace vantrel::views {

// The tool tip of a control that has no given one; "" for none.
std::string OwnTip(int control_id);
// The name of a control that neither its text nor a label before it names; "" for the others.
std::string OwnName(int control_id);

}  // namespace vantrel::views
