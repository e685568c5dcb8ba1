// The log and the contact message on their way to the mail program.

#include "common/product.h"
#include "tests/support/matchers.h"
#include "tests/ui/main_window_fixture.h"

namespace vantrel::test {
namespace {

constexpr const char* kLog = "C:\\Vantrel\\Vantrel.Log";
constexpr const char* kLastMonth = "C:\\Vantrel\\Vantrel.Bak";
const std::string kAddress = product::kSupportAddress;

class MailingTest : public MainWindowFixture {
  protected:
    MailingTest() { LoadWindow(); }
    void MailTheLog() {
        desktop.answers = {forms::Answer::kYes};
        window->Log.Cmd_Email.UserPress();
    }
    void Contact() { window->About.Cmd_ContactUs.UserPress(); }
    const std::vector<std::string>& Happened() const { return machine.mail.happened; }
};

class MailTheLogTest : public MailingTest {};

TEST_F(MailTheLogTest, AsksWithNoAsDefault) {
    window->Log.Cmd_Email.UserPress();
    ASSERT_EQ(desktop.boxes.size(), 1u);
    const forms::Box& box = desktop.boxes[0];
    EXPECT_EQ(box.text, "Are you sure that you wish to E-Mail the Log File to Corvane Limited.");
    EXPECT_EQ(box.title, "E-Mail");
    EXPECT_EQ(box.icon, forms::Icon::kQuestion);
    EXPECT_EQ(box.buttons, forms::Buttons::kYesNo);
    EXPECT_EQ(box.default_button, 2);
}

TEST_F(MailTheLogTest, AnythingButYesEndsItWithoutATrace) {
    desktop.answers = {forms::Answer::kNo};
    window->Log.Cmd_Email.UserPress();
    EXPECT_THAT(Happened(), IsEmpty());
    EXPECT_THAT(LogRecords(), IsEmpty());
}

TEST_F(MailTheLogTest, FieldsAreSetInTheirOrderWithOneAttachmentWithoutALastMonth) {
    MailTheLog();
    EXPECT_THAT(
        Happened(),
        ElementsAre("SignOn", "SessionId 7", "MessageIndex -1", "Compose",
                    "RecipientDisplayName " + kAddress, "RecipientAddress " + kAddress,
                    "AddressResolutionDialog off", "Subject Vantrel Log",
                    "NoteText Please find attached the Vantrel Log File.  The reason I am mailing "
                    "it to you is ...",
                    "AttachmentIndex 0", std::string("AttachmentPath ") + kLog,
                    "Send without dialog", "SignOff"));
}

TEST_F(MailTheLogTest, LastMonthsLogIsTheSecondAttachmentAndThenBothHavePositions) {
    machine.PutFile(kLastMonth, "old");
    MailTheLog();
    const std::vector<std::string> attachments(Happened().begin() + 9, Happened().end());
    EXPECT_THAT(attachments, ElementsAre("AttachmentIndex 0", std::string("AttachmentPath ") + kLog,
                                         "AttachmentPosition 1", "AttachmentIndex 1",
                                         std::string("AttachmentPath ") + kLastMonth,
                                         "AttachmentPosition 2", "Send without dialog", "SignOff"));
}

TEST_F(MailTheLogTest, SuccessIsLoggedAndTold) {
    MailTheLog();
    EXPECT_THAT(LogRecords(),
                ElementsAre("Log File Emailed to Corvane Limited.", "Email Successful"));
    ExpectBox("Log File Succesfully Sent to your E-Mail Application", forms::Icon::kInformation,
              "E-Mail Log File", 2);
}

TEST_F(MailTheLogTest, AttemptIsLoggedBeforeTheSignOnAndSuccessAfterTheSignOff) {
    machine.mail.on_sign_on = [&] {
        EXPECT_THAT(LogRecords(), ElementsAre("Log File Emailed to Corvane Limited."));
    };
    machine.mail.on_send = [&] { EXPECT_EQ(LogRecords().size(), 1u); };
    MailTheLog();
    EXPECT_EQ(Happened().back(), "SignOff");
}

TEST_F(MailTheLogTest, FailedSignOnIsShownAndLeavesAttemptAndFailureInTheLog) {
    machine.mail.sign_on_error = platform::mail_error::kLoginFailure;
    MailTheLog();
    EXPECT_THAT(Happened(), ElementsAre("SignOn"));
    EXPECT_THAT(LogRecords(),
                ElementsAre("Log File Emailed to Corvane Limited.",
                            "Email Failed - Error Code 3 - Signing on to the mail program failed"));
    ExpectBox("Logon Failure: Signing on to the mail program failed", forms::Icon::kNone, "", 2);
    EXPECT_EQ(desktop.boxes[1].buttons, forms::Buttons::kOk);
}

TEST_F(MailTheLogTest, FailureIsShownBeforeItIsLogged) {
    machine.mail.sign_on_error = platform::mail_error::kUserAbort;
    desktop.on_box = [&](const forms::Box& box) {
        if (box.buttons == forms::Buttons::kOk) {
            EXPECT_EQ(LogRecords().size(), 1u);
        }
    };
    MailTheLog();
    EXPECT_EQ(LogRecords().size(), 2u);
}

TEST_F(MailTheLogTest, MailProgramThatFailsInTheMiddleIsSignedOffAndLoggedButNotShown) {
    machine.mail.send_error = platform::mail_error::kFailure;
    MailTheLog();
    EXPECT_EQ(Happened().back(), "SignOff");
    EXPECT_THAT(LogRecords(), ElementsAre("Log File Emailed to Corvane Limited.",
                                          "Email Failed - Error Code 2 - The mail program failed"));
    EXPECT_EQ(desktop.boxes.size(), 1u);
}

TEST_F(MailTheLogTest, EveryFieldThatFailsEndsInSignOffAndFailureRecord) {
    machine.PutFile(kLastMonth, "old");
    machine.mail.send_error = platform::mail_error::kAttachmentNotFound;
    for (const char* field : {"SessionId", "MessageIndex", "RecipientAddress", "Subject",
                              "NoteText", "AttachmentIndex", "AttachmentPath"}) {
        machine.mail.failing_field = field;
        machine.mail.happened.clear();
        MailTheLog();
        EXPECT_THAT(Happened(), Not(Contains("Send without dialog"))) << field;
        EXPECT_EQ(Happened().back(), "SignOff") << field;
        EXPECT_EQ(LogRecords().back(), "Email Failed - Error Code 11 - An attachment was not found")
            << field;
    }
}

TEST_F(MailTheLogTest, SignOffThatFailsChangesNothing) {
    machine.mail.sign_off_error = platform::mail_error::kFailure;
    MailTheLog();
    EXPECT_EQ(LogRecords().back(), "Email Successful");
}

TEST_F(MailTheLogTest, LogThatCannotBeWrittenIsToldAndNothingIsMailed) {
    machine.MakeFolders(kLog);
    MailTheLog();
    ASSERT_EQ(desktop.boxes.size(), 2u);
    EXPECT_EQ(desktop.boxes[1].title, "Error");
    EXPECT_EQ(desktop.boxes[1].icon, forms::Icon::kCritical);
    EXPECT_THAT(Happened(), IsEmpty());
    machine.files().RemoveFolder(kLog);
    MailTheLog();
    EXPECT_EQ(LogRecords().back(), "Email Successful");
}

TEST_F(MailTheLogTest, SecondPressWhileTheMailProgramIsBusyDoesNothing) {
    machine.mail.on_send = [&] {
        window->Log.Cmd_Email.UserPress();
        Contact();
    };
    MailTheLog();
    EXPECT_EQ(LogRecords().size(), 2u);
    EXPECT_EQ(desktop.boxes.size(), 2u);
    MailTheLog();
    EXPECT_EQ(LogRecords().size(), 4u);
}

class ContactTest : public MailingTest {};

TEST_F(ContactTest, MessageIsFilledAndItsUserSendsItHimself) {
    Contact();
    const std::string text =
        "Your Message Goes Here ...........\r\n"
        "\r\n\r\n\r\n\r\n\r\n"
        "---------------------------------------------\r\n"
        "My Product Details are;\r\n"
        "\r\n"
        "Product                : Vantrel\r\n"
        "Version                : 3.0.6\r\n"
        "---------------------------------------------\r\n"
        "\r\n";
    EXPECT_THAT(Happened(),
                ElementsAre("SignOn", "SessionId 7", "MessageIndex -1", "Compose",
                            "RecipientDisplayName " + kAddress, "RecipientAddress " + kAddress,
                            "AddressResolutionDialog off", "Subject Vantrel Query",
                            "NoteText " + text, "Send with dialog", "SignOff"));
    EXPECT_EQ(program.globals.MessageText, text);
}

TEST_F(ContactTest, SuccessIsLoggedAndNothingAskedOrTold) {
    Contact();
    EXPECT_THAT(LogRecords(),
                ElementsAre("Contact attempted for Corvane Limited.", "Contact Successful"));
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(ContactTest, LastMonthsLogIsNotAttached) {
    machine.PutFile(kLastMonth, "old");
    Contact();
    EXPECT_THAT(Happened(), Not(Contains("AttachmentIndex 0")));
}

TEST_F(ContactTest, PointerIsAnHourglassMeanwhile) {
    machine.mail.on_send = [&] { EXPECT_EQ(desktop.pointer, forms::Pointer::kHourglass); };
    Contact();
    EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
}

TEST_F(ContactTest, FailedSignOnIsShownAndLogged) {
    machine.mail.sign_on_error = platform::mail_error::kNotSupported;
    Contact();
    ExpectBox("Logon Failure: The mail program does not support this", forms::Icon::kNone, "");
    EXPECT_THAT(
        LogRecords(),
        ElementsAre("Contact attempted for Corvane Limited.",
                    "Contact Failed - Error Code 26 - The mail program does not support this"));
    EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
}

TEST_F(ContactTest, MessageThatIsClosedUnsentIsAFailureInTheLogAndNoBox) {
    machine.mail.send_error = platform::mail_error::kUserAbort;
    Contact();
    EXPECT_EQ(Happened().back(), "SignOff");
    EXPECT_EQ(LogRecords().back(), "Contact Failed - Error Code 1 - The message was cancelled");
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
}

TEST_F(ContactTest, LogThatCannotBeWrittenGivesThePointerBack) {
    machine.MakeFolders(kLog);
    Contact();
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].title, "Error");
    EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
    EXPECT_THAT(Happened(), IsEmpty());
}

}  // namespace
}  // namespace vantrel::test
