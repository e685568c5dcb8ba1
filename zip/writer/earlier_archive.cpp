#include "zip/writer/earlier_archive.h"

#include <algorithm>
#include <utility>

#include "zip/deflate/deflate.h"
#include "zip/records/record_parser.h"

namespace vantrel::zip {

namespace {

// After this many failures the archive is not used any more: each costs time, and on a drive that
// is gone a long time.
constexpr int kMaxFailures = 8;

ComponentMessage Information(const std::string& path, std::string text) {
    return {MessageKind::kInformation, 0, 0, path, std::move(text), 0};
}

}  // namespace

class EarlierArchive::Source : public ByteSource {
  public:
    explicit Source(std::unique_ptr<platform::File> file) : file_(std::move(file)) {}

    std::uint64_t Size() override { return file_->Size(); }
    std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count) override {
        if (position_ != offset) {
            file_->Seek(offset);
        }
        position_ = kUnknown;  // if the next line raises
        const std::size_t got = ReadFully(*file_, static_cast<std::uint8_t*>(out), count);
        position_ = offset + got;
        return got;
    }

  private:
    static constexpr std::uint64_t kUnknown = ~std::uint64_t{0};

    std::unique_ptr<platform::File> file_;
    std::uint64_t position_ = 0;
};

EarlierArchive::EarlierArchive(RunContext& context) : context_(context) {}
EarlierArchive::~EarlierArchive() = default;

void EarlierArchive::Open(platform::FileSystem& files, const std::string& path,
                          const std::string& mark) {
    path_ = path;
    std::string why;
    try {
        const auto found = files.Find(path);
        if (!found) {
            context_.Report(Information(
                path, "There is no earlier archive to reuse. Everything is compressed."));
            return;
        }
        why = OpenAndRead(files, *found, mark);
    } catch (const Error& error) {
        why = error.description();
    }
    if (why.empty()) {
        usable_ = true;
        return;
    }
    Close();
    ReportUnused(path, why);
}

std::string EarlierArchive::OpenAndRead(platform::FileSystem& files,
                                        const platform::FileInfo& before, const std::string& mark) {
    source_ = std::make_unique<Source>(files.Open(path_, platform::OpenMode::kReadUnchanging));
    std::string why = directory_.Read(*source_, mark, kChunkSize);
    const auto after = files.Find(path_);
    const bool same =
        after && after->size == before.size && after->times.modified == before.times.modified;
    return why.empty() && !same ? "it is being changed" : why;
}

void EarlierArchive::ReportUnused(const std::string& path, const std::string& why) {
    context_.Report(Information(path, "The earlier archive is not reused: " + path + " (" + why +
                                          "). Everything is compressed."));
}

void EarlierArchive::Close() {
    usable_ = false;
    source_.reset();
    directory_ = CompactDirectory();
}

std::optional<UnsplitData> EarlierArchive::FindUnsplit(std::uint64_t size,
                                                       std::uint32_t crc) const {
    return usable_ ? directory_.FindUnsplit(size, crc) : std::nullopt;
}

std::unique_ptr<EarlierChunks> EarlierArchive::FindChunks(const std::string& name) {
    if (!usable_) {
        return nullptr;
    }
    try {
        const std::lock_guard lock(mutex_);
        const auto data = directory_.FindChunked(name, *source_);
        const auto data_at = data ? FindDataAt(*data) : std::nullopt;
        if (!data_at) {
            return nullptr;
        }
        return std::make_unique<EarlierChunks>(*data_at, *data);
    } catch (const Error&) {
        AddFailure();
        return nullptr;
    }
}

// Behind the local header; nothing when the data would not lie before the directory.
std::optional<std::uint64_t> EarlierArchive::FindDataAt(const ChunkedData& data) {
    const auto header = ParseLocalHeader(source_->Bytes(data.header_at, local_header::kFixedSize));
    if (!header) {
        return std::nullopt;
    }
    const std::uint64_t at = data.header_at + header->Length();
    const std::uint64_t end = directory_.Start();
    return at <= end && data.packed_size <= end - at ? std::optional(at) : std::nullopt;
}

std::size_t EarlierArchive::ReadAt(std::uint64_t offset, void* out, std::size_t count) {
    const std::uint64_t end = directory_.Start();
    if (!usable_ || offset >= end) {
        return 0;
    }
    count = static_cast<std::size_t>(std::min<std::uint64_t>(count, end - offset));
    try {
        const std::lock_guard lock(mutex_);
        return source_->ReadAt(offset, out, count);
    } catch (const Error&) {
        return 0;
    }
}

void EarlierArchive::AddFailure() {
    if (++failures_ == kMaxFailures) {
        usable_ = false;
        context_.Report(Information(
            path_,
            "The earlier archive is not reused any more, because it cannot be read or is "
            "damaged: " +
                path_));
    }
}

EarlierChunks::EarlierChunks(std::uint64_t data_at, const ChunkedData& data)
    : chunks_in_item_(data.index.chunks_in_item),
      chunks_(data.size / kChunkSize + (data.size % kChunkSize == 0 ? 0 : 1)) {
    for (const ChunkIndexItem& item : data.index.items) {
        starts_.push_back(data_at);
        checks_.push_back(item.check);
        data_at += item.packed_size;
    }
    starts_.push_back(data_at);
}

// Whether the next chunk needs the end of this one.
bool EarlierChunks::IsFollowed(std::uint64_t number) const {
    return number + 1 < chunks_ && (number + 1) % chunks_in_item_ != 0;
}

std::optional<EarlierChunks::Location> EarlierChunks::Find(std::uint64_t number, bool last,
                                                           std::uint32_t check,
                                                           const std::stop_token& stop) {
    // A chunk that is not compressible has five more bytes for each 65,535 of its data.
    constexpr std::uint64_t kMaxPackedChunk = kChunkSize + kChunkSize / 512;
    if (number >= chunks_ || last != (number + 1 == chunks_)) {
        return std::nullopt;
    }
    const auto item = static_cast<std::size_t>(number / chunks_in_item_);
    const bool is_checked = number % chunks_in_item_ == 0;
    std::uint64_t start = starts_[item];
    if (!is_checked) {
        std::unique_lock lock(mutex_);
        if (!WaitUntil(changed_, lock, stop, [&] { return ends_.contains(number - 1); })) {
            return std::nullopt;
        }
        const auto end = ends_.extract(number - 1).mapped();
        if (!end) {
            return std::nullopt;
        }
        start = *end;
    } else if (checks_[item] != check) {
        return std::nullopt;
    }
    const std::uint64_t left = starts_[item + 1] - start;
    const bool is_exact = !IsFollowed(number);
    if (is_exact && left > kMaxPackedChunk) {
        return std::nullopt;
    }
    return Location{start, std::min(left, kMaxPackedChunk), is_exact, is_checked};
}

void EarlierChunks::Settle(std::uint64_t number, std::optional<std::uint64_t> end) {
    if (IsFollowed(number)) {
        const std::lock_guard lock(mutex_);
        ends_.emplace(number, end);
        changed_.notify_all();
    }
}

}  // namespace vantrel::zip
