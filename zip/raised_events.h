// The events of a run, raised as those of the component that an outsider drives.
#pragma once

#include <cstdint>

#include "zip/base/run_channel.h"

namespace vantrel::zip {

// `Component` is PKZIP or PKUNZIP; an event that nobody listens to is dropped.
template <typename Component>
class RaisedEvents : public RunEvents {
  public:
    explicit RaisedEvents(Component& component) : component_(component) {}

    void Overall(int percent, bool& cancel) override {
        std::int32_t value = percent;
        if (component_.OverallProgress) {
            component_.OverallProgress(value, cancel);
        }
    }
    void OfFile(int percent) override {
        std::int32_t value = percent;
        if (component_.FileProgress) {
            component_.FileProgress(value);
        }
    }
    void Told(const ComponentMessage& message) override {
        if (component_.Message) {
            component_.Message(message);
        }
    }
    Questions* Answers() override { return component_.questions; }

  private:
    Component& component_;
};

}  // namespace vantrel::zip
