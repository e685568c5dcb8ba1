#include "common/path.h"

#include <algorithm>

#include "common/utf.h"

namespace vantrel::path {

namespace {

constexpr std::size_t kDriveRootLength = 3;  // "C:\"

bool IsOnNetwork(std::string_view path) { return path.starts_with("\\\\"); }

std::size_t RootLength(std::string_view path) {
    if (IsOnNetwork(path)) {
        const std::size_t share = path.find('\\', 2);
        if (share == path.npos) {
            return path.size();
        }
        const std::size_t end = path.find('\\', share + 1);
        return end == path.npos ? path.size() : end + 1;
    }
    if (path.starts_with('\\')) {
        return 1;
    }
    const bool has_root = path.size() >= kDriveRootLength && path[1] == ':' && path[2] == '\\';
    return has_root ? kDriveRootLength : 0;
}

std::string_view WithoutLastBackslashes(std::string_view path, std::size_t root_length) {
    while (path.size() > root_length && path.back() == '\\') {
        path.remove_suffix(1);
    }
    return path;
}

char CapitalLetter(char c) { return static_cast<char>(c >= 'a' ? c - ('a' - 'A') : c); }

}  // namespace

bool HasDrive(std::string_view path) {
    if (path.size() < 2 || path[1] != ':') {
        return false;
    }
    return (path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z');
}

std::string Root(std::string_view path) { return std::string(path.substr(0, RootLength(path))); }

std::string Parent(std::string_view path) {
    const std::size_t root = RootLength(path);
    path = WithoutLastBackslashes(path, root);
    const std::size_t last = path.rfind('\\');
    if (path.size() <= root || last == path.npos) {
        return "";
    }
    return std::string(path.substr(0, std::max(last, root)));
}

std::string Name(std::string_view path) {
    const std::size_t root = RootLength(path);
    path = WithoutLastBackslashes(path, root).substr(std::min(root, path.size()));
    return std::string(Split(path).name);
}

std::string Join(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!folder.empty() && !name.empty() && folder.back() != '\\') {
        path += '\\';
    }
    return path.append(name);
}

std::string WithBackslash(std::string path) {
    if (!path.ends_with('\\')) {
        path += '\\';
    }
    return path;
}

Halves Split(std::string_view path) {
    const std::size_t last = path.rfind('\\');
    if (last == path.npos) {
        return {"", path};
    }
    return {path.substr(0, last), path.substr(last + 1)};
}

std::string OnDriveOf(std::string_view folder, std::string path) {
    const bool lacks_drive = path.starts_with('\\') && !IsOnNetwork(path);
    if (lacks_drive && HasDrive(folder)) {
        path.insert(0, folder.substr(0, 2));
    }
    return path;
}

std::string Normalize(std::string_view text) {
    std::string path(text);
    std::replace(path.begin(), path.end(), '/', '\\');
    if (IsOnNetwork(path)) {
        if (path.size() < 3 || path[2] == '\\') {
            return "";
        }
        return std::string(WithoutLastBackslashes(path, 2));
    }
    if (!HasDrive(path)) {
        return "";
    }
    path[0] = CapitalLetter(path[0]);
    if (path.size() == 2 || path.compare(2, 2, " [") == 0) {
        return path.substr(0, 2) + "\\";
    }
    if (path[2] != '\\') {
        return "";
    }
    return std::string(WithoutLastBackslashes(path, kDriveRootLength));
}

std::vector<std::string> Ancestors(const std::string& path) {
    const std::size_t root = RootLength(path);
    const std::size_t root_end = IsOnNetwork(path) && root < path.size() ? root - 1 : root;
    std::vector<std::string> folders{path.substr(0, root_end)};
    for (std::size_t end = root_end; end < path.size();) {
        end = std::min(path.find('\\', end + 1), path.size());
        folders.push_back(path.substr(0, end));
    }
    return folders;
}

std::string DrivePart(std::string_view path, std::string_view application_folder) {
    const bool has_drive = path != "\\" && utf::At(path, 1) == ":";
    return utf::Left(has_drive ? path : application_folder, kDriveRootLength);
}

std::string FolderPart(std::string_view path) {
    const std::size_t last = path.rfind('\\');
    return last == path.npos || last == 0 ? "" : std::string(path.substr(0, last + 1));
}

std::string FilePart(std::string_view path) {
    const std::size_t last = path.rfind('\\');
    if (last == 0) {
        return "";
    }
    return std::string(last == path.npos ? path : path.substr(last + 1));
}

}  // namespace vantrel::path
