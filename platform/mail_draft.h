// A message while it is filled: what every implementation of MailMessages has in common.
#pragma once

#include <string>
#include <vector>

#include "platform/mail.h"

namespace vantrel::platform {

struct MailAttachment {
    std::string path;
    int position = MailMessages::kNoPosition;
};

struct MailMessage {
    std::string recipient_name;
    std::string recipient_address;
    bool resolution_dialog = false;
    std::string subject;
    std::string note_text;
    std::vector<MailAttachment> attachments;
};

class MailDraft : public MailMessages {
  public:
    void SetSessionId(MailSessionId session) override { session_ = session; }
    void SetMessageIndex(int index) override;
    void Compose() override;
    void SetRecipientDisplayName(const std::string& name) override;
    void SetRecipientAddress(const std::string& address) override;
    void SetAddressResolutionDialog(bool on) override { message_.resolution_dialog = on; }
    void SetSubject(const std::string& subject) override { message_.subject = subject; }
    void SetNoteText(const std::string& text) override { message_.note_text = text; }
    void SetAttachmentIndex(int index) override;
    void SetAttachmentPath(const std::string& path) override { Attachment().path = path; }
    void SetAttachmentPosition(int position) override { Attachment().position = position; }
    void Send(bool dialog) override;

  protected:
    // Hands a whole message to the mail program.
    virtual void Deliver(MailSessionId session, const MailMessage& message, bool dialog) = 0;

  private:
    MailAttachment& Attachment();

    MailSessionId session_ = 0;
    MailMessage message_;
    std::size_t attachment_ = 0;
};

}  // namespace vantrel::platform
