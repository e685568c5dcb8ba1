#include "forms/folder_path.h"

#include <algorithm>
#include <utility>

#include "common/error.h"

namespace vantrel::forms {

bool IsFolder(platform::FileSystem& files, const std::string& path) {
    try {
        const auto info = files.Find(path);
        return info && info->IsFolder();
    } catch (const Error&) {
        return false;
    }
}

std::vector<std::string> SubFolders(platform::Machine& machine, const std::string& path,
                                    const std::function<bool()>& keep_reading) {
    std::vector<std::pair<std::string, std::string>> found;  // what to sort by, name
    try {
        machine.files.List(path, [&](const platform::FileInfo& info) {
            if (keep_reading && !keep_reading()) {
                return false;
            }
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

}  // namespace vantrel::forms
