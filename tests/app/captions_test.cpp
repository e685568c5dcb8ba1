// Every control of the main window and of the splash, with what is written on it and what it says
// when the pointer rests on it, before anything has been loaded.

#include "app/Frm_Splash.h"
#include "common/product.h"
#include "tests/app/caption_table.h"
#include "tests/support/matchers.h"
#include "tests/support/program_fixture.h"
#include "ui/Frm_Mainmenu.h"

namespace vantrel::test {
namespace {

class Captions : public ProgramFixture {};

const std::vector<Row> kMainWindow = {
    {"TAB_Backup", "", "Select Different Options"},

    {"Fra_Backup"},
    {"Img_Set"},
    {"Lbl_RestoreSet", "&Backup Set"},
    {"Cmb_BackupSet", "", "Select an Existing Backup Set"},
    {"Img_What"},
    {"Dri_DriveList", "", "Select the Drive that you wish to Backup"},
    {"Dir_DirList", "", "Select a Folder that you wish to Backup"},
    {"Img_FilesToBackup"},
    {"Lbl_BackupSet_0", "Files to Backup?"},
    {"Lbl_BackupSet_1", "Backup File Name"},
    {"Lbl_BackupSet_2", "Backup Options"},
    {"Lbl_FilestoBackup", "", "Displays the File Types that you wish to Backup"},
    {"Img_BackupFileName"},
    {"Lbl_BackupFileName", "", "The Name of the Backup File"},
    {"Img_Where"},
    {"Fld_BackupWhere", "", "Location of the Backup File"},
    {"Cmd_Navigate", "..."},
    {"Fld_BackupOptions", "", "Displays the Backup Options"},
    {"Cmd_Options_0", "...", "Edit Options"},
    {"Cmd_Options_1", "...", "Edit Options"},
    {"Cmd_Options_2", "...", "Edit Options"},
    {"Lin_Mainmenu"},
    {"Cmd_Change", "&Change Settings", "Modify Backup What/Where/Options Settings"},
    {"Cmd_AddNew", "New Backup", "Add a New Backup Configuration File"},
    {"Cmd_Backup", "&Backup Now", "Start the Backup Now!"},
    {"Cmd_Exit_0", "&Exit", "Exit this Product"},

    {"Fra_RestoreFull"},
    {"Lbl_RestoreFile", "&What to Restore?"},
    {"Cmb_RestoreFile"},
    {"Fld_RestoreFile"},
    {"Cmd_RestoreFile", "...", "Browse for a Zip File to Restore"},
    {"Lbl_RestoreTo", "W&here to Restore To?"},
    {"Fld_RestoreTo"},
    {"Cmd_RestoreTo", "..."},
    {"TV_Restore"},
    {"SSP_TotalFiles", "", "Total Number of Files found in Restore File"},
    {"Lbl_NoOfFiles", "No. Of Files"},
    {"Fld_Total", "", "Number of Files found in the Restore File"},
    {"Cmd_Restore", "&Restore Now"},
    {"Cmd_Exit_1", "&Exit"},

    {"Fra_INIFileList"},
    {"Lbl_INIEdit", "INI File List"},
    {"Fil_INI", "", "Selection of Existing Configuration Files"},
    {"Cmd_INIRefresh", "&Refresh", "Refresh the List of INI Files"},
    {"Fra_INIEdit"},
    {"Lbl_INIContents", "INI File Contents"},
    {"Fld_INI", "", "Contents of the Configuration File"},
    {"Cmd_Save", "&Save", "Save any Changes you have made to the Configuration File"},

    {"Fra_Log"},
    {"Fld_Log"},
    {"Lbl_LogHint", "The Vantrel Log File is being limited to a File Size of 50K."},
    {"Cmd_Refresh", "&Refresh", "Refresh the Log File in the View Window"},
    {"Cmd_Email", "&E-Mail", "E-Mail the LogFile to Corvane"},

    {"Fra_SecureData_0", "Secure Data"},
    {"Fra_SecureData_1"},
    {"Dri_SecureMode"},
    {"TV_SecureMode"},
    {"SSP_PleaseWait", "Please Wait..."},
    {"SSP_ProgressSecure", "Loading Folder Structure"},
    {"Fld_SecureData"},

    {"Fra_Logo"},
    {"Img_Logo"},
    {"Lbl_ProductName", "Vantrel"},
    {"Lbl_CompanyProduct", "Corvane Limited "},
    {"Lbl_Description", "Backup Utility"},
    {"Fra_Version", "Product Information"},
    {"Label1", "Version"},
    {"Fld_Version"},
    {"Lbl_Build", "Build No."},
    {"Fld_Build"},
    {"Fra_About", "Further Information"},
    {"Lbl_About", "Distribution and Purchasing Information can be obtained from;"},
    {"Lbl_CompanyName", "Corvane Limited"},
    {"Lbl_Who", "The Manager"},
    {"Lbl_Address_0", product::kAddressLine1},
    {"Lbl_Address_1", product::kAddressLine2},
    {"Lbl_WebAddress", product::kWebAddress, "Connect to Web Address"},
    {"Cmd_ContactUs", "&Contact Us", "Send EMail to Corvane Limited"},
    {"Tim_Flash"},
    {"Fra_Warning"},
    {"Lbl_Warning", product::kWarningText},

    {"Sta_Mainmenu"},
    {"Menu_File", "&File"},
    {"Menu_File_Exit", "E&xit"},
    {"Menu_Options", "&Options"},
    {"Menu_Options_Delete", "&Delete Configuration File"},
    {"Menu_Secure", "&Secure"},
    {"Menu_Secure_Add", "&Add Protected Item"},
    {"Menu_Secure_Delete", "&Delete Protected Item"},
};

const std::vector<Row> kSplash = {
    {"Img_Logo"},
    {"Lbl_ProductName", "Vantrel"},
    {"Lbl_Description", "Backup Utility"},
    {"Lbl_Version", "Version 3.0.0"},
    {"Lbl_Platform", "for Windows 95/98/NT"},
    {"Lbl_CompanyProduct", "Corvane Limited "},
    {"Lbl_Copyright", product::kNoticeLine},
    {"Lbl_Warning", product::kSplashWarning},
    {"Tim_Delay"},
};

TEST_F(Captions, MainWindowsControlsSayExactlyThis) {
    const Frm_Mainmenu window(program);
    EXPECT_THAT(RowsOf(window), ElementsAreArray(kMainWindow));
}

TEST_F(Captions, SixTabsFromTheLeft) {
    const Frm_Mainmenu window(program);
    EXPECT_THAT(window.TAB_Backup.Captions(),
                ElementsAreArray({"Backup", "Restore", "INI Edit", "Log", "Secure Data", "About"}));
}

TEST_F(Captions, SplashsControlsSayExactlyThis) {
    const Frm_Splash splash(program);
    EXPECT_THAT(RowsOf(splash), ElementsAreArray(kSplash));
}

// An empty text would pass for the right one above.
TEST_F(Captions, NoConfiguredTextIsEmpty) {
    for (const char* text :
         {product::kNoticeLine, product::kSplashWarning, product::kWarningText,
          product::kAddressLine1, product::kAddressLine2, product::kWebAddress}) {
        EXPECT_STRNE(text, "");
    }
}

}  // namespace
}  // namespace vantrel::test
