// Mail through Simple MAPI: the user's mail program, to which mapi32.dll forwards every call. Used
// on the user-interface thread only.
#pragma once

#include <windows.h>
// Needs the types of windows.h.
#include <mapi.h>

#include "platform/mail.h"

namespace vantrel::platform {

class MapiLibrary {
  public:
    // Loads the library the first time. It stays loaded, because some mail programs fail when they
    // are unloaded. Raises a mail error when there is no mail
    // program; the system would show a box of its own, or accept the message and drop it.
    void Load();

    // Each call restores the current folder, which mail programs change.
    ULONG LogOn(LHANDLE& session);
    ULONG Send(LHANDLE session, MapiMessage& message, FLAGS flags);
    ULONG LogOff(LHANDLE session);

  private:
    LPMAPILOGON log_on_ = nullptr;
    LPMAPISENDMAIL send_ = nullptr;
    LPMAPILOGOFF log_off_ = nullptr;
};

class Win32MailSession final : public MailSession {
  public:
    explicit Win32MailSession(MapiLibrary& library) : library_(library) {}
    void SignOn() override;
    MailSessionId SessionId() const override { return session_; }
    void SignOff() override;

  private:
    MapiLibrary& library_;
    MailSessionId session_ = 0;
    bool signed_on_ = false;
};

class Win32MailMessages final : public MailDraft {
  public:
    explicit Win32MailMessages(MapiLibrary& library) : library_(library) {}

  protected:
    void Deliver(MailSessionId session, const MailMessage& message, bool dialog) override;

  private:
    MapiLibrary& library_;
};

}  // namespace vantrel::platform
