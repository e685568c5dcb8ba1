// What the log keeps of a component's messages: warnings and errors, undated, as they are handled.
// A run over a broken disk may bring thousands; the log is small, so only the first ones are
// written and the rest are counted.
#pragma once

#include <cstdint>
#include <string>

#include "forms/program.h"
#include "zip/base/component_events.h"

namespace vantrel {

class ComponentMessages {
  public:
    explicit ComponentMessages(forms::Program& program) : program_(program) {}

    void Handle(const zip::ComponentMessage& message);
    // Once, when the action has returned or before a fatal stop: how many more messages there were,
    // and how many files the run has lost ("not backed up").
    void Summarise(std::int32_t lost_files, const std::string& what_they_are);

  private:
    static constexpr int kMostLines = 50;  // 50 of at most ~300 bytes leave room in a 50K log
    void Write(const std::string& text);

    forms::Program& program_;
    int written_ = 0;
    std::uint32_t others_ = 0;
};

}  // namespace vantrel
