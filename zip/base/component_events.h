// What the two archive components tell the window that drives them, and ask it.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace vantrel::zip {

enum class MessageKind { kInformation, kWarning, kError };

// What the message event carries; the text is its fifth argument.
struct ComponentMessage {
    MessageKind kind = MessageKind::kInformation;
    int code = 0;  // run-time error number, 0 for information
    std::int32_t entry = 0;
    std::string path;  // the file or folder it is about, "" for the run itself
    std::string text;  // for the user
    std::int32_t total = 0;
};

// A warning about `path`; `code` is a run-time error number, 0 when none was raised.
inline ComponentMessage Warning(std::string path, std::string text, int code = 0) {
    return {MessageKind::kWarning, code, 0, std::move(path), std::move(text), 0};
}

// A question of the component: what went wrong, to be answered with Retry or Cancel.
class Questions {
  public:
    virtual ~Questions() = default;
    // True: try that step again. False: cancel; the component then raises one more
    // overall-progress event, which must hand the cancel over.
    virtual bool AskRetry(const std::string& text) = 0;
};

}  // namespace vantrel::zip
