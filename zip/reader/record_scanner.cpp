#include "zip/reader/record_scanner.h"

#include <cstring>

#include "zip/records/format.h"

namespace vantrel::zip {

namespace {

// Holds the longest record: three fields of 65,535 bytes.
constexpr std::size_t kWindow = std::size_t{1} << 18;

bool IsRecord(std::uint32_t signature) {
    return signature == kLocalSignature || signature == kCentralSignature ||
           signature == kEndSignature || signature == kEnd64Signature ||
           signature == kDescriptorSignature;
}

}  // namespace

// Reads the window that begins at `at` and ends on the same disk.
void RecordScanner::Load(std::uint64_t at) {
    check_stop_();
    window_.Clear();
    window_at_ = at;
    if (at >= source_.Size()) {
        return;
    }
    if (source_.Available(at) == 0) {
        source_.Bytes(at, 1);  // asks for the disk
    }
    window_.Resize(source_.OnThisDisk(at, kWindow));
    window_.Resize(source_.ReadAt(at, window_.data(), window_.size()));
}

std::optional<RecordScanner::Hit> RecordScanner::Next(std::uint64_t from) {
    for (;;) {
        const std::uint64_t window_end = window_at_ + window_.size();
        if (from < window_at_ || from + kSignatureSize > window_end) {
            // No record is split over two disks; a smaller window ends with its disk.
            const bool is_over =
                from >= window_at_ && from < window_end && window_.size() < kWindow;
            from = is_over ? window_end : from;
            Load(from);
            if (window_.empty()) {
                return std::nullopt;
            }
            continue;
        }
        const auto* const begin = window_.data() + (from - window_at_);
        const std::size_t left = window_.size() - static_cast<std::size_t>(from - window_at_);
        const auto* const found =
            static_cast<const std::uint8_t*>(std::memchr(begin, 'P', left - kSignatureSize + 1));
        if (found == nullptr) {
            from += left - kSignatureSize + 1;
            continue;
        }
        from += static_cast<std::uint64_t>(found - begin);
        const std::string_view bytes(reinterpret_cast<const char*>(found), kSignatureSize);
        const auto signature = GetNumber<std::uint32_t>(bytes, 0);
        if (IsRecord(signature)) {
            return Hit{from, signature};
        }
        ++from;
    }
}

std::string_view RecordScanner::Peek(std::uint64_t at, std::size_t count) {
    const std::uint64_t window_end = window_at_ + window_.size();
    // A smaller window ends with the archive or its disk.
    const bool is_last = !window_.empty() && window_.size() < kWindow && at <= window_end;
    if (at < window_at_ || (at + count > window_end && !is_last)) {
        Load(at);
    }
    const auto start = static_cast<std::size_t>(at - window_at_);
    return window_.View().substr(std::min(start, window_.size()), count);
}

bool RecordScanner::IsRecordAt(std::uint64_t at) {
    const std::uint64_t size = source_.Size();
    if (at >= size) {
        return at == size;
    }
    if (source_.Available(at) == 0) {
        return source_.Available(at - 1) == 1;
    }
    // Far away, only these bytes are read.
    const bool is_near = at >= window_at_ && at + kSignatureSize <= window_at_ + window_.size();
    const std::string bytes = is_near ? std::string(Peek(at, kSignatureSize))
                                      : source_.Bytes(at, source_.OnThisDisk(at, kSignatureSize));
    return bytes.size() == kSignatureSize && IsRecord(GetNumber<std::uint32_t>(bytes, 0));
}

}  // namespace vantrel::zip
