// Any bytes as an archive that has to be searched: what is found is as its numbers state, and
// neither memory nor reading exceeds its bounds.
#include <cstdint>
#include <string>

#include "platform/host/host_machine.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/zip/zip_builder.h"
#include "zip/reader/archive_search.h"
#include "zip/reader/entry_data.h"

namespace {

using vantrel::test::Demand;
using vantrel::test::StringSource;
using vantrel::zip::StoredEntry;

// Bytes that checks which fail may read, beside eight times the archive.
constexpr std::uint64_t kFailedBytes = std::uint64_t{80} << 20;

void CheckEntry(StringSource& source, const StoredEntry& entry) {
    std::uint32_t crc = 0;
    std::uint64_t size = 0;
    vantrel::zip::HeldMemory memory(1);
    vantrel::zip::EntryData reader(source, memory);
    reader.Read(entry, [&](const std::uint8_t* data, std::size_t count) {
        crc = vantrel::zip::CombineCrc32(crc, vantrel::zip::Crc32(data, count), count);
        size += count;
    });
    Demand(size == entry.size && crc == entry.crc);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static vantrel::platform::HostMachine machine;
    StringSource source(std::string(reinterpret_cast<const char*>(data), size));
    vantrel::zip::Directory directory;
    vantrel::zip::SearchArchive(
        source, machine.machine().code_page, machine.machine().clock, [](std::uint64_t) {},
        directory);
    Demand(source.bytes_read <= 64 * std::uint64_t{size} + kFailedBytes);
    Demand(directory.entries.size() + directory.lost.size() <= size / 4);
    for (const StoredEntry& entry : directory.entries) {
        CheckEntry(source, entry);
    }
    return 0;
}
