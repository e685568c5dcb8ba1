#include "tests/zip/archive_reader.h"

#include <zlib.h>

#include <stdexcept>

namespace vantrel::test {

namespace {

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
    const auto field = entry.central_fields.find(1);
    std::size_t at = 0;
    for (std::uint64_t* value : {&entry.size, &entry.packed_size, &entry.offset}) {
        if (*value == 0xFFFFFFFF) {
            Demand(field != entry.central_fields.end(), "no Zip64 field");
            *value = Number(field->second, at, 8);
            at += 8;
        }
    }
    Demand(field == entry.central_fields.end() || (at > 0 && at == field->second.size()),
           "Zip64 field not needed");
}

void CheckLocal(const ReadBytes& read, ReadEntry& entry, bool contents,
                std::uint64_t& next_offset) {
    Demand(entry.offset == next_offset, "gap before " + entry.name);
    const std::string header = read(entry.offset, 30);
    Demand(U32(header, 0) == 0x04034b50, "local signature of " + entry.name);
    const std::uint16_t name_size = U16(header, 26);
    const std::uint16_t extra_size = U16(header, 28);
    Demand(read(entry.offset + 30, name_size) == entry.name, "local name of " + entry.name);
    entry.local_fields = Fields(read(entry.offset + 30 + name_size, extra_size));
    // An offset that needs Zip64 raises the version in the directory only.
    const std::uint16_t needed = U16(header, 4);
    Demand(needed == entry.needed || (entry.needed == 45 && entry.offset >= 0xFFFFFFFF),
           "version needed of " + entry.name);
    Demand(U16(header, 6) == entry.flags && U16(header, 8) == entry.method &&
               U32(header, 10) == entry.dos_time && U32(header, 14) == entry.crc,
           "local header of " + entry.name);
    const auto wide = entry.local_fields.find(1);
    if (wide == entry.local_fields.end()) {
        Demand(U32(header, 18) == entry.packed_size && U32(header, 22) == entry.size,
               "local sizes of " + entry.name);
    } else {
        Demand(U32(header, 18) == 0xFFFFFFFF && U32(header, 22) == 0xFFFFFFFF &&
                   wide->second.size() == 16 && Number(wide->second, 0, 8) == entry.size &&
                   Number(wide->second, 8, 8) == entry.packed_size,
               "wide local sizes of " + entry.name);
    }
    const std::uint64_t data = entry.offset + 30u + name_size + extra_size;
    next_offset = data + entry.packed_size;
    if (!contents) {
        return;
    }
    entry.content = read(data, static_cast<std::size_t>(entry.packed_size));
    if (entry.method == 8) {
        entry.content = InflateAll(entry.content);
    }
    const auto crc = crc32(0, reinterpret_cast<const Bytef*>(entry.content.data()),
                           static_cast<uInt>(entry.content.size()));
    Demand(entry.content.size() == entry.size && crc == entry.crc, "data of " + entry.name);
}

std::size_t ReadCentral(const std::string& directory, std::size_t at, ReadEntry& entry) {
    Demand(U32(directory, at) == 0x02014b50, "central signature");
    entry.made_by = U16(directory, at + 4);
    entry.needed = U16(directory, at + 6);
    entry.flags = U16(directory, at + 8);
    entry.method = U16(directory, at + 10);
    entry.dos_time = U32(directory, at + 12);
    entry.crc = U32(directory, at + 16);
    entry.packed_size = U32(directory, at + 20);
    entry.size = U32(directory, at + 24);
    const std::uint16_t name_size = U16(directory, at + 28);
    const std::uint16_t extra_size = U16(directory, at + 30);
    Demand(U16(directory, at + 32) == 0 && U16(directory, at + 34) == 0, "comment or disk");
    entry.attributes = U32(directory, at + 38);
    entry.offset = U32(directory, at + 42);
    entry.name = directory.substr(at + 46, name_size);
    entry.central_fields = Fields(directory.substr(at + 46 + name_size, extra_size));
    Widen(entry);
    return at + 46 + name_size + extra_size;
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
    Demand(size >= 22, "too short");
    const std::string end = read(size - 22, 22);
    Demand(U32(end, 0) == 0x06054b50 && U32(end, 4) == 0 && U16(end, 20) == 0, "end record");
    Demand(U16(end, 8) == U16(end, 10), "entries on this disk");
    std::uint64_t count = U16(end, 10);
    std::uint64_t directory_size = U32(end, 12);
    std::uint64_t directory_offset = U32(end, 16);
    std::uint64_t directory_end = size - 22;
    ReadResult result;
    const bool needed =
        count == 0xFFFF || directory_size == 0xFFFFFFFF || directory_offset == 0xFFFFFFFF;
    const std::string locator = size >= 42 ? read(size - 42, 20) : std::string(20, '\0');
    result.zip64 = U32(locator, 0) == 0x07064b50;
    Demand(result.zip64 == needed, "Zip64 end record present or not");
    if (result.zip64) {
        Demand(U32(locator, 4) == 0 && U32(locator, 16) == 1, "locator");
        directory_end = Number(locator, 8, 8);
        const std::string wide = read(directory_end, 56);
        Demand(U32(wide, 0) == 0x06064b50 && Number(wide, 4, 8) == 44 &&
                   directory_end + 56 == size - 42 && Number(wide, 16, 8) == 0,
               "Zip64 end record");
        count = Number(wide, 32, 8);
        Demand(Number(wide, 24, 8) == count, "Zip64 entries on this disk");
        directory_size = Number(wide, 40, 8);
        directory_offset = Number(wide, 48, 8);
    }
    Demand(directory_offset + directory_size == directory_end, "directory's place");
    result.directory_offset = directory_offset;
    const std::string directory = read(directory_offset, static_cast<std::size_t>(directory_size));
    std::size_t at = 0;
    std::uint64_t next_offset = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        ReadEntry entry;
        at = ReadCentral(directory, at, entry);
        CheckLocal(read, entry, contents, next_offset);
        result.entries.push_back(std::move(entry));
    }
    Demand(at == directory.size(), "directory size");
    Demand(next_offset == directory_offset, "gap before the directory");
    return result;
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
