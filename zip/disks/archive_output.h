// What the engine writes an archive to: one file that can be gone back in, or a set of disks that
// are gone once they are full.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace vantrel::zip {

// Where a record stands: its disk, counted from 0, and its offset from the start of that disk.
struct Place {
    std::uint32_t disk = 0;
    std::uint64_t offset = 0;

    bool operator==(const Place&) const = default;
};

// Bytes within those of one Write that must stand together on one disk (APPNOTE 8.5.2), and where
// they came to stand.
struct WholeRecord {
    std::size_t at = 0;
    std::size_t size = 0;
    Place place;
};

// One thread at a time. What fails is a question first; throws RunStopped.
class ArchiveOutput {
  public:
    virtual ~ArchiveOutput() = default;

    // Makes the archive's first file, under a temporary name.
    virtual void Open() = 0;
    // Whether headers are patched when their data is known; otherwise a descriptor follows it.
    virtual bool CanPatch() const = 0;

    // Appends `bytes`. `records` are those of them that must not be divided, in order; their places
    // are filled in.
    virtual void Write(std::string_view bytes, std::span<WholeRecord> records) = 0;
    void Write(std::string_view bytes) { Write(bytes, {}); }
    // Appends bytes that stand together, and returns where.
    Place WriteWhole(std::string_view bytes) {
        WholeRecord record{0, bytes.size(), {}};
        Write(bytes, {&record, 1});
        return record.place;
    }
    // Where the next byte comes to stand, unless it is written on the next disk.
    virtual Place Next() const = 0;

    // Overwrites bytes that were written before. Only where CanPatch.
    virtual void Patch(const Place& place, std::string_view bytes) = 0;
    // Forgets the record at `place`, the last one that was written, and all behind it. What stands
    // on an earlier disk stays there, and means nothing.
    virtual void CutBack(const Place& place) = 0;

    // How the disks that are full can be told apart: body of the field of disk_signs.h. "" when
    // there is one disk.
    virtual std::string DiskList() const { return ""; }

    // Returns when everything is on the medium and closed.
    virtual void Finish() = 0;
    // Gives the finished archive its name.
    virtual void Commit() = 0;
    // Closes and removes what was written, as far as it can be reached.
    virtual void Abandon() = 0;
};

}  // namespace vantrel::zip
