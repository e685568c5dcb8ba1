#include "tests/zip/set_reader.h"

#include <zlib.h>

#include <stdexcept>

#include "tests/zip/archive_reader.h"

namespace vantrel::test {

namespace {

constexpr std::uint32_t kLocal = 0x04034b50;
constexpr std::uint32_t kCentral = 0x02014b50;
constexpr std::uint32_t kEnd = 0x06054b50;
constexpr std::uint32_t kEnd64 = 0x06064b50;
constexpr std::uint32_t kLocator = 0x07064b50;
constexpr std::uint32_t kSpanned = 0x08074b50;  // also the signature of a descriptor

std::uint64_t Number(const std::string& bytes, std::size_t offset, std::size_t size) {
    std::uint64_t value = 0;
    for (std::size_t i = size; i-- > 0;) {
        value = value << 8 | static_cast<unsigned char>(bytes.at(offset + i));
    }
    return value;
}

void Demand(bool right, const std::string& what) {
    if (!right) {
        throw std::runtime_error("bad set: " + what);
    }
}

// A place in the set, moving forwards.
class Cursor {
  public:
    explicit Cursor(const std::vector<std::string>& disks) : disks_(disks) {}

    std::size_t disk = 0;
    std::size_t offset = 0;

    // A record that stands whole, here or at the start of the next disk.
    std::string Record(std::size_t fixed, std::uint32_t signature,
                       std::size_t (*length)(const std::string&)) {
        StepOver();
        const std::string& on = disks_.at(disk);
        Demand(on.size() - offset >= fixed, "record cut off");
        Demand(Number(on, offset, 4) == signature, "signature");
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

struct Central {
    std::string name;
    std::uint64_t flags, method, crc, packed, size, disk, offset;
};

Central Parse(const std::string& r) {
    Central c{r.substr(46, Number(r, 28, 2)),
              Number(r, 8, 2),
              Number(r, 10, 2),
              Number(r, 16, 4),
              Number(r, 20, 4),
              Number(r, 24, 4),
              Number(r, 34, 2),
              Number(r, 42, 4)};
    std::size_t at = 46 + c.name.size();
    if (r.size() > at + 4 && Number(r, at, 2) == 1) {
        at += 4;
        for (std::uint64_t* value : {&c.size, &c.packed, &c.offset}) {
            if (*value == 0xFFFFFFFF) {
                *value = Number(r, at, 8);
                at += 8;
            }
        }
    }
    return c;
}

std::size_t LocalLength(const std::string& r) { return 30 + Number(r, 26, 2) + Number(r, 28, 2); }
std::size_t CentralLength(const std::string& r) {
    return 46 + Number(r, 28, 2) + Number(r, 30, 2) + Number(r, 32, 2);
}
std::size_t Sixteen(const std::string&) { return 16; }
std::size_t TwentyFour(const std::string&) { return 24; }

void ReadFile(Cursor& cursor, const Central& entry, SetContents& contents) {
    const std::string header = cursor.Record(30, kLocal, LocalLength);
    const std::size_t start_disk = cursor.disk;
    Demand(entry.disk == cursor.disk && entry.offset == cursor.offset - header.size(),
           "place of " + entry.name);
    Demand(header.substr(30, entry.name.size()) == entry.name, "local name");
    Demand(Number(header, 6, 2) == entry.flags && Number(header, 8, 2) == entry.method, "flags");
    const bool described = (entry.flags & 8) != 0;
    const bool wide = Number(header, 4, 2) == 45;
    if (!wide) {
        Demand(Number(header, 14, 4) == (described ? 0 : entry.crc) &&
                   Number(header, 18, 4) == (described ? 0 : entry.packed) &&
                   Number(header, 22, 4) == (described ? 0 : entry.size),
               "local sizes of " + entry.name);
    }
    std::string data = cursor.Data(entry.packed);
    contents.crossing += cursor.disk != start_disk ? 1 : 0;
    if (entry.method == 8) {
        data = InflateAll(data);
    }
    const auto crc =
        crc32(0, reinterpret_cast<const Bytef*>(data.data()), static_cast<uInt>(data.size()));
    Demand(data.size() == entry.size && crc == entry.crc, "data of " + entry.name);
    if (described) {
        const std::size_t bytes = wide ? 8 : 4;
        const std::string record = cursor.Record(16, kSpanned, wide ? TwentyFour : Sixteen);
        Demand(Number(record, 4, 4) == entry.crc && Number(record, 8, bytes) == entry.packed &&
                   Number(record, 8 + bytes, bytes) == entry.size,
               "descriptor of " + entry.name);
        ++contents.descriptors;
    }
    contents.files[entry.name] = data;
    contents.names.push_back(entry.name);
}

}  // namespace

SetContents ReadSet(const std::vector<std::string>& disks) {
    Demand(disks.size() > 1, "one disk only");
    SetContents contents;
    const std::string& last = disks.back();
    const std::uint64_t last_number = disks.size() - 1;
    Demand(last.size() >= 22, "last disk too short");
    const std::string end = last.substr(last.size() - 22);
    Demand(Number(end, 0, 4) == kEnd && Number(end, 4, 2) == last_number, "end record");
    std::uint64_t entries_here = Number(end, 8, 2);
    std::uint64_t entries = Number(end, 10, 2);
    std::uint64_t size = Number(end, 12, 4);
    contents.directory_disk = static_cast<std::uint32_t>(Number(end, 6, 2));
    std::uint64_t offset = Number(end, 16, 4);
    std::size_t end_size = 22;
    if (last.size() >= 98 && Number(last, last.size() - 42, 4) == kLocator) {
        contents.zip64 = true;
        end_size = 98;
        const std::string wide = last.substr(last.size() - 98, 56);
        Demand(Number(wide, 0, 4) == kEnd64 && Number(wide, 16, 4) == last_number, "Zip64 end");
        Demand(Number(last, last.size() - 42 + 4, 4) == last_number &&
                   Number(last, last.size() - 42 + 8, 8) == last.size() - 98 &&
                   Number(last, last.size() - 42 + 16, 4) == disks.size(),
               "locator");
        contents.directory_disk = static_cast<std::uint32_t>(Number(wide, 20, 4));
        entries_here = Number(wide, 24, 8);
        entries = Number(wide, 32, 8);
        size = Number(wide, 40, 8);
        offset = Number(wide, 48, 8);
    }
    Cursor directory(disks);
    directory.disk = contents.directory_disk;
    directory.offset = offset;
    Cursor data(disks);
    Demand(Number(data.Data(4), 0, 4) == kSpanned, "marker");
    std::uint64_t here = 0;
    std::uint64_t bytes = 0;
    for (std::uint64_t i = 0; i < entries; ++i) {
        const std::string record = directory.Record(46, kCentral, CentralLength);
        Demand(i > 0 || (directory.disk == contents.directory_disk &&
                         directory.offset == offset + record.size()),
               "start of the directory");
        here += directory.disk == last_number ? 1 : 0;
        bytes += record.size();
        ReadFile(data, Parse(record), contents);
    }
    Demand(here == entries_here, "entries on the last disk");
    Demand(bytes == size, "size of the directory");
    const bool at_directory = data.disk == contents.directory_disk && data.offset == offset;
    Demand(at_directory || (data.offset == disks[data.disk].size() &&
                            contents.directory_disk == data.disk + 1 && offset == 0),
           "gap before the directory");
    directory.Data(end_size);
    Demand(directory.AtEnd(), "bytes behind the end");
    return contents;
}

}  // namespace vantrel::test
