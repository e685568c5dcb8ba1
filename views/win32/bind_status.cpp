// The status bar: a line, which is shortened where the window is too narrow for it, and a note at
// the right end.
#include <algorithm>
#include <string>

#include "views/win32/binder.h"
#include "views/win32/text.h"

namespace vantrel::views {

using forms::Aspect;

namespace {

constexpr const wchar_t* kDots = L"...";

// `text` with `removed` units of the path taken from behind its root.
std::wstring WithoutMiddle(const std::wstring& text, const std::wstring& path,
                           std::size_t removed) {
    constexpr std::size_t kRoot = 3;  // "C:\\"
    const std::size_t at = text.find(path) + std::min(kRoot, path.size());
    std::wstring shorter = text;
    return shorter.replace(at, removed, kDots);
}

class StatusBarBinder : public BinderOf<forms::StatusBar> {
  public:
    using BinderOf::BinderOf;

    // The window has another size.
    void Rescale(int) override {
        SendMessageW(handle(), WM_SIZE, 0, 0);
        Arrange();
    }

  protected:
    std::string ShortenedText() const override { return is_shortened_ ? object().Caption() : ""; }
    void Show(Aspect aspect) override {
        if (aspect == Aspect::kText) {
            Arrange();
        }
    }

  private:
    // The note goes where the line needs its part of the bar.
    void Arrange() {
        RECT inside{};
        GetClientRect(handle(), &inside);
        const int width = static_cast<int>(inside.right);
        const int border = static_cast<int>(inside.bottom) / 2;
        const TextDevice device(handle());
        const std::wstring line = Wide(object().Caption());
        std::wstring note = Wide(object().Note());
        // The last border is that of the corner by which a window is resized.
        int line_end = width - (note.empty() ? 0 : device.WidthOf(note) + 2 * border);
        if (device.WidthOf(line) > line_end - border) {
            note.clear();
            line_end = width;
        }
        const int ends[] = {line_end, -1};
        SendMessageW(handle(), SB_SETPARTS, note.empty() ? 1 : 2,
                     reinterpret_cast<LPARAM>(note.empty() ? ends + 1 : ends));
        const std::wstring shown = Fitted(device, line, line_end - border);
        is_shortened_ = shown != line;
        SetPart(0, shown);
        if (!note.empty()) {
            SetPart(1, note);
        }
    }

    void SetPart(WPARAM part, const std::wstring& text) const {
        SendMessageW(handle(), SB_SETTEXTW, part, reinterpret_cast<LPARAM>(text.c_str()));
    }

    std::wstring Fitted(const TextDevice& device, const std::wstring& line, int width) const {
        if (device.WidthOf(line) <= width) {
            return line;
        }
        const std::wstring path = Wide(object().Path());
        for (std::size_t removed = 4; removed + 3 < path.size(); ++removed) {
            std::wstring shorter = WithoutMiddle(line, path, removed);
            if (device.WidthOf(shorter) <= width) {
                return shorter;
            }
        }
        std::wstring shorter = line;
        while (!shorter.empty() && device.WidthOf(shorter + kDots) > width) {
            shorter.pop_back();
        }
        return shorter + kDots;
    }

    bool is_shortened_ = false;
};

}  // namespace

const BinderMaker kStatusBarBinder = NewBinder<StatusBarBinder>;

}  // namespace vantrel::views
