#include "platform/win32/disk_path.h"

#include <windows.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "common/error.h"
#include "common/file_name.h"
#include "common/utf.h"

namespace vantrel::platform {

namespace {

constexpr std::wstring_view kLiteral = L"\\\\?\\";
constexpr std::wstring_view kLiteralShare = L"\\\\?\\UNC\\";

bool IsLetter(wchar_t unit) {
    return (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z');
}

bool IsName(std::wstring_view name) {
    return name.size() <= kMaxFileNameLength &&
           std::none_of(name.begin(), name.end(), IsForbiddenInName);
}

// Takes the next name off `rest`, together with the separators around it.
std::wstring_view NextName(std::wstring_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(L'\\'), rest.size()));
    const std::wstring_view name = rest.substr(0, rest.find(L'\\'));
    rest.remove_prefix(name.size());
    return name;
}

std::wstring Normal(const std::string& program_path) {
    std::wstring text = Wide(program_path);
    std::replace(text.begin(), text.end(), L'/', L'\\');
    return PlainPath(text);
}

// Takes the drive or the server and share off `rest`.
std::wstring TakeRoot(std::wstring_view& rest) {
    if (rest.size() >= 2 && IsLetter(rest[0]) && rest[1] == L':') {
        const auto letter = static_cast<wchar_t>(rest[0] & ~0x20);
        rest.remove_prefix(2);
        return std::wstring(kLiteral) + letter + L":\\";
    }
    if (!rest.starts_with(L"\\\\")) {
        RaiseError(error_number::kBadFileName);
    }
    const std::wstring_view server = NextName(rest);
    const std::wstring_view share = NextName(rest);
    if (server.empty() || share.empty() || !IsName(server) || !IsName(share)) {
        RaiseError(error_number::kBadFileName);
    }
    return std::wstring(kLiteralShare).append(server) + L"\\" + std::wstring(share) + L"\\";
}

std::vector<std::wstring_view> TakeNames(std::wstring_view rest) {
    std::vector<std::wstring_view> names;
    while (!rest.empty()) {
        const std::wstring_view name = NextName(rest);
        if (name.empty() || name == L".") {
            continue;
        }
        if (name == L"..") {
            if (!names.empty()) {
                names.pop_back();
            }
            continue;
        }
        if (!IsName(name)) {
            RaiseError(error_number::kBadFileName);
        }
        names.push_back(name);
    }
    return names;
}

}  // namespace

static_assert(sizeof(wchar_t) == sizeof(char16_t), "the system's characters are UTF-16 units");

std::wstring Wide(std::string_view utf8) {
    const std::u16string utf16 = utf::ToUtf16(utf8);
    return {utf16.begin(), utf16.end()};
}

std::string Narrow(std::wstring_view utf16) {
    return utf::ToUtf8(std::u16string(utf16.begin(), utf16.end()));
}

std::wstring PlainPath(std::wstring_view path) {
    if (path.starts_with(kLiteralShare)) {
        return std::wstring(L"\\\\").append(path.substr(kLiteralShare.size()));
    }
    return std::wstring(path.substr(path.starts_with(kLiteral) ? kLiteral.size() : 0));
}

DiskPath::DiskPath(const std::string& program_path) {
    const std::wstring normal = Normal(program_path);
    std::wstring_view rest = normal;
    root_ = TakeRoot(rest);
    text_ = root_;
    for (const std::wstring_view name : TakeNames(rest)) {
        if (!IsRoot()) {
            text_ += L'\\';
        }
        text_ += name;
    }
}

std::wstring DiskPath::Name() const {
    return IsRoot() ? std::wstring() : text_.substr(text_.rfind(L'\\') + 1);
}

std::wstring DiskPath::Everything() const { return text_ + (IsRoot() ? L"*" : L"\\*"); }

DiskPath DiskPath::Parent() const {
    DiskPath parent(*this);
    if (!IsRoot()) {
        parent.text_.resize(std::max(text_.rfind(L'\\'), root_.size()));
    }
    return parent;
}

bool DiskPath::OnSameDrive(const DiskPath& other) const {
    return CompareStringOrdinal(root_.c_str(), -1, other.root_.c_str(), -1, TRUE) == CSTR_EQUAL;
}

}  // namespace vantrel::platform
