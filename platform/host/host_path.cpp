#include "platform/host/host_path.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <optional>

#include "common/error.h"
#include "common/utf.h"
#include "platform/host/host_code_page.h"

namespace vantrel::platform {

namespace {

constexpr std::size_t kLongestName = 255;  // UTF-16 units, the limit of every Windows file system
// The host's calls take paths of up to PATH_MAX bytes; some room is left for a further name.
constexpr std::size_t kLongestPath = PATH_MAX - 300;

bool IsName(const std::string& name) {
    const auto forbidden = [](char byte) {
        return static_cast<unsigned char>(byte) < ' ' ||
               std::string_view("<>:\"|?*").find(byte) != std::string_view::npos;
    };
    return std::none_of(name.begin(), name.end(), forbidden) &&
           utf::Utf16Length(name) <= kLongestName;
}

char DriveLetter(std::string_view text) {
    if (text.size() < 2 || text[1] != ':') return 0;
    const char letter = static_cast<char>(text[0] & ~0x20);
    return letter >= 'A' && letter <= 'Z' ? letter : '\0';
}

bool Exists(int folder, const std::string& name) {
    struct stat status;
    return ::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

// Compares many names with one, at the price of a few instructions for most of them.
class NameMatcher {
  public:
    explicit NameMatcher(const std::string& name) : folded_(HostFold(name)) {}

    bool Matches(std::string_view name) const {
        for (std::size_t i = 0; i < name.size(); ++i) {
            // Capitals of ASCII letters stand where their letters stood, as long as nothing but
            // ASCII came before.
            if (static_cast<unsigned char>(name[i]) >= 0x80) {
                return HostFold(std::string(name)) == folded_;
            }
            const bool small = name[i] >= 'a' && name[i] <= 'z';
            const char capital = small ? static_cast<char>(name[i] - 0x20) : name[i];
            if (i >= folded_.size() || folded_[i] != capital) return false;
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
    if (!dir) return std::nullopt;
    copy.Release();
    const NameMatcher wanted(name);
    while (const dirent* entry = ::readdir(dir.get())) {
        if (wanted.Matches(entry->d_name)) return entry->d_name;
    }
    return std::nullopt;
}

HostFd OpenFolder(int folder, const std::string& name) {
    return HostFd(::openat(folder, name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

}  // namespace

HostPath::HostPath(std::string_view path) {
    std::string text(path);
    std::replace(text.begin(), text.end(), '/', '\\');
    if (text.starts_with("\\\\?\\") && DriveLetter(text.substr(4)) != 0) text.erase(0, 4);
    if (text.starts_with("\\\\")) RaiseError(error_number::kPathNotFound);
    letter = DriveLetter(text);
    if (letter == 0) RaiseError(error_number::kBadFileName);
    for (std::size_t start = 2; start < text.size();) {
        const std::size_t end = std::min(text.find('\\', start), text.size());
        std::string name = text.substr(start, end - start);
        start = end + 1;
        if (name.empty() || name == ".") continue;
        if (name == "..") {
            if (!names.empty()) names.pop_back();
            continue;
        }
        if (!IsName(name)) RaiseError(error_number::kBadFileName);
        names.push_back(std::move(name));
    }
}

HostPlace::HostPlace(const HostDriveMap& drives, const HostPath& path) : names_(path.names) {
    const auto drive = drives.Get(path.letter);
    if (!drive) RaiseError(error_number::kDeviceUnavailable);
    if (!drive->ready) RaiseError(error_number::kDiskNotReady);
    root_ = drive->folder;
    exact_names_ = drive->exact_names;
    if (!Go()) Respell();
}

bool HostPlace::Go() {
    folder_ = HostFd();
    name_ = root_;
    leaf_ = names_.empty() ? std::string() : names_.back();
    for (const std::string& name : names_) {
        if (name_.size() + name.size() > kLongestPath) {
            HostFd next = OpenFolder(Folder(), name_);
            if (!next.IsValid()) return false;
            folder_ = std::move(next);
            name_.clear();
        }
        if (!name_.empty() && !name_.ends_with('/')) name_ += '/';
        name_ += name;
    }
    return true;
}

std::string HostPlace::Path() const {
    if (!folder_.IsValid()) return name_;
    return "/proc/self/fd/" + std::to_string(folder_.Get()) + "/" + name_;
}

void HostPlace::SpellLeaf(const std::string& name) {
    names_.back() = name;
    if (!Go()) RaiseError(error_number::kPathNotFound);
}

bool HostPlace::IsThere() const {
    if (Exists(Folder(), name_)) return true;
    const std::size_t slash = name_.rfind('/');
    const bool folder_there = slash == std::string::npos || slash == 0 ||
                              OpenFolder(Folder(), name_.substr(0, slash)).IsValid();
    if (!folder_there) RaiseError(error_number::kPathNotFound);
    return false;
}

bool HostPlace::Respell() {
    if (exact_names_ && Go()) return IsThere();
    HostFd folder = OpenFolder(kCurrentFolder, root_);
    if (!folder.IsValid()) RaiseError(error_number::kDiskNotReady);
    for (std::size_t i = 0; i < names_.size(); ++i) {
        const bool last = i + 1 == names_.size();
        if (!Exists(folder.Get(), names_[i])) {
            const auto other = exact_names_ ? std::nullopt : OtherSpelling(folder.Get(), names_[i]);
            if (!other && !last) RaiseError(error_number::kPathNotFound);
            if (!other) {
                if (!Go()) RaiseError(error_number::kPathNotFound);
                return false;
            }
            names_[i] = *other;
        }
        if (!last) {
            folder = OpenFolder(folder.Get(), names_[i]);
            if (!folder.IsValid()) {
                RaiseError(errno == EACCES ? error_number::kPermissionDenied
                                           : error_number::kPathNotFound);
            }
        }
    }
    if (!Go()) RaiseError(error_number::kPathNotFound);
    return true;
}

}  // namespace vantrel::platform
