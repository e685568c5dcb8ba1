// The hourglass as long as this lives; then the default pointer, however the work ended.
#pragma once

#include "forms/desktop.h"

namespace vantrel::forms {

class Hourglass {
  public:
    explicit Hourglass(Desktop& desktop) : desktop_(desktop) {
        desktop_.SetPointer(Pointer::kHourglass);
    }
    ~Hourglass() { desktop_.SetPointer(Pointer::kDefault); }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;

  private:
    Desktop& desktop_;
};

}  // namespace vantrel::forms
