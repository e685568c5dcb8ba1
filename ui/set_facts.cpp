#include "ui/set_facts.h"

#include <array>
#include <cstdio>

#include "backupset/clsFiles.h"
#include "backupset/clsINI.h"
#include "common/error.h"
#include "common/path.h"
#include "system/clsDrives.h"

namespace vantrel {

namespace {

using Volumes = SetFacts::Volumes;

bool IsOnNetwork(const std::string& path) { return path.starts_with("\\\\"); }

std::string ShortTime(const platform::LocalTime& time) {
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%02d/%02d/%04d %02d:%02d", time.day, time.month,
                  time.year, time.hour, time.minute);
    return text.data();
}

class FactReader {
  public:
    FactReader(forms::Program& program, const clsINI& set) : program_(program), set_(set) {}

    SetFacts Read() {
        SetFacts facts;
        facts.missing_source = IfMissing(set_.Backup_Parts(set_.BackupFiles(), clsINI::kFolder));
        facts.missing_destination = IfMissing(clsString().Backslash(set_.BackupToDrive()));
        facts.destination_root = set_.Backup_Parts(set_.BackupToDrive(), clsINI::kDrive);
        facts.volumes = VolumesOf(facts.destination_root);
        facts.archive = Archive();
        return facts;
    }

  private:
    std::string IfMissing(const std::string& folder) {
        const bool there = IsOnNetwork(folder) || clsFiles(program_).Exist(folder, false);
        return there ? "" : folder;
    }

    // As the checks before a backup see it.
    Volumes VolumesOf(const std::string& root) {
        clsDrives drives(program_);
        const bool removable = drives.VerifyDriveType(root, platform::drive_type::kRemovable);
        const bool on = set_.MultiVolumeBackup() == "ON";
        if (on == removable) {
            return Volumes::kSuitable;
        }
        if (!on) {
            return Volumes::kOffButRemovable;
        }
        const bool fixed = drives.VerifyDriveType(root, platform::drive_type::kFixed);
        return fixed ? Volumes::kOnButFixed : Volumes::kOnButNotRemovable;
    }

    LastArchive Archive() {
        const std::string stored = set_.RestoreFromDrive() + set_.RestoreFileName();
        if (set_.RestoreFromDrive().empty()) {
            return {};
        }
        LastArchive archive{.state = LastArchive::State::kNotLooked, .path = stored};
        if (IsOnNetwork(stored)) {
            return archive;
        }
        archive.state = LastArchive::State::kMissing;
        const auto found = program_.machine.files.Find(
            path::OnDriveOf(program_.machine.process.ApplicationFolder(), stored));
        if (found && !found->IsFolder()) {
            archive.state = LastArchive::State::kThere;
            archive.bytes = found->size;
            archive.is_spanned = set_.MultiVolumeBackup() == "ON";
            archive.when = ShortTime(program_.machine.clock.ToLocal(found->times.modified));
        }
        return archive;
    }

    forms::Program& program_;
    const clsINI& set_;
};

}  // namespace

bool HasProblem(const SetFacts& facts) {
    return !facts.missing_source.empty() || !facts.missing_destination.empty() ||
           facts.volumes != SetFacts::Volumes::kSuitable;
}

SetFacts ReadSetFacts(forms::Program& program, const std::string& set_name) {
    if (set_name.empty()) {
        return {};
    }
    try {
        clsINI set(program);
        set.Read_INI(program.InApplicationFolder(set_name));
        return set.WasRead() ? FactReader(program, set).Read() : SetFacts();
    } catch (const Error&) {
        return {};  // access denied
    }
}

}  // namespace vantrel
