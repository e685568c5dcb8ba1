#include "tests/support/recording_mail.h"

namespace vantrel::test {

void RecordingMail::Session::SignOn() {
    mail_.happened.push_back("SignOn");
    if (mail_.on_sign_on) {
        mail_.on_sign_on();
    }
    if (mail_.sign_on_error != 0) {
        platform::RaiseMailError(mail_.sign_on_error);
    }
    id_ = 7;
}

void RecordingMail::Session::SignOff() {
    mail_.happened.push_back("SignOff");
    if (mail_.sign_off_error != 0) {
        platform::RaiseMailError(mail_.sign_off_error);
    }
}

void RecordingMail::Messages::Set(const std::string& field, const std::string& value) {
    mail_.happened.push_back(field + " " + value);
    if (mail_.failing_field == field) {
        platform::RaiseMailError(mail_.send_error);
    }
}

void RecordingMail::Messages::SetSessionId(platform::MailSessionId id) {
    Set("SessionId", std::to_string(id));
}

void RecordingMail::Messages::SetMessageIndex(int index) {
    Set("MessageIndex", std::to_string(index));
}

void RecordingMail::Messages::Compose() { mail_.happened.push_back("Compose"); }

void RecordingMail::Messages::SetRecipientDisplayName(const std::string& name) {
    Set("RecipientDisplayName", name);
}

void RecordingMail::Messages::SetRecipientAddress(const std::string& address) {
    Set("RecipientAddress", address);
}

void RecordingMail::Messages::SetAddressResolutionDialog(bool on) {
    Set("AddressResolutionDialog", on ? "on" : "off");
}

void RecordingMail::Messages::SetSubject(const std::string& subject) { Set("Subject", subject); }

void RecordingMail::Messages::SetNoteText(const std::string& text) { Set("NoteText", text); }

void RecordingMail::Messages::SetAttachmentIndex(int index) {
    Set("AttachmentIndex", std::to_string(index));
}

void RecordingMail::Messages::SetAttachmentPath(const std::string& path) {
    Set("AttachmentPath", path);
}

void RecordingMail::Messages::SetAttachmentPosition(int position) {
    Set("AttachmentPosition", std::to_string(position));
}

void RecordingMail::Messages::Send(bool dialog) {
    mail_.happened.push_back(dialog ? "Send with dialog" : "Send without dialog");
    if (mail_.on_send) {
        mail_.on_send();
    }
    if (mail_.send_error != 0) {
        platform::RaiseMailError(mail_.send_error);
    }
}

}  // namespace vantrel::test
