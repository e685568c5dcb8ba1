// Files and folders of the system. Any thread may call it. Retries calls that fail because another
// program holds the file, except to open for reading; see platform/retry.h.
#pragma once

#include <utility>

#include "platform/file_system.h"
#include "platform/win32/system_error.h"

namespace vantrel::platform {

class Win32FileSystem final : public FileSystem {
  public:
    explicit Win32FileSystem(Pause pause = ::Sleep) : pause_(std::move(pause)) {}

    std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override;
    std::optional<FileInfo> Find(const std::string& path) override;
    void List(const std::string& folder, const std::function<bool(const FileInfo&)>& each) override;
    void MakeFolder(const std::string& path) override;
    void Rename(const std::string& from, const std::string& to) override;
    void Replace(const std::string& from, const std::string& to) override;
    void RemoveFile(const std::string& path) override;
    void RemoveFolder(const std::string& path) override;
    void SetAttributes(const std::string& path, std::uint32_t attributes) override;
    void SetTimes(const std::string& path, const FileTimes& times) override;
    bool SameFile(const std::string& one, const std::string& other) override;

  private:
    DWORD Retry(const std::function<bool()>& call) const { return RetryWhileLocked(call, pause_); }

    Pause pause_;
};

}  // namespace vantrel::platform
