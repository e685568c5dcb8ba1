#include "zip/disks/archive_target.h"

#include <utility>

#include "common/file_name.h"
#include "common/path.h"
#include "common/utf.h"
#include "zip/base/bytes.h"
#include "zip/base/folders.h"
#include "zip/base/retry.h"
#include "zip/records/format.h"

namespace vantrel::zip {

std::string TemporaryPath(std::string archive) {
    while (utf::IsLongerThan(path::Name(archive) + kTemporarySuffix, kMaxFileNameLength)) {
        const auto is_continuation = [](char byte) { return (byte & 0xC0) == 0x80; };
        while (is_continuation(archive.back())) {
            archive.pop_back();
        }
        archive.pop_back();
    }
    return archive + kTemporarySuffix;
}

ArchiveTarget::ArchiveTarget(const platform::Machine& machine, RunContext& channel,
                             std::string archive)
    : machine_(machine),
      channel_(channel),
      archive_(std::move(archive)),
      temporary_(TemporaryPath(archive_)) {}

std::uint64_t ArchiveTarget::FreeBytes() const {
    return machine_.drives.FreeBytes(path::Parent(archive_));
}

void ArchiveTarget::RemoveLeftovers() {
    const std::string folder = path::Parent(archive_);
    RemoveLeftover(folder);
    RemoveLeftoversBelow(folder);
    if (IsDatedFolderName(path::Name(folder))) {
        RemoveLeftoversBelow(path::Parent(folder));
    }
}

void ArchiveTarget::RemoveLeftoversBelow(const std::string& folder) {
    std::vector<std::string> stamped;
    try {
        machine_.files.List(folder, [&](const platform::FileInfo& info) {
            if (info.IsFolder() && !info.is_link && IsDatedFolderName(info.name)) {
                stamped.push_back(path::Join(folder, info.name));
            }
            return !channel_.Token().stop_requested();
        });
    } catch (const Error&) {
        // Usually missing: then nothing was left in it.
    }
    for (const std::string& path : stamped) {
        channel_.CheckStop();
        RemoveLeftover(path);
    }
}

void ArchiveTarget::RemoveLeftover(const std::string& folder) {
    const std::string path = path::Join(folder, path::Name(temporary_));
    try {
        if (machine_.files.Find(path) && IsOurs(path) && RemoveFile(path) &&
            IsDatedFolderName(path::Name(folder))) {
            machine_.files.RemoveFolder(folder);
        }
    } catch (const Error&) {
        // In use by another run, or the folder holds other files.
    }
}

bool ArchiveTarget::IsOurs(const std::string& path) {
    const std::unique_ptr<platform::File> file =
        machine_.files.Open(path, platform::OpenMode::kRead);
    std::string start(kSignatureSize, '\0');
    const std::size_t count = file->Read(start.data(), start.size());
    if (count < start.size()) {
        return count == 0;
    }
    return HasSignature(start, kLocalSignature) || HasSignature(start, kSpannedMarker) ||
           HasSignature(start, kOneDiskMarker);
}

bool ArchiveTarget::RemoveFile(const std::string& path) {
    try {
        machine_.files.RemoveFile(path);
        return true;
    } catch (const Error&) {
        return false;
    }
}

void ArchiveTarget::MakeFolder(const std::string& folder) {
    machine_.files.MakeFolder(folder);
    made_folders_.push_back(folder);
}

void ArchiveTarget::TryMakeFolders() {
    for (const std::string& folder : MissingFolders(machine_.files, path::Parent(archive_))) {
        MakeFolder(folder);
    }
}

void ArchiveTarget::MakeFolders() {
    for (const std::string& folder : MissingFolders(machine_.files, path::Parent(archive_))) {
        RetryOrAsk(channel_, DescribeFailure("The folder for the archive cannot be made", folder),
                   [&] {
                       // It may exist meanwhile, with the drive that holds it.
                       if (!MayExist(machine_.files, folder)) {
                           MakeFolder(folder);
                       }
                   });
    }
}

void ArchiveTarget::Commit() {
    RetryOrAsk(channel_, DescribeFailure("The archive cannot be put in its place", archive_),
               [this] { machine_.files.Replace(temporary_, archive_); });
}

void ArchiveTarget::Abandon(bool created) {
    if (created) {
        RemoveFile(temporary_);
    }
    for (; !made_folders_.empty(); made_folders_.pop_back()) {
        try {
            machine_.files.RemoveFolder(made_folders_.back());
        } catch (const Error&) {
            // It holds other files by now, or the drive is gone.
        }
    }
}

}  // namespace vantrel::zip
