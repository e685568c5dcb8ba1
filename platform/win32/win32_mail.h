// The user's mail program through Simple MAPI. The library is loaded when it is asked for the first
// time and stays: mail programs do not take kindly to being unloaded.
#pragma once

#include "platform/mail_draft.h"

namespace vantrel::platform {

class MapiLibrary;

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
