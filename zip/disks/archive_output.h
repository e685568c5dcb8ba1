// The sink of an archive that is being written: one file in which written headers can be patched
// (archive_file.h), or a series of disks that are removed once they are full (spanned_archive.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "zip/records/entry_records.h"

namespace vantrel::zip {

// A range of the bytes of one Write that must be on one disk (APPNOTE 8.5.2), and its location,
// which Write fills in.
struct UnsplitRecord {
    std::size_t at = 0;
    std::size_t size = 0;
    RecordLocation place;
};

// Used by one thread at a time: the worker that holds the archive's turn to write. A failure is a
// question first; throws RunStopped when it is not to be retried.
class ArchiveOutput {
  public:
    virtual ~ArchiveOutput() = default;

    // Creates the archive's first file, under a temporary name.
    virtual void Open() = 0;
    // Whether headers are patched when their data is known; otherwise a descriptor follows it.
    virtual bool CanPatch() const = 0;

    // Appends `bytes`. `records` are the ranges of them that must not be divided, in order.
    virtual void Write(std::string_view bytes, std::span<UnsplitRecord> records) = 0;
    void Write(std::string_view bytes) { Write(bytes, {}); }
    // Appends one record, and returns its location.
    RecordLocation WriteUnsplit(std::string_view bytes) {
        UnsplitRecord record{0, bytes.size(), {}};
        Write(bytes, {&record, 1});
        return record.place;
    }
    // The location of the next byte, unless that is written on the next disk.
    virtual RecordLocation Next() const = 0;

    // Bytes of the archive so far, on all disks.
    virtual std::uint64_t Size() const = 0;

    // Overwrites bytes that were written before. Requires CanPatch.
    virtual void Patch(const RecordLocation& place, std::string_view bytes) = 0;
    // Discards the record at `place`, the last one that was written, and everything after it. Its
    // bytes on an earlier disk stay there, unused.
    virtual void TruncateTo(const RecordLocation& place) = 0;

    // Identifies the disks that are full: body of kDiskListField. "" when there is one disk.
    virtual std::string DiskList() const { return ""; }

    // Returns when everything is on the medium and closed.
    virtual void Finish() = 0;
    // Gives the finished archive its name.
    virtual void Commit() = 0;
    // Closes and removes what was written, as far as it is accessible.
    virtual void Abandon() = 0;
};

}  // namespace vantrel::zip
