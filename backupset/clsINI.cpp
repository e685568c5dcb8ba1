#include "backupset/clsINI.h"

#include <algorithm>

#include "backupset/clsString.h"
#include "backupset/file_header.h"
#include "backupset/utf8.h"
#include "common/dated_folder.h"
#include "common/error.h"
#include "common/product.h"
#include "forms/folder_path.h"
#include "platform/text_file.h"

namespace vantrel {

// The section and key of a field. "Destination" finds the "[DESTINATION]" of the template: section
// names are matched without regard to case.
struct clsINI::KeyPlace {
    const char* section;
    const char* key;
    Field value;
};

const clsINI::KeyPlace clsINI::kPlaces[9] = {
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
    const std::size_t length = utf8::Length(name);
    if (length < kExtensionLength) {
        throw Error(kInvalidProcedureCall, product::kName, "Invalid procedure call or argument");
    }
    return utf8::Left(name, length - kExtensionLength);
}

std::string TooLong(const std::string& what) {
    return what + " is longer than " + std::to_string(kMaxValueBytes) + " bytes";
}

bool IsSlash(char c) { return c == '\\' || c == '/'; }

// Of a source, which needs a folder on its drive.
bool HasRoot(const std::string& path) {
    const std::size_t slash = forms::HasDrive(path) ? 2 : 0;
    return path.size() > slash && IsSlash(path[slash]);
}

// Of a destination: "E:" is the root of that drive.
bool HasDriveOrRoot(const std::string& path) { return forms::HasDrive(path) || HasRoot(path); }

std::string WithoutRoot(const std::string& key, const std::string& path) {
    return key + " does not begin with the root of a drive: \"" + path + "\"";
}

bool IsSwitch(const std::string& value) { return value == "OFF" || value == "ON"; }

}  // namespace

std::string clsINI::Backup_Parts(const std::string& path, int part) const {
    return Reported("clsINI:Backup_Parts Method", [&]() -> std::string {
        if (part == kDrive) {
            const bool has_drive = path != "\\" && utf8::At(path, 1) == ":";
            return utf8::Left(has_drive ? path : program_.machine.process.ApplicationFolder(),
                              kRootLength);
        }
        const std::size_t last = path.rfind('\\');
        if (last == 0) return "";
        const std::size_t split = last == std::string::npos ? 0 : last + 1;
        if (part == kFolder) return path.substr(0, split);
        return part == kFile ? path.substr(split) : "";
    });
}

void clsINI::Read_INI(const std::string& path) {
    Reported("clsINI:Read_INI Method", [&] {
        const auto values = clsFiles(program_).ReadINI(Keys(), path);
        was_read_ = values.has_value();
        set_ = {};
        cut_ = {};
        if (!values) return;
        auto value = values->begin();
        for (const KeyPlace& place : kPlaces) {
            set_.*place.value = value->text;
            if (value->is_cut) cut_.*place.value = value->text;
            ++value;
        }
    });
}

// Where each value stands, with the value that is loaded.
std::vector<ProfileKey> clsINI::Keys() const {
    std::vector<ProfileKey> keys;
    for (const KeyPlace& place : kPlaces) {
        keys.push_back({place.section, place.key, set_.*place.value});
    }
    return keys;
}

void clsINI::ConfirmBackslash(const std::string& path) {
    Reported("clsINI:ConfirmBackslash Method", [&] {
        Read_INI(path);
        const bool is_storable = SaveProblem().empty();
        set_ = Normalized();
        if (!is_storable) return;
        // Values that stood in no file that could be read go into a new one, never into another.
        clsFiles files(program_);
        was_read_ ? files.WriteINI(Keys(), path) : files.MakeINI(Keys(), path);
    });
}

clsINI::BackupSet clsINI::Normalized() const {
    BackupSet set = set_;
    set.BackupToDrive = clsString().Backslash(set.BackupToDrive);
    if (!set.RestoreFromDrive.empty()) {
        set.RestoreFromDrive = clsString().Backslash(set.RestoreFromDrive);
    }
    for (const KeyPlace& place : kPlaces) {
        std::string& value = set.*place.value;
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
    if (!is_dated || !IsTooLong(set_.BackupToDrive + dated_folder)) return "";
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
        if (!problem.empty()) return problem;
    }
    if (!HasRoot(set_.BackupFiles)) return WithoutRoot("BackupFiles", set_.BackupFiles);
    if (!HasDriveOrRoot(set_.BackupToDrive))
        return WithoutRoot("BackupToDrive", set_.BackupToDrive);
    return "";
}

std::string clsINI::RestoreSourceProblem() const {
    if (IsCut(&BackupSet::RestoreFromDrive)) return TooLong("RestoreFromDrive");
    return IsCut(&BackupSet::RestoreFileName) ? TooLong("RestoreFileName") : "";
}

std::string clsINI::SaveProblem() const {
    clsINI saved = *this;
    saved.set_ = Normalized();
    for (const KeyPlace& place : kPlaces) {
        if (IsCut(place.value) || IsTooLong(saved.set_.*place.value)) return TooLong(place.key);
    }
    const std::string problem = saved.DestinationProblem();
    return problem.empty() ? saved.ArchiveNameProblem() : problem;
}

std::string clsINI::Template(const std::string& name) const {
    auto& machine = program_.machine;
    const std::string root =
        machine.code_page.Upper(utf8::Left(machine.process.ApplicationFolder(), kRootLength));
    std::vector<std::string> lines = FileHeader();
    lines.insert(lines.end(), {"[BACKUP SOURCE]", "BackupFiles=" + root + "*.*",
                               "BackupSubDirectories=OFF", "", "[DESTINATION]",
                               "BackupFileName=" + machine.code_page.Upper(WithoutExtension(name)),
                               "MultiVolumeBackup=ON", "BackupToDrive=" + root, "TimeBackup=ON", "",
                               "[RESTORE SOURCE]", "RestoreFromDrive=", "RestoreFileName=", "",
                               "[RESTORE DESTINATION]", "RestoreDestination="});
    std::string text;
    for (const std::string& line : lines) text += line + "\r\n";
    return text;
}

void clsINI::Create_INI(const std::string& name, bool only_new) {
    Reported("clsINI:Create_INI Method", [&] {
        program_.globals.TextBuffer.clear();
        program_.globals.TextBuffer = Template(name);
        const auto bytes = program_.machine.code_page.Encode(program_.globals.TextBuffer);
        if (!bytes) RaiseError(error_number::kBadFileName);
        const auto put = only_new ? platform::MakeWholeFile : platform::ReplaceWholeFile;
        put(program_.machine.files, program_.InApplicationFolder(name), *bytes + "\r\n");
    });
}

std::string clsINI::Reason() const {
    std::string reason;
    if (set_.BackupFiles.empty()) reason = "There are no Files Selected to Backup.";
    if (!IsSwitch(set_.BackupSubDirectories)) {
        reason = "BackupSubDirectories does not indicate 'ON' or 'OFF'.";
    }
    if (set_.BackupFileName.empty()) reason = "There is no name for the Backup File.";
    if (!IsSwitch(set_.MultiVolumeBackup)) {
        reason = "MultiVolumeBackup does not indicate 'ON' or 'OFF'.";
    }
    if (set_.BackupToDrive.empty()) reason = "There is no Drive for the Backup File.";
    if (!IsSwitch(set_.TimeBackup)) reason = "TimeBackup does not indicate 'ON' or 'OFF'.";
    return reason;
}

bool clsINI::Validate_OnSave() {
    return Reported("clsINI:Validate_OnSave Method", [&] {
        std::string& message = program_.globals.MessageText;
        message = Reason();
        if (message.empty()) return true;
        program_.desktop.Show(
            {"Unable to Save this file:" + program_.globals.CrLf + "Reason: " + message,
             forms::Buttons::kOk, forms::Icon::kExclamation, "INI Validation"});
        return false;
    });
}

}  // namespace vantrel
