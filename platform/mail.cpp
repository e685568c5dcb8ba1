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

}  // namespace vantrel::platform
