// A mail program that sends nothing: a library that speaks Simple MAPI and writes down each call.
// Tests register it in a Wine prefix as the user's mail program. The environment variable
// VANTREL_MAIL_RECORD names the file to append to: a line a call, fields separated by tabs, "\"
// before tabs, line ends and itself. Beside that file, under its name and another ending:
//   .0, .1   copies of the attached files
//   .fails   "MAPILogon=3": that call answers so, after it has been written down
#include <windows.h>
// Needs the types of windows.h.
#include <mapi.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "tests/end_to_end/escaped.h"

namespace {

using vantrel::test::Escaped;

constexpr LHANDLE kSession = 4711;

std::string BesideRecord(const std::string& ending) {
    const char* const record = std::getenv("VANTREL_MAIL_RECORD");
    return (record == nullptr ? "" : record) + ending;
}

std::string Text(const char* text) { return text == nullptr ? "(null)" : text; }

void WriteDown(const std::vector<std::string>& fields) {
    std::string line;
    for (const std::string& field : fields) {
        line += (line.empty() ? "" : "\t") + Escaped(field);
    }
    line += "\n";
    const HANDLE file = CreateFileA(BesideRecord("").c_str(), FILE_APPEND_DATA, FILE_SHARE_READ,
                                    nullptr, OPEN_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    CloseHandle(file);
}

ULONG AnswerOf(const char* function) {
    char fails[64] = {};
    DWORD length = 0;
    const HANDLE file = CreateFileA(BesideRecord(".fails").c_str(), GENERIC_READ, FILE_SHARE_READ,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return SUCCESS_SUCCESS;
    }
    ReadFile(file, fails, sizeof fails - 1, &length, nullptr);
    CloseHandle(file);
    const std::string wanted = std::string(function) + "=";
    return std::string_view(fails).starts_with(wanted)
               ? static_cast<ULONG>(std::strtoul(fails + wanted.size(), nullptr, 10))
               : SUCCESS_SUCCESS;
}

std::string Number(ULONG_PTR value) { return std::to_string(value); }

void AddAttachment(const MapiFileDesc& file, ULONG number, std::vector<std::string>& fields) {
    const std::string copy = BesideRecord("." + Number(number));
    const bool readable = CopyFileA(file.lpszPathName, copy.c_str(), FALSE) != 0;
    fields.push_back(Text(file.lpszPathName));
    fields.push_back(Text(file.lpszFileName));
    fields.push_back(std::to_string(static_cast<LONG>(file.nPosition)));
    fields.emplace_back(readable ? "readable" : "not readable");
}

}  // namespace

extern "C" {

__declspec(dllexport) ULONG WINAPI
    MAPILogon(ULONG_PTR, LPSTR profile, LPSTR, FLAGS flags, ULONG, LPLHANDLE session) {
    WriteDown({"MAPILogon", Text(profile), Number(flags)});
    *session = kSession;
    return AnswerOf("MAPILogon");
}

__declspec(dllexport) ULONG WINAPI
    MAPISendMail(LHANDLE session, ULONG_PTR owner, lpMapiMessage message, FLAGS flags, ULONG) {
    std::vector<std::string> fields{"MAPISendMail",
                                    Number(session),
                                    owner != 0 ? "owned" : "not owned",
                                    Number(flags),
                                    Text(message->lpszSubject),
                                    Text(message->lpszNoteText),
                                    Number(message->nRecipCount)};
    for (ULONG i = 0; i < message->nRecipCount; ++i) {
        const MapiRecipDesc& recipient = message->lpRecips[i];
        fields.push_back(Number(recipient.ulRecipClass));
        fields.push_back(Text(recipient.lpszName));
        fields.push_back(Text(recipient.lpszAddress));
    }
    for (ULONG i = 0; i < message->nFileCount; ++i) {
        AddAttachment(message->lpFiles[i], i, fields);
    }
    WriteDown(fields);
    return AnswerOf("MAPISendMail");
}

__declspec(dllexport) ULONG WINAPI MAPILogoff(LHANDLE session, ULONG_PTR, FLAGS, ULONG) {
    WriteDown({"MAPILogoff", Number(session)});
    return AnswerOf("MAPILogoff");
}

}  // extern "C"
