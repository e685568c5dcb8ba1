#include "platform/win32/win32_file.h"

#include <algorithm>
#include <limits>

#include "common/error.h"
#include "platform/win32/system_error.h"

namespace vantrel::platform {

namespace {

// Bytes of one request; network redirectors refuse much larger ones.
constexpr std::size_t kMaxRequest = 16u << 20;

struct Opening {
    DWORD access;
    DWORD sharing;
    DWORD disposition;
    DWORD flags;
};

// kWrite opens with OPEN_ALWAYS and truncates the file itself, because CREATE_ALWAYS refuses hidden
// and system files. kAppend requests no right to write elsewhere: every write then goes to the end.
Opening OpeningFor(OpenMode mode) {
    switch (mode) {
        case OpenMode::kRead:
            return {GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN};
        case OpenMode::kReadUnchanging:
            return {GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, OPEN_EXISTING,
                    FILE_FLAG_SEQUENTIAL_SCAN};
        case OpenMode::kWrite:
            return {GENERIC_WRITE, FILE_SHARE_READ, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL};
        case OpenMode::kAppend:
            return {FILE_GENERIC_WRITE & ~static_cast<DWORD>(FILE_WRITE_DATA),
                    FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL};
        case OpenMode::kCreateNew:
            break;
    }
    return {GENERIC_READ | GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_NORMAL};
}

// Raises the system's last error unless the call before has succeeded.
void CheckSystem(bool succeeded) {
    if (!succeeded) {
        RaiseSystemError(GetLastError());
    }
}

DWORD Step(std::size_t left) { return static_cast<DWORD>(std::min(left, kMaxRequest)); }

LARGE_INTEGER Position(std::uint64_t bytes) {
    LARGE_INTEGER position;
    position.QuadPart = static_cast<LONGLONG>(bytes);
    return position;
}

}  // namespace

std::unique_ptr<File> Win32File::Open(const DiskPath& path, OpenMode mode, const Pause& pause) {
    if (path.IsRoot()) {
        RaiseSystemError(ERROR_ACCESS_DENIED, FileOperation::kFile, path);
    }
    const Opening how = OpeningFor(mode);
    FileHandle handle;
    const auto open = [&] {
        handle = FileHandle(CreateFileW(path.c_str(), how.access, how.sharing, nullptr,
                                        how.disposition, how.flags, nullptr));
        return handle.IsValid();
    };
    const bool retries = mode == OpenMode::kWrite || mode == OpenMode::kAppend;
    const DWORD code = retries  ? RetryWhileLocked(open, pause)
                       : open() ? ERROR_SUCCESS
                                : GetLastError();
    if (code != ERROR_SUCCESS) {
        RaiseSystemError(code, FileOperation::kFile, path);
    }
    auto file = std::make_unique<Win32File>(std::move(handle));
    if (mode == OpenMode::kWrite) {
        file->Truncate(0);
    }
    return file;
}

std::size_t Win32File::Read(void* buffer, std::size_t count) {
    std::size_t done = 0;
    while (done < count) {
        DWORD got = 0;
        char* const target = static_cast<char*>(buffer) + done;
        if (!ReadFile(handle_.Get(), target, Step(count - done), &got, nullptr)) {
            if (GetLastError() == ERROR_HANDLE_EOF) {
                break;
            }
            RaiseSystemError(GetLastError());
        }
        if (got == 0) {
            break;
        }
        done += got;
    }
    return done;
}

void Win32File::Write(const void* data, std::size_t count) {
    std::size_t done = 0;
    while (done < count) {
        DWORD put = 0;
        const char* const source = static_cast<const char*>(data) + done;
        CheckSystem(WriteFile(handle_.Get(), source, Step(count - done), &put, nullptr) != 0);
        if (put == 0) {
            RaiseError(error_number::kDiskFull);
        }
        done += put;
    }
}

void Win32File::Seek(std::uint64_t position) {
    CheckSystem(SetFilePointerEx(handle_.Get(), Position(position), nullptr, FILE_BEGIN) != 0);
}

std::uint64_t Win32File::Size() {
    LARGE_INTEGER size;
    CheckSystem(GetFileSizeEx(handle_.Get(), &size) != 0);
    return static_cast<std::uint64_t>(size.QuadPart);
}

void Win32File::Truncate(std::uint64_t size) {
    Seek(size);
    CheckSystem(SetEndOfFile(handle_.Get()) != 0);
}

void Win32File::SetTimes(const FileTimes& times) { times_ = times; }

void Win32File::Flush() { CheckSystem(FlushFileBuffers(handle_.Get()) != 0); }

void Win32File::Close() {
    CheckSystem(!times_ || !handle_.IsValid() || ApplyTimes(handle_.Get(), *times_));
    CheckSystem(handle_.Close());
}

bool ApplyTimes(HANDLE file, const FileTimes& times) {
    const auto convert = [](Ticks ticks, FILETIME& buffer) -> const FILETIME* {
        if (ticks > static_cast<Ticks>(std::numeric_limits<std::int64_t>::max())) {
            return nullptr;
        }
        buffer = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
        return ticks == 0 ? nullptr : &buffer;
    };
    FILETIME created, accessed, modified;
    return SetFileTime(file, convert(times.created, created), convert(times.accessed, accessed),
                       convert(times.modified, modified)) != 0;
}

}  // namespace vantrel::platform
