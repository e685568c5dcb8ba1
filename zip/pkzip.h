// The zip component that the backup window drives: properties set by dispatch identifier, one
// action property that runs to its end inside the assignment, and events on the caller's thread.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <variant>

#include "platform/machine.h"
#include "zip/base/component_events.h"

namespace vantrel::zip {

using Value = std::variant<bool, std::int16_t, std::int32_t, std::string>;

// Dispatch identifiers of the zip component. A path that begins with exactly one backslash is on
// the application's drive; it is read back as it was set.
namespace zip_id {
constexpr int kArchive = 1;   // text: full path of the archive to create
constexpr int kFileSpec = 2;  // text: folder and mask, in double quotes
constexpr int kOption3 = 3;   // Booleans without effect: kept, and read back
constexpr int kOption4 = 4;
constexpr int kOption5 = 5;
constexpr int kOption32 = 32;
constexpr int kSubFolders = 7;    // Boolean
constexpr int kLevel = 8;         // 16-bit integer, 0 to 9
constexpr int kVolumeOption = 9;  // Boolean: off only for a spanned archive onto a full volume
constexpr int kMultiVolume = 37;  // 32-bit integer: 32768 or 0
constexpr int kAction = 40;       // 16-bit integer: 4 adds the files to a new archive
constexpr std::int32_t kSpanVolumes = 32768;
constexpr std::int16_t kActionAdd = 4;
}  // namespace zip_id

class PKZIP {
  public:
    virtual ~PKZIP() = default;
    explicit PKZIP(platform::Machine& machine) : machine_(machine) {}

    // Sets a property; kAction runs the operation. Wrong type or unknown action: error 380.
    virtual void Set(int id, const Value& value);
    // Reads a property back; never set: false, 0 or "" by its type. Unknown: error 380.
    virtual Value Get(int id) const;

    // Events, raised on the thread that set the action. Progress values are 0 to 100.
    std::function<void(std::int32_t& percent, bool& cancel)> OverallProgress;
    std::function<void(std::int32_t& percent)> FileProgress;
    std::function<void(const ComponentMessage& message)> Message;
    // A step without which there is no correct archive has failed and nobody can be asked: what was
    // written has been removed, the error message has been raised, and the earlier archive stands.
    std::function<void()> FatalStop;

    // Who answers questions; nullptr when nobody is there.
    Questions* questions = nullptr;

    // Files that the last action left out although they matched.
    virtual std::int32_t SkippedFiles() const { return skipped_; }

  private:
    void AddFiles();
    std::string Text(int id) const { return std::get<std::string>(Get(id)); }

    platform::Machine& machine_;
    std::map<int, Value> values_;  // what was set
    std::int32_t skipped_ = 0;
};

}  // namespace vantrel::zip
