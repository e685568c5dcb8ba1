#include "platform/win32/win32_file_system.h"

#include "common/error.h"
#include "platform/win32/disk_path.h"
#include "platform/win32/find_data.h"
#include "platform/win32/handles.h"
#include "platform/win32/system_error.h"
#include "platform/win32/win32_file.h"

namespace vantrel::platform {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A file or folder opened for `access` to what is known about it, not to its content.
FileHandle OpenForFacts(const DiskPath& path, DWORD access) {
    return FileHandle(CreateFileW(path.c_str(), access, kShareAll, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

// Nothing for what cannot be a path: such a thing is merely missing to a question.
std::optional<DiskPath> PathOrNothing(const std::string& path) {
    try {
        return DiskPath(path);
    } catch (const Error&) {
        return std::nullopt;
    }
}

bool IsFolder(DWORD attributes) {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// Systems and file servers differ in what they let happen to a read-only file; here it is one rule.
void RefuseReadOnly(const DiskPath& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || IsFolder(attributes)) return;
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) RaiseError(error_number::kPermissionDenied);
}

// The attributes of what must be there.
DWORD Needed(const DiskPath& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) RaiseSystemError(GetLastError(), Deed::kFile, path);
    return attributes;
}

void RaiseUnless(DWORD code, Deed deed, const DiskPath& path) {
    if (code != ERROR_SUCCESS) RaiseSystemError(code, deed, path);
}

// Nothing when the path leads nowhere; who may not look is told so.
std::optional<BY_HANDLE_FILE_INFORMATION> Identity(const FileHandle& file, const DiskPath& path) {
    BY_HANDLE_FILE_INFORMATION facts{};
    if (file.IsValid() && GetFileInformationByHandle(file.Get(), &facts)) return facts;
    const DWORD code = GetLastError();
    if (ErrorNumber(code, Deed::kFile) == error_number::kPermissionDenied) {
        RaiseSystemError(code, Deed::kFile, path);
    }
    return std::nullopt;
}

}  // namespace

std::unique_ptr<File> Win32FileSystem::Open(const std::string& path, OpenMode mode) {
    const DiskPath file(path);
    if (mode == OpenMode::kWrite || mode == OpenMode::kAppend) RefuseReadOnly(file);
    return Win32File::Open(file, mode, pause_);
}

std::optional<FileInfo> Win32FileSystem::Find(const std::string& path) {
    const auto disk_path = PathOrNothing(path);
    return disk_path ? FindOne(*disk_path) : std::nullopt;
}

void Win32FileSystem::List(const std::string& folder,
                           const std::function<bool(const FileInfo&)>& each) {
    ListFolder(DiskPath(folder), each);
}

void Win32FileSystem::MakeFolder(const std::string& path) {
    const auto folder = PathOrNothing(path);
    if (!folder) RaiseError(error_number::kPathFileAccess);
    if (!CreateDirectoryW(folder->c_str(), nullptr)) {
        RaiseSystemError(GetLastError(), Deed::kFolder, *folder);
    }
}

void Win32FileSystem::Rename(const std::string& from, const std::string& to) {
    const DiskPath source(from);
    const DiskPath target(to);
    const Deed deed = IsFolder(Needed(source)) ? Deed::kFolder : Deed::kFile;
    // Two letters may be one volume, but a name never changes its drive.
    if (!source.OnSameDrive(target)) RaiseError(error_number::kAcrossDrives);
    if (source.IsRoot()) RaiseError(error_number::kPathFileAccess);
    // To the system a name is free for its own file, which is right for letter case alone.
    if (source.Text() == target.Text()) RaiseError(error_number::kFileExists);
    const DWORD code = Patiently(
        [&] { return MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) != 0; });
    const bool taken = ErrorNumber(code, Deed::kFile) == error_number::kFileExists;
    RaiseUnless(code, taken ? Deed::kFile : deed, target);
}

void Win32FileSystem::Replace(const std::string& from, const std::string& to) {
    const DiskPath source(from);
    const DiskPath target(to);
    const bool folder = IsFolder(Needed(source));
    if (!source.OnSameDrive(target)) RaiseError(error_number::kAcrossDrives);
    if (folder) RaiseError(error_number::kPermissionDenied);
    RefuseReadOnly(target);
    const DWORD code = Patiently([&] {
        return MoveFileExW(source.c_str(), target.c_str(),
                           MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
    });
    RaiseUnless(code, Deed::kFile, target);
}

void Win32FileSystem::RemoveFile(const std::string& path) {
    const DiskPath file(path);
    RefuseReadOnly(file);
    RaiseUnless(Patiently([&] { return ::DeleteFileW(file.c_str()) != 0; }), Deed::kFile, file);
}

void Win32FileSystem::RemoveFolder(const std::string& path) {
    const DiskPath folder(path);
    if (folder.IsRoot()) RaiseError(error_number::kPathFileAccess);
    RaiseUnless(Patiently([&] { return RemoveDirectoryW(folder.c_str()) != 0; }), Deed::kFolder,
                folder);
}

void Win32FileSystem::SetAttributes(const std::string& path, std::uint32_t attributes) {
    constexpr DWORD kOurs = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
                            FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;
    // The others that can be set by name, and are kept.
    constexpr DWORD kKept =
        FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_ATTRIBUTE_OFFLINE | FILE_ATTRIBUTE_TEMPORARY;
    const DiskPath item(path);
    const DWORD after = (Needed(item) & kKept) | (attributes & kOurs);
    if (!SetFileAttributesW(item.c_str(), after == 0 ? FILE_ATTRIBUTE_NORMAL : after)) {
        RaiseSystemError(GetLastError(), Deed::kFile, item);
    }
}

void Win32FileSystem::SetTimes(const std::string& path, const FileTimes& times) {
    const DiskPath item(path);
    const FileHandle handle = OpenForFacts(item, FILE_WRITE_ATTRIBUTES);
    if (!handle.IsValid() || !ApplyTimes(handle.Get(), times)) {
        RaiseSystemError(GetLastError(), Deed::kFile, item);
    }
}

bool Win32FileSystem::SameFile(const std::string& one, const std::string& other) {
    const auto one_path = PathOrNothing(one);
    const auto other_path = PathOrNothing(other);
    if (!one_path || !other_path) return false;
    // Both stay open until they are compared, so that neither number is given away meanwhile.
    const FileHandle one_handle = OpenForFacts(*one_path, FILE_READ_ATTRIBUTES);
    const auto one_facts = Identity(one_handle, *one_path);
    if (!one_facts) return false;
    const FileHandle other_handle = OpenForFacts(*other_path, FILE_READ_ATTRIBUTES);
    const auto other_facts = Identity(other_handle, *other_path);
    return other_facts && one_facts->dwVolumeSerialNumber == other_facts->dwVolumeSerialNumber &&
           one_facts->nFileIndexHigh == other_facts->nFileIndexHigh &&
           one_facts->nFileIndexLow == other_facts->nFileIndexLow;
}

}  // namespace vantrel::platform
