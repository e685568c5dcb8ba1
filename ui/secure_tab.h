// The Secure Data tab: the folders of a drive, and which of them are protected.
#pragma once

#include <array>
#include <string>

#include "forms/controls.h"
#include "forms/file_lists.h"
#include "forms/form.h"
#include "forms/lists.h"
#include "ui/main_status.h"

namespace vantrel {

// The pop-up menu of the folder tree.
struct SecureMenu {
    forms::MenuItem& Menu_Secure;
    forms::MenuItem& Menu_Secure_Add;
    forms::MenuItem& Menu_Secure_Delete;
};

struct SecureTab {
    // The menu may be made after the tab; it is touched in handlers only.
    SecureTab(forms::Form& window, const SecureMenu& menu);
    std::array<forms::Frame, 2> Fra_SecureData;
    forms::DriveList Dri_SecureMode;
    forms::Tree TV_SecureMode;
    forms::Panel SSP_PleaseWait;
    forms::Panel SSP_ProgressSecure;
    forms::TextBox Fld_SecureData;

    // Called when the tab is shown: creates a missing list and loads the application's drive into
    // an empty tree. Errors are shown.
    void OnShown();
    // Loads the chosen drive's folders; an empty drive leaves an empty tree. Errors are shown.
    void Dri_SecureMode_Change();
    void TV_SecureMode_MouseDown(int button);
    // Both act on the selected node, not on the node under the pointer. They trap no errors.
    void Menu_Secure_Add_Click();
    void Menu_Secure_Delete_Click();

    SecureStatus Status() const;
    // Called before a drive is read: no handler runs until that has ended. May be empty.
    forms::Event ReadingBegins;

  private:
    void LoadDrive();
    std::string Root() const;  // of the chosen drive
    // True when the list was missing and has been created.
    bool CreateMissingList();
    // Shows a message and returns false for a folder that cannot be protected.
    bool ValidateFolder(const std::string& folder);
    void ShowMessage(const std::string& text);

    forms::Form& window_;
    SecureMenu menu_;
    bool was_stopped_ = false;
};

}  // namespace vantrel
