#include "tests/zip/memory_file_system.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "common/error.h"
#include "common/path.h"
#include "tests/zip/memory_file.h"

namespace vantrel::test {

using platform::FileInfo;
using platform::FileTimes;
using platform::OpenMode;

namespace {

// 2026-11-15 13:05:09 UTC.
constexpr platform::Ticks kThen = 134392215090000000ull;

std::string KeyParent(const std::string& key) {
    const std::size_t slash = key.rfind('\\');
    return slash == std::string::npos ? "" : key.substr(0, slash);
}

}  // namespace

MemoryFileSystem::MemoryFileSystem() { Make("C:\\", true); }
MemoryFileSystem::~MemoryFileSystem() = default;

void MemoryFileSystem::Hook(const char* call, const std::string& path) const {
    if (before) {
        before(call, path);
    }
}

std::string MemoryFileSystem::Key(const std::string& path) const {
    std::string key = path;
    while (!key.empty() && key.back() == '\\') {
        key.pop_back();
    }
    std::transform(key.begin(), key.end(), key.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    for (const auto& [prefix, stands_for] : aliases_) {
        if (key.starts_with(prefix)) {
            key = stands_for + key.substr(prefix.size());
        }
    }
    return key;
}

void MemoryFileSystem::Alias(const std::string& prefix, const std::string& stands_for) {
    aliases_.emplace_back(Key(prefix), Key(stands_for));
}

std::shared_ptr<MemoryFileSystem::Node> MemoryFileSystem::Lookup(const std::string& path) const {
    const std::string key = Key(path);
    const auto found = nodes_.find(key);
    const bool gone = !taken_away_.empty() && key.starts_with(taken_away_);
    return found == nodes_.end() || gone ? nullptr : found->second;
}

std::shared_ptr<MemoryFileSystem::Node> MemoryFileSystem::Make(const std::string& path,
                                                               bool folder) {
    const std::string key = Key(path);
    const std::string parent = KeyParent(key);
    if (!parent.empty() && nodes_.count(parent) == 0) {
        std::string trimmed = path;
        while (trimmed.back() == '\\') {
            trimmed.pop_back();
        }
        Make(trimmed.substr(0, trimmed.rfind('\\')), true);
    }
    auto& node = nodes_[key];
    if (!node) {
        node = std::make_shared<Node>();
        node->info.name = path::Name(path);
        node->info.attributes =
            folder ? platform::attribute::kFolder : platform::attribute::kArchive;
        node->info.times = {kThen, kThen, kThen};
    }
    return node;
}

void MemoryFileSystem::PutFolder(const std::string& path) {
    const std::lock_guard lock(mutex_);
    Make(path, true);
}

void MemoryFileSystem::Put(const std::string& path, const std::string& bytes) {
    const std::lock_guard lock(mutex_);
    const auto node = Make(path, false);
    used_ -= node->info.size;
    node->info.size = 0;
    node->pages.clear();
    Store(*node, 0, bytes.data(), bytes.size());
}

void MemoryFileSystem::PutZeros(const std::string& path, std::uint64_t size) {
    const std::lock_guard lock(mutex_);
    Make(path, false)->info.size = size;
    used_ += size;
}

void MemoryFileSystem::Append(const std::string& path, const std::string& bytes) {
    const std::lock_guard lock(mutex_);
    const auto node = Lookup(path);
    Store(*node, node->info.size, bytes.data(), bytes.size());
}

void MemoryFileSystem::Change(const std::string& path,
                              const std::function<void(FileInfo&)>& change) {
    const std::lock_guard lock(mutex_);
    const auto node = Lookup(path);
    if (!node) {
        throw std::logic_error("no such file: " + path);
    }
    change(node->info);
}

void MemoryFileSystem::Remove(const std::string& path) {
    const std::lock_guard lock(mutex_);
    const std::string key = Key(path);
    for (auto node = nodes_.begin(); node != nodes_.end();) {
        const bool gone = node->first == key || node->first.starts_with(key + "\\");
        used_ -= gone ? node->second->info.size : 0;
        node = gone ? nodes_.erase(node) : std::next(node);
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
    const auto node = Lookup(path);
    if (!node) {
        throw std::logic_error("no such file: " + path);
    }
    return node->info;
}

std::string MemoryFileSystem::Content(const std::string& path) const {
    return Content(path, 0, static_cast<std::size_t>(Info(path).size));
}

std::string MemoryFileSystem::Content(const std::string& path, std::uint64_t offset,
                                      std::size_t count) const {
    const std::lock_guard lock(mutex_);
    std::string bytes(count, '\0');
    bytes.resize(Load(*Lookup(path), offset, bytes.data(), count));
    return bytes;
}

std::vector<std::string> MemoryFileSystem::Everything() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> all;
    for (const auto& [key, node] : nodes_) {
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

bool MemoryFileSystem::AllFlushed(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    return Lookup(path)->flushed;
}

void MemoryFileSystem::Store(Node& node, std::uint64_t offset, const char* data,
                             std::size_t count) {
    static const std::string zeros(kPage, '\0');
    const std::uint64_t end = offset + count;
    if (end > node.info.size) {
        used_ += end - node.info.size;
        node.info.size = end;
    }
    while (count > 0) {
        const std::size_t start = offset % kPage;
        const std::size_t part = std::min(count, kPage - start);
        const auto page = node.pages.find(offset / kPage);
        if (page != node.pages.end()) {
            std::memcpy(page->second.data() + start, data, part);
        } else if (std::memcmp(data, zeros.data(), part) != 0) {
            std::memcpy(node.pages.emplace(offset / kPage, zeros).first->second.data() + start,
                        data, part);
        }
        offset += part;
        data += part;
        count -= part;
    }
}

std::size_t MemoryFileSystem::Load(const Node& node, std::uint64_t offset, char* out,
                                   std::size_t count) const {
    const std::uint64_t left = node.info.size - std::min(node.info.size, offset);
    const std::size_t total = static_cast<std::size_t>(std::min<std::uint64_t>(left, count));
    for (std::size_t done = 0; done < total;) {
        const std::size_t start = (offset + done) % kPage;
        const std::size_t part = std::min(total - done, kPage - start);
        const auto page = node.pages.find((offset + done) / kPage);
        if (page == node.pages.end()) {
            std::memset(out + done, 0, part);
        } else {
            std::memcpy(out + done, page->second.data() + start, part);
        }
        done += part;
    }
    return total;
}

bool MemoryFileSystem::HasChildren(const std::string& key) const {
    const auto next = nodes_.upper_bound(key + "\\");
    return next != nodes_.end() && next->first.starts_with(key + "\\");
}

std::unique_ptr<platform::File> MemoryFileSystem::Open(const std::string& path, OpenMode mode) {
    Hook("Open", path);
    const std::lock_guard lock(mutex_);
    auto node = Lookup(path);
    if (!Lookup(KeyParent(Key(path)))) {
        RaiseError(error_number::kPathNotFound);
    }
    if (!node && (mode == OpenMode::kRead || mode == OpenMode::kReadUnchanging)) {
        RaiseError(error_number::kFileNotFound);
    }
    if (mode == OpenMode::kCreateNew && node) {
        RaiseError(error_number::kFileExists);
    }
    if (node && (node->exclusive || node->info.IsFolder())) {
        RaiseError(error_number::kPermissionDenied);
    }
    if (!node) {
        node = Make(path, false);
    }
    ++node->open;
    node->exclusive = mode == OpenMode::kCreateNew;
    if (mode == OpenMode::kWrite) {
        used_ -= node->info.size;
        node->info.size = 0;
        node->pages.clear();
    }
    return std::make_unique<MemoryFile>(*this, node, path, mode,
                                        mode == OpenMode::kAppend ? node->info.size : 0);
}

std::optional<FileInfo> MemoryFileSystem::Find(const std::string& path) {
    Hook("Find", path);
    const std::lock_guard lock(mutex_);
    const auto node = Lookup(path);
    return node ? std::optional(node->info) : std::nullopt;
}

void MemoryFileSystem::List(const std::string& folder,
                            const std::function<bool(const FileInfo&)>& each) {
    Hook("List", folder);
    std::vector<FileInfo> children;
    {
        const std::lock_guard lock(mutex_);
        if (!Lookup(folder)) {
            RaiseError(error_number::kPathNotFound);
        }
        const std::string prefix = Key(folder) + "\\";
        for (auto node = nodes_.upper_bound(prefix);
             node != nodes_.end() && node->first.starts_with(prefix); ++node) {
            if (node->first.find('\\', prefix.size()) == std::string::npos) {
                children.push_back(node->second->info);
            }
        }
    }
    // Not sorted, as on most disks.
    std::reverse(children.begin(), children.end());
    for (const FileInfo& info : children) {
        if (!each(info)) {
            return;
        }
    }
}

void MemoryFileSystem::MakeFolder(const std::string& path) {
    Hook("MakeFolder", path);
    const std::lock_guard lock(mutex_);
    if (Lookup(path)) {
        RaiseError(error_number::kPathFileAccess);
    }
    if (!Lookup(KeyParent(Key(path)))) {
        RaiseError(error_number::kPathNotFound);
    }
    Make(path, true);
}

void MemoryFileSystem::Rename(const std::string& from, const std::string& to) {
    Hook("Rename", from);
    if (Exists(to)) {
        RaiseError(error_number::kFileExists);
    }
    const std::lock_guard lock(mutex_);
    const auto node = Lookup(from);
    if (!node) {
        RaiseError(error_number::kFileNotFound);
    }
    node->info.name = path::Name(to);
    const std::string old_key = Key(from);
    Nodes moved;  // a folder with all that is in it
    std::erase_if(nodes_, [&](const auto& each) {
        return (each.first + "\\").starts_with(old_key + "\\") &&
               moved.emplace(Key(to) + each.first.substr(old_key.size()), each.second).second;
    });
    nodes_.merge(moved);
}

void MemoryFileSystem::Replace(const std::string& from, const std::string& to) {
    Hook("Replace", to);
    const std::lock_guard lock(mutex_);
    const auto node = Lookup(from);
    const auto target = Lookup(to);
    if (!node) {
        RaiseError(error_number::kFileNotFound);
    }
    if (node->open > 0 ||
        (target && (target->open > 0 || target->info.IsFolder() ||
                    (target->info.attributes & platform::attribute::kReadOnly) != 0))) {
        RaiseError(error_number::kPermissionDenied);
    }
    used_ -= target ? target->info.size : 0;
    nodes_.erase(Key(from));
    node->info.name = path::Name(to);
    nodes_[Key(to)] = node;
}

void MemoryFileSystem::RemoveFile(const std::string& path) {
    Hook("RemoveFile", path);
    const std::lock_guard lock(mutex_);
    const auto node = Lookup(path);
    if (!node) {
        RaiseError(error_number::kFileNotFound);
    }
    if (node->open > 0 || (node->info.attributes & platform::attribute::kReadOnly) != 0) {
        RaiseError(error_number::kPermissionDenied);
    }
    used_ -= node->info.size;
    nodes_.erase(Key(path));
}

void MemoryFileSystem::RemoveFolder(const std::string& path) {
    Hook("RemoveFolder", path);
    const std::lock_guard lock(mutex_);
    if (!Lookup(path) || HasChildren(Key(path))) {
        RaiseError(error_number::kPathFileAccess);
    }
    nodes_.erase(Key(path));
}

void MemoryFileSystem::SetAttributes(const std::string& path, std::uint32_t attributes) {
    Hook("SetAttributes", path);
    Change(path, [&](FileInfo& info) {
        info.attributes = attributes | (info.attributes & platform::attribute::kFolder);
    });
}

void MemoryFileSystem::SetTimes(const std::string& path, const FileTimes& times) {
    Hook("SetTimes", path);
    Change(path, [&](FileInfo& info) { info.times = times; });
}

bool MemoryFileSystem::SameFile(const std::string& one, const std::string& other) {
    Hook("SameFile", one);
    const std::lock_guard lock(mutex_);
    const auto first = Lookup(one);
    return first && first == Lookup(other);
}

}  // namespace vantrel::test
