// An open file of the memory file system, and what it keeps of a file. For that system's own
// sources only.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>

#include "common/error.h"
#include "platform/host/host_file.h"
#include "tests/support/memory_file_system.h"

namespace vantrel::test {

using platform::FileInfo;
using platform::FileTimes;

inline constexpr std::size_t kPage = 64 * 1024;  // bytes kept or left out together

// The key of the folder that holds an item; "" for a drive.
inline std::string KeyParent(const std::string& key) {
    const std::size_t slash = key.rfind('/');
    return slash == std::string::npos ? "" : key.substr(0, slash);
}

struct MemoryFileSystem::Node {
    // 0 leaves a time as it is.
    void SetTimes(const FileTimes& times) {
        for (const auto time : {&FileTimes::modified, &FileTimes::accessed, &FileTimes::created}) {
            info.times.*time = times.*time != 0 ? times.*time : info.times.*time;
        }
    }

    std::size_t Load(std::uint64_t offset, char* out, std::size_t count) const {
        const std::uint64_t left = info.size - std::min(info.size, offset);
        const std::size_t total = static_cast<std::size_t>(std::min<std::uint64_t>(left, count));
        for (std::size_t done = 0; done < total;) {
            const std::size_t start = (offset + done) % kPage;
            const std::size_t part = std::min(total - done, kPage - start);
            const auto page = pages.find((offset + done) / kPage);
            if (page == pages.end()) {
                std::memset(out + done, 0, part);
            } else {
                std::memcpy(out + done, page->second.data() + start, part);
            }
            done += part;
        }
        return total;
    }

    FileInfo info;
    std::map<std::uint64_t, std::string> pages;  // those that are not all zero
    bool flushed = true;
};

// A file system and a node as the host's table of open files knows devices and files.
template <typename T>
std::uintptr_t IdOf(const T& object) {
    return reinterpret_cast<std::uintptr_t>(&object);
}

class MemoryFile : public platform::File {
  public:
    // Raises 70 when the file is open in a mode that excludes `mode`.
    MemoryFile(MemoryFileSystem& files, std::shared_ptr<MemoryFileSystem::Node> node,
               std::string path, platform::OpenMode mode)
        : files_(files),
          node_(std::move(node)),
          path_(std::move(path)),
          mode_(mode),
          share_(std::make_unique<platform::HostShare>(IdOf(files), IdOf(*node_), mode)) {}

    std::size_t Read(void* buffer, std::size_t count) override {
        files_.Hook("Read", path_);
        if (files_.unreadable && files_.unreadable(path_, position_, position_ + count)) {
            RaiseError(error_number::kDeviceIo);
        }
        const std::lock_guard lock(files_.mutex_);
        const std::size_t read = node_->Load(position_, static_cast<char*>(buffer), count);
        position_ += read;
        return read;
    }
    void Write(const void* data, std::size_t count) override {
        files_.Hook("Write", path_);
        const std::lock_guard lock(files_.mutex_);
        if (mode_ == platform::OpenMode::kRead || mode_ == platform::OpenMode::kReadUnchanging) {
            RaiseError(error_number::kPermissionDenied);
        }
        if (mode_ == platform::OpenMode::kAppend) {
            position_ = node_->info.size;
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
        node_->SetTimes(times);
    }
    void Flush() override {
        files_.Hook("Flush", path_);
        const std::lock_guard lock(files_.mutex_);
        node_->flushed = true;
    }
    void Close() override {
        files_.Hook("Close", path_);
        share_.reset();
    }

  private:
    MemoryFileSystem& files_;
    std::shared_ptr<MemoryFileSystem::Node> node_;
    std::string path_;
    platform::OpenMode mode_;
    std::unique_ptr<platform::HostShare> share_;
    std::uint64_t position_ = 0;
};

}  // namespace vantrel::test
