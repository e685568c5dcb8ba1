// What a screen reader gets, asked through Active Accessibility, and the windows in other colors.
#include <oleacc.h>

#include <map>

#include "tests/views/real_program.h"
#include "tests/views/windows_under_test.h"
#include "ui/Frm_Mainmenu.h"
#include "views/win32/own_texts.h"

namespace vantrel::test {

namespace {

// A control as Active Accessibility describes it.
struct Described {
    std::string name;
    LONG role = 0;
};

Described Describe(HWND control) {
    using Getter = HRESULT(WINAPI*)(HWND, DWORD, REFIID, void**);
    static const auto get = reinterpret_cast<Getter>(reinterpret_cast<void*>(
        GetProcAddress(LoadLibraryW(L"oleacc.dll"), "AccessibleObjectFromWindow")));
    void* found = nullptr;
    if (FAILED(get(control, static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible, &found))) {
        throw std::runtime_error("a control without a description");
    }
    auto* const object = static_cast<IAccessible*>(found);
    VARIANT self{};
    self.vt = VT_I4;
    VARIANT role{};
    BSTR name = nullptr;
    Described described;
    if (object->get_accName(self, &name) == S_OK && name) {
        described.name = views::Utf8(name);
    }
    if (object->get_accRole(self, &role) == S_OK) {
        described.role = role.lVal;
    }
    SysFreeString(name);
    object->Release();
    return described;
}

bool TakesKeyboard(HWND control) {
    return (GetWindowLongPtrW(control, GWL_STYLE) & WS_TABSTOP) != 0;
}

// Every control that takes the keyboard has a name of its own. The system under test reads no
// annotations: it knows no name of drop-down lists, and "..." for a button of that caption.
// Both have one in the table of our own names. Of edit fields it knows the label before them.
void ExpectNames(const forms::Form& window) {
    for (const forms::Control* control : window.controls()) {
        if (control->kind() == forms::Kind::kTimer || control->kind() == forms::Kind::kMenu ||
            control->kind() == forms::Kind::kTabs) {
            continue;
        }
        const HWND handle = HandleOf(*control);
        if (!TakesKeyboard(handle)) {
            continue;
        }
        const std::string own = views::OwnName(IdOf(*control));
        const std::string name = own.empty() ? Describe(handle).name : own;
        EXPECT_NE("", name) << control->name();
        EXPECT_NE("...", name) << control->name();
    }
}

class Accessibility : public RealProgram {};

TEST_F(Accessibility, EachControlOfTheMainWindowThatTakesTheKeyboardHasAName) {
    Frm_Mainmenu window(program);
    program.desktop.ShowModeless(window);
    ExpectNames(window);
    program.desktop.Unload(window);
}

TEST_F(Accessibility, ListsTreesAndBarsHaveTheirNamesForTheSystem) {
    Frm_Mainmenu window(program);
    program.desktop.ShowModeless(window);
    const std::map<forms::Control*, std::string> names = {
        {&window.Restore.TV_Restore, "Contents of the Zip File"},
        {&window.Secure.TV_SecureMode, "Folders"},
        {&window.Edit.Fil_INI, "INI File List"},
        {&window.Backup.Dir_DirList, "Folder to Backup"},
        {&window.Backup.Cmd_Backup, "Backup Now"},
        {&window.Edit.Fld_INI, window.Edit.Lbl_INIContents.Caption()}};
    for (const auto& [control, name] : names) {
        EXPECT_EQ(name, Describe(HandleOf(*control)).name) << control->name();
    }
    EXPECT_EQ(ROLE_SYSTEM_TEXT, Describe(HandleOf(window.Edit.Fld_INI)).role);
    program.desktop.Unload(window);
}

class RunAccessibility : public WindowFixture<RunWindow> {};

class OptionsAccessibility : public WindowFixture<OptionsWindow> {};
class WhereAccessibility : public WindowFixture<WhereWindow> {};

TEST_F(OptionsAccessibility, EachControlThatTakesTheKeyboardHasAName) { ExpectNames(window); }

TEST_F(WhereAccessibility, EachControlThatTakesTheKeyboardHasAName) { ExpectNames(window); }

TEST_F(RunAccessibility, EachControlThatTakesTheKeyboardHasAName) { ExpectNames(window); }

TEST_F(RunAccessibility, BarsAndListOfARunAreNamed) {
    EXPECT_EQ("File Progress", Describe(HandleOf(window.PB_File)).name);
    EXPECT_EQ("Overall Progress", Describe(HandleOf(window.PB_Folder)).name);
    EXPECT_EQ("Details", Describe(HandleOf(window.Lst_Details)).name);
}

// Light letters on black, as in a high-contrast scheme, until the end of the test.
class HighContrast : public WindowFixture<MainWindow> {
  protected:
    HighContrast() {
        for (const int index : kIndices) {
            before_.push_back(GetSysColor(index));
        }
        SetAll({kBlack, kWhite, kBlack, kWhite});
    }
    ~HighContrast() override { SetAll(before_); }

    static constexpr COLORREF kBlack = RGB(0, 0, 0);
    static constexpr COLORREF kWhite = RGB(255, 255, 255);

    static void SetAll(const std::vector<COLORREF>& colors) {
        SetSysColors(static_cast<int>(std::size(kIndices)), kIndices, colors.data());
    }
    static int Count(const forms::Control& control, COLORREF color) {
        const RECT inside = ClientOf(HandleOf(control));
        return PixelsOf(HandleOf(control), {2, 2, inside.right - 2, inside.bottom - 2}, color);
    }

  private:
    static constexpr int kIndices[] = {COLOR_BTNFACE, COLOR_BTNTEXT, COLOR_WINDOW,
                                       COLOR_WINDOWTEXT};
    std::vector<COLORREF> before_;
};

TEST_F(HighContrast, ValuesAndTextsTakeTheNewColorsWhileTheWindowIsOpen) {
    window.Fld_BackupWhere.SetCaption("E:\\WWWWWWWWWW");
    Happened();
    Send(TopOf(window), WM_SYSCOLORCHANGE);
    Happened();
    EXPECT_LT(50, Count(window.Fld_BackupWhere, kWhite));
    EXPECT_LT(500, Count(window.Fld_BackupWhere, kBlack));
    window.Fld_Log.SetText("WWWWWWWWWW\r\n");
    ShowPage(MainWindow::kLog);
    EXPECT_LT(50, Count(window.Fld_Log, kWhite));
    EXPECT_LT(5000, Count(window.Fld_Log, kBlack));
}

TEST_F(HighContrast, PanelsAreReadableBesideTheirFill) {
    window.TAB_Backup.SetTab(MainWindow::kRestore);
    window.SSP_TotalFiles.SetCaption("WWWWW");
    Happened();
    EXPECT_LT(20, Count(window.SSP_TotalFiles, kWhite));
    EXPECT_LT(500, Count(window.SSP_TotalFiles, kBlack));
}

}  // namespace

}  // namespace vantrel::test
