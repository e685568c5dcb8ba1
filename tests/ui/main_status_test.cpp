// Each text of the status bar, from a state.
#include "ui/main_status.h"

#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

using Volumes = SetFacts::Volumes;
using Archive = LastArchive::State;

struct StatusRow {
    const char* what;
    MainStatus status;
    std::string text;
    std::string path{};
};

std::ostream& operator<<(std::ostream& out, const StatusRow& row) { return out << row.what; }

MainStatus OfBackup(const BackupStatus& backup) { return {.tab = Tab::kBackup, .backup = backup}; }
MainStatus OfSet(bool is_locked, const SetFacts& facts) {
    return OfBackup({.sets = 1, .set = "DAILY.INI", .is_locked = is_locked, .facts = facts});
}
MainStatus OfRestore(const RestoreStatus& restore) {
    return {.tab = Tab::kRestore, .restore = restore};
}
MainStatus OfEdit(const EditStatus& edit) { return {.tab = Tab::kEdit, .edit = edit}; }
MainStatus OfLog(const LastRun& run) { return {.tab = Tab::kLog, .last_run = run}; }
MainStatus OfRun(LastRun::Outcome outcome, const std::string& detail = "") {
    return OfLog({.outcome = outcome, .name = "Backup A.INI", .when = "1/1", .detail = detail});
}
MainStatus OfSecure(const SecureStatus& secure) {
    return {.tab = Tab::kSecureData, .secure = secure};
}

const SetFacts kNoArchive{.destination_root = "E:\\"};
const SetFacts kNoDestination{.missing_destination = "E:\\Backup\\",
                              .volumes = Volumes::kOnButNotRemovable};
const SetFacts kNoSource{.missing_source = "D:\\Gone\\", .volumes = Volumes::kOnButNotRemovable};
const SetFacts kVolumesOn{.volumes = Volumes::kOnButFixed, .destination_root = "C:\\"};
const SetFacts kVolumesOnAShare{.volumes = Volumes::kOnButNotRemovable, .destination_root = "N:\\"};
const SetFacts kVolumesOff{.volumes = Volumes::kOffButRemovable, .destination_root = "A:\\"};
const SetFacts kArchive{.archive = {.state = Archive::kThere,
                                    .path = "E:\\Backup\\DAILY.zip",
                                    .bytes = 1'300'000,
                                    .when = "15/11/2026 13:05"}};
const SetFacts kSpanned{.archive = {.state = Archive::kThere,
                                    .path = "A:\\DAILY.zip",
                                    .bytes = 948'000,
                                    .when = "15/11/2026 13:05",
                                    .is_spanned = true}};
const SetFacts kMissingArchive{.archive = {.state = Archive::kMissing, .path = "E:\\DAILY.zip"}};
const SetFacts kShare{.archive = {.state = Archive::kNotLooked, .path = "\\\\NAS\\B\\DAILY.zip"}};

const StatusRow kStatusRows[] = {
    {"NoSet", OfBackup({}), "There is no backup set yet. Press New Backup."},
    {"NoSetSelected", OfBackup({.sets = 2}), "Choose a Backup Set, or press New Backup."},
    {"NoDestinationLocked", OfSet(true, kNoDestination),
     "Missing destination: E:\\Backup\\. Press Change Settings, then ... at Backup Location.",
     "E:\\Backup\\"},
    {"NoDestination", OfSet(false, kNoDestination),
     "Missing destination: E:\\Backup\\. Press ... at Backup Location.", "E:\\Backup\\"},
    {"NoSourceLocked", OfSet(true, kNoSource),
     "Missing folder: D:\\Gone\\. Press Change Settings, then choose a drive and a folder.",
     "D:\\Gone\\"},
    {"NoSource", OfSet(false, kNoSource),
     "Missing folder: D:\\Gone\\. Choose a drive and a folder.", "D:\\Gone\\"},
    {"VolumesOnLocked", OfSet(true, kVolumesOn),
     "Multi Volume is on, but C:\\ is fixed. Press Change Settings, then ... at Backup "
     "Options."},
    {"VolumesOn", OfSet(false, kVolumesOn),
     "Multi Volume is on, but C:\\ is fixed. Press ... at Backup Options."},
    {"VolumesOnAShare", OfSet(false, kVolumesOnAShare),
     "Multi Volume is on, but N:\\ is not removable. Press ... at Backup Options."},
    {"VolumesOffLocked", OfSet(true, kVolumesOff),
     "Multi Volume is off, but A:\\ is removable. Press Change Settings, then ... at Backup "
     "Options."},
    {"VolumesOff", OfSet(false, kVolumesOff),
     "Multi Volume is off, but A:\\ is removable. Press ... at Backup Options."},
    {"NoArchiveLocked", OfSet(true, kNoArchive),
     "The set has no archive yet. Settings locked: press Change Settings."},
    {"NoArchive", OfSet(false, kNoArchive), "The set has no archive yet. Press Backup Now."},
    {"ArchiveLocked", OfSet(true, kArchive),
     "Last archive: E:\\Backup\\DAILY.zip, 15/11/2026 13:05, 1.2 MB. Settings locked: press "
     "Change Settings.",
     "E:\\Backup\\DAILY.zip"},
    {"ArchiveOnSeveralDisks", OfSet(false, kSpanned),
     "Last archive: A:\\DAILY.zip, 15/11/2026 13:05, 926 KB on this disk. Press Backup Now.",
     "A:\\DAILY.zip"},
    {"MissingArchive", OfSet(false, kMissingArchive),
     "The last archive is missing: E:\\DAILY.zip. Press Backup Now.", "E:\\DAILY.zip"},
    {"ArchiveOnAShare", OfSet(false, kShare),
     "Last archive: \\\\NAS\\B\\DAILY.zip. Press Backup Now.", "\\\\NAS\\B\\DAILY.zip"},

    {"NothingToRestore", OfRestore({}),
     "Choose a set under What to Restore?, or press ... and choose a zip file."},
    {"ReadingAnArchive", OfRestore({.archive = "E:\\A.zip", .is_reading = true}),
     "Reading E:\\A.zip.", "E:\\A.zip"},
    {"NoEntries", OfRestore({.archive = "E:\\A.zip", .destination = "C:\\BACK"}),
     "No entries are listed. Choose another set or zip file."},
    {"NowhereToRestoreTo", OfRestore({.archive = "E:\\A.zip", .entries = 1234, .bytes = 5'000'000}),
     "1,234 entries, 4.8 MB. Press ... under Where to Restore To? and choose a folder."},
    {"ReadyToRestore",
     OfRestore({.archive = "E:\\A.zip", .entries = 1, .bytes = 1, .destination = "C:\\BACK"}),
     "1 entry, 1 byte. Press Restore Now to restore into C:\\BACK.", "C:\\BACK"},

    {"NoSetToEdit", OfEdit({}), "There is no backup set yet. Press New Backup on the Backup tab."},
    {"NoFileToEdit", OfEdit({.sets = 1}), "Choose a file in the list to see and change its text."},
    {"EmptiedByARefresh", OfEdit({.sets = 1, .is_unsaved = true}),
     "Choose a file in the list to see and change its text."},
    {"TextOfNoFile", OfEdit({.sets = 1, .has_text = true, .is_unsaved = true}),
     "This text belongs to no file. Choose a file in the list before you type."},
    {"FileShown", OfEdit({.sets = 1, .file = "DAILY.INI", .has_text = true}),
     "DAILY.INI is unchanged. The text is checked before it is saved."},
    {"UnsavedText", OfEdit({.sets = 1, .file = "DAILY.INI", .has_text = true, .is_unsaved = true}),
     "DAILY.INI has unsaved changes. Press Save to keep them."},

    {"NoRun", OfLog({}), "The log has no backup or restore yet."},
    {"Complete", OfRun(LastRun::Outcome::kComplete), "Last run: Backup A.INI, 1/1: complete."},
    {"FilesLeftOut", OfRun(LastRun::Outcome::kComplete, "3 files not backed up"),
     "Last run: Backup A.INI, 1/1: 3 files not backed up."},
    {"Cancelled", OfRun(LastRun::Outcome::kCancelled), "Last run: Backup A.INI, 1/1: cancelled."},
    {"Failed", OfRun(LastRun::Outcome::kFailed, "Unable to locate E:\\"),
     "Last run: Backup A.INI, 1/1: failed, Unable to locate E:\\."},
    {"Unfinished", OfRun(LastRun::Outcome::kUnfinished),
     "Last run: Backup A.INI, 1/1: not finished."},

    {"Reading", OfSecure({.drive = "D:\\", .is_reading = true}),
     "Reading the folders of D:\\. Press Esc to stop."},
    {"NoFolders", OfSecure({.drive = "A:\\"}), "A:\\ has no folders, or no disk."},
    {"NoFolderSelected", OfSecure({.drive = "D:\\", .folders = 3}),
     "Select a folder; the menu key or the right button protects it."},
    {"Stopped", OfSecure({.drive = "D:\\", .folders = 1234, .was_stopped = true}),
     "Reading was stopped after 1,234 folders. Select a folder; the menu key or the right button "
     "protects it."},
    {"Unprotected", OfSecure({.drive = "D:\\", .folders = 3, .folder = "D:\\Data"}),
     "D:\\Data is not protected. The menu key or the right button changes it.", "D:\\Data"},
    {"Protected",
     OfSecure({.drive = "D:\\", .folders = 3, .folder = "D:\\Data", .is_protected = true}),
     "D:\\Data is protected. The menu key or the right button changes it.", "D:\\Data"},

    {"About",
     {.tab = Tab::kAbout},
     "Vantrel 3.0.6. Contact Us writes a message with your mail program."},
};

class StatusTexts : public ::testing::TestWithParam<StatusRow> {};

TEST_P(StatusTexts, FollowFromTheState) {
    const StatusLine line = StatusText(GetParam().status);
    EXPECT_EQ(line.text, GetParam().text);
    EXPECT_EQ(line.path, GetParam().path);
    EXPECT_NE(line.text.find(line.path), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Rows, StatusTexts, ::testing::ValuesIn(kStatusRows),
                         [](const auto& row) { return row.param.what; });

TEST(StatusText, NumbersAreWrittenAsTheUserWritesThem) {
    MainStatus status = OfRestore({.archive = "E:\\A.zip", .entries = 16909, .bytes = 5'000'000});
    status.numbers = {.decimal = ",", .group = "."};
    EXPECT_THAT(StatusText(status).text, StartsWith("16.909 entries, 4,8 MB. "));
}

}  // namespace
}  // namespace vantrel::test
