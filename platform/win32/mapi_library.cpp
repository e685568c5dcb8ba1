#include "platform/win32/mapi_library.h"

#include <string>

#include "platform/mail.h"
#include "platform/win32/handles.h"

namespace vantrel::platform {

namespace {

constexpr wchar_t kClients[] = L"Software\\Clients\\Mail";

// Mail programs change the current folder when their user picks a file.
class CurrentFolderKept {
  public:
    CurrentFolderKept() : folder_(GetCurrentDirectoryW(0, nullptr), L'\0') {
        GetCurrentDirectoryW(static_cast<DWORD>(folder_.size()), folder_.data());
    }
    ~CurrentFolderKept() { SetCurrentDirectoryW(folder_.c_str()); }
    CurrentFolderKept(const CurrentFolderKept&) = delete;
    CurrentFolderKept& operator=(const CurrentFolderKept&) = delete;

  private:
    std::wstring folder_;
};

// What dialogs of the mail program stand over.
ULONG_PTR OwnerWindow() { return reinterpret_cast<ULONG_PTR>(GetActiveWindow()); }

KeyHandle OpenKey(HKEY root, const std::wstring& name) {
    HKEY key = nullptr;
    RegOpenKeyExW(root, name.c_str(), 0, KEY_READ, &key);
    return KeyHandle(key);
}

// The name of the mail program that the user, or else the computer, has chosen; "" without one.
std::wstring ChosenClient() {
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        wchar_t name[256] = {};
        DWORD size = sizeof name - sizeof name[0];
        const LSTATUS found =
            RegGetValueW(root, kClients, nullptr, RRF_RT_REG_SZ, nullptr, name, &size);
        if (found == ERROR_SUCCESS && name[0] != L'\0') return name;
    }
    return L"";
}

// A program without any of these takes addresses only ("mailto:"), and no attachments.
bool SpeaksMapi(const std::wstring& client) {
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        const KeyHandle key = OpenKey(root, kClients + (L"\\" + client));
        if (!key.IsValid()) continue;
        for (const wchar_t* value : {L"DLLPathEx", L"DLLPath", L"MSIComponentID"}) {
            if (RegQueryValueExW(key.Get(), value, nullptr, nullptr, nullptr, nullptr) ==
                ERROR_SUCCESS)
                return true;
        }
    }
    return false;
}

template <typename Function>
void Find(HMODULE library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    if (!function) RaiseNoMailProgram();
}

}  // namespace

void MapiLibrary::Load() {
    const std::wstring client = ChosenClient();
    if (client.empty() || !SpeaksMapi(client)) RaiseNoMailProgram();
    if (log_off_) return;
    const HMODULE library = LoadLibraryExW(L"mapi32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (!library) RaiseNoMailProgram();
    Find(library, "MAPILogon", log_on_);
    Find(library, "MAPISendMail", send_);
    Find(library, "MAPILogoff", log_off_);
}

ULONG MapiLibrary::LogOn(LHANDLE& session) {
    const CurrentFolderKept kept;
    return log_on_(OwnerWindow(), nullptr, nullptr, MAPI_LOGON_UI, 0, &session);
}

ULONG MapiLibrary::Send(LHANDLE session, MapiMessage& message, FLAGS flags) {
    const CurrentFolderKept kept;
    return send_(session, OwnerWindow(), &message, flags, 0);
}

ULONG MapiLibrary::LogOff(LHANDLE session) {
    const CurrentFolderKept kept;
    return log_off_(session, OwnerWindow(), 0, 0);
}

}  // namespace vantrel::platform
