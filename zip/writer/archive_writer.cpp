#include "zip/writer/archive_writer.h"

#include <algorithm>
#include <thread>
#include <vector>

#include "common/display_text.h"
#include "common/path.h"
#include "zip/base/retry.h"
#include "zip/disks/archive_file.h"
#include "zip/disks/archive_target.h"
#include "zip/disks/spanned_archive.h"
#include "zip/writer/archive_sink.h"
#include "zip/writer/earlier_archive.h"
#include "zip/writer/job_producer.h"
#include "zip/writer/packer.h"

namespace vantrel::zip {

namespace {

// A thread has up to 6 MB. With more threads a second backup of a million files would exceed 128 MB
// (docs/performance.md).
constexpr int kMaxThreads = 12;
// The level of MakeCompressor for each WriterOptions::level. The library's levels 8 and 9 are not
// used: the tuned level is faster than either, and its archives are smaller (docs/performance.md).
constexpr int kCompressorLevel[] = {0, 1, 2, 3, 4, 5, 6, 6, kTunedLevel, kTunedLevel};
// Work for a file besides its bytes, in bytes that are compressed in the same time: opening,
// reading and closing it (docs/performance.md).
constexpr std::uint64_t kFileCost = 16 * 1024;
// Jobs in progress beyond one for each thread: packed jobs that wait for a slow one before them.
// With fewer the other threads wait as well; each holds less than two chunks.
constexpr int kMaxWaitingJobs = 6;

// Why the archive that was made earlier is not reused, as far as its drive decides; "" if it may
// be. A drive that may be missing or slow to answer is not asked for.
std::string UnusableDrive(platform::Drives& drives, const WriterOptions& options) {
    if (options.spanning) {
        return "this backup continues on further disks";
    }
    const std::string root = path::Root(options.earlier);
    const int type = drives.Type(root);
    if (type == platform::drive_type::kRemovable || type == platform::drive_type::kCdRom) {
        return "it is on a removable drive";
    }
    if (type == platform::drive_type::kRemote && root != path::Root(options.archive)) {
        return "it is on another network drive";
    }
    return "";
}

int ThreadCount(int wanted, platform::Process& process) {
    return std::clamp(wanted > 0 ? wanted : process.Processors(), 1, kMaxThreads);
}

class ArchiveRun {
  public:
    ArchiveRun(const platform::Machine& machine, const WriterOptions& options, RunContext& channel)
        : machine_(machine), options_(options), channel_(channel), earlier_(channel) {
        if (!options.earlier.empty()) {
            unusable_drive_ = UnusableDrive(machine.drives, options);
        }
        if (options.spanning) {
            output_ = std::make_unique<SpannedArchive>(machine_, channel, options.archive);
        } else {
            output_ = std::make_unique<ArchiveFile>(machine_, channel, options.archive);
        }
    }

    // On a background thread. Throws RunStopped when there is no archive; nothing remains then.
    void Run() {
        try {
            Make();
        } catch (...) {
            output_->Abandon();
            throw;
        }
    }

    std::uint64_t entries = 0;
    std::int32_t skipped = 0;
    std::uint64_t reused_bytes = 0;

  private:
    void Make() {
        OpenEarlier();
        output_->Open();
        while (!FillArchive()) {
            const Error error(error_number::kFileNotFound, "", "File not found");
            channel_.AskRetryOrStop(Failure(error.number(), options_.source.folder, NothingText()));
        }
        const std::uint64_t size = output_->Size();
        output_->Finish();
        channel_.RaiseLastEvent();
        earlier_.Close();  // it may be the file that Commit replaces
        output_->Commit();
        channel_.SetArchiveSize(size);
    }

    // Identifies the bytes that this run's compressor makes.
    std::string Mark() const {
        return options_.level == 0 || options_.spanning
                   ? ""
                   : CompressorMark(kCompressorGeneration, kCompressorLevel[options_.level],
                                    CompressorDescription());
    }

    void OpenEarlier() {
        if (options_.earlier.empty() || options_.level == 0) {
            return;
        }
        if (unusable_drive_.empty()) {
            earlier_.Open(machine_.files, options_.earlier, Mark());
        } else {
            earlier_.ReportUnused(options_.earlier, unusable_drive_);
        }
    }

    void ReportReuse(const ArchiveSink& sink) {
        const std::uint64_t all = sink.RawBytes();
        reused_bytes = sink.ReusedBytes();
        const std::uint64_t percent =
            all == 0 ? 0
                     : static_cast<std::uint64_t>(static_cast<double>(reused_bytes) * 100 /
                                                  static_cast<double>(all));
        channel_.Report(
            {MessageKind::kInformation, 0, 0, options_.earlier,
             "Compared and reused from the earlier archive: " + std::to_string(reused_bytes) +
                 " of " + Counted(all, "byte", "bytes") + " (" + std::to_string(percent) + " %)."});
    }

    std::string NothingText() const {
        const std::string what = options_.source.mask + " in " + options_.source.folder;
        return skipped > 0 ? "Nothing could be read of " + what + "."
                           : "There is nothing to back up: no file matches " + what + ".";
    }

    // False when there was nothing to store.
    bool FillArchive() {
        const OwnFiles own{options_.archive, TemporaryPath(options_.archive)};
        const int threads = ThreadCount(options_.threads, machine_.process);
        channel_.RestartFigures();
        SourceList list = ScanSource(machine_, options_.source, own, channel_, threads);
        skipped = list.skipped;
        channel_.SetTotal(list.files, list.bytes);
        ArchiveSink sink(*output_, channel_, static_cast<std::size_t>(threads + kMaxWaitingJobs),
                         list.items.Count());
        SourceFolder reader(machine_, channel_, options_.source.folder);
        JobProducer producer(reader, list, sink, earlier_, options_.level);
        const bool reuses = earlier_.IsUsable();
        RunWorkers(reader, producer, sink, threads);
        skipped += sink.Skipped();
        entries = sink.Entries();
        if (entries == 0) {
            return false;
        }
        channel_.SetFinishing();
        sink.WriteDirectory(Mark());
        if (reuses) {
            ReportReuse(sink);
        }
        return true;
    }

    void RunWorkers(SourceFolder& reader, JobProducer& producer, ArchiveSink& sink, int threads) {
        {
            std::vector<std::jthread> workers;
            workers.reserve(static_cast<std::size_t>(threads));
            for (int i = 0; i < threads; ++i) {
                workers.emplace_back(
                    [&] { channel_.FailOnError([&] { Work(reader, producer, sink); }); });
            }
        }
        channel_.CheckStop();
    }

    void Work(SourceFolder& reader, JobProducer& producer, ArchiveSink& sink) {
        Packer packer(reader, channel_, MakeDeflater(), earlier_);
        auto job = producer.Next({});
        while (job) {
            sink.Deliver(job->sequence, packer.Pack(*job, sink.RecycledBuffer()));
            job = producer.Next(std::move(job->data));
        }
    }

    std::unique_ptr<Deflater> MakeDeflater() const {
        if (options_.level == 0) {
            return nullptr;
        }
        return std::make_unique<Deflater>(options_.make_compressor
                                              ? options_.make_compressor()
                                              : MakeCompressor(kCompressorLevel[options_.level]));
    }

    platform::Machine machine_;
    const WriterOptions& options_;
    RunContext& channel_;
    std::unique_ptr<ArchiveOutput> output_;
    std::string unusable_drive_;  // why the earlier archive's drive excludes it
    EarlierArchive earlier_;
};

}  // namespace

WriterResult WriteArchive(const platform::Machine& machine, const WriterOptions& options,
                          RunEvents& events) {
    RunContext channel(kFileCost);
    ArchiveRun run(machine, options, channel);
    WriterResult result;
    result.outcome = channel.Run(machine.clock, events, [&run] { run.Run(); });
    result.entries = run.entries;
    result.skipped = run.skipped;
    result.reused_bytes = run.reused_bytes;
    return result;
}

}  // namespace vantrel::zip
