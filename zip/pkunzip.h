// The unzip component that the Restore tab and the restore window drive. Its actions list an
// archive and restore it (reader/).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "zip/component.h"
#include "zip/reader/target_folders.h"
#include "zip/records/directory_reader.h"

namespace vantrel::zip {

// Dispatch identifiers of the unzip component.
namespace unzip_id {
constexpr int kArchive = 1;      // text: full path of the archive
constexpr int kFileSpec = 2;     // text: which entries; "*.*" is every entry
constexpr int kEntryIndex = 3;   // 32-bit integer: the entry that kActionEntry reads
constexpr int kDestination = 4;  // text: folder to extract into
constexpr int kEntryCount = 16;  // 32-bit integer: entries + 1, the archive itself being entry 0
constexpr int kEntryName = 32;   // text: stored name, "/" between folder levels
constexpr int kAction = 34;      // 16-bit integer
constexpr std::int16_t kActionCount = 1;    // reads the directory; an unreadable archive counts 1
constexpr std::int16_t kActionEntry = 2;    // reads the entry at kEntryIndex
constexpr std::int16_t kActionSearch = 3;   // searches an archive with a damaged directory
constexpr std::int16_t kActionExtract = 8;  // extracts; existing files are overwritten
}  // namespace unzip_id

class PKUNZIP : public Component {
  public:
    explicit PKUNZIP(platform::Machine& machine);

    // The folders that an extraction of the entries counted last would make or write into: paths
    // below `destination` ("" is that itself), "\\" between levels, each once, in the archive's
    // order. They differ from the stored names where no file can have those.
    virtual std::vector<std::string> TargetFolders(const std::string& destination) const;
    // The size of all entries counted last, not compressed.
    std::uint64_t CountedBytes() const { return counted_bytes_; }
    // Whether the archive counted last has a damaged directory, and can be searched. What
    // kActionSearch finds is counted, read and extracted as long as path, size and time of the
    // archive are the same. A search that is cancelled or fails changes nothing.
    virtual bool CanBeSearched() const { return can_be_searched_; }
    // An extraction restores only the entries that `listed` has counted last, by its search if
    // there is one: with other entries in the archive it asks, and restores nothing.
    void RestoreListed(const PKUNZIP& listed);

    // Entries that the last extraction did not restore.
    virtual std::int32_t FailedEntries() const { return failed_; }

  protected:
    bool IsAcceptable(int id, const Value& value) const override;
    void RunAction(std::int16_t action) override;

  private:
    // The result of a search, and the archive that it is about.
    struct Searched {
        std::string path;
        std::uint64_t size = 0;
        platform::Ticks modified = 0;
        std::shared_ptr<const Directory> directory;
    };
    using Names = std::vector<EntryName>;

    void ReadNames();
    std::string CountEntries(const std::string& archive);
    void ReadEntry();
    void Search();
    void Extract();
    std::shared_ptr<const Directory> SearchResultFor(const std::string& archive) const;

    std::shared_ptr<const Names> names_ = std::make_shared<Names>();  // of the entries counted last
    std::shared_ptr<const Names> listed_;  // that an extraction is limited to; null: all
    Searched searched_;
    bool can_be_searched_ = false;
    std::uint64_t counted_bytes_ = 0;
    std::int32_t failed_ = 0;
};

}  // namespace vantrel::zip
