#include "platform/host/host_path.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <optional>
#include <utility>

#include "common/error.h"
#include "common/file_name.h"
#include "common/utf.h"
#include "platform/host/host_code_page.h"

namespace vantrel::platform {

namespace {

// The host's calls take paths of up to PATH_MAX bytes; 300 bytes are kept for a further name.
constexpr std::size_t kMaxPath = PATH_MAX - 300;

bool IsName(std::string_view name) {
    return std::none_of(name.begin(), name.end(), IsForbiddenInName) &&
           !utf::IsLongerThan(name, kMaxFileNameLength);
}

constexpr auto IsSlash = [](char c) { return c == '\\' || c == '/'; };

bool StartsWithSlashes(std::string_view path) {
    return path.size() >= 2 && IsSlash(path[0]) && IsSlash(path[1]);
}

char DriveLetter(std::string_view text) {
    if (text.size() < 2 || text[1] != ':') {
        return 0;
    }
    const char letter = static_cast<char>(text[0] & ~0x20);
    return letter >= 'A' && letter <= 'Z' ? letter : '\0';
}

bool Exists(int folder, const std::string& name) {
    struct stat status;
    return ::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

// The path without a "\\?\" before a drive, which has no meaning here.
std::string_view WithoutPrefix(std::string_view path) {
    constexpr std::size_t kPrefix = 4;
    const bool has_prefix = StartsWithSlashes(path) && path.size() > kPrefix && path[2] == '?' &&
                            IsSlash(path[3]) && DriveLetter(path.substr(kPrefix)) != 0;
    return has_prefix ? path.substr(kPrefix) : path;
}

// Compares many names with one; most of them differ in the first characters.
class NameMatcher {
  public:
    explicit NameMatcher(const std::string& name) : folded_(HostFold(name)) {}

    bool Matches(std::string_view name) const {
        for (std::size_t i = 0; i < name.size(); ++i) {
            // Folding keeps the positions of characters as long as all before them are ASCII.
            if (static_cast<unsigned char>(name[i]) >= 0x80) {
                return HostFold(std::string(name)) == folded_;
            }
            const bool small = name[i] >= 'a' && name[i] <= 'z';
            const char capital = small ? static_cast<char>(name[i] - 0x20) : name[i];
            if (i >= folded_.size() || folded_[i] != capital) {
                return false;
            }
        }
        return name.size() == folded_.size();
    }

  private:
    std::string folded_;
};

// The entry of `folder` that is `name` but for letter case.
std::optional<std::string> OtherSpelling(int folder, const std::string& name) {
    HostFd copy(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const HostDir dir(copy.IsValid() ? ::fdopendir(copy.Get()) : nullptr);
    if (!dir) {
        return std::nullopt;
    }
    copy.Release();
    const NameMatcher wanted(name);
    while (const dirent* entry = ::readdir(dir.get())) {
        if (wanted.Matches(entry->d_name)) {
            return entry->d_name;
        }
    }
    return std::nullopt;
}

HostFd OpenFolder(int folder, const std::string& name) {
    return HostFd(::openat(folder, name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

}  // namespace

bool IsHostName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           std::none_of(name.begin(), name.end(), IsSlash) && IsName(name);
}

HostPath::HostPath(std::string_view path) {
    path = WithoutPrefix(path);
    if (StartsWithSlashes(path)) {
        RaiseError(error_number::kPathNotFound);
    }
    letter = DriveLetter(path);
    if (letter == 0) {
        RaiseError(error_number::kBadFileName);
    }
    below.reserve(path.size());
    for (std::string_view rest = path.substr(2); !rest.empty();) {
        const auto length = static_cast<std::size_t>(
            std::find_if(rest.begin(), rest.end(), IsSlash) - rest.begin());
        AddName(rest.substr(0, length));
        rest.remove_prefix(std::min(length + 1, rest.size()));
    }
}

void HostPath::AddName(std::string_view name) {
    if (name.empty() || name == ".") {
        return;
    }
    if (name == "..") {
        return GoUp();
    }
    if (!IsName(name)) {
        RaiseError(error_number::kBadFileName);
    }
    if (!below.empty()) {
        below += '/';
    }
    below += name;
}

void HostPath::GoUp() {
    const std::size_t leaf = LeafStart();
    below.resize(leaf == 0 ? 0 : leaf - 1);
}

HostLocation::HostLocation(const HostDriveMap& drives, HostPath path) : path_(std::move(path)) {
    const auto drive = drives.Get(path_.letter);
    if (!drive) {
        RaiseError(error_number::kDeviceUnavailable);
    }
    if (!drive->ready) {
        RaiseError(error_number::kDiskNotReady);
    }
    root_ = drive->folder;
    exact_names_ = drive->exact_names;
    if (!Go()) {
        Respell();
    }
}

void HostLocation::Append(std::string_view names) {
    if (!names.empty() && !name_.empty() && !name_.ends_with('/')) {
        name_ += '/';
    }
    name_ += names;
}

bool HostLocation::Go() {
    folder_ = HostFd();
    std::string_view rest = path_.below;
    name_.reserve(root_.size() + 1 + rest.size());
    name_ = root_;
    while (name_.size() + rest.size() > kMaxPath) {
        // As many names as the host takes at once; none when the root's path is long.
        const std::size_t capacity = kMaxPath - std::min(kMaxPath, name_.size());
        const std::size_t slash = rest.rfind('/', capacity);
        const std::size_t taken = slash == std::string_view::npos ? 0 : slash;
        Append(rest.substr(0, taken));
        HostFd next = OpenFolder(Folder(), name_);
        if (!next.IsValid()) {
            return false;
        }
        folder_ = std::move(next);
        name_.clear();
        rest.remove_prefix(taken == 0 ? 0 : taken + 1);
    }
    Append(rest);
    return true;
}

std::string HostLocation::Path() const {
    if (!folder_.IsValid()) {
        return name_;
    }
    return "/proc/self/fd/" + std::to_string(folder_.Get()) + "/" + name_;
}

void HostLocation::SpellLeaf(const std::string& name) {
    path_.SetLeaf(name);
    if (!Go()) {
        RaiseError(error_number::kPathNotFound);
    }
}

bool HostLocation::IsThere() const {
    if (Exists(Folder(), name_)) {
        return true;
    }
    const std::size_t slash = name_.rfind('/');
    const bool folder_there = slash == std::string::npos || slash == 0 ||
                              OpenFolder(Folder(), name_.substr(0, slash)).IsValid();
    if (!folder_there) {
        RaiseError(error_number::kPathNotFound);
    }
    return false;
}

bool HostLocation::Respell() {
    if (exact_names_ && Go()) {
        return IsThere();
    }
    HostFd folder = OpenFolder(kCurrentFolder, root_);
    if (!folder.IsValid()) {
        RaiseError(error_number::kDiskNotReady);
    }
    std::string& below = path_.below;
    for (std::size_t start = 0; start < below.size();) {
        const std::size_t end = std::min(below.find('/', start), below.size());
        const bool last = end == below.size();
        std::string name = below.substr(start, end - start);
        if (!Exists(folder.Get(), name)) {
            const auto other = exact_names_ ? std::nullopt : OtherSpelling(folder.Get(), name);
            if (!other && !last) {
                RaiseError(error_number::kPathNotFound);
            }
            if (!other) {
                if (!Go()) {
                    RaiseError(error_number::kPathNotFound);
                }
                return false;
            }
            below.replace(start, name.size(), *other);
            name = *other;
        }
        if (!last) {
            folder = OpenFolder(folder.Get(), name);
            if (!folder.IsValid()) {
                RaiseError(errno == EACCES ? error_number::kPermissionDenied
                                           : error_number::kPathNotFound);
            }
        }
        start += name.size() + 1;
    }
    if (!Go()) {
        RaiseError(error_number::kPathNotFound);
    }
    return true;
}

}  // namespace vantrel::platform
