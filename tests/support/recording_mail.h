// A mail program that sends nothing: it records all calls in order and fails when asked
// to.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/mail.h"

namespace vantrel::test {

struct RecordingMail {
    // Mail errors to raise; 0: none.
    int sign_on_error = 0;
    int send_error = 0;
    int sign_off_error = 0;
    // Raised when this field is set, e.g. "AttachmentPath"; the number is send_error's.
    std::string failing_field;
    // Called inside the sign-on and inside Send.
    std::function<void()> on_sign_on;
    std::function<void()> on_send;

    // "SignOn", "SessionId 7", "MessageIndex -1", "Subject Vantrel Log", "Send with dialog" ...
    std::vector<std::string> happened;

    class Session : public platform::MailSession {
      public:
        explicit Session(RecordingMail& mail) : mail_(mail) {}
        void SignOn() override;
        platform::MailSessionId SessionId() const override { return id_; }
        void SignOff() override;

      private:
        RecordingMail& mail_;
        platform::MailSessionId id_ = 0;
    };

    class Messages : public platform::MailMessages {
      public:
        explicit Messages(RecordingMail& mail) : mail_(mail) {}
        void SetSessionId(platform::MailSessionId session) override;
        void SetMessageIndex(int index) override;
        void Compose() override;
        void SetRecipientDisplayName(const std::string& name) override;
        void SetRecipientAddress(const std::string& address) override;
        void SetAddressResolutionDialog(bool on) override;
        void SetSubject(const std::string& subject) override;
        void SetNoteText(const std::string& text) override;
        void SetAttachmentIndex(int index) override;
        void SetAttachmentPath(const std::string& path) override;
        void SetAttachmentPosition(int position) override;
        void Send(bool dialog) override;

      private:
        void Set(const std::string& field, const std::string& value);
        RecordingMail& mail_;
    };

    Session session{*this};
    Messages messages{*this};
};

}  // namespace vantrel::test
