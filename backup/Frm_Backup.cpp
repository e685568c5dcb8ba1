#include "backup/Frm_Backup.h"

#include <utility>

#include "backupset/clsFiles.h"
#include "backupset/clsINI.h"
#include "common/error.h"
#include "common/file_name.h"
#include "common/product.h"
#include "log/clsLog.h"
#include "system/clsDrives.h"

namespace vantrel {

namespace {

constexpr const char* kSkipped = "not backed up";

std::string DatedFolderNow(platform::Clock& clock) {
    const platform::LocalTime time = clock.Now();
    return DatedFolderName(time.year, time.month, time.day, time.hour, time.minute, time.second);
}

}  // namespace

Frm_Backup::Frm_Backup(forms::Program& program, std::string set_name,
                       std::unique_ptr<zip::PKZIP> component)
    : ProgressWindow(program, "Frm_Backup", "Lbl_BackupPath", "Backup"),
      Lbl_BackupPath(path_label_),
      Lbl_BackingUp(*this, "Lbl_BackingUp", "Backing Up Files......."),
      PKZIP(*component),
      set_name_(std::move(set_name)),
      component_(std::move(component)) {
    SetCaption("Backing Up Files...");
    Follow(PKZIP);
    PKZIP.FatalStop = [this] { FatalStop(); };
}

std::string Frm_Backup::SetPath() const { return program().InApplicationFolder(set_name_); }

void Frm_Backup::Form_Activate() {
    LogRecord("Starting Backup " + set_name_);
    cancelled_ = false;
    clsINI set(program());
    set.Read_INI(SetPath());
    // The checks before the backup have read the same file. With other values now, something else
    // would be backed up.
    if (!set.WasRead()) {
        RaiseError(error_number::kPermissionDenied);
    }
    const std::string problem = set.BackupProblem();
    if (!problem.empty()) {
        throw Error(error_number::kBadFileName, name(), problem);
    }
    target_ = MakeTarget(set);
    if (!program().Unattended()) {
        StartRun(ArchiveText(ArchiveState::kComplete, target_.Path()));
    }
    RunComponent(set);
    messages_.WriteSummary(PKZIP.SkippedFiles(), kSkipped);
    Finish();
    if (program().Unattended()) {
        program().desktop.Hide(*this);
    } else {
        ShowEnd();
    }
}

void Frm_Backup::ShowEnd() {
    ShowOutcome(cancelled_ ? "Backup Cancelled by User" : "Backup Complete");
    Lbl_BackingUp.SetVisible(false);
    const ArchiveState state = cancelled_ ? EarlierArchive() : ArchiveState::kComplete;
    ShowSummary(EndOfRun(), ArchiveText(state, target_.Path()));
}

void Frm_Backup::ShowFailure(const std::string& reason) {
    program().desktop.Show({.text = "The backup has failed, and " + std::string(product::kName) +
                                    " ends after OK.\r\n\r\n" + reason + "\r\n" +
                                    ArchiveText(EarlierArchive(), target_.Path()),
                            .icon = forms::Icon::kCritical,
                            .title = "Backup"});
}

// The earlier archive is what it was. Of a spanned one the disk that is in the drive may be any
// disk.
ArchiveState Frm_Backup::EarlierArchive() const {
    if (target_.spanned) {
        return ArchiveState::kIncomplete;
    }
    return clsFiles(program()).Exist(target_.Path(), true) ? ArchiveState::kEarlier
                                                           : ArchiveState::kNone;
}

Frm_Backup::Target Frm_Backup::MakeTarget(clsINI& set) const {
    std::string folder = set.BackupToDrive();
    if (set.TimeBackup() == "ON") {
        folder += DatedFolderNow(program().machine.clock) + "\\";
    }
    return {folder, set.BackupFileName() + ".zip", set.MultiVolumeBackup() == "ON"};
}

// The order of the properties is given. The action is the last; setting it runs the backup.
void Frm_Backup::RunComponent(clsINI& set) {
    namespace id = zip::zip_id;
    const bool multi_volume = target_.spanned;
    PKZIP.Set(id::kLevel, std::int16_t{9});
    PKZIP.Set(id::kMultiVolume, multi_volume ? id::kSpanVolumes : std::int32_t{0});
    PKZIP.Set(id::kSubFolders, set.BackupSubDirectories() == "ON");
    program().globals.TextBuffer = target_.Path();
    PKZIP.Set(id::kArchive, program().globals.TextBuffer);
    LogRecord("Creating Backup File " + std::get<std::string>(PKZIP.Get(id::kArchive)));
    const bool low_space =
        clsDrives(program()).FreeSpace(set.BackupToDrive().substr(0, 1)) < kLowSpaceBytes;
    PKZIP.Set(id::kVolumeOption, !(multi_volume && low_space));
    PKZIP.Set(id::kOption3, true);
    PKZIP.Set(id::kFileSpec, "\"" + set.BackupFiles() + "\"");
    PKZIP.Set(id::kOption4, true);
    PKZIP.Set(id::kOption5, true);
    PKZIP.Set(id::kOption32, true);
    // Each run of a set with dated folders makes a new archive; the set names the last one.
    if (set.TimeBackup() == "ON") {
        PKZIP.earlier_archive = set.RestoreFromDrive() + set.RestoreFileName();
    }
    PKZIP.Set(id::kAction, id::kActionAdd);
}

void Frm_Backup::Finish() {
    if (cancelled_) {
        LogRecord("Finished Backup " + set_name_);
        LogRecord("Cancelled by User");
        program().exit_code = forms::exit_code::kCancelled;
        return;
    }
    Cmd_Cancel.SetVisible(false);
    Cmd_Ok.SetVisible(true);
    clsFiles(program()).WriteINI({{"RESTORE SOURCE", "RestoreFromDrive", target_.folder},
                                  {"RESTORE SOURCE", "RestoreFileName", target_.file}},
                                 SetPath());
    LogRecord("Finished Backup " + set_name_);
    LogRecord("Successful Backup");
    program().exit_code = PKZIP.SkippedFiles() > 0 ? forms::exit_code::kSomeFilesSkipped
                                                   : forms::exit_code::kComplete;
}

void Frm_Backup::Cmd_Ok_Click() { program().desktop.Hide(*this); }

// The fatal stop that follows an error ends the program at once.
void Frm_Backup::Message(const zip::ComponentMessage& message) {
    ProgressWindow::Message(message);
    if (message.kind == zip::MessageKind::kError && !program().Unattended()) {
        ShowFailure(message.text);
    }
}

void Frm_Backup::FatalStop() {
    messages_.WriteSummary(PKZIP.SkippedFiles(), kSkipped);
    program().machine.process.End(forms::exit_code::kFailed);
}

}  // namespace vantrel
