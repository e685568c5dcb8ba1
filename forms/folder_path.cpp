#include "forms/folder_path.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "common/error.h"

namespace vantrel::forms {

namespace {

// One UTF-8 character off the front, so that "?" stands for a character and not for a byte.
void DropCharacter(std::string_view& text) {
    text.remove_prefix(1);
    while (!text.empty() && (static_cast<unsigned char>(text.front()) & 0xC0) == 0x80) {
        text.remove_prefix(1);
    }
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
            if (info.IsFolder() && !info.IsHiddenOrSystem() && !info.is_link) {
                found.emplace_back(machine.code_page.Fold(info.name), info.name);
            }
            return true;
        });
    } catch (const Error&) {
        return {};
    }
    std::sort(found.begin(), found.end());
    std::vector<std::string> names;
    names.reserve(found.size());
    for (auto& folder : found) {
        names.push_back(std::move(folder.second));
    }
    return names;
}

bool SamePath(platform::CodePage& code_page, const std::string& one, const std::string& other) {
    auto form = [&](std::string path) {
        while (path.ends_with('\\')) {
            path.pop_back();
        }
        return code_page.Fold(path);
    };
    return form(one) == form(other);
}

bool MatchesMask(platform::CodePage& code_page, const std::string& name, const std::string& mask) {
    if (mask == "*.*") {
        return true;
    }
    return Matches(code_page.Fold(name), code_page.Fold(mask));
}

}  // namespace vantrel::forms
