#include "zip/component.h"

#include "common/error.h"
#include "common/path.h"

namespace vantrel::zip {

Value Component::Get(int id) const {
    const auto found = values_.find(id);
    if (found == values_.end()) {
        RaiseError(error_number::kInvalidPropertyValue);
    }
    return found->second;
}

void Component::Set(int id, const Value& value) {
    const auto found = values_.find(id);
    if (found == values_.end() || value.index() != found->second.index() ||
        !IsAcceptable(id, value)) {
        RaiseError(error_number::kInvalidPropertyValue);
    }
    found->second = value;
    if (id == action_id_) {
        RunAction(std::get<std::int16_t>(value));
    }
}

std::string Component::FullPath(const std::string& path) const {
    return path::OnDriveOf(machine_.process.ApplicationFolder(), path);
}

void Component::OnProgress(int percent, bool& cancel) {
    std::int32_t value = percent;
    // A copy, because the handler may put another in its place.
    if (const auto handler = OverallProgress) {
        handler(value, cancel);
    }
}

void Component::OnFileProgress(int percent) {
    std::int32_t value = percent;
    if (FileProgress) {
        FileProgress(value);
    }
}

void Component::OnMessage(const ComponentMessage& message) {
    if (Message) {
        Message(message);
    }
}

void Component::OnFigures(const RunFigures& figures) {
    if (Figures) {
        Figures(figures);
    }
}

}  // namespace vantrel::zip
