// An archive that continues on the next disk when one is full, under the same file name on each
// (APPNOTE 8). Every disk is flushed and read back before the next is asked for. Existing files on
// a disk are never overwritten, except that an earlier archive on the first disk is replaced at the
// very end, as it is without spanning.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/machine.h"
#include "zip/base/run_context.h"
#include "zip/disks/archive_output.h"
#include "zip/disks/archive_target.h"
#include "zip/disks/volume.h"

namespace vantrel::zip {

class SpannedArchive : public ArchiveOutput {
  public:
    SpannedArchive(const platform::Machine& machine, RunContext& channel,
                   const std::string& archive);

    void Open() override;
    bool CanPatch() const override { return false; }

    using ArchiveOutput::Write;
    void Write(std::string_view bytes, std::span<UnsplitRecord> records) override;
    RecordLocation Next() const override { return {disk_, volume_->Size()}; }
    std::uint64_t Size() const override { return finished_bytes_ + volume_->Size(); }
    void Patch(const RecordLocation& place, std::string_view bytes) override;
    void TruncateTo(const RecordLocation& place) override;

    std::string DiskList() const override;
    void Finish() override;
    void Commit() override;
    void Abandon() override;

  private:
    // A finished file on a disk, by which that disk is recognised later.
    struct Finished {
        std::string path;
        std::uint64_t size = 0;
        platform::Ticks modified = 0;
    };

    std::size_t WriteOnDisk(std::string_view bytes, std::size_t done,
                            std::span<UnsplitRecord> records);
    void NextDisk(std::size_t needed);
    void RequireDisk(std::size_t needed, std::string why_not);
    std::string TryDisk(std::size_t needed);
    std::string Obstacle();
    std::string Begin(std::size_t needed);
    void FinishDisk();
    void Ask(std::uint32_t disk, const std::string& note);
    bool IsPreviousInserted();
    Finished InfoOf(const std::string& path);
    void ReplaceOnDiskOne();

    const platform::Machine& machine_;
    RunContext& channel_;
    ArchiveTarget target_;
    std::uint32_t disk_ = 0;                      // the current one
    std::uint32_t finished_disks_ = 0;            // that hold a part of the archive
    std::uint64_t finished_bytes_ = 0;            // on the disks before the current one
    std::unique_ptr<Volume> volume_;              // null between two disks
    std::uint64_t capacity_ = 0;                  // capacity left on the current disk
    RecordLocation marked_;                       // where volume_ can be truncated to
    std::string disk_list_;                       // of the disks that were left
    std::uint64_t smallest_ = ~std::uint64_t{0};  // bytes on one of those
    std::optional<Finished> previous_;            // on the disk that was finished last
    std::optional<Finished> pending_;  // on disk 1, beside an earlier archive, to replace it
};

}  // namespace vantrel::zip
