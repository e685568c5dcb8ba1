// Messages for the user's mail program: a session that is signed on and off, and a message whose
// fields are set one by one before it is sent. Two services of the machine, used on the
// user-interface thread only.
//
// Every failure is raised as a vantrel::Error whose number is that of Simple MAPI and whose
// description says it in words.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vantrel::platform {

// Numbers of Simple MAPI that the program itself raises.
namespace mail_error {
constexpr int kUserAbort = 1;
constexpr int kFailure = 2;
constexpr int kLoginFailure = 3;
constexpr int kAttachmentNotFound = 11;
constexpr int kNotSupported = 26;
}  // namespace mail_error

// The text for a number; "Unknown mail error" for one that has none.
std::string MailErrorText(int number);

// Raises `number` with its words.
[[noreturn]] void RaiseMailError(int number);
// The same for a machine without a mail program.
[[noreturn]] void RaiseNoMailProgram();

using MailSessionId = std::uintptr_t;

class MailSession {
  public:
    virtual ~MailSession() = default;
    // Signs on to the mail program, which may ask its user for a name and a password.
    virtual void SignOn() = 0;
    // Identifies the sign-on to the mail program; 0 before the first one.
    virtual MailSessionId SessionId() const = 0;
    // Ends the sign-on; nothing without one.
    virtual void SignOff() = 0;
};

// Setting a field keeps all others. An attachment's fields are those of the one at the attachment
// index; the index after the last one adds an attachment.
class MailMessages {
  public:
    virtual ~MailMessages() = default;

    static constexpr int kComposeBuffer = -1;  // the one message that can be written
    static constexpr int kNoPosition = -1;     // an attachment with no place in the text

    virtual void SetSessionId(MailSessionId session) = 0;
    // Only the compose buffer may be chosen (380): the program reads no mail.
    virtual void SetMessageIndex(int index) = 0;
    // Begins an empty message.
    virtual void Compose() = 0;
    virtual void SetRecipientDisplayName(const std::string& name) = 0;
    virtual void SetRecipientAddress(const std::string& address) = 0;
    // Whether the mail program may ask which recipient is meant. Off, the address is used as it is.
    virtual void SetAddressResolutionDialog(bool on) = 0;
    virtual void SetSubject(const std::string& subject) = 0;
    virtual void SetNoteText(const std::string& text) = 0;
    virtual void SetAttachmentIndex(int index) = 0;  // 380 beyond the one that would be added
    virtual void SetAttachmentPath(const std::string& path) = 0;
    // The character of the text that stands for the attachment, from 0.
    virtual void SetAttachmentPosition(int position) = 0;
    // Hands the message over; with `dialog` its user writes it and may close it unsent (1).
    virtual void Send(bool dialog) = 0;
};

// A message while its fields are set. Implementations of MailMessages derive from MailDraft.
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
    // Hands the complete message to the mail program.
    virtual void Deliver(MailSessionId session, const MailMessage& message, bool dialog) = 0;

  private:
    MailAttachment& Attachment();

    MailSessionId session_ = 0;
    MailMessage message_;
    std::size_t attachment_ = 0;
};

}  // namespace vantrel::platform
