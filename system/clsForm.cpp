#include "system/clsForm.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "common/error.h"

namespace vantrel {

namespace {

constexpr int kBands = 63;
constexpr int kStep = 4;  // by which each colour component decreases from band to band

// Coordinates are 16-bit twips.
int Checked(int coordinate) {
    using Limits = std::numeric_limits<std::int16_t>;
    if (coordinate < Limits::min() || coordinate > Limits::max()) {
        RaiseError(error_number::kOverflow);
    }
    return coordinate;
}

int Darker(int component) { return component - kStep < 1 ? 0 : component - kStep; }

}  // namespace

void clsForm::Gradient(forms::Form& window, int red, int green, int blue, bool top_to_bottom) {
    Reported("clsForm:Gradient Method", [&] {
        window.ClearBoxes();
        // Rounds half to even.
        const int band =
            Checked(static_cast<int>(std::nearbyint(window.Height() / double{kBands})));
        int top = top_to_bottom ? 0 : Checked(window.Height() - band);
        for (int i = 0; i < kBands; ++i) {
            const int bottom = Checked(top + band);
            window.DrawBox({0, top, window.Width(), bottom, red, green, blue});
            red = Darker(red);
            green = Darker(green);
            blue = Darker(blue);
            top = top_to_bottom ? bottom : Checked(top - band);
        }
    });
}

}  // namespace vantrel
