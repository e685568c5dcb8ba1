// Shows one window of the program, filled with sample values, so that its looks can be judged:
//     VANTREL_GALLERY=tab0 view_gallery.exe
// tab0 to tab5, tab4wait, edit, backup, options, where, splash, input, box. Not a test: somebody
// has to look.
#include <cstdlib>
#include <string>

#include "app/Frm_Splash.h"
#include "backup/Frm_BackupOptions.h"
#include "backup/Frm_BackupWhere.h"
#include "common/error.h"
#include "forms/lists.h"
#include "platform/win32/win32_machine.h"
#include "ui/Frm_Mainmenu.h"
#include "views/win32/win32_desktop.h"

namespace vantrel {

namespace {

class SampleRun : public forms::Form {
  public:
    explicit SampleRun(forms::Program& shown_by) : Form(shown_by, "Frm_Backup") {
        SetCaption("Backing Up Files...");
        Cmd_Ok.SetVisible(false);
        PB_Folder.SetValue(62);
        PB_File.SetValue(35);
        for (int i = 0; i < 12; ++i) {
            Lst_Details.Add("Adding Documents/Letters/2026/November/letter " + std::to_string(i) +
                            " to somebody with a name that is rather long.txt");
        }
        Lst_Details.SetIndex(Lst_Details.Count() - 1);
        Cmd_Cancel.Click = [this] { Cmd_Cancel.SetEnabled(false); };
    }
    void Form_Load() override {
        Ani_File.Open(program().InApplicationFolder("System\\FileCopy.AVI"));
    }

  private:
    forms::Button Cmd_Ok{*this, "Cmd_Ok", "OK"};
    forms::Button Cmd_Cancel{*this, "Cmd_Cancel", "Cancel"};
    forms::Frame Fra_Details{*this, "Fra_Details", "Details"};
    forms::ListBox Lst_Details{*this, "Lst_Details"};
    forms::Frame Frame1{*this, "Frame1"};
    forms::Label Lbl_File{*this, "Lbl_File", "File Progress"};
    forms::Label Lbl_JobProgress{*this, "Lbl_JobProgress", "Overall Progress"};
    forms::Label Lbl_BackupPath{*this, "Lbl_BackupPath", "Please Wait...  Processing Files"};
    forms::Label Lbl_Folder{*this, "Lbl_Folder", "Status"};
    forms::Label Lbl_BackingUp{*this, "Lbl_BackingUp", "Backing Up Files......."};
    forms::Animation Ani_File{*this, "Ani_File"};
    forms::ProgressBar PB_Folder{*this, "PB_Folder"};
    forms::ProgressBar PB_File{*this, "PB_File"};
};

void Fill(Frm_Mainmenu& window) {
    BackupTab& backup = window.Backup;
    backup.Dir_DirList.SetPath("C:\\windows\\system32");
    backup.Lbl_FilestoBackup.SetCaption("*.*");
    backup.Lbl_BackupFileName.SetCaption("WEEKLY");
    backup.Fld_BackupWhere.SetCaption("E:\\Backups\\Documents & Letters\\Every Week\\Archive\\");
    backup.Fld_BackupOptions.SetCaption("SubDir=OFF, MultiVolume=OFF, Time=OFF");
    RestoreTab& restore = window.Restore;
    restore.Fld_RestoreFile.SetCaption("E:\\Backups\\20261115_130509\\Weekly.zip");
    restore.Fld_RestoreTo.SetCaption("C:\\Restored");
    for (int i = 1; i <= 20; ++i) {
        restore.TV_Restore.Add({.text = "Documents/Letters/letter " + std::to_string(i) + ".txt",
                                .tag = "",
                                .parent = 0,
                                .image = 0,
                                .selected_image = 0});
    }
    restore.SSP_TotalFiles.SetFloodPercent(40);
    restore.SSP_TotalFiles.SetCaption("40%");
    restore.Fld_Total.SetCaption("20");
    window.Edit.Fld_INI.SetText(
        ";---------------------------\r\n[BACKUP SOURCE]\r\n"
        "BackupFiles=C:\\DOCUMENTS\\*.*\r\nBackupSubDirectories=ON\r\n");
    std::string log;
    for (int i = 0; i < 60; ++i) {
        log += "15/11/2026 13:05:09 Starting Backup Weekly.INI\r\n";
    }
    window.Log.Fld_Log.SetText(log);
    window.Log.Lbl_LogHint.SetCaption(
        "The Vantrel Log File is being limited to a File Size of 50K.\r\n"
        "File Current Size is 29K");
    SecureTab& secure = window.Secure;
    const int root = secure.TV_SecureMode.Add({"Documents", "C:\\Documents", 0, 1, 2});
    secure.TV_SecureMode.Add({"Letters", "C:\\Documents\\Letters", root, 3, 3});
    for (const char* name : {"Music", "Pictures", "Program Files", "Windows"}) {
        secure.TV_SecureMode.Add({name, std::string("C:\\") + name, 0, 1, 2});
    }
    secure.Fld_SecureData.SetText(
        "When restoring files, the User MUST be sure that the Process will not overwrite the "
        "existing data and destroy updated information.\r\n\r\nThis function allows selected "
        "Directories (or Folders) to be 'Protected'.  What this means is a Restore process will "
        "NEVER overwrite anything in the Protected Directory.\r\n\r\nIf Vantrel detects that a "
        "'Protected' Directory is about to be overwritten, it renames the 'Protected' Directory "
        "and then allows the Restore Process to continue.");
    window.About.Fld_Version.SetCaption("3.0");
    window.About.Fld_Build.SetCaption("6");
    window.Menu_Secure_Delete.SetEnabled(false);
    window.Edit.Fil_INI.MouseDown = [&window](int) { window.Menu_Options.PopUp(); };
    secure.TV_SecureMode.MouseDown = [&window](int) { window.Menu_Secure.PopUp(); };
}

void Show(const std::string& what, forms::Program& program, Frm_Mainmenu& window) {
    forms::Desktop& desktop = program.desktop;
    if (what == "splash") {
        static Frm_Splash splash(program);
        desktop.Load(splash);
        for (int i = 0, top = 0; i < 63; ++i) {
            const int band = splash.Height() / 63;
            splash.DrawBox({0, top, splash.Width(), top + band, 0, 0, 255 - 4 * i});
            top += band;
        }
        return desktop.ShowModeless(splash);
    }
    desktop.ShowModeless(window);
    Fill(window);
    if (what.starts_with("tab")) {
        window.TAB_Backup.SetTab(what[3] - '0');
    }
    if (what == "tab4wait") {
        window.Secure.TV_SecureMode.SetVisible(false);
    }
    if (what == "tab4wait") {
        window.Secure.SSP_PleaseWait.SetVisible(true);
    }
    if (what == "tab4wait") {
        window.Secure.SSP_ProgressSecure.SetFloodPercent(55);
    }
    if (what == "edit") {
        window.Backup.SetEditMode(true);
    }
    desktop.DoEvents();
    if (what == "backup") {
        static SampleRun run(program);
        desktop.ShowModal(run);
    }
    BackupTab& tab = window.Backup;
    const BackupControls shown{tab.Cmb_BackupSet,      tab.Dir_DirList,     tab.Lbl_FilestoBackup,
                               tab.Lbl_BackupFileName, tab.Fld_BackupWhere, tab.Fld_BackupOptions};
    if (what == "options") {
        static Frm_BackupOptions options(program, shown);
        desktop.ShowModal(options);
    }
    if (what == "where") {
        window.Backup.Fld_BackupWhere.SetCaption("C:\\windows\\system32");
        static Frm_BackupWhere where(program, shown);
        desktop.ShowModal(where);
    }
    if (what == "input") {
        desktop.Input("Please enter the name of the Configuration File.", "New Configuration", "");
    }
    if (what == "box") {
        desktop.Show({.text = "Are you sure that you wish to start the backup now?",
                      .buttons = forms::Buttons::kYesNo,
                      .icon = forms::Icon::kNone,
                      .title = "",
                      .default_button = 2});
    }
}

}  // namespace

}  // namespace vantrel

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    using namespace vantrel;
    platform::Win32Machine machine;
    views::Win32Desktop desktop;
    desktop.on_unhandled = [&](const Error& error) {
        desktop.Show(
            {.text = error.source() + ": " + error.description(), .icon = forms::Icon::kCritical});
        std::exit(1);
    };
    forms::Program program{machine.machine(), desktop};
    program.globals.CrLf = "\r\n";
    program.globals.LogFilePath = program.InApplicationFolder("gallery.log");
    Frm_Mainmenu window(program);
    const char* what = std::getenv("VANTREL_GALLERY");
    desktop.RunGuarded([&] {
        Show(what ? what : "tab0", program, window);
        desktop.Run();
    });
    return 0;
}
