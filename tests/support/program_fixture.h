// A program with nothing in it: a machine, a desktop, the globals as start-up sets them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/text_file.h"
#include "tests/support/scripted_desktop.h"
#include "tests/support/test_machine.h"

namespace vantrel::test {

class ProgramFixture : public ::testing::Test {
  protected:
    ProgramFixture() {
        program.globals.LogFilePath = "C:\\Vantrel\\Vantrel.Log";
        program.globals.CrLf = "\r\n";
    }

    void Unattended(const std::string& command_line) {
        machine.process.command_line = command_line;
    }

    // A set file with these values; the archive goes to C:\Backups, the source is C:\Data.
    struct SetValues {
        std::string files = "C:\\Data\\*.*";
        std::string sub_directories = "ON";
        std::string name = "WEEKLY";
        std::string multi_volume = "OFF";
        std::string to_drive = "C:\\Backups\\";
        std::string time = "OFF";
    };
    static std::string SetText(const SetValues& set) {
        return "[BACKUP SOURCE]\r\nBackupFiles=" + set.files +
               "\r\nBackupSubDirectories=" + set.sub_directories +
               "\r\n\r\n[DESTINATION]\r\nBackupFileName=" + set.name +
               "\r\nMultiVolumeBackup=" + set.multi_volume + "\r\nBackupToDrive=" + set.to_drive +
               "\r\nTimeBackup=" + set.time +
               "\r\n\r\n[RESTORE SOURCE]\r\nRestoreFromDrive=\r\nRestoreFileName=\r\n\r\n"
               "[RESTORE DESTINATION]\r\nRestoreDestination=\r\n";
    }
    void PutSet(const std::string& name, const SetValues& set) {
        machine.PutFile("C:\\Vantrel\\" + name, SetText(set));
    }
    void MakeSourceAndDestination() {
        machine.PutFile("C:\\Data\\a.txt", "alpha");
        machine.PutFile("C:\\Data\\Sub\\b.txt", "beta");
        machine.MakeFolders("C:\\Backups");
    }

    // `count` boxes were shown; the last one is this.
    void ExpectBox(const std::string& text, forms::Icon icon, const std::string& title,
                   std::size_t count = 1) {
        ASSERT_EQ(desktop.boxes.size(), count);
        EXPECT_EQ(desktop.boxes.back().text, text);
        EXPECT_EQ(desktop.boxes.back().icon, icon);
        EXPECT_EQ(desktop.boxes.back().title, title);
    }
    // The same for a box about a trapped run-time error.
    void ExpectError(const std::string& description, std::size_t count = 1) {
        ExpectBox(description, forms::Icon::kCritical, "Error", count);
    }

    // Records of the log without its header and without the 20 characters of the stamp.
    std::vector<std::string> LogRecords() {
        std::vector<std::string> records;
        if (!machine.Exists("C:\\Vantrel\\Vantrel.Log")) {
            return records;
        }
        const auto lines = platform::SplitLines(machine.Content("C:\\Vantrel\\Vantrel.Log"));
        for (std::size_t i = kHeaderLines; i < lines.size(); ++i) {
            records.push_back(lines[i].size() > kStamp ? lines[i].substr(kStamp) : lines[i]);
        }
        return records;
    }

    TestMachine machine;
    ScriptedDesktop desktop;
    forms::Program program{machine.machine(), desktop};

  private:
    static constexpr std::size_t kHeaderLines = 12;
    static constexpr std::size_t kStamp = 20;
};

}  // namespace vantrel::test
