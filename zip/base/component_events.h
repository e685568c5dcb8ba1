// Messages, questions and progress: what a run of the engine reports to the window (or the command
// line) that drives it. All of it happens on the thread that started the run.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "common/error.h"

namespace vantrel::zip {

enum class MessageKind { kInformation, kWarning, kError };

// A report of a run; what the message event carries, whose fifth argument is the text. A failure of
// a step travels as this type from the place where it was found.
struct ComponentMessage {
    MessageKind kind = MessageKind::kInformation;
    int code = 0;            // run-time error number, 0 for information
    std::int32_t entry = 0;  // of the archive, from 1; 0 when the message concerns no entry
    std::string path;        // the file or folder concerned, "" for the run itself
    std::string text;        // for the user
    std::int32_t total = 0;  // entries
    bool left_out = false;   // the file or folder at `path` is missing in the result
    std::uint32_t disk = 0;  // of a question for a disk: its number from 1, or kLastDisk
};

// The last disk of a set whose size is unknown.
constexpr std::uint32_t kLastDisk = 0xFFFFFFFF;

// A warning about `path`; `code` is 0 when no error was raised.
inline ComponentMessage Warning(std::string path, std::string text, int code = 0) {
    return {MessageKind::kWarning, code, 0, std::move(path), std::move(text)};
}
// The same; that file or folder is not in the result.
inline ComponentMessage LeftOutWarning(std::string path, std::string text, int code) {
    ComponentMessage message = Warning(std::move(path), std::move(text), code);
    message.left_out = true;
    return message;
}
// A step without which there is no correct result has failed.
inline ComponentMessage Failure(int code, std::string path, std::string text) {
    return {MessageKind::kError, code, 0, std::move(path), std::move(text)};
}

// "What could not be done: PATH (reason).", with control characters made visible.
std::string FailureText(const std::string& what, const std::string& path, const Error& error);

// How far a run has come, as facts for a display. Empty folders are not counted.
struct RunFigures {
    std::uint64_t files_found = 0;  // while the source is being listed
    std::uint64_t files_total = 0;  // 0 until known, as the bytes
    std::uint64_t bytes_total = 0;
    std::uint64_t files_done = 0;  // stored or restored
    std::uint64_t bytes_done = 0;
    std::uint64_t left_out = 0;        // files and folders that are missing in the result
    std::uint64_t bytes_left_out = 0;  // listed sizes of the files among those
    std::uint64_t file_cost = 0;       // work for a file besides its bytes, in bytes
    std::uint64_t archive_bytes = 0;   // of a new archive, on all disks; 0 until it is complete
    std::uint32_t disk = 0;            // that is being asked for, or kLastDisk; 0: none
    bool finishing = false;            // all files are done, the rest takes no measurable work

    bool IsTotalKnown() const { return files_total > 0; }
    // Work in bytes. A file has a fixed cost besides its bytes: opening it takes as long as
    // compressing some thousand bytes, and creating one takes longer.
    double CostTotal() const { return Cost(files_total, bytes_total); }
    // At most CostTotal. Includes what was left out.
    double CostDone() const {
        return Cost(std::min(files_done + left_out, files_total),
                    std::min(bytes_done + bytes_left_out, bytes_total));
    }

  private:
    double Cost(std::uint64_t files, std::uint64_t bytes) const {
        // Floating point because the product can exceed 64 bits.
        return static_cast<double>(files) * static_cast<double>(file_cost) +
               static_cast<double>(bytes);
    }
};

// A question of the component: what failed, to be answered with Retry or Cancel.
class Questions {
  public:
    virtual ~Questions() = default;
    // True: repeat that step. False: cancel; the component then raises one more overall-progress
    // event, which must return the cancel.
    virtual bool AskRetry(const std::string& text) = 0;

    enum class DiskAnswer { kRetry, kContinue, kCancel };
    // The same for a disk without which the run can continue; what is on it is then left out.
    virtual DiskAnswer AskForDisk(const std::string& text) {
        return AskRetry(text) ? DiskAnswer::kRetry : DiskAnswer::kCancel;
    }
};

// Receives the events of a run, on the caller's thread. An exception thrown by a member ends the
// run and leaves RunContext::Run.
class RunEvents {
  public:
    virtual ~RunEvents() = default;
    // `percent` 0 to 100, never less than before. Setting `cancel` stops the run.
    virtual void OnProgress(int percent, bool& cancel) = 0;
    virtual void OnFileProgress(int percent) = 0;
    // Raised before each pair of progress events and once at the end of the run.
    virtual void OnFigures(const RunFigures&) {}
    virtual void OnMessage(const ComponentMessage& message) = 0;
    // Whether per-file messages are wanted; warnings and errors are always delivered.
    virtual bool WantsEachFile() const { return true; }
    // Asks the user; nullptr when the run is unattended.
    virtual Questions* QuestionHandler() = 0;
};

enum class RunOutcome { kComplete, kCancelled, kFailed };

}  // namespace vantrel::zip
