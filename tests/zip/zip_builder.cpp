#include "tests/zip/zip_builder.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>

#include "zip/base/bytes.h"
#include "zip/records/format.h"

namespace vantrel::test {

namespace {

using zip::Put16;
using zip::Put32;
using zip::Put64;

std::uint64_t Or(std::int64_t lie, std::uint64_t truth) {
    return lie < 0 ? truth : static_cast<std::uint64_t>(lie);
}

template <typename Value>
std::string Number(Value value) {
    std::string bytes;
    zip::PutNumber(bytes, value);
    return bytes;
}

struct Numbers {
    std::uint32_t crc;
    std::uint32_t packed_size;
    std::uint32_t size;
};

void PutCommon(std::string& out, const BuiltEntry& entry, const Numbers& numbers,
               const std::string& name, const std::string& extra) {
    Put16(out, zip::kVersionDeflated);
    Put16(out, entry.flags);
    Put16(out, entry.method);
    Put32(out, entry.dos_time);
    Put32(out, numbers.crc);
    Put32(out, numbers.packed_size);
    Put32(out, numbers.size);
    Put16(out, static_cast<std::uint16_t>(name.size()));
    Put16(out, static_cast<std::uint16_t>(extra.size()));
}

void PutEnd64(std::string& out, std::uint64_t count, std::uint64_t size, std::uint64_t offset) {
    const std::uint64_t at = offset + size;
    Put32(out, zip::kEnd64Signature);
    Put64(out, zip::end64_record::kStatedSize);
    Put16(out, zip::kVersionZip64);
    Put16(out, zip::kVersionZip64);
    Put32(out, 0);
    Put32(out, 0);
    Put64(out, count);
    Put64(out, count);
    Put64(out, size);
    Put64(out, offset);
    Put32(out, zip::kLocatorSignature);
    Put32(out, 0);
    Put64(out, at);
    Put32(out, 1);
}

}  // namespace

std::string RawDeflate(const std::string& content) {
    z_stream stream{};
    deflateInit2(&stream, 6, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    std::string out(deflateBound(&stream, static_cast<uLong>(content.size())) + 16, '\0');
    std::string in = content;
    stream.next_in = reinterpret_cast<Bytef*>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

std::string Number16(std::uint16_t value) { return Number(value); }
std::string Number32(std::uint32_t value) { return Number(value); }
std::string Number64(std::uint64_t value) { return Number(value); }

std::string Over(std::string bytes, std::size_t at, const std::string& value) {
    return bytes.replace(at, value.size(), value);
}

std::string ExtraField(std::uint16_t id, const std::string& body) {
    std::string field;
    Put16(field, id);
    Put16(field, static_cast<std::uint16_t>(body.size()));
    return field + body;
}

std::vector<BuiltEntry> EntriesNamed(const std::vector<std::string>& names) {
    std::vector<BuiltEntry> entries;
    for (const std::string& name : names) {
        entries.push_back({.name = name, .content = "x"});
    }
    return entries;
}

std::string BuiltArchive::Bytes() const {
    std::string out;
    std::string directory;
    for (const BuiltEntry& entry : entries) {
        const std::uint64_t offset = out.size();
        const std::string data = entry.method == 8 ? RawDeflate(entry.content) : entry.content;
        const auto crc = static_cast<std::uint32_t>(
            crc32(0, reinterpret_cast<const Bytef*>(entry.content.data()),
                  static_cast<uInt>(entry.content.size())));
        const Numbers truth{crc, static_cast<std::uint32_t>(data.size()),
                            static_cast<std::uint32_t>(entry.content.size())};
        const std::string& local_name = entry.local_name.empty() ? entry.name : entry.local_name;
        Put32(out, zip::kLocalSignature);
        const bool descriptor = (entry.flags & zip::flag::kDescriptor) != 0;
        PutCommon(out, entry, descriptor ? Numbers{0, 0, 0} : truth, local_name, entry.local_extra);
        out += local_name + entry.local_extra + data;
        if (descriptor) {  // without the signature that it may have
            Put32(out, truth.crc);
            Put32(out, truth.packed_size);
            Put32(out, truth.size);
        }
        const Numbers stated{static_cast<std::uint32_t>(Or(entry.crc, truth.crc)),
                             static_cast<std::uint32_t>(Or(entry.packed_size, truth.packed_size)),
                             static_cast<std::uint32_t>(Or(entry.size, truth.size))};
        Put32(directory, zip::kCentralSignature);
        Put16(directory, static_cast<std::uint16_t>(zip::kVersionDeflated | (entry.host << 8)));
        PutCommon(directory, entry, stated, entry.name, entry.central_extra);
        Put16(directory, 0);
        Put16(directory, 0);
        Put16(directory, 0);
        Put32(directory, entry.external);
        Put32(directory, static_cast<std::uint32_t>(Or(entry.offset, offset)));
        directory += entry.name + entry.central_extra;
    }
    const std::uint64_t at = out.size();
    out += directory;
    const std::uint64_t count = Or(entries_stated, entries.size());
    if (zip64) {
        PutEnd64(out, count, directory.size(), at);
    }
    const bool marks = zip64 && zip64_marks;
    Put32(out, zip::kEndSignature);
    Put32(out, 0);
    Put16(out, static_cast<std::uint16_t>(marks ? zip::kSaturated16 : count));
    Put16(out, static_cast<std::uint16_t>(marks ? zip::kSaturated16 : count));
    Put32(out, static_cast<std::uint32_t>(marks ? zip::kSaturated32 : directory.size()));
    Put32(out, static_cast<std::uint32_t>(marks ? zip::kSaturated32 : at));
    Put16(out, static_cast<std::uint16_t>(Or(comment_length, comment.size())));
    return prefix + out + comment + junk;
}

std::size_t StringSource::ReadAt(std::uint64_t offset, void* out, std::size_t count) {
    const auto at = static_cast<std::size_t>(std::min<std::uint64_t>(offset, bytes_.size()));
    count = std::min(count, bytes_.size() - at);
    std::memcpy(out, bytes_.data() + at, count);
    bytes_read += count;
    return count;
}

}  // namespace vantrel::test
