// Two wraps of system calls: a web page in the user's browser, and a text box scrolled without
// taking the focus away. Keeps no state.
#pragma once

#include <string>

#include "forms/controls.h"
#include "forms/program.h"

namespace vantrel {

class clsSystem {
  public:
    explicit clsSystem(forms::Program& program) : program_(program) {}

    // Opens `address` in the user's browser; tells when there is none or when it did not open.
    // Errors: "clsSystem:ShowWebPage Method".
    void ShowWebPage(const std::string& address);
    // Scrolls `box` by `lines` lines and gives the focus back to the control of its window that had
    // it. Errors: "clsSystem:ScrollText Method".
    void ScrollText(forms::TextBox& box, int lines);

  private:
    void Tell(const std::string& text, const std::string& title);

    forms::Program& program_;
};

}  // namespace vantrel
