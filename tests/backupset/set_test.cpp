#include <optional>
#include <utility>

#include "backupset/clsINI.h"
#include "common/error.h"
#include "common/product.h"
#include "tests/support/error_of.h"
#include "tests/support/program_fixture.h"

namespace vantrel {
namespace {

const std::string kFile = "C:\\Vantrel\\WEEKLY.INI";

class BackupSetFile : public test::ProgramFixture {
  protected:
    // Line `number`, from 1, of the file that Create_INI makes for `name`.
    std::string CreatedLine(const std::string& name, std::size_t number) {
        clsINI(program).Create_INI(name);
        return platform::SplitLines(machine.Content("C:\\Vantrel\\" + name)).at(number - 1);
    }
    std::string Confirmed(const std::string& text) {
        machine.PutFile(kFile, text);
        clsINI(program).ConfirmBackslash(kFile);
        return machine.Content(kFile);
    }
};

TEST_F(BackupSetFile, CreateWritesTheTemplateByteForByte) {
    clsINI(program).Create_INI("WEEKLY.INI");
    const std::string text =
        ";---------------------------\r\n"
        ";  Quennell Backup Utility  \r\n"
        ";        Version 3.0.6\r\n"
        ";      Copyright  1999      \r\n"
        ";---------------------------\r\n"
        "[BACKUP SOURCE]\r\n"
        "BackupFiles=C:\\*.*\r\n"
        "BackupSubDirectories=OFF\r\n"
        "\r\n"
        "[DESTINATION]\r\n"
        "BackupFileName=WEEKLY\r\n"
        "MultiVolumeBackup=ON\r\n"
        "BackupToDrive=C:\\\r\n"
        "TimeBackup=ON\r\n"
        "\r\n"
        "[RESTORE SOURCE]\r\n"
        "RestoreFromDrive=\r\n"
        "RestoreFileName=\r\n"
        "\r\n"
        "[RESTORE DESTINATION]\r\n"
        "RestoreDestination=\r\n";
    EXPECT_EQ(machine.Content(kFile), text + "\r\n");
    EXPECT_EQ(program.globals.TextBuffer, text);
}

TEST_F(BackupSetFile, CommentLinesKeepTheirWidth) {
    for (const std::size_t line : {1u, 2u, 4u, 5u}) {
        EXPECT_EQ(CreatedLine("WEEKLY.INI", line).size(), 28u) << line;
    }
    EXPECT_EQ(std::string(product::kNoticeWord).size(), 9u);
}

TEST_F(BackupSetFile, CreateUpperCasesNameAndDrive) {
    machine.process.application_folder = "c:\\vantrel";
    EXPECT_EQ(CreatedLine("m\xC3\xBCll.ini", 11), "BackupFileName=M\xDCLL");
    EXPECT_EQ(CreatedLine("weekly.ini", 7), "BackupFiles=C:\\*.*");
    EXPECT_EQ(CreatedLine("weekly.ini", 13), "BackupToDrive=C:\\");
}

TEST_F(BackupSetFile, NameWithoutExtensionLosesItsLastFourCharacters) {
    EXPECT_EQ(CreatedLine("WEEKLYSET", 11), "BackupFileName=WEEKL");
    EXPECT_EQ(CreatedLine("WEEK", 11), "BackupFileName=");
}

TEST_F(BackupSetFile, CreateOverwritesAnExistingSet) {
    machine.PutFile(kFile, std::string(5000, 'x'));
    EXPECT_EQ(CreatedLine("WEEKLY.INI", 1), ";---------------------------");
    EXPECT_LT(machine.Content(kFile).size(), 500u);
}

TEST_F(BackupSetFile, CreateReportsItsErrorsUnderItsLabel) {
    test::ExpectReported([&] { clsINI(program).Create_INI("INI"); }, "clsINI:Create_INI Method",
                         "Invalid procedure call or argument");
    test::ExpectReported([&] { clsINI(program).Create_INI("\xD0\x96.INI"); },
                         "clsINI:Create_INI Method", "Bad file name or number");
    EXPECT_TRUE(machine.Names("C:\\Vantrel").empty());
}

TEST_F(BackupSetFile, PartsReportTheirErrorsUnderTheirLabel) {
    struct NowhereProcess : test::TestProcess {
        std::string ApplicationFolder() override { RaiseError(error_number::kDeviceIo); }
    } nowhere;
    platform::Machine lost = test::With({.process = &nowhere}, machine.machine());
    forms::Program its_program{lost, desktop, program.globals};
    test::ExpectReported([&] { clsINI(its_program).Backup_Parts("A.TXT", clsINI::kDrive); },
                         "clsINI:Backup_Parts Method", "Device I/O error");
}

TEST_F(BackupSetFile, ValidationReportsItsErrorsUnderItsLabel) {
    desktop.on_box = [](const forms::Box&) { RaiseError(error_number::kOutOfMemory); };
    test::ExpectReported([&] { clsINI(program).Validate_OnSave(); },
                         "clsINI:Validate_OnSave Method", "Out of memory");
}

TEST_F(BackupSetFile, CreateOverAReadOnlySetFailsAndLeavesIt) {
    machine.PutFile(kFile, "old");
    machine.files().SetAttributes(kFile, platform::attribute::kReadOnly);
    test::ExpectReported([&] { clsINI(program).Create_INI("WEEKLY.INI"); },
                         "clsINI:Create_INI Method", "Permission denied");
    EXPECT_EQ(machine.Content(kFile), "old");
    EXPECT_EQ(machine.Names("C:\\Vantrel"), std::vector<std::string>{"WEEKLY.INI"});
}

TEST_F(BackupSetFile, ReadLoadsAllNineAsTheyStand) {
    machine.PutFile(kFile,
                    "[BACKUP SOURCE]\r\nBackupFiles=c:\\a\r\nBackupSubDirectories=on\r\n"
                    "[Destination]\r\nBackupFileName=b\r\nMultiVolumeBackup=Off\r\n"
                    "BackupToDrive=d:\r\nTimeBackup=yes\r\n[RESTORE SOURCE]\r\n"
                    "RestoreFromDrive=e:\r\nRestoreFileName=f.zip\r\n[RESTORE DESTINATION]\r\n"
                    "RestoreDestination=g:\\h\r\n");
    clsINI ini(program);
    ini.Read_INI(kFile);
    EXPECT_EQ(ini.BackupFiles(), "c:\\a");
    EXPECT_EQ(ini.BackupSubDirectories(), "on");
    EXPECT_EQ(ini.BackupFileName(), "b");
    EXPECT_EQ(ini.MultiVolumeBackup(), "Off");
    EXPECT_EQ(ini.BackupToDrive(), "d:");
    EXPECT_EQ(ini.TimeBackup(), "yes");
    EXPECT_EQ(ini.RestoreFromDrive(), "e:");
    EXPECT_EQ(ini.RestoreFileName(), "f.zip");
    EXPECT_EQ(ini.RestoreDestination(), "g:\\h");
}

TEST_F(BackupSetFile, ReadOfAMissingSetEmptiesEveryValue) {
    clsINI ini(program);
    ini.BackupFiles("left from before");
    ini.RestoreDestination("left from before");
    ini.Read_INI("C:\\Vantrel\\NONE.INI");
    EXPECT_EQ(ini.BackupFiles(), "");
    EXPECT_EQ(ini.RestoreDestination(), "");
}

TEST_F(BackupSetFile, ConfirmingAMissingSetMakesItOfEmptyValues) {
    clsINI(program).ConfirmBackslash(kFile);
    EXPECT_EQ(machine.Content(kFile),
              "[BACKUP SOURCE]\r\nBackupFiles=\r\nBackupSubDirectories=\r\n"
              "[Destination]\r\nBackupFileName=\r\nMultiVolumeBackup=\r\nBackupToDrive=\\\r\n"
              "TimeBackup=\r\n[RESTORE SOURCE]\r\nRestoreFromDrive=\r\nRestoreFileName=\r\n"
              "[RESTORE DESTINATION]\r\nRestoreDestination=\r\n");
}

TEST_F(BackupSetFile, HandWrittenDestinationSectionIsTheSame) {
    const std::string text = "[Destination]\r\nTimeBackup=on\r\nBackupToDrive=d:\r\n";
    const std::string after = Confirmed(text);
    EXPECT_NE(after.find("[Destination]\r\nTimeBackup=ON\r\nBackupToDrive=D:\\\r\n"),
              std::string::npos);
    EXPECT_EQ(after.find("[DESTINATION]"), std::string::npos);
}

TEST_F(BackupSetFile, ConfirmPutsAllNineInCapitals) {
    EXPECT_EQ(Confirmed("; Kept\r\n[BACKUP SOURCE]\r\nBackupFiles=c:\\a\\*.*\r\n"
                        "BackupSubDirectories=on\r\n\r\n[DESTINATION]\r\nBackupFileName=b\r\n"
                        "MultiVolumeBackup=off\r\nBackupToDrive=d:\\b\\\r\nTimeBackup=on\r\n"
                        "[RESTORE SOURCE]\r\nRestoreFromDrive=e:\\c\r\nRestoreFileName=f.zip\r\n"
                        "[RESTORE DESTINATION]\r\nRestoreDestination=g:\\h\r\n"),
              "; Kept\r\n[BACKUP SOURCE]\r\nBackupFiles=C:\\A\\*.*\r\n"
              "BackupSubDirectories=ON\r\n\r\n[DESTINATION]\r\nBackupFileName=B\r\n"
              "MultiVolumeBackup=OFF\r\nBackupToDrive=D:\\B\\\r\nTimeBackup=ON\r\n"
              "[RESTORE SOURCE]\r\nRestoreFromDrive=E:\\C\\\r\nRestoreFileName=F.ZIP\r\n"
              "[RESTORE DESTINATION]\r\nRestoreDestination=G:\\H\r\n");
}

TEST_F(BackupSetFile, ConfirmWritesABackslashAloneForAnEmptyDestination) {
    const std::string after = Confirmed("[DESTINATION]\r\nBackupToDrive=\r\n");
    EXPECT_NE(after.find("BackupToDrive=\\\r\n"), std::string::npos);
}

TEST_F(BackupSetFile, ConfirmLeavesAnEmptyRestoreSourceEmpty) {
    const std::string after = Confirmed("[RESTORE SOURCE]\r\nRestoreFromDrive=\r\n");
    EXPECT_NE(after.find("RestoreFromDrive=\r\n"), std::string::npos);
}

TEST_F(BackupSetFile, ConfirmGivesTheRestoreDestinationNoBackslash) {
    const std::string after = Confirmed("[RESTORE DESTINATION]\r\nRestoreDestination=c:\\x\r\n");
    EXPECT_NE(after.find("RestoreDestination=C:\\X\r\n"), std::string::npos);
}

TEST_F(BackupSetFile, ConfirmAddsMissingKeysUnderTheSectionNamesOfTheReader) {
    EXPECT_EQ(Confirmed(""),
              "[BACKUP SOURCE]\r\nBackupFiles=\r\nBackupSubDirectories=\r\n"
              "[Destination]\r\nBackupFileName=\r\nMultiVolumeBackup=\r\nBackupToDrive=\\\r\n"
              "TimeBackup=\r\n[RESTORE SOURCE]\r\nRestoreFromDrive=\r\nRestoreFileName=\r\n"
              "[RESTORE DESTINATION]\r\nRestoreDestination=\r\n");
}

class Validation : public test::ProgramFixture {
  protected:
    Validation() {
        ini.BackupFiles("C:\\*.*");
        ini.BackupSubDirectories("OFF");
        ini.BackupFileName("WEEKLY");
        ini.MultiVolumeBackup("ON");
        ini.BackupToDrive("C:\\");
        ini.TimeBackup("OFF");
    }
    // The reason that is shown, "" when the set is accepted.
    std::string Reason() {
        desktop.boxes.clear();
        const bool valid = ini.Validate_OnSave();
        EXPECT_EQ(desktop.boxes.size(), valid ? 0u : 1u);
        if (desktop.boxes.empty()) {
            return "";
        }
        const std::string start = "Unable to Save this file:\r\nReason: ";
        EXPECT_EQ(desktop.boxes[0].text.substr(0, start.size()), start);
        return desktop.boxes[0].text.substr(start.size());
    }
    clsINI ini{program};
};

TEST_F(Validation, CompleteSetIsAcceptedWithoutABox) {
    program.globals.MessageText = "left from before";
    EXPECT_EQ(Reason(), "");
    EXPECT_EQ(program.globals.MessageText, "");
}

TEST_F(Validation, RestoreKeysAreNotChecked) {
    ini.RestoreFromDrive("");
    ini.RestoreFileName("|");
    EXPECT_EQ(Reason(), "");
}

TEST_F(Validation, BoxHasItsTitleIconAndButton) {
    ini.BackupFiles("");
    EXPECT_FALSE(ini.Validate_OnSave());
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].title, "INI Validation");
    EXPECT_EQ(desktop.boxes[0].icon, forms::Icon::kExclamation);
    EXPECT_EQ(desktop.boxes[0].buttons, forms::Buttons::kOk);
}

TEST_F(Validation, EachCheckHasItsReason) {
    const std::vector<std::pair<SetProperty clsINI::*, std::string>> checks = {
        {&clsINI::BackupFiles, "There are no Files Selected to Backup."},
        {&clsINI::BackupSubDirectories, "BackupSubDirectories does not indicate 'ON' or 'OFF'."},
        {&clsINI::BackupFileName, "There is no name for the Backup File."},
        {&clsINI::MultiVolumeBackup, "MultiVolumeBackup does not indicate 'ON' or 'OFF'."},
        {&clsINI::BackupToDrive, "There is no Drive for the Backup File."},
        {&clsINI::TimeBackup, "TimeBackup does not indicate 'ON' or 'OFF'."}};
    for (const auto& [property, reason] : checks) {
        (ini.*property)("");
        EXPECT_EQ(Reason(), reason);
        (ini.*property)("ON");
        EXPECT_EQ(Reason(), "");
    }
}

TEST_F(Validation, EmptyFilesAndTimeYesReportOnlyTheTimeReason) {
    ini.BackupFiles("");
    ini.TimeBackup("YES");
    EXPECT_EQ(Reason(), "TimeBackup does not indicate 'ON' or 'OFF'.");
}

TEST_F(Validation, LastFailingCheckWins) {
    ini.BackupFiles("");
    ini.BackupSubDirectories("");
    ini.BackupFileName("");
    EXPECT_EQ(Reason(), "There is no name for the Backup File.");
    ini.BackupToDrive("");
    EXPECT_EQ(Reason(), "There is no Drive for the Backup File.");
}

TEST_F(Validation, LowerCaseSwitchFailsUntilConfirmed) {
    PutSet("WEEKLY.INI", {.sub_directories = "on"});
    ini.Read_INI(kFile);
    EXPECT_EQ(Reason(), "BackupSubDirectories does not indicate 'ON' or 'OFF'.");
    ini.ConfirmBackslash(kFile);
    ini.Read_INI(kFile);
    EXPECT_EQ(ini.BackupSubDirectories(), "ON");
    EXPECT_EQ(Reason(), "");
}

TEST(SetProperties, StoreAndReturnWhateverTheyAreGiven) {
    test::TestMachine machine;
    test::ScriptedDesktop desktop;
    forms::Program program{machine.machine(), desktop};
    clsINI ini(program);
    const std::vector<SetProperty clsINI::*> properties = {
        &clsINI::BackupFiles,       &clsINI::BackupSubDirectories, &clsINI::BackupFileName,
        &clsINI::MultiVolumeBackup, &clsINI::BackupToDrive,        &clsINI::TimeBackup,
        &clsINI::RestoreFromDrive,  &clsINI::RestoreFileName,      &clsINI::RestoreDestination};
    for (std::size_t i = 0; i < properties.size(); ++i) {
        EXPECT_EQ((ini.*properties[i])(), "");
        (ini.*properties[i])(" any\r\ntext " + std::to_string(i));
    }
    for (std::size_t i = 0; i < properties.size(); ++i) {
        EXPECT_EQ((ini.*properties[i])(), " any\r\ntext " + std::to_string(i));
    }
    EXPECT_TRUE(machine.Names("C:\\Vantrel").empty());
}

// --- values that are too long ---

// A code page in which "ä" has two bytes, as in UTF-8.
class WideCodePage : public platform::CodePage {
  public:
    explicit WideCodePage(platform::CodePage& other) : other_(other) {}
    std::optional<std::string> Encode(const std::string& utf8) override { return utf8; }
    std::string EncodeLossy(const std::string& utf8) override { return utf8; }
    std::string Decode(const std::string& bytes) override {
        // A character that is cut has no counterpart.
        return bytes.ends_with('\xC3') ? bytes.substr(0, bytes.size() - 1) + "?" : bytes;
    }
    std::string DecodeOem(const std::string& bytes) override { return other_.DecodeOem(bytes); }
    std::string Upper(const std::string& utf8) override { return other_.Upper(utf8); }
    std::string Fold(const std::string& utf8) override { return other_.Fold(utf8); }

  private:
    platform::CodePage& other_;
};

TEST_F(BackupSetFile, LengthIsCountedInBytesAndACutInsideACharacterIsNeverWritten) {
    WideCodePage wide(machine.code_page());
    platform::Machine there = test::With({.code_page = &wide}, machine.machine());
    forms::Program wide_program{there, desktop};
    wide_program.globals = program.globals;
    clsINI set(wide_program);
    set.BackupFiles("C:\\" + std::string(250, 'a') + "\xC3\xA4");
    EXPECT_EQ(set.SourceProblem(), "BackupFiles is longer than 254 bytes");
    set.BackupFiles("C:\\" + std::string(249, 'a') + "\xC3\xA4");
    EXPECT_EQ(set.SourceProblem(), "");

    const std::string text = SetText({.files = "C:\\" + std::string(250, 'a') + "\xC3\xA4\\*.*"});
    machine.PutFile(kFile, text);
    set.Read_INI(kFile);
    EXPECT_EQ(set.BackupFiles(), "C:\\" + std::string(250, 'a') + "?");
    EXPECT_EQ(set.BackupProblem(), "BackupFiles is longer than 254 bytes");
    set.ConfirmBackslash(kFile);
    EXPECT_EQ(machine.Content(kFile), text);
}

TEST_F(BackupSetFile, ConfirmationLeavesAFileWithAValueThatIsTooLongAsItIs) {
    const std::vector<std::string> keys = {
        "BackupFiles",       "BackupSubDirectories", "BackupFileName",
        "MultiVolumeBackup", "BackupToDrive",        "TimeBackup",
        "RestoreFromDrive",  "RestoreFileName",      "RestoreDestination"};
    for (const std::string& key : keys) {
        for (const std::size_t bytes : {255u, 300u, 5000u}) {
            std::string text = SetText({});
            text.insert(text.find(key + "=") + key.size() + 1, std::string(bytes, 'x'));
            EXPECT_EQ(Confirmed(text), text) << key << " of " << bytes;
        }
    }
}

TEST_F(BackupSetFile, CutValueThatIsSetAnewIsNotTooLongAnyMore) {
    machine.PutFile(kFile, SetText({.files = "C:\\" + std::string(300, 'a') + "\\*.*"}));
    clsINI set(program);
    set.Read_INI(kFile);
    EXPECT_EQ(set.SourceProblem(), "BackupFiles is longer than 254 bytes");
    set.BackupFiles("C:\\DATA\\*.*");
    EXPECT_EQ(set.SourceProblem(), "");
}

TEST_F(BackupSetFile, CutRestoreSourceIsNamed) {
    for (const std::string key : {"RestoreFromDrive", "RestoreFileName"}) {
        std::string text = SetText({});
        text.insert(text.find(key + "=") + key.size() + 1, "C:\\" + std::string(300, 'a'));
        machine.PutFile(kFile, text);
        clsINI set(program);
        set.Read_INI(kFile);
        EXPECT_EQ(set.RestoreSourceProblem(), key + " is longer than 254 bytes");
    }
}

}  // namespace
}  // namespace vantrel
