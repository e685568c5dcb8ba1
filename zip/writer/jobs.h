// What travels through the engine: jobs from the source to the workers, packed jobs from the
// workers to the archive. A job is a batch of small files or one piece of a big one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "zip/base/bytes.h"
#include "zip/base/component_events.h"
#include "zip/base/run_context.h"
#include "zip/records/entry_records.h"
#include "zip/writer/source_scan.h"

namespace vantrel::zip {

// What is said of a file that is left out, and of one that may not be what it was at any moment.
inline ComponentMessage Unreadable(const std::string& path, const Error& error) {
    return Warning(path, Sentence("Skipped a file that cannot be read", path, error),
                   error.number());
}
inline ComponentMessage Changing(const std::string& path) {
    return Warning(path, "Changed while it was read, stored as read: " + path);
}

// A part of a big file. Its pieces follow each other in the order of jobs.
struct Piece {
    bool first = false;
    bool last = false;
    bool abandoned = false;       // the file cannot be read (on): `trouble` says why
    bool again = false;           // was compressed before, did not shrink, and is now stored
    std::uint64_t file_size = 0;  // when it was opened
    Method method = Method::kStored;
    std::optional<ComponentMessage> trouble;
};

struct Job {
    std::uint64_t sequence = 0;     // place in the archive's order, from 0
    std::vector<SourceItem> items;  // of a batch; of a piece, the one file
    std::optional<Piece> piece;
    Buffer data;              // of a piece: what the file has before it, then the piece, as read
    std::size_t history = 0;  // bytes of `data` that stand before the piece, at most kHistory

    const std::uint8_t* PieceData() const { return data.data() + history; }
    std::size_t PieceSize() const { return data.size() - history; }
};

// One file or folder of a batch, packed.
struct PackedItem {
    bool stored = false;  // the batch holds it; its offset counts from the batch's first byte
    bool moved = false;   // handed back, to be stored as a big file later
    Entry entry;
    std::size_t header_size = 0;
    std::uint64_t listed_size = 0;
    std::string path;
    std::optional<ComponentMessage> trouble;
};

struct PackedJob {
    std::vector<PackedItem> items;  // of a batch
    std::optional<Piece> piece;
    SourceItem file;        // of a piece: the file
    std::string path;       // of a piece: where it is read from
    Entry entry;            // of a piece: everything but CRC, sizes and offset
    std::uint32_t crc = 0;  // of a piece
    std::uint64_t raw_size = 0;
    Buffer bytes;  // a batch's headers and data, or a piece's data
};

}  // namespace vantrel::zip
