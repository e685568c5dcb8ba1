#include "platform/win32/win32_mail.h"

#include <array>
#include <utility>
#include <vector>

#include "platform/win32/mapi_library.h"
#include "platform/win32/wide.h"
#include "platform/win32/win32_code_page.h"

namespace vantrel::platform {

namespace {

void Check(ULONG answer) {
    if (answer != SUCCESS_SUCCESS) RaiseMailError(static_cast<int>(answer));
}

// Simple MAPI takes paths in the code page: a folder that it cannot hold goes by its short name.
std::string MapiPath(const std::string& path) {
    Win32CodePage code_page;
    if (const auto bytes = code_page.Encode(path)) return *bytes;
    std::array<wchar_t, MAX_PATH> name{};
    const DWORD length = GetShortPathNameW(Wide(path).c_str(), name.data(), MAX_PATH);
    const auto bytes = length < MAX_PATH ? code_page.Encode(Narrow(name.data())) : std::nullopt;
    if (length == 0 || !bytes) RaiseMailError(mail_error::kAttachmentNotFound);
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

void Win32MailSession::SignOn() {
    SignOff();
    library_.Load();
    LHANDLE session = 0;
    Check(library_.LogOn(session));
    session_ = session;
    signed_on_ = true;
}

void Win32MailSession::SignOff() {
    if (!std::exchange(signed_on_, false)) return;
    Check(library_.LogOff(session_));
}

void Win32MailMessages::Deliver(MailSessionId session, const MailMessage& message, bool dialog) {
    library_.Load();
    MapiTexts texts(message);
    MapiMessage mapi_message = texts.Message();
    Check(library_.Send(session, mapi_message, dialog ? MAPI_DIALOG : 0));
}

}  // namespace vantrel::platform
