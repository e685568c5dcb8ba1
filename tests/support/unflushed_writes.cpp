#include "tests/support/unflushed_writes.h"

#include <algorithm>
#include <vector>

#include "platform/text_file.h"

namespace vantrel::test {

namespace {

void PutBack(platform::FileSystem& files, const std::string& path, const std::string& bytes) {
    const auto info = files.Find(path);
    if (!info) {
        return;
    }
    const bool read_only = (info->attributes & platform::attribute::kReadOnly) != 0;
    if (read_only) {
        files.SetAttributes(path, info->attributes & ~platform::attribute::kReadOnly);
    }
    platform::WriteWholeFile(files, path, bytes);
    if (read_only) {
        files.SetAttributes(path, info->attributes);
    }
}

}  // namespace

std::string UnflushedWrites::Key(const std::string& path) {
    std::string key = path;
    for (char& letter : key) {
        if (letter >= 'A' && letter <= 'Z') {
            letter = static_cast<char>(letter + 0x20);
        }
    }
    return key;
}

std::shared_ptr<UnflushedWrites::Image> UnflushedWrites::Opened(const std::string& path,
                                                                platform::OpenMode mode,
                                                                std::string before) {
    const std::lock_guard lock(mutex_);
    auto& image = images_[Key(path)];
    if (!image) {
        image = std::make_shared<Image>(Image{before, before});
    }
    image->now = mode == platform::OpenMode::kAppend ? std::move(before) : std::string();
    return image;
}

void UnflushedWrites::Wrote(Image& image, std::uint64_t position, std::string_view bytes) {
    const std::lock_guard lock(mutex_);
    const auto start = static_cast<std::size_t>(position);
    image.now.resize(std::max(image.now.size(), start + bytes.size()));
    image.now.replace(start, bytes.size(), bytes);
}

void UnflushedWrites::Truncated(Image& image, std::uint64_t size) {
    const std::lock_guard lock(mutex_);
    image.now.resize(static_cast<std::size_t>(size));
}

void UnflushedWrites::Flushed(Image& image) {
    const std::lock_guard lock(mutex_);
    image.flushed = image.now;
}

// A folder takes everything below it along.
void UnflushedWrites::Moved(const std::string& from, const std::string& to) {
    const std::lock_guard lock(mutex_);
    images_.erase(Key(to));
    const std::string old_key = Key(from);
    std::vector<std::pair<std::string, std::shared_ptr<Image>>> moved;
    std::erase_if(images_, [&](const auto& entry) {
        const std::string& key = entry.first;
        if (key != old_key && !key.starts_with(old_key + "\\")) {
            return false;
        }
        moved.emplace_back(Key(to) + key.substr(old_key.size()), entry.second);
        return true;
    });
    images_.insert(moved.begin(), moved.end());
}

void UnflushedWrites::Removed(const std::string& path) {
    const std::lock_guard lock(mutex_);
    images_.erase(Key(path));
}

void UnflushedWrites::Lose(platform::FileSystem& files) {
    const std::lock_guard lock(mutex_);
    for (const auto& [path, image] : images_) {
        if (image->now != image->flushed) {
            PutBack(files, path, image->flushed);
        }
    }
    images_.clear();
}

}  // namespace vantrel::test
