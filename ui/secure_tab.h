// The Secure Data tab: the folders of a drive, and which of them are protected.
#pragma once

#include <array>
#include <string>

#include "forms/controls.h"
#include "forms/file_lists.h"
#include "forms/form.h"
#include "forms/lists.h"

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

    // The tab is entered: makes sure that there is a list, and loads the application's drive into
    // an empty tree. Errors are shown.
    void Entered();
    // Loads the chosen drive's folders; an empty drive leaves an empty tree. Errors are shown.
    void Dri_SecureMode_Change();
    void TV_SecureMode_MouseDown(int button);
    // Both work on the selected node, wherever the mouse points. They trap nothing.
    void Menu_Secure_Add_Click();
    void Menu_Secure_Delete_Click();

  private:
    void LoadDrive();
    // Whether there was none.
    bool CreateMissingList();
    bool Refused(const std::string& folder);
    void Tell(const std::string& text);

    forms::Form& window_;
    SecureMenu menu_;
};

}  // namespace vantrel
