#include <functional>
#include <optional>
#include <string_view>

#include "common/error.h"
#include "platform/win32/disk_path.h"
#include "platform/win32/handles.h"
#include "platform/win32/system_error.h"
#include "platform/win32/win32_file.h"

namespace vantrel::platform {

namespace {

Ticks ToTicks(const FILETIME& time) {
    return (static_cast<Ticks>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

SearchHandle StartSearch(const std::wstring& pattern, WIN32_FIND_DATAW& data) {
    SearchHandle search(FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &data,
                                         FindExSearchNameMatch, nullptr,
                                         FIND_FIRST_EX_LARGE_FETCH));
    if (search.IsValid() || GetLastError() != ERROR_INVALID_PARAMETER) {
        return search;
    }
    // Older systems and some file servers do not support the fast form.
    return SearchHandle(FindFirstFileExW(pattern.c_str(), FindExInfoStandard, &data,
                                         FindExSearchNameMatch, nullptr, 0));
}

// Tag 0 is no valid tag: the system has not reported the kind of link.
bool IsLink(DWORD attributes, DWORD tag) {
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (tag == IO_REPARSE_TAG_SYMLINK || tag == IO_REPARSE_TAG_MOUNT_POINT || tag == 0);
}

// Works for both structures, whose members have the same names.
template <typename Data>
void TakeFacts(const Data& data, FileInfo& info) {
    info.attributes = data.dwFileAttributes;
    info.size = (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    if (info.IsFolder()) {
        info.size = 0;
    }
    info.times = {ToTicks(data.ftLastWriteTime), ToTicks(data.ftLastAccessTime),
                  ToTicks(data.ftCreationTime)};
}

FileInfo FromFindData(const WIN32_FIND_DATAW& data) {
    FileInfo info;
    info.name = Narrow(data.cFileName);
    TakeFacts(data, info);
    info.is_link = IsLink(data.dwFileAttributes, data.dwReserved0);
    return info;
}

bool IsDots(const WIN32_FIND_DATAW& data) {
    const std::wstring_view name(data.cFileName);
    return name == L"." || name == L"..";
}

// What the system knows under the path itself; a file's size and times are exact there.
std::optional<WIN32_FILE_ATTRIBUTE_DATA> Facts(const DiskPath& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) {
        return std::nullopt;
    }
    return data;
}

std::optional<FileInfo> NothingUnlessDenied(const DiskPath& path) {
    const DWORD code = GetLastError();
    if (code == ERROR_ACCESS_DENIED) {
        RaiseSystemError(code, FileOperation::kFile, path);
    }
    return std::nullopt;
}

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A file or folder opened for `access` to its metadata, not to its content.
FileHandle OpenForFacts(const DiskPath& path, DWORD access) {
    return FileHandle(CreateFileW(path.c_str(), access, kShareAll, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

// Nothing for a text that cannot be a path: for a question, such a file is merely missing.
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

// Systems and file servers differ in the calls that they refuse for a read-only file. The program
// refuses all of them.
void RefuseReadOnly(const DiskPath& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || IsFolder(attributes)) {
        return;
    }
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        RaiseError(error_number::kPermissionDenied);
    }
}

// The attributes of a file or folder that must exist.
DWORD Needed(const DiskPath& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        RaiseSystemError(GetLastError(), FileOperation::kFile, path);
    }
    return attributes;
}

void RaiseUnless(DWORD code, FileOperation operation, const DiskPath& path) {
    if (code != ERROR_SUCCESS) {
        RaiseSystemError(code, operation, path);
    }
}

// Nothing when the path leads nowhere. Raises 70 when access is denied.
std::optional<BY_HANDLE_FILE_INFORMATION> Identity(const FileHandle& file, const DiskPath& path) {
    BY_HANDLE_FILE_INFORMATION facts{};
    if (file.IsValid() && GetFileInformationByHandle(file.Get(), &facts)) {
        return facts;
    }
    const DWORD code = GetLastError();
    if (ErrorNumber(code, FileOperation::kFile) == error_number::kPermissionDenied) {
        RaiseSystemError(code, FileOperation::kFile, path);
    }
    return std::nullopt;
}

// One entry of a folder; see FileSystem::Find and FileSystem::List.
std::optional<FileInfo> FindOne(const DiskPath& path) {
    FileInfo info;
    WIN32_FIND_DATAW data{};
    const SearchHandle search = path.IsRoot() ? SearchHandle() : StartSearch(path.Text(), data);
    if (search.IsValid()) {
        info = FromFindData(data);
    } else {
        if (!path.IsRoot() && GetLastError() != ERROR_ACCESS_DENIED) {
            return std::nullopt;
        }
        info.name = Narrow(path.Name());
    }
    // An entry of a folder can lag behind the file while the file is written or has several names.
    // A folder that may not be searched still allows this question about a file in it.
    const auto facts = Facts(path);
    if (!facts && !search.IsValid()) {
        return NothingUnlessDenied(path);
    }
    if (facts) {
        TakeFacts(*facts, info);
    }
    return info;
}

void ListFolder(const DiskPath& folder, const std::function<bool(const FileInfo&)>& each) {
    WIN32_FIND_DATAW data{};
    const SearchHandle search = StartSearch(folder.Everything(), data);
    if (!search.IsValid()) {
        const DWORD code = GetLastError();
        // A root holds no "." and may be empty; a search then finds not even one entry.
        if (code == ERROR_FILE_NOT_FOUND && FindOne(folder)) {
            return;
        }
        RaiseSystemError(code, FileOperation::kList, folder);
    }
    do {
        if (!IsDots(data) && !each(FromFindData(data))) {
            return;
        }
    } while (FindNextFileW(search.Get(), &data));
    if (GetLastError() != ERROR_NO_MORE_FILES) {
        RaiseSystemError(GetLastError(), FileOperation::kList, folder);
    }
}

class Win32FileSystem : public FileSystem {
  public:
    explicit Win32FileSystem(Pause pause) : pause_(std::move(pause)) {}

    std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override {
        const DiskPath file(path);
        if (mode == OpenMode::kWrite || mode == OpenMode::kAppend) {
            RefuseReadOnly(file);
        }
        return Win32File::Open(file, mode, pause_);
    }

    std::optional<FileInfo> Find(const std::string& path) override {
        const auto disk_path = PathOrNothing(path);
        return disk_path ? FindOne(*disk_path) : std::nullopt;
    }

    void List(const std::string& folder,
              const std::function<bool(const FileInfo&)>& each) override {
        ListFolder(DiskPath(folder), each);
    }

    void MakeFolder(const std::string& path) override {
        const auto folder = PathOrNothing(path);
        if (!folder) {
            RaiseError(error_number::kPathFileAccess);
        }
        if (!CreateDirectoryW(folder->c_str(), nullptr)) {
            RaiseSystemError(GetLastError(), FileOperation::kFolder, *folder);
        }
    }

    void Rename(const std::string& from, const std::string& to) override {
        const DiskPath source(from);
        const DiskPath target(to);
        const FileOperation operation =
            IsFolder(Needed(source)) ? FileOperation::kFolder : FileOperation::kFile;
        // Two letters may be one volume, but Rename never changes the drive letter.
        if (!source.OnSameDrive(target)) {
            RaiseError(error_number::kAcrossDrives);
        }
        if (source.IsRoot()) {
            RaiseError(error_number::kPathFileAccess);
        }
        // The system allows renaming a file to its own name, which is wanted for letter case only.
        if (source.Text() == target.Text()) {
            RaiseError(error_number::kFileExists);
        }
        const DWORD code = Retry([&] {
            return MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) != 0;
        });
        const bool taken = ErrorNumber(code, FileOperation::kFile) == error_number::kFileExists;
        RaiseUnless(code, taken ? FileOperation::kFile : operation, target);
    }

    void Replace(const std::string& from, const std::string& to) override {
        const DiskPath source(from);
        const DiskPath target(to);
        const bool folder = IsFolder(Needed(source));
        if (!source.OnSameDrive(target)) {
            RaiseError(error_number::kAcrossDrives);
        }
        if (folder) {
            RaiseError(error_number::kPermissionDenied);
        }
        RefuseReadOnly(target);
        const DWORD code = Retry([&] {
            return MoveFileExW(source.c_str(), target.c_str(),
                               MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
        });
        RaiseUnless(code, FileOperation::kFile, target);
    }

    void RemoveFile(const std::string& path) override {
        const DiskPath file(path);
        RefuseReadOnly(file);
        RaiseUnless(Retry([&] { return ::DeleteFileW(file.c_str()) != 0; }), FileOperation::kFile,
                    file);
    }

    void RemoveFolder(const std::string& path) override {
        const DiskPath folder(path);
        if (folder.IsRoot()) {
            RaiseError(error_number::kPathFileAccess);
        }
        RaiseUnless(Retry([&] { return RemoveDirectoryW(folder.c_str()) != 0; }),
                    FileOperation::kFolder, folder);
    }

    void SetAttributes(const std::string& path, std::uint32_t attributes) override {
        constexpr DWORD kOurs = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
                                FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;
        // Further attributes that SetFileAttributes would clear.
        constexpr DWORD kKept =
            FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_ATTRIBUTE_OFFLINE | FILE_ATTRIBUTE_TEMPORARY;
        const DiskPath item(path);
        const DWORD after = (Needed(item) & kKept) | (attributes & kOurs);
        if (!SetFileAttributesW(item.c_str(), after == 0 ? FILE_ATTRIBUTE_NORMAL : after)) {
            RaiseSystemError(GetLastError(), FileOperation::kFile, item);
        }
    }

    void SetTimes(const std::string& path, const FileTimes& times) override {
        const DiskPath item(path);
        const FileHandle handle = OpenForFacts(item, FILE_WRITE_ATTRIBUTES);
        if (!handle.IsValid() || !ApplyTimes(handle.Get(), times)) {
            RaiseSystemError(GetLastError(), FileOperation::kFile, item);
        }
    }

    bool SameFile(const std::string& one, const std::string& other) override {
        const auto one_path = PathOrNothing(one);
        const auto other_path = PathOrNothing(other);
        if (!one_path || !other_path) {
            return false;
        }
        // Both stay open until they are compared, so that no file number is reused meanwhile.
        const FileHandle one_handle = OpenForFacts(*one_path, FILE_READ_ATTRIBUTES);
        const auto one_facts = Identity(one_handle, *one_path);
        if (!one_facts) {
            return false;
        }
        const FileHandle other_handle = OpenForFacts(*other_path, FILE_READ_ATTRIBUTES);
        const auto other_facts = Identity(other_handle, *other_path);
        return other_facts &&
               one_facts->dwVolumeSerialNumber == other_facts->dwVolumeSerialNumber &&
               one_facts->nFileIndexHigh == other_facts->nFileIndexHigh &&
               one_facts->nFileIndexLow == other_facts->nFileIndexLow;
    }

  private:
    DWORD Retry(const std::function<bool()>& call) const { return RetryWhileLocked(call, pause_); }

    Pause pause_;
};

}  // namespace

std::unique_ptr<FileSystem> NewWin32FileSystem(Pause pause) {
    return std::make_unique<Win32FileSystem>(std::move(pause));
}

}  // namespace vantrel::platform
