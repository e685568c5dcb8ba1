// What a power failure would take: for every file that was written through a faulty file system,
// its bytes now and its bytes at the last flush. Folder entries (names made, renamed, removed)
// count as lasting at once. Safe from any thread.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace vantrel::test {

class UnflushedWrites {
  public:
    struct Image {
        std::string now;
        std::string flushed;
    };

    // A file is about to be opened for writing with `before` as its content.
    std::shared_ptr<Image> Opened(const std::string& path, platform::OpenMode mode,
                                  std::string before);
    void Wrote(Image& image, std::uint64_t position, std::string_view bytes);
    void Truncated(Image& image, std::uint64_t size);
    void Flushed(Image& image);
    void Moved(const std::string& from, const std::string& to);
    void Removed(const std::string& path);

    // Puts every file back to its bytes at the last flush.
    void Lose(platform::FileSystem& files);

  private:
    static std::string Key(const std::string& path);
    std::mutex mutex_;
    std::map<std::string, std::shared_ptr<Image>> images_;  // by path, letter case aside
};

}  // namespace vantrel::test
