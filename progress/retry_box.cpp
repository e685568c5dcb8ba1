#include "progress/retry_box.h"

namespace vantrel {

bool AskedToRetry(forms::Desktop& desktop, const std::string& text, const std::string& title) {
    return desktop.Show({.text = text,
                         .buttons = forms::Buttons::kRetryCancel,
                         .icon = forms::Icon::kExclamation,
                         .title = title}) == forms::Answer::kRetry;
}

}  // namespace vantrel
