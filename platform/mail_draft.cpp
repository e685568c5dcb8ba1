#include "platform/mail_draft.h"

#include "common/error.h"

namespace vantrel::platform {

void MailDraft::SetMessageIndex(int index) {
    if (index != kComposeBuffer) RaiseError(error_number::kInvalidPropertyValue);
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
    if (index < 0 || wanted > message_.attachments.size())
        RaiseError(error_number::kInvalidPropertyValue);
    attachment_ = wanted;
}

MailAttachment& MailDraft::Attachment() {
    if (attachment_ == message_.attachments.size()) message_.attachments.emplace_back();
    return message_.attachments[attachment_];
}

void MailDraft::Send(bool dialog) { Deliver(session_, message_, dialog); }

}  // namespace vantrel::platform
