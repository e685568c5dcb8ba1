#include "zip/writer/job_producer.h"

#include <algorithm>
#include <utility>

#include "common/path.h"

namespace vantrel::zip {

namespace {

// Files per batch. Limits a batch of empty or tiny files, which kBatchSize does not.
constexpr std::size_t kMaxFilesInBatch = 256;
// Bytes. A batch ends with the file that reaches this limit, so it holds less than two chunks.
constexpr std::uint64_t kBatchSize = kChunkSize;

// Samples of a big file that decide whether it is stored: bytes from one to the next, and the
// limits of their number. A file that they let pass is sampled again chunk by chunk (Packer).
constexpr std::uint64_t kSampleSpacing = kChunkSize / 6;
constexpr std::uint64_t kMinSamples = 4;
constexpr std::uint64_t kMaxSamples = 128;

}  // namespace

struct JobProducer::BigFile {
    SourceItem item;
    std::string path;
    std::unique_ptr<platform::File> file;  // null before the first read and after a failed one
    std::uint64_t size = 0;                // when the file was opened first
    std::uint64_t position = 0;
    Method method = Method::kDeflated;
    bool store_only = false;
    bool started = false;
    std::shared_ptr<EarlierChunks> earlier;
    Buffer history;  // the bytes before `position`, which the next chunk's matches may refer to

    // `data`: history and chunk that were read last.
    void KeepHistory(const Buffer& data) {
        if (method == Method::kDeflated) {
            const std::size_t count = std::min(data.size(), kHistory);
            history.Clear();
            history.Append(data.data() + data.size() - count, count);
        }
    }
};

JobProducer::JobProducer(SourceFolder& reader, SourceList& list, ArchiveSink& sink,
                         EarlierArchive& earlier, int level)
    : reader_(reader), list_(list), sink_(sink), earlier_(earlier), level_(level) {}

JobProducer::~JobProducer() = default;

std::optional<Job> JobProducer::Next(Buffer recycled) {
    const std::lock_guard lock(mutex_);
    sink_.WaitForSlot(next_sequence_);
    Job job;
    job.data = std::move(recycled);
    if (!big_) {
        if (auto item = NextListed()) {
            if (item->size > kChunkSize) {
                StartBigFile(std::move(*item), false);
            } else {
                FillBatch(job, std::move(*item));
            }
        } else if (auto deferred = NextDeferred()) {
            StartBigFile(std::move(deferred->item), deferred->store_only);
        } else {
            return std::nullopt;
        }
    }
    if (big_) {
        FillChunk(job);
    }
    job.sequence = next_sequence_++;
    return job;
}

std::optional<SourceItem> JobProducer::NextListed() {
    if (read_ahead_) {
        return std::exchange(read_ahead_, std::nullopt);
    }
    const auto record = list_.items.Take();
    return record ? std::optional(DecodeItem(*record)) : std::nullopt;
}

std::optional<DeferredFile> JobProducer::NextDeferred() {
    if (deferred_.empty()) {
        deferred_ = sink_.WaitForDeferred(next_sequence_);
        std::reverse(deferred_.begin(), deferred_.end());
    }
    if (deferred_.empty()) {
        return std::nullopt;
    }
    DeferredFile file = std::move(deferred_.back());
    deferred_.pop_back();
    return file;
}

void JobProducer::FillBatch(Job& job, SourceItem item) {
    std::uint64_t bytes = item.size;
    job.items.push_back(std::move(item));
    while (job.items.size() < kMaxFilesInBatch && bytes < kBatchSize) {
        auto next = NextListed();
        if (!next) {
            return;
        }
        if (next->size > kChunkSize) {
            read_ahead_ = std::move(next);
            return;
        }
        bytes += next->size;
        job.items.push_back(std::move(*next));
    }
}

void JobProducer::StartBigFile(SourceItem item, bool store_only) {
    big_ = std::make_unique<BigFile>();
    big_->path = path::Join(reader_.folder(), item.name);
    big_->item = std::move(item);
    big_->store_only = store_only;
}

// Opens the file; also after a failure that the user has resolved. Then its size must not have
// changed, because the archive holds its beginning already.
void JobProducer::OpenBigFile(BigFile& big) {
    big.file = reader_.machine().files.Open(big.path, platform::OpenMode::kRead);
    const std::uint64_t size = big.file->Size();
    if (big.started) {
        if (size != big.size) {
            RaiseError(error_number::kDeviceIo);
        }
    } else {
        big.size = size;
        const bool store = level_ == 0 || big.store_only || LooksIncompressible(*big.file, size);
        big.method = store ? Method::kStored : Method::kDeflated;
        big.earlier = store ? nullptr : earlier_.FindChunks(StoredName(big.item));
    }
    big.file->Seek(big.position);
}

bool JobProducer::LooksIncompressible(platform::File& file, std::uint64_t size) {
    if (size < kChunkSize) {
        return false;
    }
    const std::uint64_t samples = std::clamp(size / kSampleSpacing, kMinSamples, kMaxSamples);
    Buffer sample;
    sample.Resize(Sampler::kSampleSize);
    const auto read = [&](std::uint64_t offset) {
        file.Seek(offset);
        const bool complete = ReadFully(file, sample.data(), sample.size()) == sample.size();
        return complete ? sample.data() : nullptr;
    };
    return sampler_.SamplesGainNothing(size, samples, read);
}

void JobProducer::FillChunk(Job& job) {
    BigFile& big = *big_;
    Chunk chunk;
    chunk.first = !big.started;
    chunk.store_only = big.store_only;
    chunk.number = big.position / kChunkSize;
    try {
        ReadChunk(big, chunk, job);
    } catch (const Error& error) {
        job.data.Clear();
        job.history = 0;
        chunk.last = true;
        chunk.unreadable = true;
        chunk.warning = SkippedFileWarning(big.path, error);
    }
    chunk.file_size = big.size;
    chunk.method = big.method;
    chunk.earlier = big.earlier;
    job.items.push_back(big.item);
    if (chunk.last) {
        big_.reset();
    }
    job.chunk = std::move(chunk);
}

void JobProducer::ReadChunk(BigFile& big, Chunk& chunk, Job& job) {
    const bool shrunk = !reader_.Attempt([&] { return ReadNextBytes(big, job); });
    big.started = true;
    big.position += job.ChunkSize();
    big.KeepHistory(job.data);
    chunk.last = shrunk || big.position == big.size;
    if (chunk.last && (shrunk || big.file->Size() != big.size)) {
        chunk.warning = ChangedFileWarning(big.path);
    }
}

// Fills the job's data with the history and the next bytes of the file; false when the file ends
// early. After a failure the next attempt opens the file again.
bool JobProducer::ReadNextBytes(BigFile& big, Job& job) {
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
