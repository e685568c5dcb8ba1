#include "views/win32/layout.h"

#include <cmath>
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

constexpr double kTwipsAnInch = 1440;

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
        const Units units = reader.Take<Units>();
        items_.push_back({units, static_cast<int>(reader.Take<DWORD>())});
        reader.SkipTextOrNumber();  // window class
        reader.SkipTextOrNumber();  // caption
        reader.Skip(reader.Take<WORD>());
    }
}

void Layout::Attach(HWND dialog) {
    HWND child = GetWindow(dialog, GW_CHILD);
    for (Item& item : items_) {
        item.window = child;
        child = child ? GetWindow(child, GW_HWNDNEXT) : nullptr;
    }
}

SIZE Layout::Apply(HFONT font) {
    const BaseUnits base = Measure(font);
    for (Item& item : items_) {
        SendMessageW(item.window, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
        // Edges are rounded, not sizes: what lines up in dialog units lines up in pixels.
        const Units& units = item.units;
        item.designed = {MulDiv(units.x, base.x, 4), MulDiv(units.y, base.y, 8),
                         MulDiv(units.x + units.width, base.x, 4),
                         MulDiv(units.y + units.height, base.y, 8)};
    }
    return {MulDiv(dialog_.width, base.x, 4), MulDiv(dialog_.height, base.y, 8)};
}

void Layout::Resize(int extra_width, int extra_height) const {
    HDWP moves = BeginDeferWindowPos(static_cast<int>(items_.size()));
    for (const Item& item : items_) {
        const forms::Area area =
            forms::Resized(item.designed, AnchorsOf(item.id), extra_width, extra_height);
        // Copied bits would keep the shortened text of a label and the frame of a box.
        moves = moves
                    ? DeferWindowPos(moves, item.window, nullptr, area.left, area.top, area.Width(),
                                     area.Height(), SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS)
                    : nullptr;
    }
    if (moves) {
        EndDeferWindowPos(moves);
    }
}

int TwipsOf(int pixels, int dpi) {
    return static_cast<int>(std::nearbyint(static_cast<double>(pixels) * kTwipsAnInch / dpi));
}

int PixelsOf(int twips, int dpi) {
    return static_cast<int>(std::nearbyint(static_cast<double>(twips) * dpi / kTwipsAnInch));
}

}  // namespace vantrel::views
