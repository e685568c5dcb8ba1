#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>

#include <cerrno>
#include <string_view>

#include "common/error.h"
#include "platform/host/host_drives.h"
#include "platform/host/host_file.h"
#include "platform/host/host_info.h"
#include "platform/host/host_path.h"

namespace vantrel::platform {

namespace {

HostFd OpenForListing(HostLocation& location) {
    const auto open = [&] {
        return HostFd(
            ::openat(location.Folder(), location.Name(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    };
    HostFd fd = open();
    if (!fd.IsValid() && (errno == ENOENT || errno == ENOTDIR) && location.Respell()) {
        fd = open();
    }
    if (!fd.IsValid()) {
        RaiseHostError(errno, FileOperation::kList);
    }
    return fd;
}

bool IsDots(std::string_view name) { return name == "." || name == ".."; }

using namespace error_number;

// Runs `call` on the place as spelled, then in the spelling on disk. Whether it succeeded; errno
// has the reason. Raises 76 when a folder on the way is missing.
template <typename Call>
bool InAnySpelling(HostLocation& location, Call call) {
    if (call()) {
        return true;
    }
    if (errno != ENOENT && errno != ENOTDIR) {
        return false;
    }
    if (location.Respell()) {
        return call();
    }
    errno = ENOENT;
    return false;
}

bool Status(HostLocation& location, struct stat& status, int flags) {
    return InAnySpelling(location, [&] {
        return ::fstatat(location.Folder(), location.Name(), &status, flags) == 0;
    });
}

// The status of what must be there.
struct stat Needed(HostLocation& location, FileOperation operation) {
    struct stat status;
    if (!Status(location, status, AT_SYMLINK_NOFOLLOW)) {
        RaiseHostError(errno, operation);
    }
    return status;
}

// Whether a failure means only that the file does not exist.
bool IsAbsence(int number) {
    return number == kFileNotFound || number == kPathNotFound || number == kBadFileName ||
           number == kDeviceUnavailable || number == kDiskNotReady;
}

std::optional<FileInfo> FindAt(HostLocation& location) {
    struct statx status;
    const bool found = InAnySpelling(location, [&] {
        return ::statx(location.Folder(), location.Name(), AT_SYMLINK_NOFOLLOW, kHostMask,
                       &status) == 0;
    });
    CheckHost(found);
    // The root of a drive is a folder even where it is a link on the host.
    if (location.IsRoot() && S_ISLNK(status.stx_mode)) {
        ::statx(location.Folder(), location.Name(), 0, kHostMask, &status);
    }
    FileInfo info = InfoFromStatus(location.Leaf(), status);
    AddStoredAttributes(location.Path(), info);
    return info;
}

void CheckSameDrive(const HostPath& from, const HostPath& to) {
    if (from.letter != to.letter) {
        RaiseError(kAcrossDrives);
    }
}

void CheckMovable(const struct stat& status) {
    HostShare::CheckMovable(status.st_dev, status.st_ino);
}

// Refuses a target that a file cannot take the place of.
void CheckReplaceable(HostLocation& target) {
    struct stat status;
    if (!Status(target, status, AT_SYMLINK_NOFOLLOW)) {
        if (errno != ENOENT) {
            RaiseHostError(errno, FileOperation::kFile);
        }
        return;
    }
    const bool read_only = S_ISREG(status.st_mode) && IsReadOnlyMode(status.st_mode);
    if (S_ISDIR(status.st_mode) || read_only) {
        RaiseError(kPermissionDenied);
    }
    CheckMovable(status);
}

std::optional<struct stat> Identity(const HostDriveMap& drives, const std::string& path) {
    try {
        HostLocation location(drives, HostPath(path));
        struct stat status;
        if (Status(location, status, 0)) {
            return status;
        }
        if (errno == EACCES) {
            RaiseError(kPermissionDenied);
        }
        return std::nullopt;
    } catch (const Error& error) {
        if (IsAbsence(error.number())) {
            return std::nullopt;
        }
        throw;
    }
}

// One pass over the folder, one status question an entry and, where the file system can keep
// extended attributes at all, one for those. Raises as FileSystem::List does.
void ListHostFolder(HostLocation& location, const std::function<bool(const FileInfo&)>& each) {
    HostFd fd = OpenForListing(location);
    const HostDir dir(::fdopendir(fd.Get()));
    CheckHost(dir != nullptr, FileOperation::kList);
    const int folder = fd.Release();
    const std::string prefix = location.Path() + "/";
    bool has_stored_attributes = true;
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(dir.get());
        if (entry == nullptr && errno != 0) {
            RaiseHostError(errno, FileOperation::kList);
        }
        if (entry == nullptr) {
            return;
        }
        if (IsDots(entry->d_name)) {
            continue;
        }
        struct statx status;
        // An entry that is gone by now is one that the listing came too late for.
        if (::statx(folder, entry->d_name, AT_SYMLINK_NOFOLLOW, kHostMask, &status) != 0) {
            continue;
        }
        FileInfo info = InfoFromStatus(entry->d_name, status);
        if (has_stored_attributes) {
            has_stored_attributes = AddStoredAttributes(prefix + info.name, info);
        }
        if (!each(info)) {
            return;
        }
    }
}

// A folder of the host in which files are created.
// On a drive of exact names (HostDrive::exact_names) it is opened for its second file, because most
// folders have fewer than three files, for which opening costs more than it saves.
class HostFolder : public Folder {
  public:
    // `by_path` creates the files that cannot be created in the open folder, or raises the error.
    HostFolder(const HostDriveMap& drives, std::string path, std::unique_ptr<Folder> by_path)
        : drives_(drives), path_(std::move(path)), by_path_(std::move(by_path)) {}

    std::unique_ptr<File> Create(const std::string& name) override;

  private:
    void Open();

    const HostDriveMap& drives_;
    const std::string path_;
    std::unique_ptr<Folder> by_path_;
    int asked_ = 0;  // files asked for, counted up to 2
    HostFd folder_;
};

std::unique_ptr<File> HostFolder::Create(const std::string& name) {
    if (asked_ < 2 && ++asked_ == 2) {
        Open();
    }
    if (folder_.IsValid() && IsHostName(name)) {
        if (auto file = HostFile::TryCreate(folder_.Get(), name.c_str())) {
            return file;
        }
    }
    return by_path_->Create(name);
}

void HostFolder::Open() {
    const HostLocation location(drives_, HostPath(path_));
    if (!location.ExactNames()) {
        return;
    }
    folder_ =
        HostFd(::openat(location.Folder(), location.Name(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

// See host_path.h for names and host_info.h for attributes.
class HostFileSystem : public FileSystem {
  public:
    explicit HostFileSystem(const HostDriveMap& drives) : drives_(drives) {}

    std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override {
        HostLocation location(drives_, HostPath(path));
        return HostFile::Open(location, mode);
    }

    std::unique_ptr<Folder> OpenFolder(const std::string& path) override {
        return std::make_unique<HostFolder>(drives_, path, FileSystem::OpenFolder(path));
    }

    std::optional<FileInfo> Find(const std::string& path) override {
        try {
            HostLocation location(drives_, HostPath(path));
            return FindAt(location);
        } catch (const Error& error) {
            if (IsAbsence(error.number())) {
                return std::nullopt;
            }
            throw;
        }
    }

    void List(const std::string& folder,
              const std::function<bool(const FileInfo&)>& each) override {
        HostLocation location(drives_, HostPath(folder));
        ListHostFolder(location, each);
    }

    void MakeFolder(const std::string& path) override {
        HostPath parsed = [&] {
            try {
                return HostPath(path);
            } catch (const Error& error) {
                RaiseError(error.number() == kBadFileName ? kPathFileAccess : error.number());
            }
        }();
        HostLocation location(drives_, parsed);
        const bool in_one_go = location.ExactNames() && !parsed.IsRoot();
        // All that can be known about a new name is known when this works.
        if (in_one_go && ::mkdirat(location.Folder(), location.Name(), 0777) == 0) {
            return;
        }
        if (parsed.IsRoot() || location.Respell()) {
            RaiseError(kPathFileAccess);
        }
        CheckHost(::mkdirat(location.Folder(), location.Name(), 0777) == 0, FileOperation::kFolder);
    }

    void Rename(const std::string& from, const std::string& to) override {
        const HostPath from_path(from);
        const HostPath to_path(to);
        HostLocation source(drives_, from_path);
        const struct stat status = Needed(source, FileOperation::kFile);
        CheckSameDrive(from_path, to_path);
        const FileOperation operation =
            S_ISDIR(status.st_mode) ? FileOperation::kFolder : FileOperation::kFile;
        if (from_path.IsRoot()) {
            RaiseError(kPathFileAccess);
        }
        HostLocation target(drives_, to_path);
        const std::string wanted = target.Path();
        struct stat taken;
        // A name may change its letters' case only, which finds itself under the new name.
        if (Status(target, taken, AT_SYMLINK_NOFOLLOW)) {
            const bool itself = target.Path() == source.Path() && wanted != source.Path();
            if (!itself) {
                RaiseError(kFileExists);
            }
            target.SpellLeaf(to_path.Leaf());
        }
        CheckMovable(status);
        if (::renameat2(source.Folder(), source.Name(), target.Folder(), target.Name(),
                        RENAME_NOREPLACE) != 0) {
            RaiseHostError(errno, errno == EEXIST ? FileOperation::kFile : operation);
        }
    }

    void Replace(const std::string& from, const std::string& to) override {
        const HostPath from_path(from);
        const HostPath to_path(to);
        HostLocation source(drives_, from_path);
        const struct stat status = Needed(source, FileOperation::kFile);
        CheckSameDrive(from_path, to_path);
        if (S_ISDIR(status.st_mode)) {
            RaiseError(kPermissionDenied);
        }
        CheckMovable(status);
        HostLocation target(drives_, to_path);
        CheckReplaceable(target);
        CheckHost(::renameat(source.Folder(), source.Name(), target.Folder(), target.Name()) == 0);
    }

    void RemoveFile(const std::string& path) override {
        HostLocation location(drives_, HostPath(path));
        const struct stat status = Needed(location, FileOperation::kFile);
        const bool read_only = S_ISREG(status.st_mode) && IsReadOnlyMode(status.st_mode);
        if (S_ISDIR(status.st_mode) || read_only) {
            RaiseError(kPermissionDenied);
        }
        CheckMovable(status);
        CheckHost(::unlinkat(location.Folder(), location.Name(), 0) == 0);
    }

    void RemoveFolder(const std::string& path) override {
        const HostPath parsed(path);
        HostLocation location(drives_, parsed);
        if (parsed.IsRoot()) {
            RaiseError(kPathFileAccess);
        }
        const bool removed = InAnySpelling(location, [&] {
            return ::unlinkat(location.Folder(), location.Name(), AT_REMOVEDIR) == 0;
        });
        CheckHost(removed, FileOperation::kFolder);
    }

    void SetAttributes(const std::string& path, std::uint32_t attributes) override {
        HostLocation location(drives_, HostPath(path));
        Needed(location, FileOperation::kFile);
        StoreAttributes(location, attributes);
    }

    void SetTimes(const std::string& path, const FileTimes& times) override {
        HostLocation location(drives_, HostPath(path));
        // The host does not even look where neither time is to change.
        Needed(location, FileOperation::kFile);
        CheckHost(::utimensat(location.Folder(), location.Name(), HostTimes(times).values, 0) == 0);
    }

    bool SameFile(const std::string& one, const std::string& other) override {
        const auto first = Identity(drives_, one);
        const auto second = first ? Identity(drives_, other) : std::nullopt;
        return second && first->st_dev == second->st_dev && first->st_ino == second->st_ino;
    }

  private:
    const HostDriveMap& drives_;
};

}  // namespace

std::unique_ptr<FileSystem> NewHostFileSystem(const HostDriveMap& drives) {
    return std::make_unique<HostFileSystem>(drives);
}

}  // namespace vantrel::platform
