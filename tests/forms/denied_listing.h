// A file system with one folder that may not be read, and one more that is there: all else is asked
// of the one behind it.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "common/error.h"
#include "platform/file_system.h"

namespace vantrel::test {

class DeniedListing : public platform::FileSystem {
  public:
    DeniedListing(platform::FileSystem& behind, std::string denied)
        : behind_(behind), denied_(std::move(denied)) {}
    std::string folder_there;

    std::optional<platform::FileInfo> Find(const std::string& path) override {
        if (path != folder_there || path.empty()) {
            return path.starts_with("\\\\") ? std::nullopt : behind_.Find(path);
        }
        platform::FileInfo info;
        info.attributes = platform::attribute::kFolder;
        return info;
    }
    void List(const std::string& folder,
              const std::function<bool(const platform::FileInfo&)>& each) override {
        if (folder == denied_) {
            RaiseError(error_number::kPathFileAccess);
        }
        if (folder != folder_there) {
            behind_.List(folder, each);
        }
    }
    std::unique_ptr<platform::File> Open(const std::string& path,
                                         platform::OpenMode mode) override {
        return behind_.Open(path, mode);
    }
    void MakeFolder(const std::string& path) override { behind_.MakeFolder(path); }
    void Rename(const std::string& from, const std::string& to) override {
        behind_.Rename(from, to);
    }
    void Replace(const std::string& from, const std::string& to) override {
        behind_.Replace(from, to);
    }
    void RemoveFile(const std::string& path) override { behind_.RemoveFile(path); }
    void RemoveFolder(const std::string& path) override { behind_.RemoveFolder(path); }
    void SetAttributes(const std::string& path, std::uint32_t attributes) override {
        behind_.SetAttributes(path, attributes);
    }
    void SetTimes(const std::string& path, const platform::FileTimes& times) override {
        behind_.SetTimes(path, times);
    }
    bool SameFile(const std::string& one, const std::string& other) override {
        return behind_.SameFile(one, other);
    }

  private:
    platform::FileSystem& behind_;
    std::string denied_;
};

}  // namespace vantrel::test
