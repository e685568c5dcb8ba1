#include "platform/win32/win32_mail.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "platform/mail.h"
#include "platform/win32/disk_path.h"
#include "platform/win32/handles.h"
#include "platform/win32/win32_code_page.h"

namespace vantrel::platform {

namespace {

constexpr wchar_t kClients[] = L"Software\\Clients\\Mail";

// Restores the current folder, which mail programs change when their user picks a file.
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

// The owner of the mail program's dialogs.
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
        if (found == ERROR_SUCCESS && name[0] != L'\0') {
            return name;
        }
    }
    return L"";
}

// A program without any of these values accepts addresses only ("mailto:"), not attachments.
bool SupportsMapi(const std::wstring& client) {
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        const KeyHandle key = OpenKey(root, kClients + (L"\\" + client));
        if (!key.IsValid()) {
            continue;
        }
        for (const wchar_t* value : {L"DLLPathEx", L"DLLPath", L"MSIComponentID"}) {
            if (RegQueryValueExW(key.Get(), value, nullptr, nullptr, nullptr, nullptr) ==
                ERROR_SUCCESS) {
                return true;
            }
        }
    }
    return false;
}

template <typename Function>
void Find(HMODULE library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    if (!function) {
        RaiseNoMailProgram();
    }
}

void Check(ULONG answer) {
    if (answer != SUCCESS_SUCCESS) {
        RaiseMailError(static_cast<int>(answer));
    }
}

// Simple MAPI takes paths in the code page: a folder that it cannot hold goes by its short name.
std::string MapiPath(const std::string& path) {
    Win32CodePage code_page;
    if (const auto bytes = code_page.Encode(path)) {
        return *bytes;
    }
    std::array<wchar_t, MAX_PATH> name{};
    const DWORD length = GetShortPathNameW(Wide(path).c_str(), name.data(), MAX_PATH);
    const auto bytes = length < MAX_PATH ? code_page.Encode(Narrow(name.data())) : std::nullopt;
    if (length == 0 || !bytes) {
        RaiseMailError(mail_error::kAttachmentNotFound);
    }
    return *bytes;
}

std::string FileName(const std::string& path) {
    return Win32CodePage().EncodeLossy(path.substr(path.find_last_of('\\') + 1));
}

// The texts of a message as Simple MAPI wants them: in the code page, and not constant.
class MapiTexts {
  public:
    explicit MapiTexts(const MailMessage& message)
        : name_(Bytes(message.recipient_name)),
          address_(Bytes(message.recipient_address)),
          subject_(Bytes(message.subject)),
          note_text_(Bytes(message.note_text)) {
        for (const MailAttachment& attachment : message.attachments) {
            paths_.push_back(MapiPath(attachment.path));
            names_.push_back(FileName(attachment.path));
        }
        recipient_.ulRecipClass = MAPI_TO;
        recipient_.lpszName = name_.data();
        recipient_.lpszAddress = address_.data();
        for (std::size_t i = 0; i < paths_.size(); ++i) {
            MapiFileDesc file{};
            file.nPosition = static_cast<ULONG>(message.attachments[i].position);
            file.lpszPathName = paths_[i].data();
            file.lpszFileName = names_[i].data();
            files_.push_back(file);
        }
    }
    MapiTexts(const MapiTexts&) = delete;
    MapiTexts& operator=(const MapiTexts&) = delete;

    // Valid as long as this object.
    MapiMessage Message() {
        MapiMessage message{};
        message.lpszSubject = subject_.data();
        message.lpszNoteText = note_text_.data();
        message.nRecipCount = 1;
        message.lpRecips = &recipient_;
        message.nFileCount = static_cast<ULONG>(files_.size());
        message.lpFiles = files_.empty() ? nullptr : files_.data();
        return message;
    }

  private:
    static std::string Bytes(const std::string& utf8) { return Win32CodePage().EncodeLossy(utf8); }

    std::string name_, address_, subject_, note_text_;
    std::vector<std::string> paths_, names_;
    MapiRecipDesc recipient_{};
    std::vector<MapiFileDesc> files_;
};

}  // namespace

void MapiLibrary::Load() {
    const std::wstring client = ChosenClient();
    if (client.empty() || !SupportsMapi(client)) {
        RaiseNoMailProgram();
    }
    if (log_off_) {
        return;
    }
    const HMODULE library = LoadLibraryExW(L"mapi32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (!library) {
        RaiseNoMailProgram();
    }
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

void Win32MailSession::SignOn() {
    SignOff();
    library_.Load();
    LHANDLE session = 0;
    Check(library_.LogOn(session));
    session_ = session;
    signed_on_ = true;
}

void Win32MailSession::SignOff() {
    if (!std::exchange(signed_on_, false)) {
        return;
    }
    Check(library_.LogOff(session_));
}

void Win32MailMessages::Deliver(MailSessionId session, const MailMessage& message, bool dialog) {
    library_.Load();
    MapiTexts texts(message);
    MapiMessage mapi_message = texts.Message();
    Check(library_.Send(session, mapi_message, dialog ? MAPI_DIALOG : 0));
}

}  // namespace vantrel::platform
