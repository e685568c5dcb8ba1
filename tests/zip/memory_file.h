// An open file of the memory file system, and what it keeps of a file. For that system's own
// sources only.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>

#include "common/error.h"
#include "tests/zip/memory_file_system.h"

namespace vantrel::test {

using platform::FileInfo;
using platform::FileTimes;

inline constexpr std::size_t kPage = 64 * 1024;  // bytes kept or left out together

struct MemoryFileSystem::Node {
    FileInfo info;
    std::map<std::uint64_t, std::string> pages;  // those that are not all zero
    int open = 0;
    bool exclusive = false;
    bool flushed = true;
};

class MemoryFile : public platform::File {
  public:
    MemoryFile(MemoryFileSystem& files, std::shared_ptr<MemoryFileSystem::Node> node,
               std::string path, platform::OpenMode mode, std::uint64_t position)
        : files_(files),
          node_(std::move(node)),
          path_(std::move(path)),
          writable_(mode != platform::OpenMode::kRead &&
                    mode != platform::OpenMode::kReadUnchanging),
          position_(position) {}
    ~MemoryFile() override { Release(); }

    std::size_t Read(void* buffer, std::size_t count) override {
        files_.Hook("Read", path_);
        if (files_.unreadable && files_.unreadable(path_, position_, position_ + count)) {
            RaiseError(error_number::kDeviceIo);
        }
        const std::lock_guard lock(files_.mutex_);
        const std::size_t read = files_.Load(*node_, position_, static_cast<char*>(buffer), count);
        position_ += read;
        return read;
    }
    void Write(const void* data, std::size_t count) override {
        files_.Hook("Write", path_);
        const std::lock_guard lock(files_.mutex_);
        if (!writable_) {
            RaiseError(error_number::kPermissionDenied);
        }
        const std::uint64_t end = position_ + count;
        const std::uint64_t more = end > node_->info.size ? end - node_->info.size : 0;
        const std::uint64_t room = files_.capacity - std::min(files_.capacity, files_.used_);
        const std::size_t fits =
            more <= room ? count : count - std::min<std::size_t>(count, more - room);
        files_.Store(*node_, position_, static_cast<const char*>(data), fits);
        node_->flushed = false;
        position_ += fits;
        if (fits < count) {
            RaiseError(error_number::kDiskFull);
        }
    }
    void Seek(std::uint64_t position) override {
        files_.Hook("Seek", path_);
        position_ = position;
    }
    std::uint64_t Size() override {
        files_.Hook("Size", path_);
        const std::lock_guard lock(files_.mutex_);
        return node_->info.size;
    }
    void Truncate(std::uint64_t size) override {
        files_.Hook("Truncate", path_);
        const std::lock_guard lock(files_.mutex_);
        files_.used_ -= node_->info.size - size;
        node_->info.size = size;
        node_->pages.erase(node_->pages.lower_bound((size + kPage - 1) / kPage),
                           node_->pages.end());
        if (const auto page = node_->pages.find(size / kPage); page != node_->pages.end()) {
            std::fill(page->second.begin() + static_cast<std::ptrdiff_t>(size % kPage),
                      page->second.end(), '\0');
        }
        position_ = size;
    }
    void SetTimes(const FileTimes& times) override {
        files_.Hook("SetTimes", path_);
        const std::lock_guard lock(files_.mutex_);
        node_->info.times = times;
    }
    void Flush() override {
        files_.Hook("Flush", path_);
        const std::lock_guard lock(files_.mutex_);
        node_->flushed = true;
    }
    void Close() override {
        files_.Hook("Close", path_);
        Release();
    }

  private:
    void Release() {
        const std::lock_guard lock(files_.mutex_);
        if (node_) {
            --node_->open;
            node_->exclusive = false;
            node_.reset();
        }
    }

    MemoryFileSystem& files_;
    std::shared_ptr<MemoryFileSystem::Node> node_;
    std::string path_;
    bool writable_;
    std::uint64_t position_;
};

}  // namespace vantrel::test
