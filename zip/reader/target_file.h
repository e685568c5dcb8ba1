// One file that is being restored. A new name is written in place; over an existing file the data
// goes beside it under a temporary name first. Until Commit the file that was there is untouched;
// without Commit nothing is left.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/machine.h"

namespace vantrel::zip {

class TargetFile {
  public:
    // `folder`, which is at `folder_path`, exists; `name` may. Raises 75 with words for the user
    // when a folder or a link has the name, or when it is that of `archive`, and what the disk
    // raises.
    TargetFile(const platform::Machine& machine, platform::Folder& folder,
               const std::string& folder_path, const std::string& name, const std::string& archive);
    ~TargetFile();
    TargetFile(const TargetFile&) = delete;
    TargetFile& operator=(const TargetFile&) = delete;

    // Where the data will be in the end; another name than asked for when that one is only the
    // short alias of some other file.
    const std::string& Path() const { return path_; }

    void Write(const void* data, std::size_t count) { file_->Write(data, count); }
    // Times, close, put in place, attributes.
    void Commit(const platform::FileTimes& times, std::uint32_t attributes);

  private:
    bool OpenNew(platform::Folder& folder, const std::string& name);
    void OpenBeside(const std::string& folder);
    void PutInPlace();

    platform::Machine machine_;
    std::string path_;
    std::string temporary_;             // "" when written in place
    std::uint32_t old_attributes_ = 0;  // of the file to be replaced
    std::unique_ptr<platform::File> file_;
    bool committed_ = false;
};

}  // namespace vantrel::zip
