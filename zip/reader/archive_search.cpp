#include "zip/reader/archive_search.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "zip/reader/entry_probe.h"
#include "zip/reader/extraction_plan.h"
#include "zip/reader/found_entries.h"
#include "zip/reader/record_scanner.h"

namespace vantrel::zip {

namespace {

// No deflate stream becomes larger by more: 258 bytes take 2 bits at least (RFC 1951, 3.2.5).
constexpr std::uint64_t kMaxDeflateRatio = 1032;

class Search {
  public:
    Search(ByteSource& source, platform::CodePage& code_page, platform::Clock& clock,
           const SearchProgress& progress, const SearchLimits& limits)
        : source_(source),
          code_page_(code_page),
          clock_(clock),
          progress_(progress),
          max_headers_(limits.headers),
          scanner_(source, [this] { progress_(done_); }),
          probe_(source, memory_, [this] { progress_(done_); }),
          found_(probe_, source, limits) {}

    void Run(Directory& directory) {
        for (auto hit = scanner_.Next(0); hit; hit = scanner_.Next(done_)) {
            done_ = Take(*hit);
            progress_(done_);
        }
        found_.Finish(directory);
    }

  private:
    // Returns where the search continues.
    std::uint64_t Take(const RecordScanner::Hit& hit) {
        switch (hit.signature) {
            case kLocalSignature:
                return TakeLocal(hit.at);
            case kCentralSignature:
                return TakeCentral(hit.at);
            case kEndSignature:
                return TakeEnd(hit.at);
            default:
                return hit.at + kSignatureSize;
        }
    }

    std::uint64_t TakeLocal(std::uint64_t at) {
        const std::uint64_t behind = at + kSignatureSize;
        const auto header = ParseLocalHeader(scanner_.Peek(at, local_header::kFixedSize));
        if (!header || locals_ == max_headers_) {
            return behind;
        }
        auto record = ParseLocalRecord(scanner_.Peek(at, header->Length()), at, code_page_, clock_);
        if (!record) {
            return behind;
        }
        const std::uint64_t stated_end = record->data_at + record->entry.packed_size;
        const bool lands = record->states_sizes && stated_end >= record->data_at &&
                           scanner_.IsRecordAt(stated_end);
        ProbeResult result = probe_.Check(*record, lands);
        // There is no data that proves it intact.
        if (result.IsIntact() && record->entry.packed_size == 0 && !lands &&
            !record->entry.raw_name.empty()) {
            result.why = "its local header is damaged";
        }
        ++locals_;
        const std::uint64_t next = result.IsIntact() ? result.end : lands ? stated_end : behind;
        found_.AddLocal(std::move(*record), std::move(result));
        return next;
    }

    std::uint64_t TakeCentral(std::uint64_t at) {
        const std::string_view record =
            PeekCentralRecord([&](std::size_t count) { return scanner_.Peek(at, count); });
        if (record.empty() || GetNumber<std::uint16_t>(record, central_record::kNameLength) == 0) {
            return at + kSignatureSize;
        }
        const std::size_t length = record.size();
        CentralRecord parsed = ParseCentralRecord(record, code_page_, clock_);
        parsed.entry.offset = source_.PositionOf(parsed.disk, parsed.entry.offset);
        found_.AddCentral(std::move(parsed.entry), at, length);
        // A damaged length must not hide the next record.
        return scanner_.IsRecordAt(at + length) ? at + length : at + kSignatureSize;
    }

    std::uint64_t TakeEnd(std::uint64_t at) {
        using namespace end_record;
        const std::string_view record = scanner_.Peek(at, kFixedSize);
        if (record.size() == kFixedSize) {
            found_.AddEnd(at, GetNumber<std::uint16_t>(record, kEntries),
                          source_.PositionOf(GetNumber<std::uint16_t>(record, kDirectoryDisk),
                                             GetNumber<std::uint32_t>(record, kDirectoryOffset)));
        }
        return at + kSignatureSize;
    }

    ByteSource& source_;
    platform::CodePage& code_page_;
    platform::Clock& clock_;
    const SearchProgress& progress_;
    const std::uint64_t max_headers_;
    std::uint64_t done_ = 0;
    RecordScanner scanner_;
    HeldMemory memory_{1};
    EntryProbe probe_;
    FoundEntries found_;
    std::uint64_t locals_ = 0;
};

}  // namespace

bool NeedsSearch(const Directory& directory) {
    if (!directory.IsComplete()) {
        return true;
    }
    const auto cannot_be = [](const StoredEntry& entry) {
        const bool too_large =
            entry.method == Method::kDeflated && entry.size / kMaxDeflateRatio > entry.packed_size;
        const bool two_sizes = entry.method == Method::kStored && entry.size != entry.packed_size;
        return (two_sizes || too_large) && UnreadableBecause(entry).empty();
    };
    return std::any_of(directory.entries.begin(), directory.entries.end(), cannot_be) ||
           HasOverlaps(directory);
}

void SearchArchive(ByteSource& source, platform::CodePage& code_page, platform::Clock& clock,
                   const SearchProgress& progress, Directory& directory,
                   const SearchLimits& limits) {
    Search(source, code_page, clock, progress, limits).Run(directory);
}

}  // namespace vantrel::zip
