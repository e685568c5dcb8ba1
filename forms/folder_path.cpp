#include "forms/folder_path.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "common/error.h"

namespace vantrel::forms {

namespace {

char CapitalLetter(char c) { return static_cast<char>(c >= 'a' ? c - ('a' - 'A') : c); }

void DropLastSlashes(std::string& path, std::size_t root_length) {
    while (path.size() > root_length && path.back() == '\\') path.pop_back();
}

// Length of "C:\" or of "\\server\share" at the front of `path`.
std::size_t RootLength(const std::string& path) {
    if (!path.starts_with("\\\\")) return std::min<std::size_t>(3, path.size());
    const std::size_t share = path.find('\\', 2);
    if (share == std::string::npos) return path.size();
    return std::min(path.find('\\', share + 1), path.size());
}

// One UTF-8 character off the front, so that "?" stands for a character and not for a byte.
void DropCharacter(std::string_view& text) {
    text.remove_prefix(1);
    while (!text.empty() && (static_cast<unsigned char>(text.front()) & 0xC0) == 0x80)
        text.remove_prefix(1);
}

bool Matches(std::string_view name, std::string_view mask) {
    std::string_view after_star_mask, after_star_name;
    bool star = false;
    while (!name.empty()) {
        if (!mask.empty() && mask.front() == '*') {
            star = true;
            mask.remove_prefix(1);
            after_star_mask = mask;
            after_star_name = name;
        } else if (!mask.empty() && mask.front() == '?') {
            mask.remove_prefix(1);
            DropCharacter(name);
        } else if (!mask.empty() && mask.front() == name.front()) {
            mask.remove_prefix(1);
            name.remove_prefix(1);
        } else if (star) {
            DropCharacter(after_star_name);
            name = after_star_name;
            mask = after_star_mask;
        } else {
            return false;
        }
    }
    return mask.find_first_not_of('*') == std::string_view::npos;
}

}  // namespace

bool HasDrive(const std::string& path) {
    if (path.size() < 2 || path[1] != ':') return false;
    return (path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z');
}

std::string FolderPath(const std::string& text) {
    std::string path = text;
    std::replace(path.begin(), path.end(), '/', '\\');
    if (path.starts_with("\\\\")) {
        if (path.size() < 3 || path[2] == '\\') return "";
        DropLastSlashes(path, 2);
        return path;
    }
    if (!HasDrive(path)) return "";
    path[0] = CapitalLetter(path[0]);
    if (path.size() == 2 || path.compare(2, 2, " [") == 0) return path.substr(0, 2) + "\\";
    if (path[2] != '\\') return "";
    DropLastSlashes(path, 3);
    return path;
}

std::string OnApplicationDrive(platform::Machine& machine, const std::string& path) {
    if (!path.starts_with('\\') || path.starts_with("\\\\")) return path;
    return machine.process.ApplicationFolder().substr(0, 2) + path;
}

std::vector<std::string> FolderChain(const std::string& path) {
    const std::size_t root = RootLength(path);
    std::vector<std::string> chain{path.substr(0, root)};
    for (std::size_t end = root; end < path.size();) {
        end = std::min(path.find('\\', end + 1), path.size());
        chain.push_back(path.substr(0, end));
    }
    return chain;
}

bool IsFolder(platform::FileSystem& files, const std::string& path) {
    try {
        const auto info = files.Find(path);
        return info && info->IsFolder();
    } catch (const Error&) {
        return false;
    }
}

std::vector<std::string> SubFolders(platform::Machine& machine, const std::string& path) {
    std::vector<std::pair<std::string, std::string>> found;  // what to sort by, name
    try {
        machine.files.List(path, [&](const platform::FileInfo& info) {
            if (info.IsFolder() && !info.IsHiddenOrSystem() && !info.is_link)
                found.emplace_back(machine.code_page.Fold(info.name), info.name);
            return true;
        });
    } catch (const Error&) {
        return {};
    }
    std::sort(found.begin(), found.end());
    std::vector<std::string> names;
    names.reserve(found.size());
    for (auto& folder : found) names.push_back(std::move(folder.second));
    return names;
}

std::string JoinPath(const std::string& folder, const std::string& name) {
    return folder.ends_with('\\') ? folder + name : folder + "\\" + name;
}

std::string FolderName(const std::string& path) {
    if (path.size() <= RootLength(path)) return path;
    return path.substr(path.rfind('\\') + 1);
}

bool SamePath(platform::CodePage& letters, const std::string& one, const std::string& other) {
    auto form = [&](std::string path) {
        DropLastSlashes(path, 0);
        return letters.Fold(path);
    };
    return form(one) == form(other);
}

bool MatchesMask(platform::CodePage& letters, const std::string& name, const std::string& mask) {
    if (mask == "*.*") return true;
    return Matches(letters.Fold(name), letters.Fold(mask));
}

}  // namespace vantrel::forms
