#include "common/error.h"
#include "system/clsForm.h"
#include "system/clsSystem.h"
#include "tests/support/diary.h"
#include "tests/support/error_of.h"
#include "tests/support/matchers.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {
namespace {

constexpr const char* kScratch = "C:\\Vantrel\\temphtm.HTM";

class WebPage : public ProgramFixture {
  protected:
    void Show() { clsSystem(program).ShowWebPage("https://www.example.com/"); }
};

TEST_F(WebPage, OpensTheAddressThroughTheShell) {
    Show();
    EXPECT_THAT(machine.shell.asked, ElementsAre(kScratch));
    EXPECT_THAT(machine.shell.opened, ElementsAre("https://www.example.com/"));
    EXPECT_THAT(machine.shell.verbs, ElementsAre(platform::ShellVerb::kOpen));
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(WebPage, ScratchFileHoldsOneLineWithABackslashAndIsGoneAfterwards) {
    std::string content;
    machine.shell.on_find = [&] { content = machine.Content(kScratch); };
    Show();
    EXPECT_EQ(content, "<HTML> <\\HTML>\r\n");
    EXPECT_FALSE(machine.Exists(kScratch));
}

TEST_F(WebPage, NoBrowserIsToldUnderTheAddressAndLeavesNoScratchFile) {
    machine.shell.executable = "   ";
    Show();
    ExpectBox("Could not find a Web Browser.", forms::Icon::kExclamation,
              "https://www.example.com/");
    EXPECT_THAT(machine.shell.opened, IsEmpty());
    EXPECT_FALSE(machine.Exists(kScratch));
}

TEST_F(WebPage, ShellAnswerOf32IsAFailureAnd33IsNot) {
    machine.shell.answer = 33;
    Show();
    EXPECT_THAT(desktop.boxes, IsEmpty());
    machine.shell.answer = 32;
    Show();
    ExpectBox("Web Page not Opened", forms::Icon::kExclamation, "Web URL Failed");
}

TEST_F(WebPage, ScratchFileThatCannotBeRemovedIsAnErrorOnceThePageIsOpen) {
    machine.shell.on_find = [&] {
        machine.files().SetAttributes(kScratch, platform::attribute::kReadOnly);
    };
    ExpectReported([&] { Show(); }, "clsSystem:ShowWebPage Method", "Permission denied");
    EXPECT_THAT(machine.shell.opened, ElementsAre("https://www.example.com/"));
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_TRUE(machine.Exists(kScratch));
}

TEST_F(WebPage, ErrorLeavesNoScratchFile) {
    machine.shell.on_find = [] { RaiseError(error_number::kOutOfMemory); };
    EXPECT_THROW(Show(), Error);
    EXPECT_FALSE(machine.Exists(kScratch));
}

TEST_F(WebPage, ErrorCarriesItsLabel) {
    machine.MakeFolders(kScratch);
    ExpectReported([&] { Show(); }, "clsSystem:ShowWebPage Method", "Permission denied");
}

class Scrolling : public ProgramFixture {
  protected:
    forms::Form window{program, "Frm_Mainmenu"};
    forms::TextBox text{window, "Fld_Log", true, true};
    forms::Button button{window, "Cmd_Refresh", "&Refresh"};
};

TEST_F(Scrolling, TextHasTheFocusWhileItScrolls) {
    button.SetFocus();
    Diary diary(desktop);
    diary.Follow(text);
    diary.Follow(button);
    clsSystem(program).ScrollText(text, 1000);
    EXPECT_THAT(diary.Lines(), ElementsAre("Fld_Log focus", "Fld_Log scroll", "Cmd_Refresh focus"));
}

TEST_F(Scrolling, FocusGoesBackToTheControlThatHadIt) {
    button.SetFocus();
    EXPECT_EQ(clsSystem(program).ScrollText(text, 1000), 1);
    EXPECT_EQ(text.ScrolledLines(), 1000);
    EXPECT_EQ(window.ActiveControl(), &button);
}

TEST_F(Scrolling, FocusStaysOnTheTextBoxThatHadItItself) {
    text.SetFocus();
    clsSystem(program).ScrollText(text, 3);
    EXPECT_EQ(window.ActiveControl(), &text);
}

TEST_F(Scrolling, BoxOfOneLineIsAnsweredWithNothing) {
    forms::TextBox one_line{window, "Fld_BackupFile"};
    EXPECT_EQ(clsSystem(program).ScrollText(one_line, 1), 0);
}

TEST_F(Scrolling, ErrorCarriesItsLabel) {
    struct BrokenView : forms::ControlView {
        void Changed(forms::Aspect) override { RaiseError(error_number::kOutOfMemory); }
    } broken;
    text.Bind(&broken);
    ExpectReported([&] { clsSystem(program).ScrollText(text, 1000); },
                   "clsSystem:ScrollText Method", "Out of memory");
    text.Bind(nullptr);
}

class GradientTest : public ProgramFixture {
  protected:
    const std::vector<forms::Form::FilledBox>& Paint(int height, int blue, bool down) {
        window.MarkSize(3000, height);
        clsForm().Gradient(window, 0, 0, blue, down);
        return window.Boxes();
    }
    forms::Form window{program, "Frm_Splash"};
};

TEST_F(GradientTest, Draws63BandsFromPureBlueToSeven) {
    const auto& bands = Paint(6300, 255, true);
    ASSERT_EQ(bands.size(), 63u);
    EXPECT_EQ(bands.front().top, 0);
    EXPECT_EQ(bands.front().bottom, 100);
    EXPECT_EQ(bands.front().right, 3000);
    EXPECT_EQ(bands.front().blue, 255);
    EXPECT_EQ(bands.back().top, 6200);
    EXPECT_EQ(bands.back().blue, 7);
    EXPECT_EQ(bands.back().red, 0);
}

TEST_F(GradientTest, ComponentThatFallsBelowOneIsZero) {
    const auto& bands = Paint(6300, 8, true);
    EXPECT_EQ(bands[1].blue, 4);
    EXPECT_EQ(bands[2].blue, 0);
    EXPECT_EQ(bands[3].blue, 0);
}

TEST_F(GradientTest, BottomToTopBeginsAtTheBottom) {
    const auto& bands = Paint(6300, 255, false);
    EXPECT_EQ(bands.front().top, 6200);
    EXPECT_EQ(bands.front().bottom, 6300);
    EXPECT_EQ(bands.back().top, 0);
}

TEST_F(GradientTest, WindowShorterThan32UnitsGets63EmptyBands) {
    const auto& bands = Paint(31, 255, true);
    ASSERT_EQ(bands.size(), 63u);
    for (const auto& band : bands) {
        EXPECT_EQ(band.top, band.bottom);
    }
}

TEST_F(GradientTest, RepaintingReplacesTheBands) {
    Paint(6300, 255, true);
    EXPECT_EQ(Paint(630, 255, true).size(), 63u);
}

TEST_F(GradientTest, CoordinateBeyond16BitsEndsThroughTheErrorTrap) {
    ExpectReported([&] { Paint(40000, 255, true); }, "clsForm:Gradient Method", "Overflow");
}

}  // namespace
}  // namespace vantrel::test
