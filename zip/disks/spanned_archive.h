// An archive that goes on on the next disk when one is full, under the same file name on each
// (APPNOTE 8). Every disk is flushed and read back before the next is asked for. Nothing that is
// found on a disk is overwritten, except that an earlier archive on the first disk is replaced at
// the very end, as it is without spanning.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/machine.h"
#include "zip/base/run_channel.h"
#include "zip/disks/archive_output.h"
#include "zip/disks/archive_place.h"
#include "zip/disks/volume.h"

namespace vantrel::zip {

class SpannedArchive : public ArchiveOutput {
  public:
    SpannedArchive(const platform::Machine& machine, RunChannel& channel,
                   const std::string& archive);

    void Open() override;
    bool CanPatch() const override { return false; }

    using ArchiveOutput::Write;
    void Write(std::string_view bytes, std::span<WholeRecord> records) override;
    Place Next() const override { return {disk_, volume_->Size()}; }
    void Patch(const Place& place, std::string_view bytes) override;
    void CutBack(const Place& place) override;

    std::string DiskList() const override;
    void Finish() override;
    void Commit() override;
    void Abandon() override;

  private:
    // A file that was finished on a disk, as it is recognised later.
    struct Finished {
        std::string path;
        std::uint64_t size = 0;
        platform::Ticks modified = 0;
    };

    std::size_t WriteHere(std::string_view bytes, std::size_t done, std::span<WholeRecord> records);
    void NextDisk(std::size_t needed);
    void UseDisk(std::size_t needed, std::string why_not);
    std::string WhyNot(std::size_t needed);
    std::string Unsuitable();
    std::string Begin(std::size_t needed);
    void LeaveDisk();
    void Ask(std::uint32_t disk, const std::string& note);
    std::uint64_t FreeBytes();
    bool IsLeftThere();
    Finished Found(const std::string& path);
    void ReplaceOnFirstDisk();

    platform::Machine machine_;
    RunChannel& channel_;
    ArchivePlace place_;
    std::uint32_t disk_ = 0;                      // the current one
    std::uint32_t finished_disks_ = 0;            // left behind with a part of the archive
    std::unique_ptr<Volume> volume_;              // null between two disks
    std::uint64_t room_ = 0;                      // bytes that the current disk may still take
    Place marked_;                                // where volume_ can be cut back to
    std::string disk_list_;                       // of the disks that were left
    std::uint64_t smallest_ = ~std::uint64_t{0};  // bytes on one of those
    std::optional<Finished> left_;                // on the disk that was finished last
    std::optional<Finished> waiting_;  // on disk 1, beside an earlier archive, to replace it
};

}  // namespace vantrel::zip
