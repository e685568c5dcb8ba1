#include "zip/reader/entry_probe.h"

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "common/error.h"
#include "zip/reader/entry_stream.h"

namespace vantrel::zip {

namespace {

// Checks that fail may cost this many times the archive's size, and this many bytes.
constexpr std::uint64_t kFailedShare = 8;
constexpr std::uint64_t kFailedBytes = std::uint64_t{64} << 20;
// Decompressing is that much cheaper for each byte than reading.
constexpr std::uint64_t kUnpackedShare = 16;
// The first read of a stream; small, because most bytes that look like a header are none.
constexpr std::size_t kFirstPortion = 4096;

[[noreturn]] void Damaged(const char* why) { throw Error(error_number::kDeviceIo, "", why); }

// A data descriptor (APPNOTE 4.3.9): its signature may be missing, and its sizes have 4 or 8 bytes.
struct DescriptorForm {
    bool has_signature;
    bool wide;
    std::size_t Length() const {
        return (has_signature ? kSignatureSize : 0) + sizeof(std::uint32_t) +
               2 * (wide ? sizeof(std::uint64_t) : sizeof(std::uint32_t));
    }
};
constexpr std::array<DescriptorForm, 4> kDescriptorForms = {
    {{true, false}, {true, true}, {false, false}, {false, true}}};

std::optional<DataNumbers> ReadDescriptor(std::string_view bytes, const DescriptorForm& form) {
    if (bytes.size() < form.Length() ||
        (form.has_signature && !HasSignature(bytes, kDescriptorSignature))) {
        return std::nullopt;
    }
    bytes.remove_prefix(form.has_signature ? kSignatureSize : 0);
    DataNumbers numbers;
    numbers.crc = GetNumber<std::uint32_t>(bytes, 0);
    constexpr std::size_t kSizes = sizeof(std::uint32_t);
    if (form.wide) {
        numbers.packed_size = GetNumber<std::uint64_t>(bytes, kSizes);
        numbers.size = GetNumber<std::uint64_t>(bytes, kSizes + sizeof(std::uint64_t));
    } else {
        numbers.packed_size = GetNumber<std::uint32_t>(bytes, kSizes);
        numbers.size = GetNumber<std::uint32_t>(bytes, kSizes + sizeof(std::uint32_t));
    }
    return numbers;
}

}  // namespace

EntryProbe::EntryProbe(ByteSource& source, HeldMemory& memory, std::function<void()> check_stop)
    : source_(source),
      check_stop_(check_stop),
      data_(source, memory),
      scanner_(source, std::move(check_stop)) {}

ProbeResult EntryProbe::Check(LocalRecord& record, bool lands) {
    ProbeResult result;
    if (record.states_sizes) {
        result.end = record.data_at + record.entry.packed_size;
    }
    result.why = UnreadableBecause(record.entry);
    if (result.IsIntact() && !lands && !IsAffordable(record.data_at)) {
        result.why = "too much of the archive is damaged to check it";
    }
    if (!result.IsIntact()) {
        return result;
    }
    cost_ = 0;
    try {
        if (!lands || !CheckAsStated(record)) {
            record.entry.method == Method::kStored ? CheckStored(record) : CheckStream(record);
        }
        result.end = end_;
    } catch (const Error& error) {
        failed_cost_ += cost_;
        result.why = source_.WhyUnreadable(
            record.entry.offset, std::max(result.end, record.data_at + record.entry.packed_size));
        if (result.why.empty()) {
            result.why = error.description();
        }
    }
    return result;
}

bool EntryProbe::IsAffordable(std::uint64_t at) {
    const std::uint64_t size = source_.Size();
    const std::uint64_t known = size == kUnknownSize ? at : size;
    return failed_cost_ / kFailedShare <= known + kFailedBytes / kFailedShare;
}

// The usual case, and the fastest: everything is as the header states.
bool EntryProbe::CheckAsStated(LocalRecord& record) {
    if (!record.states_sizes) {
        return false;
    }
    const StoredEntry& entry = record.entry;
    try {
        data_.Read(entry, [this](const std::uint8_t*, std::size_t) { check_stop_(); });
        Take(record, {entry.crc, entry.packed_size, entry.size});
        return true;
    } catch (const Error&) {
        cost_ += entry.packed_size + entry.size / kUnpackedShare;
        return false;
    }
}

void EntryProbe::CheckStored(LocalRecord& record) {
    const StoredEntry& entry = record.entry;
    if (!record.states_sizes) {
        if (!FindStoredEnd(record) && !FindBareDescriptor(record)) {
            Damaged("its end is not found");
        }
        return;
    }
    const std::uint64_t end = source_.Size();
    for (const std::uint64_t size : {entry.packed_size, entry.size}) {
        if (size > end - std::min(end, record.data_at)) {
            continue;
        }
        DataNumbers data;
        MeasureStored(record.data_at, size, data);
        if (data.crc == entry.crc) {
            return Take(record, data);
        }
        if (entry.size == entry.packed_size) {
            Damaged("its checksum is wrong");
        }
    }
    Damaged(record.data_at + std::min(entry.packed_size, entry.size) > end
                ? "the archive ends before its data"
                : "its checksum is wrong");
}

void EntryProbe::CheckStream(LocalRecord& record) {
    const StoredEntry& entry = record.entry;
    const DataNumbers data = MeasureStream(record);
    const bool as_stated = record.states_sizes && data.crc == entry.crc &&
                           (data.size == entry.size || data.packed_size == entry.packed_size);
    if (!as_stated && DescriptorLength(record.data_at + data.packed_size, data) == 0) {
        Damaged("its checksum is wrong");
    }
    Take(record, data);
}

// Stored data whose length only a descriptor behind it states. A descriptor has a signature, or is
// followed by a record. The checksum is continued from one candidate to the next.
bool EntryProbe::FindStoredEnd(LocalRecord& record) {
    DataNumbers data;
    for (std::uint64_t from = record.data_at;;) {
        const auto hit = scanner_.Next(from);
        if (!hit) {
            cost_ += source_.Size() - record.data_at;
            return false;
        }
        from = hit->at + 1;
        for (const DescriptorForm& form : kDescriptorForms) {
            const std::uint64_t before = form.has_signature ? 0 : form.Length();
            if (hit->at < record.data_at + data.size + before) {
                continue;
            }
            const std::uint64_t length = hit->at - before - record.data_at;
            const auto stated =
                ReadDescriptor(scanner_.Peek(hit->at - before, form.Length()), form);
            if (stated && stated->size == length && stated->packed_size == length) {
                MeasureStored(record.data_at, length, data);
                if (data.crc == stated->crc) {
                    Take(record, data);
                    return true;
                }
            }
        }
    }
}

// The same where the descriptor has no signature, and what follows it is lost: at any byte the two
// sizes behind it may be the number of bytes before it.
bool EntryProbe::FindBareDescriptor(LocalRecord& record) {
    constexpr DescriptorForm kForm{false, false};
    constexpr std::size_t kSizeAt = sizeof(std::uint32_t);
    DataNumbers data;
    std::string bytes;
    for (std::uint64_t at = record.data_at; at + kForm.Length() <= source_.Size();) {
        check_stop_();
        bytes = source_.Bytes(at, kStreamChunk);
        cost_ += bytes.size();
        if (bytes.size() < kForm.Length()) {
            return false;
        }
        const std::size_t count = bytes.size() - kForm.Length() + 1;
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint64_t length = at + i - record.data_at;
            if (length == 0 || GetNumber<std::uint32_t>(bytes, i + kSizeAt) != length ||
                GetNumber<std::uint32_t>(bytes, i + 2 * kSizeAt) != length) {
                continue;
            }
            MeasureStored(record.data_at, length, data);
            if (data.crc == GetNumber<std::uint32_t>(bytes, i)) {
                Take(record, data);
                return true;
            }
        }
        at += count;
    }
    return false;
}

// Continues `data`, which begins at `at`, up to `count` bytes.
void EntryProbe::MeasureStored(std::uint64_t at, std::uint64_t count, DataNumbers& data) {
    packed_.Reserve(kStreamChunk);
    while (data.size < count) {
        check_stop_();
        const auto wanted =
            static_cast<std::size_t>(std::min<std::uint64_t>(kStreamChunk, count - data.size));
        const std::size_t got = source_.ReadAt(at + data.size, packed_.data(), wanted);
        cost_ += got;
        if (got == 0) {
            Damaged("the archive ends before its data");
        }
        data.crc = libdeflate_crc32(data.crc, packed_.data(), got);
        data.size += got;
    }
    data.packed_size = data.size;
}

DataNumbers EntryProbe::MeasureStream(const LocalRecord& record) {
    DataNumbers data;
    std::uint64_t next = record.data_at;
    std::size_t portion = kFirstPortion;
    packed_.Reserve(kStreamChunk);
    const auto more = [&]() -> std::string_view {
        check_stop_();
        packed_.Resize(source_.OnThisDisk(next, portion));
        packed_.Resize(next < source_.Size() ? source_.ReadAt(next, packed_.data(), packed_.size())
                                             : 0);
        portion = std::min(portion * 4, kStreamChunk);
        next += packed_.size();
        cost_ += packed_.size();
        if (packed_.empty()) {
            Damaged("the archive ends before its data");
        }
        return packed_.View();
    };
    const auto put = [&](const std::uint8_t* bytes, std::size_t count) {
        data.crc = libdeflate_crc32(data.crc, bytes, count);
        data.size += count;
        cost_ += count / kUnpackedShare;
    };
    data.packed_size = Unpack(record.entry.method, more, put, scratch_);
    return data;
}

// Length of the descriptor of `data` that begins at `at`, 0 when there is none.
std::uint64_t EntryProbe::DescriptorLength(std::uint64_t at, const DataNumbers& data) {
    const std::string bytes = source_.Bytes(at, source_.OnThisDisk(at, descriptor::kFixedSize64));
    for (const DescriptorForm& form : kDescriptorForms) {
        const auto stated = ReadDescriptor(bytes, form);
        if (stated == data) {
            return form.Length();
        }
    }
    return 0;
}

void EntryProbe::Take(LocalRecord& record, const DataNumbers& data) {
    record.entry.packed_size = data.packed_size;
    record.entry.size = data.size;
    record.entry.crc = data.crc;
    end_ = record.data_at + data.packed_size;
    if ((record.entry.flags & flag::kDescriptor) != 0) {
        end_ += DescriptorLength(end_, data);
    }
}

}  // namespace vantrel::zip
