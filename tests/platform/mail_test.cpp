// The message while it is filled, and the words of mail errors.
#include "platform/mail.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "common/error.h"
#include "tests/support/error_of.h"

namespace vantrel::test {
namespace {

class KeptMessage : public platform::MailDraft {
  public:
    platform::MailMessage message;
    platform::MailSessionId session = 0;
    bool dialog = false;

  protected:
    void Deliver(platform::MailSessionId its_session, const platform::MailMessage& its_message,
                 bool its_dialog) override {
        session = its_session;
        message = its_message;
        dialog = its_dialog;
    }
};

TEST(MailDraft, HandsOverWhatItWasFilledWith) {
    KeptMessage draft;
    draft.SetSessionId(5);
    draft.SetMessageIndex(platform::MailMessages::kComposeBuffer);
    draft.Compose();
    draft.SetRecipientDisplayName("Somebody");
    draft.SetRecipientAddress("somebody@example.com");
    draft.SetAddressResolutionDialog(false);
    draft.SetSubject("Subject");
    draft.SetNoteText("Text");
    draft.Send(true);
    EXPECT_EQ(draft.session, 5u);
    EXPECT_EQ(draft.message.recipient_name, "Somebody");
    EXPECT_EQ(draft.message.recipient_address, "somebody@example.com");
    EXPECT_FALSE(draft.message.resolution_dialog);
    EXPECT_EQ(draft.message.subject, "Subject");
    EXPECT_EQ(draft.message.note_text, "Text");
    EXPECT_TRUE(draft.message.attachments.empty());
    EXPECT_TRUE(draft.dialog);
}

TEST(MailDraft, AttachmentsAreAddedByTheirIndexAndHaveNoPositionAtFirst) {
    KeptMessage draft;
    draft.SetAttachmentIndex(0);
    draft.SetAttachmentPath("C:\\one");
    draft.SetAttachmentIndex(1);
    draft.SetAttachmentPath("C:\\two");
    draft.SetAttachmentPosition(2);
    draft.Send(false);
    ASSERT_EQ(draft.message.attachments.size(), 2u);
    EXPECT_EQ(draft.message.attachments[0].path, "C:\\one");
    EXPECT_EQ(draft.message.attachments[0].position, platform::MailMessages::kNoPosition);
    EXPECT_EQ(draft.message.attachments[1].path, "C:\\two");
    EXPECT_EQ(draft.message.attachments[1].position, 2);
    EXPECT_FALSE(draft.dialog);
}

TEST(MailDraft, ComposingForgetsTheMessageBefore) {
    KeptMessage draft;
    draft.SetSubject("old");
    draft.SetAttachmentIndex(0);
    draft.SetAttachmentPath("C:\\old");
    draft.Compose();
    draft.Send(false);
    EXPECT_EQ(draft.message.subject, "");
    EXPECT_TRUE(draft.message.attachments.empty());
}

TEST(MailDraft, RefusesIndexesOfMessagesAndAttachmentsThatAreNotThere) {
    KeptMessage draft;
    EXPECT_EQ(ErrorOf([&] { draft.SetMessageIndex(0); }), error_number::kInvalidPropertyValue);
    EXPECT_EQ(ErrorOf([&] { draft.SetAttachmentIndex(-1); }), error_number::kInvalidPropertyValue);
    EXPECT_EQ(ErrorOf([&] { draft.SetAttachmentIndex(1); }), error_number::kInvalidPropertyValue);
}

TEST(MailErrors, EveryNumberOfSimpleMapiHasItsOwnWords) {
    std::vector<std::string> seen;
    for (int number = 1; number <= 26; ++number) {
        if (number == 7) {
            continue;  // not in use
        }
        const std::string words = platform::MailErrorText(number);
        EXPECT_NE(words, "Unknown mail error") << number;
        EXPECT_EQ(std::count(seen.begin(), seen.end(), words), 0) << words;
        seen.push_back(words);
    }
}

TEST(MailErrors, OtherNumbersAreUnknown) {
    for (const int number : {-5, 0, 7, 27, 70, 1'000'000}) {
        EXPECT_EQ(platform::MailErrorText(number), "Unknown mail error") << number;
    }
}

TEST(MailErrors, AreRaisedWithNumberAndWords) {
    EXPECT_EQ(ErrorOf([] { platform::RaiseMailError(3); }), 3);
    EXPECT_EQ(ErrorOf([] { platform::RaiseNoMailProgram(); }), 26);
}

}  // namespace
}  // namespace vantrel::test
