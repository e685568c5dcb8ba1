// The program's own windows on the screen: what their dialogs say, the keys that lead through them,
// and what is painted behind the splash.
#include <algorithm>
#include <map>

#include "app/Frm_Splash.h"
#include "common/product.h"
#include "tests/views/real_program.h"
#include "ui/Frm_Mainmenu.h"
#include "views/win32/own_texts.h"

namespace vantrel::test {

namespace {

using forms::Kind;

class RealMainWindow : public RealProgram {
  protected:
    RealMainWindow() {
        program.desktop.ShowModeless(window);
        program.desktop.DoEvents();
    }
    ~RealMainWindow() override { program.desktop.Unload(window); }

    // Those that stand on the screen, by what `text_of` says of them.
    Lines Seen(const std::function<std::string(forms::Control&)>& text_of) const {
        Lines lines;
        for (forms::Control* control : window.controls()) {
            if (control->kind() != Kind::kTimer && control->kind() != Kind::kMenu) {
                lines.push_back(control->name() + ": " + text_of(*control));
            }
        }
        return lines;
    }
    void ShowTab(int tab) {
        window.TAB_Backup.SetTab(tab);
        program.desktop.DoEvents();
    }
    std::string Focus() const {
        for (const forms::Control* control : window.controls()) {
            if (const int id = IdOf(*control); id && id == GetDlgCtrlID(GetFocus())) {
                return control->name();
            }
        }
        return "nothing of ours";
    }
    // The controls that the Tab key leads to, from the tabs around to them again.
    Lines Walk() {
        constexpr std::size_t kTooMany = 20;
        window.TAB_Backup.SetFocus();
        Lines order;
        for (;;) {
            PressKey(GetFocus(), VK_TAB);
            program.desktop.DoEvents();
            if (Focus() == "TAB_Backup") {
                return order;
            }
            order.push_back(Focus());
            if (order.size() == kTooMany) {
                return order;
            }
        }
    }
    // The same with the Shift key held down.
    Lines WalkBack() {
        HoldShift(true);
        const Lines order = Walk();
        HoldShift(false);
        return order;
    }
    void ExpectTabOrder(int tab, Lines order) {
        ShowTab(tab);
        EXPECT_EQ(order, Walk());
        std::reverse(order.begin(), order.end());
        EXPECT_EQ(order, WalkBack());
    }
    // Where the keyboard is after Alt and a letter.
    std::string FocusAfterAlt(char letter) {
        window.TAB_Backup.SetFocus();
        constexpr LPARAM kWithAlt = 1 << 29;
        PostMessageW(GetFocus(), WM_SYSCHAR, static_cast<WPARAM>(letter), kWithAlt);
        program.desktop.DoEvents();
        return Focus();
    }
    HWND Page() const {
        return WindowWhere(TopOf(window), [](HWND each) {
            return ClassOf(each) == L"#32770" && IsWindowVisible(each);
        });
    }
    // The access keys of a page in the order of its controls, capital letters.
    std::string AccessKeys() const {
        std::string keys;
        WindowWhere(Page(), [&keys](HWND each) {
            const bool is_label = ClassOf(each) == L"Static";
            if (is_label && (GetWindowLongPtrW(each, GWL_STYLE) & SS_NOPREFIX)) {
                return false;
            }
            if (!is_label && ClassOf(each) != L"Button") {
                return false;
            }
            std::wstring text(100, L'\0');
            GetWindowTextW(each, text.data(), static_cast<int>(text.size()));
            const std::size_t mark = text.find(L'&');
            if (mark != std::wstring::npos) {
                keys += static_cast<char>(std::toupper(static_cast<int>(text[mark + 1])));
            }
            return false;
        });
        return keys;
    }

    Frm_Mainmenu window{program};
};

TEST_F(RealMainWindow, ShowsItsSixTabs) {
    EXPECT_EQ((Lines{"Backup", "Restore", "INI Edit", "Log", "Secure Data", "About"}),
              user.TabCaptions(window.TAB_Backup));
}

TEST_F(RealMainWindow, SaysWhatItsControlsSay) {
    const auto has_caption = [](const forms::Control& control) {
        return control.kind() == Kind::kLabel || control.kind() == Kind::kButton ||
               control.kind() == Kind::kFrame;
    };
    EXPECT_EQ(Seen([&](auto& each) { return has_caption(each) ? each.Caption() : ""; }),
              Seen([&](auto& each) { return has_caption(each) ? user.Text(each) : ""; }));
}

TEST_F(RealMainWindow, MenuBarHoldsFileWithItsExit) {
    const auto entry = [](HMENU menu, int place) {
        std::wstring text(100, L'\0');
        GetMenuStringW(menu, static_cast<UINT>(place), text.data(), 100, MF_BYPOSITION);
        return views::Utf8(text.c_str());
    };
    const HMENU bar = GetMenu(TopOf(window));
    ASSERT_EQ(1, GetMenuItemCount(bar));
    EXPECT_EQ(window.Menu_File.Caption(), entry(bar, 0));
    const HMENU file = GetSubMenu(bar, 0);
    ASSERT_EQ(1, GetMenuItemCount(file));
    EXPECT_EQ(window.Menu_File_Exit.Caption(), entry(file, 0));
}

TEST_F(RealMainWindow, EachToolTipIsThereAndLabelsThatHaveOneTakeTheMouse) {
    const auto tip_of = [](const forms::Control& control) {
        const HWND handle = HandleOf(control);
        NMTTDISPINFOW question{};
        question.hdr.idFrom = reinterpret_cast<UINT_PTR>(handle);
        question.hdr.code = TTN_GETDISPINFOW;
        Send(GetParent(handle), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&question));
        return question.lpszText ? views::Utf8(question.lpszText) : "";
    };
    const auto given_or_own = [](const forms::Control& control) {
        return control.Tooltip().empty() ? views::OwnTip(IdOf(control)) : control.Tooltip();
    };
    EXPECT_EQ(Seen(given_or_own), Seen(tip_of));
    for (const forms::Control* control : window.controls()) {
        const HWND handle = control->Tooltip().empty() ? nullptr : HandleOf(*control);
        if (!handle || ClassOf(handle) != L"Static") {
            continue;  // all else takes the mouse
        }
        POINT middle = MiddleOf(ClientOf(handle));
        ClientToScreen(handle, &middle);
        EXPECT_NE(HTTRANSPARENT, Send(handle, WM_NCHITTEST, 0, MAKELPARAM(middle.x, middle.y)))
            << control->name();
    }
}

TEST_F(RealMainWindow, TextViewsAreInCourierTheProductInArialAllElseInSansSerif) {
    const std::map<std::string, std::string> faces = {
        {"Fld_INI", "Courier New"},   {"Fld_Log", "Courier New"},
        {"Lbl_ProductName", "Arial"}, {"Lbl_CompanyProduct", "Arial"},
        {"Lbl_Description", "Arial"}, {"Lin_Mainmenu", ""}};  // a mere line
    const auto wanted = [&faces](const forms::Control& control) {
        const auto face = faces.find(control.name());
        return face == faces.end() ? "MS Sans Serif" : face->second;
    };
    EXPECT_EQ(Seen(wanted), Seen([](auto& each) { return FaceOf(HandleOf(each)); }));
}

// Line heights, and so the heights of controls, do not grow with the dpi as pictures do.
TEST_F(RealMainWindow, PicturesAreNotClippedAtAnyDpi) {
    for (const int dpi : {144, 192}) {
        ChangeDpi(TopOf(window), dpi);
        for (const forms::Control* control : window.controls()) {
            if (control->kind() == Kind::kPicture) {
                const RECT area = ClientOf(HandleOf(*control));
                const LONG size = MulDiv(control->name() == "Img_Logo" ? 48 : 32, dpi, 96);
                EXPECT_LE(size, area.right) << control->name() << dpi;
                EXPECT_LE(size, area.bottom) << control->name() << dpi;
            }
        }
    }
}

TEST_F(RealMainWindow, TabKeyGoesThroughEachTabFromTopToBottomAndBack) {
    window.Backup.SetEditMode(true);
    ExpectTabOrder(
        0, {"Cmb_BackupSet", "Dri_DriveList", "Dir_DirList", "Cmd_Options_0", "Cmd_Options_1",
            "Cmd_Navigate", "Cmd_Options_2", "Cmd_AddNew", "Cmd_Backup", "Cmd_Exit_0"});
    ExpectTabOrder(1, {"Cmb_RestoreFile", "Cmd_RestoreFile", "Cmd_RestoreTo", "TV_Restore",
                       "Cmd_Restore", "Cmd_Exit_1"});
    window.Edit.Cmd_Save.SetEnabled(true);
    ExpectTabOrder(2, {"Fil_INI", "Cmd_INIRefresh", "Fld_INI", "Cmd_Save"});
    ExpectTabOrder(3, {"Fld_Log", "Cmd_Refresh", "Cmd_Email"});
    ExpectTabOrder(4, {"Dri_SecureMode", "TV_SecureMode", "Fld_SecureData"});
    ExpectTabOrder(5, {"Cmd_ContactUs"});
}

TEST_F(RealMainWindow, NoTabHasAnAccessKeyTwiceButForTheTwoThatBackupBegins) {
    // "&Backup Set" and "&Backup Now" are both given. The menu bar has F.
    const Lines keys = {"BLOCBE", "WHRE", "RS", "RE", "", "C"};
    for (int tab = 0; tab < 6; ++tab) {
        ShowTab(tab);
        EXPECT_EQ(keys[static_cast<std::size_t>(tab)], AccessKeys()) << tab;
    }
}

TEST_F(RealMainWindow, AccessKeysOfLabelsLeadToWhatTheyStandOver) {
    window.Backup.SetEditMode(true);
    EXPECT_EQ("Dri_DriveList", FocusAfterAlt('l'));
    EXPECT_EQ("Cmd_Navigate", FocusAfterAlt('o'));
    ShowTab(1);
    EXPECT_EQ("Cmb_RestoreFile", FocusAfterAlt('w'));
    EXPECT_EQ("Cmd_RestoreTo", FocusAfterAlt('h'));
}

class RealSplash : public RealProgram {
  protected:
    RealSplash() {
        splash.Tim_Delay_Timer();  // long enough already
        program.desktop.ShowModeless(splash);
        program.desktop.DoEvents();
        top = TopOf(splash);
    }
    ~RealSplash() override { program.desktop.Unload(splash); }

    // From the top to the bottom of the window, at `x`; the whole column is one blue darker or the
    // same as the one above.
    void ExpectGradientAt(int x) const {
        std::vector<int> blues;
        for (const COLORREF color : PixelsIn(top, {x, 0, x + 1, ClientOf(top).bottom})) {
            EXPECT_EQ(0, GetRValue(color) | GetGValue(color)) << x << ", " << blues.size();
            blues.push_back(GetBValue(color));
        }
        EXPECT_TRUE(std::is_sorted(blues.rbegin(), blues.rend())) << x;
        EXPECT_EQ(255, blues.front()) << x;
        EXPECT_GE(11, blues.back()) << x;
        blues.erase(std::unique(blues.begin(), blues.end()), blues.end());
        EXPECT_LE(62u, blues.size()) << x;
    }
    void ExpectGradientToTheEdges() const {
        ExpectGradientAt(0);
        ExpectGradientAt(ClientOf(top).right - 1);
    }

    Frm_Splash splash{program};
    HWND top = nullptr;
};

TEST_F(RealSplash, StandsOnAGradientThatReachesItsEdges) { ExpectGradientToTheEdges(); }

TEST_F(RealSplash, GradientIsPaintedAnewOverWhateverStoodInFront) {
    const HDC device = GetDC(top);
    const RECT inside = ClientOf(top);
    FillRect(device, &inside, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    ReleaseDC(top, device);
    InvalidateRect(top, nullptr, TRUE);
    program.desktop.DoEvents();
    ExpectGradientToTheEdges();
}

TEST_F(RealSplash, TextsAreNotPaintedOverEarlierOnes) {
    const HWND label = HandleOf(splash.Lbl_Version);
    const auto before = PixelsIn(label, ClientOf(label));
    splash.Lbl_Version.SetCaption("Version 8.8.8");
    program.desktop.DoEvents();
    splash.Lbl_Version.SetCaption("Version " + product::VersionText());
    program.desktop.DoEvents();
    EXPECT_EQ(before, PixelsIn(label, ClientOf(label)));
    RedrawWindow(top, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    program.desktop.DoEvents();
    EXPECT_EQ(before, PixelsIn(label, ClientOf(label)));
}

TEST_F(RealSplash, GradientFillsTheWindowInAnotherSize) {
    RECT outer{};
    GetWindowRect(top, &outer);
    SetWindowPos(top, nullptr, 0, 0, outer.right - outer.left + 50, outer.bottom - outer.top + 90,
                 SWP_NOMOVE | SWP_NOZORDER);
    program.desktop.DoEvents();
    ExpectGradientToTheEdges();
}

TEST_F(RealSplash, LabelsStandOnTheGradientInArial) {
    for (const forms::Control* control : splash.controls()) {
        if (control->kind() != Kind::kLabel) {
            continue;
        }
        const HWND label = HandleOf(*control);
        EXPECT_EQ("Arial", FaceOf(label)) << control->name();
        EXPECT_EQ(control->Caption(), user.Text(*splash.Find(control->name())));
        EXPECT_EQ(0, PixelsOf(label, ClientOf(label), GetSysColor(COLOR_BTNFACE)))
            << control->name();
    }
}

}  // namespace

}  // namespace vantrel::test
