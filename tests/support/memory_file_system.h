// Drives in memory: sparse, so that files of many gigabytes cost nothing; with a hook before every
// call, which may look, raise an error, wait, or change the disk. The conformance suite of the
// platform interface runs over it; only the time of new files stands still.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace vantrel::test {

class MemoryFileSystem : public platform::FileSystem {
  public:
    // The time of every new file: 2026-11-15 13:05:09 UTC.
    static constexpr platform::Ticks kFileTime = 134'392'215'090'000'000;

    // Folder "C:\" exists.
    MemoryFileSystem();
    ~MemoryFileSystem() override;

    // Runs before every call, on the calling thread, without any lock held. `call` is the member's
    // name ("Open", "Read", ...), `path` the path it is about.
    std::function<void(const std::string& call, const std::string& path)> before;
    // Whether a read of these bytes of a file raises 57.
    std::function<bool(const std::string& path, std::uint64_t begin, std::uint64_t end)> unreadable;
    // Bytes that all files may hold together; a write beyond it writes what fits and raises 61.
    std::uint64_t capacity = ~std::uint64_t{0};

    // --- arranging and looking; nothing of it reaches `before` ---
    void PutFolder(const std::string& path);
    // Folders are made as needed.
    void Put(const std::string& path, const std::string& bytes);
    // A file of `size` zero bytes.
    void PutZeros(const std::string& path, std::uint64_t size);
    void Append(const std::string& path, const std::string& bytes);
    void Change(const std::string& path, const std::function<void(platform::FileInfo&)>& change);
    void Remove(const std::string& path);
    // A second name of the same file or folder (a share, a substituted drive).
    void Alias(const std::string& prefix, const std::string& stands_for);

    // Everything below `prefix` is missing until BringBack; a drive is one without a disk.
    void TakeAway(const std::string& prefix);
    void BringBack();

    bool Exists(const std::string& path) const;
    // Bytes that all files hold together.
    std::uint64_t Used() const;
    platform::FileInfo Info(const std::string& path) const;
    std::string Content(const std::string& path) const;
    std::string Content(const std::string& path, std::uint64_t offset, std::size_t count) const;
    // Full paths of everything, or of everything below a folder, sorted; folders end in "\".
    std::vector<std::string> Everything(const std::string& folder = "") const;
    // The same without folders.
    std::vector<std::string> Files(const std::string& folder) const;
    // Whether nothing was written to the file since it was last flushed.
    bool AllFlushed(const std::string& path) const;

    // --- FileSystem ---
    std::unique_ptr<platform::File> Open(const std::string& path, platform::OpenMode mode) override;
    std::optional<platform::FileInfo> Find(const std::string& path) override;
    void List(const std::string& folder,
              const std::function<bool(const platform::FileInfo&)>& each) override;
    void MakeFolder(const std::string& path) override;
    void Rename(const std::string& from, const std::string& to) override;
    void Replace(const std::string& from, const std::string& to) override;
    void RemoveFile(const std::string& path) override;
    void RemoveFolder(const std::string& path) override;
    void SetAttributes(const std::string& path, std::uint32_t attributes) override;
    void SetTimes(const std::string& path, const platform::FileTimes& times) override;
    bool SameFile(const std::string& one, const std::string& other) override;

  private:
    friend class MemoryFile;
    struct Node;
    using Nodes = std::map<std::string, std::shared_ptr<Node>>;
    struct Range {
        Nodes::const_iterator begin() const { return first; }
        Nodes::const_iterator end() const { return last; }
        Nodes::const_iterator first;
        Nodes::const_iterator last;
    };

    void Hook(const char* call, const std::string& path) const;
    // These raise 52 for a malformed path; CheckedKey raises 68, 71 and 76 for a drive or folder
    // that is not there, Needed 53 as well, NewKey 74 for another drive than that of `from_key`.
    std::string Key(const std::string& path) const;
    std::string CheckedKey(const std::string& path) const;
    std::pair<std::string, std::shared_ptr<Node>> Needed(const std::string& path) const;
    std::string NewKey(const std::string& from_key, const std::string& to) const;
    // Nothing where nothing is; Known is for tests, which know.
    std::shared_ptr<Node> NodeAt(const std::string& key) const;
    std::shared_ptr<Node> Lookup(const std::string& path) const;
    Node& Known(const std::string& path) const;

    std::shared_ptr<Node> Make(const std::string& path, bool folder);
    // What lies below a folder.
    Range Below(const std::string& key) const;
    // These raise 70.
    void CheckMovable(const Node& node) const;
    void CheckRemovable(const Node& node) const;
    void Clear(Node& node);
    void Store(Node& node, std::uint64_t offset, const char* data, std::size_t count);

    mutable std::mutex mutex_;
    Nodes nodes_;  // by path in capitals with "/" between its names
    std::vector<std::pair<std::string, std::string>> aliases_;
    std::string taken_away_;
    std::uint64_t used_ = 0;
};

}  // namespace vantrel::test
