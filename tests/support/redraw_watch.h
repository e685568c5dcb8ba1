// Sits where a window's or a control's view would, and hears of each redraw.
#pragma once

#include <functional>
#include <utility>

#include "forms/control.h"

namespace vantrel::test {

class RedrawWatch : public forms::ControlView {
  public:
    // `watched` is a form or a control without a view; it outlives this.
    template <typename Watched>
    RedrawWatch(Watched& watched, std::function<void()> on_redraw)
        : on_redraw_(std::move(on_redraw)), unbind_([&watched] { watched.Bind(nullptr); }) {
        watched.Bind(this);
    }
    ~RedrawWatch() override { unbind_(); }
    RedrawWatch(const RedrawWatch&) = delete;
    RedrawWatch& operator=(const RedrawWatch&) = delete;

    void Changed(forms::Aspect aspect) override {
        if (aspect == forms::Aspect::kRedraw) {
            on_redraw_();
        }
    }

  private:
    std::function<void()> on_redraw_;
    std::function<void()> unbind_;
};

}  // namespace vantrel::test
