// Saving backup sets, each way that the windows have, over a disk on which everything fails.
#include <gtest/gtest.h>

#include "backup/Frm_BackupOptions.h"
#include "backup/Frm_BackupWhere.h"
#include "tests/faults/fault_sweep.h"
#include "tests/faults/wholeness.h"

namespace vantrel::test {
namespace {

constexpr const char* kOtherSet = "C:\\Vantrel\\DAILY.INI";

void Arrange(Computer& computer) {
    computer.Furnish();
    computer.MakeFolders("C:\\Other");
    computer.Put(kOtherSet, SetText("DAILY", "C:\\BACKUPS\\"));
    computer.before = computer.Below("C:");
    computer.Start();
    computer.window().Backup.Cmb_BackupSet.SetText("WEEKLY.INI");
    computer.window().Backup.Cmd_Change.UserPress();
    computer.desktop.boxes.clear();
}

std::string Replaced(std::string text, const std::string& old_part, const std::string& new_part) {
    const std::size_t at = text.find(old_part);
    EXPECT_NE(at, std::string::npos) << old_part;
    return text.replace(at, old_part.size(), new_part);
}

// The set that is saved holds its old text or one of the new ones, the last of which is what is
// wanted; nothing else has changed. `may_be_silent`: a profile write reports no failure.
auto JudgeSet(const std::string& path, const std::vector<std::string>& new_texts,
              bool may_be_silent) {
    return [=](Computer& computer, bool& reached) -> std::string {
        std::vector<std::string> others = {kListPath, kSetPath, kOtherSet, "C:\\Data\\a.txt"};
        std::erase(others, path);
        std::vector<std::string> texts = new_texts;
        texts.insert(texts.begin(), computer.before[path]);
        reached = computer.Content(path) == new_texts.back();
        const bool saved = computer.Content(path) != computer.before[path];
        const std::string lost = FirstOf({OneOf(computer, path, texts), Untouched(computer, others),
                                          LogWhole(computer, computer.before[kLogPath])});
        if (!lost.empty()) {
            return lost;
        }
        if (!saved && !may_be_silent && !IsReported(computer, computer.before[kLogPath])) {
            return "it was not saved, unreported";
        }
        return "";
    };
}

void CloseWhatIsLeft(Computer& computer) {
    computer.desktop.idle.push_back(
        [&computer] { computer.desktop.Unload(*computer.desktop.Front()); });
}

// --- the editor ---

void OpenEditor(Computer& computer) {
    Arrange(computer);
    auto& window = computer.window();
    window.TAB_Backup.SetTab(2);
    for (int i = 0; i < window.Edit.Fil_INI.Count(); ++i) {
        if (window.Edit.Fil_INI.Item(i) == "WEEKLY.INI") {
            window.Edit.Fil_INI.SetIndex(i);
        }
    }
    const std::string text = window.Edit.Fld_INI.Text();
    window.Edit.Fld_INI.UserType(Replaced(text, "BackupFileName=WEEKLY", "BackupFileName=Monthly"));
}

void SaveInEditor(Computer& computer) {
    const EditTab& edit = computer.window().Edit;
    computer.window().Edit.Cmd_Save.UserPress();
    if (computer.Content(kSetPath) == computer.before[kSetPath]) {
        EXPECT_TRUE(edit.Cmd_Save.Enabled());
        EXPECT_FALSE(edit.SaveAccepted);
    }
}

std::vector<std::string> EditedTexts() {
    std::string typed = SetText("Monthly", "C:\\BACKUPS\\");
    typed.erase(typed.size() - 2);
    return {typed + "\r\n", SetText("MONTHLY", "C:\\BACKUPS\\")};
}

TEST(Faults, SetSavedInTheEditor) {
    ExpectNothingLost({.name = "Set saved in the editor",
                       .arrange = OpenEditor,
                       .act = SaveInEditor,
                       .judge = JudgeSet(kSetPath, EditedTexts(), false)});
}

// What a refused save left behind must not get into the next one.
TEST(Faults, SetSavedInTheEditorWithAScratchFileLeft) {
    ExpectNothingLost({.name = "The same, a scratch file left behind",
                       .arrange =
                           [](Computer& computer) {
                               computer.Put("C:\\Vantrel\\Temp.INI",
                                            SetText("LEFT", "C:\\ELSEWHERE\\"));
                               OpenEditor(computer);
                           },
                       .act = SaveInEditor,
                       .judge = JudgeSet(kSetPath, EditedTexts(), false)});
}

// --- New Backup ---

std::string TemplateText() {
    std::string text = Replaced(SetText("MONTHLY", "C:\\", "ON"), "C:\\DATA\\*.*", "C:\\*.*");
    text = Replaced(text, "SubDirectories=ON", "SubDirectories=OFF");
    return Replaced(text, "TimeBackup=OFF", "TimeBackup=ON");
}

void PressNewBackup(Computer& computer) {
    computer.desktop.inputs = {"Monthly"};
    computer.window().Backup.Cmd_AddNew.UserPress();
}

TEST(Faults, NewBackup) {
    ExpectNothingLost({.name = "New Backup",
                       .arrange = Arrange,
                       .act = PressNewBackup,
                       .judge = JudgeSet("C:\\Vantrel\\Monthly.INI", {TemplateText()}, false)});
}

// A set that no list shows: every way of overlooking it is tried.
TEST(Faults, NewBackupNeverReplacesAHiddenSet) {
    ExpectNothingLost(
        {.name = "New Backup, the name taken by a hidden set",
         .arrange =
             [](Computer& computer) {
                 computer.Put("C:\\Vantrel\\Monthly.INI", SetText("KEPT", "C:\\BACKUPS\\"));
                 computer.disk.SetAttributes("C:\\Vantrel\\Monthly.INI",
                                             platform::attribute::kHidden);
                 Arrange(computer);
             },
         .act = PressNewBackup,
         .judge =
             [](Computer& computer, bool& reached) {
                 reached = true;
                 return FirstOf({Untouched(computer, {"C:\\Vantrel\\Monthly.INI", kSetPath,
                                                      kOtherSet, kListPath}),
                                 LogWhole(computer, computer.before[kLogPath])});
             }});
}

// --- the dialogs ---

void SaveOptions(Computer& computer) {
    computer.desktop.idle.push_back([&computer] {
        auto* const dialog = dynamic_cast<Frm_BackupOptions*>(computer.desktop.Front());
        ASSERT_NE(dialog, nullptr);
        dialog->Chk_TimeBackup.SetChecked(true);
        dialog->Chk_BackupSubDirectories.SetChecked(false);
        dialog->Fld_BackupFile.SetText("*.txt");
        dialog->Fld_BackupFileName.SetText("Monthly");
        dialog->Cmd_Ok.UserPress();
    });
    CloseWhatIsLeft(computer);
    computer.window().Backup.Cmd_Options[0].UserPress();
}

std::string OptionsText() {
    std::string text = SetText("MONTHLY", "C:\\BACKUPS\\");
    text = Replaced(text, "*.*", "*.TXT");
    text = Replaced(text, "SubDirectories=ON", "SubDirectories=OFF");
    return Replaced(text, "TimeBackup=OFF", "TimeBackup=ON");
}

TEST(Faults, OptionsSaved) {
    ExpectNothingLost({.name = "Options saved",
                       .arrange = Arrange,
                       .act = SaveOptions,
                       .judge = JudgeSet(kSetPath, {OptionsText()}, true)});
}

void SaveDestination(Computer& computer) {
    computer.desktop.idle.push_back([&computer] {
        auto* const dialog = dynamic_cast<Frm_BackupWhere*>(computer.desktop.Front());
        ASSERT_NE(dialog, nullptr);
        dialog->Dir_DirList.SetPath("C:\\Other");
        dialog->Cmd_Ok.UserPress();
    });
    CloseWhatIsLeft(computer);
    computer.window().Backup.Cmd_Navigate.UserPress();
}

TEST(Faults, DestinationSaved) {
    ExpectNothingLost({.name = "Destination saved",
                       .arrange = Arrange,
                       .act = SaveDestination,
                       .judge = JudgeSet(kSetPath, {SetText("WEEKLY", "C:\\OTHER\\")}, true)});
}

// Two sets are selected one after the other: what one shows must not get into the other.
TEST(Faults, SetsSelected) {
    ExpectNothingLost({.name = "Sets selected",
                       .arrange = Arrange,
                       .act =
                           [](Computer& computer) {
                               auto& sets = computer.window().Backup.Cmb_BackupSet;
                               sets.SetText("DAILY.INI");
                               computer.window().TAB_Backup.SetTab(1);
                               computer.window().TAB_Backup.SetTab(0);
                               sets.SetText("WEEKLY.INI");
                           },
                       .judge =
                           [](Computer& computer, bool& reached) {
                               reached = true;
                               return FirstOf(
                                   {Untouched(computer, {kSetPath, kOtherSet, kListPath}),
                                    LogWhole(computer, computer.before[kLogPath])});
                           }});
}

}  // namespace
}  // namespace vantrel::test
