#include "tests/zip/archive_reader.h"

#include <zlib.h>

#include <stdexcept>

#include "zip/records/format.h"

namespace vantrel::test {

namespace {

using namespace zip;

std::uint64_t Number(const std::string& bytes, std::size_t offset, std::size_t size) {
    std::uint64_t value = 0;
    for (std::size_t i = size; i-- > 0;) {
        value = value << 8 | static_cast<unsigned char>(bytes.at(offset + i));
    }
    return value;
}
std::uint16_t U16(const std::string& b, std::size_t at) {
    return static_cast<std::uint16_t>(Number(b, at, 2));
}
std::uint32_t U32(const std::string& b, std::size_t at) {
    return static_cast<std::uint32_t>(Number(b, at, 4));
}

std::uint64_t U64(const std::string& b, std::size_t at) { return Number(b, at, 8); }

void Demand(bool right, const std::string& what) {
    if (!right) {
        throw std::runtime_error("bad archive: " + what);
    }
}

std::map<std::uint16_t, std::string> Fields(const std::string& extra) {
    std::map<std::uint16_t, std::string> fields;
    for (std::size_t at = 0; at < extra.size();) {
        const std::uint16_t size = U16(extra, at + 2);
        Demand(at + 4 + size <= extra.size(), "extra field");
        Demand(fields.emplace(U16(extra, at), extra.substr(at + 4, size)).second, "field twice");
        at += 4u + size;
    }
    return fields;
}

// Replaces saturated numbers by those of the Zip64 field, which must be used up.
void Widen(ReadEntry& entry) {
    const auto field = entry.central_fields.find(kZip64Field);
    std::size_t at = 0;
    for (std::uint64_t* value : {&entry.size, &entry.packed_size, &entry.offset}) {
        if (*value == kSaturated32) {
            Demand(field != entry.central_fields.end(), "no Zip64 field");
            *value = Number(field->second, at, 8);
            at += 8;
        }
    }
    Demand(field == entry.central_fields.end() || (at > 0 && at == field->second.size()),
           "Zip64 field not needed");
}

void CheckData(ReadEntry& entry, std::string data) {
    const bool deflated = entry.method == static_cast<std::uint16_t>(Method::kDeflated);
    entry.content = deflated ? InflateAll(data) : std::move(data);
    const auto crc = crc32(0, reinterpret_cast<const Bytef*>(entry.content.data()),
                           static_cast<uInt>(entry.content.size()));
    Demand(entry.content.size() == entry.size && crc == entry.crc, "data of " + entry.name);
}

// `header` is complete, with name and extra fields.
void CheckLocal(const std::string& header, ReadEntry& entry) {
    using namespace local_header;
    Demand(U32(header, 0) == kLocalSignature, "local signature of " + entry.name);
    const std::uint16_t name_size = U16(header, kNameLength);
    Demand(header.substr(kFixedSize, name_size) == entry.name, "local name of " + entry.name);
    entry.local_fields = Fields(header.substr(kFixedSize + name_size));
    // An offset that needs Zip64 raises the version in the directory only.
    const std::uint16_t needed = U16(header, kVersionNeeded);
    Demand(
        needed == entry.needed || (entry.needed == kVersionZip64 && entry.offset >= kSaturated32),
        "version needed of " + entry.name);
    const bool described = (entry.flags & flag::kDescriptor) != 0;
    const auto stated = [described](std::uint64_t value) { return described ? 0 : value; };
    Demand(U16(header, kFlags) == entry.flags && U16(header, kMethod) == entry.method &&
               U32(header, kDosTime) == entry.dos_time && U32(header, kCrc) == stated(entry.crc),
           "local header of " + entry.name);
    const auto wide = entry.local_fields.find(kZip64Field);
    if (wide == entry.local_fields.end()) {
        Demand(U32(header, kPackedSize) == stated(entry.packed_size) &&
                   U32(header, kSize) == stated(entry.size),
               "local sizes of " + entry.name);
    } else {
        Demand(U32(header, kPackedSize) == kSaturated32 && U32(header, kSize) == kSaturated32 &&
                   wide->second.size() == 16 && U64(wide->second, 0) == stated(entry.size) &&
                   U64(wide->second, 8) == stated(entry.packed_size),
               "wide local sizes of " + entry.name);
    }
}

// `record` begins with a central record; returns its length.
std::size_t ReadCentral(const std::string& record, ReadEntry& entry) {
    using namespace central_record;
    Demand(U32(record, 0) == kCentralSignature, "central signature");
    entry.made_by = U16(record, kMadeBy);
    entry.needed = U16(record, kVersionNeeded);
    entry.flags = U16(record, kFlags);
    entry.method = U16(record, kMethod);
    entry.dos_time = U32(record, kDosTime);
    entry.crc = U32(record, kCrc);
    entry.packed_size = U32(record, kPackedSize);
    entry.size = U32(record, kSize);
    const std::uint16_t name_size = U16(record, kNameLength);
    const std::uint16_t extra_size = U16(record, kExtraLength);
    Demand(U16(record, kCommentLength) == 0, "comment");
    entry.disk = U16(record, kDisk);
    entry.attributes = U32(record, kAttributes);
    entry.offset = U32(record, kOffset);
    entry.name = record.substr(kFixedSize, name_size);
    entry.central_fields = Fields(record.substr(kFixedSize + name_size, extra_size));
    Widen(entry);
    return kFixedSize + name_size + extra_size;
}

// The end record of the last disk, and the Zip64 one before it.
struct End {
    std::uint64_t disk, directory_disk, entries_here, entries, size, offset;
    std::uint64_t records_at;  // where the first of these records begins
    bool zip64;
};

void ReadEnd64(const ReadBytes& read, const std::string& locator, End& end) {
    using namespace end64_record;
    const std::uint64_t locator_at = end.records_at - end64_locator::kFixedSize;
    end.records_at = locator_at - kFixedSize;
    const std::string record = read(end.records_at, kFixedSize);
    end.disk = U32(record, kDisk);
    Demand(U32(locator, end64_locator::kDisk) == end.disk &&
               U64(locator, end64_locator::kOffset) == end.records_at &&
               U32(locator, end64_locator::kDisks) == end.disk + 1,
           "locator");
    Demand(U32(record, 0) == kEnd64Signature && U64(record, kRecordSize) == kStatedSize,
           "Zip64 end record");
    end.directory_disk = U32(record, kDirectoryDisk);
    end.entries_here = U64(record, kEntriesOnDisk);
    end.entries = U64(record, kEntries);
    end.size = U64(record, kDirectorySize);
    end.offset = U64(record, kDirectoryOffset);
}

End ReadEnd(const ReadBytes& read, std::uint64_t size) {
    using namespace end_record;
    Demand(size >= kFixedSize, "too short");
    const std::uint64_t at = size - kFixedSize;
    const std::string record = read(at, kFixedSize);
    Demand(U32(record, 0) == kEndSignature && U16(record, kCommentLength) == 0, "end record");
    End end{U16(record, kDisk),
            U16(record, kDirectoryDisk),
            U16(record, kEntriesOnDisk),
            U16(record, kEntries),
            U32(record, kDirectorySize),
            U32(record, kDirectoryOffset),
            at,
            false};
    const bool needed = end.entries == kSaturated16 || end.size == kSaturated32 ||
                        end.offset == kSaturated32 || end.disk == kSaturated16;
    constexpr std::size_t kLocatorSize = end64_locator::kFixedSize;
    const bool has_space = at >= kLocatorSize + end64_record::kFixedSize;
    const std::string locator = has_space ? read(at - kLocatorSize, kLocatorSize) : "";
    end.zip64 = has_space && U32(locator, 0) == kLocatorSignature;
    Demand(end.zip64 == needed, "Zip64 end record present or not");
    if (end.zip64) {
        ReadEnd64(read, locator, end);
    }
    return end;
}

// A position in a spanned archive that moves forwards.
class Cursor {
  public:
    explicit Cursor(const std::vector<std::string>& disks) : disks_(disks) {}

    std::size_t disk = 0;
    std::size_t offset = 0;

    // An undivided record, here or at the start of the next disk.
    std::string Record(std::size_t fixed, std::uint32_t signature,
                       std::size_t (*length)(const std::string&)) {
        StepOver();
        const std::string& on = disks_.at(disk);
        Demand(on.size() - offset >= fixed, "record cut off");
        Demand(U32(on, offset) == signature, "signature");
        const std::size_t size = length(on.substr(offset, fixed));
        Demand(on.size() - offset >= size, "record divided");
        offset += size;
        return on.substr(offset - size, size);
    }
    std::string Data(std::uint64_t size) {
        std::string data;
        while (data.size() < size) {
            StepOver();
            const std::string part = disks_.at(disk).substr(offset, size - data.size());
            data += part;
            offset += part.size();
        }
        return data;
    }
    bool AtEnd() const { return disk + 1 == disks_.size() && offset == disks_[disk].size(); }

  private:
    void StepOver() {
        while (offset == disks_.at(disk).size()) {
            Demand(disk + 1 < disks_.size(), "end of the set");
            ++disk;
            offset = 0;
            Demand(!disks_[disk].empty(), "empty disk");
        }
    }

    const std::vector<std::string>& disks_;
};

std::size_t LocalLength(const std::string& r) {
    return local_header::kFixedSize + U16(r, local_header::kNameLength) +
           U16(r, local_header::kExtraLength);
}
std::size_t CentralLength(const std::string& r) {
    return central_record::kFixedSize + U16(r, central_record::kNameLength) +
           U16(r, central_record::kExtraLength) + U16(r, central_record::kCommentLength);
}

void CheckDescriptor(Cursor& cursor, const ReadEntry& entry) {
    using namespace descriptor;
    const bool wide = entry.local_fields.count(kZip64Field) > 0;
    const std::size_t bytes = wide ? 8 : 4;
    const auto length = wide ? [](const std::string&) { return kFixedSize64; }
                             : [](const std::string&) { return kFixedSize; };
    const std::string record = cursor.Record(kFixedSize, kDescriptorSignature, length);
    Demand(U32(record, kCrc) == entry.crc &&
               Number(record, kPackedSize, bytes) == entry.packed_size &&
               Number(record, kPackedSize + bytes, bytes) == entry.size,
           "descriptor of " + entry.name);
}

void ReadFile(Cursor& cursor, ReadEntry& entry, SetContents& contents) {
    const std::string header =
        cursor.Record(local_header::kFixedSize, kLocalSignature, LocalLength);
    const std::size_t start_disk = cursor.disk;
    Demand(entry.disk == cursor.disk && entry.offset == cursor.offset - header.size(),
           "location of " + entry.name);
    CheckLocal(header, entry);
    CheckData(entry, cursor.Data(entry.packed_size));
    contents.crossing += cursor.disk != start_disk ? 1 : 0;
    if ((entry.flags & flag::kDescriptor) != 0) {
        CheckDescriptor(cursor, entry);
        ++contents.descriptors;
    }
    contents.files[entry.name] = entry.content;
    contents.names.push_back(entry.name);
    contents.disks[entry.name] = {static_cast<int>(start_disk), static_cast<int>(cursor.disk)};
}

}  // namespace

std::string InflateAfter(const std::string& history, const std::string& packed) {
    z_stream stream{};
    Demand(inflateInit2(&stream, -15) == Z_OK, "no memory");
    const auto* const known = reinterpret_cast<const Bytef*>(history.data());
    Demand(inflateSetDictionary(&stream, known, static_cast<uInt>(history.size())) == Z_OK,
           "history");
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    std::string out;
    int result = Z_OK;
    while (result == Z_OK) {
        char block[65536];
        stream.next_out = reinterpret_cast<Bytef*>(block);
        stream.avail_out = sizeof(block);
        result = inflate(&stream, Z_NO_FLUSH);
        out.append(block, sizeof(block) - stream.avail_out);
    }
    const bool all_used = stream.avail_in == 0;
    inflateEnd(&stream);
    Demand(result == Z_STREAM_END && all_used, "deflate stream");
    return out;
}

ReadResult ReadArchive(const ReadBytes& read, std::uint64_t size, bool contents) {
    const End end = ReadEnd(read, size);
    Demand(end.disk == 0 && end.directory_disk == 0 && end.entries_here == end.entries, "disks");
    Demand(end.offset + end.size == end.records_at, "location of the directory");
    ReadResult result;
    result.zip64 = end.zip64;
    result.directory_offset = end.offset;
    std::string directory = read(end.offset, static_cast<std::size_t>(end.size));
    std::size_t at = 0;
    std::uint64_t next_offset = 0;
    for (std::uint64_t i = 0; i < end.entries; ++i) {
        ReadEntry entry;
        Demand(directory.size() - at >= central_record::kFixedSize, "directory cut off");
        const std::size_t length = CentralLength(directory.substr(at, central_record::kFixedSize));
        Demand(ReadCentral(directory.substr(at, length), entry) == length, "central record");
        at += length;
        Demand(entry.disk == 0 && entry.offset == next_offset, "gap before " + entry.name);
        const std::size_t header = LocalLength(read(entry.offset, local_header::kFixedSize));
        CheckLocal(read(entry.offset, header), entry);
        const std::uint64_t data = entry.offset + header;
        next_offset = data + entry.packed_size;
        if (contents) {
            CheckData(entry, read(data, static_cast<std::size_t>(entry.packed_size)));
        }
        result.entries.push_back(std::move(entry));
    }
    Demand(at == directory.size(), "directory size");
    Demand(next_offset == end.offset, "gap before the directory");
    return result;
}

SetContents ReadSet(const std::vector<std::string>& disks) {
    Demand(disks.size() > 1, "one disk only");
    const std::string& last = disks.back();
    const End end =
        ReadEnd([&](std::uint64_t offset, std::size_t count) { return last.substr(offset, count); },
                last.size());
    Demand(end.disk == disks.size() - 1, "number of the last disk");
    SetContents contents;
    contents.zip64 = end.zip64;
    contents.directory_disk = static_cast<std::uint32_t>(end.directory_disk);
    Cursor directory(disks);
    directory.disk = end.directory_disk;
    directory.offset = end.offset;
    Cursor data(disks);
    Demand(U32(data.Data(kSignatureSize), 0) == kSpannedMarker, "marker");
    std::uint64_t here = 0;
    std::uint64_t bytes = 0;
    for (std::uint64_t i = 0; i < end.entries; ++i) {
        const std::string record =
            directory.Record(central_record::kFixedSize, kCentralSignature, CentralLength);
        Demand(i > 0 || (directory.disk == end.directory_disk &&
                         directory.offset == end.offset + record.size()),
               "start of the directory");
        here += directory.disk == end.disk ? 1 : 0;
        bytes += record.size();
        ReadEntry entry;
        ReadCentral(record, entry);
        ReadFile(data, entry, contents);
    }
    Demand(here == end.entries_here, "entries on the last disk");
    Demand(bytes == end.size, "size of the directory");
    const bool at_directory = data.disk == end.directory_disk && data.offset == end.offset;
    Demand(at_directory || (data.offset == disks[data.disk].size() &&
                            end.directory_disk == data.disk + 1 && end.offset == 0),
           "gap before the directory");
    directory.Data(last.size() - end.records_at);
    Demand(directory.AtEnd(), "bytes behind the end");
    return contents;
}

ReadResult ReadArchive(const std::string& bytes) {
    return ReadArchive(
        [&](std::uint64_t offset, std::size_t count) { return bytes.substr(offset, count); },
        bytes.size());
}

const ReadEntry& ReadResult::At(const std::string& name) const {
    for (const ReadEntry& entry : entries) {
        if (entry.name == name) {
            return entry;
        }
    }
    throw std::runtime_error("no entry " + name);
}

std::vector<std::string> ReadResult::Names() const {
    std::vector<std::string> names;
    for (const ReadEntry& entry : entries) {
        names.push_back(entry.name);
    }
    return names;
}

}  // namespace vantrel::test
