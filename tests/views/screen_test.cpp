// What only a screen has: what scrolls, what has the keyboard, what is shown when.
#include <algorithm>

#include "tests/views/modal_window.h"
#include "tests/views/real_controls.h"
#include "tests/views/win32_user.h"

namespace vantrel::test {

namespace {

class MainOnScreen : public WindowFixture<MainWindow> {
  protected:
    static std::string Numbered(int lines) {
        std::string text;
        for (int i = 0; i < lines; ++i) {
            text += std::to_string(i) + "\r\n";
        }
        return text;
    }
};

class RunOnScreen : public WindowFixture<RunWindow> {
  protected:
    HWND List() { return HandleOf(window.Lst_Details); }
    bool IsInView(int index) {
        RECT area{};
        Send(List(), LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&area));
        return area.top >= 0 && area.bottom <= ClientOf(List()).bottom;
    }
};

TEST_F(RunOnScreen, ListBoxScrollsToItsSelectedLastLine) {
    for (int i = 0; i < 100; ++i) {
        window.Lst_Details.Add("Adding file " + std::to_string(i));
        window.Lst_Details.SetIndex(i);
    }
    program.desktop.DoEvents();
    EXPECT_TRUE(IsInView(99));
    EXPECT_FALSE(IsInView(0));
}

TEST_F(RunOnScreen, LongLinesOfAListBoxCanBeScrolledTo) {
    EXPECT_EQ(0, Send(List(), LB_GETHORIZONTALEXTENT));
    window.Lst_Details.Add(std::string(500, 'W'));
    program.desktop.DoEvents();
    EXPECT_LT(ClientOf(List()).right, Send(List(), LB_GETHORIZONTALEXTENT));
}

TEST_F(RunOnScreen, DetailsAndProgressAreShownWhenEventsAreNextHandled) {
    window.Lst_Details.Add("Adding a.txt");
    window.PB_File.SetValue(50);
    EXPECT_EQ(0, Send(List(), LB_GETCOUNT));
    EXPECT_EQ(0, Send(HandleOf(window.PB_File), PBM_GETPOS));
    program.desktop.DoEvents();
    EXPECT_EQ(1, Send(List(), LB_GETCOUNT));
    EXPECT_EQ(50, Send(HandleOf(window.PB_File), PBM_GETPOS));
}

TEST_F(RunOnScreen, RefreshShowsWhatWasPutOff) {
    window.PB_File.SetValue(50);
    window.PB_File.Refresh();
    EXPECT_EQ(50, Send(HandleOf(window.PB_File), PBM_GETPOS));
}

TEST_F(RunOnScreen, ClickOnALineThatIsGoneChoosesNothing) {
    for (const char* line : {"a", "b", "c"}) {
        window.Lst_Details.Add(line);
    }
    program.desktop.DoEvents();
    window.Lst_Details.Clear();
    Send(List(), LB_SETCURSEL, 2);
    const auto chosen = MAKEWPARAM(GetDlgCtrlID(List()), LBN_SELCHANGE);
    Send(TopOf(window), WM_COMMAND, chosen, reinterpret_cast<LPARAM>(List()));
    EXPECT_TRUE(user->errors.empty());
    EXPECT_EQ(Lines{}, Happened());
    EXPECT_EQ(0, Send(List(), LB_GETCOUNT));
}

TEST_F(RunOnScreen, ClipIsSeenToMove) {
    window.Ani_File.Open(program.InApplicationFolder("app\\System\\FileCopy.AVI"));
    const HWND clip = HandleOf(window.Ani_File);
    const auto background = [&] {
        return PixelsOf(clip, ClientOf(clip), GetSysColor(COLOR_BTNFACE));
    };
    program.desktop.DoEvents();
    const int before = background();
    static_cast<Win32User&>(*user).WaitUntil([&] { return background() != before; });
    EXPECT_TRUE(user->Playing(window.Ani_File));
}

TEST_F(RunOnScreen, ClipRestsOnItsFirstPicture) {
    window.Ani_File.Open(program.InApplicationFolder("app\\System\\FileCopy.AVI"));
    window.Ani_File.Stop();
    const HWND clip = HandleOf(window.Ani_File);
    const auto picture = [&] {
        program.desktop.DoEvents();
        return PixelsIn(clip, ClientOf(clip));
    };
    const auto first = picture();
    window.Ani_File.Open(window.Ani_File.Path());
    static_cast<Win32User&>(*user).WaitUntil([&] { return picture() != first; });
    window.Ani_File.Stop();
    EXPECT_EQ(first, picture());
    EXPECT_LT(1000, std::count(first.begin(), first.end(), first.front()));
}

TEST_F(MainOnScreen, TextScrollsByLines) {
    ShowPage(MainWindow::kLog);
    window.Fld_Log.SetText(Numbered(200));
    const HWND log = HandleOf(window.Fld_Log);
    EXPECT_EQ(0, Send(log, EM_GETFIRSTVISIBLELINE));
    window.Fld_Log.ScrollLines(50);
    EXPECT_EQ(50, Send(log, EM_GETFIRSTVISIBLELINE));
    window.Fld_Log.ScrollLines(1000);
    EXPECT_LT(150, Send(log, EM_GETFIRSTVISIBLELINE));
}

TEST_F(MainOnScreen, CaretStaysWhileTheUserTypes) {
    ShowPage(MainWindow::kEdit);
    window.Fld_INI.SetText("ac");
    const HWND box = HandleOf(window.Fld_INI);
    Send(box, EM_SETSEL, 1, 1);
    PostMessageW(box, WM_CHAR, L'b', 1);
    program.desktop.DoEvents();
    EXPECT_EQ("abc", window.Fld_INI.Text());
    EXPECT_EQ(MAKELONG(2, 2), Send(box, EM_GETSEL));
}

TEST_F(MainOnScreen, DisablingOrHidingTheControlWithTheKeyboardPassesTheKeyboardOn) {
    for (const auto take_away : {&forms::Control::SetEnabled, &forms::Control::SetVisible}) {
        window.Cmd_Backup.SetFocus();
        (window.Cmd_Backup.*take_away)(false);
        const HWND focus = GetFocus();
        ASSERT_NE(nullptr, focus);
        EXPECT_NE(HandleOf(window.Cmd_Backup), focus);
        EXPECT_TRUE(IsWindowEnabled(focus));
        EXPECT_TRUE(IsWindowVisible(focus));
        EXPECT_TRUE(IsChild(TopOf(window), focus));
        (window.Cmd_Backup.*take_away)(true);
    }
}

TEST_F(MainOnScreen, FormKnowsWhereTheUserTookTheKeyboard) {
    user->Click(window.Cmd_Backup);
    EXPECT_EQ(&window.Cmd_Backup, window.ActiveControl());
    ShowPage(MainWindow::kEdit);
    user->Type(window.Fld_INI, "x");
    EXPECT_EQ(&window.Fld_INI, window.ActiveControl());
}

TEST_F(MainOnScreen, OnlyThePageOfTheShownTabIsSeen) {
    const auto seen = [&] {
        Lines names;
        for (forms::Control* control : {static_cast<forms::Control*>(&window.Cmd_Backup),
                                        static_cast<forms::Control*>(&window.SSP_TotalFiles),
                                        static_cast<forms::Control*>(&window.Fld_INI),
                                        static_cast<forms::Control*>(&window.Fld_Log),
                                        static_cast<forms::Control*>(&window.TV_SecureMode),
                                        static_cast<forms::Control*>(&window.Lbl_WebAddress)}) {
            if (IsWindowVisible(HandleOf(*control))) {
                names.push_back(control->name());
            }
        }
        return names;
    };
    const Lines expected{"Cmd_Backup", "SSP_TotalFiles", "Fld_INI",
                         "Fld_Log",    "TV_SecureMode",  "Lbl_WebAddress"};
    for (int tab = 5; tab >= 0; --tab) {
        ShowPage(tab);
        EXPECT_EQ(Lines{expected[static_cast<std::size_t>(tab)]}, seen());
    }
}

TEST_F(MainOnScreen, PanelGoesWithThePanelItStandsOn) {
    EXPECT_TRUE(user->Visible(window.SSP_ProgressSecure));
    window.SSP_PleaseWait.SetVisible(false);
    EXPECT_FALSE(user->Visible(window.SSP_ProgressSecure));
    window.SSP_ProgressSecure.SetVisible(false);
    window.SSP_PleaseWait.SetVisible(true);
    EXPECT_FALSE(user->Visible(window.SSP_ProgressSecure));
    window.SSP_ProgressSecure.SetVisible(true);
    EXPECT_TRUE(user->Visible(window.SSP_ProgressSecure));
}

// With a frame around nothing it would look like an empty field.
TEST_F(MainOnScreen, IdlePanelHasNoFrame) {
    ShowPage(MainWindow::kRestore);
    const HWND panel = HandleOf(window.SSP_TotalFiles);
    const auto framed = [&] {
        program.desktop.DoEvents();
        const RECT all = ClientOf(panel);
        return PixelsOf(panel, {0, 0, all.right, 1}, GetSysColor(COLOR_BTNSHADOW)) == all.right;
    };
    EXPECT_FALSE(framed());
    window.SSP_TotalFiles.SetFloodPercent(0.1);
    EXPECT_TRUE(framed());
    window.SSP_TotalFiles.SetFloodPercent(0);
    EXPECT_FALSE(framed());
}

TEST_F(MainOnScreen, TimerThatIsSwitchedOffWakesNobody) {
    static int g_woken;
    const auto count = [](HWND top, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR,
                          DWORD_PTR) -> LRESULT {
        if (message == WM_TIMER) {
            ++g_woken;
        }
        return DefSubclassProc(top, message, wparam, lparam);
    };
    g_woken = 0;
    SetWindowSubclass(TopOf(window), count, 0, 0);
    window.Tim_Flash.SetEnabled(true);
    user->LetTimePass(window);
    EXPECT_LE(1, g_woken);
    window.Tim_Flash.SetEnabled(false);
    program.desktop.DoEvents();
    g_woken = 0;
    user->LetTimePass(window);
    EXPECT_EQ(0, g_woken);
}

TEST_F(MainOnScreen, PictureIsPainted) {
    const HWND picture = HandleOf(window.Img_Set);
    program.desktop.DoEvents();
    const RECT all = ClientOf(picture);
    const COLORREF corner = PixelsIn(picture, all).back();
    EXPECT_LT(100, all.right * all.bottom - PixelsOf(picture, all, corner));
}

TEST_F(MainOnScreen, ControlsThatTheDialogLacksAreAnError) {
    struct Lacking : forms::Form {
        explicit Lacking(forms::Program& owner) : Form(owner, "Frm_Backup") {}
        forms::Button Cmd_Nowhere{*this, "Cmd_Nowhere", ""};
    } lacking{program};
    EXPECT_EQ(380, ErrorOf([&] { program.desktop.Load(lacking); }));
    EXPECT_FALSE(lacking.Loaded());
}

TEST_F(ModalRun, WindowIsPaintedBeforeItsRunBegins) {
    run_window.load = [this] { run_window.Lbl_Location.SetCaption("Archive: E:\\A.zip"); };
    run_window.run = [this] {
        for (const forms::Control* control : run_window.controls()) {
            EXPECT_FALSE(GetUpdateRect(HandleOf(*control), nullptr, FALSE)) << control->name();
        }
        run_window.happened.push_back("run");
        program.desktop.Unload(run_window);
    };
    ShowRun();
    EXPECT_EQ(run_window.happened, (Lines{"run", "Unload"}));
}

TEST_F(ModalRun, OwnerStaysDisabledUntilTheRunHasEnded) {
    const HWND owner = TopOf(window);
    bool ran = false;
    run_window.run = [&] {
        EXPECT_FALSE(IsWindowEnabled(owner));
        user->Click(run_window.Cmd_Ok);
        EXPECT_FALSE(run_window.Visible());
        program.desktop.DoEvents();
        EXPECT_FALSE(IsWindowEnabled(owner));
        ran = true;
    };
    ShowRun();
    EXPECT_TRUE(ran);
    EXPECT_TRUE(IsWindowEnabled(owner));
    EXPECT_FALSE(run_window.Loaded());
}

}  // namespace

}  // namespace vantrel::test
