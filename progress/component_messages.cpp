#include "progress/component_messages.h"

#include "common/display_text.h"
#include "log/clsLog.h"

namespace vantrel {

void ComponentMessages::Handle(const zip::ComponentMessage& message) {
    if (message.kind == zip::MessageKind::kInformation) return;
    if (written_ == kMostLines) {
        ++others_;
        return;
    }
    ++written_;
    Write(message.text);
}

void ComponentMessages::Summarise(std::int32_t lost_files, const std::string& what_they_are) {
    if (others_ > 0) Write(Counted(others_, "more message", "more messages") + " not written");
    const auto lost = static_cast<std::uint32_t>(lost_files);
    if (lost > 0) Write(Counted(lost, "file", "files") + " " + what_they_are);
    written_ = 0;
    others_ = 0;
}

void ComponentMessages::Write(const std::string& text) {
    clsLog(program_).WriteToLog("Backup", false, text);
}

}  // namespace vantrel
