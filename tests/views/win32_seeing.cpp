#include <set>

#include "tests/views/win32_user.h"

namespace vantrel::test {

using forms::Kind;

namespace {

std::string StatusText(HWND bar) {
    const auto length = static_cast<std::size_t>(LOWORD(Send(bar, SB_GETTEXTLENGTHW)));
    std::wstring text(length + 1, L'\0');
    Send(bar, SB_GETTEXTW, 0, reinterpret_cast<LPARAM>(text.data()));
    text.resize(length);
    return views::Utf8(text);
}

// How much of the uppermost line inside the frame is filled; captions stand below it.
double FilledPercent(HWND panel) {
    const RECT all = ClientOf(panel);
    const RECT line{1, 1, all.right - 1, 2};
    const int filled = PixelsOf(panel, line, GetSysColor(COLOR_HIGHLIGHT));
    return 100.0 * filled / (line.right - line.left);
}

// Clips that have been begun with success, and not ended yet: the real control cannot be asked.
std::set<HWND> g_playing;
WNDPROC g_clip_procedure = nullptr;

LRESULT CALLBACK NotePlaying(HWND clip, UINT message, WPARAM wparam, LPARAM lparam) {
    const LRESULT result = CallWindowProcW(g_clip_procedure, clip, message, wparam, lparam);
    if (message == ACM_OPENW || message == ACM_PLAY || message == ACM_STOP) {
        g_playing.erase(clip);
        const bool shows_one_picture = HIWORD(lparam) == LOWORD(lparam);
        if (message == ACM_PLAY && result && !shows_one_picture) {
            g_playing.insert(clip);
        }
    }
    return result;
}

// For all clips that are created from now on. A hook would see every message of every window, which
// takes most of the time of these tests.
void FollowClips() {
    const HWND sample = CreateWindowExW(0, ANIMATE_CLASSW, L"", WS_CHILD, 0, 0, 0, 0, HWND_MESSAGE,
                                        nullptr, nullptr, nullptr);
    g_clip_procedure = reinterpret_cast<WNDPROC>(
        SetClassLongPtrW(sample, GCLP_WNDPROC, reinterpret_cast<LONG_PTR>(NotePlaying)));
    DestroyWindow(sample);
}

}  // namespace

Win32User::Win32User() {
    if (!g_clip_procedure) {
        FollowClips();
    }
    g_playing.clear();
    desktop_.on_unhandled = [this](const Error& error) { errors.push_back(error.number()); };
}

SeenEntry Win32User::LookAtEntry(forms::Control& entry) {
    const auto id = static_cast<UINT>(IdOf(entry));
    const HMENU bar = GetMenu(TopOf(entry.owner()));
    wchar_t text[200]{};
    if (!GetMenuStringW(bar, id, text, 200, MF_BYCOMMAND)) {
        return in_pop_ups_.at(static_cast<int>(id));
    }
    const UINT state = GetMenuState(bar, id, MF_BYCOMMAND);
    return {views::Utf8(text), (state & (MF_GRAYED | MF_DISABLED)) == 0};
}

std::string Win32User::Text(forms::Control& control) {
    if (control.kind() == Kind::kMenu) {
        return LookAtEntry(control).text;
    }
    const HWND window = Settled(control);
    return control.kind() == Kind::kStatusBar ? StatusText(window) : views::TextOf(window);
}

bool Win32User::Enabled(forms::Control& control) {
    if (control.kind() == Kind::kMenu) {
        return LookAtEntry(control).enabled;
    }
    return IsWindowEnabled(Settled(control)) != FALSE;
}

bool Win32User::Visible(forms::Control& control) {
    return (GetWindowLongW(Settled(control), GWL_STYLE) & WS_VISIBLE) != 0;
}

bool Win32User::HasKeyboard(forms::Control& control) { return GetFocus() == Settled(control); }

std::vector<std::string> Win32User::Items(forms::Control& list) { return ItemsOf(Settled(list)); }

int Win32User::Highlighted(forms::Control& list) {
    const HWND window = Settled(list);
    return static_cast<int>(Send(window, MessagesOf(window).selection));
}

bool Win32User::Checked(forms::CheckBox& box) {
    return Send(Settled(box), BM_GETCHECK) == BST_CHECKED;
}

forms::Label::Color Win32User::Color(forms::Label& label) {
    const HWND window = Settled(label);
    const bool has_text_color = PixelsOf(window, ClientOf(window), GetSysColor(COLOR_BTNTEXT)) > 0;
    return has_text_color ? forms::Label::Color::kButtonText : forms::Label::Color::kHighlightText;
}

double Win32User::Percent(forms::Control& bar) {
    const HWND window = Settled(bar);
    if (bar.kind() == Kind::kPanel) {
        return FilledPercent(window);
    }
    return static_cast<double>(Send(window, PBM_GETPOS));
}

bool Win32User::Playing(forms::Animation& clip) { return g_playing.contains(Settled(clip)); }

int Win32User::ShownTab(forms::Tabs& tabs) {
    return static_cast<int>(Send(Settled(tabs), TCM_GETCURSEL));
}

std::vector<std::string> Win32User::TabCaptions(forms::Tabs& tabs) {
    const HWND window = Settled(tabs);
    std::vector<std::string> captions;
    for (WPARAM i = 0; i < static_cast<WPARAM>(Send(window, TCM_GETITEMCOUNT)); ++i) {
        wchar_t text[100]{};
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = text;
        item.cchTextMax = 100;
        Send(window, TCM_GETITEMW, i, reinterpret_cast<LPARAM>(&item));
        captions.push_back(views::Utf8(text));
    }
    return captions;
}

std::vector<std::string> Win32User::Nodes(forms::Tree& tree) {
    const HWND window = Settled(tree);
    std::vector<std::string> lines;
    for (const TreeItem& each : ItemsOfTree(window)) {
        std::wstring text;
        LookAt(window, each.item, TVIF_TEXT, text);
        lines.push_back(std::string(static_cast<std::size_t>(each.level), ' ') + views::Utf8(text));
    }
    return lines;
}

std::vector<int> Win32User::Pictures(forms::Tree& tree) {
    const HWND window = Settled(tree);
    std::vector<int> pictures;
    for (const TreeItem& each : ItemsOfTree(window)) {
        std::wstring text;
        const int image = LookAt(window, each.item, TVIF_IMAGE, text).iImage;
        pictures.push_back(image == I_IMAGENONE ? 0 : image + 1);
    }
    return pictures;
}

std::string Win32User::SelectedNode(forms::Tree& tree) {
    const HWND window = Settled(tree);
    const HTREEITEM item = TreeView_GetSelection(window);
    std::wstring text;
    if (item) {
        LookAt(window, item, TVIF_TEXT, text);
    }
    return views::Utf8(text);
}

}  // namespace vantrel::test
