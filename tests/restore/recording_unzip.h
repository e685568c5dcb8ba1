// An unzip component that notes the properties in the order in which they are set. It lists an
// archive as the real one does; instead of extracting it plays a test's events.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/component_values.h"
#include "zip/pkunzip.h"

namespace vantrel::test {

class RecordingUnzip : public zip::PKUNZIP {
  public:
    struct Record {
        std::vector<std::string> sets;  // "14=True", in order
        std::function<void(RecordingUnzip&)> extraction;
    };

    RecordingUnzip(platform::Machine& machine, Record& record)
        : PKUNZIP(machine), record_(record) {}

    void Set(int id, const zip::Value& value) override {
        record_.sets.push_back(std::to_string(id) + "=" + test::Text(value));
        const bool extracts =
            id == zip::unzip_id::kAction && value == zip::Value(zip::unzip_id::kActionExtract);
        if (!extracts) {
            return PKUNZIP::Set(id, value);
        }
        if (record_.extraction) {
            record_.extraction(*this);
        }
    }
    // One overall-progress event; returns what the window made of the cancel flag.
    bool RaiseOverall(std::int32_t percent) {
        bool cancel = false;
        OverallProgress(percent, cancel);
        return cancel;
    }
    void RaiseFile(std::int32_t percent) { FileProgress(percent); }
    void Say(const std::string& text) {
        zip::ComponentMessage message;
        message.text = text;
        Message(message);
    }

  private:
    Record& record_;
};

}  // namespace vantrel::test
