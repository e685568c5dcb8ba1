#include "platform/win32/win32_code_page.h"

#include <windows.h>

#include <utility>

#include "common/utf.h"
#include "platform/win32/disk_path.h"

namespace vantrel::platform {

namespace {

struct Encoded {
    std::string bytes;
    bool exact = true;
};

int Length(std::size_t size) { return static_cast<int>(size); }

Encoded ToAnsi(const std::wstring& text) {
    Encoded result;
    if (text.empty()) {
        return result;
    }
    // Where the code page is UTF-8 itself, the system takes neither flags nor substitutes.
    const bool utf8 = GetACP() == CP_UTF8;
    const DWORD flags = utf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
    BOOL substituted = FALSE;
    const auto convert = [&](char* room, int size) {
        return WideCharToMultiByte(CP_ACP, flags, text.data(), Length(text.size()), room, size,
                                   utf8 ? nullptr : "?", utf8 ? nullptr : &substituted);
    };
    const int size = convert(nullptr, 0);
    result.bytes.resize(static_cast<std::size_t>(size));
    if (size == 0 || convert(result.bytes.data(), size) == 0 || substituted) {
        result.exact = false;
    }
    return result;
}

// One unit that no code page holds for each character of two, so that it becomes one "?".
std::wstring OneUnitEach(const std::wstring& text) {
    std::wstring result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool pair = utf::IsHigh(text[i]) && i + 1 < text.size() && utf::IsLow(text[i + 1]);
        const bool half = utf::IsHigh(text[i]) || utf::IsLow(text[i]);
        result += half ? L'\xFFFD' : text[i];
        if (pair) {
            ++i;
        }
    }
    return result;
}

std::string FromBytes(UINT code_page, const std::string& bytes) {
    if (bytes.empty()) {
        return {};
    }
    const auto convert = [&](wchar_t* room, int size) {
        return MultiByteToWideChar(code_page, 0, bytes.data(), Length(bytes.size()), room, size);
    };
    std::wstring text(static_cast<std::size_t>(convert(nullptr, 0)), L'\0');
    convert(text.data(), Length(text.size()));
    return Narrow(text);
}

}  // namespace

std::optional<std::string> Win32CodePage::Encode(const std::string& utf8) {
    Encoded encoded = ToAnsi(Wide(utf8));
    if (!encoded.exact) {
        return std::nullopt;
    }
    return std::move(encoded.bytes);
}

std::string Win32CodePage::EncodeLossy(const std::string& utf8) {
    if (GetACP() == CP_UTF8) {
        return utf8;
    }
    return ToAnsi(OneUnitEach(Wide(utf8))).bytes;
}

std::string Win32CodePage::Decode(const std::string& bytes) { return FromBytes(CP_ACP, bytes); }

std::string Win32CodePage::DecodeOem(const std::string& bytes) {
    return FromBytes(CP_OEMCP, bytes);
}

std::string Win32CodePage::Upper(const std::string& utf8) {
    if (auto ascii = utf::UpperOfAscii(utf8)) {
        return std::move(*ascii);
    }
    std::wstring text = Wide(utf8);
    const std::wstring capitals = FoldWide(text);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (capitals[i] == text[i]) {
            continue;
        }
        if (ToAnsi(std::wstring(1, capitals[i])).exact) {
            text[i] = capitals[i];
        }
    }
    return Narrow(text);
}

std::string Win32CodePage::Fold(const std::string& utf8) {
    if (auto ascii = utf::UpperOfAscii(utf8)) {
        return std::move(*ascii);
    }
    return Narrow(FoldWide(Wide(utf8)));
}

std::wstring FoldWide(std::wstring text) {
    if (text.empty()) {
        return text;
    }
    std::wstring folded(text.size(), L'\0');
    // Without a linguistic flag the map is one unit for one.
    const int done =
        LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, text.data(), Length(text.size()),
                      folded.data(), Length(folded.size()), nullptr, nullptr, 0);
    return done == Length(text.size()) ? folded : text;
}

}  // namespace vantrel::platform
