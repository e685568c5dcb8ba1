// A file system that fails on demand, over any other one:
//
//     FaultyFileSystem faulty(machine.files());
//     faulty.plan.Inject({.kind = Call::kWrite, .at = 3, .number = error_number::kDiskFull});
//
// Without a fault it is the file system below it, with a log of the calls.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/file_system.h"
#include "tests/support/fault_plan.h"
#include "tests/support/unflushed_writes.h"

namespace vantrel::test {

class FaultyFileSystem : public platform::FileSystem {
  public:
    explicit FaultyFileSystem(platform::FileSystem& real) : real_(real) {}

    FaultPlan plan;

    // The power fails: every file goes back to its bytes at its last flush. Call it when the files
    // that were open are gone.
    void LoseUnflushed() { unflushed_.Lose(real_); }

    std::unique_ptr<platform::File> Open(const std::string& path, platform::OpenMode mode) override;
    std::optional<platform::FileInfo> Find(const std::string& path) override;
    void List(const std::string& folder,
              const std::function<bool(const platform::FileInfo&)>& each) override;
    void MakeFolder(const std::string& path) override;
    void Rename(const std::string& from, const std::string& to) override;
    void Replace(const std::string& from, const std::string& to) override;
    void RemoveFile(const std::string& path) override;
    void RemoveFolder(const std::string& path) override;
    void SetAttributes(const std::string& path, std::uint32_t attributes) override;
    void SetTimes(const std::string& path, const platform::FileTimes& times) override;
    bool SameFile(const std::string& one, const std::string& other) override;

  private:
    platform::FileSystem& real_;
    UnflushedWrites unflushed_;
};

}  // namespace vantrel::test
