#include "platform/win32/find_data.h"

#include <string_view>

#include "common/error.h"
#include "platform/win32/handles.h"
#include "platform/win32/system_error.h"
#include "platform/win32/wide.h"

namespace vantrel::platform {

namespace {

SearchHandle StartSearch(const std::wstring& pattern, WIN32_FIND_DATAW& data) {
    SearchHandle search(FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &data,
                                         FindExSearchNameMatch, nullptr,
                                         FIND_FIRST_EX_LARGE_FETCH));
    if (search.IsValid() || GetLastError() != ERROR_INVALID_PARAMETER) return search;
    // A system, or a file server behind it, that does not know the fast form.
    return SearchHandle(FindFirstFileExW(pattern.c_str(), FindExInfoStandard, &data,
                                         FindExSearchNameMatch, nullptr, 0));
}

// Tag 0 is no tag of any file: the system did not say what kind of link it is.
bool IsLink(DWORD attributes, DWORD tag) {
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (tag == IO_REPARSE_TAG_SYMLINK || tag == IO_REPARSE_TAG_MOUNT_POINT || tag == 0);
}

// Works for both kinds of data, whose members bear the same names.
template <typename Data>
void TakeFacts(const Data& data, FileInfo& info) {
    info.attributes = data.dwFileAttributes;
    info.size = (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    if (info.IsFolder()) info.size = 0;
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

bool Facts(const DiskPath& path, FileInfo& info) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) return false;
    TakeFacts(data, info);
    return true;
}

std::optional<FileInfo> NothingUnlessDenied(const DiskPath& path) {
    const DWORD code = GetLastError();
    if (code == ERROR_ACCESS_DENIED) RaiseSystemError(code, Deed::kFile, path);
    return std::nullopt;
}

}  // namespace

Ticks ToTicks(const FILETIME& time) {
    return (static_cast<Ticks>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

std::optional<FileInfo> FindOne(const DiskPath& path) {
    FileInfo info;
    if (path.IsRoot()) {
        if (Facts(path, info)) return info;
        return NothingUnlessDenied(path);
    }
    WIN32_FIND_DATAW data{};
    const SearchHandle search = StartSearch(path.Text(), data);
    if (search.IsValid()) {
        info = FromFindData(data);
        // A folder's entry may lag behind the file: while it is written, or has several names.
        Facts(path, info);
        return info;
    }
    if (GetLastError() != ERROR_ACCESS_DENIED) return std::nullopt;
    // The folder may not be searched, yet the file in it may be reached by who knows its name.
    info.name = Narrow(path.Name());
    if (Facts(path, info)) return info;
    return NothingUnlessDenied(path);
}

void ListFolder(const DiskPath& folder, const std::function<bool(const FileInfo&)>& each) {
    WIN32_FIND_DATAW data{};
    const SearchHandle search = StartSearch(folder.Everything(), data);
    if (!search.IsValid()) {
        const DWORD code = GetLastError();
        // A root holds no "." and may be empty; a search then finds not even one entry.
        if (code == ERROR_FILE_NOT_FOUND && FindOne(folder)) return;
        RaiseSystemError(code, Deed::kList, folder);
    }
    do {
        if (!IsDots(data) && !each(FromFindData(data))) return;
    } while (FindNextFileW(search.Get(), &data));
    if (GetLastError() != ERROR_NO_MORE_FILES) {
        RaiseSystemError(GetLastError(), Deed::kList, folder);
    }
}

}  // namespace vantrel::platform
