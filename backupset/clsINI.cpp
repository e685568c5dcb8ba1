#include "backupset/clsINI.h"

#include <iterator>

#include "common/error.h"
#include "common/file_name.h"
#include "common/path.h"
#include "common/product.h"
#include "common/utf.h"
#include "platform/text_file.h"

namespace vantrel {

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
        for (std::size_t i = 0; i < std::size(kProperties); ++i) {
            SetProperty& property = this->*kProperties[i];
            property.text_ = was_read_ ? (*values)[i].text : "";
            property.cut_ = was_read_ && (*values)[i].is_cut ? property.text_ : "";
        }
    });
}

// Where each value stands, with the value that is loaded.
std::vector<ProfileKey> clsINI::Keys() const {
    std::vector<ProfileKey> keys;
    for (const auto member : kProperties) {
        const SetProperty& property = this->*member;
        keys.push_back({property.section_, property.key_, property.text_});
    }
    return keys;
}

void clsINI::ConfirmBackslash(const std::string& path) {
    Reported("clsINI:ConfirmBackslash Method", [&] {
        Read_INI(path);
        const bool is_storable = SaveProblem().empty();
        Normalize();
        if (!is_storable) {
            return;
        }
        // Values that stood in no file that could be read go into a new one, never into another.
        clsFiles files(program_);
        was_read_ ? files.WriteINI(Keys(), path) : files.MakeINI(Keys(), path);
    });
}

void clsINI::Normalize() {
    BackupToDrive.text_ = path::WithBackslash(BackupToDrive.text_);
    if (!RestoreFromDrive.text_.empty()) {
        RestoreFromDrive.text_ = path::WithBackslash(RestoreFromDrive.text_);
    }
    for (const auto member : kProperties) {
        std::string& text = (this->*member).text_;
        text = program_.machine.code_page.Upper(text);
    }
}

bool clsINI::IsTooLong(const std::string& value) const {
    const auto bytes = program_.machine.code_page.Encode(value);
    return bytes && bytes->size() > kMaxValueBytes;
}

std::string clsINI::SourceProblem() const {
    const bool is_fine = !BackupFiles.IsCut() && !IsTooLong(BackupFiles.text_);
    return is_fine ? "" : TooLong("BackupFiles");
}

std::string clsINI::DestinationProblem() const {
    if (BackupToDrive.IsCut() || IsTooLong(BackupToDrive.text_)) {
        return TooLong("BackupToDrive");
    }
    const bool is_dated = TimeBackup.text_ == "ON";
    const std::string dated_folder(kDatedFolderNameLength + 1, '\\');
    if (!is_dated || !IsTooLong(BackupToDrive.text_ + dated_folder)) {
        return "";
    }
    return TooLong("BackupToDrive with the name of a dated folder");
}

std::string clsINI::ArchiveNameProblem() const {
    const bool is_fine = !BackupFileName.IsCut() && !IsTooLong(BackupFileName.text_ + ".zip");
    return is_fine ? "" : TooLong("BackupFileName with .zip");
}

std::string clsINI::BackupProblem() const {
    for (const std::string& problem :
         {SourceProblem(), DestinationProblem(), ArchiveNameProblem()}) {
        if (!problem.empty()) {
            return problem;
        }
    }
    if (!HasRoot(BackupFiles.text_)) {
        return WithoutRoot("BackupFiles", BackupFiles.text_);
    }
    if (!HasDriveOrRoot(BackupToDrive.text_)) {
        return WithoutRoot("BackupToDrive", BackupToDrive.text_);
    }
    return "";
}

std::string clsINI::RestoreSourceProblem() const {
    if (RestoreFromDrive.IsCut()) {
        return TooLong("RestoreFromDrive");
    }
    return RestoreFileName.IsCut() ? TooLong("RestoreFileName") : "";
}

std::string clsINI::SaveProblem() const {
    clsINI saved = *this;
    saved.Normalize();
    for (const auto member : kProperties) {
        if ((this->*member).IsCut() || IsTooLong((saved.*member).text_)) {
            return TooLong((this->*member).key_);
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
    const struct {
        bool is_valid;
        const char* otherwise;
    } checks[] = {
        {!BackupFiles.text_.empty(), "There are no Files Selected to Backup."},
        {IsSwitch(BackupSubDirectories.text_),
         "BackupSubDirectories does not indicate 'ON' or 'OFF'."},
        {!BackupFileName.text_.empty(), "There is no name for the Backup File."},
        {IsSwitch(MultiVolumeBackup.text_), "MultiVolumeBackup does not indicate 'ON' or 'OFF'."},
        {!BackupToDrive.text_.empty(), "There is no Drive for the Backup File."},
        {IsSwitch(TimeBackup.text_), "TimeBackup does not indicate 'ON' or 'OFF'."},
    };
    std::string reason;
    for (const auto& check : checks) {
        if (!check.is_valid) {
            reason = check.otherwise;
        }
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

// Storing a text cannot fail in practice; a failure would still travel as any other does, under the
// property's label.
std::string SetProperty::operator()() const {
    return Reported("clsINI:" + std::string(key_) + " Property Get", [&] { return text_; });
}

void SetProperty::operator()(const std::string& value) {
    Reported("clsINI:" + std::string(key_) + " Property Let", [&] { text_ = value; });
}

}  // namespace vantrel
