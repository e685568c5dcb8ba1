// One file that is being restored. A new name is written in place; an existing file is replaced by
// a temporary file beside it, unless its content is the same already. Until Commit an existing file
// is untouched; without Commit nothing is left. Used by one thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/machine.h"
#include "zip/base/bytes.h"

namespace vantrel::zip {

class TargetFile {
  public:
    // `folder`, whose path is `folder_path`, exists; `name` may. `size` bytes are to be written.
    // Raises 75 with a description for the user when a folder or a link has the name, or when it is
    // that of `archive`, and what the file system raises.
    TargetFile(const platform::Machine& machine, platform::Folder& folder,
               const std::string& folder_path, const std::string& name, const std::string& archive,
               std::uint64_t size);
    ~TargetFile();
    TargetFile(const TargetFile&) = delete;
    TargetFile& operator=(const TargetFile&) = delete;

    // The final path; it differs from `name` when that is only the short (8.3) name of another
    // file.
    const std::string& Path() const { return path_; }

    void Write(const std::uint8_t* data, std::size_t count);
    // Sets the times, closes, replaces the existing file unless it is equal, sets attributes; what
    // fails is raised.
    void Commit(const platform::FileTimes& times, std::uint32_t attributes);

  private:
    bool OpenNew(platform::Folder& folder, const std::string& name);
    void OpenExisting(const platform::FileInfo& found);
    void OpenBeside();
    bool ExistingContinuesWith(const std::uint8_t* data, std::size_t count);
    void CopyExistingBeside();
    void PutInPlace();

    const platform::Machine& machine_;
    std::string path_;
    std::string temporary_;             // "" when written in place
    std::uint32_t old_attributes_ = 0;  // of the file to be replaced
    const std::uint64_t size_;
    // Open as long as it begins with all data so far, `equal_` bytes; `file_` is null then.
    std::unique_ptr<platform::File> existing_;
    std::uint64_t equal_ = 0;
    Buffer block_;  // of the existing file
    std::unique_ptr<platform::File> file_;
    bool committed_ = false;
};

}  // namespace vantrel::zip
