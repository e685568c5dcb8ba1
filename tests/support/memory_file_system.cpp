#include "tests/support/memory_file_system.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "common/error.h"
#include "common/path.h"
#include "platform/host/host_code_page.h"
#include "platform/host/host_path.h"
#include "tests/support/memory_file.h"

namespace vantrel::test {

using platform::OpenMode;

MemoryFileSystem::MemoryFileSystem() { Make("C:\\", true); }
MemoryFileSystem::~MemoryFileSystem() = default;

void MemoryFileSystem::Hook(const char* call, const std::string& path) const {
    if (before) {
        before(call, path);
    }
}

std::string MemoryFileSystem::Key(const std::string& path) const {
    const platform::HostPath parsed(path);
    std::string key{parsed.letter, ':'};
    if (!parsed.IsRoot()) {
        key += "/" + platform::HostFold(parsed.below);
    }
    for (const auto& [prefix, stands_for] : aliases_) {
        if (key.starts_with(prefix)) {
            key = stands_for + key.substr(prefix.size());
        }
    }
    return key;
}

std::string MemoryFileSystem::CheckedKey(const std::string& path) const {
    const std::string key = Key(path);
    const std::string drive = key.substr(0, 2);
    if (!NodeAt(drive)) {
        RaiseError(drive == taken_away_ ? error_number::kDiskNotReady
                                        : error_number::kDeviceUnavailable);
    }
    const auto parent = NodeAt(KeyParent(key));
    if (key != drive && (!parent || !parent->info.IsFolder())) {
        RaiseError(error_number::kPathNotFound);
    }
    return key;
}

std::shared_ptr<MemoryFileSystem::Node> MemoryFileSystem::NodeAt(const std::string& key) const {
    const auto found = nodes_.find(key);
    const bool gone = !taken_away_.empty() && key.starts_with(taken_away_);
    return found == nodes_.end() || gone ? nullptr : found->second;
}

std::shared_ptr<MemoryFileSystem::Node> MemoryFileSystem::Lookup(const std::string& path) const {
    try {
        return NodeAt(Key(path));
    } catch (const Error&) {
        return nullptr;
    }
}

std::pair<std::string, std::shared_ptr<MemoryFileSystem::Node>> MemoryFileSystem::Needed(
    const std::string& path) const {
    const std::string key = CheckedKey(path);
    const auto node = NodeAt(key);
    if (!node) {
        RaiseError(error_number::kFileNotFound);
    }
    return {key, node};
}

std::shared_ptr<MemoryFileSystem::Node> MemoryFileSystem::Make(const std::string& path,
                                                               bool folder) {
    const std::string key = Key(path);
    const std::string parent = KeyParent(key);
    if (!parent.empty() && nodes_.count(parent) == 0) {
        Make(path::Parent(path), true);
    }
    auto& node = nodes_[key];
    if (!node) {
        node = std::make_shared<Node>();
        node->info.name = platform::HostPath(path).Leaf();
        node->info.attributes =
            folder ? platform::attribute::kFolder : platform::attribute::kArchive;
        node->info.times = {kFileTime, kFileTime, kFileTime};
    }
    return node;
}

void MemoryFileSystem::Clear(Node& node) {
    used_ -= node.info.size;
    node.info.size = 0;
    node.pages.clear();
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

MemoryFileSystem::Range MemoryFileSystem::Below(const std::string& key) const {
    // "0" is the character after "/".
    return {nodes_.lower_bound(key + "/"), nodes_.lower_bound(key + "0")};
}

void MemoryFileSystem::CheckMovable(const Node& node) const {
    platform::HostShare::CheckMovable(IdOf(*this), IdOf(node));
}

void MemoryFileSystem::CheckRemovable(const Node& node) const {
    if ((node.info.attributes & (platform::attribute::kFolder | platform::attribute::kReadOnly)) !=
        0) {
        RaiseError(error_number::kPermissionDenied);
    }
    CheckMovable(node);
}

std::unique_ptr<platform::File> MemoryFileSystem::Open(const std::string& path, OpenMode mode) {
    Hook("Open", path);
    const std::lock_guard lock(mutex_);
    auto node = NodeAt(CheckedKey(path));
    const bool reading = mode == OpenMode::kRead || mode == OpenMode::kReadUnchanging;
    if (!node && reading) {
        RaiseError(error_number::kFileNotFound);
    }
    if (node && mode == OpenMode::kCreateNew) {
        RaiseError(error_number::kFileExists);
    }
    const std::uint32_t refused =
        platform::attribute::kFolder | (reading ? 0 : platform::attribute::kReadOnly);
    if (node && (node->info.attributes & refused) != 0) {
        RaiseError(error_number::kPermissionDenied);
    }
    if (!node) {
        node = Make(path, false);
    }
    auto file = std::make_unique<MemoryFile>(*this, node, path, mode);
    if (mode == OpenMode::kWrite) {
        Clear(*node);
    }
    return file;
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
        const std::string key = CheckedKey(folder);
        const auto node = NodeAt(key);
        if (!node || !node->info.IsFolder()) {
            RaiseError(error_number::kPathNotFound);
        }
        for (const auto& [child, child_node] : Below(key)) {
            if (child.rfind('/') == key.size()) {
                children.push_back(child_node->info);
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
    try {
        if (!NodeAt(CheckedKey(path))) {
            Make(path, true);
            return;
        }
    } catch (const Error& error) {
        if (error.number() != error_number::kBadFileName) {
            throw;
        }
    }
    RaiseError(error_number::kPathFileAccess);
}

std::string MemoryFileSystem::NewKey(const std::string& from_key, const std::string& to) const {
    if (Key(to)[0] != from_key[0]) {
        RaiseError(error_number::kAcrossDrives);
    }
    return CheckedKey(to);
}

void MemoryFileSystem::Rename(const std::string& from, const std::string& to) {
    Hook("Rename", from);
    const std::lock_guard lock(mutex_);
    const auto [from_key, node] = Needed(from);
    const std::string to_key = NewKey(from_key, to);
    const auto target = NodeAt(to_key);
    if (target && target != node) {
        RaiseError(error_number::kFileExists);
    }
    if (to_key.starts_with(from_key + "/")) {
        RaiseError(error_number::kPathFileAccess);
    }
    CheckMovable(*node);
    node->info.name = platform::HostPath(to).Leaf();
    Nodes moved{{to_key, node}};
    const Range inside = Below(from_key);
    for (const auto& [key, each] : inside) {
        moved.emplace(to_key + key.substr(from_key.size()), each);
    }
    nodes_.erase(inside.begin(), inside.end());
    nodes_.erase(from_key);
    nodes_.merge(moved);
}

void MemoryFileSystem::Replace(const std::string& from, const std::string& to) {
    Hook("Replace", to);
    const std::lock_guard lock(mutex_);
    const auto [from_key, node] = Needed(from);
    const std::string to_key = NewKey(from_key, to);
    if (node->info.IsFolder()) {
        RaiseError(error_number::kPermissionDenied);
    }
    CheckMovable(*node);
    if (const auto target = NodeAt(to_key)) {
        CheckRemovable(*target);
        used_ -= target->info.size;
    }
    nodes_.erase(from_key);
    node->info.name = platform::HostPath(to).Leaf();
    nodes_[to_key] = node;
}

void MemoryFileSystem::RemoveFile(const std::string& path) {
    Hook("RemoveFile", path);
    const std::lock_guard lock(mutex_);
    const auto [key, node] = Needed(path);
    CheckRemovable(*node);
    used_ -= node->info.size;
    nodes_.erase(key);
}

void MemoryFileSystem::RemoveFolder(const std::string& path) {
    Hook("RemoveFolder", path);
    const std::lock_guard lock(mutex_);
    const std::string key = CheckedKey(path);
    const auto node = NodeAt(key);
    if (!node || !node->info.IsFolder()) {
        RaiseError(error_number::kPathNotFound);
    }
    const Range inside = Below(key);
    if (inside.first != inside.last || KeyParent(key).empty()) {
        RaiseError(error_number::kPathFileAccess);
    }
    nodes_.erase(key);
}

void MemoryFileSystem::SetAttributes(const std::string& path, std::uint32_t attributes) {
    using namespace platform::attribute;
    constexpr std::uint32_t kSettable = kReadOnly | kHidden | kSystem | kArchive;
    Hook("SetAttributes", path);
    const std::lock_guard lock(mutex_);
    std::uint32_t& kept = Needed(path).second->info.attributes;
    kept = (kept & ~kSettable) | (attributes & kSettable);
}

void MemoryFileSystem::SetTimes(const std::string& path, const FileTimes& times) {
    Hook("SetTimes", path);
    const std::lock_guard lock(mutex_);
    Needed(path).second->SetTimes(times);
}

bool MemoryFileSystem::SameFile(const std::string& one, const std::string& other) {
    Hook("SameFile", one);
    const std::lock_guard lock(mutex_);
    const auto first = Lookup(one);
    return first && first == Lookup(other);
}

}  // namespace vantrel::test
