// A zip component that compresses nothing: it notes the properties in the order in which they are
// set and plays a test's events when the action is set.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/support/component_values.h"
#include "zip/pkzip.h"

namespace vantrel::test {

class RecordingZip : public zip::PKZIP {
  public:
    struct Record {
        std::vector<std::string> sets;  // "8=9", in order
        std::map<int, zip::Value> values;
        std::map<int, zip::Value> reads_back;  // in place of what was set
        std::function<void(RecordingZip&)> action;
        std::int32_t skipped = 0;
    };

    RecordingZip(platform::Machine& machine, Record& record) : PKZIP(machine), record_(record) {}

    void Set(int id, const zip::Value& value) override {
        record_.sets.push_back(std::to_string(id) + "=" + test::Text(value));
        record_.values[id] = value;
        if (id == zip::zip_id::kAction && record_.action) {
            record_.action(*this);
        }
    }
    zip::Value Get(int id) const override {
        const auto other = record_.reads_back.find(id);
        return other != record_.reads_back.end() ? other->second : record_.values.at(id);
    }
    std::int32_t SkippedFiles() const override { return record_.skipped; }

    // One overall-progress event; returns what the window made of the cancel flag.
    bool RaiseOverall(std::int32_t percent) {
        bool cancel = false;
        OverallProgress(percent, cancel);
        return cancel;
    }
    void Say(const std::string& text, zip::MessageKind kind = zip::MessageKind::kInformation) {
        zip::ComponentMessage message;
        message.kind = kind;
        message.text = text;
        Message(message);
    }

  private:
    Record& record_;
};

}  // namespace vantrel::test
