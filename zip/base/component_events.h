// Messages, questions and progress: what a run of the engine reports to the window (or the command
// line) that drives it. All of it happens on the thread that started the run.
#pragma once

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
};

// A warning about `path`; `code` is 0 when no error was raised.
inline ComponentMessage Warning(std::string path, std::string text, int code = 0) {
    return {MessageKind::kWarning, code, 0, std::move(path), std::move(text), 0};
}
// A step without which there is no correct result has failed.
inline ComponentMessage Failure(int code, std::string path, std::string text) {
    return {MessageKind::kError, code, 0, std::move(path), std::move(text), 0};
}

// "What could not be done: PATH (reason).", with control characters made visible.
std::string FailureText(const std::string& what, const std::string& path, const Error& error);

// A question of the component: what failed, to be answered with Retry or Cancel.
class Questions {
  public:
    virtual ~Questions() = default;
    // True: repeat that step. False: cancel; the component then raises one more overall-progress
    // event, which must return the cancel.
    virtual bool AskRetry(const std::string& text) = 0;
};

// Receives the events of a run, on the caller's thread. An exception thrown by a member ends the
// run and leaves RunContext::Run.
class RunEvents {
  public:
    virtual ~RunEvents() = default;
    // `percent` 0 to 100, never less than before. Setting `cancel` stops the run.
    virtual void OnProgress(int percent, bool& cancel) = 0;
    virtual void OnFileProgress(int percent) = 0;
    virtual void OnMessage(const ComponentMessage& message) = 0;
    // Whether per-file messages are wanted; warnings and errors are always delivered.
    virtual bool WantsEachFile() const { return true; }
    // Asks the user; nullptr when the run is unattended.
    virtual Questions* QuestionHandler() = 0;
};

enum class RunOutcome { kComplete, kCancelled, kFailed };

}  // namespace vantrel::zip
