// The positions of a dialog's controls, in dialog units as in its resource, their conversion to
// pixels for a font, and how they follow the size of the dialog. Kept so that a window can be laid
// out anew when its screen's dpi or its size changes.
#pragma once

#include <windows.h>

#include <vector>

#include "forms/placement.h"

namespace vantrel::views {

class Layout {
  public:
    // Reads the template `name` of the program's resources. Throws vantrel::Error when there is
    // none.
    explicit Layout(const wchar_t* name);

    // Takes the children that the template has made in `dialog`; call it before adding others.
    void Attach(HWND dialog);
    // Computes the designed positions for `font`, and gives it to every child. Returns the designed
    // size of the dialog's inside. Resize moves the children.
    SIZE Apply(HFONT font);
    // Moves every child to its position in a dialog that is larger than designed by these pixels.
    void Resize(int extra_width, int extra_height) const;

  private:
    struct Units {
        short x, y, width, height;
    };
    struct Item {
        Units units;
        int id;
        HWND window = nullptr;
        forms::Area designed{};  // pixels
    };
    Units dialog_{};
    std::vector<Item> items_;
};

// Pixels at a dpi, and twips (1,440 an inch), rounded half to even.
int TwipsOf(int pixels, int dpi);
int PixelsOf(int twips, int dpi);

// How the control with this number follows the size of its window.
forms::Anchors AnchorsOf(int control_id);

}  // namespace vantrel::views
