// What the windows look like: buttons, values, lists, and what the pointer shows.
#include "tests/views/real_controls.h"
#include "tests/views/win32_user.h"
#include "tests/views/windows_under_test.h"

namespace vantrel::test {

namespace {

template <typename Window>
class Looks : public WindowFixture<Window> {
  protected:
    // The buttons of the program that look like the default one.
    static Lines MarkedButtons() {
        Lines names;
        const auto note = [&](HWND each) {
            const LONG_PTR type = GetWindowLongPtrW(each, GWL_STYLE) & BS_TYPEMASK;
            if (ClassOf(each) == L"Button" && IsWindowVisible(each) && type == BS_DEFPUSHBUTTON) {
                names.push_back(views::TextOf(each));
            }
            return false;
        };
        WindowWhere(nullptr, [&](HWND top) { return WindowWhere(top, note) != nullptr; });
        return names;
    }
    // The tip that appears while the pointer rests on the control.
    std::string TipOver(const forms::Control& control) {
        const HWND handle = HandleOf(control);
        POINT middle = MiddleOf(ClientOf(handle));
        ClientToScreen(handle, &middle);
        SetCursorPos(middle.x - 1, middle.y);
        SetCursorPos(middle.x, middle.y);
        const HWND top = TopOf(this->window);
        HWND tip = nullptr;
        static_cast<Win32User&>(*this->user).WaitUntil([&] {
            tip = WindowWhere(nullptr, [top](HWND each) {
                return ClassOf(each) == TOOLTIPS_CLASSW && IsWindowVisible(each) &&
                       GetWindow(each, GW_OWNER) == top;
            });
            return tip != nullptr;
        });
        const std::string text = views::TextOf(tip);
        Send(tip, TTM_POP);
        return text;
    }
};

using MainLooks = Looks<MainWindow>;
using RunLooks = Looks<RunWindow>;

TEST_F(MainLooks, OnlyTheButtonWithTheKeyboardLooksLikeTheDefault) {
    EXPECT_EQ(Lines{}, MarkedButtons());
    for (forms::Button* button : {&window.Cmd_AddNew, &window.Cmd_Backup}) {
        button->SetFocus();
        Happened();
        EXPECT_EQ(Lines{button->Caption()}, MarkedButtons());
    }
    window.Cmb_BackupSet.SetFocus();
    Happened();
    EXPECT_EQ(Lines{}, MarkedButtons());
}

TEST_F(MainLooks, ButtonOfAnotherPageDoesNotKeepTheLook) {
    window.Cmd_Backup.SetFocus();
    Happened();
    ASSERT_EQ(Lines{"&Backup Now"}, MarkedButtons());
    ShowPage(MainWindow::kLog);
    ShowPage(MainWindow::kBackup);
    EXPECT_EQ(Lines{}, MarkedButtons());
}

TEST_F(MainLooks, WindowBehindADialogHasNoDefaultButton) {
    window.Cmd_AddNew.SetFocus();
    Happened();
    ASSERT_EQ(Lines{"New Backup"}, MarkedButtons());
    OptionsWindow options(program);
    program.desktop.ShowModeless(options);
    Happened();
    EXPECT_EQ(Lines{"OK"}, MarkedButtons());
    program.desktop.Unload(options);
}

TEST_F(RunLooks, DetailsHaveNoHalfRowInAnySize) {
    const HWND list = HandleOf(window.Lst_Details);
    const auto rest = [&] { return ClientOf(list).bottom % Send(list, LB_GETITEMHEIGHT); };
    EXPECT_EQ(0, rest());
    RECT outer{};
    GetWindowRect(TopOf(window), &outer);
    for (int more = 1; more < 20; ++more) {
        SetWindowPos(TopOf(window), nullptr, 0, 0, outer.right - outer.left,
                     outer.bottom - outer.top + more, SWP_NOMOVE | SWP_NOZORDER);
        EXPECT_EQ(0, rest()) << more;
    }
}

TEST_F(RunLooks, WideLineTakesNoRowFromTheDetails) {
    const RECT before = ClientOf(HandleOf(window.Lst_Details));
    window.Lst_Details.Add(std::string(500, 'W'));
    Happened();
    EXPECT_EQ(before.bottom, ClientOf(HandleOf(window.Lst_Details)).bottom);
}

TEST_F(RunLooks, EmptyDetailsHaveNoFocusRectangle) {
    const HWND list = HandleOf(window.Lst_Details);
    const auto expect_plain = [&] {
        Happened();
        const RECT inside = ClientOf(list);
        EXPECT_EQ(inside.right * inside.bottom, PixelsOf(list, inside, GetSysColor(COLOR_WINDOW)));
    };
    window.Cmd_Cancel.SetFocus();
    Happened();
    window.Lst_Details.SetFocus();
    expect_plain();
    window.Lst_Details.Add("Adding a.txt");
    window.Lst_Details.SetIndex(0);
    Happened();
    window.Lst_Details.Clear();
    expect_plain();
}

// Selecting scrolls, and a scrolled list is painted at once where painting is on.
TEST_F(RunLooks, NewestDetailIsSelectedBeforeTheListIsPainted) {
    static bool g_paints;
    static Lines g_selected;
    const auto note = [](HWND list, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR,
                         DWORD_PTR) -> LRESULT {
        if (message == WM_SETREDRAW) {
            g_paints = wparam != 0;
        } else if (message == LB_SETCURSEL && !g_paints) {
            g_selected.push_back(std::to_string(wparam));
        }
        return DefSubclassProc(list, message, wparam, lparam);
    };
    g_paints = true;
    g_selected.clear();
    SetWindowSubclass(HandleOf(window.Lst_Details), note, 0, 0);
    for (int i = 0; i < 50; ++i) {
        window.Lst_Details.Add("Adding file " + std::to_string(i));
    }
    window.Lst_Details.SetIndex(49);
    Happened();
    RemoveWindowSubclass(HandleOf(window.Lst_Details), note, 0);
    EXPECT_EQ(Lines{"49"}, g_selected);
}

// From the first to the last column that is not plain background.
int PaintedWidth(HWND control) {
    const RECT inside = ClientOf(control);
    const auto painted = [&](LONG x) {
        return PixelsOf(control, {x, 0, x + 1, inside.bottom}, GetSysColor(COLOR_BTNFACE)) <
               inside.bottom;
    };
    LONG first = 0;
    LONG last = inside.right - 1;
    while (first < last && !painted(first)) {
        ++first;
    }
    while (last > first && !painted(last)) {
        --last;
    }
    return static_cast<int>(last - first);
}

TEST_F(RunLooks, ClipScalesWithTheDpi) {
    const HWND clip = HandleOf(window.Ani_File);
    window.Ani_File.Open(program.InApplicationFolder("app\\System\\FileCopy.AVI"));
    const auto width_at = [&](int dpi) {
        ChangeDpi(TopOf(window), dpi);
        static_cast<Win32User&>(*user).WaitUntil([&] { return PaintedWidth(clip) > 0; });
        EXPECT_TRUE(user->Playing(window.Ani_File)) << dpi;
        return PaintedWidth(clip);
    };
    const int width = width_at(96);
    EXPECT_LT(200, width);
    EXPECT_NEAR(1.5 * width, width_at(144), 4);
    EXPECT_NEAR(2.0 * width, width_at(192), 4);
    EXPECT_EQ(width, width_at(96));
}

// Numbers of resource.h, whose names are macros.
constexpr int kProductPicture = 1;
constexpr int kFolderPicture = 2;

TEST(Pictures, LogoIsDrawnInTwiceItsSizeForTheSplashAt192Dpi) {
    EXPECT_EQ(64, views::PictureSize(views::LoadPicture(kProductPicture, 64).get()));
    EXPECT_EQ(128, views::PictureSize(views::LoadPicture(kProductPicture, 128).get()));
    EXPECT_EQ(96, views::PictureSize(views::LoadPicture(kFolderPicture, 128).get()));
}

TEST_F(MainLooks, BlinkingAddressHasABackgroundOfItsOwnWhileItIsHighlighted) {
    ShowPage(MainWindow::kAbout);
    const HWND label = HandleOf(window.Lbl_WebAddress);
    const auto highlight = [&] {
        return PixelsOf(label, ClientOf(label), GetSysColor(COLOR_HIGHLIGHT));
    };
    EXPECT_EQ(0, highlight());
    window.Lbl_WebAddress.SetForeColor(forms::Label::Color::kHighlightText);
    Happened();
    const int with_text = highlight();
    EXPECT_LT(100, with_text);
    EXPECT_LT(20, PixelsOf(label, ClientOf(label), GetSysColor(COLOR_HIGHLIGHTTEXT)));
    window.Lbl_WebAddress.SetForeColor(forms::Label::Color::kButtonText);
    Happened();
    EXPECT_EQ(0, highlight());
}

TEST_F(MainLooks, DropDownListIsAsHighAsAFieldAtEachDpi) {
    for (const int dpi : {96, 144, 192}) {
        ChangeDpi(TopOf(window), dpi);
        EXPECT_NEAR(ClientOf(HandleOf(window.Fld_BackupWhere)).bottom,
                    ClientOf(HandleOf(window.Cmb_BackupSet)).bottom, 1)
            << dpi;
    }
}

TEST_F(MainLooks, ValuesStandOnTheColorOfWhatCannotBeEdited) {
    const HWND value = HandleOf(window.Fld_BackupWhere);
    const RECT inside = ClientOf(value);
    const RECT line{2, 1, inside.right - 2, 2};
    EXPECT_EQ(line.right - line.left, PixelsOf(value, line, GetSysColor(COLOR_BTNFACE)));
    EXPECT_NE(GetSysColor(COLOR_BTNFACE), GetSysColor(COLOR_WINDOW));
}

TEST_F(MainLooks, TipOfAShortenedPathHasThePathBelowTheGivenText) {
    const std::string path = "E:\\Backups\\" + std::string(60, 'W') + "\\Archive\\";
    window.Fld_BackupWhere.SetTooltip("Location of the Backup File");
    window.Fld_BackupWhere.SetCaption(path);
    Happened();
    EXPECT_EQ("Location of the Backup File\r\n" + path, TipOver(window.Fld_BackupWhere));
}

TEST_F(RunLooks, TipOfAShortenedStatusIsItsFullText) {
    const std::string status = "Adding E:\\" + std::string(60, 'W') + "\\letter.txt";
    window.Lbl_BackupPath.SetCaption(status);
    Happened();
    EXPECT_EQ(status, TipOver(window.Lbl_BackupPath));
}

TEST_F(MainLooks, TipOfAPathThatFitsIsTheGivenText) {
    window.Fld_BackupWhere.SetTooltip("Location of the Backup File");
    window.Fld_BackupWhere.SetCaption("E:\\");
    Happened();
    EXPECT_EQ("Location of the Backup File", TipOver(window.Fld_BackupWhere));
}

TEST_F(RunLooks, TipOfAShortenedPathIsTheCompleteText) {
    const std::string path = "E:\\Backups\\" + std::string(80, 'W') + "\\WEEKLY.zip";
    for (forms::Label* const label : {&window.Lbl_Location, &window.Lbl_BackupPath}) {
        label->SetCaption("Archive: " + path);
        Happened();
        EXPECT_EQ("Archive: " + path, TipOver(*label));
    }
}

TEST_F(MainLooks, DisabledControlShowsItsTip) {
    window.Cmd_Backup.SetTooltip("Start the Backup Now!");
    window.Cmd_Backup.SetEnabled(false);
    Happened();
    EXPECT_EQ("Start the Backup Now!", TipOver(window.Cmd_Backup));
}

TEST_F(MainLooks, ControlWithoutAGivenTipShowsOurOwn) {
    ShowPage(MainWindow::kLog);
    EXPECT_NE("", TipOver(window.Fld_Log));
}

}  // namespace

}  // namespace vantrel::test
