#include "tests/support/faulty_file_system.h"

#include "platform/text_file.h"
#include "tests/support/faulty_file.h"

namespace vantrel::test {

namespace {

std::string ContentOrNothing(platform::FileSystem& files, const std::string& path) {
    const auto info = files.Find(path);
    return info && !info->IsFolder() ? platform::ReadWholeFile(files, path) : std::string();
}

// What is missing makes no error of a question: its answer is that nothing is there.
bool IsMissing(const Error& error) {
    switch (error.number()) {
        case error_number::kFileNotFound:
        case error_number::kPathNotFound:
        case error_number::kDeviceUnavailable:
        case error_number::kDiskNotReady:
            return true;
        default:
            return false;
    }
}

}  // namespace

std::unique_ptr<platform::File> FaultyFileSystem::Open(const std::string& path,
                                                       platform::OpenMode mode) {
    const bool reads =
        mode == platform::OpenMode::kRead || mode == platform::OpenMode::kReadUnchanging;
    plan.Enter({Call::kOpen, path, {}, {}, !reads});
    if (reads) {
        return std::make_unique<FaultyFile>(plan, path, real_.Open(path, mode));
    }
    const bool empty = mode == platform::OpenMode::kCreateNew;
    std::string before = empty ? std::string() : ContentOrNothing(real_, path);
    const std::uint64_t start = mode == platform::OpenMode::kAppend ? before.size() : 0;
    auto file = real_.Open(path, mode);
    auto image = unflushed_.Opened(path, mode, std::move(before));
    return std::make_unique<FaultyFile>(plan, path, std::move(file), unflushed_, std::move(image),
                                        start);
}

std::optional<platform::FileInfo> FaultyFileSystem::Find(const std::string& path) {
    try {
        plan.Enter({Call::kFind, path, {}, {}});
    } catch (const Error& error) {
        if (IsMissing(error)) {
            return std::nullopt;
        }
        throw;
    }
    return real_.Find(path);
}

void FaultyFileSystem::List(const std::string& folder,
                            const std::function<bool(const platform::FileInfo&)>& each) {
    plan.Enter({Call::kList, folder, {}, {}});
    real_.List(folder, each);
}

void FaultyFileSystem::MakeFolder(const std::string& path) {
    plan.Enter({Call::kMakeFolder, path, {}, {}});
    real_.MakeFolder(path);
}

void FaultyFileSystem::Rename(const std::string& from, const std::string& to) {
    plan.Enter({Call::kRename, from, to, {}});
    real_.Rename(from, to);
    unflushed_.Moved(from, to);
}

void FaultyFileSystem::Replace(const std::string& from, const std::string& to) {
    plan.Enter({Call::kReplace, from, to, {}});
    real_.Replace(from, to);
    unflushed_.Moved(from, to);
}

void FaultyFileSystem::RemoveFile(const std::string& path) {
    plan.Enter({Call::kRemoveFile, path, {}, {}});
    real_.RemoveFile(path);
    unflushed_.Removed(path);
}

void FaultyFileSystem::RemoveFolder(const std::string& path) {
    plan.Enter({Call::kRemoveFolder, path, {}, {}});
    real_.RemoveFolder(path);
}

void FaultyFileSystem::SetAttributes(const std::string& path, std::uint32_t attributes) {
    plan.Enter({Call::kSetAttributes, path, {}, {}});
    real_.SetAttributes(path, attributes);
}

void FaultyFileSystem::SetTimes(const std::string& path, const platform::FileTimes& times) {
    plan.Enter({Call::kSetTimes, path, {}, {}});
    real_.SetTimes(path, times);
}

bool FaultyFileSystem::SameFile(const std::string& one, const std::string& other) {
    try {
        plan.Enter({Call::kSameFile, one, other, {}});
    } catch (const Error& error) {
        if (IsMissing(error)) {
            return false;
        }
        throw;
    }
    return real_.SameFile(one, other);
}

}  // namespace vantrel::test
