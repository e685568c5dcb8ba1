// A desktop for code that shows nothing: an event is what the target makes of it, everything else
// ends the process, so that the fuzzer keeps the input.
#pragma once

#include <cstdlib>
#include <functional>
#include <string>

#include "forms/desktop.h"

namespace vantrel::test {

class SilentDesktop : public forms::Desktop {
  public:
    std::function<void()> on_events = [] {};

    void DoEvents() override { on_events(); }

    forms::Answer Show(const forms::Box&) override { std::abort(); }
    std::string Input(const std::string&, const std::string&, const std::string&) override {
        std::abort();
    }
    std::string OpenFile(const std::string&, const std::string&, const std::string&) override {
        std::abort();
    }
    void Load(forms::Form&) override { std::abort(); }
    void ShowModeless(forms::Form&) override { std::abort(); }
    void ShowModal(forms::Form&) override { std::abort(); }
    void Hide(forms::Form&) override { std::abort(); }
    void Unload(forms::Form&, forms::UnloadMode) override { std::abort(); }
    bool PaintAndCheckEscape() override { std::abort(); }
    void WaitEvents() override { std::abort(); }
    void Run() override { std::abort(); }
    void SetPointer(forms::Pointer) override { std::abort(); }
};

}  // namespace vantrel::test
