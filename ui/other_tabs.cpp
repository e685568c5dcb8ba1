#include "ui/other_tabs.h"

#include "common/product.h"

namespace vantrel {

using std::chrono::milliseconds;

RestoreTab::RestoreTab(forms::Form& window)
    : Fra_RestoreFull(window, "Fra_RestoreFull"),
      Lbl_RestoreFile(window, "Lbl_RestoreFile", "&What to Restore?"),
      Cmb_RestoreFile(window, "Cmb_RestoreFile"),
      Fld_RestoreFile(window, "Fld_RestoreFile"),
      Cmd_RestoreFile(window, "Cmd_RestoreFile", "..."),
      Lbl_RestoreTo(window, "Lbl_RestoreTo", "W&here to Restore To?"),
      Fld_RestoreTo(window, "Fld_RestoreTo"),
      Cmd_RestoreTo(window, "Cmd_RestoreTo", "..."),
      TV_Restore(window, "TV_Restore"),
      SSP_TotalFiles(window, "SSP_TotalFiles"),
      Lbl_NoOfFiles(window, "Lbl_NoOfFiles", "No. Of Files"),
      Fld_Total(window, "Fld_Total"),
      Cmd_Restore(window, "Cmd_Restore", "&Restore Now"),
      Cmd_Exit(window, "Cmd_Exit_1", "&Exit"),
      PKUNZIP(window.program().machine),
      actions(window.program(), {Cmb_RestoreFile, Fld_RestoreFile, Fld_RestoreTo, TV_Restore,
                                 Fld_Total, SSP_TotalFiles, PKUNZIP}) {
    Cmb_RestoreFile.Click = [this] { actions.Cmb_RestoreFile_Click(); };
    Cmd_RestoreFile.Click = [this] { actions.Cmd_RestoreFile_Click(); };
    Cmd_RestoreTo.Click = [this] { actions.Cmd_RestoreTo_Click(); };
    Cmd_Restore.Click = [this] { actions.Cmd_Restore_Click(); };
    Cmd_RestoreFile.SetTooltip("Browse for a Zip File to Restore");
    SSP_TotalFiles.SetTooltip("Total Number of Files found in Restore File");
    Fld_Total.SetTooltip("Number of Files found in the Restore File");
}

EditTab::EditTab(forms::Form& window)
    : Fra_INIFileList(window, "Fra_INIFileList"),
      Lbl_INIEdit(window, "Lbl_INIEdit", "INI File List"),
      Fil_INI(window, "Fil_INI", "*.INI"),
      Cmd_INIRefresh(window, "Cmd_INIRefresh", "&Refresh"),
      Fra_INIEdit(window, "Fra_INIEdit"),
      Lbl_INIContents(window, "Lbl_INIContents", "INI File Contents"),
      Fld_INI(window, "Fld_INI", true),
      Cmd_Save(window, "Cmd_Save", "&Save") {
    Fil_INI.SetTooltip("Selection of Existing Configuration Files");
    Cmd_INIRefresh.SetTooltip("Refresh the List of INI Files");
    Fld_INI.SetTooltip("Contents of the Configuration File");
    Cmd_Save.SetTooltip("Save any Changes you have made to the Configuration File");
}

LogTab::LogTab(forms::Form& window)
    : Fra_Log(window, "Fra_Log"),
      Fld_Log(window, "Fld_Log", true, true),
      Lbl_LogHint(window, "Lbl_LogHint",
                  "The Vantrel Log File is being limited to a File Size of 50K."),
      Cmd_Refresh(window, "Cmd_Refresh", "&Refresh"),
      Cmd_Email(window, "Cmd_Email", "&E-Mail") {
    Cmd_Refresh.SetTooltip("Refresh the Log File in the View Window");
    Cmd_Email.SetTooltip("E-Mail the LogFile to Corvane");
}

SecureTab::SecureTab(forms::Form& window)
    : Fra_SecureData{{{window, "Fra_SecureData_0", "Secure Data"}, {window, "Fra_SecureData_1"}}},
      Dri_SecureMode(window, "Dri_SecureMode"),
      TV_SecureMode(window, "TV_SecureMode"),
      SSP_PleaseWait(window, "SSP_PleaseWait", "Please Wait..."),
      SSP_ProgressSecure(window, "SSP_ProgressSecure", "Loading Folder Structure"),
      Fld_SecureData(window, "Fld_SecureData", true, true) {}

AboutTab::AboutTab(forms::Form& window)
    : Fra_Logo(window, "Fra_Logo"),
      Img_Logo(window, "Img_Logo"),
      Lbl_ProductName(window, "Lbl_ProductName", product::kName),
      Lbl_CompanyProduct(window, "Lbl_CompanyProduct", "Corvane Limited "),
      Lbl_Description(window, "Lbl_Description", "Backup Utility"),
      Fra_Version(window, "Fra_Version", "Product Information"),
      Label1(window, "Label1", "Version"),
      Fld_Version(window, "Fld_Version"),
      Lbl_Build(window, "Lbl_Build", "Build No."),
      Fld_Build(window, "Fld_Build"),
      Fra_About(window, "Fra_About", "Further Information"),
      Lbl_About(window, "Lbl_About",
                "Distribution and Purchasing Information can be obtained from;"),
      Lbl_CompanyName(window, "Lbl_CompanyName", product::kCompany),
      Lbl_Who(window, "Lbl_Who", "The Manager"),
      Lbl_Address{{{window, "Lbl_Address_0", product::kAddressLine1},
                   {window, "Lbl_Address_1", product::kAddressLine2}}},
      Lbl_WebAddress(window, "Lbl_WebAddress", product::kWebAddress),
      Cmd_ContactUs(window, "Cmd_ContactUs", "&Contact Us"),
      Tim_Flash(window, "Tim_Flash", milliseconds(500)),
      Fra_Warning(window, "Fra_Warning"),
      Lbl_Warning(window, "Lbl_Warning", product::kWarningText) {
    Lbl_WebAddress.SetTooltip("Connect to Web Address");
    Cmd_ContactUs.SetTooltip("Send EMail to Corvane Limited");
}

}  // namespace vantrel
