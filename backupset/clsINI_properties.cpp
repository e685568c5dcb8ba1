// The nine property pairs. Storing a text cannot fail in practice; a failure would still travel as
// any other does, under the property's label.
#include "backupset/clsINI.h"
#include "common/error.h"

namespace vantrel {

namespace {

std::string Get(const std::string& property, const std::string& field) {
    return Reported("clsINI:" + property + " Property Get", [&] { return field; });
}

void Let(const std::string& property, std::string& field, const std::string& value) {
    Reported("clsINI:" + property + " Property Let", [&] { field = value; });
}

}  // namespace

std::string clsINI::BackupFiles() const { return Get("BackupFiles", set_.BackupFiles); }
void clsINI::BackupFiles(const std::string& value) { Let("BackupFiles", set_.BackupFiles, value); }

std::string clsINI::BackupSubDirectories() const {
    return Get("BackupSubDirectories", set_.BackupSubDirectories);
}
void clsINI::BackupSubDirectories(const std::string& value) {
    Let("BackupSubDirectories", set_.BackupSubDirectories, value);
}

std::string clsINI::BackupFileName() const { return Get("BackupFileName", set_.BackupFileName); }
void clsINI::BackupFileName(const std::string& value) {
    Let("BackupFileName", set_.BackupFileName, value);
}

std::string clsINI::MultiVolumeBackup() const {
    return Get("MultiVolumeBackup", set_.MultiVolumeBackup);
}
void clsINI::MultiVolumeBackup(const std::string& value) {
    Let("MultiVolumeBackup", set_.MultiVolumeBackup, value);
}

std::string clsINI::BackupToDrive() const { return Get("BackupToDrive", set_.BackupToDrive); }
void clsINI::BackupToDrive(const std::string& value) {
    Let("BackupToDrive", set_.BackupToDrive, value);
}

std::string clsINI::TimeBackup() const { return Get("TimeBackup", set_.TimeBackup); }
void clsINI::TimeBackup(const std::string& value) { Let("TimeBackup", set_.TimeBackup, value); }

std::string clsINI::RestoreFromDrive() const {
    return Get("RestoreFromDrive", set_.RestoreFromDrive);
}
void clsINI::RestoreFromDrive(const std::string& value) {
    Let("RestoreFromDrive", set_.RestoreFromDrive, value);
}

std::string clsINI::RestoreFileName() const { return Get("RestoreFileName", set_.RestoreFileName); }
void clsINI::RestoreFileName(const std::string& value) {
    Let("RestoreFileName", set_.RestoreFileName, value);
}

std::string clsINI::RestoreDestination() const {
    return Get("RestoreDestination", set_.RestoreDestination);
}
void clsINI::RestoreDestination(const std::string& value) {
    Let("RestoreDestination", set_.RestoreDestination, value);
}

}  // namespace vantrel
