// Where windows and their controls stand, as plain numbers: how controls follow the size of their
// window, how a window's size and position are stored, and how they are corrected to a screen that
// exists. Used on the user-interface thread only.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "forms/program.h"

namespace vantrel::forms {

// In pixels; right and bottom are outside.
struct Area {
    int left = 0, top = 0, right = 0, bottom = 0;

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    bool operator==(const Area&) const = default;
};

// By how many percent of its window's growth each edge of a control moves. An edge with 0 keeps its
// distance to the left or upper edge of the window, one with 100 to the right or lower edge.
struct Anchors {
    int left = 0, top = 0, right = 0, bottom = 0;
};

// The place of a control in a window that is larger than designed. Controls whose edges have the
// same share stay aligned and keep their distances.
Area Resized(const Area& designed, const Anchors& anchors, int extra_width, int extra_height);

// Size and position of a window, without its being maximized, and the dpi that they were taken at.
struct Placement {
    Area area;
    int dpi = 96;
    bool maximized = false;

    bool operator==(const Placement&) const = default;
};

std::string ToText(const Placement& placement);
// None for anything that ToText does not write.
std::optional<Placement> PlacementFrom(const std::string& text);

// The placement that a window of this name had when it was closed last. None in an unattended run,
// which does not read the settings store.
std::optional<Placement> StoredPlacement(Program& program, const std::string& window);
// Does nothing in an unattended run. A store that cannot be written is not reported: the next start
// shows the window in its earlier size.
void StorePlacement(Program& program, const std::string& window, const Placement& placement);

// Moves a window into the work area that shows most of it, the first one if none does, and shrinks
// it if it is larger. `work_areas` are those of the screens, the main screen first.
Area OnScreen(const Area& window, const std::vector<Area>& work_areas);
// `window` moved so that its middle is that of `other`.
Area Centered(const Area& window, const Area& other);

}  // namespace vantrel::forms
