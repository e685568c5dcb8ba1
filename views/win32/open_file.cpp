// The system's dialog for choosing a file.
#include <windows.h>
// Needs the types of windows.h.
#include <commdlg.h>

#include <algorithm>
#include <array>
#include <string>

#include "views/win32/text.h"
#include "views/win32/win32_desktop.h"

namespace vantrel::views {

std::string Win32Desktop::OpenFile(const std::string& title, const std::string& filter,
                                   const std::string& start) {
    constexpr std::size_t kLongestPath = 32768;  // UTF-16 units, the limit of the system
    std::wstring path = Wide(start);
    path.resize(kLongestPath);
    const std::wstring title_text = Wide(title);
    std::wstring filters = Wide(filter);
    std::replace(filters.begin(), filters.end(), L'|', L'\0');
    filters += L'\0';
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = BoxOwner();
    dialog.lpstrFilter = filters.c_str();
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = static_cast<DWORD>(path.size());
    dialog.lpstrTitle = title_text.c_str();
    dialog.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR;
    if (!GetOpenFileNameW(&dialog)) return "";
    path.resize(path.find(L'\0'));
    return Utf8(path);
}

}  // namespace vantrel::views
