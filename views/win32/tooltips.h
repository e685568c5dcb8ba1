// The tool tips of a window's controls. Their texts are read when they appear, and disabled
// controls have them, too. Used on the user-interface thread only.
#pragma once

#include <windows.h>
// Needs the types of windows.h.
#include <commctrl.h>

#include <string>
#include <vector>

namespace vantrel::views {

class Tooltips {
  public:
    // Windows destroys the tips together with `window`.
    void Attach(HWND window);
    void Add(HWND control);
    // For lines to be broken at, at most.
    void SetWidth(int pixels) const;
    // The control for whose tip this notification asks; nullptr when it does not ask for one.
    static HWND AskedFor(const NMHDR& notification);
    // Answers it. An empty text shows no tip.
    void Answer(const NMHDR& notification, const std::string& text);
    // Takes the messages of the mouse, from the message loop. Windows sends those over a disabled
    // control to the window behind it. (TTF_SUBCLASS would do without this function, but makes
    // each message to a control look up a property: under Wine, a request to its server.)
    void Relay(const MSG& message) const;

  private:
    static LRESULT CALLBACK FindDisabled(HWND tips, UINT message, WPARAM wparam, LPARAM lparam,
                                         UINT_PTR, DWORD_PTR self);
    // The disabled control at a point of the screen in the window `parent`; nullptr for none.
    HWND DisabledAt(HWND parent, POINT at) const;

    HWND tips_ = nullptr;
    std::vector<HWND> controls_;
    std::wstring text_;  // shown
};

}  // namespace vantrel::views
