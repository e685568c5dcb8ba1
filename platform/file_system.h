// Files and folders in Windows' terms on every machine: Windows paths ("C:\Data\a.txt",
// "\\server\share\x") in UTF-8, Windows attributes and times, names compared without regard to
// case. Failures are raised as vantrel::Error with these numbers: opening a missing file 53; a
// missing folder in a path 76; locked, denied or read-only 70; renaming onto an existing name 58;
// renaming across drives 74; making or renaming a folder that cannot be 75; a full disk 61; a drive
// that is not there 68, that has no disk 71; a malformed name 52; anything else 57. Every member
// may be called from any thread; one File belongs to one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace vantrel::platform {

// 100 ns steps since 1601-01-01 00:00 UTC, the unit of Windows file times.
using Ticks = std::uint64_t;

// Attribute bits, as Windows numbers them.
namespace attribute {
constexpr std::uint32_t kReadOnly = 0x01;
constexpr std::uint32_t kHidden = 0x02;
constexpr std::uint32_t kSystem = 0x04;
constexpr std::uint32_t kFolder = 0x10;
constexpr std::uint32_t kArchive = 0x20;
constexpr std::uint32_t kDevice = 0x40;  // neither file nor folder: pipes and the like
constexpr std::uint32_t kReparse = 0x400;
}  // namespace attribute

// To be set, 0 leaves a time as it is; a host that cannot set the time of creation leaves that one.
struct FileTimes {
    Ticks modified = 0;
    Ticks accessed = 0;
    Ticks created = 0;
};

struct FileInfo {
    std::string name;  // last component, spelled as on disk
    std::uint32_t attributes = 0;
    std::uint64_t size = 0;  // bytes; 0 for folders
    FileTimes times;
    bool is_link = false;  // symbolic link or mount point; cloud placeholders are not links

    bool IsFolder() const { return (attributes & attribute::kFolder) != 0; }
    bool IsHiddenOrSystem() const {
        return (attributes & (attribute::kHidden | attribute::kSystem)) != 0;
    }
};

enum class OpenMode {
    kRead,  // must exist; others may read, write and rename it meanwhile
    // The same, but others may not write it, and a file that another has opened for writing is
    // locked (70). A host refuses only writers of this process.
    kReadUnchanging,
    kWrite,      // created, or emptied; others may read it
    kAppend,     // created, or written at its end; others may read and append
    kCreateNew,  // must not exist (58); readable and writable; others may not open it
};

// An open file. Close reports failures; the destructor does not.
class File {
  public:
    virtual ~File() = default;
    // Reads up to `count` bytes and returns how many; fewer only at the end of the file, 0 there.
    virtual std::size_t Read(void* buffer, std::size_t count) = 0;
    // Writes all `count` bytes or raises.
    virtual void Write(const void* data, std::size_t count) = 0;
    // Moves to `position` bytes from the start, for the next Read or Write.
    virtual void Seek(std::uint64_t position) = 0;
    virtual std::uint64_t Size() = 0;
    // Cuts the file to `size` bytes; the position becomes that end.
    virtual void Truncate(std::uint64_t size) = 0;
    // Sets the three times; takes effect at the latest when the file is closed.
    virtual void SetTimes(const FileTimes& times) = 0;
    // Returns when everything written is on the medium.
    virtual void Flush() = 0;
    virtual void Close() = 0;
};

// A folder in which several files are created one after the other, without resolving its path each
// time. Use it briefly: files are created in the same folder even after that has been renamed.
class Folder {
  public:
    virtual ~Folder() = default;
    // As FileSystem::Open for a new file (kCreateNew) of this name in the folder.
    virtual std::unique_ptr<File> Create(const std::string& name) = 0;
};

class FileSystem {
  public:
    virtual ~FileSystem() = default;

    virtual std::unique_ptr<File> Open(const std::string& path, OpenMode mode) = 0;
    // Folder::Create raises the failures of `path`. Must not outlive the file system.
    virtual std::unique_ptr<Folder> OpenFolder(const std::string& path);

    // The file or folder at `path` (a drive root is a folder named ""); nothing when it is missing,
    // its folder or drive is missing, or the drive has no disk. Raises only when access is denied.
    virtual std::optional<FileInfo> Find(const std::string& path) = 0;

    // Calls `each` for every entry of `folder` except "." and "..", in the system's order, until it
    // returns false. One pass over the folder, nothing is opened. Raises 76 for a missing folder,
    // 75 for one that may not be read, 68 and 71 for drives.
    virtual void List(const std::string& folder,
                      const std::function<bool(const FileInfo&)>& each) = 0;

    // Makes one folder; its parent must exist (76). Raises 75 when the name is taken or not
    // allowed.
    virtual void MakeFolder(const std::string& path) = 0;
    // Renames a file or folder on its drive; the new name must be free (58).
    virtual void Rename(const std::string& from, const std::string& to) = 0;
    // Puts file `from` in the place of `to` (which may exist) in one step: at any moment a reader
    // of `to` finds the old file or the new one. A read-only or locked `to` is left alone (70).
    virtual void Replace(const std::string& from, const std::string& to) = 0;
    // Removes one file; a read-only one is refused (70).
    virtual void RemoveFile(const std::string& path) = 0;
    // Removes one empty folder (75 when it is not empty or in use).
    virtual void RemoveFolder(const std::string& path) = 0;
    // Sets the read-only, hidden, system and archive bits of a file or folder; others are ignored.
    virtual void SetAttributes(const std::string& path, std::uint32_t attributes) = 0;
    // Sets the times of a file or folder by name.
    virtual void SetTimes(const std::string& path, const FileTimes& times) = 0;
    // Whether both paths lead to the same file or folder, in any spelling. False when either is
    // missing.
    virtual bool SameFile(const std::string& one, const std::string& other) = 0;
};

}  // namespace vantrel::platform
