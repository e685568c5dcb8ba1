#include "platform/host/host_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "common/error.h"
#include "platform/host/host_info.h"

namespace vantrel::platform {

namespace {

constexpr unsigned kReading = 1;
constexpr unsigned kWriting = 2;
constexpr unsigned kMoving = 4;  // renaming, replacing, removing

struct Terms {
    unsigned wants;
    unsigned lets;
};

Terms TermsOf(OpenMode mode) {
    switch (mode) {
        case OpenMode::kRead:
            return {kReading, kReading | kWriting | kMoving};
        case OpenMode::kReadUnchanging:
            return {kReading, kReading | kMoving};
        case OpenMode::kWrite:
            return {kWriting, kReading};
        case OpenMode::kAppend:
            return {kWriting, kReading | kWriting};
        case OpenMode::kCreateNew:
            break;
    }
    return {kReading | kWriting, 0};
}

bool Agree(Terms one, Terms other) {
    return (one.wants & ~other.lets) == 0 && (other.wants & ~one.lets) == 0;
}

struct Table {
    std::mutex mutex;
    std::map<std::pair<dev_t, ino_t>, std::vector<OpenMode>> open;
};

Table& OpenFiles() {
    static Table table;
    return table;
}

// With the table's mutex held.
void Check(const Table& table, std::pair<dev_t, ino_t> file, Terms wanted) {
    const auto found = table.open.find(file);
    if (found == table.open.end()) {
        return;
    }
    for (const OpenMode mode : found->second) {
        if (!Agree(TermsOf(mode), wanted)) {
            RaiseError(error_number::kPermissionDenied);
        }
    }
}

// Emptying waits until it is known that the file may be written. Not to block: a pipe would.
int FlagsFor(OpenMode mode) {
    constexpr int kAlways = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    switch (mode) {
        case OpenMode::kRead:
        case OpenMode::kReadUnchanging:
            return kAlways | O_RDONLY;
        case OpenMode::kWrite:
            return kAlways | O_WRONLY | O_CREAT;
        case OpenMode::kAppend:
            return kAlways | O_WRONLY | O_CREAT | O_APPEND;
        case OpenMode::kCreateNew:
            break;
    }
    return kAlways | O_RDWR | O_CREAT | O_EXCL;
}

HostFd TryOpen(int folder, const char* name, int flags) {
    int fd = 0;
    do {
        fd = ::openat(folder, name, flags, 0666);
    } while (fd < 0 && errno == EINTR);
    return HostFd(fd);
}
HostFd TryOpen(const HostLocation& location, int flags) {
    return TryOpen(location.Folder(), location.Name(), flags);
}

HostFd OpenAnySpelling(HostLocation& location, int flags) {
    // A file is created only when no other spelling of its name exists.
    const int careful = flags & ~(O_CREAT | O_EXCL);
    HostFd fd;
    if ((flags & O_EXCL) == 0) {
        fd = TryOpen(location, careful);
    }
    if (fd.IsValid()) {
        return fd;
    }
    const bool missing = (flags & O_EXCL) != 0 || errno == ENOENT || errno == ENOTDIR;
    CheckHost(missing);
    const bool there = location.Respell();
    if (there && (flags & O_EXCL) != 0) {
        RaiseError(error_number::kFileExists);
    }
    fd = TryOpen(location, flags);
    CheckHost(fd.IsValid());
    return fd;
}

}  // namespace

HostShare::HostShare(dev_t device, ino_t number, OpenMode mode)
    : device_(device), number_(number), mode_(mode) {
    Table& table = OpenFiles();
    const std::lock_guard lock(table.mutex);
    Check(table, {device, number}, TermsOf(mode));
    table.open[{device, number}].push_back(mode);
}

HostShare::~HostShare() {
    Table& table = OpenFiles();
    const std::lock_guard lock(table.mutex);
    const auto found = table.open.find({device_, number_});
    auto& modes = found->second;
    modes.erase(std::find(modes.begin(), modes.end(), mode_));
    if (modes.empty()) {
        table.open.erase(found);
    }
}

void HostShare::CheckMovable(dev_t device, ino_t number) {
    Table& table = OpenFiles();
    const std::lock_guard lock(table.mutex);
    Check(table, {device, number}, {kMoving, kReading | kWriting | kMoving});
}

std::unique_ptr<File> HostFile::Open(HostLocation& location, OpenMode mode) {
    if (location.IsRoot()) {
        RaiseError(error_number::kPermissionDenied);
    }
    if (mode == OpenMode::kCreateNew && location.ExactNames()) {
        // All that can be known about a new name is known when this works.
        if (auto file = TryCreate(location.Folder(), location.Name())) {
            return file;
        }
    }
    HostFd fd = OpenAnySpelling(location, FlagsFor(mode));
    struct stat status;
    CheckHost(::fstat(fd.Get(), &status) == 0);
    const bool writing = mode == OpenMode::kWrite || mode == OpenMode::kAppend;
    if (!S_ISREG(status.st_mode) || (writing && IsReadOnlyMode(status.st_mode))) {
        RaiseError(error_number::kPermissionDenied);
    }
    auto share = std::make_unique<HostShare>(status.st_dev, status.st_ino, mode);
    auto file = std::make_unique<HostFile>(std::move(fd), std::move(share));
    if (mode == OpenMode::kWrite && status.st_size != 0) {
        file->Truncate(0);
    }
    return file;
}

std::unique_ptr<File> HostFile::TryCreate(int folder, const char* name) {
    HostFd created = TryOpen(folder, name, FlagsFor(OpenMode::kCreateNew));
    return created.IsValid() ? std::make_unique<HostFile>(std::move(created), nullptr) : nullptr;
}

std::size_t HostFile::Read(void* buffer, std::size_t count) {
    std::size_t done = 0;
    while (done < count) {
        const ssize_t got = ::read(fd_.Get(), static_cast<char*>(buffer) + done, count - done);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        CheckHost(got >= 0);
        if (got == 0) {
            break;
        }
        done += static_cast<std::size_t>(got);
    }
    return done;
}

void HostFile::Write(const void* data, std::size_t count) {
    std::size_t done = 0;
    while (done < count) {
        const ssize_t put = ::write(fd_.Get(), static_cast<const char*>(data) + done, count - done);
        if (put < 0 && errno == EINTR) {
            continue;
        }
        CheckHost(put >= 0);
        if (put == 0) {
            RaiseError(error_number::kDiskFull);
        }
        done += static_cast<std::size_t>(put);
    }
}

void HostFile::Seek(std::uint64_t position) {
    CheckHost(::lseek(fd_.Get(), static_cast<off_t>(position), SEEK_SET) >= 0);
}

std::uint64_t HostFile::Size() {
    struct stat status;
    CheckHost(::fstat(fd_.Get(), &status) == 0);
    return static_cast<std::uint64_t>(status.st_size);
}

void HostFile::Truncate(std::uint64_t size) {
    CheckHost(::ftruncate(fd_.Get(), static_cast<off_t>(size)) == 0);
    Seek(size);
}

void HostFile::Flush() { CheckHost(::fsync(fd_.Get()) == 0); }

void HostFile::Close() {
    if (times_ && fd_.IsValid()) {
        CheckHost(::futimens(fd_.Get(), HostTimes(*times_).values) == 0);
    }
    const bool closed = fd_.Close();
    share_.reset();
    CheckHost(closed);
}

}  // namespace vantrel::platform
