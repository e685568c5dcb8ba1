// Where an archive comes to stand: its folders, its temporary name beside the target, and what runs
// that were killed have left there.
#pragma once

#include <stop_token>
#include <string>
#include <vector>

#include "platform/machine.h"
#include "zip/base/run_channel.h"

namespace vantrel::zip {

// Added to the archive's name while it is being written.
constexpr const char* kTemporarySuffix = ".vantrel-new";

class ArchivePlace {
  public:
    ArchivePlace(const platform::Machine& machine, RunChannel& channel, std::string archive);

    const std::string& Archive() const { return archive_; }
    const std::string& Temporary() const { return temporary_; }

    // Removes temporary files that killed runs have left of an archive of this name: beside it, and
    // in date-and-time folders beside it or beside its own date-and-time folder; such a folder goes
    // too when it is then empty. Only what begins as we begin an archive is touched. Fails
    // silently.
    void RemoveLeftovers();
    // Makes the missing folders of the path; what fails is a question, or (Try) raised.
    void MakeFolders();
    void TryMakeFolders();
    // Puts the finished temporary file in the archive's place.
    void Commit();
    // The folders that were made are on a disk that is no longer there.
    void ForgetFolders() { made_folders_.clear(); }
    // Removes a file of ours, patiently; false when that fails.
    bool RemoveFile(const std::string& path);
    // Removes the temporary file if `created`, and the folders that MakeFolders made.
    void Abandon(bool created);

  private:
    std::vector<std::string> MissingFolders();
    void MakeFolder(const std::string& folder);
    void RemoveLeftover(const std::string& folder);
    void RemoveLeftoversBelow(const std::string& folder);
    bool IsOurs(const std::string& path);
    bool Exists(const std::string& folder);

    platform::Machine machine_;
    RunChannel& channel_;
    std::string archive_;
    std::string temporary_;
    std::vector<std::string> made_folders_;
};

}  // namespace vantrel::zip
