// What the screen shows a user who asks what to do: the status bar, menus of lists and trees,
// message boxes; and what is served while a drive is read.
#include "tests/views/real_controls.h"
#include "tests/views/win32_user.h"
#include "tests/views/windows_under_test.h"

namespace vantrel::test {

namespace {

class AskedScreen : public WindowFixture<MainWindow> {};

// Of one line of a tree's node, how many pixels look selected.
int HighlightedPixels(HWND tree, HTREEITEM item) {
    RECT area{};
    TreeView_GetItemRect(tree, item, &area, TRUE);
    return PixelsOf(tree, area, GetSysColor(COLOR_HIGHLIGHT));
}

TEST_F(AskedScreen, OnlyTheSelectedNodeLooksSelectedWhileTheMenuOfATreeIsOpen) {
    ShowPage(MainWindow::kSecure);
    window.SSP_PleaseWait.SetVisible(false);
    for (const char* name : {"Documents", "Music", "Pictures"}) {
        window.TV_SecureMode.Add({.text = name, .image = 1, .selected_image = 2});
    }
    window.TV_SecureMode.Select(1);
    window.TV_SecureMode.SetFocus();
    const HWND tree = HandleOf(window.TV_SecureMode);
    const auto items = ItemsOfTree(tree);
    int selected = 0, under_the_pointer = 0;
    window.TV_SecureMode.MouseDown = [&](int) {
        UpdateWindow(tree);
        selected = HighlightedPixels(tree, items[0].item);
        under_the_pointer = HighlightedPixels(tree, items[2].item);
    };
    RECT area{};
    TreeView_GetItemRect(tree, items[2].item, &area, TRUE);
    ClickAt(tree, MiddleOf(area), Mouse::kRight);
    Happened();
    EXPECT_LT(0, selected);
    EXPECT_EQ(0, under_the_pointer);
    EXPECT_EQ(1, window.TV_SecureMode.Selected());
}

TEST_F(AskedScreen, SelectedNodeIsScrolledIntoViewForItsMenu) {
    ShowPage(MainWindow::kSecure);
    window.SSP_PleaseWait.SetVisible(false);
    for (int i = 0; i < 100; ++i) {
        window.TV_SecureMode.Add({.text = "Folder " + std::to_string(i)});
    }
    window.TV_SecureMode.Select(1);
    const HWND tree = HandleOf(window.TV_SecureMode);
    const auto items = ItemsOfTree(tree);
    TreeView_EnsureVisible(tree, items[99].item);
    RECT area{};
    ASSERT_FALSE(TreeView_GetItemRect(tree, items[0].item, &area, TRUE) && area.top >= 0);
    user->RightClick(window.TV_SecureMode);
    EXPECT_TRUE(TreeView_GetItemRect(tree, items[0].item, &area, TRUE));
    EXPECT_LE(0, area.top);
}

// The system makes a WM_CONTEXTMENU of a menu key that is really pressed.
TEST_F(AskedScreen, MenuKeysOfATreeAreItsRightButton) {
    ShowPage(MainWindow::kSecure);
    window.TV_SecureMode.Add({.text = "Documents"});
    window.TV_SecureMode.Select(1);
    const HWND tree = HandleOf(window.TV_SecureMode);
    SetFocus(tree);
    constexpr LPARAM kFromKeyboard = -1;
    Send(tree, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(tree), kFromKeyboard);
    EXPECT_EQ(Lines{"TV_SecureMode MouseDown 2"}, Happened());
    HoldShift(true);
    PostMessageW(tree, WM_SYSKEYDOWN, VK_F10, 1);
    EXPECT_EQ(Lines{"TV_SecureMode MouseDown 2"}, Happened());
    HoldShift(false);
}

class StatusBarOnScreen : public AskedScreen {
  protected:
    std::string Part(WPARAM part) {
        const HWND bar = HandleOf(window.Sta_Mainmenu);
        std::wstring text(1000, L'\0');
        Send(bar, SB_GETTEXTW, part, reinterpret_cast<LPARAM>(text.data()));
        return views::Utf8(text.c_str());
    }
};

TEST_F(StatusBarOnScreen, ShowsItsLineAndItsNote) {
    window.Sta_Mainmenu.SetNote("F1 opens the guide");
    window.Sta_Mainmenu.SetLine("There is no backup set yet.", "");
    EXPECT_EQ("There is no backup set yet.", Part(0));
    EXPECT_EQ("F1 opens the guide", Part(1));
}

TEST_F(StatusBarOnScreen, NoteGoesWhereTheLineNeedsItsPart) {
    window.Sta_Mainmenu.SetNote("F1 opens the guide");
    const std::string line =
        "Multi Volume is on, but N:\\ is not removable. Press Change Settings, then ... at Backup "
        "Options.";
    window.Sta_Mainmenu.SetLine(line, "");
    EXPECT_EQ(line, Part(0));
    EXPECT_EQ(1, Send(HandleOf(window.Sta_Mainmenu), SB_GETPARTS));
    window.Sta_Mainmenu.SetLine("Short.", "");
    EXPECT_EQ("F1 opens the guide", Part(1));
}

TEST_F(StatusBarOnScreen, LongPathIsShortenedInItsMiddle) {
    const std::string path = "E:\\" + std::string(300, 'x') + "\\DAILY.zip";
    window.Sta_Mainmenu.SetLine("Last archive: " + path + ", 1.2 MB.", path);
    const std::string shown = Part(0);
    EXPECT_EQ(0u, shown.find("Last archive: E:\\...x")) << shown;
    const std::string end = "\\DAILY.zip, 1.2 MB.";
    ASSERT_GT(shown.size(), end.size());
    EXPECT_EQ(end, shown.substr(shown.size() - end.size()));
}

TEST_F(StatusBarOnScreen, LongLineWithoutAPathEndsInDots) {
    window.Sta_Mainmenu.SetLine(std::string(300, 'x'), "");
    const std::string shown = Part(0);
    EXPECT_EQ("x...", shown.substr(shown.size() - 4));
}

// A message box, which is shown until it has been looked at.
TEST_F(AskedScreen, MessageBoxShowsTheEndOfItsText) {
    static int g_pixels_at_the_edge;
    g_pixels_at_the_edge = -1;
    const auto look = [](HWND, UINT, UINT_PTR timer, DWORD) {
        constexpr int kBoxText = 0xFFFF;
        const HWND box = WindowWhere(
            nullptr, [](HWND each) { return GetDlgItem(each, kBoxText) && IsWindowVisible(each); });
        if (!box) {
            return;
        }
        const HWND text = GetDlgItem(box, kBoxText);
        UpdateWindow(text);
        RECT edge = ClientOf(text);
        edge.left = edge.right - 2;
        g_pixels_at_the_edge =
            2 * static_cast<int>(edge.bottom) - PixelsOf(text, edge, GetSysColor(COLOR_BTNFACE));
        KillTimer(nullptr, timer);
        PostMessageW(box, WM_COMMAND, IDNO, 0);
    };
    SetTimer(nullptr, 0, 10, look);
    program.desktop.Show({.text = "Are you sure that you wish to start the backup now?",
                          .buttons = forms::Buttons::kYesNo,
                          .default_button = 2});
    EXPECT_EQ(0, g_pixels_at_the_edge);
}

TEST_F(AskedScreen, KeyboardStaysWhereAHandlerMovedItWhenTheWindowIsActivatedAgain) {
    window.Cmd_Backup.SetFocus();
    Send(TopOf(window), WM_ACTIVATE, WA_INACTIVE);
    window.Cmb_BackupSet.SetFocus();
    Send(TopOf(window), WM_ACTIVATE, WA_ACTIVE);
    EXPECT_EQ(HandleOf(window.Cmb_BackupSet), GetFocus());
    SetFocus(TopOf(window));
    EXPECT_EQ(HandleOf(window.Cmb_BackupSet), GetFocus());
}

// A window whose painting presses a button, as another program may do at any time.
class Reading : public AskedScreen {
  protected:
    Reading() {
        Happened();
        SetWindowSubclass(button, PressWhenPainted, 0, 0);
        InvalidateRect(button, nullptr, TRUE);
    }
    ~Reading() override { RemoveWindowSubclass(button, PressWhenPainted, 0); }

    static LRESULT CALLBACK PressWhenPainted(HWND window, UINT message, WPARAM wparam,
                                             LPARAM lparam, UINT_PTR, DWORD_PTR) {
        if (message == WM_PAINT) {
            SendMessageW(GetParent(window), WM_COMMAND,
                         MAKEWPARAM(GetDlgCtrlID(window), BN_CLICKED),
                         reinterpret_cast<LPARAM>(window));
        }
        return DefSubclassProc(window, message, wparam, lparam);
    }
    bool IsPainted() const { return !GetUpdateRect(button, nullptr, FALSE); }
    // The key of the keyboard, whichever window has it.
    static void HoldKey(WORD key, bool down) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key;
        input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
        SendInput(1, &input, sizeof input);
    }
    // As a reading does it, until `done` or Esc; whether it was Esc.
    bool ReadUntil(const std::function<bool()>& done) {
        constexpr int kEntries = 100'000'000;
        for (int i = 0; i < kEntries && !done(); ++i) {
            if (program.desktop.PaintAndCheckEscape()) {
                return true;
            }
        }
        return false;
    }

    const HWND button = HandleOf(window.Cmd_Backup);
};

TEST_F(Reading, PaintsAndHandlesEverythingElseAfterwards) {
    PostMessageW(button, BM_CLICK, 0, 0);
    PressKey(button, VK_SPACE);
    EXPECT_FALSE(ReadUntil([this] { return IsPainted(); }));
    EXPECT_TRUE(IsPainted());
    EXPECT_EQ(Lines{}, window.happened);
    RemoveWindowSubclass(button, PressWhenPainted, 0);
    EXPECT_EQ((Lines{"Cmd_Backup Click", "Cmd_Backup Click", "Cmd_Backup Click"}), Happened());
}

TEST_F(Reading, IsStoppedByEscape) {
    PressKey(button, VK_ESCAPE);
    EXPECT_TRUE(ReadUntil([] { return false; }));
    EXPECT_EQ(Lines{}, window.happened);
    EXPECT_FALSE(program.desktop.PaintAndCheckEscape()) << "one key stops once";
}

TEST_F(Reading, IsStoppedByEscapeHeldDownBehindOtherKeys) {
    PressKey(button, VK_SPACE);
    HoldKey(VK_ESCAPE, true);
    EXPECT_TRUE(ReadUntil([] { return false; }));
    HoldKey(VK_ESCAPE, false);
    EXPECT_EQ(Lines{}, window.happened);
}

}  // namespace

}  // namespace vantrel::test
