// Mail on a host that has no mail program: signing on fails.
#pragma once

#include "platform/mail_draft.h"

namespace vantrel::platform {

class HostMailSession : public MailSession {
  public:
    void SignOn() override { RaiseNoMailProgram(); }
    MailSessionId SessionId() const override { return 0; }
    void SignOff() override {}
};

class HostMailMessages : public MailDraft {
  protected:
    void Deliver(MailSessionId, const MailMessage&, bool) override { RaiseNoMailProgram(); }
};

}  // namespace vantrel::platform
