#include "views/win32/layout.h"

#include <cstdint>
#include <cstring>

#include "common/error.h"
#include "views/win32/text.h"

namespace vantrel::views {

namespace {

// Walks an extended dialog template: little-endian words, items on 4-byte borders.
class Reader {
  public:
    explicit Reader(const void* data) : start_(static_cast<const BYTE*>(data)), at_(start_) {}
    template <typename T>
    T Take() {
        T value;
        std::memcpy(&value, at_, sizeof value);
        at_ += sizeof value;
        return value;
    }
    void Skip(std::size_t bytes) { at_ += bytes; }
    void Align() { at_ = start_ + ((at_ - start_ + 3) & ~std::ptrdiff_t{3}); }
    // A text, or 0xFFFF and a number in its place.
    void SkipTextOrNumber() {
        const WORD first = Take<WORD>();
        if (first == 0xFFFF) {
            Skip(sizeof(WORD));
        } else if (first != 0) {
            while (Take<WORD>() != 0) {
            }
        }
    }

  private:
    const BYTE* start_;
    const BYTE* at_;
};

struct BaseUnits {
    int x, y;  // pixels of 4 horizontal and 8 vertical dialog units
};

BaseUnits Measure(HFONT font) {
    static constexpr wchar_t kLetters[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    const TextDevice screen(nullptr, font);
    return {(screen.WidthOf(kLetters) / 26 + 1) / 2, screen.LineHeight()};
}

}  // namespace

Layout::Layout(const wchar_t* name) {
    const HMODULE program = GetModuleHandleW(nullptr);
    const HRSRC resource = FindResourceW(program, name, RT_DIALOG);
    if (!resource) {
        throw Error(error_number::kInvalidPropertyValue, "Layout",
                    "There is no dialog resource \"" + Utf8(name) + "\"");
    }
    Reader reader(LockResource(LoadResource(program, resource)));
    reader.Skip(2 * sizeof(WORD) + 2 * sizeof(DWORD));  // version, signature, help, extended style
    const DWORD style = reader.Take<DWORD>();
    const WORD count = reader.Take<WORD>();
    dialog_ = reader.Take<Units>();
    reader.SkipTextOrNumber();  // menu
    reader.SkipTextOrNumber();  // window class
    reader.SkipTextOrNumber();  // caption
    if (style & DS_SETFONT) {
        reader.Skip(2 * sizeof(WORD) + 2);  // size, weight, italic, character set
        reader.SkipTextOrNumber();
    }
    for (WORD i = 0; i < count; ++i) {
        reader.Align();
        reader.Skip(3 * sizeof(DWORD));  // help, extended style, style
        items_.push_back(reader.Take<Units>());
        reader.Skip(sizeof(DWORD));  // number
        reader.SkipTextOrNumber();   // window class
        reader.SkipTextOrNumber();   // caption
        reader.Skip(reader.Take<WORD>());
    }
}

void Layout::Attach(HWND dialog) {
    windows_.clear();
    for (HWND child = GetWindow(dialog, GW_CHILD); child && windows_.size() < items_.size();
         child = GetWindow(child, GW_HWNDNEXT)) {
        windows_.push_back(child);
    }
}

SIZE Layout::Apply(HFONT font) const {
    const BaseUnits base = Measure(font);
    for (std::size_t i = 0; i < windows_.size(); ++i) {
        const Units& units = items_[i];
        const int left = MulDiv(units.x, base.x, 4);
        const int top = MulDiv(units.y, base.y, 8);
        SendMessageW(windows_[i], WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
        // Edges are rounded, not sizes: what lines up in dialog units lines up in pixels.
        SetWindowPos(
            windows_[i], nullptr, left, top, MulDiv(units.x + units.width, base.x, 4) - left,
            MulDiv(units.y + units.height, base.y, 8) - top, SWP_NOZORDER | SWP_NOACTIVATE);
    }
    return {MulDiv(dialog_.width, base.x, 4), MulDiv(dialog_.height, base.y, 8)};
}

}  // namespace vantrel::views
