// One backup set: nine values, where they stand in the set's file, and the rules for saving them.
#pragma once

#include <string>

#include "forms/program.h"

namespace vantrel {

class clsINI {
  public:
    explicit clsINI(forms::Program& program) : program_(program) {}

    // Parts of a path.
    static constexpr int kDrive = 0;   // first 3 characters, those of the application folder if none
    static constexpr int kFolder = 1;  // up to and including the last "\"
    static constexpr int kFile = 2;    // what follows it
    std::string Backup_Parts(const std::string& path, int part);

    void ConfirmBackslash(const std::string& path);
    void Create_INI(const std::string& name);
    void Read_INI(const std::string& path);
    bool Validate_OnSave();

    // Each property as a pair: Name() gets, Name(value) lets. No checks, no file access.
    std::string BackupFiles() const;
    void BackupFiles(const std::string& value);
    std::string BackupSubDirectories() const;
    void BackupSubDirectories(const std::string& value);
    std::string BackupFileName() const;
    void BackupFileName(const std::string& value);
    std::string MultiVolumeBackup() const;
    void MultiVolumeBackup(const std::string& value);
    std::string BackupToDrive() const;
    void BackupToDrive(const std::string& value);
    std::string TimeBackup() const;
    void TimeBackup(const std::string& value);
    std::string RestoreFromDrive() const;
    void RestoreFromDrive(const std::string& value);
    std::string RestoreFileName() const;
    void RestoreFileName(const std::string& value);
    std::string RestoreDestination() const;
    void RestoreDestination(const std::string& value);

  private:
    forms::Program& program_;
    struct BackupSet {
        std::string BackupFiles, BackupSubDirectories, BackupFileName, MultiVolumeBackup,
            BackupToDrive, TimeBackup, RestoreFromDrive, RestoreFileName, RestoreDestination;
    } set_;
};

}  // namespace vantrel
