#include "tests/views/windows_under_test.h"

namespace vantrel::test {

namespace {

class TextBoxes : public WindowFixture<OptionsWindow> {
  protected:
    forms::TextBox& box = window.Fld_BackupFile;
};

class LongTexts : public WindowFixture<MainWindow> {};

TEST_F(TextBoxes, RaiseChangeForEachKeyThatTheUserTypes) {
    user->Type(box, "a.b");
    EXPECT_EQ(
        (Lines{"Fld_BackupFile Change a", "Fld_BackupFile Change a.", "Fld_BackupFile Change a.b"}),
        Happened());
    EXPECT_EQ("a.b", box.Text());
    EXPECT_EQ("a.b", user->Text(box));
}

TEST_F(TextBoxes, RaiseChangeOnceForEachDifferentTextFromCode) {
    box.SetText("*.*");
    EXPECT_EQ(Lines{"Fld_BackupFile Change *.*"}, Happened());
    EXPECT_EQ("*.*", user->Text(box));
    box.SetText("*.*");
    EXPECT_EQ(Lines{}, Happened());
    box.Append("x");
    EXPECT_EQ(Lines{"Fld_BackupFile Change *.*x"}, Happened());
    EXPECT_EQ("*.*x", user->Text(box));
}

TEST_F(TextBoxes, EmptyingAnEmptyOneIsNoChange) {
    box.SetText("");
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(TextBoxes, UserGoesOnWhereTheProgramLeftOff) {
    box.SetText("*.");
    Happened();
    user->Type(box, "c");
    EXPECT_EQ(Lines{"Fld_BackupFile Change *.c"}, Happened());
}

TEST_F(TextBoxes, DisabledTakeNothingFromTheUser) {
    box.SetText("*.*");
    box.SetEnabled(false);
    Happened();
    user->Type(box, "x");
    EXPECT_EQ(Lines{}, Happened());
    EXPECT_EQ("*.*", box.Text());
    EXPECT_EQ("*.*", user->Text(box));
}

TEST_F(TextBoxes, HandlerMayReplaceWhatWasTyped) {
    box.Change = [&] {
        if (box.Text() != "?") {
            box.SetText("?");
        }
    };
    user->Type(box, "x");
    EXPECT_EQ("?", box.Text());
    EXPECT_EQ("?", user->Text(box));
}

TEST_F(LongTexts, TakeLinesFromTheUser) {
    ShowPage(MainWindow::kEdit);
    user->Type(window.Fld_INI, "[A]\rB");
    EXPECT_EQ("[A]\r\nB", window.Fld_INI.Text());
    EXPECT_EQ("[A]\r\nB", user->Text(window.Fld_INI));
    EXPECT_EQ(5u, Happened().size());
}

TEST_F(LongTexts, ReadOnlyRefuseTyping) {
    ShowPage(MainWindow::kLog);
    window.Fld_Log.SetText("15/11/2026 Starting\r\n");
    EXPECT_EQ(1u, Happened().size());
    user->Type(window.Fld_Log, "x\r");
    EXPECT_EQ(Lines{}, Happened());
    EXPECT_EQ("15/11/2026 Starting\r\n", window.Fld_Log.Text());
    EXPECT_EQ("15/11/2026 Starting\r\n", user->Text(window.Fld_Log));
}

TEST_F(LongTexts, HoldMoreThanSixtyFourThousandCharacters) {
    std::string text;
    for (int i = 0; i < 7000; ++i) {
        text += "0123456789\r\n";
    }
    window.Fld_Log.SetText(text);
    EXPECT_EQ(1u, Happened().size());
    EXPECT_EQ(text, user->Text(window.Fld_Log));
}

TEST_F(LongTexts, AppendedLinesAreThereWithTheNextRefresh) {
    std::string text;
    for (int i = 0; i < 500; ++i) {
        const std::string line = "line " + std::to_string(i) + "\r\n";
        window.Fld_INI.Append(line);
        text += line;
    }
    EXPECT_EQ(500u, Happened().size());
    window.Fld_INI.Refresh();
    EXPECT_EQ(text, user->Text(window.Fld_INI));
    window.Fld_INI.SetText("other");
    EXPECT_EQ("other", user->Text(window.Fld_INI));
}

TEST_F(LongTexts, UserAddsToALongOne) {
    ShowPage(MainWindow::kEdit);
    const std::string text(70000, 'x');
    window.Fld_INI.SetText(text);
    Happened();
    user->Type(window.Fld_INI, "y");
    EXPECT_EQ(text + "y", window.Fld_INI.Text());
}

TEST_F(LongTexts, ShowLettersOfEveryAlphabet) {
    const std::string text = "\xC3\xA4 \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80 \xD0\x96";
    window.Fld_INI.SetText(text);
    EXPECT_EQ(text, user->Text(window.Fld_INI));
}

}  // namespace

}  // namespace vantrel::test
