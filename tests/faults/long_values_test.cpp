// Sets written by hand whose values are as long as they may be, or longer, run by the complete
// program. Beside what a long value means stands what its first 254 bytes would mean: a wrong file
// in every folder on the way, and folders of the shortened names. The program archives exactly what
// the set's file says, or nothing, and reports why.
#include <gtest/gtest.h>

#include <tuple>

#include "backup/Frm_Backup.h"
#include "backupset/clsFiles.h"
#include "backupset/profile_text.h"
#include "tests/faults/computer.h"
#include "tests/zip/archive_reader.h"

namespace vantrel::test {
namespace {

constexpr std::size_t kLimit = kMaxValueBytes;

// "C:\xxxx...\xxxx" of exactly this many bytes, or one of less than 60 for the first folder.
std::string LongFolder(std::size_t bytes) {
    constexpr std::size_t kMaxName = 60;
    std::string path = "C:";
    while (path.size() < bytes) {
        std::size_t name = std::min(kMaxName, bytes - path.size() - 1);
        if (bytes - path.size() - 1 == kMaxName + 1) {
            --name;  // a lone backslash is no folder
        }
        path += "\\" + std::string(name, 'D');
    }
    return path;
}

std::string ParentOf(const std::string& path) { return path.substr(0, path.rfind('\\')); }

class LongValues : public ::testing::Test {
  protected:
    // The set's text with one value exchanged.
    void WriteSet(const std::string& section, const std::string& key, const std::string& value) {
        text = profile::SetValue(text, section, key, value);
    }
    void Furnish() {
        computer.Furnish();
        computer.Put(kSetPath, text);
        computer.before = computer.Below("C:");
    }
    void RunUnattended() {
        computer.Work([&] { computer.Start("WEEKLY.INI"); });
    }
    void RunAttended() {
        computer.Work([&] {
            computer.Start();
            computer.window().Backup.Cmb_BackupSet.SetText("WEEKLY.INI");
            computer.window().TAB_Backup.SetTab(1);
            computer.window().TAB_Backup.SetTab(0);
            EXPECT_EQ(computer.Content(kSetPath), text)
                << "a move without a choice of the user was stored";
            computer.desktop.boxes.clear();
            CloseWhenOver(computer);
            computer.window().Backup.Cmd_Backup.UserPress();
            computer.desktop.idle.clear();
        });
    }
    std::vector<std::string> Archives() {
        std::vector<std::string> paths;
        for (const auto& [path, content] : computer.Below("C:")) {
            if (path.ends_with(".zip") || path.ends_with(".ZIP")) {
                paths.push_back(path);
            }
        }
        return paths;
    }
    void ExpectNothingArchived(const std::string& reason) {
        EXPECT_EQ(Archives(), std::vector<std::string>());
        EXPECT_EQ(computer.Content(kSetPath), text);
        if (computer.services.process.command_line.empty()) {
            ASSERT_EQ(computer.desktop.boxes.size(), 1u);
            EXPECT_EQ(computer.desktop.boxes[0].text,
                      "Unable to continue with the Backup as " + reason + ".");
            return;
        }
        EXPECT_EQ(computer.exit_code, forms::exit_code::kFailed);
        EXPECT_NE(computer.Content(kLogPath).find("Finished Backup WEEKLY.INI\r\n" +
                                                  std::string("15/11/2026 13:05:09 ") +
                                                  "Backup Failed - " + reason + "\r\n"),
                  std::string::npos)
            << computer.Content(kLogPath);
    }
    void ExpectArchived(const std::string& archive, const std::vector<std::string>& names) {
        ASSERT_EQ(Archives(), std::vector<std::string>{archive});
        EXPECT_EQ(ReadArchive(computer.Content(archive)).Names(), names);
        EXPECT_EQ(computer.exit_code, forms::exit_code::kComplete);
    }

    Computer computer;
    std::string text = SetText("WEEKLY", "C:\\BACKUPS\\");
};

// Where byte 254 of the value stands.
enum class CutAt { kFolderName, kBackslash, kMask };

struct SourceCase {
    std::size_t bytes;
    CutAt cut;
};

class LongSources : public LongValues, public ::testing::WithParamInterface<SourceCase> {
  protected:
    // A source of the case's length, with files that only it means, and files that only its first
    // 254 bytes mean.
    void FurnishSource() {
        const auto [bytes, cut] = GetParam();
        std::string mask = "*.*";
        if (bytes > kLimit && cut == CutAt::kMask) {
            mask = "*.D" + std::string(bytes - kLimit, 'D');
        }
        std::string folder = LongFolder(bytes - mask.size() - 1);
        if (cut == CutAt::kBackslash && bytes > kLimit) {
            folder = LongFolder(kLimit - 1) + LongFolder(bytes - kLimit - 1).substr(2);
        }
        text = SetText("WEEKLY", "C:\\BACKUPS\\");
        WriteSet("BACKUP SOURCE", "BackupFiles", folder + "\\" + mask);
        ASSERT_EQ(folder.size() + 1 + mask.size(), bytes);
        for (std::string path = folder; path != "C:"; path = ParentOf(path)) {
            computer.Put(path + "\\wrong.d", "of the folder on the way");
        }
        if (bytes > kLimit) {
            computer.Put((folder + "\\wrong.d").substr(0, kLimit) + "\\wrong.txt",
                         "of the cut name");
        }
        if (bytes <= kLimit) {
            computer.Put(folder + "\\right.txt", "right");
            computer.disk.RemoveFile(folder + "\\wrong.d");
        }
        Furnish();
    }
    void ExpectOutcome() {
        if (GetParam().bytes <= kLimit) {
            return ExpectArchived("C:\\Backups\\WEEKLY.zip", {"right.txt"});
        }
        ExpectNothingArchived("BackupFiles is longer than 254 bytes");
    }
};

TEST_P(LongSources, UnattendedAreArchivedAsTheyAreOrNotAtAll) {
    FurnishSource();
    RunUnattended();
    ExpectOutcome();
}

TEST_P(LongSources, AttendedAreArchivedAsTheyAreOrNotAtAll) {
    FurnishSource();
    RunAttended();
    ExpectOutcome();
}

INSTANTIATE_TEST_SUITE_P(
    Around, LongSources,
    ::testing::Values(SourceCase{254, CutAt::kFolderName}, SourceCase{255, CutAt::kFolderName},
                      SourceCase{300, CutAt::kFolderName}, SourceCase{5000, CutAt::kFolderName},
                      SourceCase{300, CutAt::kBackslash}, SourceCase{5000, CutAt::kBackslash},
                      SourceCase{255, CutAt::kMask}, SourceCase{300, CutAt::kMask}));

struct DestinationCase {
    std::size_t bytes;
    const char* time;
    const char* reason;  // "" where the archive is made
};

class LongDestinations : public LongValues, public ::testing::WithParamInterface<DestinationCase> {
  protected:
    void FurnishDestination() {
        const DestinationCase& row = GetParam();
        folder = LongFolder(row.bytes - 1);
        WriteSet("Destination", "BackupToDrive", folder + "\\");
        WriteSet("Destination", "TimeBackup", row.time);
        computer.MakeFolders(folder);
        computer.MakeFolders(folder.substr(0, kLimit));
        Furnish();
    }
    void Expect() {
        const std::string dated = GetParam().time == std::string("ON") ? "\\20261115_130509" : "";
        if (*GetParam().reason != '\0') {
            return ExpectNothingArchived(GetParam().reason);
        }
        ExpectArchived(folder + dated + "\\WEEKLY.zip", {"a.txt", "b.bin", "Sub/c.txt"});
        clsFiles files(computer.application->program());
        EXPECT_EQ(files.ReadINI("RESTORE SOURCE", "RestoreFromDrive", kSetPath),
                  folder + dated + "\\");
    }
    std::string folder;
};

TEST_P(LongDestinations, UnattendedGetTheirArchiveOrNothingIsWritten) {
    FurnishDestination();
    RunUnattended();
    Expect();
}

TEST_P(LongDestinations, AttendedGetTheirArchiveOrNothingIsWritten) {
    FurnishDestination();
    RunAttended();
    Expect();
}

constexpr const char* kTooLongFolder = "BackupToDrive is longer than 254 bytes";
constexpr const char* kTooLongDated =
    "BackupToDrive with the name of a dated folder is longer than 254 bytes";

INSTANTIATE_TEST_SUITE_P(Around, LongDestinations,
                         ::testing::Values(DestinationCase{254, "OFF", ""},
                                           DestinationCase{255, "OFF", kTooLongFolder},
                                           DestinationCase{300, "OFF", kTooLongFolder},
                                           DestinationCase{238, "ON", ""},
                                           DestinationCase{239, "ON", kTooLongDated},
                                           DestinationCase{254, "ON", kTooLongDated},
                                           DestinationCase{255, "ON", kTooLongFolder}));

class LongArchiveNames : public LongValues, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(LongArchiveNames, MakeThatArchiveOrNone) {
    const std::string name(GetParam(), 'N');
    WriteSet("Destination", "BackupFileName", name);
    Furnish();
    RunUnattended();
    if (name.size() + 4 <= kLimit) {
        return ExpectArchived("C:\\Backups\\" + name + ".zip", {"a.txt", "b.bin", "Sub/c.txt"});
    }
    ExpectNothingArchived("BackupFileName with .zip is longer than 254 bytes");
}

INSTANTIATE_TEST_SUITE_P(Around, LongArchiveNames,
                         ::testing::Values(250u, 251u, 254u, 255u, 300u, 5000u));

// The keys that say neither what is archived nor where.
class OtherLongValues
    : public LongValues,
      public ::testing::WithParamInterface<std::tuple<std::pair<const char*, const char*>, int>> {};

TEST_P(OtherLongValues, LeaveTheArchiveAsTheSetSays) {
    const auto& [place, bytes] = GetParam();
    const std::string key = place.second;
    const auto length = static_cast<std::size_t>(bytes);
    WriteSet(place.first, key, "ON" + std::string(length - 2, 'X'));
    Furnish();
    RunUnattended();
    std::vector<std::string> names = {"a.txt", "b.bin", "Sub/c.txt"};
    if (key == "BackupSubDirectories") {
        names.pop_back();  // anything but ON is off
    }
    ExpectArchived("C:\\Backups\\WEEKLY.zip", names);
}

INSTANTIATE_TEST_SUITE_P(
    Around, OtherLongValues,
    ::testing::Combine(::testing::Values(std::pair{"BACKUP SOURCE", "BackupSubDirectories"},
                                         std::pair{"Destination", "MultiVolumeBackup"},
                                         std::pair{"Destination", "TimeBackup"},
                                         std::pair{"RESTORE SOURCE", "RestoreFromDrive"},
                                         std::pair{"RESTORE SOURCE", "RestoreFileName"},
                                         std::pair{"RESTORE DESTINATION", "RestoreDestination"}),
                       ::testing::Values(254, 255, 300, 5000)));

// --- what has no root, and what is on the application's drive ---

class Roots : public LongValues,
              public ::testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(Roots, SourceOrDestinationWithoutARootIsRefused) {
    const auto& [key, value] = GetParam();
    WriteSet(key == std::string("BackupFiles") ? "BACKUP SOURCE" : "Destination", key, value);
    Furnish();
    RunUnattended();
    ExpectNothingArchived(std::string(key) + " does not begin with the root of a drive: \"" +
                          value + "\"");
}

INSTANTIATE_TEST_SUITE_P(Without, Roots,
                         ::testing::Values(std::pair{"BackupFiles", ""},
                                           std::pair{"BackupFiles", "C:*.*"},
                                           std::pair{"BackupFiles", "*.*"},
                                           std::pair{"BackupToDrive", ""}));

// On the host's files: those in memory take "C:WEEKLY.zip" for a bare name.
TEST(DriveAlone, IsTheRootOfTheDriveForADestination) {
    Computer computer(Computer::Disk::kHost);
    computer.Furnish();
    computer.Put(kSetPath, SetText("WEEKLY", "C:"));
    computer.Work([&] { computer.Start("WEEKLY.INI"); });
    EXPECT_EQ(ReadArchive(computer.Content("C:\\WEEKLY.zip")).entries.size(), 3u);
}

TEST_F(LongValues, PathsThatBeginWithABackslashAreOnTheApplicationsDrive) {
    WriteSet("BACKUP SOURCE", "BackupFiles", "\\DATA\\*.*");
    WriteSet("Destination", "BackupToDrive", "\\BACKUPS\\");
    Furnish();
    RunUnattended();
    ExpectArchived("C:\\Backups\\WEEKLY.zip", {"a.txt", "b.bin", "Sub/c.txt"});
    EXPECT_EQ(computer.Content(kLogPath).find("Path not found"), std::string::npos);
}

}  // namespace
}  // namespace vantrel::test
