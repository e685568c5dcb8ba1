// Writes what the fuzzers start from into a folder: one file for each hostile archive, and archives
// with nothing wrong in them, so that all ways of reading are there.
#include <zlib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "platform/host/host_machine.h"
#include "tests/support/test_machine.h"
#include "tests/zip/earlier_samples.h"
#include "tests/zip/hostile_archives.h"
#include "tests/zip/zip_builder.h"

namespace {

using vantrel::test::BuiltArchive;
using vantrel::test::BuiltEntry;
using vantrel::test::HostileArchive;

// Without matches of the length that the two formats write differently, a Deflate stream is a
// Deflate64 stream.
BuiltEntry Deflate64(const std::string& content) {
    return {
        .name = "old.txt",
        .content = vantrel::test::RawDeflate(content),
        .method = 9,
        .size = static_cast<std::int64_t>(content.size()),
        .crc = static_cast<std::int64_t>(crc32(0, reinterpret_cast<const Bytef*>(content.data()),
                                               static_cast<uInt>(content.size())))};
}

std::vector<HostileArchive> Harmless() {
    BuiltArchive plain;
    plain.entries = {{.name = "folder/", .external = 0x10},
                     {.name = "folder/stored.txt", .content = "stored"},
                     {.name = "deflated.txt", .content = "deflated, deflated", .method = 8},
                     {.name = "\xC3\xBC.txt", .content = "umlaut", .flags = 0x800},
                     {.name = "streamed.txt", .content = "streamed", .method = 8, .flags = 8},
                     Deflate64("deflated, deflated for sixty-four")};
    BuiltArchive wide = plain;
    wide.zip64 = true;
    wide.comment = "comment";
    vantrel::test::MemoryFileSystem files;
    vantrel::test::PutEarlierSamples(files);
    vantrel::platform::HostMachine host;
    const auto ours =
        vantrel::test::BackUpSamples(files, vantrel::test::WithFiles(host.machine(), files), "");
    BuiltArchive prefixed = plain;
    prefixed.prefix = "MZ, and what is a program otherwise";
    prefixed.junk = "junk";
    return {{"Plain", plain.Bytes()},
            {"Wide", wide.Bytes()},
            {"Prefixed", prefixed.Bytes()},
            {"Ours", ours.archive}};
}

}  // namespace

int main(int count, char** words) {
    if (count != 2) {
        std::fputs("usage: make_seeds FOLDER\n", stderr);
        return 2;
    }
    const std::filesystem::path folder = words[1];
    std::filesystem::create_directories(folder);
    auto archives = vantrel::test::HostileArchives();
    for (auto& archive : Harmless()) {
        archives.push_back(std::move(archive));
    }
    for (const auto& archive : archives) {
        std::ofstream file(folder / archive.trick, std::ios::binary);
        file << archive.bytes;
        if (!file.flush()) {
            std::fprintf(stderr, "make_seeds: cannot write %s\n", archive.trick.c_str());
            return 1;
        }
    }
    return 0;
}
