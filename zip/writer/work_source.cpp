#include "zip/writer/work_source.h"

#include <algorithm>
#include <utility>

#include "zip/base/paths.h"

namespace vantrel::zip {

namespace {

constexpr std::size_t kMostFilesInBatch = 256;
// A batch ends with the file that brings it here, so that it holds less than two chunks.
constexpr std::uint64_t kBatchBytes = kChunkSize;

// Samples taken of a big file, to see whether it is compressed already.
constexpr std::uint64_t kSampleSpacing = kChunkSize / 6;
constexpr std::uint64_t kFewestSamples = 4;
constexpr std::uint64_t kMostSamples = 128;

}  // namespace

struct WorkSource::BigFile {
    SourceItem item;
    std::string path;
    std::unique_ptr<platform::File> file;
    std::uint64_t size = 0;
    std::uint64_t position = 0;
    Method method = Method::kDeflated;
    bool again = false;
    bool started = false;
    Buffer history;  // what stands before `position`, for the next piece to refer to

    void KeepHistory(const Buffer& data);
};

// After a piece was read, with what stood before it.
void WorkSource::BigFile::KeepHistory(const Buffer& data) {
    if (method == Method::kDeflated) {
        const std::size_t count = std::min(data.size(), kHistory);
        history.Clear();
        history.Append(data.data() + data.size() - count, count);
    }
}

WorkSource::WorkSource(SourceReader& reader, SourceList& list, ArchiveSink& sink, int level)
    : reader_(reader), list_(list), sink_(sink), level_(level) {}

WorkSource::~WorkSource() = default;

void WorkSource::StoreLater(SourceItem item, bool again) {
    const std::lock_guard lock(later_mutex_);
    later_.push_back({std::move(item), again});
}

bool WorkSource::Next(Job& job) {
    const std::lock_guard lock(mutex_);
    sink_.WaitForRoom(next_sequence_);
    job.items.clear();
    job.piece.reset();
    if (!big_) {
        SourceItem item;
        bool late = false;
        bool again = false;
        if (!NextItem(item, late, again)) {
            return false;
        }
        if (late || item.size > kChunkSize) {
            StartBigFile(job, std::move(item), again);
        } else {
            FillBatch(job, std::move(item));
        }
    } else {
        FillPiece(job);
    }
    job.sequence = next_sequence_++;
    return true;
}

bool WorkSource::NextItem(SourceItem& item, bool& late, bool& again) {
    if (read_ahead_) {
        item = std::move(*read_ahead_);
        read_ahead_.reset();
        return true;
    }
    std::string record;
    if (list_.items.Take(record)) {
        item = UnpackItem(record);
        return true;
    }
    if (late_.empty() && !RefillLate()) {
        return false;
    }
    item = std::move(late_.back().item);
    again = late_.back().again;
    late = true;
    late_.pop_back();
    return true;
}

// Files come back while others are being packed and written; only when all of those are done is it
// known which, and their order must not depend on the threads.
bool WorkSource::RefillLate() {
    sink_.WaitUntilWritten(next_sequence_);
    const std::lock_guard lock(later_mutex_);
    late_ = std::exchange(later_, {});
    std::sort(late_.begin(), late_.end(),
              [](const Late& a, const Late& b) { return a.item.name > b.item.name; });
    return !late_.empty();
}

void WorkSource::FillBatch(Job& job, SourceItem item) {
    std::uint64_t bytes = item.size;
    job.items.push_back(std::move(item));
    std::string record;
    while (job.items.size() < kMostFilesInBatch && bytes < kBatchBytes &&
           list_.items.Take(record)) {
        SourceItem next = UnpackItem(record);
        if (next.size > kChunkSize) {
            read_ahead_ = std::move(next);
            break;
        }
        bytes += next.size;
        job.items.push_back(std::move(next));
    }
}

void WorkSource::StartBigFile(Job& job, SourceItem item, bool again) {
    big_ = std::make_unique<BigFile>();
    big_->path = JoinPath(reader_.folder(), item.name);
    big_->item = std::move(item);
    big_->again = again;
    FillPiece(job);
}

// Opens the file, or opens it again after a question; in that case it must still be what it was.
void WorkSource::OpenBigFile(BigFile& big) {
    big.file = reader_.machine().files.Open(big.path, platform::OpenMode::kRead);
    const std::uint64_t size = big.file->Size();
    if (big.started) {
        if (size != big.size) {
            RaiseError(error_number::kDeviceIo);
        }
    } else {
        big.size = size;
        const bool store = level_ == 0 || big.again || LooksIncompressible(*big.file, size);
        big.method = store ? Method::kStored : Method::kDeflated;
    }
    big.file->Seek(big.position);
}

bool WorkSource::LooksIncompressible(platform::File& file, std::uint64_t size) {
    if (size < kChunkSize) {
        return false;
    }
    const std::uint64_t samples = std::clamp(size / kSampleSpacing, kFewestSamples, kMostSamples);
    Buffer sample;
    sample.Resize(Sampler::kSampleSize);
    const auto read = [&](std::uint64_t offset) {
        file.Seek(offset);
        const bool whole = ReadFully(file, sample.data(), sample.size()) == sample.size();
        return whole ? sample.data() : nullptr;
    };
    return sampler_.SamplesGainNothing(size, samples, read);
}

void WorkSource::FillPiece(Job& job) {
    BigFile& big = *big_;
    Piece piece;
    piece.first = !big.started;
    piece.again = big.again;
    try {
        ReadPiece(big, piece, job);
    } catch (const Error& error) {
        job.data.Clear();
        job.history = 0;
        piece.last = true;
        piece.abandoned = true;
        piece.trouble = Unreadable(big.path, error);
    }
    piece.file_size = big.size;
    piece.method = big.method;
    job.items.push_back(big.item);
    if (piece.last) {
        big_.reset();
    }
    job.piece = std::move(piece);
}

void WorkSource::ReadPiece(BigFile& big, Piece& piece, Job& job) {
    const bool shrunk = !reader_.Attempt([&] { return ReadOn(big, job); });
    big.started = true;
    big.position += job.PieceSize();
    big.KeepHistory(job.data);
    piece.last = shrunk || big.position == big.size;
    if (piece.last && (shrunk || big.file->Size() != big.size)) {
        piece.trouble = Changing(big.path);
    }
}

// Fills the job's data with what comes next, behind what stands before it; false when that is less
// than ought to come. A file that fails is opened again by the next try.
bool WorkSource::ReadOn(BigFile& big, Job& job) {
    try {
        if (!big.file) {
            OpenBigFile(big);
        }
        const auto wanted =
            static_cast<std::size_t>(std::min<std::uint64_t>(big.size - big.position, kChunkSize));
        job.data.Clear();
        job.data.Append(big.history.View());
        job.history = job.data.size();
        job.data.Resize(job.history + wanted);
        const std::size_t count = ReadFully(*big.file, job.data.data() + job.history, wanted);
        job.data.Resize(job.history + count);
        return count == wanted;
    } catch (const Error&) {
        big.file.reset();
        throw;
    }
}

}  // namespace vantrel::zip
