// An archive on disk, read at random by one thread; asks when its medium is gone, and for the disks
// of an archive on several.
#pragma once

#include <memory>
#include <string>

#include "platform/machine.h"
#include "zip/base/byte_source.h"
#include "zip/base/run_channel.h"
#include "zip/disks/disk_set.h"
#include "zip/records/directory_reader.h"

namespace vantrel::zip {

class ArchiveSource : public ByteSource {
  public:
    ArchiveSource(platform::FileSystem& files, std::string path)
        : files_(files), path_(std::move(path)) {}

    // From now on failures are questions: tried again until it works or the run stops. So is an
    // archive of another size than that of `directory`, which somebody has put in the place of the
    // one that was listed. Of an archive on several disks, those are asked for. `directory` is
    // borrowed.
    void AskOn(RunChannel& channel, const Directory& directory);

    // From now on the disks of an archive on several are asked for. One whose end is missing is
    // taken for such an archive when it begins like one, or lies on a disk that can be changed.
    void AskForDisks(platform::Drives& drives, AskForDisk ask);

    std::uint64_t Size() override;
    std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count) override;
    std::size_t ReadAhead(std::uint64_t offset, void* out, std::size_t count) override;
    bool ChangeToLastDisk() override;
    bool ReadSet(const DiskSigns& signs) override;

  private:
    template <typename Step>
    auto Try(Step step);
    platform::File& Opened();
    bool MayBeOneOfSeveral();

    platform::FileSystem& files_;
    std::string path_;
    RunChannel* channel_ = nullptr;
    std::uint64_t expected_size_ = 0;
    std::unique_ptr<platform::File> file_;
    std::uint64_t position_ = 0;
    AskForDisk ask_;
    bool removable_ = false;
    std::unique_ptr<DiskSet> set_;
};

}  // namespace vantrel::zip
