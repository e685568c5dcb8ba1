// One backup set: the nine values of a set file and the rules for saving them. Window thread only.
// docs/formats.md describes the file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "backupset/clsFiles.h"
#include "forms/program.h"

namespace vantrel {

// One value of a set: Name() gets, Name(value) lets. No checks, no file access.
class SetProperty {
  public:
    // Where the file has it. Section names are matched without regard to case: "Destination" finds
    // the template's "[DESTINATION]".
    SetProperty(const char* section, const char* key) : section_(section), key_(key) {}

    std::string operator()() const;
    void operator()(const std::string& value);

  private:
    friend class clsINI;
    // Whether the text is still the one that was cut when it was read.
    bool IsCut() const { return !text_.empty() && text_ == cut_; }

    const char* section_;
    const char* key_;
    std::string text_;
    std::string cut_;  // the text of the last Read_INI if it was cut
};

// Every operation and property raises its errors under its own label, "clsINI:Read_INI Method" or
// "clsINI:BackupFiles Property Get".
class clsINI {
  public:
    explicit clsINI(forms::Program& program) : program_(program) {}

    // Parts of a path.
    static constexpr int kDrive = 0;  // first 3 characters, those of the application folder if none
    static constexpr int kFolder = 1;  // up to and including the last "\"
    static constexpr int kFile = 2;    // what follows it
    // One part of `path`, "" for any other `part`. A path whose only "\" is its first character has
    // neither folder nor file.
    std::string Backup_Parts(const std::string& path, int part) const;

    // Reads the set file at `path`, gives the destination its last "\" (and the restore source,
    // unless that is empty), puts all values in capitals and writes them back in one step. A
    // missing file is made, of empty values and the destination "\"; one that cannot be read stays
    // as it is, and so does one with a value that SaveProblem() objects to.
    void ConfirmBackslash(const std::string& path);
    // Writes the set file `name` (with its extension of three letters) from the template into the
    // application folder. Replaces an existing file unless `only_new`. The text stays in
    // TextBuffer. Raises 5 for a name of fewer than 4 characters, 52 for one that the code page
    // cannot hold, 58 for an existing file with `only_new`.
    void Create_INI(const std::string& name, bool only_new = false);
    // Loads the nine values of the set file at `path`, "" for a missing key. All are "" when the
    // file is missing or cannot be read.
    void Read_INI(const std::string& path);
    // Whether the last Read_INI could read the file. Callers must test it before they use the
    // values: an empty switch counts as OFF.
    bool WasRead() const { return was_read_; }
    // Whether the loaded values may be saved. If not, shows the reason, the last one that applies.
    bool Validate_OnSave();

    // Why a value cannot be stored or used: words that name its key, without a full stop, such as
    // "BackupFiles is longer than 254 bytes"; "" when it can. A value is too long when it has more
    // than kMaxValueBytes bytes, in the file that was read or as the property was set since.
    std::string SourceProblem() const;
    // Of BackupToDrive, together with the name of a dated folder when TimeBackup is on.
    std::string DestinationProblem() const;
    // Of BackupFileName, together with ".zip".
    std::string ArchiveNameProblem() const;
    // Why a backup of the set would not be what the set's file says: one of the three reasons
    // above, or a source or destination that begins neither with a drive's root nor with "\", an
    // empty one included.
    std::string BackupProblem() const;
    // Of RestoreFromDrive and RestoreFileName, as they were read.
    std::string RestoreSourceProblem() const;
    // The first of all nine keys, as ConfirmBackslash would write them.
    std::string SaveProblem() const;

    SetProperty BackupFiles{"BACKUP SOURCE", "BackupFiles"};
    SetProperty BackupSubDirectories{"BACKUP SOURCE", "BackupSubDirectories"};
    SetProperty BackupFileName{"Destination", "BackupFileName"};
    SetProperty MultiVolumeBackup{"Destination", "MultiVolumeBackup"};
    SetProperty BackupToDrive{"Destination", "BackupToDrive"};
    SetProperty TimeBackup{"Destination", "TimeBackup"};
    SetProperty RestoreFromDrive{"RESTORE SOURCE", "RestoreFromDrive"};
    SetProperty RestoreFileName{"RESTORE SOURCE", "RestoreFileName"};
    SetProperty RestoreDestination{"RESTORE DESTINATION", "RestoreDestination"};

  private:
    static constexpr SetProperty clsINI::*kProperties[] = {
        &clsINI::BackupFiles,       &clsINI::BackupSubDirectories, &clsINI::BackupFileName,
        &clsINI::MultiVolumeBackup, &clsINI::BackupToDrive,        &clsINI::TimeBackup,
        &clsINI::RestoreFromDrive,  &clsINI::RestoreFileName,      &clsINI::RestoreDestination};

    std::vector<ProfileKey> Keys() const;
    void Normalize();
    bool IsTooLong(const std::string& value) const;
    std::string Template(const std::string& name) const;
    std::string Reason() const;

    forms::Program& program_;
    bool was_read_ = false;
};

}  // namespace vantrel
