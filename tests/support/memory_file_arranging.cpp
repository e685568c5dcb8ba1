// What tests arrange and look at in the memory file system.
#include <algorithm>
#include <stdexcept>
#include <utility>

#include "tests/support/memory_file.h"

namespace vantrel::test {

MemoryFileSystem::Node& MemoryFileSystem::Known(const std::string& path) const {
    const auto node = Lookup(path);
    if (!node) {
        throw std::logic_error("no such file: " + path);
    }
    return *node;
}

void MemoryFileSystem::Alias(const std::string& prefix, const std::string& stands_for) {
    aliases_.emplace_back(Key(prefix), Key(stands_for));
}

void MemoryFileSystem::PutFolder(const std::string& path) {
    const std::lock_guard lock(mutex_);
    Make(path, true);
}

void MemoryFileSystem::Put(const std::string& path, const std::string& bytes) {
    const std::lock_guard lock(mutex_);
    const auto node = Make(path, false);
    Clear(*node);
    Store(*node, 0, bytes.data(), bytes.size());
}

void MemoryFileSystem::PutZeros(const std::string& path, std::uint64_t size) {
    const std::lock_guard lock(mutex_);
    Make(path, false)->info.size = size;
    used_ += size;
}

void MemoryFileSystem::Append(const std::string& path, const std::string& bytes) {
    const std::lock_guard lock(mutex_);
    Node& node = Known(path);
    Store(node, node.info.size, bytes.data(), bytes.size());
}

void MemoryFileSystem::Change(const std::string& path,
                              const std::function<void(FileInfo&)>& change) {
    const std::lock_guard lock(mutex_);
    change(Known(path).info);
}

void MemoryFileSystem::Remove(const std::string& path) {
    const std::lock_guard lock(mutex_);
    const std::string key = Key(path);
    const Range inside = Below(key);
    for (const auto& [path_inside, node] : inside) {
        used_ -= node->info.size;
    }
    nodes_.erase(inside.begin(), inside.end());
    if (const auto node = nodes_.extract(key)) {
        used_ -= node.mapped()->info.size;
    }
}

void MemoryFileSystem::TakeAway(const std::string& prefix) {
    const std::lock_guard lock(mutex_);
    taken_away_ = Key(prefix);
}

void MemoryFileSystem::BringBack() {
    const std::lock_guard lock(mutex_);
    taken_away_.clear();
}

std::uint64_t MemoryFileSystem::Used() const {
    const std::lock_guard lock(mutex_);
    return used_;
}

bool MemoryFileSystem::Exists(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    return Lookup(path) != nullptr;
}

FileInfo MemoryFileSystem::Info(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    return Known(path).info;
}

std::string MemoryFileSystem::Content(const std::string& path) const {
    return Content(path, 0, static_cast<std::size_t>(Info(path).size));
}

std::string MemoryFileSystem::Content(const std::string& path, std::uint64_t offset,
                                      std::size_t count) const {
    const std::lock_guard lock(mutex_);
    std::string bytes(count, '\0');
    bytes.resize(Known(path).Load(offset, bytes.data(), count));
    return bytes;
}

std::vector<std::string> MemoryFileSystem::Everything(const std::string& folder) const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> all;
    for (const auto& [key, node] :
         folder.empty() ? Range{nodes_.begin(), nodes_.end()} : Below(Key(folder))) {
        const auto name = [](const std::string& at, const Node& of) {
            return of.info.name.empty() ? at : of.info.name;
        };
        std::string path = name(key, *node);
        for (std::string up = KeyParent(key); !up.empty(); up = KeyParent(up)) {
            path = name(up, *nodes_.at(up)) + "\\" + path;
        }
        all.push_back(path + (node->info.IsFolder() ? "\\" : ""));
    }
    std::sort(all.begin(), all.end());
    return all;
}

std::vector<std::string> MemoryFileSystem::Files(const std::string& folder) const {
    auto all = Everything(folder);
    std::erase_if(all, [](const std::string& path) { return path.ends_with('\\'); });
    return all;
}

bool MemoryFileSystem::AllFlushed(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    return Known(path).flushed;
}

}  // namespace vantrel::test
