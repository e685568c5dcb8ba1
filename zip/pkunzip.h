// The unzip component that the Restore tab and the restore window drive: properties set by dispatch
// identifier, an action property that runs to its end inside the assignment, events on the caller's
// thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/machine.h"
#include "zip/base/component_events.h"
#include "zip/pkzip.h"

namespace vantrel::zip {

// Dispatch identifiers of the unzip component. A path that begins with exactly one backslash is on
// the application's drive; it is read back as it was set.
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
constexpr std::int16_t kActionExtract = 8;  // extracts; existing files are overwritten
}  // namespace unzip_id

class PKUNZIP {
  public:
    explicit PKUNZIP(platform::Machine& machine);
    virtual ~PKUNZIP();

    // Sets a property; kAction runs the operation. Wrong type or unknown: error 380.
    virtual void Set(int id, const Value& value);
    virtual Value Get(int id) const;

    // Raised on the thread that set the action. Progress values are 0 to 100.
    std::function<void(std::int32_t& percent, bool& cancel)> OverallProgress;
    std::function<void(std::int32_t& percent)> FileProgress;
    std::function<void(const ComponentMessage& message)> Message;

    // Who answers questions (archive gone, destination full); nullptr when nobody is there.
    Questions* questions = nullptr;

    // The folders that an extraction of the entries counted last would make or write into: paths
    // below `destination` ("" is that itself), "\\" between levels, each once, in the archive's
    // order. They differ from the stored names where no file can have those.
    virtual std::vector<std::string> TargetFolders(const std::string& destination) const;
    // Entries that the last extraction did not bring back.
    virtual std::int32_t FailedEntries() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace vantrel::zip
