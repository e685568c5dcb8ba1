// The texts of questions about disks: which one is needed, and why the one in the drive is not
// suitable. Pure functions.
#pragma once

#include <cstdint>
#include <string>

#include "common/error.h"

namespace vantrel::zip {

// "A:" of "A:\Weekly.zip"; a path without a drive letter gives its root.
std::string DriveOf(const std::string& path);

// The question for a disk of the archive at `path`; `disk` counts from 1, 0 is the last one.
// `disks` is their number, 0 while it is unknown. `note` is a sentence about the disk that is in
// the drive.
std::string PromptForDisk(std::uint32_t disk, std::uint32_t disks, const std::string& path,
                          const std::string& note);

// Why a write to `path` failed when its drive is full. `needed` more bytes are needed, about;
// `free` are free. If these would be enough, the file system does not take so large a file (4 GB on
// FAT32).
std::string FullDriveText(const std::string& path, std::uint64_t needed, std::uint64_t free);

// Notes: sentences about "the disk in the drive".
std::string FreeSpaceNote(std::uint64_t bytes);
std::string FullNote(std::uint64_t bytes);
std::string NoDiskNote();
std::string HoldsArchiveNote(const std::string& path);
std::string MissingNote(const std::string& path);
std::string OtherDiskNote();
std::string NotLastNote();
// "disk 3 is missing"; `disk` counts from 0.
std::string MissingText(std::uint32_t disk);
// Added while the number of disks is unknown.
std::string UnknownNumberNote();
// Why a disk cannot be written to, and why it cannot be read.
std::string ErrorNote(const Error& error);
std::string ReadErrorNote(const Error& error);

}  // namespace vantrel::zip
