// The zip format as numbers: signatures, positions of fields in their records, flags, methods,
// extra fields, limits and epochs. Section numbers are those of PKWARE's APPNOTE.TXT 6.3.x;
// docs/zip-format.md shows which of it is written and read. Numbers of the format stand least
// significant byte first.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vantrel::zip {

// The first four bytes of each record.
constexpr std::uint32_t kLocalSignature = 0x04034b50;       // 4.3.7
constexpr std::uint32_t kCentralSignature = 0x02014b50;     // 4.3.12
constexpr std::uint32_t kEnd64Signature = 0x06064b50;       // 4.3.14
constexpr std::uint32_t kLocatorSignature = 0x07064b50;     // 4.3.15
constexpr std::uint32_t kEndSignature = 0x06054b50;         // 4.3.16
constexpr std::uint32_t kDescriptorSignature = 0x08074b50;  // 4.3.9.3
constexpr std::uint32_t kSpannedMarker = 0x08074b50;        // 8.5.4, the same number
constexpr std::uint32_t kOneDiskMarker = 0x30304b50;  // 8.5.4: begun as spanned, one disk sufficed
constexpr std::size_t kSignatureSize = 4;

// Offsets of fields from the start of their record. kFixedSize is the length of the record up to
// its fields of variable length (names, extra fields, comments).
namespace local_header {  // 4.3.7
constexpr std::size_t kVersionNeeded = 4;
constexpr std::size_t kFlags = 6;
constexpr std::size_t kMethod = 8;
constexpr std::size_t kDosTime = 10;  // time, then date
constexpr std::size_t kCrc = 14;
constexpr std::size_t kPackedSize = 18;
constexpr std::size_t kSize = 22;
constexpr std::size_t kNameLength = 26;
constexpr std::size_t kExtraLength = 28;
constexpr std::size_t kFixedSize = 30;
}  // namespace local_header

namespace descriptor {  // 4.3.9, with its signature
constexpr std::size_t kCrc = 4;
constexpr std::size_t kPackedSize = 8;  // 4 bytes, or 8 (4.3.9.2); the size follows, as long
constexpr std::size_t kFixedSize = 16;
constexpr std::size_t kFixedSize64 = 24;
}  // namespace descriptor

namespace central_record {  // 4.3.12
constexpr std::size_t kMadeBy = 4;
constexpr std::size_t kHost = 5;  // high byte of kMadeBy
constexpr std::size_t kVersionNeeded = 6;
constexpr std::size_t kFlags = 8;
constexpr std::size_t kMethod = 10;
constexpr std::size_t kDosTime = 12;
constexpr std::size_t kCrc = 16;
constexpr std::size_t kPackedSize = 20;
constexpr std::size_t kSize = 24;
constexpr std::size_t kNameLength = 28;
constexpr std::size_t kExtraLength = 30;
constexpr std::size_t kCommentLength = 32;
constexpr std::size_t kDisk = 34;
constexpr std::size_t kAttributes = 38;
constexpr std::size_t kOffset = 42;
constexpr std::size_t kFixedSize = 46;
}  // namespace central_record

namespace end64_record {  // 4.3.14
constexpr std::size_t kRecordSize = 4;
constexpr std::size_t kDisk = 16;
constexpr std::size_t kDirectoryDisk = 20;
constexpr std::size_t kEntriesOnDisk = 24;
constexpr std::size_t kEntries = 32;
constexpr std::size_t kDirectorySize = 40;
constexpr std::size_t kDirectoryOffset = 48;
constexpr std::size_t kFixedSize = 56;
// What kRecordSize counts begins behind it.
constexpr std::size_t kStatedSize = kFixedSize - 12;
}  // namespace end64_record

namespace end64_locator {  // 4.3.15; stands directly before the end record
constexpr std::size_t kDisk = 4;
constexpr std::size_t kOffset = 8;
constexpr std::size_t kDisks = 16;
constexpr std::size_t kFixedSize = 20;
}  // namespace end64_locator

namespace end_record {  // 4.3.16
constexpr std::size_t kDisk = 4;
constexpr std::size_t kDirectoryDisk = 6;
constexpr std::size_t kEntriesOnDisk = 8;
constexpr std::size_t kEntries = 10;
constexpr std::size_t kDirectorySize = 12;
constexpr std::size_t kDirectoryOffset = 16;
constexpr std::size_t kCommentLength = 20;
constexpr std::size_t kFixedSize = 22;
}  // namespace end_record

// A short field that holds this (or 0xFFFF) says that the number stands in a Zip64 field instead,
// so from this number on Zip64 is needed (4.4.8, 4.4.9, 4.4.16, 4.4.22).
constexpr std::uint64_t kSaturated32 = 0xFFFFFFFF;
constexpr std::uint64_t kSaturated16 = 0xFFFF;
// Bytes of a name, and of a comment: their lengths have 16 bits (4.4.10, 4.4.12).
constexpr std::size_t kMaxNameLength = 0xFFFF;
constexpr std::size_t kMaxComment = 0xFFFF;

// Version needed to extract (4.4.3.2). kVersionDeflated also holds for folders.
constexpr std::uint16_t kVersionStored = 10;
constexpr std::uint16_t kVersionDeflated = 20;
constexpr std::uint16_t kVersionZip64 = 45;

// Hosts of "version made by" (4.4.2) whose attributes are those of DOS, or of Unix.
constexpr int kHostDos = 0;
constexpr int kHostUnix = 3;
constexpr int kHostNtfs = 10;
constexpr int kHostVfat = 14;
constexpr int kHostDarwin = 19;

// Compression methods that are read (4.4.5); the first two are written. A record may hold any
// other number.
enum class Method : std::uint16_t { kStored = 0, kDeflated = 8, kDeflated64 = 9, kAes = 99 };

// General purpose flags (4.4.4).
namespace flag {
constexpr std::uint16_t kEncrypted = 1u << 0;
constexpr std::uint16_t kDescriptor = 1u << 3;  // sizes and CRC follow the data
constexpr std::uint16_t kPatch = 1u << 5;
constexpr std::uint16_t kStrongEncryption = 1u << 6;
constexpr std::uint16_t kUtf8 = 1u << 11;
constexpr std::uint16_t kMaskedHeader = 1u << 13;
}  // namespace flag

// Extra fields: id and length (2 bytes each), then the body.
constexpr std::size_t kFieldHeader = 4;
constexpr std::uint16_t kZip64Field = 0x0001;        // 4.5.3
constexpr std::uint16_t kUnicodePathField = 0x7075;  // 4.6.9: version 1, CRC of the name, the path
constexpr std::size_t kUnicodePathCrc = 1;
constexpr std::size_t kUnicodePathText = 5;

constexpr std::uint16_t kNtfsField = 0x000A;  // 4.5.5: reserved, then attributes with tag and size
constexpr std::size_t kNtfsTag = 4;           // 1: times
constexpr std::size_t kNtfsSize = 6;
constexpr std::size_t kNtfsTimes = 8;  // modified, accessed, created
constexpr std::size_t kNtfsLength = 32;

constexpr std::uint16_t kUnixTimeField = 0x5455;  // 4.6.1, extended timestamp: bits, then seconds
constexpr std::uint8_t kUnixHasModified = 1;
constexpr std::size_t kUnixModified = 1;
constexpr std::size_t kUnixTimeLength = 5;  // with the modified time alone

// A field of our own, which other programs pass over, in the first central record of a spanned
// archive: for each disk before the one on which the directory starts its size (8 bytes) and the
// CRC-32 of its first kDiskHead bytes (4 bytes).
constexpr std::uint16_t kDiskListField = 0x4456;
constexpr std::size_t kDiskListCrc = 8;
constexpr std::size_t kDiskListItem = 12;
constexpr std::size_t kDiskListLimit = 5000;  // disks; the length of a field has 16 bits
constexpr std::size_t kDiskHead = 4096;

// Two more fields of our own, for later runs that reuse the compressed data (docs/zip-format.md).
// In the first central record: what compressed the data, as generation (2 bytes), level (1) and
// CRC-32 of the library's name (4).
constexpr std::uint16_t kCompressorField = 0x4756;
// In the record of a file that was compressed in chunks: the binary logarithm of the number of
// chunks in an item (1 byte), then for each item the packed size (4) and a CRC-32 (4).
constexpr std::uint16_t kChunkIndexField = 0x4356;
constexpr std::size_t kChunkIndexHeader = 1;
constexpr std::size_t kChunkIndexItem = 8;

// Times. DOS times (4.4.6) are local, in steps of 2 seconds; NTFS times count 100 ns from 1601,
// Unix times seconds from 1970, both UTC.
constexpr int kDosFirstYear = 1980;
constexpr int kDosLastYear = 2107;
constexpr std::int64_t kUnixEpoch = 11644473600;  // 1601 to 1970, in seconds
constexpr std::int64_t kTicksPerSecond = 10'000'000;

}  // namespace vantrel::zip
