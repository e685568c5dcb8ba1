#include "zip/reader/record_scanner.h"

#include <algorithm>
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

// Reads the window that begins at `at`; false when nothing is there.
bool RecordScanner::Load(std::uint64_t at) {
    check_stop_();
    const auto count =
        static_cast<std::size_t>(std::min<std::uint64_t>(size_ - std::min(at, size_), kWindow));
    window_.Clear();
    window_.Resize(count);
    window_at_ = at;
    window_.Resize(count == 0 ? 0 : source_.ReadAt(at, window_.data(), count));
    return window_.size() > 0;
}

std::optional<RecordScanner::Hit> RecordScanner::Next(std::uint64_t from) {
    for (;;) {
        if (from < window_at_ || from + kSignatureSize > window_at_ + window_.size()) {
            if (size_ - std::min(from, size_) < kSignatureSize || !Load(from) ||
                window_.size() < kSignatureSize) {
                return std::nullopt;
            }
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
    const bool ends_archive = window_end == size_ && at <= window_end;
    if (at < window_at_ || (at + count > window_end && !ends_archive)) {
        Load(at);
    }
    const auto start = static_cast<std::size_t>(at - window_at_);
    return window_.View().substr(std::min(start, window_.size()), count);
}

bool RecordScanner::IsRecordAt(std::uint64_t at) {
    if (at >= size_) {
        return at == size_;
    }
    // Far away, only these bytes are read.
    const bool is_near = at >= window_at_ && at + kSignatureSize <= window_at_ + window_.size();
    const std::string bytes =
        is_near ? std::string(Peek(at, kSignatureSize)) : source_.Bytes(at, kSignatureSize);
    return bytes.size() == kSignatureSize && IsRecord(GetNumber<std::uint32_t>(bytes, 0));
}

}  // namespace vantrel::zip
