// Any bytes as the earlier archive of a backup: all data that is taken from it decompresses to the
// files' own, alone and joined with chunks that are compressed again.
#include <algorithm>
#include <cstdint>
#include <stop_token>
#include <string>

#include "tests/fuzz/fuzz_input.h"
#include "tests/zip/archive_reader.h"
#include "tests/zip/earlier_samples.h"
#include "zip/writer/earlier_data.h"

namespace {

using namespace vantrel;
using test::Demand;

constexpr const char* kEarlier = "C:\\Earlier.zip";

void CheckSmallFile(zip::EarlierData& data, const std::string& content) {
    zip::Buffer in;
    in.Append(content);
    const auto equal = data.FindEqual(in, zip::Crc32(content));
    if (equal) {
        const std::string packed(equal->bytes);
        Demand((equal->method == zip::Method::kStored ? packed : test::InflateAll(packed)) ==
               content);
    }
}

void CheckLargeFile(zip::EarlierArchive& archive, zip::EarlierData& data,
                    const std::string& content) {
    const std::shared_ptr<zip::EarlierChunks> chunks = archive.FindChunks("big");
    if (!chunks) {
        return;
    }
    zip::Buffer packed;
    for (std::size_t at = 0; at < content.size(); at += zip::kChunkSize) {
        zip::Job job;
        job.history = std::min(at, zip::kHistory);
        const std::string bytes = content.substr(at - job.history, job.history + zip::kChunkSize);
        job.data.Append(bytes);
        job.chunk.emplace();
        job.chunk->number = at / zip::kChunkSize;
        job.chunk->last = at + zip::kChunkSize >= content.size();
        job.chunk->earlier = chunks;
        if (!data.AppendEqualChunk(job, zip::Crc32(bytes), std::stop_token(), packed)) {
            zip::StoreChunk(job.ChunkData(), job.ChunkSize(), job.chunk->last, packed);
        }
    }
    Demand(test::InflateAll(std::string(packed.View())) == content);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static zip::Deflater deflater(zip::MakeCompressor(1));
    test::MemoryFileSystem files;
    files.Put(kEarlier, std::string(reinterpret_cast<const char*>(data), size));
    zip::RunContext context;
    zip::EarlierArchive archive(context);
    archive.Open(files, kEarlier, test::SampleMark());
    if (archive.IsUsable()) {
        zip::EarlierData earlier(archive, deflater);
        for (const auto& [name, content] : test::EarlierSamples()) {
            if (name == "big") {
                CheckLargeFile(archive, earlier, content);
            } else {
                CheckSmallFile(earlier, content);
            }
        }
    }
    return 0;
}
