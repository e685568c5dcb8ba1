// The one way from a program path to the system: every path that reaches a system call comes out of
// this class, in the form that the system takes literally. Names may then be long, end in dots or
// blanks, or be those of devices.
#pragma once

#include <string>

namespace vantrel::platform {

class DiskPath {
  public:
    // Takes "C:", "C:\", "C:\Folder\Name", "\\server\share\Name" and the same behind "\\?\" or
    // "\\?\UNC\"; "/" counts as "\", repeated separators as one; "." and ".." are resolved. Raises
    // 52 for anything else and for names that no Windows file system holds: characters below a
    // blank, any of < > : " | ? *, or more than 255 UTF-16 units. A stream of a file ("a:b") can
    // therefore never be meant.
    explicit DiskPath(const std::string& program_path);

    // "\\?\C:\Folder\Name"; a root ends in "\", nothing else does.
    const std::wstring& Text() const { return text_; }
    const wchar_t* c_str() const { return text_.c_str(); }
    // "\\?\C:\" or "\\?\UNC\server\share\".
    const std::wstring& Root() const { return root_; }
    // "C:\" or "\\server\share\", for the calls that ask about drives.
    std::wstring PlainRoot() const;
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
