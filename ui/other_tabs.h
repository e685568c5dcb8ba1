// The controls of the Restore, INI Edit, Log, Secure Data and About tabs, tab by tab.
#pragma once

#include <array>

#include "forms/controls.h"
#include "forms/file_lists.h"
#include "forms/form.h"
#include "forms/lists.h"
#include "forms/tree.h"
#include "restore/restore_actions.h"
#include "zip/pkunzip.h"

namespace vantrel {

struct RestoreTab {
    explicit RestoreTab(forms::Form& window);
    forms::Frame Fra_RestoreFull;
    forms::Label Lbl_RestoreFile;
    forms::ComboBox Cmb_RestoreFile;
    forms::Label Fld_RestoreFile;
    forms::Button Cmd_RestoreFile;
    forms::Label Lbl_RestoreTo;
    forms::Label Fld_RestoreTo;
    forms::Button Cmd_RestoreTo;
    forms::Tree TV_Restore;
    forms::Panel SSP_TotalFiles;
    forms::Label Lbl_NoOfFiles;
    forms::Label Fld_Total;
    forms::Button Cmd_Restore;
    forms::Button Cmd_Exit;
    zip::PKUNZIP PKUNZIP;  // lists archives
    RestoreActions actions;
};

struct EditTab {
    explicit EditTab(forms::Form& window);
    forms::Frame Fra_INIFileList;
    forms::Label Lbl_INIEdit;
    forms::FileList Fil_INI;
    forms::Button Cmd_INIRefresh;
    forms::Frame Fra_INIEdit;
    forms::Label Lbl_INIContents;
    forms::TextBox Fld_INI;
    forms::Button Cmd_Save;
};

struct LogTab {
    explicit LogTab(forms::Form& window);
    forms::Frame Fra_Log;
    forms::TextBox Fld_Log;
    forms::Label Lbl_LogHint;
    forms::Button Cmd_Refresh;
    forms::Button Cmd_Email;
};

struct SecureTab {
    explicit SecureTab(forms::Form& window);
    std::array<forms::Frame, 2> Fra_SecureData;
    forms::DriveList Dri_SecureMode;
    forms::Tree TV_SecureMode;
    forms::Panel SSP_PleaseWait;
    forms::Panel SSP_ProgressSecure;
    forms::TextBox Fld_SecureData;
};

struct AboutTab {
    explicit AboutTab(forms::Form& window);
    forms::Frame Fra_Logo;
    forms::Picture Img_Logo;
    forms::Label Lbl_ProductName;
    forms::Label Lbl_CompanyProduct;
    forms::Label Lbl_Description;
    forms::Frame Fra_Version;
    forms::Label Label1;
    forms::Label Fld_Version;
    forms::Label Lbl_Build;
    forms::Label Fld_Build;
    forms::Frame Fra_About;
    forms::Label Lbl_About;
    forms::Label Lbl_CompanyName;
    forms::Label Lbl_Who;
    std::array<forms::Label, 2> Lbl_Address;
    forms::Label Lbl_WebAddress;
    forms::Button Cmd_ContactUs;
    forms::Timer Tim_Flash;
    forms::Frame Fra_Warning;
    forms::Label Lbl_Warning;
};

}  // namespace vantrel
