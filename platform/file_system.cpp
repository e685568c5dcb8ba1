#include "platform/file_system.h"

namespace vantrel::platform {

namespace {

class FolderByPath : public Folder {
  public:
    FolderByPath(FileSystem& files, const std::string& path) : files_(files), path_(path) {
        if (!path_.ends_with('\\')) path_ += '\\';
    }
    std::unique_ptr<File> Create(const std::string& name) override {
        return files_.Open(path_ + name, OpenMode::kCreateNew);
    }

  private:
    FileSystem& files_;
    std::string path_;
};

}  // namespace

std::unique_ptr<Folder> FileSystem::OpenFolder(const std::string& path) {
    return std::make_unique<FolderByPath>(*this, path);
}

}  // namespace vantrel::platform
