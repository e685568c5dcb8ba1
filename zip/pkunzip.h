// The unzip component that the Restore tab and the restore window drive. Its actions list an
// archive and restore it (reader/).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "zip/base/run_context.h"
#include "zip/component.h"
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
// Reads the directory, with progress events; an unreadable archive counts 1. Ended by a cancel,
// it leaves what a handler may have counted meanwhile, or 1.
constexpr std::int16_t kActionCount = 1;
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
    std::uint64_t CountedBytes() const { return counted_.bytes; }
    // Whether the archive counted last has a damaged directory, and can be searched. What
    // kActionSearch finds is counted, read and extracted as long as path, size and time of the
    // archive are the same. A search that is cancelled or fails changes nothing.
    virtual bool CanBeSearched() const { return counted_.can_be_searched; }
    // An extraction restores only the entries that `listed` has counted last, by its search if
    // there is one: with other entries in the archive it asks, and restores nothing.
    void RestoreListed(const PKUNZIP& listed);

    // Entries that the last extraction did not restore.
    virtual std::int32_t FailedEntries() const { return failed_; }

  protected:
    bool IsAcceptable(int id, const Value& value) const override;
    void RunAction(std::int16_t action) override;

  private:
    // The result of a search, and the archive that it is about; of a set, its disks identify it.
    struct Searched {
        std::string path;
        std::uint64_t size = 0;
        platform::Ticks modified = 0;
        std::shared_ptr<const Directory> directory;
    };
    struct Counted {
        std::shared_ptr<const Directory> directory = std::make_shared<Directory>();
        std::uint64_t bytes = 0;
        bool can_be_searched = false;
        std::string trouble{};  // "" when the directory is complete
    };

    void CountEntries();
    void ReadEntries(const std::string& archive, RunContext& channel, Counted& counted) const;
    void ReadEntry();
    void Search();
    void Extract();
    bool IsSearched(const std::string& archive) const;
    std::shared_ptr<const Directory> SearchResultFor(const std::string& archive) const;

    Counted counted_;
    std::shared_ptr<const Directory> listed_;  // that an extraction is limited to; null: all
    Searched searched_;
    std::int32_t failed_ = 0;
};

}  // namespace vantrel::zip
