// The positions of a dialog's controls, in dialog units as in its resource, and their conversion to
// pixels for a font. Kept so that a window can be laid out anew when its screen's dpi changes.
#pragma once

#include <windows.h>

#include <vector>

namespace vantrel::views {

class Layout {
  public:
    // Reads the template `name` of the program's resources. Throws vantrel::Error when there is
    // none.
    explicit Layout(const wchar_t* name);

    // Takes the children that the template has made in `dialog`; call it before adding others.
    void Attach(HWND dialog);
    // Moves every child and gives it `font`. Returns the size that the dialog's inside has then.
    SIZE Apply(HFONT font) const;

  private:
    struct Units {
        short x, y, width, height;
    };
    Units dialog_{};
    std::vector<Units> items_;
    std::vector<HWND> windows_;
};

}  // namespace vantrel::views
