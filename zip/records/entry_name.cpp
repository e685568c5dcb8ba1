#include "zip/records/entry_name.h"

#include <algorithm>

#include "common/file_name.h"
#include "common/utf.h"

namespace vantrel::zip {

namespace {

// UTF-16 units of a path, without the "\\?\" prefix and the final NUL that count as well.
constexpr std::size_t kMaxPathUnits = 32767 - 5;

constexpr auto IsSlash = [](char c) { return c == '/' || c == '\\'; };
bool IsDotOrSpace(char c) { return c == '.' || c == ' '; }

bool IsDriveStart(std::string_view name) {
    return name.size() >= 2 && name[1] == ':' &&
           ((name[0] >= 'A' && name[0] <= 'Z') || (name[0] >= 'a' && name[0] <= 'z'));
}

// "\\server", "\\?\", "\\.\" and "\??\".
bool IsSystemPath(std::string_view name) {
    if (name.size() < 2 || !IsSlash(name[0])) {
        return false;
    }
    return IsSlash(name[1]) || (name.size() >= 4 && name.substr(1, 2) == "??" && IsSlash(name[3]));
}

void Note(SafeName& name, const std::string& change) {
    if (std::find(name.changes.begin(), name.changes.end(), change) == name.changes.end()) {
        name.changes.push_back(change);
    }
}

void ReplaceCharacters(std::string& component, SafeName& name) {
    for (char& c : component) {
        if (IsForbiddenInName(c)) {
            Note(name, c == ':' ? "\":\" in it becomes \"_\""
                                : "characters that a file name cannot hold become \"_\"");
            c = '_';
        }
    }
}

std::string SafeComponent(std::string_view stored, SafeName& name) {
    std::string component(stored);
    ReplaceCharacters(component, name);
    for (std::size_t i = component.size(); i > 0 && IsDotOrSpace(component[i - 1]); --i) {
        component[i - 1] = '_';
        Note(name, "dots and blanks at the end become \"_\"");
    }
    if (IsDeviceName(component)) {
        component.insert(0, 1, '_');
        Note(name, "the system's own name gets \"_\" before it");
    }
    return component;
}

// `stored` is not empty.
void AddComponent(std::string_view stored, SafeName& name) {
    if (!name.path.empty()) {
        name.path += '\\';
    }
    const bool unchanged = !IsDotOrSpace(stored.back()) && !IsDeviceName(stored) &&
                           std::none_of(stored.begin(), stored.end(), IsForbiddenInName);
    if (unchanged) {
        name.path += stored;
    } else {
        name.path += SafeComponent(stored, name);
    }
}

// Why this component cannot be part of a path; "" when it can.
std::string RefusalOf(std::string_view component) {
    if (component.empty()) {
        return "a folder's name in it is empty";
    }
    if (component[0] == '.' && std::all_of(component.begin(), component.end(), IsDotOrSpace)) {
        return component.find('.', 1) == std::string_view::npos
                   ? "a folder's name in it is \".\""
                   : "it leads out of its folder with \"..\"";
    }
    return "";
}

std::string RefusalOfName(std::string_view stored) {
    if (stored.empty()) {
        return "its name is empty";
    }
    if (stored.find('\0') != std::string_view::npos) {
        return "its name holds a NUL character";
    }
    return IsSystemPath(stored) ? "its name is a network or device path" : "";
}

SafeName Refused(std::string refusal) { return {"", std::move(refusal), {}}; }

std::string_view WithoutOuterSlashes(std::string_view stored, SafeName& name) {
    if (IsSlash(stored.front())) {
        stored.remove_prefix(1);
        Note(name, "the slash before it is dropped");
    }
    if (!stored.empty() && IsSlash(stored.back())) {
        stored.remove_suffix(1);
    }
    return stored;
}

}  // namespace

SafeName MakeSafeName(std::string_view stored) {
    SafeName name;
    if (std::string refusal = RefusalOfName(stored); !refusal.empty()) {
        return Refused(std::move(refusal));
    }
    stored = WithoutOuterSlashes(stored, name);
    // Some writers begin every name with it; it has no meaning.
    if (stored == "." || stored.starts_with("./") || stored.starts_with(".\\")) {
        stored.remove_prefix(std::min<std::size_t>(stored.size(), 2));
        if (stored.empty()) {
            return name;
        }
    }
    if (IsDriveStart(stored)) {
        return Refused("its name starts with a drive");
    }
    name.path.reserve(stored.size());
    for (bool more = true; more;) {
        const auto slash = std::find_if(stored.begin(), stored.end(), IsSlash);
        const auto end = static_cast<std::size_t>(slash - stored.begin());
        const std::string_view component = stored.substr(0, end);
        more = slash != stored.end();
        stored.remove_prefix(more ? end + 1 : end);
        if (std::string refusal = RefusalOf(component); !refusal.empty()) {
            return Refused(std::move(refusal));
        }
        const std::size_t before = name.path.size();
        AddComponent(component, name);
        const std::size_t start = before == 0 ? 0 : before + 1;
        if (utf::IsLongerThan(std::string_view(name.path).substr(start), kMaxFileNameLength)) {
            return Refused("a name in it is longer than 255 characters");
        }
    }
    return name;
}

std::string NumberedPath(const std::string& path, int number) {
    const std::size_t leaf = path.rfind('\\') == std::string::npos ? 0 : path.rfind('\\') + 1;
    std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || dot <= leaf) {
        dot = path.size();
    }
    return path.substr(0, dot) + " (" + std::to_string(number) + ")" + path.substr(dot);
}

bool IsTooLongPath(std::string_view path) { return utf::IsLongerThan(path, kMaxPathUnits); }

}  // namespace vantrel::zip
