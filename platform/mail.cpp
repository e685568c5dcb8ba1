#include "platform/mail.h"

#include <iterator>

#include "common/error.h"
#include "common/product.h"

namespace vantrel::platform {

namespace {

// By number, from 1 on.
constexpr const char* kWords[] = {
    "The message was cancelled",
    "The mail program failed",
    "Signing on to the mail program failed",
    "The disk is full",
    "There is not enough memory",
    "Access was denied",
    "Unknown mail error",  // 7 is not in use
    "There are too many mail sessions",
    "There are too many attachments",
    "There are too many recipients",
    "An attachment was not found",
    "An attachment could not be opened",
    "An attachment could not be written",
    "The recipient is unknown",
    "The recipient's type is not valid",
    "There are no messages",
    "The message is not valid",
    "The text is too long",
    "The mail session is not valid",
    "The message type is not supported",
    "The recipient is not the only one of that name",
    "The message is in use",
    "The network failed",
    "The message's fields are not valid",
    "The recipients are not valid",
    "The mail program does not support this",
};

}  // namespace

std::string MailErrorText(int number) {
    const bool known = number >= 1 && number <= static_cast<int>(std::size(kWords));
    return known ? kWords[number - 1] : "Unknown mail error";
}

void RaiseMailError(int number) { throw Error(number, product::kName, MailErrorText(number)); }

void RaiseNoMailProgram() {
    throw Error(mail_error::kNotSupported, product::kName, "There is no mail program");
}

void MailDraft::SetMessageIndex(int index) {
    if (index != kComposeBuffer) {
        RaiseError(error_number::kInvalidPropertyValue);
    }
}

void MailDraft::Compose() {
    message_ = {};
    attachment_ = 0;
}

void MailDraft::SetRecipientDisplayName(const std::string& name) { message_.recipient_name = name; }

void MailDraft::SetRecipientAddress(const std::string& address) {
    message_.recipient_address = address;
}

void MailDraft::SetAttachmentIndex(int index) {
    const auto wanted = static_cast<std::size_t>(index);
    if (index < 0 || wanted > message_.attachments.size()) {
        RaiseError(error_number::kInvalidPropertyValue);
    }
    attachment_ = wanted;
}

MailAttachment& MailDraft::Attachment() {
    if (attachment_ == message_.attachments.size()) {
        message_.attachments.emplace_back();
    }
    return message_.attachments[attachment_];
}

void MailDraft::Send(bool dialog) { Deliver(session_, message_, dialog); }

}  // namespace vantrel::platform
