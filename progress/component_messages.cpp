#include "progress/component_messages.h"

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
    if (others_ > 0) Write(std::to_string(others_) + " more messages not written");
    if (lost_files > 0) Write(std::to_string(lost_files) + " " + what_they_are);
    written_ = 0;
    others_ = 0;
}

void ComponentMessages::Write(const std::string& text) {
    clsLog(program_).WriteToLog("Backup", false, text);
}

}  // namespace vantrel
