// Works the program's windows from outside, as a person with a mouse and a keyboard would. One
// command a line on standard input, its words apart by a tab; one line of answer each: "ok" and
// words apart by tabs, or "error" and a reason. Controls are named by their numbers. window.py
// speaks to it. Clicks and typed characters are posted to the control, so nothing depends on what
// stands in front of the window; keys go through the keyboard.
#include <windows.h>

#include <commctrl.h>
#include <fcntl.h>
#include <io.h>

#include <cstdint>
#include <cstring>
#include <iostream>
#include <map>
#include <sstream>

#include "tests/end_to_end/driven_popups.h"
#include "tests/end_to_end/escaped.h"

namespace {

using namespace vantrel::test;

// Keyboard

WORD KeyNamed(const std::string& name) {
    static const std::map<std::string, WORD> keys = {
        {"Tab", VK_TAB},     {"Enter", VK_RETURN},  {"Esc", VK_ESCAPE},    {"Space", VK_SPACE},
        {"Up", VK_UP},       {"Down", VK_DOWN},     {"Left", VK_LEFT},     {"Right", VK_RIGHT},
        {"Home", VK_HOME},   {"End", VK_END},       {"Delete", VK_DELETE}, {"F1", VK_F1},
        {"F4", VK_F4},       {"F5", VK_F5},         {"Alt", VK_MENU},      {"Ctrl", VK_CONTROL},
        {"Shift", VK_SHIFT}, {"PageDown", VK_NEXT}, {"Apps", VK_APPS},     {"F10", VK_F10}};
    const auto found = keys.find(name);
    if (found != keys.end()) {
        return found->second;
    }
    if (name.size() != 1) {
        throw std::runtime_error("no such key");
    }
    return static_cast<WORD>(toupper(static_cast<unsigned char>(name[0])));
}

// "Ctrl+Shift+Tab" to the window in front.
Words Keys(const Words& words) {
    std::vector<INPUT> input;
    std::vector<WORD> held;
    std::istringstream parts(words.at(1));
    for (std::string part; std::getline(parts, part, '+');) {
        held.push_back(KeyNamed(part));
    }
    const auto add = [&](WORD key, DWORD flags) {
        INPUT one{};
        one.type = INPUT_KEYBOARD;
        one.ki.wVk = key;
        one.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
        one.ki.dwFlags = flags;
        input.push_back(one);
    };
    for (const WORD key : held) {
        add(key, 0);
    }
    for (auto key = held.rbegin(); key != held.rend(); ++key) {
        add(*key, KEYEVENTF_KEYUP);
    }
    const auto count = static_cast<UINT>(input.size());
    if (SendInput(count, input.data(), sizeof(INPUT)) != count) {
        throw std::runtime_error("the keyboard takes no keys");
    }
    return {};
}

Words Type(const Words& words) {
    const HWND field = Usable(Control(words.at(1)));
    for (const wchar_t c : Utf16(words.at(2))) {
        if (c == L'\n') {
            continue;  // Enter is a carriage return
        }
        PostMessageW(field, WM_CHAR, c, 1);
    }
    return {};
}

Words Select(const Words& words) {
    Send(Control(words.at(1)), EM_SETSEL, static_cast<WPARAM>(Number(words.at(2))),
         Number(words.at(3)));
    return {};
}

Words Focus() {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    const HWND front = GetForegroundWindow();
    if (!GetGUIThreadInfo(GetWindowThreadProcessId(front, nullptr), &info) || !info.hwndFocus) {
        return {"0"};
    }
    return {std::to_string(GetDlgCtrlID(info.hwndFocus))};
}

// Windows

Words Titles() {
    Words titles;
    for (const HWND top : WindowsWhere(nullptr, IsDialog)) {
        if (IsWindowVisible(top)) {
            titles.push_back(Utf8(TextOf(top)));
        }
    }
    return titles;
}

// A message box or a system dialog.
HWND FindBox() {
    for (const HWND top : WindowsWhere(nullptr, IsDialog)) {
        if (IsWindowVisible(top) && !IsProgramsOwn(top)) {
            return top;
        }
    }
    return nullptr;
}

HWND Box() {
    const HWND box = FindBox();
    if (!box) {
        throw std::runtime_error("no box");
    }
    return box;
}

constexpr int kBoxText = 0xFFFF;

// Title, text, default button, style bits of the text's alignment, whether it has an icon, the
// window's handle, then number and caption of each button.
Words DescribeBox(HWND box) {
    const HWND text = GetDlgItem(box, kBoxText);
    const bool right = text && (GetWindowLongPtrW(box, GWL_EXSTYLE) & WS_EX_RIGHT ||
                                (GetWindowLongPtrW(text, GWL_STYLE) & SS_RIGHT));
    const auto icons = WindowsWhere(box, [](HWND each) {
        return ClassOf(each) == L"Static" && IsWindowVisible(each) &&
               (GetWindowLongPtrW(each, GWL_STYLE) & SS_TYPEMASK) == SS_ICON &&
               Send(each, STM_GETICON) != 0;  // a box without one has an empty place for it
    });
    Words words = {Utf8(TextOf(box)),
                   text ? Utf8(TextOf(text)) : "",
                   "0",
                   right ? "right" : "left",
                   icons.empty() ? "plain" : "icon",
                   std::to_string(reinterpret_cast<std::uintptr_t>(box))};
    for (const HWND button : WindowsWhere(
             box, [](HWND each) { return ClassOf(each) == L"Button" && IsWindowVisible(each); })) {
        if ((GetWindowLongPtrW(button, GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON) {
            words[2] = std::to_string(GetDlgCtrlID(button));
        }
        words.push_back(std::to_string(GetDlgCtrlID(button)));
        words.push_back(Utf8(TextOf(button)));
    }
    return words;
}

// Nothing when there is none; one may close while it is looked at, its parts before itself.
Words LookAtBox() {
    constexpr int kLooks = 50;
    for (int look = 1;; ++look) {
        const HWND box = FindBox();
        if (!box) {
            return {};
        }
        try {
            return DescribeBox(box);
        } catch (const std::runtime_error&) {
            if (look == kLooks) {
                throw;
            }
        }
    }
}

Words PressInBox(const Words& words) {
    const HWND button = GetDlgItem(Box(), Number(words.at(1)));
    if (!button) {
        throw std::runtime_error("no such button");
    }
    PostMessageW(button, BM_CLICK, 0, 0);
    return {};
}

Words TypeInBox(const Words& words) {
    const HWND field = GetDlgItem(Box(), Number(words.at(1)));
    if (!field) {
        throw std::runtime_error("no such field");
    }
    Send(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(Utf16(words.at(2)).c_str()));
    return {};
}

Words ClickTab(const Words& words) {
    const HWND tabs = Usable(Control(words.at(1)));
    Click(tabs, Middle(RemoteRect(tabs, TCM_GETITEMRECT, static_cast<WPARAM>(Number(words.at(2))),
                                  RECT{})));
    return {};
}

Words ChangeDpi(const Words& words) {
    const HWND top = Top(Control(words.at(1)));
    const int dpi = Number(words.at(2));
    RECT outer{};
    GetWindowRect(top, &outer);
    const RemoteMemory memory(top, sizeof outer);
    memory.Write(&outer, sizeof outer);
    Send(top, WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(memory.address()));
    return {};
}

// Moves the window of a control to left, top, width, height.
Words MoveWindowOf(const Words& words) {
    SetWindowPos(Top(Control(words.at(1))), nullptr, Number(words.at(2)), Number(words.at(3)),
                 Number(words.at(4)), Number(words.at(5)), SWP_NOZORDER | SWP_NOACTIVATE);
    return {};
}

Words MovePointer(const Words& words) {
    SetCursorPos(Number(words.at(1)), Number(words.at(2)));
    return {};
}

// What a window looks like can be seen from outside while its program is still in the middle of
// what a click began. A message that does nothing is answered when it has got to the end of that,
// so what is looked at next belongs to the same moment.
void LetItFinish(HWND window) {
    constexpr UINT kPatience = 60000;  // milliseconds; what hangs is not waited for any longer
    SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, kPatience, nullptr);
}

Words State(const Words& words) {
    const HWND control = FindControl(Number(words.at(1)));
    if (!control) {
        return {"gone", "gone"};
    }
    const Words state = {
        IsWindowVisible(control) ? "visible" : "hidden",
        IsWindowEnabled(control) && IsWindowEnabled(Top(control)) ? "enabled" : "disabled"};
    LetItFinish(control);
    return state;
}

Words PostToTop(const Words& words, UINT message, WPARAM wparam) {
    PostMessageW(Top(Control(words.at(1))), message, wparam, 0);
    return {};
}

Words EndSession(const Words& words) {
    const HWND top = Top(Control(words.at(1)));
    if (!Send(top, WM_QUERYENDSESSION)) {
        return {"refused"};
    }
    PostMessageW(top, WM_ENDSESSION, TRUE, 0);
    return {"agreed"};
}

using Command = std::function<Words(const Words&)>;

Command Reading(const std::function<LRESULT(HWND)>& read) {
    return [read](const Words& words) { return Words{std::to_string(read(Control(words.at(1))))}; };
}

Command Posting(UINT message, WPARAM wparam) {
    return [=](const Words& words) { return PostToTop(words, message, wparam); };
}

Words ClickControl(const Words& words) {
    const HWND control = Usable(Control(words.at(1)));
    Click(control, MiddleOf(control));
    return {};
}

Words RightClickControl(const Words& words) {
    const HWND control = Usable(Control(words.at(1)));
    Click(control, MiddleOf(control), WM_RBUTTONDOWN, WM_RBUTTONUP, MK_RBUTTON);
    return {};
}

Words ToFront(const Words& words) {
    SetForegroundWindow(Top(Control(words.at(1))));
    return {};
}

// The second word of nearly every command is a control's number; the rest stands beside it.
const std::map<std::string, Command>& Commands() {
    static const std::map<std::string, Command> commands = {
        // looking
        {"state", State},
        {"text", [](const Words& w) { return Words{Utf8(TextOf(Control(w.at(1))))}; }},
        {"title", [](const Words& w) { return Words{Utf8(TextOf(Top(Control(w.at(1)))))}; }},
        {"items", [](const Words& w) { return Items(Control(w.at(1))); }},
        {"index", Reading(SelectedIndex)},
        {"count", Reading(ItemCount)},
        {"checked", Reading([](HWND box) { return Send(box, BM_GETCHECK); })},
        {"value", Reading([](HWND bar) { return Send(bar, PBM_GETPOS); })},
        {"shown_tab", Reading([](HWND tabs) { return Send(tabs, TCM_GETCURSEL); })},
        {"maximized", Reading([](HWND control) -> LRESULT { return IsZoomed(Top(control)); })},
        {"first_line", Reading([](HWND box) { return Send(box, EM_GETFIRSTVISIBLELINE); })},
        {"tree", [](const Words& w) { return TreeLines(Control(w.at(1))); }},
        {"place", [](const Words& w) { return Place(Control(w.at(1))); }},
        {"window_place", [](const Words& w) { return Place(Top(Control(w.at(1)))); }},
        {"focus", [](const Words&) { return Focus(); }},
        {"titles", [](const Words&) { return Titles(); }},
        {"box", [](const Words&) { return LookAtBox(); }},
        {"menu", [](const Words&) { return Menu(); }},
        {"menu_place", [](const Words&) { return MenuPlace(); }},
        {"tip", [](const Words&) { return Tip(); }},
        {"tree_place", TreePlace},
        // control, sometimes what in it
        {"click", ClickControl},
        {"right_click", RightClickControl},
        {"hover", Hover},
        {"choose", Choose},
        {"click_entry", [](const Words& w) { return ClickEntry(w, false); }},
        {"open_entry", [](const Words& w) { return ClickEntry(w, true); }},
        {"click_tree", [](const Words& w) { return ClickTree(w, false); }},
        {"right_click_tree", [](const Words& w) { return ClickTree(w, true); }},
        {"click_tab", ClickTab},
        {"type", Type},
        {"select", Select},
        // button or field of the box in front
        {"press_in_box", PressInBox},
        {"type_in_box", TypeInBox},
        // keys, to the window in front
        {"keys", Keys},
        // the window of a control
        {"to_front", ToFront},
        {"close_box", Posting(WM_SYSCOMMAND, SC_CLOSE)},
        {"bare_close", Posting(WM_CLOSE, 0)},
        {"end_session", EndSession},
        {"dpi", ChangeDpi},
        {"move_window", MoveWindowOf},
        {"pointer", MovePointer},
        {"maximize", Posting(WM_SYSCOMMAND, SC_MAXIMIZE)},
    };
    return commands;
}

Words AnswerTo(const Words& words) {
    const auto command = Commands().find(words.at(0));
    if (command == Commands().end()) {
        throw std::runtime_error("no such command");
    }
    return command->second(words);
}

std::string Line(const Words& words) {
    std::string line = "ok";
    for (const std::string& word : words) {
        line += '\t' + Escaped(word);
    }
    return line;
}

}  // namespace

int wmain() {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    for (std::string line; std::getline(std::cin, line);) {
        Words words;
        std::istringstream parts(line);
        for (std::string part; std::getline(parts, part, '\t');) {
            words.push_back(Unescaped(part));
        }
        try {
            std::cout << Line(AnswerTo(words)) << '\n' << std::flush;
        } catch (const std::exception& error) {
            std::cout << "error\t" << Escaped(error.what()) << '\n' << std::flush;
        }
    }
    return 0;
}
