// The windows over the main window on the screen: what their dialogs say and in which typeface, and
// what the system's dialog for a file is asked for.
#include <memory>

#include "backup/Frm_Backup.h"
#include "backup/Frm_BackupOptions.h"
#include "backup/Frm_BackupWhere.h"
#include "restore/Frm_Restore.h"
#include "restore/Frm_RestoreWhere.h"
#include "tests/backup/dialog_fixture.h"
#include "tests/restore/restore_tab_fixture.h"
#include "tests/views/real_program.h"
// Needs the types of windows.h.
#include <commdlg.h>

namespace vantrel::test {

namespace {

// Somebody at the dialog for a file: sees what it is asked for, and chooses `chosen`, or Cancel.
struct FileDialog {
    DWORD flags = 0;
    std::wstring title, filter, start, chosen;
} file_dialog;

BOOL WINAPI ShowFileDialog(OPENFILENAMEW* dialog) {
    const wchar_t* end = dialog->lpstrFilter;
    while (*end) {
        end += std::wcslen(end) + 1;
    }
    file_dialog = {dialog->Flags,
                   dialog->lpstrTitle,
                   {dialog->lpstrFilter, end},
                   dialog->lpstrFile,
                   file_dialog.chosen};
    if (file_dialog.chosen.empty()) {
        return FALSE;
    }
    file_dialog.chosen.copy(dialog->lpstrFile, dialog->nMaxFile - 1);
    dialog->lpstrFile[file_dialog.chosen.size()] = L'\0';
    return TRUE;
}

using forms::Kind;

class RealDialogs : public RealProgram {
  protected:
    // Each of them says on the screen what its object says, in `faces` or else in the usual one.
    void ExpectSeen(forms::Form& window, const std::map<std::string, std::string>& faces = {}) {
        program.desktop.Load(window);
        EXPECT_EQ(window.Caption(), views::TextOf(TopOf(window)));
        int seen = 0;
        for (forms::Control* const control : window.controls()) {
            const Kind kind = control->kind();
            if (kind != Kind::kLabel && kind != Kind::kButton && kind != Kind::kCheckBox &&
                kind != Kind::kFrame) {
                continue;
            }
            ++seen;
            const auto face = faces.find(control->name());
            EXPECT_EQ(control->Caption(), user.Text(*control)) << control->name();
            EXPECT_EQ(face == faces.end() ? "MS Sans Serif" : face->second,
                      FaceOf(HandleOf(*control)))
                << control->name();
        }
        EXPECT_LE(3, seen);
        program.desktop.Unload(window);
    }

    // The text, broken into lines, is not larger than the label.
    static void ExpectFits(forms::Label& label, const std::wstring& text) {
        const HWND handle = HandleOf(label);
        const RECT area = ClientOf(handle);
        const SIZE needed = views::TextDevice(handle).SizeInLines(text, area.right);
        EXPECT_LE(needed.cx, area.right) << label.name();
        EXPECT_LE(needed.cy, area.bottom) << label.name();
    }
    static LONG WeightOf(forms::Label& label) {
        LOGFONTW font{};
        GetObjectW(reinterpret_cast<HFONT>(Send(HandleOf(label), WM_GETFONT)), sizeof font, &font);
        return font.lfWeight;
    }

    SelectedSet selected{program};
    Tab restore_tab{program};
};

TEST_F(RealDialogs, BackupRunHasThreeLabelsInVerdana) {
    Frm_Backup window(program, "NONE.INI", std::make_unique<zip::PKZIP>(program.machine));
    ExpectSeen(
        window,
        {{"Lbl_File", "Verdana"}, {"Lbl_JobProgress", "Verdana"}, {"Lbl_Folder", "Verdana"}});
}

TEST_F(RealDialogs, RestoreRun) {
    Frm_Restore window(program, restore_tab.Controls(),
                       std::make_unique<zip::PKUNZIP>(program.machine));
    ExpectSeen(window);
}

TEST_F(RealDialogs, LongestTextsOfARunFitTheirLabels) {
    Frm_Backup backup(program, "NONE.INI", std::make_unique<zip::PKZIP>(program.machine));
    Frm_Restore restore(program, restore_tab.Controls(),
                        std::make_unique<zip::PKUNZIP>(program.machine));
    for (ProgressWindow* const window :
         {static_cast<ProgressWindow*>(&backup), static_cast<ProgressWindow*>(&restore)}) {
        program.desktop.Load(*window);
        for (const int dpi : {96, 144, 192}) {
            ChangeDpi(TopOf(*window), dpi);
            ExpectFits(window->Lbl_Figures,
                       L"116,909 of 120,012 files, 1,023 MB of 1,023 GB, 1,023 KB/s, "
                       L"12 h 20 min left");
            ExpectFits(window->Lbl_LeftOut,
                       L"12,345 files left out: mmm and nn...wwwwww.docx, "
                       L"mmm and nn...wwwwww.docx, mmm and nn...wwwwww.docx and 12,342 more. "
                       L"See the Log tab.");
        }
        program.desktop.Unload(*window);
    }
}

TEST_F(RealDialogs, WhatARunLeavesOutIsInBoldLetters) {
    Frm_Backup window(program, "NONE.INI", std::make_unique<zip::PKZIP>(program.machine));
    program.desktop.Load(window);
    EXPECT_EQ(FW_BOLD, WeightOf(window.Lbl_LeftOut));
    EXPECT_EQ(FW_NORMAL, WeightOf(window.Lbl_Figures));
    program.desktop.Unload(window);
}

TEST_F(RealDialogs, BackupDestination) {
    Frm_BackupWhere window(program, selected.Controls());
    ExpectSeen(window);
}

TEST_F(RealDialogs, RestoreDestination) {
    Frm_RestoreWhere window(program, restore_tab.Fld_RestoreTo);
    ExpectSeen(window);
}

TEST_F(RealDialogs, BackupOptions) {
    Frm_BackupOptions window(program, selected.Controls());
    ExpectSeen(window);
}

TEST_F(RealDialogs, FileDialogTakesOnlyWhatIsThereAndLeavesTheCurrentFolder) {
    constexpr DWORD kExplorerFileAndPathMustExistNoChangeOfFolder = 530440;
    file_dialog.chosen = L"C:\\Sets\\b.zip";
    EXPECT_EQ("C:\\Sets\\b.zip",
              program.desktop.OpenFile("Select a Restore File", "Restore Files (*.zip)|*.zip",
                                       "C:\\Sets\\a.zip"));
    EXPECT_EQ(kExplorerFileAndPathMustExistNoChangeOfFolder, file_dialog.flags);
    EXPECT_EQ(L"Select a Restore File", file_dialog.title);
    EXPECT_EQ(std::wstring(L"Restore Files (*.zip)\0*.zip\0", 28), file_dialog.filter);
    EXPECT_EQ(L"C:\\Sets\\a.zip", file_dialog.start);
}

TEST_F(RealDialogs, CancelledFileDialogChoosesNothing) {
    file_dialog.chosen.clear();
    EXPECT_EQ("", program.desktop.OpenFile("Title", "All (*.*)|*.*", "C:\\Sets\\a.zip"));
}

}  // namespace

}  // namespace vantrel::test

// What calls of the system's dialog go through; this one stands in for that of its library.
extern "C" {
extern BOOL(WINAPI* const __imp_GetOpenFileNameW)(OPENFILENAMEW*);
BOOL(WINAPI* const __imp_GetOpenFileNameW)(OPENFILENAMEW*) = vantrel::test::ShowFileDialog;
}
