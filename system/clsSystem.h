// Calls to the shell and to a text box that several windows need: a web page in the user's browser,
// the user's guide, and scrolling without a change of focus. Window thread only.
#pragma once

#include <cstdint>
#include <string>

#include "forms/controls.h"
#include "forms/form.h"
#include "forms/program.h"

namespace vantrel {

// Keeps no state; created for one call.
class clsSystem {
  public:
    explicit clsSystem(forms::Program& program) : program_(program) {}

    // Opens `address` in the user's browser. Shows a message when no browser is registered or when
    // it does not open. Creates and removes the scratch file "\temphtm.HTM" in the application
    // folder. Raises "clsSystem:ShowWebPage Method", also when the scratch file cannot be removed.
    void ShowWebPage(const std::string& address);
    // Scrolls `box` by `lines` lines (negative: up) and returns the focus to the control of its
    // window that had it. 1 for a box of several lines, 0 for a box of one line. Raises
    // "clsSystem:ScrollText Method".
    long ScrollText(forms::TextBox& box, std::int16_t lines);

  private:
    void OpenWith(const std::string& browser, const std::string& address);
    void ShowMessage(const std::string& text, const std::string& title);

    forms::Program& program_;
};

// Opens the user's guide, "guide.html" in the application folder, in the user's browser. F1 in
// `window` calls it. A message is shown when the page is missing or does not open, except while a
// handler of `window` runs: the message would block a backup, a restore or another question. Does
// nothing in an unattended run. Raises nothing of its own.
void ShowGuide(forms::Program& program, forms::Form& window);

}  // namespace vantrel
