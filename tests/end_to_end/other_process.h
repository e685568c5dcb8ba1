// What the window driver needs of another process: its windows, and messages whose answer the
// system does not carry from process to process by itself.
#pragma once

#include <windows.h>

#include <commctrl.h>
#include <psapi.h>

#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace vantrel::test {

inline std::string Utf8(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

inline std::wstring Utf16(const std::string& text) {
    const int length = static_cast<int>(text.size());
    const int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), size);
    return wide;
}

inline LRESULT Send(HWND window, UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
    constexpr UINT kPatience = 60000;  // milliseconds; the program may be at work
    DWORD_PTR answer = 0;
    if (!SendMessageTimeoutW(window, message, wparam, lparam, SMTO_NORMAL, kPatience, &answer)) {
        throw std::runtime_error("no answer from the window");
    }
    return static_cast<LRESULT>(answer);
}

inline std::wstring ClassOf(HWND window) {
    wchar_t name[64]{};
    GetClassNameW(window, name, 64);
    return name;
}

inline std::wstring TextOf(HWND window) {
    const auto length = static_cast<std::size_t>(Send(window, WM_GETTEXTLENGTH));
    std::wstring text(length + 1, L'\0');
    const LRESULT got =
        Send(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(got));
    return text;
}

// Whether the window comes from the program itself, not from one of the system's libraries, whose
// boxes and dialogs use numbers that the program's controls bear, too.
inline bool IsProgramsOwn(HWND window) {
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id);
    HMODULE executable = nullptr;
    DWORD size = 0;
    EnumProcessModules(process, &executable, sizeof executable, &size);
    CloseHandle(process);
    return reinterpret_cast<HMODULE>(GetWindowLongPtrW(window, GWLP_HINSTANCE)) == executable;
}

// The windows of one level that `wanted` takes, in the order of the system.
inline std::vector<HWND> WindowsWhere(HWND parent, const std::function<bool(HWND)>& wanted) {
    struct Search {
        const std::function<bool(HWND)>& wanted;
        std::vector<HWND> found{};
    } search{wanted};
    const auto visit = [](HWND window, LPARAM data) -> BOOL {
        auto& state = *reinterpret_cast<Search*>(data);
        if (state.wanted(window)) {
            state.found.push_back(window);
        }
        return TRUE;
    };
    if (parent) {
        EnumChildWindows(parent, visit, reinterpret_cast<LPARAM>(&search));
    } else {
        EnumWindows(visit, reinterpret_cast<LPARAM>(&search));
    }
    return search.found;
}

// A block of memory in the process that owns a window.
class RemoteMemory {
  public:
    RemoteMemory(HWND window, std::size_t size) : size_(size) {
        DWORD id = 0;
        GetWindowThreadProcessId(window, &id);
        process_ =
            OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id);
        block_ = VirtualAllocEx(process_, nullptr, size, MEM_COMMIT, PAGE_READWRITE);
        if (!block_) {
            throw std::runtime_error("no memory in the other process");
        }
    }
    ~RemoteMemory() {
        VirtualFreeEx(process_, block_, 0, MEM_RELEASE);
        CloseHandle(process_);
    }
    RemoteMemory(const RemoteMemory&) = delete;
    RemoteMemory& operator=(const RemoteMemory&) = delete;

    char* address() const { return static_cast<char*>(block_); }
    void Write(const void* data, std::size_t size) const { Write(0, data, size); }
    void Write(std::size_t offset, const void* data, std::size_t size) const {
        if (!WriteProcessMemory(process_, address() + offset, data, size, nullptr)) {
            throw std::runtime_error("cannot write to the other process");
        }
    }
    void Read(void* data, std::size_t size) const { Read(0, data, size); }
    void Read(std::size_t offset, void* data, std::size_t size) const {
        if (offset + size > size_ ||
            !ReadProcessMemory(process_, address() + offset, data, size, nullptr)) {
            throw std::runtime_error("cannot read from the other process");
        }
    }

  private:
    std::size_t size_;
    HANDLE process_ = nullptr;
    void* block_ = nullptr;
};

// A message that fills a rectangle, in the window's own coordinates; `rect` is what goes in.
inline RECT RemoteRect(HWND window, UINT message, WPARAM wparam, RECT rect) {
    const RemoteMemory memory(window, sizeof rect);
    memory.Write(&rect, sizeof rect);
    if (!Send(window, message, wparam, reinterpret_cast<LPARAM>(memory.address()))) {
        throw std::runtime_error("no such item");
    }
    memory.Read(&rect, sizeof rect);
    return rect;
}

// The entries of a tree view, top down: each one's level and text, and its handle.
struct TreeEntry {
    int level;
    std::wstring text;
    HTREEITEM item;
    int image;
};

class RemoteTree {
  public:
    explicit RemoteTree(HWND tree) : tree_(tree), memory_(tree, sizeof(TVITEMW) + kText) {}

    std::vector<TreeEntry> Entries() const {
        std::vector<TreeEntry> entries;
        Walk(Next(TVGN_ROOT, nullptr), 0, entries);
        return entries;
    }
    HTREEITEM Next(WPARAM what, HTREEITEM item) const {
        return reinterpret_cast<HTREEITEM>(
            Send(tree_, TVM_GETNEXTITEM, what, reinterpret_cast<LPARAM>(item)));
    }
    // Where an entry's text stands, scrolled into sight.
    RECT Place(HTREEITEM item) const {
        Send(tree_, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
        RECT rect{};
        std::memcpy(&rect, &item, sizeof item);
        return RemoteRect(tree_, TVM_GETITEMRECT, TRUE, rect);
    }

  private:
    static constexpr std::size_t kText = 1024;  // bytes for an entry's text

    void Walk(HTREEITEM item, int level, std::vector<TreeEntry>& entries) const {
        for (; item; item = Next(TVGN_NEXT, item)) {
            entries.push_back(Read(item, level));
            Walk(Next(TVGN_CHILD, item), level + 1, entries);
        }
    }
    TreeEntry Read(HTREEITEM item, int level) const {
        TVITEMW query{};
        query.mask = TVIF_TEXT | TVIF_HANDLE | TVIF_IMAGE;
        query.hItem = item;
        query.pszText = reinterpret_cast<wchar_t*>(memory_.address() + sizeof query);
        query.cchTextMax = kText / sizeof(wchar_t);
        memory_.Write(&query, sizeof query);
        Send(tree_, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(memory_.address()));
        wchar_t text[kText / sizeof(wchar_t)]{};
        memory_.Read(&query, sizeof query);
        memory_.Read(sizeof query, text, sizeof text);
        return {level, text, item, query.iImage};
    }

    HWND tree_;
    RemoteMemory memory_;
};

}  // namespace vantrel::test
