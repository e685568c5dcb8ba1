// Buttons, check boxes, labels, frames, the status bar.
#include "tests/views/windows_under_test.h"

namespace vantrel::test {

namespace {

class Buttons : public WindowFixture<MainWindow> {};
class CheckBoxes : public WindowFixture<OptionsWindow> {};
class Labels : public WindowFixture<MainWindow> {
  protected:
    Labels() { ShowPage(MainWindow::kAbout); }
};
class Captions : public WindowFixture<MainWindow> {};

TEST_F(Buttons, PressedByTheUserRaiseOneClick) {
    user->Click(window.Cmd_Backup);
    EXPECT_EQ(Lines{"Cmd_Backup Click"}, Happened());
}

TEST_F(Buttons, EachPressIsOneClick) {
    for (int i = 0; i < 3; ++i) {
        user->Click(window.Cmd_Backup);
    }
    EXPECT_EQ(3u, Happened().size());
}

TEST_F(Buttons, ADoubleClickIsTwoClicks) {
    user->ClickTwice(window.Cmd_Backup);
    EXPECT_EQ(2u, Happened().size());
}

TEST_F(Buttons, BlankPressesTheOneWithTheKeyboard) {
    user->Press(window.Cmd_Backup, Key::kBlank);
    EXPECT_EQ(Lines{"Cmd_Backup Click"}, Happened());
    window.Cmd_Backup.SetEnabled(false);
    user->Press(window.Cmd_Backup, Key::kBlank);
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(Buttons, DisabledAreNotPressedByTheUserButByTheProgram) {
    window.Cmd_Backup.SetEnabled(false);
    EXPECT_FALSE(user->Enabled(window.Cmd_Backup));
    user->Click(window.Cmd_Backup);
    EXPECT_EQ(Lines{}, Happened());
    window.Cmd_Backup.Press();
    EXPECT_EQ(Lines{"Cmd_Backup Click"}, Happened());
}

TEST_F(Buttons, HiddenAreNotPressedByTheUser) {
    window.Cmd_Backup.SetVisible(false);
    user->Click(window.Cmd_Backup);
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(Buttons, EnabledAgainArePressedAgain) {
    window.Cmd_Backup.SetEnabled(false);
    window.Cmd_Backup.SetEnabled(true);
    user->Click(window.Cmd_Backup);
    EXPECT_EQ(Lines{"Cmd_Backup Click"}, Happened());
}

TEST_F(Buttons, HandlerMayDisableItsOwnButton) {
    int clicks = 0;
    window.Cmd_Backup.Click = [&] {
        ++clicks;
        window.Cmd_Backup.SetEnabled(false);
    };
    user->Click(window.Cmd_Backup);
    user->Click(window.Cmd_Backup);
    EXPECT_EQ(1, clicks);
    EXPECT_FALSE(user->Enabled(window.Cmd_Backup));
}

TEST_F(Buttons, ErrorsOfTheirHandlersReachTheProgram) {
    window.Cmd_Backup.Click = [] { RaiseError(error_number::kPathNotFound); };
    user->Click(window.Cmd_Backup);
    EXPECT_EQ(std::vector{76}, user->errors);
    EXPECT_EQ(0, window.running_handlers);
}

TEST_F(Buttons, KeyboardGoesWhereTheProgramPutsIt) {
    window.Cmd_Backup.SetFocus();
    EXPECT_TRUE(user->HasKeyboard(window.Cmd_Backup));
    window.Cmb_BackupSet.SetFocus();
    EXPECT_TRUE(user->HasKeyboard(window.Cmb_BackupSet));
    EXPECT_FALSE(user->HasKeyboard(window.Cmd_Backup));
}

TEST_F(CheckBoxes, ToggledByTheUserRaiseClickEachTime) {
    user->Click(window.Chk_TimeBackup);
    EXPECT_EQ(Lines{"Chk_TimeBackup Click on"}, Happened());
    EXPECT_TRUE(user->Checked(window.Chk_TimeBackup));
    user->Click(window.Chk_TimeBackup);
    EXPECT_EQ(Lines{"Chk_TimeBackup Click off"}, Happened());
    EXPECT_FALSE(user->Checked(window.Chk_TimeBackup));
}

TEST_F(CheckBoxes, ADoubleClickTogglesTwice) {
    user->ClickTwice(window.Chk_TimeBackup);
    EXPECT_EQ((Lines{"Chk_TimeBackup Click on", "Chk_TimeBackup Click off"}), Happened());
    EXPECT_FALSE(user->Checked(window.Chk_TimeBackup));
}

TEST_F(CheckBoxes, BlankTogglesTheOneWithTheKeyboard) {
    user->Press(window.Chk_TimeBackup, Key::kBlank);
    EXPECT_EQ(Lines{"Chk_TimeBackup Click on"}, Happened());
    EXPECT_TRUE(user->Checked(window.Chk_TimeBackup));
}

TEST_F(CheckBoxes, SetByTheProgramRaiseClickOnlyWhenTheMarkChanges) {
    window.Chk_TimeBackup.SetChecked(true);
    EXPECT_EQ(Lines{"Chk_TimeBackup Click on"}, Happened());
    EXPECT_TRUE(user->Checked(window.Chk_TimeBackup));
    window.Chk_TimeBackup.SetChecked(true);
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(CheckBoxes, HandlerMayTakeTheMarkBack) {
    window.Chk_TimeBackup.Click = [&] { window.Chk_TimeBackup.SetChecked(false); };
    user->Click(window.Chk_TimeBackup);
    EXPECT_FALSE(window.Chk_TimeBackup.Checked());
    EXPECT_FALSE(user->Checked(window.Chk_TimeBackup));
}

TEST_F(CheckBoxes, DisabledKeepTheirMark) {
    window.Chk_TimeBackup.SetChecked(true);
    window.Chk_TimeBackup.SetEnabled(false);
    Happened();
    user->Click(window.Chk_TimeBackup);
    EXPECT_EQ(Lines{}, Happened());
    EXPECT_TRUE(user->Checked(window.Chk_TimeBackup));
}

TEST_F(Labels, ClickedRaiseClick) {
    user->Click(window.Lbl_WebAddress);
    EXPECT_EQ(Lines{"Lbl_WebAddress Click"}, Happened());
}

TEST_F(Labels, ADoubleClickIsTwoClicks) {
    user->ClickTwice(window.Lbl_WebAddress);
    EXPECT_EQ(2u, Happened().size());
}

TEST_F(Labels, DisabledOrHiddenAreNotClicked) {
    window.Lbl_WebAddress.SetEnabled(false);
    user->Click(window.Lbl_WebAddress);
    window.Lbl_WebAddress.SetEnabled(true);
    window.Lbl_WebAddress.SetVisible(false);
    user->Click(window.Lbl_WebAddress);
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(Labels, ColorIsSeenToChange) {
    using Color = forms::Label::Color;
    EXPECT_EQ(Color::kButtonText, user->Color(window.Lbl_WebAddress));
    window.Lbl_WebAddress.SetForeColor(Color::kHighlightText);
    EXPECT_EQ(Color::kHighlightText, user->Color(window.Lbl_WebAddress));
    window.Lbl_WebAddress.SetForeColor(Color::kButtonText);
    EXPECT_EQ(Color::kButtonText, user->Color(window.Lbl_WebAddress));
}

TEST_F(Captions, AreThoseThatTheControlsWereMadeWith) {
    EXPECT_EQ("&Backup Now", user->Text(window.Cmd_Backup));
    EXPECT_EQ("&Backup Set", user->Text(window.Lbl_RestoreSet));
    EXPECT_EQ("Product Information", user->Text(window.Fra_Version));
    EXPECT_EQ("Please Wait", user->Text(window.SSP_PleaseWait));
    EXPECT_EQ("", user->Text(window.Sta_Mainmenu));
}

TEST_F(Captions, FollowTheProgram) {
    for (forms::Control* control : {static_cast<forms::Control*>(&window.Cmd_Backup),
                                    static_cast<forms::Control*>(&window.Lbl_RestoreSet),
                                    static_cast<forms::Control*>(&window.Lbl_WebAddress),
                                    static_cast<forms::Control*>(&window.Fra_Version),
                                    static_cast<forms::Control*>(&window.SSP_TotalFiles),
                                    static_cast<forms::Control*>(&window.Sta_Mainmenu)}) {
        control->SetCaption("\xC3\x84ndern && Sp\xC3\xA4teres");
        EXPECT_EQ("\xC3\x84ndern && Sp\xC3\xA4teres", user->Text(*control)) << control->name();
        control->SetCaption("");
        EXPECT_EQ("", user->Text(*control)) << control->name();
    }
    EXPECT_EQ(Lines{}, Happened());
}

}  // namespace

}  // namespace vantrel::test
