// The texts that the system takes and returns: UTF-16, and paths in the form that it takes
// literally.
#pragma once

#include <string>
#include <string_view>

namespace vantrel::platform {

// Conversion between the program's UTF-8 and the system's UTF-16. Both directions keep lone
// surrogates, which names on disk may hold, so that every name returns unchanged.
std::wstring Wide(std::string_view utf8);
std::string Narrow(std::wstring_view utf16);

// The plain form of a path: without "\\?\" or, for a share, "\\server\share".
std::wstring PlainPath(std::wstring_view path);

// The path of every system call on files and folders. Names may be long, end in dots or spaces, or
// be those of devices.
class DiskPath {
  public:
    // Takes "C:", "C:\", "C:\Folder\Name", "\\server\share\Name" and the same behind "\\?\" or
    // "\\?\UNC\"; "/" counts as "\", repeated separators as one; "." and ".." are resolved. Raises
    // 52 for anything else and for names that no Windows file system holds: characters below a
    // space, any of < > : " | ? *, or more than 255 UTF-16 units. A stream of a file ("a:b") can
    // therefore never be meant.
    explicit DiskPath(const std::string& program_path);

    // "\\?\C:\Folder\Name"; a root ends in "\", nothing else does.
    const std::wstring& Text() const { return text_; }
    const wchar_t* c_str() const { return text_.c_str(); }
    // "\\?\C:\" or "\\?\UNC\server\share\".
    const std::wstring& Root() const { return root_; }
    // "C:\" or "\\server\share\", for the calls that ask about drives.
    std::wstring PlainRoot() const { return PlainPath(root_); }
    bool IsRoot() const { return text_.size() == root_.size(); }
    // The last name, empty at a root.
    std::wstring Name() const;
    // The path of everything in this folder, for a search.
    std::wstring Everything() const;
    // The folder that holds this one; a root is its own.
    DiskPath Parent() const;
    // Whether both lie on the same drive letter or share, letter case aside.
    bool OnSameDrive(const DiskPath& other) const;

  private:
    DiskPath() = default;
    std::wstring root_;
    std::wstring text_;
};

}  // namespace vantrel::platform
