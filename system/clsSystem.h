// Two wraps of system calls: a web page in the user's browser, and a text box scrolled without
// taking the focus away. Keeps no state.
#pragma once

#include <cstdint>
#include <string>

#include "forms/controls.h"
#include "forms/program.h"

namespace vantrel {

class clsSystem {
  public:
    explicit clsSystem(forms::Program& program) : program_(program) {}

    // Opens `address` in the user's browser; tells when there is none or when it did not open.
    // Errors, also one of its scratch file that cannot be removed: "clsSystem:ShowWebPage Method".
    void ShowWebPage(const std::string& address);
    // Scrolls `box` by `lines` lines and gives the focus back to the control of its window that had
    // it. 1 when the box has lines to scroll, 0 when it is a single one. Errors:
    // "clsSystem:ScrollText Method".
    long ScrollText(forms::TextBox& box, std::int16_t lines);

  private:
    void OpenWith(const std::string& browser, const std::string& address);
    void Tell(const std::string& text, const std::string& title);

    forms::Program& program_;
};

}  // namespace vantrel
