#include "tests/support/matchers.h"
#include "tests/support/redraw_watch.h"
#include "tests/ui/main_window_fixture.h"

namespace vantrel::test {
namespace {

constexpr const char* kLog = "C:\\Vantrel\\Vantrel.Log";
const std::string kHint = "The Vantrel Log File is being limited to a File Size of 50K.";

class LogTabTest : public MainWindowFixture {
  protected:
    LogTabTest() { LoadWindow(); }
    LogTab& Tab() { return window->Log; }
    std::string HintFor(std::size_t bytes) {
        machine.PutFile(kLog, std::string(bytes, 'x'));
        Tab().Cmd_Refresh.UserPress();
        return Tab().Lbl_LogHint.Caption();
    }
};

TEST_F(LogTabTest, ShowingTheTabShowsTheWholeLogAsItStands) {
    machine.PutFile(kLog, "header\r\n\r\none\r\ntwo\r\n");
    window->TAB_Backup.SetTab(3);
    EXPECT_EQ(Tab().Fld_Log.Text(), "header\r\n\r\none\r\ntwo\r\n");
    EXPECT_EQ(Tab().Lbl_LogHint.Caption(), kHint + "\r\nFile Current Size is 0K");
    EXPECT_EQ(program.globals.MessageText, Tab().Lbl_LogHint.Caption());
}

TEST_F(LogTabTest, EditorsCaptionStays) {
    machine.PutFile(kLog, "text");
    window->TAB_Backup.SetTab(3);
    EXPECT_EQ(window->Edit.Lbl_INIContents.Caption(), "INI File Contents");
}

TEST_F(LogTabTest, SizeIsRoundedDownToWholeKilobytes) {
    EXPECT_EQ(HintFor(1023), kHint + "\r\nFile Current Size is 0K");
    EXPECT_EQ(HintFor(1024), kHint + "\r\nFile Current Size is 1K");
    EXPECT_EQ(HintFor(2047), kHint + "\r\nFile Current Size is 1K");
    EXPECT_EQ(HintFor(30'000), kHint + "\r\nFile Current Size is 29K");
}

TEST_F(LogTabTest, RefreshReadsTheLogAgain) {
    machine.PutFile(kLog, "one\r\n");
    window->TAB_Backup.SetTab(3);
    machine.PutFile(kLog, "one\r\ntwo\r\n");
    Tab().Cmd_Refresh.UserPress();
    EXPECT_EQ(Tab().Fld_Log.Text(), "one\r\ntwo\r\n");
}

// The viewer empties and redraws once more, under its hourglass.
TEST_F(LogTabTest, ViewIsEmptiedAndRedrawnBeforeTheViewerBegins) {
    machine.PutFile(kLog, "old");
    Tab().Cmd_Refresh.UserPress();
    machine.PutFile(kLog, "new");
    std::vector<std::string> steps;
    desktop.on_step = [&](const std::string& step) { steps.push_back(step); };
    const RedrawWatch watch(Tab().Fld_Log,
                            [&] { steps.push_back("redraw \"" + Tab().Fld_Log.Text() + "\""); });
    Tab().Cmd_Refresh.UserPress();
    EXPECT_THAT(steps, ElementsAre("redraw \"\"", "pointer hourglass", "redraw \"\"", "events",
                                   "redraw \"new\"", "pointer default"));
}

TEST_F(LogTabTest, ViewIsScrolledByAThousandLinesAndTheFocusGoesBack) {
    machine.PutFile(kLog, "one\r\n");
    Tab().Cmd_Refresh.SetFocus();
    Tab().Cmd_Refresh.UserPress();
    EXPECT_EQ(Tab().Fld_Log.ScrolledLines(), 1000);
    EXPECT_EQ(window->ActiveControl(), &Tab().Cmd_Refresh);
}

// Follows the scrolling as a screen does.
class ScrollRecorder : public forms::ControlView {
  public:
    explicit ScrollRecorder(forms::TextBox& box) : box_(box) { box_.Bind(this); }
    ~ScrollRecorder() override { box_.Bind(nullptr); }
    void Changed(forms::Aspect aspect) override {
        if (aspect == forms::Aspect::kScroll) {
            scrolled += box_.ScrolledLines();
        }
        if (aspect == forms::Aspect::kText) {
            scrolled = 0;
        }
    }
    int scrolled = 0;

  private:
    forms::TextBox& box_;
};

TEST_F(LogTabTest, ViewEndsAtTheBottomForALogOfAnyLength) {
    ScrollRecorder screen(Tab().Fld_Log);
    for (const int lines : {1, 900, 1000, 1001, 4321}) {
        std::string text;
        for (int i = 0; i < lines; ++i) {
            text += "x\r\n";
        }
        machine.PutFile(kLog, text);
        Tab().Cmd_Refresh.UserPress();
        EXPECT_GE(screen.scrolled, lines);
    }
}

TEST_F(LogTabTest, LogViewIsReadOnly) {
    machine.PutFile(kLog, "text");
    window->TAB_Backup.SetTab(3);
    EXPECT_TRUE(Tab().Fld_Log.ReadOnly());
    Tab().Fld_Log.UserType("changed");
    EXPECT_EQ(Tab().Fld_Log.Text(), "text");
}

TEST_F(LogTabTest, MissingLogIsAnEmptyViewAndAnErrorBoxForItsSize) {
    Tab().Cmd_Refresh.UserPress();
    EXPECT_EQ(Tab().Fld_Log.Text(), "");
    ExpectError("File not found");
}

TEST_F(LogTabTest, LogThatCannotBeReadIsAnErrorBoxAndThePointerComesBack) {
    machine.PutFile(kLog, "text");
    desktop.on_events.push_back([&] {
        machine.files().RemoveFile(kLog);
        machine.MakeFolders(kLog);
    });
    Tab().Cmd_Refresh.UserPress();
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].icon, forms::Icon::kCritical);
    EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
}

TEST_F(LogTabTest, OldTextDoesNotOutliveAMissingLog) {
    machine.PutFile(kLog, "text");
    Tab().Cmd_Refresh.UserPress();
    machine.files().RemoveFile(kLog);
    Tab().Cmd_Refresh.UserPress();
    EXPECT_EQ(Tab().Fld_Log.Text(), "");
}

}  // namespace
}  // namespace vantrel::test
