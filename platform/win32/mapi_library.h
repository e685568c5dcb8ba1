// Simple MAPI as the system finds it: mapi32.dll hands every call on to the user's mail program.
#pragma once

#include <windows.h>
// Needs the types of windows.h.
#include <mapi.h>

namespace vantrel::platform {

class MapiLibrary {
  public:
    // Loads the library when that has not been done. Raises a mail error where nobody can send
    // mail; the system would say so in a box of its own, or take the message and drop it.
    void Load();

    // What mail programs leave changed behind them is put back after each call.
    ULONG LogOn(LHANDLE& session);
    ULONG Send(LHANDLE session, MapiMessage& message, FLAGS flags);
    ULONG LogOff(LHANDLE session);

  private:
    LPMAPILOGON log_on_ = nullptr;
    LPMAPISENDMAIL send_ = nullptr;
    LPMAPILOGOFF log_off_ = nullptr;
};

}  // namespace vantrel::platform
