#include "zip/records/entry_list.h"

#include <string_view>
#include <utility>

#include "zip/base/bytes.h"

namespace vantrel::zip {

namespace {

// What an entry's bytes hold besides its numbers.
constexpr std::uint64_t kIsFolder = 1;
constexpr std::uint64_t kIsLink = 2;
constexpr std::uint64_t kHasRawName = 4;
constexpr std::uint64_t kHasDataAt = 16;
constexpr std::uint64_t kHasAllTimes = 8;  // not only that of the last change

// Seven bits a byte, the lowest first; the top bit marks that more follow (LEB128).
void PutVariable(std::string& out, std::uint64_t number) {
    while (number >= 0x80) {
        out += static_cast<char>(number | 0x80);
        number >>= 7;
    }
    out += static_cast<char>(number);
}

std::uint64_t TakeVariable(std::string_view& bytes) {
    std::uint64_t number = 0;
    for (int shift = 0;; shift += 7) {
        const auto byte = static_cast<unsigned char>(bytes.front());
        bytes.remove_prefix(1);
        number |= std::uint64_t{byte & 0x7Fu} << shift;
        if (byte < 0x80) {
            return number;
        }
    }
}

template <typename Number>
Number TakeNumber(std::string_view& bytes) {
    const auto number = GetNumber<Number>(bytes, 0);
    bytes.remove_prefix(sizeof number);
    return number;
}

std::string_view TakeText(std::string_view& bytes) {
    const auto length = static_cast<std::size_t>(TakeVariable(bytes));
    const std::string_view text = bytes.substr(0, length);
    bytes.remove_prefix(length);
    return text;
}

void PutText(std::string& out, std::string_view text) {
    PutVariable(out, text.size());
    out += text;
}

// A time as its distance from the time of the last change, which is mostly small. Distances of
// either sign become positive: 0, -1, 1, -2 ... are 0, 1, 2, 3 ...
std::uint64_t Distance(platform::Ticks time, platform::Ticks modified) {
    const std::uint64_t apart = time - modified;
    return (apart << 1) ^ (apart >> 63 != 0 ? ~std::uint64_t{0} : 0);
}
platform::Ticks AtDistance(std::uint64_t distance, platform::Ticks modified) {
    return modified + ((distance >> 1) ^ ((distance & 1) != 0 ? ~std::uint64_t{0} : 0));
}

std::size_t FolderLength(std::string_view name) { return name.find_last_of("/\\") + 1; }

}  // namespace

void EntryList::Append(const StoredEntry& entry) {
    if (count_ % kBlockEntries == 0) {
        if (!blocks_.empty()) {
            blocks_.back().bytes.shrink_to_fit();
        }
        blocks_.emplace_back().starts.reserve(kBlockEntries);
    }
    Block& block = blocks_.back();
    block.starts.push_back(static_cast<std::uint32_t>(block.bytes.size()));
    std::string& out = block.bytes;
    PutVariable(out, entry.offset);
    PutVariable(out, entry.packed_size);
    PutVariable(out, entry.data_at != 0 ? 0 : local_header::kFixedSize + entry.RawName().size());
    const bool has_all_times = (entry.times.accessed | entry.times.created) != 0;
    PutVariable(out, (entry.is_folder ? kIsFolder : 0) | (entry.is_link ? kIsLink : 0) |
                         (entry.raw_name.empty() ? 0 : kHasRawName) |
                         (has_all_times ? kHasAllTimes : 0) |
                         (entry.data_at != 0 ? kHasDataAt : 0));
    if (entry.data_at != 0) {
        PutVariable(out, entry.data_at);
    }
    PutVariable(out, entry.size);
    Put32(out, entry.crc);
    PutVariable(out, static_cast<std::uint64_t>(entry.method));
    PutVariable(out, entry.flags);
    PutVariable(out, entry.attributes);
    Put64(out, entry.times.modified);
    if (has_all_times) {
        PutVariable(out, Distance(entry.times.accessed, entry.times.modified));
        PutVariable(out, Distance(entry.times.created, entry.times.modified));
    }
    const std::size_t folder = FolderLength(entry.name);
    PutVariable(out, FolderOf(entry.name, folder));
    PutText(out, std::string_view(entry.name).substr(folder));
    if (!entry.raw_name.empty()) {
        PutText(out, entry.raw_name);
    }
    ++count_;
}

// The number of the folder that is the first `length` bytes of `name`. Only the last folder is
// looked at: the entries of a folder mostly follow each other, and a table would cost more than
// the folders.
std::uint64_t EntryList::FolderOf(std::string_view name, std::size_t length) {
    if (length == 0) {
        return 0;
    }
    const std::string_view folder = name.substr(0, length);
    if (folders_.empty() || folders_.back() != folder) {
        folders_.emplace_back(folder);
    }
    return folders_.size();
}

std::string_view EntryList::BytesFrom(std::size_t index) const {
    const Block& block = blocks_[index / kBlockEntries];
    return std::string_view(block.bytes).substr(block.starts[index % kBlockEntries]);
}

EntryList::Extent EntryList::ExtentOf(std::size_t index) const {
    std::string_view bytes = BytesFrom(index);
    Extent extent;
    extent.offset = TakeVariable(bytes);
    extent.packed_size = TakeVariable(bytes);
    extent.header_length = static_cast<std::size_t>(TakeVariable(bytes));
    return extent;
}

StoredEntry EntryList::operator[](std::size_t index) const {
    std::string_view bytes = BytesFrom(index);
    StoredEntry entry;
    entry.offset = TakeVariable(bytes);
    entry.packed_size = TakeVariable(bytes);
    TakeVariable(bytes);  // length of the header
    const std::uint64_t bits = TakeVariable(bytes);
    entry.is_folder = (bits & kIsFolder) != 0;
    entry.is_link = (bits & kIsLink) != 0;
    entry.data_at = (bits & kHasDataAt) != 0 ? TakeVariable(bytes) : 0;
    entry.size = TakeVariable(bytes);
    entry.crc = TakeNumber<std::uint32_t>(bytes);
    entry.method = static_cast<Method>(TakeVariable(bytes));
    entry.flags = static_cast<std::uint16_t>(TakeVariable(bytes));
    entry.attributes = static_cast<std::uint32_t>(TakeVariable(bytes));
    entry.times.modified = TakeNumber<platform::Ticks>(bytes);
    if ((bits & kHasAllTimes) != 0) {
        entry.times.accessed = AtDistance(TakeVariable(bytes), entry.times.modified);
        entry.times.created = AtDistance(TakeVariable(bytes), entry.times.modified);
    }
    const auto folder = static_cast<std::size_t>(TakeVariable(bytes));
    const std::string_view name = TakeText(bytes);
    if (folder > 0) {
        entry.name.reserve(folders_[folder - 1].size() + name.size());
        entry.name = folders_[folder - 1];
    }
    entry.name += name;
    if ((bits & kHasRawName) != 0) {
        entry.raw_name = TakeText(bytes);
    }
    return entry;
}

}  // namespace vantrel::zip
