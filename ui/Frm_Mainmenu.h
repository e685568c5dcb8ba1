// The main window: six tabs, a status bar, three menus. It owns the controls, remembers the
// selected set between runs and writes the exit record.
#pragma once

#include "forms/controls.h"
#include "forms/form.h"
#include "ui/about_tab.h"
#include "ui/backup_tab.h"
#include "ui/edit_tab.h"
#include "ui/log_tab.h"
#include "ui/main_status.h"
#include "ui/restore_tab.h"
#include "ui/secure_tab.h"

namespace vantrel {

class Frm_Mainmenu : public forms::Form {
  public:
    explicit Frm_Mainmenu(forms::Program& program);

    forms::Tabs TAB_Backup;
    BackupTab Backup;
    RestoreTab Restore;
    EditTab Edit;
    LogTab Log;
    SecureTab Secure;
    AboutTab About;
    forms::StatusBar Sta_Mainmenu;
    forms::MenuItem Menu_File;
    forms::MenuItem Menu_File_Exit;
    forms::MenuItem Menu_Options;
    forms::MenuItem Menu_Options_Delete;
    forms::MenuItem Menu_Secure;
    forms::MenuItem Menu_Secure_Add;
    forms::MenuItem Menu_Secure_Delete;

    void Form_Load() override;
    void Form_Activate() override;
    void Form_QueryUnload(forms::UnloadMode mode) override;
    void AfterEvent() override { ShowStatus(); }

    void Cmd_Exit_Click();
    void Menu_File_Exit_Click();
    void TAB_Backup_Click(int previous);
    void Fil_INI_MouseDown(int button);

  private:
    void FillSetLists();
    void SelectRememberedSet();
    void StoreSelection();
    MainStatus Status() const;
    void ShowStatus();

    bool was_active_ = false;
    NumberFormat numbers_;  // as the user wrote numbers when the window was loaded
};

}  // namespace vantrel
