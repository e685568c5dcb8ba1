// Where an archive is written: its folders, its temporary name beside the target, and the files
// that killed runs have left there. Used by one thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/machine.h"
#include "zip/base/run_context.h"

namespace vantrel::zip {

// Added to the archive's name while it is being written.
constexpr const char* kTemporarySuffix = ".vantrel-new";
// The archive's path while it is being written. A name that would become longer than file systems
// allow loses characters at its end.
std::string TemporaryPath(std::string archive);

class ArchiveTarget {
  public:
    ArchiveTarget(const platform::Machine& machine, RunContext& channel, std::string archive);

    const std::string& Archive() const { return archive_; }
    const std::string& Temporary() const { return temporary_; }
    // Of the archive's drive.
    std::uint64_t FreeBytes() const;

    // Removes temporary files that killed runs have left of an archive of this name: beside it, and
    // in date-and-time folders beside it or beside its own date-and-time folder; such a folder goes
    // too when it is then empty. Only files that begin like an archive of ours are removed.
    // Failures are ignored.
    void RemoveLeftovers();
    // Makes the missing folders of the path; a failure is a question, or (Try) raised.
    void MakeFolders();
    void TryMakeFolders();
    // Renames the finished temporary file to the archive's name, replacing an earlier archive.
    void Commit();
    // The folders that were made are on a disk that is no longer there.
    void ForgetFolders() { made_folders_.clear(); }
    // Removes a file of ours, with retries while it is locked; false when that fails.
    bool RemoveFile(const std::string& path);
    // Removes the temporary file if `created`, and the folders that MakeFolders made.
    void Abandon(bool created);

  private:
    void MakeFolder(const std::string& folder);
    void RemoveLeftover(const std::string& folder);
    void RemoveLeftoversBelow(const std::string& folder);
    bool IsOurs(const std::string& path);

    const platform::Machine& machine_;
    RunContext& channel_;
    std::string archive_;
    std::string temporary_;
    std::vector<std::string> made_folders_;
};

}  // namespace vantrel::zip
