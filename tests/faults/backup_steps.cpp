#include "tests/faults/backup_steps.h"

#include <gtest/gtest.h>

#include "backup/Frm_Backup.h"

namespace vantrel::test {

void FurnishForBackup(Computer& computer) {
    computer.Furnish();
    computer.Put(kArchivePath, kEarlierArchive);
    computer.before = computer.Below("C:");
}

void CloseWhenOver(Computer& computer) {
    computer.desktop.idle.push_back([&computer] {
        auto* const window = dynamic_cast<Frm_Backup*>(computer.desktop.Front());
        ASSERT_NE(window, nullptr);
        computer.outcome = window->Lbl_BackupPath.Caption();
        window->Cmd_Ok.UserPress();
    });
}

std::string SetAfterBackup(const std::string& destination, const std::string& multi_volume) {
    std::string text = SetText("WEEKLY", destination, multi_volume);
    text.replace(text.find("FromDrive=") + 10, 0, destination);
    return text.replace(text.find("FileName=\r\n\r\n[RESTORE D") + 9, 0, "WEEKLY.zip");
}

}  // namespace vantrel::test
