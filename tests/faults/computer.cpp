#include "tests/faults/computer.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "backup/Frm_Backup.h"
#include "common/product.h"
#include "platform/text_file.h"

namespace vantrel::test {

namespace {

// Answers of Retry before the user gives up: to one question, and altogether.
constexpr int kPatience = 2;
constexpr std::size_t kLongPatience = 40;

std::string Lines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\r\n";
    }
    return text;
}

}  // namespace

Computer::Computer(Disk where)
    : disk(where == Disk::kHost ? services.files() : memory),
      faulty(disk),
      machine(With({.files = &faulty, .drives = where == Disk::kBoxOfDisks ? &box : nullptr},
                   services.machine())) {
    desktop.on_box = [this](const forms::Box& shown) { Answer(shown); };
}

Computer::~Computer() = default;

void Computer::Furnish() {
    Put("C:\\Data\\a.txt", "alpha");
    Put("C:\\Data\\b.bin", std::string(3000, 'b'));
    Put("C:\\Data\\Sub\\c.txt", "gamma");
    MakeFolders("C:\\Backups");
    Put(kSetPath, SetText("WEEKLY", "C:\\BACKUPS\\"));
    Put(kLogPath, LogText());
    Put(kListPath, ListText({"C:\\DATA", "C:\\DIARY"}));
}

void Computer::Start(const std::string& command_line) {
    services.process.command_line = command_line;
    application = std::make_unique<Application>(machine, desktop);
    application->Main();
}

// What somebody does who wants the thing to happen, but not for ever.
void Computer::Answer(const forms::Box& shown) {
    if (shown.buttons == forms::Buttons::kYesNo) {
        desktop.answers = {forms::Answer::kYes};
    }
    if (shown.buttons == forms::Buttons::kRetryCancel ||
        shown.buttons == forms::Buttons::kRetryContinueCancel) {
        asked_.push_back(shown.text);
        const bool again = std::count(asked_.begin(), asked_.end(), shown.text) <= kPatience &&
                           asked_.size() <= kLongPatience;
        desktop.answers = {again ? forms::Answer::kRetry : forms::Answer::kCancel};
    }
}

Ending Computer::Work(const std::function<void()>& act) {
    const DiesOnThisThreadOnly here;
    try {
        try {
            act();
        } catch (const Error& error) {
            application->EndByError(error);
        }
        exit_code = application->ExitCode();
    } catch (const ProcessDied&) {
    } catch (const ProgramEnded& end) {
        ending = Ending::kEnded;
        exit_code = end.exit_code;
    }
    // Somebody else may have seen the death as an error.
    if (plan().Dead()) {
        ending = Ending::kDied;
    }
    return ending;
}

std::string Computer::Content(const std::string& path) {
    return Exists(path) ? platform::ReadWholeFile(disk, path) : std::string();
}

Tree Computer::Below(const std::string& folder) {
    Tree tree;
    if (!Exists(folder)) {
        return tree;
    }
    disk.List(folder, [&](const platform::FileInfo& info) {
        const std::string path = folder + "\\" + info.name;
        if (info.IsFolder()) {
            tree.merge(Below(path));
        } else {
            tree[path] = Content(path);
        }
        return true;
    });
    return tree;
}

std::string SetText(const std::string& archive_name, const std::string& destination,
                    const std::string& multi_volume) {
    return Lines(product::FileHeader()) +
           "[BACKUP SOURCE]\r\nBackupFiles=C:\\DATA\\*.*\r\nBackupSubDirectories=ON\r\n\r\n"
           "[DESTINATION]\r\nBackupFileName=" +
           archive_name + "\r\nMultiVolumeBackup=" + multi_volume +
           "\r\nBackupToDrive=" + destination +
           "\r\nTimeBackup=OFF\r\n\r\n[RESTORE SOURCE]\r\nRestoreFromDrive=\r\nRestoreFileName=\r\n"
           "\r\n[RESTORE DESTINATION]\r\nRestoreDestination=\r\n\r\n";
}

std::string LogText(std::size_t bytes) {
    std::string text;
    for (int i = 0; i < 12; ++i) {
        text += "header " + std::to_string(i) + "\r\n";
    }
    for (int i = 0; i < 3 || text.size() < bytes; ++i) {
        text += "14/11/2026 10:00:00 Earlier record " + std::to_string(i) + "\r\n";
    }
    return text;
}

std::string ListText(const std::vector<std::string>& folders) {
    return Lines(product::FileHeader()) + ";  Secure Data Directories  \r\n;\r\n\r\n" +
           Lines(folders);
}

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
