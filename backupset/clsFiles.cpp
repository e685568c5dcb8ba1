#include "backupset/clsFiles.h"

#include <optional>

#include "backupset/profile_text.h"
#include "common/error.h"
#include "common/path.h"
#include "forms/folder_path.h"
#include "platform/text_file.h"

namespace vantrel {

namespace {

// The text of a profile; nothing when it is missing or cannot be read.
struct Profile {
    std::optional<std::string> text;
    bool missing = false;
};

Profile ReadProfile(platform::FileSystem& files, const std::string& file) {
    try {
        return {platform::ReadWholeFile(files, file)};
    } catch (const Error& error) {
        return {.text = std::nullopt, .missing = error.number() == error_number::kFileNotFound};
    }
}

}  // namespace

std::string StorageProblem(platform::CodePage& code_page, const std::string& path) {
    const auto bytes = code_page.Encode(path);
    if (!bytes) {
        return "Its name holds characters that a Backup Set cannot store.";
    }
    if (bytes->size() <= kMaxValueBytes) {
        return "";
    }
    return "Its path is longer than a Backup Set can store.";
}

ProfileValue clsFiles::ValueIn(const std::string& text, const std::string& section,
                               const std::string& key) {
    const std::string value = profile::FindValue(text, section, key).value_or("");
    return {program_.machine.code_page.Decode(value.substr(0, kMaxValueBytes)),
            value.size() > kMaxValueBytes};
}

std::string clsFiles::ReadINI(const std::string& section, const std::string& key,
                              const std::string& file) {
    const auto text = ReadProfile(program_.machine.files, file).text;
    return ValueIn(text.value_or(""), section, key).text;
}

std::optional<std::vector<ProfileValue>> clsFiles::ReadINI(const std::vector<ProfileKey>& keys,
                                                           const std::string& file) {
    const auto text = ReadProfile(program_.machine.files, file).text;
    if (!text) {
        return std::nullopt;
    }
    std::vector<ProfileValue> values;
    values.reserve(keys.size());
    for (const ProfileKey& key : keys) {
        values.push_back(ValueIn(*text, key.section, key.key));
    }
    return values;
}

void clsFiles::WriteINI(const std::string& section, const std::string& key,
                        const std::string& value, const std::string& file) {
    WriteINI({{section, key, value}}, file);
}

// The text with the new values; nothing when that is no other text.
std::optional<std::string> clsFiles::Changed(const std::string& text,
                                             const std::vector<ProfileKey>& keys) {
    std::string changed = text;
    for (const ProfileKey& key : keys) {
        const auto bytes = program_.machine.code_page.Encode(key.value);
        if (!bytes || !profile::CanHold(*bytes)) {
            continue;
        }
        changed = profile::SetValue(changed, key.section, key.key, *bytes);
    }
    if (changed == text) {
        return std::nullopt;
    }
    return changed;
}

void clsFiles::WriteINI(const std::vector<ProfileKey>& keys, const std::string& file) {
    auto& files = program_.machine.files;
    // Only a missing file may be created, and never over an existing one: the rest of that would be
    // lost.
    const Profile before = ReadProfile(files, file);
    if (before.missing) {
        return MakeINI(keys, file);
    }
    if (!before.text) {
        return;
    }
    const auto after = Changed(*before.text, keys);
    if (!after) {
        return;
    }
    try {
        platform::ReplaceWholeFile(files, file, *after);
    } catch (const Error&) {
        // By rule a profile write reports no failure.
    }
}

void clsFiles::MakeINI(const std::vector<ProfileKey>& keys, const std::string& file) {
    const auto text = Changed("", keys);
    if (!text) {
        return;
    }
    try {
        platform::MakeWholeFile(program_.machine.files, file, *text);
    } catch (const Error&) {
        // By rule a profile write reports no failure.
    }
}

bool clsFiles::Exist(const std::string& path, bool file_test) {
    try {
        return Exists(path, file_test);
    } catch (const Error&) {
        return false;
    }
}

bool clsFiles::Exists(const std::string& path, bool file_test) {
    if (path.empty()) {
        return true;
    }
    const std::string application_folder = program_.machine.process.ApplicationFolder();
    if (!DriveReady(path::DrivePart(path, application_folder))) {
        return false;
    }
    if (!file_test) {
        return IsFolder(path);
    }
    const std::string folder = path::FolderPart(path);
    const std::string name = path::FilePart(path);
    if (!IsFolder(folder)) {
        return false;
    }
    return name == "*.*" || HasFile(folder, name);
}

bool clsFiles::DriveReady(const std::string& drive) {
    // As in a drive list: a letter and a colon, no network path.
    if (!path::HasDrive(drive)) {
        return false;
    }
    try {
        return program_.machine.files.Find(drive.substr(0, 2) + "\\").has_value();
    } catch (const Error&) {
        return true;  // the drive is ready, although its root may not be read
    }
}

bool clsFiles::IsFolder(const std::string& path) {
    const std::string full = OnDrive(path);
    const bool mask = full.find_first_of("*?") != std::string::npos;
    return !full.empty() && !mask && forms::IsFolder(program_.machine.files, full);
}

bool clsFiles::HasFile(const std::string& folder, const std::string& name) {
    // Lists the folder: a direct query would also match a short name, or a name followed by spaces
    // or dots.
    auto& code_page = program_.machine.code_page;
    const std::string sought = code_page.Upper(name);
    bool found = false;
    program_.machine.files.List(OnDrive(folder), [&](const platform::FileInfo& entry) {
        found = !entry.IsFolder() && code_page.Upper(entry.name) == sought;
        return !found;
    });
    return found;
}

std::string clsFiles::OnDrive(const std::string& path) {
    return path::Normalize(path::OnDriveOf(program_.machine.process.ApplicationFolder(), path));
}

std::string clsString::Backslash(const std::string& text) {
    return Reported("clsString:Backslash Method", [&] { return path::WithBackslash(text); });
}

std::vector<std::string> SetFileNames(forms::Program& program) {
    constexpr std::string_view kExtension = ".INI";
    std::vector<std::string> names;
    auto& machine = program.machine;
    machine.files.List(machine.process.ApplicationFolder(), [&](const platform::FileInfo& file) {
        const std::string folded = machine.code_page.Fold(file.name);
        const bool plain = !file.IsFolder() && !file.IsHiddenOrSystem();
        if (plain && folded.ends_with(kExtension)) {
            names.push_back(file.name);
        }
        return true;
    });
    return names;
}

}  // namespace vantrel
