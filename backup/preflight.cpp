#include "backup/preflight.h"

#include <memory>
#include <optional>
#include <string>

#include "backup/Frm_Backup.h"
#include "backupset/clsFiles.h"
#include "backupset/clsINI.h"
#include "log/clsLog.h"
#include "system/clsDrives.h"

namespace vantrel {

using forms::Answer;
using forms::Box;
using forms::Buttons;
using forms::Icon;
using platform::drive_type::kCdRom;
using platform::drive_type::kRamDisk;
using platform::drive_type::kRemovable;

namespace {

// A spanned backup does not start unattended on a disk with fewer free bytes.
constexpr double kMinFreeBytes = kLowSpaceBytes;

class Preflight {
  public:
    Preflight(forms::Program& program, const BackupControls& controls)
        : program_(program),
          destination_(controls.Fld_BackupWhere.Caption()),
          shown_folder_(controls.Dir_DirList.Path()),
          set_name_(controls.Cmb_BackupSet.Text()),
          set_(program) {
        set_.Read_INI(SetPath());
        root_ = set_.Backup_Parts(set_.BackupToDrive(), clsINI::kDrive);
    }

    // A set that cannot be read has no source, no archive name, and every switch off. It is refused
    // as well: a backup with these values would not be the chosen one.
    bool PassesAttended() {
        auto refusal = AttendedRefusal();
        if (!refusal && !set_.WasRead()) {
            refusal =
                Refusal("Unable to continue with the Backup as " + SetPath() + " cannot be read.",
                        Icon::kExclamation);
        }
        if (const std::string problem = set_.BackupProblem(); !refusal && !problem.empty()) {
            refusal = Refusal("Unable to continue with the Backup as " + problem + ".",
                              Icon::kExclamation);
        }
        if (refusal) {
            program_.ShowMessage(*refusal);
            return false;
        }
        return program_.desktop.Show({.text = "Are you sure that you wish to start the backup now?",
                                      .buttons = Buttons::kYesNo,
                                      .title = "Vantrel",
                                      .default_button = 2}) == Answer::kYes;
    }

    bool PassesUnattended() {
        auto failure = UnattendedFailure();
        if (!failure && !set_.WasRead()) {
            failure = "Backup Failed - Unable to read " + SetPath();
        }
        if (const std::string problem = set_.BackupProblem(); !failure && !problem.empty()) {
            failure = "Backup Failed - " + problem;
        }
        if (!failure) {
            return true;
        }
        clsLog log(program_);
        log.WriteToLog("Backup", true, "Starting Backup " + set_name_);
        log.WriteToLog("Backup", true, "Finished Backup " + set_name_);
        log.WriteToLog("Backup", true, *failure);
        program_.exit_code = forms::exit_code::kFailed;
        return false;
    }

  private:
    std::string SetPath() const { return program_.InApplicationFolder(set_name_); }
    bool MultiVolume() const { return set_.MultiVolumeBackup() == "ON"; }
    bool RootIs(int type) { return clsDrives(program_).VerifyDriveType(root_, type); }
    bool FolderExists(const std::string& folder) { return clsFiles(program_).Exist(folder, false); }

    static Box Refusal(const std::string& text, Icon icon) {
        return {.text = text, .icon = icon, .title = "Backup"};
    }
    static Box Missing(const std::string& folder) {
        return Refusal(
            "Unable to continue with the Backup as " + folder + " does not appear to exist.",
            Icon::kExclamation);
    }

    std::optional<Box> AttendedRefusal() {
        if (set_name_.empty()) {
            return Refusal("Nothing has been selected to Backup." + program_.globals.CrLf +
                               "Please enter a valid Backup Set.",
                           Icon::kExclamation);
        }
        if (!FolderExists(destination_)) {
            return Missing(destination_);
        }
        if (!FolderExists(shown_folder_)) {
            return Missing(shown_folder_);
        }
        return WrongDriveForVolumes();
    }

    std::optional<Box> WrongDriveForVolumes() {
        const bool removable = RootIs(kRemovable);
        if (!MultiVolume() && removable) {
            return Refusal(
                "Unable to continue as the Multi-Volume Flag is set to OFF "
                "and a Backup File is about to be created on a "
                "Removable Drive",
                Icon::kInformation);
        }
        if (MultiVolume() && !removable) {
            return Refusal(
                "Unable to continue as the Multi-Volume Flag is set to ON "
                "and a Backup File is about to be created on a "
                "Non-Removable Drive",
                Icon::kInformation);
        }
        return std::nullopt;
    }

    std::optional<std::string> UnattendedFailure() {
        const std::string failed = "Backup Failed - ";
        const std::string source = set_.Backup_Parts(set_.BackupFiles(), clsINI::kFolder);
        if (!FolderExists(destination_)) {
            return failed + "Unable to locate " + destination_;
        }
        if (!FolderExists(source)) {
            return failed + "Unable to locate " + source;
        }
        if (RootIs(kCdRom)) {
            return failed + "Cannot Backup to CDROM Drive " + root_;
        }
        if (RootIs(kRamDisk)) {
            return failed + "Cannot Backup to RAM Disk " + root_;
        }
        if (!MultiVolume()) {
            if (!RootIs(kRemovable)) {
                return std::nullopt;
            }
            return failed + "MultiVolume Flag NOT set for Removable Drive " + root_;
        }
        if (!RootIs(kRemovable)) {
            return failed + "MultiVolume Flag set for Non-Removable Drive " + root_;
        }
        if (clsDrives(program_).FreeSpace(set_.BackupToDrive().substr(0, 1)) < kMinFreeBytes) {
            return failed + "Unable to conduct a Backup on a MultiVolume Drive whilst Unattended";
        }
        return std::nullopt;
    }

    forms::Program& program_;
    std::string destination_;
    std::string shown_folder_;
    std::string set_name_;
    clsINI set_;
    std::string root_;
};

}  // namespace

void Cmd_Backup_Click(forms::Program& program, const BackupControls& controls) {
    Preflight checks(program, controls);
    const bool passes = program.Unattended() ? checks.PassesUnattended() : checks.PassesAttended();
    if (!passes) {
        return;
    }
    Frm_Backup window(program, controls.Cmb_BackupSet.Text(),
                      std::make_unique<zip::PKZIP>(program.machine));
    program.desktop.ShowModal(window);
    program.desktop.Unload(window);
}

}  // namespace vantrel
