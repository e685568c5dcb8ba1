#include "backupset/clsINI.h"

#include <algorithm>

#include "common/dated_folder.h"
#include "common/error.h"
#include "common/path.h"
#include "common/product.h"
#include "common/utf.h"
#include "platform/text_file.h"

namespace vantrel {

// The section and key of a field. "Destination" finds the "[DESTINATION]" of the template: section
// names are matched without regard to case.
struct clsINI::KeyLocation {
    const char* section;
    const char* key;
    Field value;
};

const clsINI::KeyLocation clsINI::kKeys[9] = {
    {"BACKUP SOURCE", "BackupFiles", &BackupSet::BackupFiles},
    {"BACKUP SOURCE", "BackupSubDirectories", &BackupSet::BackupSubDirectories},
    {"Destination", "BackupFileName", &BackupSet::BackupFileName},
    {"Destination", "MultiVolumeBackup", &BackupSet::MultiVolumeBackup},
    {"Destination", "BackupToDrive", &BackupSet::BackupToDrive},
    {"Destination", "TimeBackup", &BackupSet::TimeBackup},
    {"RESTORE SOURCE", "RestoreFromDrive", &BackupSet::RestoreFromDrive},
    {"RESTORE SOURCE", "RestoreFileName", &BackupSet::RestoreFileName},
    {"RESTORE DESTINATION", "RestoreDestination", &BackupSet::RestoreDestination},
};

namespace {

constexpr std::size_t kRootLength = 3;       // characters of "C:\"
constexpr std::size_t kExtensionLength = 4;  // characters of ".INI"
constexpr int kInvalidProcedureCall = 5;     // run-time error of a text function

std::string WithoutExtension(const std::string& name) {
    const std::size_t length = utf::Length(name);
    if (length < kExtensionLength) {
        throw Error(kInvalidProcedureCall, product::kName, "Invalid procedure call or argument");
    }
    return utf::Left(name, length - kExtensionLength);
}

std::string TooLong(const std::string& what) {
    return what + " is longer than " + std::to_string(kMaxValueBytes) + " bytes";
}

bool IsSlash(char c) { return c == '\\' || c == '/'; }

// Of a source, which needs a folder on its drive.
bool HasRoot(const std::string& path) {
    const std::size_t slash = path::HasDrive(path) ? 2 : 0;
    return path.size() > slash && IsSlash(path[slash]);
}

// Of a destination: "E:" is the root of that drive.
bool HasDriveOrRoot(const std::string& path) { return path::HasDrive(path) || HasRoot(path); }

std::string WithoutRoot(const std::string& key, const std::string& path) {
    return key + " does not begin with the root of a drive: \"" + path + "\"";
}

bool IsSwitch(const std::string& value) { return value == "OFF" || value == "ON"; }

}  // namespace

std::string clsINI::Backup_Parts(const std::string& path, int part) const {
    return Reported("clsINI:Backup_Parts Method", [&]() -> std::string {
        switch (part) {
            case kDrive:
                return path::DrivePart(path, program_.machine.process.ApplicationFolder());
            case kFolder:
                return path::FolderPart(path);
            case kFile:
                return path::FilePart(path);
            default:
                return "";
        }
    });
}

void clsINI::Read_INI(const std::string& path) {
    Reported("clsINI:Read_INI Method", [&] {
        const auto values = clsFiles(program_).ReadINI(Keys(), path);
        was_read_ = values.has_value();
        set_ = {};
        cut_ = {};
        if (!values) {
            return;
        }
        auto value = values->begin();
        for (const KeyLocation& location : kKeys) {
            set_.*location.value = value->text;
            if (value->is_cut) {
                cut_.*location.value = value->text;
            }
            ++value;
        }
    });
}

// Where each value stands, with the value that is loaded.
std::vector<ProfileKey> clsINI::Keys() const {
    std::vector<ProfileKey> keys;
    for (const KeyLocation& location : kKeys) {
        keys.push_back({location.section, location.key, set_.*location.value});
    }
    return keys;
}

void clsINI::ConfirmBackslash(const std::string& path) {
    Reported("clsINI:ConfirmBackslash Method", [&] {
        Read_INI(path);
        const bool is_storable = SaveProblem().empty();
        set_ = Normalized();
        if (!is_storable) {
            return;
        }
        // Values that stood in no file that could be read go into a new one, never into another.
        clsFiles files(program_);
        was_read_ ? files.WriteINI(Keys(), path) : files.MakeINI(Keys(), path);
    });
}

clsINI::BackupSet clsINI::Normalized() const {
    BackupSet set = set_;
    set.BackupToDrive = path::WithBackslash(set.BackupToDrive);
    if (!set.RestoreFromDrive.empty()) {
        set.RestoreFromDrive = path::WithBackslash(set.RestoreFromDrive);
    }
    for (const KeyLocation& location : kKeys) {
        std::string& value = set.*location.value;
        value = program_.machine.code_page.Upper(value);
    }
    return set;
}

// Whether the value is still the cut one that was read.
bool clsINI::IsCut(Field field) const {
    return !(set_.*field).empty() && set_.*field == cut_.*field;
}

bool clsINI::IsTooLong(const std::string& value) const {
    const auto bytes = program_.machine.code_page.Encode(value);
    return bytes && bytes->size() > kMaxValueBytes;
}

std::string clsINI::SourceProblem() const {
    const bool is_fine = !IsCut(&BackupSet::BackupFiles) && !IsTooLong(set_.BackupFiles);
    return is_fine ? "" : TooLong("BackupFiles");
}

std::string clsINI::DestinationProblem() const {
    if (IsCut(&BackupSet::BackupToDrive) || IsTooLong(set_.BackupToDrive)) {
        return TooLong("BackupToDrive");
    }
    const bool is_dated = set_.TimeBackup == "ON";
    const std::string dated_folder(kDatedFolderNameLength + 1, '\\');
    if (!is_dated || !IsTooLong(set_.BackupToDrive + dated_folder)) {
        return "";
    }
    return TooLong("BackupToDrive with the name of a dated folder");
}

std::string clsINI::ArchiveNameProblem() const {
    const bool is_fine =
        !IsCut(&BackupSet::BackupFileName) && !IsTooLong(set_.BackupFileName + ".zip");
    return is_fine ? "" : TooLong("BackupFileName with .zip");
}

std::string clsINI::BackupProblem() const {
    for (const std::string& problem :
         {SourceProblem(), DestinationProblem(), ArchiveNameProblem()}) {
        if (!problem.empty()) {
            return problem;
        }
    }
    if (!HasRoot(set_.BackupFiles)) {
        return WithoutRoot("BackupFiles", set_.BackupFiles);
    }
    if (!HasDriveOrRoot(set_.BackupToDrive)) {
        return WithoutRoot("BackupToDrive", set_.BackupToDrive);
    }
    return "";
}

std::string clsINI::RestoreSourceProblem() const {
    if (IsCut(&BackupSet::RestoreFromDrive)) {
        return TooLong("RestoreFromDrive");
    }
    return IsCut(&BackupSet::RestoreFileName) ? TooLong("RestoreFileName") : "";
}

std::string clsINI::SaveProblem() const {
    clsINI saved = *this;
    saved.set_ = Normalized();
    for (const KeyLocation& location : kKeys) {
        if (IsCut(location.value) || IsTooLong(saved.set_.*location.value)) {
            return TooLong(location.key);
        }
    }
    const std::string problem = saved.DestinationProblem();
    return problem.empty() ? saved.ArchiveNameProblem() : problem;
}

std::string clsINI::Template(const std::string& name) const {
    auto& machine = program_.machine;
    const std::string root =
        machine.code_page.Upper(utf::Left(machine.process.ApplicationFolder(), kRootLength));
    std::vector<std::string> lines = product::FileHeader();
    lines.insert(lines.end(), {"[BACKUP SOURCE]", "BackupFiles=" + root + "*.*",
                               "BackupSubDirectories=OFF", "", "[DESTINATION]",
                               "BackupFileName=" + machine.code_page.Upper(WithoutExtension(name)),
                               "MultiVolumeBackup=ON", "BackupToDrive=" + root, "TimeBackup=ON", "",
                               "[RESTORE SOURCE]", "RestoreFromDrive=", "RestoreFileName=", "",
                               "[RESTORE DESTINATION]", "RestoreDestination="});
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\r\n";
    }
    return text;
}

void clsINI::Create_INI(const std::string& name, bool only_new) {
    Reported("clsINI:Create_INI Method", [&] {
        program_.globals.TextBuffer.clear();
        program_.globals.TextBuffer = Template(name);
        const auto bytes = program_.machine.code_page.Encode(program_.globals.TextBuffer);
        if (!bytes) {
            RaiseError(error_number::kBadFileName);
        }
        const auto put = only_new ? platform::MakeWholeFile : platform::ReplaceWholeFile;
        put(program_.machine.files, program_.InApplicationFolder(name), *bytes + "\r\n");
    });
}

std::string clsINI::Reason() const {
    std::string reason;
    if (set_.BackupFiles.empty()) {
        reason = "There are no Files Selected to Backup.";
    }
    if (!IsSwitch(set_.BackupSubDirectories)) {
        reason = "BackupSubDirectories does not indicate 'ON' or 'OFF'.";
    }
    if (set_.BackupFileName.empty()) {
        reason = "There is no name for the Backup File.";
    }
    if (!IsSwitch(set_.MultiVolumeBackup)) {
        reason = "MultiVolumeBackup does not indicate 'ON' or 'OFF'.";
    }
    if (set_.BackupToDrive.empty()) {
        reason = "There is no Drive for the Backup File.";
    }
    if (!IsSwitch(set_.TimeBackup)) {
        reason = "TimeBackup does not indicate 'ON' or 'OFF'.";
    }
    return reason;
}

bool clsINI::Validate_OnSave() {
    return Reported("clsINI:Validate_OnSave Method", [&] {
        std::string& message = program_.globals.MessageText;
        message = Reason();
        if (message.empty()) {
            return true;
        }
        program_.desktop.Show(
            {"Unable to Save this file:" + program_.globals.CrLf + "Reason: " + message,
             forms::Buttons::kOk, forms::Icon::kExclamation, "INI Validation"});
        return false;
    });
}

// The nine property pairs. Storing a text cannot fail in practice; a failure would still travel as
// any other does, under the property's label.

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
