#include "forms/placement.h"

#include <algorithm>
#include <cstdint>
#include <sstream>

#include "common/error.h"

namespace vantrel::forms {

namespace {

// Beside the name of the set that was selected last.
constexpr const char* kSection = "Startup";
std::string KeyOf(const std::string& window) { return window + " Placement"; }

int Share(int extra, int percent) { return extra * percent / 100; }

std::int64_t Overlap(const Area& one, const Area& other) {
    const std::int64_t width = std::min(one.right, other.right) - std::max(one.left, other.left);
    const std::int64_t height = std::min(one.bottom, other.bottom) - std::max(one.top, other.top);
    return width > 0 && height > 0 ? width * height : 0;
}

// Start of a range of `length` inside `from` to `to`; one that is too long starts at `from`.
int StartInside(int start, int length, int from, int to) {
    return std::max(from, std::min(start, to - length));
}

// Numbers from a damaged store must not overflow what is computed from them.
constexpr int kMaxPixels = 100000;
constexpr int kMinDpi = 48;
constexpr int kMaxDpi = 960;

bool IsSensible(const Placement& placement) {
    const Area& area = placement.area;
    for (const int edge : {area.left, area.top, area.right, area.bottom}) {
        if (edge < -kMaxPixels || edge > kMaxPixels) {
            return false;
        }
    }
    return area.Width() > 0 && area.Height() > 0 && placement.dpi >= kMinDpi &&
           placement.dpi <= kMaxDpi;
}

}  // namespace

Area Resized(const Area& designed, const Anchors& anchors, int extra_width, int extra_height) {
    return {designed.left + Share(extra_width, anchors.left),
            designed.top + Share(extra_height, anchors.top),
            designed.right + Share(extra_width, anchors.right),
            designed.bottom + Share(extra_height, anchors.bottom)};
}

std::string ToText(const Placement& placement) {
    std::ostringstream text;
    text << placement.area.left << ' ' << placement.area.top << ' ' << placement.area.right << ' '
         << placement.area.bottom << ' ' << placement.dpi << ' '
         << (placement.maximized ? "maximized" : "normal");
    return text.str();
}

std::optional<Placement> PlacementFrom(const std::string& text) {
    Placement placement;
    Area& area = placement.area;
    std::string state;
    std::istringstream words(text);
    words >> area.left >> area.top >> area.right >> area.bottom >> placement.dpi >> state;
    placement.maximized = state == "maximized";
    // The text is compared, so that nothing else can be in it.
    if (!words || !IsSensible(placement) || ToText(placement) != text) {
        return std::nullopt;
    }
    return placement;
}

std::optional<Placement> StoredPlacement(Program& program, const std::string& window) {
    if (program.Unattended()) {
        return std::nullopt;
    }
    return PlacementFrom(program.machine.settings.Read(kSection, KeyOf(window)).value_or(""));
}

void StorePlacement(Program& program, const std::string& window, const Placement& placement) {
    if (program.Unattended()) {
        return;
    }
    try {
        program.machine.settings.Write(kSection, KeyOf(window), ToText(placement));
    } catch (const Error&) {
        // The window closes all the same.
    }
}

Area OnScreen(const Area& window, const std::vector<Area>& work_areas) {
    if (work_areas.empty()) {
        return window;
    }
    const Area& screen = *std::max_element(
        work_areas.begin(), work_areas.end(),
        [&](const Area& a, const Area& b) { return Overlap(window, a) < Overlap(window, b); });
    const int width = std::min(window.Width(), screen.Width());
    const int height = std::min(window.Height(), screen.Height());
    const int left = StartInside(window.left, width, screen.left, screen.right);
    const int top = StartInside(window.top, height, screen.top, screen.bottom);
    return {left, top, left + width, top + height};
}

Area Centered(const Area& window, const Area& other) {
    const int left = (other.left + other.right - window.Width()) / 2;
    const int top = (other.top + other.bottom - window.Height()) / 2;
    return {left, top, left + window.Width(), top + window.Height()};
}

}  // namespace vantrel::forms
