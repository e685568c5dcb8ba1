#include "zip/disks/archive_place.h"

#include <algorithm>
#include <utility>

#include "common/dated_folder.h"
#include "zip/base/little_endian.h"
#include "zip/base/paths.h"
#include "zip/records/entry_records.h"

namespace vantrel::zip {

ArchivePlace::ArchivePlace(const platform::Machine& machine, RunChannel& channel,
                           std::string archive)
    : machine_(machine),
      channel_(channel),
      archive_(std::move(archive)),
      temporary_(archive_ + kTemporarySuffix) {}

void ArchivePlace::RemoveLeftovers() {
    const std::string folder = ParentOf(archive_);
    RemoveLeftover(folder);
    RemoveLeftoversBelow(folder);
    if (IsDatedFolderName(LeafOf(folder))) {
        RemoveLeftoversBelow(ParentOf(folder));
    }
}

void ArchivePlace::RemoveLeftoversBelow(const std::string& folder) {
    std::vector<std::string> stamped;
    try {
        machine_.files.List(folder, [&](const platform::FileInfo& info) {
            if (info.IsFolder() && !info.is_link && IsDatedFolderName(info.name)) {
                stamped.push_back(JoinPath(folder, info.name));
            }
            return !channel_.Token().stop_requested();
        });
    } catch (const Error&) {
        // Missing, most often: then nothing was left in it.
    }
    for (const std::string& path : stamped) {
        channel_.CheckStop();
        RemoveLeftover(path);
    }
}

void ArchivePlace::RemoveLeftover(const std::string& folder) {
    const std::string path = JoinPath(folder, LeafOf(temporary_));
    try {
        if (machine_.files.Find(path) && IsOurs(path) && RemoveFile(path) &&
            IsDatedFolderName(LeafOf(folder))) {
            machine_.files.RemoveFolder(folder);
        }
    } catch (const Error&) {
        // In use by another run, or the folder holds other files.
    }
}

bool ArchivePlace::IsOurs(const std::string& path) {
    const std::unique_ptr<platform::File> file =
        machine_.files.Open(path, platform::OpenMode::kRead);
    std::string start(4, '\0');
    const std::size_t count = file->Read(start.data(), start.size());
    if (count < start.size()) {
        return count == 0;
    }
    const auto signature = GetNumber<std::uint32_t>(start, 0);
    return signature == kLocalSignature || signature == kSpannedMarker ||
           signature == kOneDiskMarker;
}

bool ArchivePlace::RemoveFile(const std::string& path) {
    try {
        machine_.files.RemoveFile(path);
        return true;
    } catch (const Error&) {
        return false;
    }
}

bool ArchivePlace::Exists(const std::string& folder) {
    try {
        return machine_.files.Find(folder).has_value();
    } catch (const Error&) {
        return true;  // there, but not for us to look at
    }
}

std::vector<std::string> ArchivePlace::MissingFolders() {
    std::vector<std::string> missing;
    for (std::string folder = ParentOf(archive_); !folder.empty() && !Exists(folder);
         folder = ParentOf(folder)) {
        missing.push_back(folder);
    }
    std::reverse(missing.begin(), missing.end());
    return missing;
}

void ArchivePlace::MakeFolder(const std::string& folder) {
    machine_.files.MakeFolder(folder);
    made_folders_.push_back(folder);
}

void ArchivePlace::TryMakeFolders() {
    for (const std::string& folder : MissingFolders()) {
        MakeFolder(folder);
    }
}

void ArchivePlace::MakeFolders() {
    for (const std::string& folder : MissingFolders()) {
        UntilItWorks(channel_, Cannot("The folder for the archive cannot be made", folder), [&] {
            channel_.CheckStop();
            // It may have come back meanwhile, with the drive that holds it.
            if (!Exists(folder)) {
                MakeFolder(folder);
            }
        });
    }
}

void ArchivePlace::Commit() {
    UntilItWorks(channel_, Cannot("The archive cannot be put in its place", archive_),
                 [this] { machine_.files.Replace(temporary_, archive_); });
}

void ArchivePlace::Abandon(bool created) {
    if (created) {
        RemoveFile(temporary_);
    }
    for (; !made_folders_.empty(); made_folders_.pop_back()) {
        try {
            machine_.files.RemoveFolder(made_folders_.back());
        } catch (const Error&) {
            // Somebody has put something into it, or the drive is gone.
        }
    }
}

}  // namespace vantrel::zip
