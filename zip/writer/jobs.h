// The units of work of a backup run (see archive_writer.h): a Job goes from the JobProducer to a
// worker thread, which turns it into a PackedJob for the ArchiveSink. A job is either a batch of
// small files and empty folders, or one chunk of a big file. Each object belongs to one thread at a
// time.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "zip/base/bytes.h"
#include "zip/base/component_events.h"
#include "zip/base/run_context.h"
#include "zip/records/entry_records.h"
#include "zip/writer/source_scan.h"

namespace vantrel::zip {

class EarlierChunks;

// Warnings for a skipped file and for a file that changed while it was read.
inline ComponentMessage SkippedFileWarning(const std::string& path, const Error& error) {
    return LeftOutWarning(path, FailureText("Skipped a file that cannot be read", path, error),
                          error.number());
}
inline ComponentMessage ChangedFileWarning(const std::string& path) {
    return Warning(path, "Changed while it was read, stored as read: " + path);
}

// A file that is stored after all others, as a big file, because it has grown above kChunkSize
// since the scan, or (`store_only`) because its compressed data was not smaller and was removed
// from the archive again.
struct DeferredFile {
    SourceItem item;
    bool store_only = false;
};

// Up to kChunkSize bytes of a big file. The chunks of a file are jobs in direct succession.
struct Chunk {
    bool first = false;
    bool last = false;
    bool unreadable = false;      // the file cannot be read (any further); implies `last`
    bool store_only = false;      // of a DeferredFile
    std::uint64_t number = 0;     // in its file, from 0
    std::uint64_t file_size = 0;  // when the file was opened
    Method method = Method::kStored;
    std::optional<ComponentMessage> warning;
    // Of the file in the earlier archive; null when it is not there. Shared, because the chunks of
    // one file are packed by several threads, and any of them may be the last to use it.
    std::shared_ptr<EarlierChunks> earlier;
};

struct Job {
    std::uint64_t sequence = 0;     // position in the archive's order, from 0
    std::vector<SourceItem> items;  // of a batch; for a chunk the one file
    std::optional<Chunk> chunk;     // nothing for a batch
    Buffer data;                    // for a chunk: history, then the chunk's bytes, as read
    std::size_t history = 0;        // bytes of `data` before the chunk, at most kHistory

    const std::uint8_t* ChunkData() const { return data.data() + history; }
    std::size_t ChunkSize() const { return data.size() - history; }
};

// One file or folder of a batch. Neither stored nor deferred: the file was skipped.
struct PackedEntry {
    bool stored = false;                 // header and data are in the batch's bytes
    std::optional<SourceItem> deferred;  // becomes a DeferredFile
    Entry entry;                         // its location counts from the batch's first byte
    std::size_t header_size = 0;
    std::uint64_t listed_size = 0;
    bool reused = false;  // the data is a copy of the earlier archive's
    std::string path;
    std::optional<ComponentMessage> warning;
};

struct PackedJob {
    std::vector<PackedEntry> entries;  // of a batch
    Buffer bytes;                      // a batch's local headers and data, or a chunk's data

    // Of a chunk.
    std::optional<Chunk> chunk;
    SourceItem file;
    std::string path;  // full path of the file
    Entry entry;       // of the first chunk: all but CRC, sizes and offset
    std::uint32_t crc = 0;
    std::uint32_t check = 0;     // as in ChunkIndexItem
    std::uint64_t raw_size = 0;  // uncompressed bytes
    bool reused = false;
};

}  // namespace vantrel::zip
