// The zip component that the backup window drives: properties set by dispatch identifier, one
// action property that runs to its end inside the assignment, and events on the caller's thread.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <variant>

#include "platform/machine.h"

namespace vantrel::zip {

using Value = std::variant<bool, std::int16_t, std::int32_t, std::string>;

// Dispatch identifiers of the zip component.
namespace zip_id {
constexpr int kArchive = 1;        // text: full path of the archive to create
constexpr int kFileSpec = 2;       // text: folder and mask, in double quotes
constexpr int kSubFolders = 7;     // Boolean
constexpr int kLevel = 8;          // 16-bit integer, 0 to 9
constexpr int kVolumeOption = 9;   // Boolean: off only for a spanned archive onto a full volume
constexpr int kMultiVolume = 37;   // 32-bit integer: 32768 or 0
constexpr int kAction = 40;        // 16-bit integer: 4 adds the files to a new archive
constexpr std::int32_t kSpanVolumes = 32768;
constexpr std::int16_t kActionAdd = 4;
}  // namespace zip_id

enum class MessageKind { kInformation, kWarning, kError };

// What the message event carries; the text is its fifth argument.
struct ComponentMessage {
    MessageKind kind = MessageKind::kInformation;
    int code = 0;          // run-time error number, 0 for information
    std::int32_t entry = 0;
    std::string path;      // the file or folder it is about, "" for the run itself
    std::string text;      // for the user
    std::int32_t total = 0;
};

// A question of the component: what went wrong, to be answered with Retry or Cancel.
class Questions {
  public:
    virtual ~Questions() = default;
    // True: try that step again. False: cancel; the component then raises one more
    // overall-progress event, which must hand the cancel over.
    virtual bool AskRetry(const std::string& text) = 0;
};

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
    platform::Machine& machine_;
    struct Settings {
        std::string archive, file_spec;
        bool sub_folders = false, volume_option = true;
        bool option3 = false, option4 = false, option5 = false, option32 = false;
        std::int16_t level = 9;
        std::int32_t multi_volume = 0;
    } settings_;
    std::int32_t skipped_ = 0;
};

}  // namespace vantrel::zip
