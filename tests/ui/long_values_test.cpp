// Values that cannot be read back because they are too long: in the lists of the Backup tab and in
// the editor.
#include <tuple>

#include "tests/support/matchers.h"
#include "tests/ui/editor_fixture.h"

namespace vantrel::test {
namespace {

// --- the Backup tab ---

class LongSources : public EditorFixture {
  protected:
    void Select(const std::string& name) { Backup().Cmb_BackupSet.SetText(name); }
    static std::string LongFolder(std::size_t bytes) {
        const std::string parent = "C:\\" + std::string(120, 'A');
        return parent + "\\" + std::string(bytes - parent.size() - 1, 'B');
    }
};

TEST_F(LongSources, ChosenFolderWhoseSourceIsTooLongIsRefusedAndNotStored) {
    const std::string fits = LongFolder(250);  // with "\*.*" 254 bytes
    const std::string too_long = LongFolder(251);
    machine.MakeFolders(fits);
    machine.MakeFolders(too_long);
    PutSet("DAILY.INI", {});
    LoadWindow();
    Select("DAILY.INI");
    Backup().Cmd_Change.UserPress();
    Backup().Dir_DirList.SetPath(fits);
    EXPECT_EQ(StoredSource("DAILY.INI"), fits + "\\*.*");
    Backup().Dir_DirList.SetPath(too_long);
    ExpectBox("Unable to use the folder " + too_long +
                  ".\r\nIts path is longer than a Backup Set can store.",
              forms::Icon::kExclamation, "Backup");
    EXPECT_EQ(StoredSource("DAILY.INI"), fits + "\\*.*");
    EXPECT_EQ(Backup().Dir_DirList.Path(), fits);
}

TEST_F(LongSources, AreShownAsReadAndNeverWrittenBack) {
    const std::string cut = LongFolder(200);
    machine.MakeFolders(cut);
    const std::string source = cut + "\\" + std::string(100, 'D') + "\\*.*";
    PutSet("DAILY.INI", {.files = source});
    LoadWindow();
    Select("DAILY.INI");
    window->TAB_Backup.SetTab(1);
    window->TAB_Backup.SetTab(0);
    EXPECT_EQ(Backup().Dir_DirList.Path(), cut);
    EXPECT_EQ(Backup().Lbl_FilestoBackup.Caption(), std::string(53, 'D'));
    EXPECT_EQ(machine.Content(PathOf("DAILY.INI")), SetText({.files = source}));
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(LongSources, CutMaskIsNotWrittenIntoTheSetThatIsSelectedNext) {
    machine.MakeFolders("C:\\Notes");
    PutSet("DAILY.INI", {.files = "C:\\Data\\*." + std::string(300, 'D')});
    PutSet("NOTES.INI", {.files = "C:\\Notes\\*.TXT"});
    LoadWindow();
    Select("DAILY.INI");
    Select("NOTES.INI");
    EXPECT_EQ(StoredSource("NOTES.INI"), "C:\\Notes\\*.TXT");
    EXPECT_EQ(Backup().Dir_DirList.Path(), "C:\\Notes");
    EXPECT_EQ(Backup().Lbl_FilestoBackup.Caption(), "*.TXT");
}

TEST_F(LongSources, MaskShownBeforeThatMakesTheNextSourceTooLongLeavesTheNextSetAsItIs) {
    const std::string long_folder = LongFolder(240);
    machine.MakeFolders(long_folder);
    PutSet("DAILY.INI", {.files = "C:\\Data\\" + std::string(20, 'D') + ".TXT"});
    PutSet("NOTES.INI", {.files = long_folder + "\\*.TXT"});
    LoadWindow();
    Select("DAILY.INI");
    Select("NOTES.INI");
    EXPECT_EQ(StoredSource("NOTES.INI"), long_folder + "\\*.TXT");
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

// --- the editor ---

struct TypedValue {
    std::string key, value;
    std::string reason;  // "" where the text is saved
};

class LongValuesInTheEditor : public EditorFixture,
                              public ::testing::WithParamInterface<TypedValue> {};

std::string WithValue(const std::string& key, const std::string& value) {
    std::string text =
        "[BACKUP SOURCE]\r\nBackupFiles=C:\\DATA\\*.*\r\nBackupSubDirectories=ON\r\n"
        "[DESTINATION]\r\nBackupFileName=WEEKLY\r\nMultiVolumeBackup=OFF\r\n"
        "BackupToDrive=C:\\BACKUPS\\\r\nTimeBackup=ON\r\n"
        "[RESTORE SOURCE]\r\nRestoreFromDrive=\r\nRestoreFileName=\r\n"
        "[RESTORE DESTINATION]\r\nRestoreDestination=\r\n";
    const std::size_t at = text.find(key + "=") + key.size() + 1;
    return text.replace(at, text.find('\r', at) - at, value);
}

TEST_P(LongValuesInTheEditor, AreRefusedAndTheFileStays) {
    const TypedValue& row = GetParam();
    PutSet("DAILY.INI", {});
    const std::string text = WithValue(row.key, row.value);
    Open();
    PickAndType("DAILY.INI", text);
    Tab().Cmd_Save.UserPress();
    if (row.reason.empty()) {
        EXPECT_THAT(desktop.boxes, IsEmpty());
        EXPECT_THAT(machine.Content(PathOf("DAILY.INI")), HasSubstr(row.key + "=" + row.value));
        return;
    }
    ExpectBox("Unable to Save this file:\r\nReason: " + row.reason + ".", forms::Icon::kExclamation,
              "INI Validation");
    EXPECT_EQ(machine.Content(PathOf("DAILY.INI")), SetText({}));
    EXPECT_FALSE(Tab().SaveAccepted);
    EXPECT_TRUE(Tab().Cmd_Save.Enabled());
    EXPECT_EQ(Tab().Fld_INI.Text(), text);
}

std::vector<TypedValue> EditorRows() {
    std::vector<TypedValue> rows;
    const auto add = [&](const std::string& key, std::size_t bytes, const std::string& end,
                         const std::string& reason) {
        rows.push_back({key, "C:\\" + std::string(bytes - 3 - end.size(), 'X') + end, reason});
    };
    const std::string too_long = " is longer than 254 bytes";
    const std::string dated = "BackupToDrive with the name of a dated folder" + too_long;
    add("BackupFiles", 254, "\\*.*", "");
    add("BackupToDrive", 238, "\\", "");
    add("BackupToDrive", 237, "", "");
    add("BackupToDrive", 238, "", dated);  // a backslash is added
    add("BackupToDrive", 239, "\\", dated);
    add("BackupFileName", 250, "", "");
    add("BackupFileName", 251, "", "BackupFileName with .zip" + too_long);
    add("RestoreFromDrive", 254, "\\", "");
    add("RestoreFromDrive", 254, "", "RestoreFromDrive" + too_long);
    add("RestoreFileName", 254, "", "");
    add("RestoreDestination", 254, "", "");
    for (const std::string key : {"BackupFiles", "BackupToDrive", "BackupFileName",
                                  "RestoreFromDrive", "RestoreFileName", "RestoreDestination"}) {
        for (const std::size_t bytes : {255u, 300u, 5000u}) {
            add(key, bytes, "\\", key + too_long);
        }
    }
    return rows;
}

INSTANTIATE_TEST_SUITE_P(EveryKey, LongValuesInTheEditor, ::testing::ValuesIn(EditorRows()));

}  // namespace
}  // namespace vantrel::test
